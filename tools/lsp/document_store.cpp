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

void Document::TakeBackText() {
  if (stale || analysis == nullptr) return;
  text = DecodeBuffer(encoding, analysis->Bytes());
}

void DocumentStore::Open(const std::string& uri, std::int64_t version, std::string text) {
  Document& document = m_documents[uri];
  document = Document();
  document.uri = uri;
  document.name = NameOf(uri);
  document.version = version;
  document.text = std::move(text);
  document.markOnDisk = document.text.compare(0, 3, "\xEF\xBB\xBF") != 0 && FileOpensWithMark(uri);
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
      document->text = std::move(replacement);
    } else {
      document->TakeBackText();
      std::string& text = document->text;
      const SourceMap map(text);
      const PositionConverter positions(text, map, BufferEncoding::kUtf8);
      const json& range = ObjectMember(change, "range");
      size_t begin = OffsetOf(positions, ObjectMember(range, "start"), text.size());
      size_t end = OffsetOf(positions, ObjectMember(range, "end"), text.size());
      if (end < begin) std::swap(begin, end);
      text.replace(begin, end - begin, replacement);
    }
    document->stale = true;
  }
  document->version = version;
  document->stale = true;
  document->diagnosticsDue = true;
}

bool DocumentStore::Close(const std::string& uri) { return m_documents.erase(uri) > 0; }

Document* DocumentStore::Find(const std::string& uri) {
  auto found = m_documents.find(uri);
  return found != m_documents.end() ? &found->second : nullptr;
}

Document* DocumentStore::Analysed(const std::string& uri) {
  Document* document = Find(uri);
  if (document != nullptr && document->stale) Analyse(*document);
  return document;
}

const DocumentIndex& DocumentStore::IndexOf(Document& document) {
  if (document.index == nullptr) document.index.reset(new DocumentIndex(*document.analysis));
  return *document.index;
}

void DocumentStore::SetSettings(const ServerSettings& settings) {
  m_settings = settings;
  for (auto& entry : m_documents) {
    Document& document = entry.second;
    document.TakeBackText();
    document.stale = true;
    document.diagnosticsDue = true;
  }
}

std::vector<std::string> DocumentStore::Uris() const {
  std::vector<std::string> uris;
  uris.reserve(m_documents.size());
  for (const auto& entry : m_documents) uris.push_back(entry.first);
  return uris;
}

void DocumentStore::Analyse(Document& document) {
  // The old analysis goes first: the new one then reuses its memory, which
  // keeps the process at one analysis per document and is quicker than
  // fresh pages.
  document.index.reset();
  document.analysis.reset();
  document.encoding = EncodeBuffer(document.text);
  document.analysis = Analysis::ReadText(document.name, std::move(document.text), m_settings.Options());
  document.text = std::string();
  document.stale = false;
}
