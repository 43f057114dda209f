// Benchmarks of the language server on a large document: from the arrival
// of a didChange to the publishDiagnostics message it causes (a keystroke
// sent as a range, and the whole text as clients without ranges send it),
// and the parts of that time; the requests an editor sends while a user
// reads and types (hover and definition right after a keystroke, outline,
// semantic tokens, completion).
#include <benchmark/benchmark.h>
#include <time.h>

#include <chrono>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "bench/catalogue_generator.h"
#include "tools/lsp/features/diagnostics.h"
#include "tools/lsp/language_server.h"
#include "tools/lsp/protocol/message_parsing.h"
#include "tools/text/buffer_encoding.h"

using nlohmann::json;

namespace {

const char kUri[] = "file:///bench/devices.def";

// A generated layout 7 file of about megabytes MB as an editor sends it
// (UTF-8), and the two texts an edit of one of its lines switches between.
struct Edit {
  std::string before;
  std::string after;
};

const Edit& SampleEdit(size_t megabytes) {
  static std::map<size_t, Edit> edits;
  Edit& edit = edits[megabytes];
  if (edit.before.empty()) {
    edit.before = DecodeBuffer(BufferEncoding::kWindows1252, GenerateCatalogue(7, megabytes << 20));
    // The first digit of a definition id in the middle of the file.
    const size_t line = edit.before.find("KVR5DEF: ", edit.before.size() / 2);
    edit.after = edit.before;
    char& digit = edit.after[line + 9];
    digit = digit == '1' ? '2' : '1';
  }
  return edit;
}

std::string Message(const std::string& method, json params) {
  return json{{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(params)}}.dump();
}

std::string RequestBody(const char* method, json params) {
  return json{{"jsonrpc", "2.0"}, {"id", 2}, {"method", method}, {"params", std::move(params)}}.dump();
}

std::string DidChange(const std::string& text, int version) {
  return Message("textDocument/didChange", {{"textDocument", {{"uri", kUri}, {"version", version}}},
                                            {"contentChanges", json::array({{{"text", text}}})}});
}

double ThreadSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// A server with the sample open and its first diagnostics published; sent
// counts the bytes of the diagnostics it sends, and the times are taken
// when it sends them.
struct OpenServer {
  size_t sent = 0;
  std::chrono::steady_clock::time_point sentAt;
  double sentAtCpu = 0;
  LanguageServer server;

  explicit OpenServer(size_t megabytes = 5)
      : server(ServerSettings(), "bench", [this](const std::string& body) {
          if (body.compare(0, 59, "{\"jsonrpc\":\"2.0\",\"method\":\"textDocument/publishDiagnostics\"") != 0) return;
          sentAt = std::chrono::steady_clock::now();
          sentAtCpu = ThreadSeconds();
          sent += body.size();
        }) {
    server.HandleBody(json{{"jsonrpc", "2.0"}, {"id", 1}, {"method", "initialize"}, {"params", json::object()}}.dump());
    server.HandleBody(Message(
        "textDocument/didOpen",
        {{"textDocument", {{"uri", kUri}, {"languageId", "devdef"}, {"version", 1}, {"text", SampleEdit(megabytes).before}}}}));
    server.PublishDue();
  }
};

// The protocol's position of a byte of the sample (ASCII up to the middle
// of the file, one line end per line).
json PositionIn(const std::string& text, size_t offset) {
  long line = 0;
  size_t start = 0;
  for (size_t i = 0; i < offset; ++i) {
    if (text[i] == '\n') {
      ++line;
      start = i + 1;
    }
  }
  return {{"line", line}, {"character", static_cast<long>(offset - start)}};
}

// A keystroke as an editor sends it: one character typed into (or taken
// out of) the text of a definition in the middle of the file.
struct Keystroke {
  json at;
  std::string type;
  std::string undo;

  explicit Keystroke(size_t megabytes) {
    const std::string& text = SampleEdit(megabytes).before;
    const size_t line = text.find("\nKVR5DEF: ", text.size() / 2) + 1;
    const size_t colon = text.find(" : ", line) + 3;
    at = PositionIn(text, colon);
    json after = at;
    after["character"] = after["character"].get<long>() + 1;
    type = Change(at, at, "x", 0);
    undo = Change(at, after, "", 0);
  }

  static std::string Change(const json& start, const json& end, const char* text, int version) {
    return Message("textDocument/didChange",
                   {{"textDocument", {{"uri", kUri}, {"version", version}}},
                    {"contentChanges", json::array({{{"range", {{"start", start}, {"end", end}}}, {"text", text}}})}});
  }
  // The change of an iteration: typed and taken out again by turns.
  std::string Next(int version) const {
    json message = json::parse(version % 2 == 0 ? type : undo);
    message["params"]["textDocument"]["version"] = version;
    return message.dump();
  }
};

// didChange of one line to the publishDiagnostics message: the message's
// JSON read, the old analysis freed, the text taken, analysed, and the
// diagnostics written. The time ends when the message is handed over;
// cpu_ms is this thread's processor time for the same.
void BM_LspChangeToDiagnostics(benchmark::State& state) {
  OpenServer open;
  const Edit& edit = SampleEdit(5);
  const std::string changes[2] = {DidChange(edit.after, 2), DidChange(edit.before, 3)};
  size_t next = 0;
  double cpu = 0;
  for (auto _ : state) {
    open.sent = 0;
    const auto start = std::chrono::steady_clock::now();
    const double startCpu = ThreadSeconds();
    open.server.HandleBody(changes[next]);
    open.server.PublishDue();
    if (open.sent == 0) state.SkipWithError("no diagnostics published");
    state.SetIterationTime(std::chrono::duration<double>(open.sentAt - start).count());
    cpu += open.sentAtCpu - startCpu;
    next ^= 1;
  }
  state.counters["cpu_ms"] = benchmark::Counter(cpu * 1e3 / static_cast<double>(state.iterations()));
  state.counters["diagnostics_MB"] = static_cast<double>(open.sent) / (1 << 20);
}
BENCHMARK(BM_LspChangeToDiagnostics)->Unit(benchmark::kMillisecond)->UseManualTime();

// A keystroke sent as a range to its publishDiagnostics: the block read
// again and its findings put in place of the old. block_reads counts the
// changes published that way (1: every one). The argument is the size of
// the file in MB.
void BM_LspKeystrokeToDiagnostics(benchmark::State& state) {
  const size_t megabytes = static_cast<size_t>(state.range(0));
  OpenServer open(megabytes);
  const Keystroke keystroke(megabytes);
  int version = 2;
  double cpu = 0;
  for (auto _ : state) {
    const std::string change = keystroke.Next(version++);
    open.sent = 0;
    const auto start = std::chrono::steady_clock::now();
    const double startCpu = ThreadSeconds();
    open.server.HandleBody(change);
    open.server.PublishDue();
    if (open.sent == 0) state.SkipWithError("no diagnostics published");
    state.SetIterationTime(std::chrono::duration<double>(open.sentAt - start).count());
    cpu += open.sentAtCpu - startCpu;
  }
  state.counters["cpu_ms"] = benchmark::Counter(cpu * 1e3 / static_cast<double>(state.iterations()));
  state.counters["block_reads"] =
      static_cast<double>(open.server.BlockPublications()) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_LspKeystrokeToDiagnostics)->Arg(5)->Arg(50)->Unit(benchmark::kMillisecond)->UseManualTime();

// Hover (0) and definition (1) at the package number of a definition far
// from a keystroke, right after it: answered from the last whole analysis,
// which the keystroke left behind the text.
void BM_LspRequestAfterKeystroke(benchmark::State& state) {
  OpenServer open;
  const Keystroke keystroke(5);
  const std::string& text = SampleEdit(5).before;
  const size_t line = text.find("\nKVR5DEF: ", text.size() / 4) + 1;
  const size_t package = text.find(' ', line + 9) + 1;
  const std::string request =
      RequestBody(state.range(0) == 0 ? "textDocument/hover" : "textDocument/definition",
                  {{"textDocument", {{"uri", kUri}}}, {"position", PositionIn(text, package)}});
  int version = 2;
  for (auto _ : state) {
    state.PauseTiming();
    open.server.HandleBody(keystroke.Next(version++));
    open.server.PublishDue();
    state.ResumeTiming();
    open.server.HandleBody(request);
  }
}
BENCHMARK(BM_LspRequestAfterKeystroke)->ArgName("definition")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

// The outline of the whole document, as clients ask for it after changes.
void BM_LspDocumentSymbol(benchmark::State& state) {
  OpenServer open;
  const std::string request = json{{"jsonrpc", "2.0"},
                                   {"id", 2},
                                   {"method", "textDocument/documentSymbol"},
                                   {"params", {{"textDocument", {{"uri", kUri}}}}}}
                                  .dump();
  for (auto _ : state) open.server.HandleBody(request);
}
BENCHMARK(BM_LspDocumentSymbol)->Unit(benchmark::kMillisecond)->UseRealTime();

// The semantic tokens of the whole document, as clients ask for them when it
// is opened and after changes; sent counts the bytes of the answer.
void BM_LspSemanticTokensFull(benchmark::State& state) {
  size_t sent = 0;
  LanguageServer server(ServerSettings(), "bench", [&sent](const std::string& body) { sent = body.size(); });
  server.HandleBody(json{{"jsonrpc", "2.0"}, {"id", 1}, {"method", "initialize"}, {"params", json::object()}}.dump());
  server.HandleBody(Message(
      "textDocument/didOpen",
      {{"textDocument", {{"uri", kUri}, {"languageId", "devdef"}, {"version", 1}, {"text", SampleEdit(5).before}}}}));
  const std::string request = RequestBody("textDocument/semanticTokens/full", {{"textDocument", {{"uri", kUri}}}});
  server.HandleBody(request);  // the analysis is made at the first request
  for (auto _ : state) server.HandleBody(request);
  state.counters["answer_MB"] = static_cast<double>(sent) / (1 << 20);
}
BENCHMARK(BM_LspSemanticTokensFull)->Unit(benchmark::kMillisecond)->UseRealTime();

// The line of a definition in the middle of the sample and the column of
// its package number ("KVR5DEF: ID PACKAGE").
std::pair<long, long> MiddlePackage() {
  const std::string& text = SampleEdit(5).before;
  const size_t at = text.find("\nKVR5DEF: ", text.size() / 2) + 1;
  long line = 0;
  for (size_t i = 0; i < at; ++i) line += text[i] == '\n';
  return {line, static_cast<long>(text.find(' ', at + 9) - at + 1)};
}

// The semantic tokens of a screenful (60 lines) in the middle of the
// document, as clients ask for what they show.
void BM_LspSemanticTokensRange(benchmark::State& state) {
  OpenServer open;
  const long line = MiddlePackage().first;
  const std::string request =
      RequestBody("textDocument/semanticTokens/range",
                  {{"textDocument", {{"uri", kUri}}},
                   {"range", {{"start", {{"line", line - 30}, {"character", 0}}}, {"end", {{"line", line + 30}, {"character", 0}}}}}});
  for (auto _ : state) open.server.HandleBody(request);
}
BENCHMARK(BM_LspSemanticTokensRange)->Unit(benchmark::kMillisecond)->UseRealTime();

// Completion at a package number in the middle of the document.
void BM_LspCompletion(benchmark::State& state) {
  OpenServer open;
  const std::pair<long, long> at = MiddlePackage();
  const std::string request = RequestBody("textDocument/completion", {{"textDocument", {{"uri", kUri}}},
                                                                       {"position", {{"line", at.first}, {"character", at.second}}}});
  for (auto _ : state) open.server.HandleBody(request);
}
BENCHMARK(BM_LspCompletion)->Unit(benchmark::kMicrosecond)->UseRealTime();

// The parts of the time of a change.
// The message read as the server reads it (0) and by the JSON library
// alone (1).
void BM_LspParseChange(benchmark::State& state) {
  const std::string change = DidChange(SampleEdit(5).after, 2);
  for (auto _ : state) {
    benchmark::DoNotOptimize(state.range(0) == 0 ? ParseMessage(change) : json::parse(change));
  }
}
BENCHMARK(BM_LspParseChange)->ArgName("library")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LspAnalysis(benchmark::State& state) {
  std::string bytes = SampleEdit(5).after;
  EncodeBuffer(bytes);
  for (auto _ : state) benchmark::DoNotOptimize(Analysis::ReadText("devices.def", bytes, AnalysisOptions()));
}
BENCHMARK(BM_LspAnalysis)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LspDiagnosticsBody(benchmark::State& state) {
  std::string bytes = SampleEdit(5).after;
  const BufferEncoding encoding = EncodeBuffer(bytes);
  const std::unique_ptr<Analysis> analysis = Analysis::ReadText("devices.def", bytes, AnalysisOptions());
  for (auto _ : state) benchmark::DoNotOptimize(PublishDiagnosticsBody(kUri, 2, analysis.get(), encoding));
  state.counters["findings"] = static_cast<double>(analysis->FindingsOf().List().size());
}
BENCHMARK(BM_LspDiagnosticsBody)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
