// The documents open in the client, each with the analysis of its newest
// text. A change only stores the text; the analysis is made when something
// asks for it, so a run of changes costs one analysis.
#ifndef DEVDEF_TOOLS_LSP_DOCUMENT_STORE_H_
#define DEVDEF_TOOLS_LSP_DOCUMENT_STORE_H_

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/lsp/document_index.h"
#include "tools/lsp/server_settings.h"
#include "tools/text/buffer_encoding.h"

struct Document {
  std::string uri;
  std::string name;  // how messages name it: the last piece of its path
  std::int64_t version = 0;
  // The newest text (UTF-8) while it waits for its analysis; afterwards the
  // analysis holds it, in encoding.
  std::string text;
  BufferEncoding encoding = BufferEncoding::kUtf8;
  bool stale = true;           // the analysis is of an older text, or there is none
  bool diagnosticsDue = true;  // the newest analysis's diagnostics are not published yet
  bool markOnDisk = false;     // the file on disk opens with a UTF-8 byte order mark that the text lacks
  std::unique_ptr<Analysis> analysis;
  std::unique_ptr<DocumentIndex> index;  // made at the first request that needs it

  // Makes text hold the newest text, as UTF-8, when the analysis holds it.
  void TakeBackText();
  // True when the analysis read a definition file.
  bool Usable() const { return analysis != nullptr && analysis->Usable(); }
};

class DocumentStore {
 public:
  // Opens (or opens again) a document with its text.
  void Open(const std::string& uri, std::int64_t version, std::string text);
  // Applies the changes of a didChange, in order: a change without a range
  // replaces the text, one with a range (as clients that ignore full sync
  // send) replaces that part. The text of each change may be moved from.
  // RpcError when the document is not open or a change is malformed.
  void Change(const std::string& uri, std::int64_t version, nlohmann::json& changes);
  // False when the document was not open.
  bool Close(const std::string& uri);

  // The open document, or null.
  Document* Find(const std::string& uri);
  // The open document with the analysis of its newest text, or null.
  Document* Analysed(const std::string& uri);
  // The index of an analysed, usable document.
  const DocumentIndex& IndexOf(Document& document);

  // New settings: every document is analysed again.
  void SetSettings(const ServerSettings& settings);
  const ServerSettings& Settings() const { return m_settings; }

  // The uris of the open documents.
  std::vector<std::string> Uris() const;

 private:
  void Analyse(Document& document);

  ServerSettings m_settings;
  std::unordered_map<std::string, Document> m_documents;
};

#endif  // DEVDEF_TOOLS_LSP_DOCUMENT_STORE_H_
