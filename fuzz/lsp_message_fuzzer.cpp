// Feeds arbitrary bytes to the language server as a client's stream: the
// framing reader takes messages out of them (in pieces of a size the first
// byte picks, or, when its low bit is set, one message a line without
// framing) and an initialized server handles each, publishing diagnostics
// after each one. Checks that every message the server sends is a JSON-RPC
// 2.0 object, that nothing ends the server, and that the message parser
// with its own pass over strings reads each body as the JSON library does.
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "fuzz/fuzz_support.h"
#include "tools/lsp/language_server.h"
#include "tools/lsp/protocol/message_framing.h"
#include "tools/lsp/protocol/message_parsing.h"

namespace {

size_t g_published = 0;  // publishDiagnostics sent

void CheckSent(const std::string& body) {
  const nlohmann::json message = nlohmann::json::parse(body, nullptr, false);
  if (message.is_object() && message.contains("method") && message["method"] == "textDocument/publishDiagnostics") {
    ++g_published;
  }
  DEVDEF_FUZZ_CHECK(message.is_object());
  DEVDEF_FUZZ_CHECK(message.contains("jsonrpc") && message["jsonrpc"] == "2.0");
  DEVDEF_FUZZ_CHECK(message.contains("method") || message.contains("result") || message.contains("error"));
}

// The body as the server reads it (every string value decoded on its own)
// and as the JSON library reads it are the same.
void Handle(LanguageServer& server, const std::string& body) {
  const nlohmann::json library = nlohmann::json::parse(body, nullptr, false);
  const nlohmann::json own = ParseMessage(body, 0);
  DEVDEF_FUZZ_CHECK(library.is_discarded() == own.is_discarded());
  DEVDEF_FUZZ_CHECK(library.is_discarded() || library == own);
  server.HandleBody(body);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  if (nSize == 0) return 0;
  DevdefFuzzDir();  // message boxes answered silently
  LanguageServer server(ServerSettings(), "fuzz", &CheckSent);
  server.HandleBody(R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"capabilities":{"textDocument":
                       {"documentSymbol":{"hierarchicalDocumentSymbolSupport":true}}}}})");
  const std::string stream(reinterpret_cast<const char*>(pData) + 1, nSize - 1);
  if ((pData[0] & 1) != 0) {
    for (size_t begin = 0; begin <= stream.size() && !server.Exited();) {
      size_t end = stream.find('\n', begin);
      if (end == std::string::npos) end = stream.size();
      Handle(server, stream.substr(begin, end - begin));
      const size_t blockReads = server.BlockPublications();
      server.PublishDue();
      // Diagnostics published by reading a changed block alone are those
      // of the whole text: its analysis on the worker's thread adds none.
      const bool fromBlock = server.BlockPublications() != blockReads;
      while (server.StartAnalysis()) {
        const size_t published = g_published;
        server.FinishAnalysis(true);
        DEVDEF_FUZZ_CHECK(!fromBlock || g_published == published);
      }
      begin = end + 1;
    }
    return 0;
  }
  StringByteSource source(stream, static_cast<size_t>(pData[0] >> 1) + 1);
  FrameReader reader(source);
  std::string body;
  for (FrameReader::Result result; !server.Exited() && (result = reader.Next(&body)) != FrameReader::Result::kEnd;) {
    if (result == FrameReader::Result::kMessage) Handle(server, body);
    server.PublishDue();
  }
  return 0;
}
