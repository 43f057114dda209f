// A small host: reads a definition file, walks the catalogue, finds a
// definition by id and prints its package name.
#include <devdef/devdef.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  KCDeviceDefCtrl ctrl("", 5, TRUE);
  if (!ctrl.ReadDefFile(argv[1], true)) return 1;
  int devices = 0;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (manuf.m_pDeviceList != nullptr) devices += manuf.m_pDeviceList->GetCount();
    }
  }
  DEVICE_ITEM* device = nullptr;
  int index = -1;
  if (!ctrl.FindDeviceItem(std::atoi(argv[2]), nullptr, nullptr, nullptr, &index, &device, nullptr)) return 1;
  std::printf("%d devices; %s: %s (%d packages)\n", devices, device->GetDeviceName(), device->GetDevicePackage(index),
              DEVICE_ITEM::m_PackageList.GetSize());
  return 0;
}
