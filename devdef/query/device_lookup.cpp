#include "devdef/catalogue/catalogue_walk.h"
#include "devdef/catalogue/device_def_ctrl.h"

typedef CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&> DevdefManufList;
typedef CList<DEVICE_ITEM, DEVICE_ITEM&> DevdefDeviceList;

int KCDeviceDefCtrl::FindDeviceItem(int nId, POSITION* pKindPos, POSITION* pManufPos, POSITION* pDevicePos,
                                    int* pIndex, DEVICE_ITEM** ppDevice, DEVICE_KVRXDEF_ITEM** ppDef) {
  // Outputs are written only on a hit. The id is compared as a 32-bit
  // value: -1 finds 4294967295.
  return DevdefWalkDevices(m_DeviceList, [&](const DevdefDevicePlace& place) {
    const int index = place.device.FindDefID(static_cast<DWORD>(nId));
    if (index < 0) return false;
    if (pKindPos != nullptr) *pKindPos = place.kindPos;
    if (pManufPos != nullptr) *pManufPos = place.manufPos;
    if (pDevicePos != nullptr) *pDevicePos = place.devicePos;
    if (pIndex != nullptr) *pIndex = index;
    if (ppDevice != nullptr) *ppDevice = &place.device;
    if (ppDef != nullptr) *ppDef = &place.device.GetDeviceXItemRef(index);
    return true;
  }) ? 1 : 0;
}

int KCDeviceDefCtrl::FindDeviceItem(_TREEITEM* hTree, POSITION& kindPos, POSITION& manufPos,
                                    POSITION& devicePos, int* pIndex) {
  // The caller's positions are the walking positions: they move even when
  // nothing is found.
  kindPos = m_DeviceList.GetHeadPosition();
  if (kindPos == nullptr) return 0;
  for (int k = 0; k < m_DeviceList.GetCount(); ++k) {
    TAG_KIND_OF_DEVICE& kind = m_DeviceList.GetAt(kindPos);
    if (kind.m_pManufList != nullptr) {
      manufPos = kind.m_pManufList->GetHeadPosition();
      for (int m = 0; m < kind.m_pManufList->GetCount(); ++m) {
        TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetAt(manufPos);
        if (manuf.m_pDeviceList != nullptr) {
          devicePos = manuf.m_pDeviceList->GetHeadPosition();
          for (int d = 0; d < manuf.m_pDeviceList->GetCount(); ++d) {
            DEVICE_ITEM& device = manuf.m_pDeviceList->GetAt(devicePos);
            const int index = device.FindHTree(hTree);
            if (index >= 0) {
              if (pIndex != nullptr) *pIndex = index;
              return 1;
            }
            manuf.m_pDeviceList->GetNext(devicePos);
          }
        }
        kind.m_pManufList->GetNext(manufPos);
      }
    }
    m_DeviceList.GetNext(kindPos);
  }
  return 0;
}

DEVICE_ITEM* KCDeviceDefCtrl::GetDeviceItem(POSITION kindPos, POSITION manufPos, POSITION devicePos) {
  // Null or stale positions are the caller's to avoid; null ones give null
  // here rather than a crash.
  if (kindPos == nullptr || manufPos == nullptr || devicePos == nullptr) return nullptr;
  TAG_KIND_OF_DEVICE& kind = m_DeviceList.GetAt(kindPos);
  if (kind.m_pManufList == nullptr) return nullptr;
  TAG_DEVICE_MANUF& manuf = DevdefManufList::GetAtPosition(manufPos);
  if (manuf.m_pDeviceList == nullptr) return nullptr;
  return &DevdefDeviceList::GetAtPosition(devicePos);
}
