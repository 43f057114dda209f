// Benchmarks of reading, writing and looking up large catalogues in one
// process. Each read is also given as a ratio to a plain pass that counts the
// line ends of the same bytes in memory (x_baseline), and to the I/O floor:
// open the file, read it into a fresh buffer and count its line ends
// (x_iofloor).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "devdef/catalogue/catalogue_walk.h"
#include "devdef/devdef.h"

namespace {

// Arguments: layout, size in MB, duplicate-id check.
void BM_ReadDefFile(benchmark::State& state) {
  QuietMessageBoxes();
  const int layout = static_cast<int>(state.range(0));
  const SampleFile& file = Sample(layout, static_cast<size_t>(state.range(1)));
  const double baseline = BaselineSeconds(file.bytes);
  const double floor = IoFloorSeconds(file.path);
  double total = 0;
  for (auto _ : state) {
    auto ctrl = MakeController(layout, static_cast<int>(state.range(2)));
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(ctrl->ReadDefFile(file.path.c_str(), false));
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.SetIterationTime(seconds);
    total += seconds;
    state.PauseTiming();
    ctrl.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes.size()));
  state.counters["x_baseline"] = total / static_cast<double>(state.iterations()) / baseline;
  state.counters["x_iofloor"] = total / static_cast<double>(state.iterations()) / floor;
}
BENCHMARK(BM_ReadDefFile)
    ->ArgNames({"layout", "MB", "check"})
    ->ArgsProduct({{1, 2, 7}, {1, 10, 50}, {0, 1}})
    ->Args({7, 100, 0})
    ->Args({7, 100, 1})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// The I/O floor of a read: open, read into a fresh buffer, count the lines.
void BM_IoFloor(benchmark::State& state) {
  const SampleFile& file = Sample(static_cast<int>(state.range(0)), static_cast<size_t>(state.range(1)));
  for (auto _ : state) state.SetIterationTime(IoFloorSeconds(file.path));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes.size()));
}
BENCHMARK(BM_IoFloor)
    ->ArgNames({"layout", "MB"})
    ->ArgsProduct({{1, 7}, {1, 50}})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// A controller holding a read catalogue, for the operations on it.
struct Loaded {
  std::unique_ptr<KCDeviceDefCtrl> ctrl;
  size_t bytes;
  std::vector<int> ids;
};

Loaded Load(int layout, size_t megabytes) {
  QuietMessageBoxes();
  const SampleFile& file = Sample(layout, megabytes);
  Loaded loaded{MakeController(layout, 0), file.bytes.size(), {}};
  loaded.ctrl->ReadDefFile(file.path.c_str(), false);
  DevdefWalkDevices(loaded.ctrl->getDeviceList(), [&loaded](const DevdefDevicePlace& place) {
    if (place.device.GetNumDevDefs() > 0) loaded.ids.push_back(place.device.GetDeviceID(0));
    return false;
  });
  return loaded;
}

std::string WriteToMemory(KCDeviceDefCtrl& ctrl, bool convert) {
  CMemFile file(64u << 20);
  CArchive ar(&file, CArchive::store);
  if (convert) {
    ctrl.ConvertDefFileToVersion3(ar);
  } else {
    ctrl.WriteDefFile(ar);
  }
  return std::to_string(file.GetLength());
}

void BM_WriteDefFile(benchmark::State& state) {
  Loaded loaded = Load(static_cast<int>(state.range(0)), static_cast<size_t>(state.range(1)));
  for (auto _ : state) benchmark::DoNotOptimize(WriteToMemory(*loaded.ctrl, false));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * loaded.bytes));
}
BENCHMARK(BM_WriteDefFile)->ArgNames({"layout", "MB"})->ArgsProduct({{1, 2, 7}, {1, 50}})->Unit(benchmark::kMillisecond);

void BM_ConvertDefFileToVersion3(benchmark::State& state) {
  Loaded loaded = Load(2, static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(WriteToMemory(*loaded.ctrl, true));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * loaded.bytes));
}
BENCHMARK(BM_ConvertDefFileToVersion3)->ArgName("MB")->Arg(1)->Arg(50)->Unit(benchmark::kMillisecond);

void BM_WriteK4DeviceList(benchmark::State& state) {
  Loaded loaded = Load(7, static_cast<size_t>(state.range(0)));
  KCDeviceDefCtrlV3 ctrl("/tmp/devdef-bench-", 5, 0, nullptr);
  ctrl.ReadDefFile(Sample(7, static_cast<size_t>(state.range(0))).path.c_str(), false);
  for (auto _ : state) ctrl.WriteK4DeviceList();
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * loaded.bytes));
}
BENCHMARK(BM_WriteK4DeviceList)->ArgName("MB")->Arg(1)->Arg(50)->Unit(benchmark::kMillisecond);

void BM_FindDeviceItemById(benchmark::State& state) {
  Loaded loaded = Load(7, static_cast<size_t>(state.range(0)));
  size_t next = 0;
  for (auto _ : state) {
    DEVICE_KVRXDEF_ITEM* def = nullptr;
    benchmark::DoNotOptimize(loaded.ctrl->FindDeviceItem(loaded.ids[next], nullptr, nullptr, nullptr, nullptr,
                                                         nullptr, &def));
    next = (next + 7919) % loaded.ids.size();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(BM_FindDeviceItemById)->ArgName("MB")->Arg(1)->Arg(50)->Unit(benchmark::kMicrosecond);

void BM_FindDeviceItemByTreeItem(benchmark::State& state) {
  Loaded loaded = Load(7, static_cast<size_t>(state.range(0)));
  // Every visible definition gets a tree item; the look-ups ask for spread ones.
  std::vector<_TREEITEM*> items;
  uintptr_t next = 1;
  DevdefWalkDevices(loaded.ctrl->getDeviceList(), [&](const DevdefDevicePlace& place) {
    for (int i = 0; i < place.device.GetNumDevDefs(); ++i) {
      _TREEITEM* item = reinterpret_cast<_TREEITEM*>(next++);
      place.device.SetDeviceHTree(i, item);
      items.push_back(item);
    }
    return false;
  });
  size_t at = 0;
  for (auto _ : state) {
    POSITION kind = nullptr, manuf = nullptr, device = nullptr;
    benchmark::DoNotOptimize(loaded.ctrl->FindDeviceItem(items[at], kind, manuf, device, nullptr));
    at = (at + 7919) % items.size();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(BM_FindDeviceItemByTreeItem)->ArgName("MB")->Arg(1)->Arg(50)->Unit(benchmark::kMicrosecond);

void BM_GetDevicePackage(benchmark::State& state) {
  Loaded loaded = Load(7, 1);
  std::vector<DEVICE_ITEM*> devices;
  DevdefWalkDevices(loaded.ctrl->getDeviceList(), [&devices](const DevdefDevicePlace& place) {
    if (place.device.GetNumDevDefs() > 0) devices.push_back(&place.device);
    return false;
  });
  size_t at = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(devices[at]->GetDevicePackage(0));
    at = (at + 1) % devices.size();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(BM_GetDevicePackage);

void BM_RemoveDefLists(benchmark::State& state) {
  const SampleFile& file = Sample(7, static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    KCDeviceDefCtrlV3 ctrl("", 5, 0, nullptr);
    ctrl.ReadDefFile(file.path.c_str(), false);
    state.ResumeTiming();
    ctrl.RemoveDefLists();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes.size()));
}
BENCHMARK(BM_RemoveDefLists)->ArgName("MB")->Arg(1)->Arg(50)->Unit(benchmark::kMillisecond);

}  // namespace
