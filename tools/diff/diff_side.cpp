#include "tools/diff/diff_side.h"

#include "devdef/reader/read_observer.h"
#include "tools/analysis/number_look.h"

namespace {

DiffValue Marks(DWORD flags) {
  std::vector<DiffValue> marks;
  if (flags & 1) marks.push_back(DiffValue::Text("0xB0"));
  if (flags & 2) marks.push_back(DiffValue::Text("0xDF"));
  return DiffValue::List(std::move(marks));
}

}  // namespace

std::string Bytes(const CString& text) {
  return std::string(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}

std::vector<std::string> PathOf(const DeviceRef& ref) { return {Bytes(ref.kind->m_Name), Bytes(ref.manuf->m_Name)}; }

std::string NameOf(const DeviceRef& ref) { return Bytes(ref.device->m_DeviceName); }

DiffSide::DiffSide(Analysis& analysis, bool visibleOnly) : m_a(analysis), m_visibleOnly(visibleOnly) {
  for (const KindRecord& kind : analysis.Kinds()) {
    const std::string kindKey = Bytes(kind.kind->m_Name) + '\0';
    if (m_kinds.emplace(kindKey, Line(kind.name)).second) m_kindOrder.push_back(kind.kind);
    for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
      const ManufacturerRecord& manuf = analysis.Manufacturers()[m];
      const std::string manufKey = kindKey + Bytes(manuf.manufacturer->m_Name) + '\0';
      if (m_manufacturers.emplace(manufKey, Line(manuf.name)).second) {
        m_manufOrder.emplace_back(kind.kind, manuf.manufacturer);
      }
      for (std::uint32_t d = manuf.firstDevice; d < manuf.firstDevice + manuf.deviceCount; ++d) {
        DEVICE_ITEM* device = analysis.Devices()[d].device;
        const std::string key = manufKey + Bytes(device->m_DeviceName) + '\0';
        m_byKey[key].push_back(m_devices.size());
        m_devices.push_back(DeviceRef{kind.kind, manuf.manufacturer, device, d, key});
      }
    }
  }
}

const std::vector<size_t>* DiffSide::DevicesAt(const std::string& key) const {
  auto found = m_byKey.find(key);
  return found != m_byKey.end() ? &found->second : nullptr;
}

std::vector<int> DiffSide::Definitions(DEVICE_ITEM& device) const {
  std::vector<int> indexes;
  for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
    if (!m_visibleOnly || !device.m_DefArray[i].IsHidden()) indexes.push_back(i);
  }
  return indexes;
}

DiffValue DiffSide::Named(int list, unsigned number) const {
  const std::vector<std::string>& names = m_a.ListNames(list);
  return DiffValue::Text(number < names.size() ? names[number] : "#" + std::to_string(number));
}

DiffValue DiffSide::NamedList(int list, const CWordArray& numbers) const {
  std::vector<DiffValue> names;
  for (int i = 0; i < numbers.GetSize(); ++i) names.push_back(Named(list, numbers[i]));
  return DiffValue::List(std::move(names));
}

std::vector<DiffField> DiffSide::Fields(DEVICE_KVRXDEF_ITEM& def) const { return FieldsOf(def, nullptr); }

std::vector<DiffField> DiffSide::LineFields(const DeviceRef& ref, int index) {
  // The values the line holds, as its layout's line reader reads it again.
  bool held[11] = {};
  const std::uint32_t record = m_a.Devices()[ref.record].firstDefinition + static_cast<std::uint32_t>(index);
  for (const FieldRecord& field : m_a.Fields(record)) {
    if (field.field == kDevdefFieldValue && field.index >= 0 && field.index < 11) held[field.index] = true;
  }
  return FieldsOf(ref.device->m_DefArray[index], held);
}

std::vector<DiffField> DiffSide::FieldsOf(DEVICE_KVRXDEF_ITEM& def, const bool* held) const {
  std::vector<DiffField> fields = {
      {"generation", DiffValue::Number(def.m_KvrType)},
      {"packages", NamedList(0, def.m_PackageIds)},
      {"module", Named(2, def.m_ModulId)},
      {"adapters", NamedList(1, def.m_AdapterIds)},
  };
  for (int i = 0; i < 11; ++i) {
    if (held != nullptr && !held[i]) continue;
    fields.emplace_back(FieldName(kDevdefFieldValue, i), DiffValue::Number(static_cast<unsigned>(def.m_DefValues[i])));
  }
  fields.emplace_back("text", DiffValue::Text(Bytes(def.m_DefLine)));
  DiffValue marks = Marks(def.m_MarkFlags);
  if (held == nullptr || !marks.items.empty()) fields.emplace_back("marks", std::move(marks));
  return fields;
}

std::vector<DiffField> DiffSide::DeviceFields(const DeviceRef& ref, bool withEmpty) const {
  std::vector<DiffField> fields = {{"marks", Marks(ref.device->m_DeviceFlags)},
                                   {"housings", NamedList(0, ref.device->m_HousingIds)}};
  if (withEmpty) return fields;
  std::vector<DiffField> given;
  for (DiffField& field : fields) {
    if (!field.second.items.empty()) given.push_back(std::move(field));
  }
  return given;
}

std::string DiffSide::Signature(DEVICE_ITEM& device) const {
  std::string signature;
  for (int i : Definitions(device)) {
    signature += std::to_string(device.m_DefArray[i].m_DefID);
    for (const DiffField& field : Fields(device.m_DefArray[i])) signature += '\0' + field.second.Literal();
    signature += '\n';
  }
  return signature;
}

long DiffSide::DeviceLine(const DeviceRef& ref) const { return Line(m_a.Devices()[ref.record].name); }

long DiffSide::DefinitionLine(const DeviceRef& ref, int index) const {
  return Line(m_a.Definitions()[m_a.Devices()[ref.record].firstDefinition + static_cast<std::uint32_t>(index)].line);
}

long DiffSide::EntryLine(int list, long number) const {
  const std::vector<ByteSpan>& entries = m_a.ListEntries(list);
  return number >= 0 && static_cast<size_t>(number) < entries.size() ? Line(entries[static_cast<size_t>(number)]) : 0;
}
