#include "tools/lsp/document_store.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "tools/lsp/protocol/json_rpc.h"
#include "tools/lsp/protocol/text_positions.h"

using nlohmann::json;

namespace {

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// The last piece of the uri's path, with its %XX escapes decoded.
std::string NameOf(const std::string& uri) {
  const size_t slash = uri.find_last_of('/');
  const std::string piece = slash == std::string::npos ? uri : uri.substr(slash + 1);
  std::string name;
  for (size_t i = 0; i < piece.size(); ++i) {
    if (piece[i] == '%' && i + 2 < piece.size() && HexDigit(piece[i + 1]) >= 0 && HexDigit(piece[i + 2]) >= 0) {
      name += static_cast<char>(HexDigit(piece[i + 1]) * 16 + HexDigit(piece[i + 2]));
      i += 2;
    } else {
      name += piece[i];
    }
  }
  return name.empty() ? uri : name;
}

// The byte offset of a position of a range change; past the last line: the
// end of the text.
size_t OffsetOf(const PositionConverter& positions, const json& position, size_t size) {
  const LspPosition at{static_cast<long>(IntegerMember(position, "line")),
                       static_cast<long>(IntegerMember(position, "character"))};
  size_t offset = size;
  if (at.line < 0 || at.character < 0) throw RpcError(kInvalidParams, "a negative position");
  return positions.ToOffset(at, &offset) ? offset : size;
}

// The path of a file: uri with its %XX escapes decoded; empty for any other
// uri.
std::string PathOf(const std::string& uri) {
  if (uri.compare(0, 7, "file://") != 0) return std::string();
  std::string path;
  for (size_t i = 7; i < uri.size(); ++i) {
    if (uri[i] == '%' && i + 2 < uri.size() && HexDigit(uri[i + 1]) >= 0 && HexDigit(uri[i + 2]) >= 0) {
      path += static_cast<char>(HexDigit(uri[i + 1]) * 16 + HexDigit(uri[i + 2]));
      i += 2;
    } else {
      path += uri[i];
    }
  }
  return path;
}

// Whether the file of uri opens with a UTF-8 byte order mark. Editors take
// the mark away from the text they send and write it back on saving.
bool FileOpensWithMark(const std::string& uri) {
  const std::string path = PathOf(uri);
  if (path.empty()) return false;
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return false;
  char head[3] = {0, 0, 0};
  const size_t got = std::fread(head, 1, 3, file);
  std::fclose(file);
  return got == 3 && std::memcmp(head, "\xEF\xBB\xBF", 3) == 0;
}

}  // namespace

const SourceMap& Document::Map() {
  if (m_map == nullptr) m_map.reset(new SourceMap(bytes));
  return *m_map;
}

void DocumentStore::Open(const std::string& uri, std::int64_t version, std::string text) {
  Document& document = m_documents[uri];
  document = Document();
  document.uri = uri;
  document.name = NameOf(uri);
  document.version = version;
  document.stamp = ++m_stamps;
  document.markOnDisk = text.compare(0, 3, "\xEF\xBB\xBF") != 0 && FileOpensWithMark(uri);
  document.bytes = std::move(text);
  document.encoding = EncodeBuffer(document.bytes);
}

void DocumentStore::Change(const std::string& uri, std::int64_t version, json& changes) {
  Document* document = Find(uri);
  if (document == nullptr) throw RpcError(kInvalidParams, "the document is not open: " + uri);
  if (!changes.is_array()) throw RpcError(kInvalidParams, "'contentChanges' is no array");
  for (json& change : changes) {
    if (!change.is_object() || !change.contains("text") || !change["text"].is_string()) {
      throw RpcError(kInvalidParams, "a content change without text");
    }
    std::string& replacement = change["text"].get_ref<std::string&>();
    if (!change.contains("range")) {
      document->bytes = std::move(replacement);
      document->encoding = EncodeBuffer(document->bytes);
      document->edits.Scatter();
      document->m_map.reset();
      continue;
    }
    const json& range = ObjectMember(change, "range");
    // Single-byte text stays so while what comes in has a byte for each
    // character; otherwise the whole text becomes UTF-8 again.
    if (document->encoding == BufferEncoding::kWindows1252 && EncodeBuffer(replacement) != BufferEncoding::kWindows1252) {
      document->bytes = DecodeBuffer(BufferEncoding::kWindows1252, document->bytes);
      document->encoding = BufferEncoding::kUtf8;
      document->m_map.reset();
    }
    std::string& bytes = document->bytes;
    const PositionConverter positions(bytes, document->Map(), document->encoding);
    size_t begin = OffsetOf(positions, ObjectMember(range, "start"), bytes.size());
    size_t end = OffsetOf(positions, ObjectMember(range, "end"), bytes.size());
    if (end < begin) std::swap(begin, end);
    if (document->encoding != BufferEncoding::kWindows1252 || !document->Usable()) {
      // A UTF-8 text is analysed whole: whether it is single-byte text now
      // is a question of all of it.
      document->edits.Scatter();
    } else {
      document->edits.Note(*document->analysis, begin, end, replacement.size());
    }
    bytes.replace(begin, end - begin, replacement);
    document->m_map.reset();
  }
  document->version = version;
  document->stamp = ++m_stamps;
  document->diagnosticsDue = true;
  document->blockPublished = false;
  document->publishedBody = std::string();
}

bool DocumentStore::Close(const std::string& uri) { return m_documents.erase(uri) > 0; }

Document* DocumentStore::Find(const std::string& uri) {
  auto found = m_documents.find(uri);
  return found != m_documents.end() ? &found->second : nullptr;
}

Document* DocumentStore::Analysed(const std::string& uri) {
  Document* document = Find(uri);
  if (document == nullptr || document->Current()) return document;
  if (m_worker.Busy() && m_worker.Uri() == uri) TakeWorker(true);
  if (!document->Current()) Analyse(*document);
  return document;
}

const DocumentIndex& DocumentStore::IndexOf(Document& document) {
  if (document.index == nullptr) document.index.reset(new DocumentIndex(*document.analysis));
  return *document.index;
}

const DiagnosticItems& DocumentStore::ItemsOf(Document& document) {
  if (document.items == nullptr) {
    document.items.reset(new DiagnosticItems(
        MakeDiagnosticItems(document.uri, *document.analysis, document.encoding, document.markOnDisk)));
  }
  return *document.items;
}

void DocumentStore::SetSettings(const ServerSettings& settings) {
  m_settings = settings;
  for (auto& entry : m_documents) {
    Document& document = entry.second;
    document.edits.Scatter();
    document.stamp = ++m_stamps;
    document.diagnosticsDue = true;
    document.blockPublished = false;
  }
}

std::vector<std::string> DocumentStore::Uris() const {
  std::vector<std::string> uris;
  uris.reserve(m_documents.size());
  for (const auto& entry : m_documents) uris.push_back(entry.first);
  return uris;
}

bool DocumentStore::StartWorker() {
  if (m_worker.Busy()) return false;
  for (auto& entry : m_documents) {
    Document& document = entry.second;
    if (document.Current()) continue;
    AnalysisJob job;
    job.uri = document.uri;
    job.version = static_cast<std::int64_t>(document.stamp);
    job.name = document.name;
    job.bytes = document.bytes;
    job.encoding = document.encoding;
    job.options = m_settings.Options();
    m_worker.Start(std::move(job));
    return true;
  }
  return false;
}

Document* DocumentStore::TakeWorker(bool wait) {
  if (!m_worker.Busy() || (!wait && !m_worker.Over())) return nullptr;
  return Adopt(m_worker.Take());
}

Document* DocumentStore::Adopt(AnalysisResult result) {
  Document* document = Find(result.uri);
  // A newer change (or new settings) made the result stale: it goes, and
  // a later job analyses the newest text.
  if (document == nullptr || result.analysis == nullptr || document->Current() ||
      static_cast<std::int64_t>(document->stamp) != result.version) {
    return nullptr;
  }
  if (result.encoding != document->encoding) {
    // The text lost its last character outside Windows-1252.
    if (EncodeBuffer(document->bytes) != result.encoding) return nullptr;
    document->encoding = result.encoding;
    document->m_map.reset();
  }
  SetAnalysis(*document, std::move(result.analysis));
  return document;
}

void DocumentStore::SetAnalysis(Document& document, AnalysisPtr analysis) {
  document.index.reset();
  document.items.reset();
  document.analysis = std::move(analysis);
  document.edits.Reset();
}

void DocumentStore::Analyse(Document& document) {
  if (document.encoding == BufferEncoding::kUtf8) {
    document.encoding = EncodeBuffer(document.bytes);
    document.m_map.reset();
  }
  // The old analysis goes first: the new one then reuses its memory, which
  // keeps the process at one analysis per document and is quicker than
  // fresh pages.
  SetAnalysis(document, AnalysisPtr());
  document.analysis = ReadLocked(document.name, document.bytes, m_settings.Options());
}
