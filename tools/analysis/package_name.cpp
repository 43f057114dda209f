#include "tools/analysis/package_name.h"

const char* PackageNameOf(DEVICE_KVRXDEF_ITEM& def) {
  static DEVICE_ITEM single;
  if (single.m_DefArray.GetSize() != 1) single.m_DefArray.SetSize(1);
  single.m_DefArray[0] = def;
  return single.GetDevicePackage(0);
}
