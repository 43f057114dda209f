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

const ToolCommand kToolCommands[] = {
    {"list", 7, {"list", "FILE"}},
    {"tree", 7, {"tree", "FILE"}},
    {"tree_json", 7, {"tree", "--json", "FILE"}},
    {"check", 7, {"check", "FILE"}},
    {"check_json", 7, {"check", "--json", "FILE"}},
    {"write", 7, {"write", "FILE", "-o", "OUT"}},
    {"convert", 2, {"convert", "FILE", "-o", "OUT"}},
    {"export", 7, {"export", "FILE", "--dir", "/tmp"}},
    // Both files read and compared: set against two first reads.
    {"diff", 7, {"diff", "FILE", "FILE"}},
};

void BM_Tool(benchmark::State& state, const ToolCommand* command) {
  const SampleFile& file = Sample(command->layout, static_cast<size_t>(state.range(0)));
  const std::string out = "/tmp/devdef-bench-tool.def";
  std::vector<std::string> argv{DEVDEF_TOOL_PATH};
  for (const std::string& arg : command->args) argv.push_back(arg == "FILE" ? file.path : arg == "OUT" ? out : arg);
  long peak = 0;
  for (auto _ : state) {
    const ProcessRun run = RunMeasured(argv, "/dev/null");
    if (!run.ok) {
      state.SkipWithError("the tool failed");
      break;
    }
    state.SetIterationTime(run.seconds);
    peak = std::max(peak, run.peakKilobytes);
  }
  std::remove(out.c_str());
  std::remove("/tmp/k4devicelist.txt");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes.size()));
  state.counters["peak_MiB"] = static_cast<double>(peak) / 1024;
  state.counters["x_file"] = static_cast<double>(peak) * 1024 / static_cast<double>(file.bytes.size());
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
