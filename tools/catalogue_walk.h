// Walking the catalogue in walk order with each device's kind and
// manufacturer at hand.
#ifndef DEVDEF_TOOLS_CATALOGUE_WALK_H_
#define DEVDEF_TOOLS_CATALOGUE_WALK_H_

#include "devdef/devdef.h"

// Calls visit(kind, manufacturer, device) for every device.
template <class Visit>
void ForEachDevice(KCDeviceDefCtrl& ctrl, Visit visit) {
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (manuf.m_pDeviceList == nullptr) continue;
      for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
        visit(kind, manuf, manuf.m_pDeviceList->GetNext(d));
      }
    }
  }
}

#endif  // DEVDEF_TOOLS_CATALOGUE_WALK_H_
