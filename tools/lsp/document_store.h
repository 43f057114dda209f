// The documents open in the client. Each keeps its newest text, changed in
// place by the ranges of each didChange, and the last whole analysis,
// which may be of an older text: the edits since are noted (block_edits.h)
// so that a change inside one device's block is checked by reading that
// block again, and requests away from it are answered from the analysis.
// The whole text is analysed again when something needs it, or on a
// thread of its own (analysis_worker.h) while the client is quiet.
#ifndef DEVDEF_TOOLS_LSP_DOCUMENT_STORE_H_
#define DEVDEF_TOOLS_LSP_DOCUMENT_STORE_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/lsp/analysis_worker.h"
#include "tools/lsp/block_edits.h"
#include "tools/lsp/document_index.h"
#include "tools/lsp/features/diagnostics.h"
#include "tools/analysis/library_lock.h"
#include "tools/lsp/server_settings.h"
#include "tools/text/buffer_encoding.h"

struct Document {
  std::string uri;
  std::string name;  // how messages name it: the last piece of its path
  std::int64_t version = 0;
  std::uint64_t stamp = 0;  // new with each change of the text or the settings
  std::string bytes;  // the newest text, in encoding
  BufferEncoding encoding = BufferEncoding::kUtf8;
  bool markOnDisk = false;  // the file on disk opens with a UTF-8 byte order mark that the text lacks
  AnalysisPtr analysis;     // the last whole analysis: of bytes unless edits were made since
  BlockEdits edits;         // since the analysis
  bool diagnosticsDue = true;  // the diagnostics of the newest text are not published yet
  // The diagnostics published for this version came from reading a block
  // again (the notification, kept until the whole analysis of the text
  // publishes its own only when they differ).
  bool blockPublished = false;
  std::string publishedBody;
  std::unique_ptr<DiagnosticItems> items;  // of the analysis's findings, made when they are first published
  std::unique_ptr<DocumentIndex> index;    // of the analysis, made at the first request that needs it

  // True when the analysis is of the newest text.
  bool Current() const { return analysis != nullptr && edits.None(); }
  // True when the analysis read a definition file.
  bool Usable() const { return analysis != nullptr && analysis->Usable(); }
  // The lines of bytes.
  const SourceMap& Map();

 private:
  std::unique_ptr<SourceMap> m_map;
  friend class DocumentStore;
};

class DocumentStore {
 public:
  // Opens (or opens again) a document with its text.
  void Open(const std::string& uri, std::int64_t version, std::string text);
  // Applies the changes of a didChange, in order: a change without a range
  // replaces the text, one with a range replaces that part. The text of
  // each change may be moved from. RpcError when the document is not open
  // or a change is malformed.
  void Change(const std::string& uri, std::int64_t version, nlohmann::json& changes);
  // False when the document was not open.
  bool Close(const std::string& uri);

  // The open document, or null.
  Document* Find(const std::string& uri);
  // The open document with the analysis of its newest text, or null: the
  // analysis on the worker's thread is waited for when it is of this text.
  Document* Analysed(const std::string& uri);
  // The index of a usable document's analysis.
  const DocumentIndex& IndexOf(Document& document);
  // The diagnostics items of a usable document's analysis.
  const DiagnosticItems& ItemsOf(Document& document);

  // New settings: every document is analysed again.
  void SetSettings(const ServerSettings& settings);
  const ServerSettings& Settings() const { return m_settings; }

  // The uris of the open documents.
  std::vector<std::string> Uris() const;

  // Analysis on the worker's thread. done is called on that thread when a
  // job is over; set it before the first job.
  void SetWorkerDone(std::function<void()> done) { m_worker.SetDone(std::move(done)); }
  // Starts the analysis of a document whose analysis is not of its newest
  // text; false when the worker is busy or no document needs one.
  bool StartWorker();
  bool WorkerBusy() const { return m_worker.Busy(); }
  // Takes the worker's result (waiting for it when wait) and keeps it when
  // its document has not changed since: gives that document, else null.
  Document* TakeWorker(bool wait);

 private:
  void Analyse(Document& document);
  // Makes result the analysis of its document when that has not changed.
  Document* Adopt(AnalysisResult result);
  void SetAnalysis(Document& document, AnalysisPtr analysis);

  ServerSettings m_settings;
  std::uint64_t m_stamps = 0;
  std::unordered_map<std::string, Document> m_documents;
  AnalysisWorker m_worker;  // after the documents: it ends first
};

#endif  // DEVDEF_TOOLS_LSP_DOCUMENT_STORE_H_
