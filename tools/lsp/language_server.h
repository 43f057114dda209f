// The language server for definition files: the protocol's lifecycle, the
// documents the client opens and changes, and the requests of each
// feature. It works on messages one at a time and hands what it sends to a
// callback; reading and writing the streams is server_loop's.
#ifndef DEVDEF_TOOLS_LSP_LANGUAGE_SERVER_H_
#define DEVDEF_TOOLS_LSP_LANGUAGE_SERVER_H_

#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "tools/lsp/document_store.h"
#include "tools/lsp/document_view.h"
#include "tools/lsp/protocol/json_rpc.h"
#include "tools/lsp/server_settings.h"

class LanguageServer {
 public:
  // Takes the body of each message the server sends.
  using Sender = std::function<void(const std::string& body)>;
  // Whether a change or close of the document is waiting to be handled.
  using ChangeWaiting = std::function<bool(const std::string& uri)>;

  // settings: those of the command line, which the client's override;
  // version: the server's version for the client.
  LanguageServer(const ServerSettings& settings, std::string version, Sender send);

  // Handles one message body; a body that is no JSON is answered with
  // ParseError.
  void HandleBody(const std::string& body);
  // Answers a message whose body was no JSON with ParseError.
  void RejectUnparsable();
  // Handles one parsed message (whose strings a didChange may move from).
  // Never throws: whatever a message holds, it is answered or passed over.
  void Handle(nlohmann::json& message);
  // Whether the message is a $/cancelRequest, which should be handled ahead
  // of the requests received with it.
  static bool IsCancellation(const nlohmann::json& message);
  // Forgets the requests cancelled so far (they were answered).
  void ForgetCancellations() { m_cancelled.clear(); }

  // Publishes the diagnostics of each document whose text changed since
  // they were last published, analysing it first; a document with a newer
  // change waiting is left for later, so that no diagnostics are published
  // for a text that is already gone.
  void PublishDue(const ChangeWaiting& waiting = ChangeWaiting());

  // The whole analysis on a thread of its own (document_store.h): done is
  // called on that thread when a job is over, and must be set before the
  // first. StartAnalysis starts one for a document whose analysis is
  // behind its text (false when none is, or one runs); FinishAnalysis
  // takes its result when it is over (or waits for it) and publishes the
  // diagnostics when they differ from those published; StopAnalysis waits
  // for a running one and drops it.
  void SetAnalysisDone(std::function<void()> done) { m_documents.SetWorkerDone(std::move(done)); }
  bool StartAnalysis() { return m_documents.StartWorker(); }
  bool AnalysisRunning() const { return m_documents.WorkerBusy(); }
  void FinishAnalysis(bool wait);
  void StopAnalysis();
  // How many times diagnostics were published by reading a changed block
  // alone (for tests and benchmarks).
  size_t BlockPublications() const { return m_blockPublications; }

  // Tells the client's log about a problem of the stream or the server.
  void Log(const std::string& message);

  // True once the client sent exit.
  bool Exited() const { return m_exited; }
  // 0 when the client asked to shut down before it sent exit (or the input
  // ended), else 1.
  int ExitCode() const { return m_shutDown ? 0 : 1; }

 private:
  // The result of a request as JSON text.
  std::string Request(const std::string& method, const nlohmann::json& params);
  void Notification(const std::string& method, nlohmann::json& params);
  nlohmann::json Initialize(const nlohmann::json& params);
  // The answer of a feature (JSON text): feature run on the document the
  // request names (at its position, when atPosition), or empty when the
  // document is not open, is no definition file or has no such position.
  // fromBase: the feature may answer from the last whole analysis when the
  // position is away from what changed since (hover, definition).
  std::string Answer(const nlohmann::json& params, bool atPosition, const char* empty,
                     const std::function<std::string(const DocumentView&, size_t)>& feature, bool fromBase = false);
  // The answer of feature from the last whole analysis of document, when
  // the edits since lie inside one device's block and the position is
  // outside its lines and not at its kind or manufacturer; false if not.
  bool AnswerFromBase(Document& document, LspPosition position,
                      const std::function<std::string(const DocumentView&, size_t)>& feature, std::string* answer);
  // Publishes the diagnostics of a document changed inside one device's
  // block by reading the block again; false when that cannot tell.
  bool PublishBlock(Document& document);
  void Configure(const nlohmann::json& settings);
  void Publish(Document& document);

  DocumentStore m_documents;
  std::string m_version;
  Sender m_send;
  bool m_initialized = false;
  bool m_shutDown = false;
  bool m_exited = false;
  bool m_hierarchicalSymbols = false;
  size_t m_blockPublications = 0;
  std::set<std::string> m_cancelled;  // ids of cancelled requests, as JSON text
};

#endif  // DEVDEF_TOOLS_LSP_LANGUAGE_SERVER_H_
