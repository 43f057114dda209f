// The walk over every device of a catalogue in walk order: kinds in list
// order, within a kind its manufacturers, within a manufacturer its devices.
// Null lists are passed over and every list is walked by its count.
#ifndef DEVDEF_CATALOGUE_CATALOGUE_WALK_H_
#define DEVDEF_CATALOGUE_CATALOGUE_WALK_H_

#include "devdef/catalogue/catalogue_tags.h"
#include "devdef/catalogue/device_item.h"
#include "devdef/platform/clist.h"

// A device with where it stands.
struct DevdefDevicePlace {
  POSITION kindPos;
  POSITION manufPos;
  POSITION devicePos;
  TAG_KIND_OF_DEVICE& kind;
  TAG_DEVICE_MANUF& manuf;
  DEVICE_ITEM& device;
};

// Calls visit(place) for each device until it returns true; returns whether
// it did.
template <class Visit>
bool DevdefWalkDevices(CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds, Visit visit) {
  POSITION posKind = kinds.GetHeadPosition();
  for (int k = 0; k < kinds.GetCount(); ++k) {
    const POSITION kindPos = posKind;
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(posKind);
    if (kind.m_pManufList == nullptr) continue;
    POSITION posManuf = kind.m_pManufList->GetHeadPosition();
    for (int m = 0; m < kind.m_pManufList->GetCount(); ++m) {
      const POSITION manufPos = posManuf;
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(posManuf);
      if (manuf.m_pDeviceList == nullptr) continue;
      POSITION posDevice = manuf.m_pDeviceList->GetHeadPosition();
      for (int d = 0; d < manuf.m_pDeviceList->GetCount(); ++d) {
        const POSITION devicePos = posDevice;
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(posDevice);
        if (visit(DevdefDevicePlace{kindPos, manufPos, devicePos, kind, manuf, device})) return true;
      }
    }
  }
  return false;
}

#endif  // DEVDEF_CATALOGUE_CATALOGUE_WALK_H_
