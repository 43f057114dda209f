#include "tools/output/catalogue_json.h"

#include <cstring>

#include "tools/analysis/package_name.h"

namespace {

// A numbered entry of a header list: {"name", "number"}, the name null when
// the list has no entry of that number.
void WriteNamed(JsonWriter& writer, unsigned number, const char* name) {
  writer.BeginObject();
  if (name != nullptr) {
    WriteShownText(writer, "name", name, std::strlen(name));
  } else {
    writer.Key("name");
    writer.Null();
  }
  writer.Key("number");
  writer.Unsigned(number);
  writer.EndObject();
}

void WriteMarks(JsonWriter& writer, DWORD flags) {
  writer.Key("marks");
  writer.BeginArray();
  if (flags & 1) writer.String("0xB0");
  if (flags & 2) writer.String("0xDF");
  writer.EndArray();
}

void WriteNameList(JsonWriter& writer, const CStringArray& list) {
  writer.BeginArray();
  for (int i = 0; i < list.GetSize(); ++i) WriteNamed(writer, static_cast<unsigned>(i), list[i]);
  writer.EndArray();
}

void WriteLine(JsonWriter& writer, const Analysis& analysis, ByteSpan place) {
  writer.Key("line");
  writer.Signed(analysis.Map().PointOf(place.begin).line);
}

// The definition at index, which is the visible-th visible one of its
// device, or hidden when visible is -1.
void WriteDefinitionAt(JsonWriter& writer, const Analysis& analysis, std::uint32_t device, int index, int visible) {
  const std::uint32_t record = analysis.Devices()[device].firstDefinition + static_cast<std::uint32_t>(index);
  DEVICE_KVRXDEF_ITEM& def = analysis.DefinitionOf(record);
  writer.BeginObject();
  writer.Key("adapters");
  writer.BeginArray();
  for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
    WriteNamed(writer, def.m_AdapterIds[i], DEVICE_ITEM::GetAdapterName(def.m_AdapterIds[i]));
  }
  writer.EndArray();
  writer.Key("generation");
  writer.Unsigned(def.m_KvrType);
  writer.Key("hidden");
  writer.Bool(def.IsHidden());
  writer.Key("id");
  writer.Unsigned(def.m_DefID);
  WriteLine(writer, analysis, analysis.Definitions()[record].line);
  WriteMarks(writer, def.m_MarkFlags);
  writer.Key("module");
  WriteNamed(writer, def.m_ModulId, DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId)));
  const char* packageName = visible >= 0 ? PackageNameOf(def) : nullptr;
  if (packageName != nullptr) {
    WriteShownText(writer, "package_name", packageName, std::strlen(packageName));
  } else {
    writer.Key("package_name");
    writer.Null();
  }
  writer.Key("packages");
  writer.BeginArray();
  for (int i = 0; i < def.m_PackageIds.GetSize(); ++i) {
    WriteNamed(writer, def.m_PackageIds[i], DEVICE_ITEM::GetPackageName(def.m_PackageIds[i]));
  }
  writer.EndArray();
  WriteShownText(writer, "text", def.m_DefLine);
  writer.Key("values");
  writer.BeginArray();
  for (DWORD value : def.m_DefValues) writer.Signed(static_cast<int>(value));
  writer.EndArray();
  writer.Key("visible_index");
  if (visible >= 0) {
    writer.Signed(visible);
  } else {
    writer.Null();
  }
  writer.EndObject();
}

}  // namespace

void WriteKind(JsonWriter& writer, const Analysis& analysis, std::uint32_t kind,
               const std::function<void()>& manufacturers) {
  const KindRecord& record = analysis.Kinds()[kind];
  writer.BeginObject();
  WriteLine(writer, analysis, record.name);
  if (manufacturers) {
    writer.Key("manufacturers");
    manufacturers();
  }
  WriteShownText(writer, "name", record.kind->m_Name);
  writer.EndObject();
}

void WriteManufacturer(JsonWriter& writer, const Analysis& analysis, std::uint32_t manufacturer,
                       const std::function<void()>& devices) {
  const ManufacturerRecord& record = analysis.Manufacturers()[manufacturer];
  writer.BeginObject();
  if (devices) {
    writer.Key("devices");
    devices();
  }
  WriteLine(writer, analysis, record.name);
  WriteShownText(writer, "name", record.manufacturer->m_Name);
  writer.EndObject();
}

void WriteDefinition(JsonWriter& writer, const Analysis& analysis, std::uint32_t device, int index) {
  const DEVICE_ITEM& item = *analysis.Devices()[device].device;
  int visible = -1;
  if (!item.m_DefArray[index].IsHidden()) {
    visible = 0;
    for (int i = 0; i < index; ++i) {
      if (!item.m_DefArray[i].IsHidden()) ++visible;
    }
  }
  WriteDefinitionAt(writer, analysis, device, index, visible);
}

void WriteDevice(JsonWriter& writer, const Analysis& analysis, std::uint32_t device) {
  const DeviceRecord& at = analysis.Devices()[device];
  DEVICE_ITEM& item = *at.device;
  writer.BeginObject();
  writer.Key("definitions");
  writer.BeginArray();
  int visible = 0;
  for (int i = 0; i < item.m_DefArray.GetSize(); ++i) {
    const bool hidden = item.m_DefArray[i].IsHidden();
    WriteDefinitionAt(writer, analysis, device, i, hidden ? -1 : visible);
    if (!hidden) ++visible;
  }
  writer.EndArray();
  writer.Key("housings");
  writer.BeginArray();
  for (int i = 0; i < item.m_HousingIds.GetSize(); ++i) {
    WriteNamed(writer, item.m_HousingIds[i], DEVICE_ITEM::GetPackageName(item.m_HousingIds[i]));
  }
  writer.EndArray();
  writer.Key("kind");
  WriteKind(writer, analysis, analysis.Manufacturers()[at.manufacturer].kind);
  WriteLine(writer, analysis, at.name);
  writer.Key("manufacturer");
  WriteManufacturer(writer, analysis, at.manufacturer);
  WriteMarks(writer, item.m_DeviceFlags);
  WriteShownText(writer, "name", item.m_DeviceName);
  writer.Key("visible_definitions");
  writer.Signed(item.GetNumDevDefs());
  writer.EndObject();
}

void WriteDevices(JsonWriter& writer, const Analysis& analysis, const std::vector<std::uint32_t>& devices) {
  writer.BeginArray();
  for (std::uint32_t device : devices) WriteDevice(writer, analysis, device);
  writer.EndArray();
}

std::vector<DocumentField> DevicesFields(const Analysis& analysis, const char* key,
                                         const std::vector<std::uint32_t>& devices,
                                         const std::vector<std::uint32_t>& candidates) {
  std::vector<DocumentField> fields;
  fields.push_back({key, [&analysis, &devices](JsonWriter& out) { WriteDevices(out, analysis, devices); }});
  if (devices.empty()) {
    fields.push_back({"candidates", [&analysis, &candidates](JsonWriter& out) { WriteDevices(out, analysis, candidates); }});
  }
  return fields;
}

void WriteTreeDocument(JsonWriter& writer, const Analysis& analysis) {
  const auto kinds = [&analysis](JsonWriter& out) {
    out.BeginArray();
    for (std::uint32_t k = 0; k < analysis.Kinds().size(); ++k) {
      const KindRecord& kind = analysis.Kinds()[k];
      WriteKind(out, analysis, k, [&] {
        out.BeginArray();
        for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
          const ManufacturerRecord& manufacturer = analysis.Manufacturers()[m];
          WriteManufacturer(out, analysis, m, [&] {
            out.BeginArray();
            for (std::uint32_t d = manufacturer.firstDevice; d < manufacturer.firstDevice + manufacturer.deviceCount;
                 ++d) {
              WriteDevice(out, analysis, d);
            }
            out.EndArray();
          });
        }
        out.EndArray();
      });
    }
    out.EndArray();
  };
  WriteDocument(writer, analysis,
                {{"packages", [](JsonWriter& out) { WriteNameList(out, DEVICE_ITEM::m_PackageList); }},
                 {"adapters", [](JsonWriter& out) { WriteNameList(out, DEVICE_ITEM::m_AdapterList); }},
                 {"modules", [](JsonWriter& out) { WriteNameList(out, DEVICE_ITEM::m_ModulList); }},
                 {"kinds", kinds}});
}
