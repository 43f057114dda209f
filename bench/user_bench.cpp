// Benchmarks of what users do: write a catalogue into a real file, read a
// file as the first thing a fresh process does, and run each command of the
// tool end to end, with the peak memory of the process. The suite is its own
// process runner: a fresh read runs this program again with
// --devdef-read-once, a command of the tool runs through a fresh copy of it
// (--devdef-run).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "bench/process_runner.h"

namespace {

// Layout, size in MB.
void BM_WriteDefFileToFile(benchmark::State& state) {
  QuietMessageBoxes();
  const int layout = static_cast<int>(state.range(0));
  const SampleFile& file = Sample(layout, static_cast<size_t>(state.range(1)));
  auto ctrl = MakeController(layout, 0);
  ctrl->ReadDefFile(file.path.c_str(), false);
  const std::string out = "/tmp/devdef-bench-written.def";
  for (auto _ : state) {
    CFile target(out.c_str(), CFile::modeCreate | CFile::modeWrite);
    CArchive ar(&target, CArchive::store);
    benchmark::DoNotOptimize(ctrl->WriteDefFile(ar));
    ar.Close();
    target.Close();
  }
  std::remove(out.c_str());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes.size()));
}
BENCHMARK(BM_WriteDefFileToFile)->ArgNames({"layout", "MB"})->ArgsProduct({{1, 7}, {1, 50}})->Unit(benchmark::kMillisecond);

// The read of a fresh process: the seconds of the read alone, the memory it
// adds to the process's peak, against the file's size.
void BM_FirstRead(benchmark::State& state) {
  const int layout = static_cast<int>(state.range(0));
  const SampleFile& file = Sample(layout, static_cast<size_t>(state.range(1)));
  const double baseline = BaselineSeconds(file.bytes);
  const double floor = IoFloorSeconds(file.path);
  double total = 0;
  long added = 0;
  for (auto _ : state) {
    const ProcessRun run = RunProcess({SelfPath(), "--devdef-read-once", std::to_string(layout), file.path});
    double seconds = 0;
    long kilobytes = 0;
    if (!run.ok || std::sscanf(run.output.c_str(), "%lf %ld", &seconds, &kilobytes) != 2) {
      state.SkipWithError("the fresh process did not read the file");
      break;
    }
    state.SetIterationTime(seconds);
    total += seconds;
    added = std::max(added, kilobytes);
  }
  if (state.iterations() == 0) return;
  const double mean = total / static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes.size()));
  state.counters["x_baseline"] = mean / baseline;
  state.counters["x_iofloor"] = mean / floor;
  state.counters["peak_MiB"] = static_cast<double>(added) / 1024;
  state.counters["x_file"] = static_cast<double>(added) * 1024 / static_cast<double>(file.bytes.size());
}
BENCHMARK(BM_FirstRead)
    ->ArgNames({"layout", "MB"})
    ->ArgsProduct({{1, 7}, {1, 50}})
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

#ifdef DEVDEF_TOOL_PATH
// The tool's commands as a user types them; FILE and OUT stand for the
// sample file and an output path.
struct ToolCommand {
  const char* name;
  int layout;
  std::vector<std::string> args;
};

// The first entry is no command of the tool: a fresh process that reads the
// file through the library, what every command is set against (x_read).
const ToolCommand kToolCommands[] = {
    {"read", 7, {}},
    {"show", 7, {"show", "FILE", "Dev_0_0_1"}},
    {"find", 7, {"find", "FILE", "--id", "1006"}},
    {"check", 7, {"check", "FILE"}},
    {"list", 7, {"list", "FILE"}},
    {"tree", 7, {"tree", "FILE"}},
    {"tree_json", 7, {"tree", "--json", "FILE"}},
    {"check_json", 7, {"check", "--json", "FILE"}},
    {"write", 7, {"write", "FILE", "-o", "OUT"}},
    {"convert", 2, {"convert", "FILE", "-o", "OUT"}},
    {"export", 7, {"export", "FILE", "--dir", "/tmp"}},
    // The catalogue published: one row per definition, or the page.
    {"publish_csv", 7, {"publish", "FILE", "--format", "csv", "-o", "OUT"}},
    {"publish_jsonl", 7, {"publish", "FILE", "--format", "jsonl", "-o", "OUT"}},
    {"publish_html", 7, {"publish", "FILE", "--format", "html", "-o", "OUT"}},
    // One definition changed, and a housing inserted at the front, which
    // renumbers every reference behind it; each read back and verified.
    {"edit_set", 7, {"edit", "FILE", "set", "1006", "module=0", "text=changed", "-o", "OUT"}},
    {"edit_add_entry", 7, {"edit", "FILE", "add-entry", "housing", "NEWHOUSING", "--at", "0", "-o", "OUT"}},
    // Both files read and compared: set against two first reads.
    {"diff", 7, {"diff", "FILE", "FILE"}},
#ifdef DEVDEF_PYTHON_EXECUTABLE
    // A Python script that reads the file through the module and asks every
    // definition for its id, package and module names.
    {"python_iterate", 7, {"PYTHON", DEVDEF_PYTHON_SCRIPT, "FILE"}},
#endif
};

// The tool the commands run: the one built with this suite, or the one that
// DEVDEF_BENCH_TOOL names (another build, to set the two side by side).
std::string ToolPath() {
  const char* other = std::getenv("DEVDEF_BENCH_TOOL");
  return other != nullptr && *other != '\0' ? other : DEVDEF_TOOL_PATH;
}

// The command line of a command on file, writing to out.
std::vector<std::string> ToolArguments(const ToolCommand& command, const SampleFile& file, const std::string& out) {
  if (command.args.empty()) return {SelfPath(), "--devdef-read-once", std::to_string(command.layout), file.path};
  std::vector<std::string> argv{ToolPath()};
#ifdef DEVDEF_PYTHON_EXECUTABLE
  // The interpreter of the build, with its module first on its path.
  if (command.args[0] == "PYTHON") argv = {"/usr/bin/env", "PYTHONPATH=" DEVDEF_PYTHON_PATH, DEVDEF_PYTHON_EXECUTABLE};
#endif
  for (const std::string& arg : command.args) {
    if (arg == "PYTHON") continue;
    argv.push_back(arg == "FILE" ? file.path : arg == "OUT" ? out : arg);
  }
  return argv;
}

// The median wall time of three fresh reads of a file, each a process of
// its own, as the tool's commands run: what they are set against.
double FreshReadSeconds(int layout, const SampleFile& file) {
  static std::map<std::string, double> measured;
  double& seconds = measured[file.path];
  if (seconds > 0) return seconds;
  std::vector<double> runs;
  for (int i = 0; i < 3; ++i) {
    runs.push_back(RunMeasured({SelfPath(), "--devdef-read-once", std::to_string(layout), file.path}, "/dev/null").seconds);
  }
  std::sort(runs.begin(), runs.end());
  seconds = runs[1];
  return seconds;
}

void BM_Tool(benchmark::State& state, const ToolCommand* command) {
  const SampleFile& file = Sample(command->layout, static_cast<size_t>(state.range(0)));
  const std::string out = "/tmp/devdef-bench-tool.def";
  const std::vector<std::string> argv = ToolArguments(*command, file, out);
  long peak = 0;
  double total = 0;
  for (auto _ : state) {
    const ProcessRun run = RunMeasured(argv, "/dev/null");
    if (!run.ok) {
      state.SkipWithError("the tool failed");
      break;
    }
    state.SetIterationTime(run.seconds);
    total += run.seconds;
    peak = std::max(peak, run.peakKilobytes);
  }
  std::remove(out.c_str());
  std::remove("/tmp/k4devicelist.txt");
  if (state.iterations() == 0) return;
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes.size()));
  state.counters["peak_MiB"] = static_cast<double>(peak) / 1024;
  state.counters["x_file"] = static_cast<double>(peak) * 1024 / static_cast<double>(file.bytes.size());
  state.counters["x_read"] =
      total / static_cast<double>(state.iterations()) / FreshReadSeconds(command->layout, file);
}
#endif

// Reads the file once, as the first thing of this process, and prints the
// seconds of the read and the kilobytes it added to the peak memory.
int ReadOnce(int layout, const char* path) {
  QuietMessageBoxes();
  auto ctrl = MakeController(layout, 0);
  const long before = ImagePeakKilobytes();
  const auto start = std::chrono::steady_clock::now();
  const int result = ctrl->ReadDefFile(path, false);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%.6f %ld\n", seconds, ImagePeakKilobytes() - before);
  return result == 1 ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
  const int served = ServeMeasuredRun(argc, argv);
  if (served >= 0) return served;
  if (argc == 4 && std::strcmp(argv[1], "--devdef-read-once") == 0) return ReadOnce(std::atoi(argv[2]), argv[3]);
#ifdef DEVDEF_TOOL_PATH
  // A command on the large file takes seconds: it runs once.
  for (const ToolCommand& command : kToolCommands) {
    for (int megabytes : {1, 50}) {
      benchmark::RegisterBenchmark((std::string("BM_Tool/") + command.name).c_str(), BM_Tool, &command)
          ->ArgName("MB")
          ->Arg(megabytes)
          ->Iterations(megabytes == 1 ? 5 : 1)
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    }
  }
#endif
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
