// Reads arbitrary bytes as a definition file with the controller of one
// layout (DEVDEF_FUZZ_LAYOUT: 1, 2 or 7), with and without the duplicate-id
// check, then drives the whole library over what was read.
#include "fuzz/fuzz_support.h"

#ifndef DEVDEF_FUZZ_LAYOUT
#error "DEVDEF_FUZZ_LAYOUT must be 1, 2 or 7"
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const std::string path = DevdefFuzzInputFile(pData, nSize);
  // The first byte picks the generation in force and the id check, so both
  // settings are explored from the same corpus.
  const int nKvrType = nSize > 0 ? 3 + (pData[0] & 3) : 5;
  const int bCheckIds = nSize > 0 ? (pData[0] >> 2) & 1 : 0;
#if DEVDEF_FUZZ_LAYOUT == 1
  KCDeviceDefCtrl ctrl(DevdefFuzzDir().c_str(), nKvrType, bCheckIds);
  KCDeviceDefCtrlV3* pV3 = nullptr;
#elif DEVDEF_FUZZ_LAYOUT == 2
  KCDeviceDefCtrlV2 ctrl(DevdefFuzzDir().c_str(), nKvrType, bCheckIds);
  KCDeviceDefCtrlV3* pV3 = nullptr;
#else
  KCDeviceDefCtrlV3 ctrl(DevdefFuzzDir().c_str(), nKvrType, bCheckIds, nullptr);
  KCDeviceDefCtrlV3* pV3 = &ctrl;
#endif
  const int result = ctrl.ReadDefFile(path.c_str(), true);
  DEVDEF_FUZZ_CHECK(result == 0 || result == 1);
  DevdefFuzzDriveCatalogue(ctrl, pV3);
  return 0;
}
