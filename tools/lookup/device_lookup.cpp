#include "tools/lookup/device_lookup.h"

#include <algorithm>

#include "tools/lookup/closest_names.h"
#include "tools/text/text_encoding.h"

namespace {

// name decoded into the reused buffer text.
const std::string& Decode(const CString& name, std::string* text) {
  text->clear();
  AppendDecoded(ShownEncoding(), static_cast<LPCTSTR>(name), static_cast<size_t>(name.GetLength()), text);
  return *text;
}

}  // namespace

DeviceLookup LookUpDevices(const Analysis& analysis, const NamePattern& pattern, bool allFields, size_t closestCount) {
  DeviceLookup found;
  std::vector<std::uint32_t> equal;
  const bool suggest = !pattern.HasWildcards() && closestCount > 0;
  ClosestNames closest(pattern.Argument(), suggest ? closestCount : 0);
  std::string text;
  // The kind's and manufacturer's verdicts, decided once for each.
  std::uint32_t kind = kNoRecord;
  std::uint32_t manuf = kNoRecord;
  bool kindEquals = false, kindMatches = false, manufEquals = false, manufMatches = false;
  const std::vector<DeviceRecord>& devices = analysis.Devices();
  for (std::uint32_t d = 0; d < devices.size(); ++d) {
    const DeviceRecord& device = devices[d];
    const ManufacturerRecord& manufacturer = analysis.Manufacturers()[device.manufacturer];
    if (allFields && kind != manufacturer.kind) {
      kind = manufacturer.kind;
      kindEquals = pattern.Equals(Decode(analysis.Kinds()[kind].kind->m_Name, &text));
      kindMatches = pattern.Matches(text);
    }
    if (allFields && manuf != device.manufacturer) {
      manuf = device.manufacturer;
      manufEquals = pattern.Equals(Decode(manufacturer.manufacturer->m_Name, &text));
      manufMatches = pattern.Matches(text);
    }
    const std::string& name = Decode(device.device->m_DeviceName, &text);
    if (pattern.Equals(name) || kindEquals || manufEquals) {
      equal.push_back(d);
    } else if (equal.empty() && (pattern.Matches(name) || kindMatches || manufMatches)) {
      found.matches.push_back(d);
    }
    if (suggest && equal.empty() && found.matches.empty()) closest.Offer(name, d);
  }
  if (!equal.empty()) {
    found.matches = std::move(equal);
  } else if (found.matches.empty()) {
    for (size_t id : closest.Ids()) found.closest.push_back(static_cast<std::uint32_t>(id));
  }
  return found;
}

bool FindVisibleDefinition(Analysis& analysis, std::uint32_t id, std::uint32_t* device, int* index) {
  DEVICE_ITEM* item = nullptr;
  DEVICE_KVRXDEF_ITEM* def = nullptr;
  if (!analysis.Controller().FindDeviceItem(static_cast<int>(id), nullptr, nullptr, nullptr, nullptr, &item, &def)) {
    return false;
  }
  *device = analysis.DeviceRecordOf(item);
  if (*device == kNoRecord) return false;
  for (int i = 0; i < item->m_DefArray.GetSize(); ++i) {
    if (&item->m_DefArray[i] != def) continue;
    *index = i;
    return true;
  }
  return false;
}

std::vector<std::uint32_t> DevicesWithId(const Analysis& analysis, std::uint32_t id) {
  std::vector<std::uint32_t> devices;
  const std::vector<DeviceRecord>& records = analysis.Devices();
  for (std::uint32_t d = 0; d < records.size(); ++d) {
    CArray<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& defs = records[d].device->m_DefArray;
    for (int i = 0; i < defs.GetSize(); ++i) {
      if (static_cast<std::uint32_t>(defs[i].m_DefID) == id) {
        devices.push_back(d);
        break;
      }
    }
  }
  return devices;
}

std::vector<unsigned> HiddenGenerations(const Analysis& analysis, const std::vector<std::uint32_t>& devices, bool anyId,
                                        std::uint32_t id) {
  std::vector<unsigned> generations;
  for (std::uint32_t device : devices) {
    const CArray<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& defs = analysis.Devices()[device].device->m_DefArray;
    for (int i = 0; i < defs.GetSize(); ++i) {
      const DEVICE_KVRXDEF_ITEM& def = defs[i];
      if (!def.IsHidden() || (!anyId && static_cast<std::uint32_t>(def.m_DefID) != id)) continue;
      const unsigned generation = def.m_KvrType;
      if (std::find(generations.begin(), generations.end(), generation) == generations.end()) {
        generations.push_back(generation);
      }
    }
  }
  return generations;
}
