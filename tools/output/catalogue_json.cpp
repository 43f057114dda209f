#include "tools/output/catalogue_json.h"

#include <cstring>
#include <utility>

#include "tools/output/json_document.h"
#include "tools/output/json_stream.h"

using nlohmann::json;

namespace {

// A numbered entry of a header list: {"number", "name"}, the name null when
// the list has no entry of that number.
json Named(unsigned number, const char* name) {
  json item = json{{"number", number}};
  if (name != nullptr) {
    PutShownText(item, "name", name, std::strlen(name));
  } else {
    item["name"] = nullptr;
  }
  return item;
}

json Marks(DWORD flags) {
  json marks = json::array();
  if (flags & 1) marks.push_back("0xB0");
  if (flags & 2) marks.push_back("0xDF");
  return marks;
}

json NameList(const CStringArray& list) {
  json names = json::array();
  for (int i = 0; i < list.GetSize(); ++i) names.push_back(Named(static_cast<unsigned>(i), list[i]));
  return names;
}

json LineOf(const Analysis& analysis, ByteSpan place) { return json(analysis.Map().PointOf(place.begin).line); }

// The package name of a visible definition, as its device gives it. The
// device finds a definition by its visible index with a walk over its
// definitions, so asking it for each of many would cost their number
// squared: the name is asked of a device that holds a copy of this
// definition alone.
const char* PackageNameOf(DEVICE_KVRXDEF_ITEM& def) {
  static DEVICE_ITEM single;
  if (single.m_DefArray.GetSize() != 1) single.m_DefArray.SetSize(1);
  single.m_DefArray[0] = def;
  return single.GetDevicePackage(0);
}

// The definition at index, which is the visible-th visible one of its
// device, or hidden when visible is -1.
json DefinitionAt(const Analysis& analysis, std::uint32_t device, int index, int visible) {
  const std::uint32_t record = analysis.Devices()[device].firstDefinition + static_cast<std::uint32_t>(index);
  DEVICE_KVRXDEF_ITEM& def = analysis.DefinitionOf(record);
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
  json item = json::object();
  item["id"] = static_cast<unsigned>(def.m_DefID);
  item["generation"] = static_cast<unsigned>(def.m_KvrType);
  item["hidden"] = static_cast<bool>(def.IsHidden());
  item["visible_index"] = visible >= 0 ? json(visible) : json(nullptr);
  item["packages"] = std::move(packages);
  const char* packageName = visible >= 0 ? PackageNameOf(def) : nullptr;
  if (packageName != nullptr) {
    PutShownText(item, "package_name", packageName, std::strlen(packageName));
  } else {
    item["package_name"] = nullptr;
  }
  item["module"] = Named(def.m_ModulId, DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId)));
  item["adapters"] = std::move(adapters);
  item["values"] = std::move(values);
  PutShownText(item, "text", def.m_DefLine);
  item["marks"] = Marks(def.m_MarkFlags);
  item["line"] = LineOf(analysis, analysis.Definitions()[record].line);
  return item;
}

}  // namespace

json KindJson(const Analysis& analysis, std::uint32_t kind) {
  const KindRecord& record = analysis.Kinds()[kind];
  json item = json::object();
  PutShownText(item, "name", record.kind->m_Name);
  item["line"] = LineOf(analysis, record.name);
  return item;
}

json ManufacturerJson(const Analysis& analysis, std::uint32_t manufacturer) {
  const ManufacturerRecord& record = analysis.Manufacturers()[manufacturer];
  json item = json::object();
  PutShownText(item, "name", record.manufacturer->m_Name);
  item["line"] = LineOf(analysis, record.name);
  return item;
}

json DefinitionJson(const Analysis& analysis, std::uint32_t record, int index) {
  DEVICE_ITEM& device = *analysis.Devices()[record].device;
  int visible = -1;
  if (!device.m_DefArray[index].IsHidden()) {
    visible = 0;
    for (int i = 0; i < index; ++i) {
      if (!device.m_DefArray[i].IsHidden()) ++visible;
    }
  }
  return DefinitionAt(analysis, record, index, visible);
}

json DeviceJson(const Analysis& analysis, std::uint32_t record) {
  const DeviceRecord& at = analysis.Devices()[record];
  DEVICE_ITEM& device = *at.device;
  json housings = json::array();
  for (int i = 0; i < device.m_HousingIds.GetSize(); ++i) {
    housings.push_back(Named(device.m_HousingIds[i], DEVICE_ITEM::GetPackageName(device.m_HousingIds[i])));
  }
  json definitions = json::array();
  int visible = 0;
  for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
    const bool hidden = device.m_DefArray[i].IsHidden();
    definitions.push_back(DefinitionAt(analysis, record, i, hidden ? -1 : visible));
    if (!hidden) ++visible;
  }
  json item = json::object();
  PutShownText(item, "name", device.m_DeviceName);
  item["line"] = LineOf(analysis, at.name);
  item["kind"] = KindJson(analysis, analysis.Manufacturers()[at.manufacturer].kind);
  item["manufacturer"] = ManufacturerJson(analysis, at.manufacturer);
  item["marks"] = Marks(device.m_DeviceFlags);
  item["housings"] = std::move(housings);
  item["visible_definitions"] = device.GetNumDevDefs();
  item["definitions"] = std::move(definitions);
  return item;
}

json DevicesJson(const Analysis& analysis, const std::vector<std::uint32_t>& devices) {
  json array = json::array();
  for (std::uint32_t device : devices) array.push_back(DeviceJson(analysis, device));
  return array;
}

void PrintDevicesJson(std::FILE* out, json document, const char* key, const Analysis& analysis,
                      const std::vector<std::uint32_t>& devices) {
  JsonStream stream(out);
  stream.OpenObject(std::move(document), key);
  for (std::uint32_t device : devices) stream.Element(DeviceJson(analysis, device));
  stream.CloseObject();
}

json TreeFrame(const Analysis& analysis) {
  json tree = DocumentFrame(analysis);
  tree["packages"] = NameList(DEVICE_ITEM::m_PackageList);
  tree["adapters"] = NameList(DEVICE_ITEM::m_AdapterList);
  tree["modules"] = NameList(DEVICE_ITEM::m_ModulList);
  return tree;
}

void WalkTree(const Analysis& analysis, TreeVisitor& visitor) {
  // Kinds and manufacturers without devices are part of the tree too.
  for (std::uint32_t k = 0; k < analysis.Kinds().size(); ++k) {
    const KindRecord& kind = analysis.Kinds()[k];
    visitor.Kind(KindJson(analysis, k));
    for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
      const ManufacturerRecord& manufacturer = analysis.Manufacturers()[m];
      visitor.Manufacturer(ManufacturerJson(analysis, m));
      for (std::uint32_t d = manufacturer.firstDevice; d < manufacturer.firstDevice + manufacturer.deviceCount; ++d) {
        visitor.Device(DeviceJson(analysis, d));
      }
      visitor.EndManufacturer();
    }
    visitor.EndKind();
  }
}
