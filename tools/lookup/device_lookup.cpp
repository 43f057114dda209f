#include "tools/lookup/device_lookup.h"

#include <algorithm>

#include "devdef/catalogue/catalogue_walk.h"
#include "tools/lookup/closest_names.h"
#include "tools/text/text_encoding.h"

namespace {

DeviceAt At(const DevdefDevicePlace& place) {
  return DeviceAt{place.kindPos, place.manufPos, &place.kind, &place.manuf, &place.device};
}

// name decoded into the reused buffer text.
const std::string& Decode(const CString& name, std::string* text) {
  text->clear();
  AppendDecoded(ShownEncoding(), static_cast<LPCTSTR>(name), static_cast<size_t>(name.GetLength()), text);
  return *text;
}

}  // namespace

DeviceLookup LookUpDevices(KCDeviceDefCtrl& ctrl, const NamePattern& pattern, bool allFields, size_t closestCount) {
  DeviceLookup found;
  std::vector<DeviceAt> equal;
  std::vector<DeviceAt> all;  // every device, for the closest
  const bool suggest = !pattern.HasWildcards() && closestCount > 0;
  ClosestNames closest(pattern.Argument(), suggest ? closestCount : 0);
  std::string text;
  // The kind's and manufacturer's verdicts, decided once for each.
  const TAG_KIND_OF_DEVICE* kind = nullptr;
  const TAG_DEVICE_MANUF* manuf = nullptr;
  bool kindEquals = false, kindMatches = false, manufEquals = false, manufMatches = false;
  DevdefWalkDevices(ctrl.getDeviceList(), [&](const DevdefDevicePlace& place) {
    if (allFields && kind != &place.kind) {
      kind = &place.kind;
      kindEquals = pattern.Equals(Decode(place.kind.m_Name, &text));
      kindMatches = pattern.Matches(text);
    }
    if (allFields && manuf != &place.manuf) {
      manuf = &place.manuf;
      manufEquals = pattern.Equals(Decode(place.manuf.m_Name, &text));
      manufMatches = pattern.Matches(text);
    }
    const std::string& name = Decode(place.device.m_DeviceName, &text);
    if (pattern.Equals(name) || kindEquals || manufEquals) {
      equal.push_back(At(place));
    } else if (equal.empty() && (pattern.Matches(name) || kindMatches || manufMatches)) {
      found.matches.push_back(At(place));
    }
    if (suggest && equal.empty() && found.matches.empty()) {
      closest.Offer(name, all.size());
      all.push_back(At(place));
    }
    return false;
  });
  if (!equal.empty()) {
    found.matches = std::move(equal);
  } else if (found.matches.empty()) {
    for (size_t id : closest.Ids()) found.closest.push_back(all[id]);
  }
  return found;
}

bool FindVisibleDefinition(KCDeviceDefCtrl& ctrl, std::uint32_t id, DeviceAt* at, int* index) {
  POSITION posKind = nullptr;
  POSITION posManuf = nullptr;
  DEVICE_ITEM* device = nullptr;
  DEVICE_KVRXDEF_ITEM* def = nullptr;
  if (!ctrl.FindDeviceItem(static_cast<int>(id), &posKind, &posManuf, nullptr, nullptr, &device, &def)) return false;
  for (int i = 0; i < device->m_DefArray.GetSize(); ++i) {
    if (&device->m_DefArray[i] != def) continue;
    *at = DeviceAt{posKind, posManuf, &ctrl.getDeviceList().GetAt(posKind),
                   &CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf), device};
    *index = i;
    return true;
  }
  return false;
}

std::vector<DeviceAt> DevicesWithId(KCDeviceDefCtrl& ctrl, std::uint32_t id) {
  std::vector<DeviceAt> devices;
  DevdefWalkDevices(ctrl.getDeviceList(), [&](const DevdefDevicePlace& place) {
    CArray<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& defs = place.device.m_DefArray;
    for (int i = 0; i < defs.GetSize(); ++i) {
      if (static_cast<std::uint32_t>(defs[i].m_DefID) == id) {
        devices.push_back(At(place));
        break;
      }
    }
    return false;
  });
  return devices;
}

std::vector<unsigned> HiddenGenerations(const std::vector<DeviceAt>& devices, bool anyId, std::uint32_t id) {
  std::vector<unsigned> generations;
  for (const DeviceAt& at : devices) {
    for (int i = 0; i < at.device->m_DefArray.GetSize(); ++i) {
      const DEVICE_KVRXDEF_ITEM& def = at.device->m_DefArray[i];
      if (!def.IsHidden() || (!anyId && static_cast<std::uint32_t>(def.m_DefID) != id)) continue;
      const unsigned generation = def.m_KvrType;
      if (std::find(generations.begin(), generations.end(), generation) == generations.end()) {
        generations.push_back(generation);
      }
    }
  }
  return generations;
}
