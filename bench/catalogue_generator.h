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

#endif  // DEVDEF_BENCH_CATALOGUE_GENERATOR_H_
