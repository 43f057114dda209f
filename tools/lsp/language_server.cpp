#include "tools/lsp/language_server.h"

#include <cstdio>
#include <functional>
#include <initializer_list>
#include <mutex>
#include <utility>

#include "tools/lsp/block_reading.h"
#include "tools/lsp/features/code_actions.h"
#include "tools/lsp/features/completion.h"
#include "tools/lsp/features/diagnostics.h"
#include "tools/lsp/features/document_symbols.h"
#include "tools/lsp/features/folding_ranges.h"
#include "tools/lsp/features/goto_definition.h"
#include "tools/lsp/features/hover.h"
#include "tools/lsp/features/references.h"
#include "tools/lsp/features/rename.h"
#include "tools/lsp/features/semantic_tokens.h"
#include "tools/lsp/protocol/message_parsing.h"
#include "tools/lsp/protocol/text_positions.h"

using nlohmann::json;

namespace {

// The member at the end of a path of keys, or null where the path breaks.
const json* Find(const json& value, std::initializer_list<const char*> path) {
  const json* at = &value;
  for (const char* key : path) {
    if (!at->is_object()) return nullptr;
    auto found = at->find(key);
    if (found == at->end()) return nullptr;
    at = &*found;
  }
  return at;
}

bool IsTrue(const json& value, std::initializer_list<const char*> path) {
  const json* found = Find(value, path);
  return found != nullptr && found->is_boolean() && found->get<bool>();
}

// A document's version; clients that send none get 0.
std::int64_t VersionOf(const json& document) {
  return document.contains("version") && !document["version"].is_null() ? IntegerMember(document, "version") : 0;
}

const std::string& UriOf(const json& params) { return StringMember(ObjectMember(params, "textDocument"), "uri"); }

LspPosition PositionOf(const json& at) {
  return LspPosition{static_cast<long>(IntegerMember(at, "line")), static_cast<long>(IntegerMember(at, "character"))};
}

// Whether a codeAction request takes quick fixes: it names no kinds, or
// "quickfix" or a kind that holds it.
bool WantsQuickFixes(const json& params) {
  const json* only = Find(params, {"context", "only"});
  if (only == nullptr || !only->is_array()) return true;
  for (const json& kind : *only) {
    if (kind == "" || kind == "quickfix") return true;
  }
  return false;
}

// The bytes of a Range; a position past the last line is the end of the
// document.
void BytesOf(const PositionConverter& positions, size_t size, LspPosition start, LspPosition end, size_t* begin,
             size_t* stop) {
  if (!positions.ToOffset(start, begin)) *begin = size;
  if (!positions.ToOffset(end, stop)) *stop = size;
  if (*stop < *begin) std::swap(*begin, *stop);
}

}  // namespace

LanguageServer::LanguageServer(const ServerSettings& settings, std::string version, Sender send)
    : m_version(std::move(version)), m_send(std::move(send)) {
  m_documents.SetSettings(settings);
}

void LanguageServer::HandleBody(const std::string& body) {
  json message = ParseMessage(body);
  if (message.is_discarded()) {
    RejectUnparsable();
    return;
  }
  Handle(message);
}

void LanguageServer::RejectUnparsable() {
  m_send(ErrorBody(nullptr, kParseError, "the message is no JSON (or its strings are no UTF-8)"));
}

bool LanguageServer::IsCancellation(const json& message) {
  const json* method = Find(message, {"method"});
  return method != nullptr && *method == "$/cancelRequest";
}

void LanguageServer::Handle(json& message) {
  const RpcMessage rpc = ClassifyMessage(message);
  json none = json::object();
  json& params = rpc.params != nullptr ? message["params"] : none;
  switch (rpc.kind) {
    case RpcMessage::kResponse:
      return;  // the server sends no requests
    case RpcMessage::kInvalid:
      m_send(ErrorBody(rpc.id, kInvalidRequest, rpc.problem));
      return;
    case RpcMessage::kNotification:
      if (rpc.method == "exit") {
        m_exited = true;
        return;
      }
      if (!m_initialized || m_shutDown) return;
      try {
        Notification(rpc.method, params);
      } catch (const std::exception& e) {
        Log(rpc.method + " passed over: " + e.what());
      }
      return;
    case RpcMessage::kRequest:
      break;
  }
  auto cancelled = m_cancelled.find(rpc.id.dump());
  if (cancelled != m_cancelled.end()) {
    m_cancelled.erase(cancelled);
    m_send(ErrorBody(rpc.id, kRequestCancelled, "the request was cancelled"));
    return;
  }
  if (!m_initialized && rpc.method != "initialize") {
    m_send(ErrorBody(rpc.id, kServerNotInitialized, "the server is not initialized: send initialize first"));
    return;
  }
  if (m_shutDown) {
    m_send(ErrorBody(rpc.id, kInvalidRequest, "the server is shut down: only exit is taken"));
    return;
  }
  try {
    m_send(ResponseBody(rpc.id, Request(rpc.method, params)));
  } catch (const RpcError& e) {
    m_send(ErrorBody(rpc.id, e.code, e.what()));
  } catch (const json::exception& e) {
    m_send(ErrorBody(rpc.id, kInvalidParams, e.what()));
  } catch (const std::exception& e) {
    m_send(ErrorBody(rpc.id, kInternalError, e.what()));
  }
}

std::string LanguageServer::Request(const std::string& method, const json& params) {
  if (method == "initialize") return JsonText(Initialize(params));
  if (method == "shutdown") {
    m_shutDown = true;
    return "null";
  }
  if (method == "textDocument/hover") {
    return Answer(
        params, true, "null", [](const DocumentView& view, size_t at) { return JsonText(HoverAt(view, at)); }, true);
  }
  if (method == "textDocument/definition") {
    return Answer(
        params, true, "null", [](const DocumentView& view, size_t at) { return JsonText(DefinitionAt(view, at)); },
        true);
  }
  if (method == "textDocument/references") {
    const bool declaration = IsTrue(params, {"context", "includeDeclaration"});
    return Answer(params, true, "[]", [declaration](const DocumentView& view, size_t at) {
      return JsonText(ReferencesAt(view, at, declaration));
    });
  }
  if (method == "textDocument/documentSymbol") {
    const bool hierarchical = m_hierarchicalSymbols;
    return Answer(params, false, "[]",
                  [hierarchical](const DocumentView& view, size_t) { return DocumentSymbols(view, hierarchical); });
  }
  if (method == "textDocument/semanticTokens/full") {
    return Answer(params, false, "{\"data\":[]}", [](const DocumentView& view, size_t) {
      return SemanticTokens(view, 0, view.analysis.Bytes().size());
    });
  }
  if (method == "textDocument/semanticTokens/range") {
    const json& range = ObjectMember(params, "range");
    const LspPosition start = PositionOf(ObjectMember(range, "start"));
    const LspPosition end = PositionOf(ObjectMember(range, "end"));
    return Answer(params, false, "{\"data\":[]}", [start, end](const DocumentView& view, size_t) {
      size_t begin = 0;
      size_t stop = 0;
      BytesOf(view.positions, view.analysis.Bytes().size(), start, end, &begin, &stop);
      return SemanticTokens(view, begin, stop);
    });
  }
  if (method == "textDocument/completion") {
    return Answer(params, true, "{\"isIncomplete\":false,\"items\":[]}",
                  [](const DocumentView& view, size_t at) { return JsonText(CompletionAt(view, at)); });
  }
  if (method == "textDocument/prepareRename") {
    return Answer(params, true, "null",
                  [](const DocumentView& view, size_t at) { return JsonText(PrepareRenameAt(view, at)); });
  }
  if (method == "textDocument/rename") {
    const std::string newName = StringMember(params, "newName");
    return Answer(params, true, "null", [&newName](const DocumentView& view, size_t at) {
      return JsonText(RenameAt(view, at, newName));
    });
  }
  if (method == "textDocument/codeAction") {
    const json& range = ObjectMember(params, "range");
    const LspPosition start = PositionOf(ObjectMember(range, "start"));
    const LspPosition end = PositionOf(ObjectMember(range, "end"));
    if (!WantsQuickFixes(params)) return "[]";
    return Answer(params, false, "[]", [start, end](const DocumentView& view, size_t) {
      size_t begin = 0;
      size_t stop = 0;
      BytesOf(view.positions, view.analysis.Bytes().size(), start, end, &begin, &stop);
      return JsonText(CodeActionsFor(view, begin, stop));
    });
  }
  if (method == "textDocument/foldingRange") {
    return Answer(params, false, "[]", [](const DocumentView& view, size_t) { return JsonText(FoldingRanges(view)); });
  }
  throw RpcError(kMethodNotFound, "no method " + method);
}

json LanguageServer::Initialize(const json& params) {
  if (m_initialized) throw RpcError(kInvalidRequest, "initialize was sent before");
  if (!params.is_object()) throw RpcError(kInvalidParams, "the params of initialize are no object");
  m_hierarchicalSymbols =
      IsTrue(params, {"capabilities", "textDocument", "documentSymbol", "hierarchicalDocumentSymbolSupport"});
  m_initialized = true;
  const json* options = Find(params, {"initializationOptions"});
  if (options != nullptr) Configure(*options);
  return json{
      {"capabilities",
       {
           {"positionEncoding", "utf-16"},
           {"textDocumentSync", {{"openClose", true}, {"change", 2}}},
           {"hoverProvider", true},
           {"definitionProvider", true},
           {"referencesProvider", true},
           {"documentSymbolProvider", true},
           {"foldingRangeProvider", true},
           {"completionProvider", json::object()},
           {"renameProvider", {{"prepareProvider", true}}},
           {"codeActionProvider", {{"codeActionKinds", {"quickfix"}}}},
           {"semanticTokensProvider", {{"legend", SemanticTokensLegend()}, {"range", true}, {"full", true}}},
       }},
      {"serverInfo", {{"name", "devdef"}, {"version", m_version}}},
  };
}

void LanguageServer::Notification(const std::string& method, json& params) {
  if (method == "textDocument/didOpen") {
    const json& document = ObjectMember(params, "textDocument");
    const std::string& uri = StringMember(document, "uri");
    StringMember(document, "text");
    m_documents.Open(uri, VersionOf(document), std::move(params["textDocument"]["text"].get_ref<std::string&>()));
  } else if (method == "textDocument/didChange") {
    const json& document = ObjectMember(params, "textDocument");
    Member(params, "contentChanges");
    m_documents.Change(StringMember(document, "uri"), VersionOf(document), params["contentChanges"]);
  } else if (method == "textDocument/didClose") {
    const std::string& uri = UriOf(params);
    if (m_documents.Close(uri)) m_send(PublishDiagnosticsBody(uri, 0, nullptr, BufferEncoding::kUtf8));
  } else if (method == "workspace/didChangeConfiguration") {
    const json* settings = Find(params, {"settings"});
    if (settings != nullptr) Configure(*settings);
  } else if (method == "$/cancelRequest") {
    const json& id = Member(params, "id");
    if (id.is_string() || id.is_number_integer()) m_cancelled.insert(id.dump());
  }
}

std::string LanguageServer::Answer(const json& params, bool atPosition, const char* empty,
                                   const std::function<std::string(const DocumentView&, size_t)>& feature,
                                   bool fromBase) {
  const std::string& uri = UriOf(params);
  LspPosition position;
  if (atPosition) position = PositionOf(ObjectMember(params, "position"));
  Document* document = m_documents.Find(uri);
  if (document == nullptr) return empty;
  std::string answer;
  if (fromBase && atPosition && AnswerFromBase(*document, position, feature, &answer)) return answer;
  document = m_documents.Analysed(uri);
  if (!document->Usable()) return empty;
  Analysis& analysis = *document->analysis;
  const PositionConverter positions(analysis.Bytes(), analysis.Map(), document->encoding);
  const DocumentView view{document->uri,
                          analysis,
                          m_documents.IndexOf(*document),
                          positions,
                          m_documents.Settings().generation,
                          document->encoding,
                          m_documents.Settings().Options()};
  size_t offset = 0;
  if (atPosition && !positions.ToOffset(position, &offset)) return empty;
  std::lock_guard<std::recursive_mutex> hold(LibraryLock());
  return feature(view, offset);
}

bool LanguageServer::AnswerFromBase(Document& document, LspPosition position,
                                    const std::function<std::string(const DocumentView&, size_t)>& feature,
                                    std::string* answer) {
  if (document.Current() || !document.edits.InOneBlock() || !document.Usable()) return false;
  Analysis& analysis = *document.analysis;
  // With as many lines as before, every line outside the device's stands
  // where it stood, with its bytes.
  if (document.Map().LineCount() != analysis.Map().LineCount()) return false;
  const PositionConverter now(document.bytes, document.Map(), document.encoding);
  size_t offset = 0;
  if (!now.ToOffset(position, &offset)) return false;
  const size_t begin = document.edits.LinesBegin();
  const long long end = static_cast<long long>(document.edits.LinesEnd()) + document.edits.Delta();
  if (offset >= begin && static_cast<long long>(offset) < end) return false;
  if (offset >= begin) offset = static_cast<size_t>(static_cast<long long>(offset) - document.edits.Delta());
  const DocumentIndex& index = m_documents.IndexOf(document);
  IndexedPlace place;
  if (index.At(offset, &place)) {
    // What is said of a kind or manufacturer counts the definitions of its
    // devices.
    const DeviceRecord& device = analysis.Devices()[document.edits.Device()];
    if ((place.kind == IndexedPlace::kManufacturer && place.record == device.manufacturer) ||
        (place.kind == IndexedPlace::kKind && place.record == analysis.Manufacturers()[device.manufacturer].kind)) {
      return false;
    }
  }
  const PositionConverter positions(analysis.Bytes(), analysis.Map(), document.encoding);
  const DocumentView view{document.uri,
                          analysis,
                          index,
                          positions,
                          m_documents.Settings().generation,
                          document.encoding,
                          m_documents.Settings().Options()};
  std::lock_guard<std::recursive_mutex> hold(LibraryLock());
  *answer = feature(view, offset);
  return true;
}

void LanguageServer::Configure(const json& settings) {
  ServerSettings next = m_documents.Settings();
  for (const std::string& problem : ApplySettings(settings, &next)) Log(problem);
  const ServerSettings& now = m_documents.Settings();
  if (next.layout != now.layout || next.generation != now.generation || next.checkIds != now.checkIds) {
    m_documents.SetSettings(next);
  }
}

void LanguageServer::PublishDue(const ChangeWaiting& waiting) {
  for (const std::string& uri : m_documents.Uris()) {
    Document* document = m_documents.Find(uri);
    if (document == nullptr || !document->diagnosticsDue) continue;
    if (waiting && waiting(uri)) continue;
    if (!document->Current() && PublishBlock(*document)) continue;
    Publish(*m_documents.Analysed(uri));
  }
}

bool LanguageServer::PublishBlock(Document& document) {
  if (!document.edits.InOneBlock() || !document.Usable()) return false;
  BlockReading reading;
  if (!ReadBlockAgain(*document.analysis, document.edits, document.bytes, document.Map(),
                      m_documents.Settings().Options(), &reading)) {
    return false;
  }
  std::string body =
      PublishSplicedBody(document.uri, document.version, m_documents.ItemsOf(document), reading.before,
                         reading.behind, *reading.analysis, reading.first, reading.count, reading.lineShift,
                         document.encoding);
  m_send(body);
  document.diagnosticsDue = false;
  document.blockPublished = true;
  document.publishedBody = std::move(body);
  ++m_blockPublications;
  return true;
}

void LanguageServer::Publish(Document& document) {
  if (document.Usable()) {
    const std::string body = PublishDiagnosticsBody(document.uri, document.version, m_documents.ItemsOf(document));
    // The whole analysis confirms what reading a block again published.
    if (!document.blockPublished || body != document.publishedBody) m_send(body);
  } else {
    m_send(PublishDiagnosticsBody(document.uri, document.version, document.analysis.get(), document.encoding,
                                  document.markOnDisk));
  }
  document.diagnosticsDue = false;
  document.blockPublished = false;
  document.publishedBody = std::string();
}

void LanguageServer::FinishAnalysis(bool wait) {
  Document* document = m_documents.TakeWorker(wait);
  if (document == nullptr) return;
  if (document->diagnosticsDue || document->blockPublished) {
    document->diagnosticsDue = true;
    Publish(*document);
  }
}

void LanguageServer::StopAnalysis() {
  m_documents.TakeWorker(true);
  m_documents.SetWorkerDone(std::function<void()>());
}

void LanguageServer::Log(const std::string& message) {
  if (!m_initialized) {
    std::fprintf(stderr, "devdef lsp: %s\n", message.c_str());
    return;
  }
  m_send(NotificationBody("window/logMessage", json{{"type", 2}, {"message", message}}));
}
