#include "tools/catalogue_json.h"

#include <cstring>

#include "tools/utf8_text.h"

using nlohmann::json;

namespace {

json Named(unsigned number, const char* name) {
  return json{{"number", number}, {"name", name != nullptr ? json(ToUtf8(name, std::strlen(name))) : json(nullptr)}};
}

json Marks(DWORD flags) {
  json marks = json::array();
  if (flags & 1) marks.push_back("0xB0");
  if (flags & 2) marks.push_back("0xDF");
  return marks;
}

json NameList(const CStringArray& list) {
  json names = json::array();
  for (int i = 0; i < list.GetSize(); ++i) names.push_back(ToUtf8(list[i]));
  return names;
}

// The definition at index, which is the visible-th visible one of its
// device, or hidden when visible is -1.
json DefinitionAt(const Analysis& analysis, DEVICE_ITEM& device, int index, int visible) {
  DEVICE_KVRXDEF_ITEM& def = device.m_DefArray[index];
  json packages = json::array();
  for (int i = 0; i < def.m_PackageIds.GetSize(); ++i) {
    packages.push_back(Named(def.m_PackageIds[i], DEVICE_ITEM::GetPackageName(def.m_PackageIds[i])));
  }
  json adapters = json::array();
  for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
    adapters.push_back(Named(def.m_AdapterIds[i], DEVICE_ITEM::GetAdapterName(def.m_AdapterIds[i])));
  }
  json values = json::array();
  for (DWORD value : def.m_DefValues) values.push_back(static_cast<int>(value));
  json packageName = nullptr;
  if (visible >= 0) {
    const char* name = device.GetDevicePackage(visible);
    if (name != nullptr) packageName = ToUtf8(name, std::strlen(name));
  }
  const TextRange* place = analysis.DefinitionPlace(device, index);
  return json{
      {"id", static_cast<unsigned>(def.m_DefID)},
      {"generation", static_cast<unsigned>(def.m_KvrType)},
      {"hidden", static_cast<bool>(def.IsHidden())},
      {"visible_index", visible >= 0 ? json(visible) : json(nullptr)},
      {"packages", packages},
      {"package_name", packageName},
      {"module", Named(def.m_ModulId, DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId)))},
      {"adapters", adapters},
      {"values", values},
      {"text", ToUtf8(def.m_DefLine)},
      {"marks", Marks(def.m_MarkFlags)},
      {"line", place != nullptr ? json(place->start.line) : json(nullptr)},
  };
}

}  // namespace

json DeviceLine(const Analysis& analysis, const DEVICE_ITEM& device) {
  const DevicePlace* place = analysis.PlaceOf(device);
  return place != nullptr ? json(place->name.start.line) : json(nullptr);
}

json DefinitionJson(const Analysis& analysis, DEVICE_ITEM& device, int index) {
  int visible = -1;
  if (!device.m_DefArray[index].IsHidden()) {
    visible = 0;
    for (int i = 0; i < index; ++i) {
      if (!device.m_DefArray[i].IsHidden()) ++visible;
    }
  }
  return DefinitionAt(analysis, device, index, visible);
}

json DeviceJson(const Analysis& analysis, TAG_KIND_OF_DEVICE& kind, TAG_DEVICE_MANUF& manuf, DEVICE_ITEM& device) {
  json housings = json::array();
  for (int i = 0; i < device.m_HousingIds.GetSize(); ++i) {
    housings.push_back(Named(device.m_HousingIds[i], DEVICE_ITEM::GetPackageName(device.m_HousingIds[i])));
  }
  json definitions = json::array();
  int visible = 0;
  for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
    const bool hidden = device.m_DefArray[i].IsHidden();
    definitions.push_back(DefinitionAt(analysis, device, i, hidden ? -1 : visible));
    if (!hidden) ++visible;
  }
  return json{
      {"kind", ToUtf8(kind.m_Name)},
      {"manufacturer", ToUtf8(manuf.m_Name)},
      {"name", ToUtf8(device.m_DeviceName)},
      {"line", DeviceLine(analysis, device)},
      {"marks", Marks(device.m_DeviceFlags)},
      {"housings", housings},
      {"visible_definitions", device.GetNumDevDefs()},
      {"definitions", definitions},
  };
}

json TreeJson(Analysis& analysis) {
  json kinds = json::array();
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& list = analysis.Controller().getDeviceList();
  for (POSITION k = list.GetHeadPosition(); k != nullptr;) {
    TAG_KIND_OF_DEVICE& kind = list.GetNext(k);
    json manufacturers = json::array();
    if (kind.m_pManufList != nullptr) {
      for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
        TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
        json devices = json::array();
        if (manuf.m_pDeviceList != nullptr) {
          for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
            devices.push_back(DeviceJson(analysis, kind, manuf, manuf.m_pDeviceList->GetNext(d)));
          }
        }
        manufacturers.push_back(json{{"name", ToUtf8(manuf.m_Name)}, {"devices", devices}});
      }
    }
    kinds.push_back(json{{"name", ToUtf8(kind.m_Name)}, {"manufacturers", manufacturers}});
  }
  return json{
      {"layout", analysis.Layout()},
      {"packages", NameList(DEVICE_ITEM::m_PackageList)},
      {"adapters", NameList(DEVICE_ITEM::m_AdapterList)},
      {"modules", NameList(DEVICE_ITEM::m_ModulList)},
      {"kinds", kinds},
  };
}
