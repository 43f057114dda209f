#include "bench/bench_support.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>

#include "bench/catalogue_generator.h"

namespace {

int QuietBox(const char*, const char*, unsigned int) { return IDOK; }

size_t CountLineEnds(const char* at, size_t size) {
  size_t count = 0;
  const char* end = at + size;
  while ((at = static_cast<const char*>(std::memchr(at, '\n', static_cast<size_t>(end - at)))) != nullptr) {
    ++count;
    ++at;
  }
  return count;
}

template <class Pass>
double BestSeconds(int runs, Pass pass) {
  double best = 1e9;
  for (int i = 0; i < runs; ++i) {
    const auto start = std::chrono::steady_clock::now();
    pass();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (seconds < best) best = seconds;
  }
  return best;
}

}  // namespace

bool WriteFileBytes(const std::string& path, const std::string& bytes) {
  std::FILE* out = std::fopen(path.c_str(), "wb");
  if (out == nullptr) return false;
  const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
  return std::fclose(out) == 0 && ok;
}

const SampleFile& Sample(int layout, size_t megabytes) {
  static std::map<std::pair<int, size_t>, SampleFile> files;
  SampleFile& file = files[{layout, megabytes}];
  if (file.path.empty()) {
    file.bytes = GenerateCatalogue(layout, megabytes << 20);
    file.path = "/tmp/devdef-bench-" + std::to_string(layout) + "-" + std::to_string(megabytes) + ".def";
    WriteFileBytes(file.path, file.bytes);
  }
  return file;
}

void QuietMessageBoxes() { AfxSetMessageBoxHandler(&QuietBox); }

std::unique_ptr<KCDeviceDefCtrl> MakeController(int layout, int checkIds) {
  if (layout == 2) return std::unique_ptr<KCDeviceDefCtrl>(new KCDeviceDefCtrlV2("", 5, checkIds));
  if (layout == 7) return std::unique_ptr<KCDeviceDefCtrl>(new KCDeviceDefCtrlV3("", 5, checkIds, nullptr));
  return std::unique_ptr<KCDeviceDefCtrl>(new KCDeviceDefCtrl("", 5, checkIds));
}

double BaselineSeconds(const std::string& bytes) {
  return BestSeconds(20, [&bytes] { benchmark::DoNotOptimize(CountLineEnds(bytes.data(), bytes.size())); });
}

double IoFloorSeconds(const std::string& path) {
  return BestSeconds(10, [&path] {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return;
    const off_t size = ::lseek(fd, 0, SEEK_END);
    ::lseek(fd, 0, SEEK_SET);
    std::unique_ptr<char[]> buffer(new char[static_cast<size_t>(size > 0 ? size : 1)]);
    size_t done = 0;
    ssize_t got = 0;
    while (done < static_cast<size_t>(size) &&
           (got = ::read(fd, buffer.get() + done, static_cast<size_t>(size) - done)) > 0) {
      done += static_cast<size_t>(got);
    }
    ::close(fd);
    benchmark::DoNotOptimize(CountLineEnds(buffer.get(), done));
  });
}
