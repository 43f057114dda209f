// Shared pieces of the fuzz targets: the input as a file, silent message
// boxes, and a drive of the whole library over a catalogue that was read.
#ifndef DEVDEF_FUZZ_FUZZ_SUPPORT_H_
#define DEVDEF_FUZZ_FUZZ_SUPPORT_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "devdef/devdef.h"

// Stops the process (a finding) when a property does not hold.
#define DEVDEF_FUZZ_CHECK(condition) \
  do {                               \
    if (!(condition)) DevdefFuzzFail(#condition, __FILE__, __LINE__); \
  } while (0)

[[noreturn]] void DevdefFuzzFail(const char* pszWhat, const char* pszFile, int nLine);

// A directory of this process for the input file and the device list export;
// ends with "/". Message boxes are answered silently from the first call on.
const std::string& DevdefFuzzDir();

// Writes the bytes to this process's input file and returns its path.
std::string DevdefFuzzInputFile(const uint8_t* pData, size_t nSize);

// The bytes that WriteDefFile (or, with bConvert, the conversion) writes.
std::string DevdefFuzzWritten(KCDeviceDefCtrl& ctrl, bool bConvert, int* pResult = nullptr);

// Drives every operation of the library over what ctrl read: the visible
// definitions, the look-ups, the lists, the names, the writers and, with
// pV3 (the same controller as a layout 7 one), the device list export.
// Checks that none of them changes what the writer writes, then empties the
// catalogue.
void DevdefFuzzDriveCatalogue(KCDeviceDefCtrl& ctrl, KCDeviceDefCtrlV3* pV3);

#endif  // DEVDEF_FUZZ_FUZZ_SUPPORT_H_
