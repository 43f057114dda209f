// Walking the catalogue in walk order with each device's kind and
// manufacturer at hand.
#ifndef DEVDEF_TOOLS_CATALOGUE_WALK_H_
#define DEVDEF_TOOLS_CATALOGUE_WALK_H_

#include "devdef/catalogue/catalogue_walk.h"
#include "devdef/devdef.h"

// Calls visit(kind, manufacturer, device) for every device.
template <class Visit>
void ForEachDevice(KCDeviceDefCtrl& ctrl, Visit visit) {
  DevdefWalkDevices(ctrl.getDeviceList(), [&visit](const DevdefDevicePlace& place) {
    visit(place.kind, place.manuf, place.device);
    return false;
  });
}

#endif  // DEVDEF_TOOLS_CATALOGUE_WALK_H_
