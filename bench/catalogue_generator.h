// A deterministic generator of realistic definition files for benchmarks:
// kinds, manufacturers and devices with definitions of all generations,
// adapters and texts, and header lists of realistic size.
#ifndef DEVDEF_BENCH_CATALOGUE_GENERATOR_H_
#define DEVDEF_BENCH_CATALOGUE_GENERATOR_H_

#include <cstddef>
#include <cstdint>
#include <string>

// The text of a file of the given layout (1, 2 or 7) of about targetBytes
// bytes. The same arguments always give the same bytes. Layout 2 texts open
// with the seven numbers that the conversion takes.
std::string GenerateCatalogue(int layout, size_t targetBytes, std::uint32_t seed = 1);

// Files that put all their bytes into one kind of input, each of about
// targetBytes bytes:
enum class InputShape {
  kNumbers,      // layout 1: one definition line with that many adapter numbers
  kName,         // layout 1: one device name
  kText,         // layout 1: the text of one definition
  kDevices,      // layout 1: devices without definitions
  kLists,        // layout 1: the three header lists, each on one line
  kDefinitions,  // layout 7: one device with that many definitions
  kHousings,     // layout 7: one housing line of a device
  kCrLines,      // layout 1: a catalogue whose lines end in CR alone
};
const char* ShapeName(InputShape shape);
int ShapeLayout(InputShape shape);
std::string GenerateShape(InputShape shape, size_t targetBytes);

#endif  // DEVDEF_BENCH_CATALOGUE_GENERATOR_H_
