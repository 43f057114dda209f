// A small client for the language server's tests: it talks to a server in
// the same process, either directly (messages handed to LanguageServer one
// by one) or over pipes to RunLanguageServer on a thread of its own.
#ifndef DEVDEF_TESTS_LSP_CLIENT_H_
#define DEVDEF_TESTS_LSP_CLIENT_H_

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "tools/lsp/language_server.h"
#include "tools/lsp/protocol/message_framing.h"

// The text of an example file as an editor sends it: its bytes decoded as
// Windows-1252, in UTF-8.
std::string ExampleText(const char* name);

// A server driven directly; everything it sends is kept in sent.
class DirectClient {
 public:
  explicit DirectClient(const nlohmann::json& initializeParams = nlohmann::json::object());

  // Sends a request and gives its response (or null when none came).
  nlohmann::json Request(const std::string& method, const nlohmann::json& params);
  void Notify(const std::string& method, const nlohmann::json& params);
  // Opens a document; the diagnostics are published by Publish.
  void Open(const std::string& uri, const std::string& text, int version = 1);
  // The server's PublishDue; gives the diagnostics messages it sent.
  std::vector<nlohmann::json> Publish(const LanguageServer::ChangeWaiting& waiting = {});
  // Requests at a position of a document.
  nlohmann::json At(const std::string& method, const std::string& uri, long line, long character);

  LanguageServer server;
  std::vector<nlohmann::json> sent;

 private:
  int m_nextId = 1;
};

// RunLanguageServer on a thread, fed and read through pipes.
class PipeClient {
 public:
  PipeClient();
  ~PipeClient();

  // Writes raw bytes to the server's input.
  void Write(const std::string& bytes);
  void Send(const nlohmann::json& message);
  // The next message the server sends, or null after 10 s without one.
  nlohmann::json Receive();
  // Closes the server's input; then waits for the server to end and gives
  // its exit status.
  int CloseAndWait();
  // Waits for the server to end (after exit) and gives its exit status.
  int Wait();

 private:
  int m_in[2];
  int m_out[2];
  int m_status = -1;
  std::thread m_thread;
  std::unique_ptr<ByteSource> m_source;
  std::unique_ptr<FrameReader> m_reader;
};

#endif  // DEVDEF_TESTS_LSP_CLIENT_H_
