// One benchmark per input shape at two sizes: a read, and a write into
// memory, of files that put all their bytes into one long line, name, text,
// list or block. ns_per_byte, the processor time (the system's included)
// per byte, stays the same at both sizes when the cost is linear in the
// input; it is not thrown off by other work on a shared machine as the wall
// time is.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <chrono>
#include <ctime>
#include <map>
#include <string>

#include "bench/bench_support.h"
#include "bench/catalogue_generator.h"

namespace {

const InputShape kShapes[] = {InputShape::kNumbers, InputShape::kName,        InputShape::kText,
                              InputShape::kDevices, InputShape::kLists,       InputShape::kDefinitions,
                              InputShape::kHousings, InputShape::kCrLines};

const SampleFile& ShapeFile(InputShape shape, size_t megabytes) {
  static std::map<std::pair<int, size_t>, SampleFile> files;
  SampleFile& file = files[{static_cast<int>(shape), megabytes}];
  if (file.path.empty()) {
    file.bytes = GenerateShape(shape, megabytes << 20);
    file.path = std::string("/tmp/devdef-bench-shape-") + ShapeName(shape) + "-" + std::to_string(megabytes) + ".def";
    WriteFileBytes(file.path, file.bytes);
  }
  return file;
}

double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void SetPerByte(benchmark::State& state, double seconds, size_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
  state.counters["ns_per_byte"] = seconds * 1e9 / static_cast<double>(state.iterations()) / static_cast<double>(bytes);
}

// Arguments: shape, size in MB.
void BM_ReadShape(benchmark::State& state) {
  QuietMessageBoxes();
  const InputShape shape = kShapes[state.range(0)];
  const SampleFile& file = ShapeFile(shape, static_cast<size_t>(state.range(1)));
  state.SetLabel(ShapeName(shape));
  double processor = 0;
  for (auto _ : state) {
    auto ctrl = MakeController(ShapeLayout(shape), 1);
    const auto start = std::chrono::steady_clock::now();
    const double startProcessor = ThreadSeconds();
    benchmark::DoNotOptimize(ctrl->ReadDefFile(file.path.c_str(), false));
    processor += ThreadSeconds() - startProcessor;
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    state.PauseTiming();
    ctrl.reset();
    // Every read starts on memory given back to the system, as the read of
    // a fresh process does, whatever the size: otherwise a small file reads
    // into memory that the last read left behind and a large one does not.
    malloc_trim(0);
    state.ResumeTiming();
  }
  SetPerByte(state, processor, file.bytes.size());
}

void BM_WriteShape(benchmark::State& state) {
  QuietMessageBoxes();
  const InputShape shape = kShapes[state.range(0)];
  const SampleFile& file = ShapeFile(shape, static_cast<size_t>(state.range(1)));
  state.SetLabel(ShapeName(shape));
  auto ctrl = MakeController(ShapeLayout(shape), 0);
  ctrl->ReadDefFile(file.path.c_str(), false);
  double processor = 0;
  for (auto _ : state) {
    malloc_trim(0);  // as for the reads
    CMemFile memory(static_cast<UINT>(file.bytes.size() + (1u << 20)));
    CArchive ar(&memory, CArchive::store);
    const auto start = std::chrono::steady_clock::now();
    const double startProcessor = ThreadSeconds();
    benchmark::DoNotOptimize(ctrl->WriteDefFile(ar));
    processor += ThreadSeconds() - startProcessor;
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  SetPerByte(state, processor, file.bytes.size());
}

void ShapeArgs(benchmark::internal::Benchmark* b) {
  b->ArgNames({"shape", "MB"});
  for (int shape = 0; shape < static_cast<int>(sizeof kShapes / sizeof kShapes[0]); ++shape) {
    b->Args({shape, 1});
    b->Args({shape, 16});
  }
}
BENCHMARK(BM_ReadShape)->Apply(ShapeArgs)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteShape)->Apply(ShapeArgs)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
