// What the benchmarks share: the generated sample files, controllers of each
// layout, and the two floors a read is measured against.
#ifndef DEVDEF_BENCH_BENCH_SUPPORT_H_
#define DEVDEF_BENCH_BENCH_SUPPORT_H_

#include <cstddef>
#include <memory>
#include <string>

#include "devdef/devdef.h"

// A generated file on disk with its bytes.
struct SampleFile {
  std::string path;
  std::string bytes;
};

// The catalogue of the layout of about megabytes MB, made once per process
// and kept in /tmp/devdef-bench-<layout>-<MB>.def.
const SampleFile& Sample(int layout, size_t megabytes);
// Writes bytes to path; false on failure.
bool WriteFileBytes(const std::string& path, const std::string& bytes);

// Silences the message boxes of the library.
void QuietMessageBoxes();
std::unique_ptr<KCDeviceDefCtrl> MakeController(int layout, int checkIds);

// Seconds of the baseline: one count of the line ends of bytes in memory,
// the best of several.
double BaselineSeconds(const std::string& bytes);
// Seconds of the I/O floor: open the file, read it into a fresh buffer and
// count its line ends, the best of several.
double IoFloorSeconds(const std::string& path);

#endif  // DEVDEF_BENCH_BENCH_SUPPORT_H_
