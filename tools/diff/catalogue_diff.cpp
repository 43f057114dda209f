#include "tools/diff/catalogue_diff.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "devdef/reader/read_observer.h"
#include "tools/analysis/number_look.h"
#include "tools/diff/list_diff.h"

namespace {

const char* const kListKeywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};

std::string Bytes(const CString& text) {
  return std::string(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}

DiffValue Marks(DWORD flags) {
  std::vector<DiffValue> marks;
  if (flags & 1) marks.push_back(DiffValue::Text("0xB0"));
  if (flags & 2) marks.push_back(DiffValue::Text("0xDF"));
  return DiffValue::List(std::move(marks));
}

struct DeviceRef {
  TAG_KIND_OF_DEVICE* kind;
  TAG_DEVICE_MANUF* manuf;
  DEVICE_ITEM* device;
  std::uint32_t record;  // in the analysis
  std::string key;       // kind, manufacturer and device name, each ended by a NUL
};

// One file's catalogue, indexed for the comparison.
class Side {
 public:
  Side(Analysis& analysis, const DiffOptions& options) : m_a(analysis), m_visibleOnly(options.visibleOnly) {
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

  Analysis& File() { return m_a; }
  const std::vector<DeviceRef>& Devices() const { return m_devices; }
  const std::vector<size_t>* DevicesAt(const std::string& key) const {
    auto found = m_byKey.find(key);
    return found != m_byKey.end() ? &found->second : nullptr;
  }
  const std::unordered_map<std::string, long>& Kinds() const { return m_kinds; }
  const std::unordered_map<std::string, long>& Manufacturers() const { return m_manufacturers; }
  const std::vector<TAG_KIND_OF_DEVICE*>& KindOrder() const { return m_kindOrder; }
  const std::vector<std::pair<TAG_KIND_OF_DEVICE*, TAG_DEVICE_MANUF*>>& ManufOrder() const { return m_manufOrder; }

  // The indexes of the definitions of a device that take part.
  std::vector<int> Definitions(DEVICE_ITEM& device) const {
    std::vector<int> indexes;
    for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
      if (!m_visibleOnly || !device.m_DefArray[i].IsHidden()) indexes.push_back(i);
    }
    return indexes;
  }

  // A number by the name it has in this file's list; "#N" without one.
  DiffValue Named(int list, unsigned number) const {
    const std::vector<std::string>& names = m_a.ListNames(list);
    return DiffValue::Text(number < names.size() ? names[number] : "#" + std::to_string(number));
  }
  DiffValue NamedList(int list, const CWordArray& numbers) const {
    std::vector<DiffValue> names;
    for (int i = 0; i < numbers.GetSize(); ++i) names.push_back(Named(list, numbers[i]));
    return DiffValue::List(std::move(names));
  }

  // Every field of a definition that a change can name, in a fixed order;
  // values named as check names them (value N is values[N] of show --json).
  std::vector<std::pair<std::string, DiffValue>> Fields(DEVICE_KVRXDEF_ITEM& def) const {
    std::vector<std::pair<std::string, DiffValue>> fields = {
        {"generation", DiffValue::Number(def.m_KvrType)},
        {"packages", NamedList(0, def.m_PackageIds)},
        {"module", Named(2, def.m_ModulId)},
        {"adapters", NamedList(1, def.m_AdapterIds)},
    };
    for (int i = 0; i < 11; ++i) {
      fields.emplace_back(FieldName(kDevdefFieldValue, i), DiffValue::Number(static_cast<unsigned>(def.m_DefValues[i])));
    }
    fields.emplace_back("text", DiffValue::Text(Bytes(def.m_DefLine)));
    fields.emplace_back("marks", Marks(def.m_MarkFlags));
    return fields;
  }

  // What identifies a device's content: its definitions with names resolved.
  std::string Signature(DEVICE_ITEM& device) const {
    std::string signature;
    for (int i : Definitions(device)) {
      signature += std::to_string(device.m_DefArray[i].m_DefID);
      for (const auto& field : Fields(device.m_DefArray[i])) signature += '\0' + field.second.Literal();
      signature += '\n';
    }
    return signature;
  }

  long DeviceLine(const DeviceRef& ref) const { return Line(m_a.Devices()[ref.record].name); }
  long DefinitionLine(const DeviceRef& ref, int index) const {
    return Line(m_a.Definitions()[m_a.Devices()[ref.record].firstDefinition + static_cast<std::uint32_t>(index)].line);
  }
  // The line of the list entry of that number, or 0.
  long EntryLine(int list, int number) const {
    const std::vector<ByteSpan>& entries = m_a.ListEntries(list);
    return number >= 0 && static_cast<size_t>(number) < entries.size() ? Line(entries[static_cast<size_t>(number)]) : 0;
  }

 private:
  long Line(ByteSpan span) const { return m_a.Map().PointOf(span.begin).line; }

  Analysis& m_a;
  bool m_visibleOnly;
  std::vector<DeviceRef> m_devices;
  std::unordered_map<std::string, std::vector<size_t>> m_byKey;
  std::unordered_map<std::string, long> m_kinds;
  std::unordered_map<std::string, long> m_manufacturers;
  std::vector<TAG_KIND_OF_DEVICE*> m_kindOrder;
  std::vector<std::pair<TAG_KIND_OF_DEVICE*, TAG_DEVICE_MANUF*>> m_manufOrder;
};

std::vector<std::string> PathOf(const DeviceRef& ref) { return {Bytes(ref.kind->m_Name), Bytes(ref.manuf->m_Name)}; }

class Differ {
 public:
  Differ(Side& oldSide, Side& newSide, bool visibleOnly) : m_old(oldSide), m_new(newSide), m_visibleOnly(visibleOnly) {}

  std::vector<DiffChange> Run() {
    DiffLists();
    DiffKindsAndManufacturers();
    DiffDevices();
    return std::move(m_changes);
  }

 private:
  DiffChange& Add(DiffChange::Change change, DiffChange::What what, std::vector<std::string> path, std::string name) {
    DiffChange item;
    item.change = change;
    item.what = what;
    item.path = std::move(path);
    item.name = std::move(name);
    m_changes.push_back(std::move(item));
    return m_changes.back();
  }

  void DiffLists() {
    for (int list = 0; list < 3; ++list) {
      for (const ListEntryChange& entry : DiffList(m_old.File().ListNames(list), m_new.File().ListNames(list))) {
        const DiffChange::Change change = entry.change == ListEntryChange::Change::kAdded    ? DiffChange::Change::kAdded
                                          : entry.change == ListEntryChange::Change::kRemoved ? DiffChange::Change::kRemoved
                                                                                              : DiffChange::Change::kMoved;
        DiffChange& item = Add(change, DiffChange::What::kListEntry, {kListKeywords[list]}, entry.name);
        if (entry.oldIndex >= 0) {
          const DiffValue newNumber = entry.newIndex >= 0 ? DiffValue::Number(entry.newIndex) : DiffValue::None();
          item.fields.push_back({"number", {DiffValue::Number(entry.oldIndex), newNumber}});
          item.oldLine = m_old.EntryLine(list, entry.oldIndex);
        } else {
          item.fields.push_back({"number", {DiffValue::None(), DiffValue::Number(entry.newIndex)}});
        }
        item.newLine = m_new.EntryLine(list, entry.newIndex);
      }
    }
  }

  void DiffKindsAndManufacturers() {
    for (TAG_KIND_OF_DEVICE* kind : m_new.KindOrder()) {
      const std::string key = Bytes(kind->m_Name) + '\0';
      if (m_old.Kinds().count(key) == 0) {
        Add(DiffChange::Change::kAdded, DiffChange::What::kKind, {}, Bytes(kind->m_Name)).newLine = m_new.Kinds().at(key);
      }
    }
    for (TAG_KIND_OF_DEVICE* kind : m_old.KindOrder()) {
      const std::string key = Bytes(kind->m_Name) + '\0';
      if (m_new.Kinds().count(key) == 0) {
        Add(DiffChange::Change::kRemoved, DiffChange::What::kKind, {}, Bytes(kind->m_Name)).oldLine = m_old.Kinds().at(key);
      }
    }
    for (const auto& entry : m_new.ManufOrder()) {
      const std::string key = Bytes(entry.first->m_Name) + '\0' + Bytes(entry.second->m_Name) + '\0';
      if (m_old.Manufacturers().count(key) == 0) {
        Add(DiffChange::Change::kAdded, DiffChange::What::kManufacturer, {Bytes(entry.first->m_Name)},
            Bytes(entry.second->m_Name))
            .newLine = m_new.Manufacturers().at(key);
      }
    }
    for (const auto& entry : m_old.ManufOrder()) {
      const std::string key = Bytes(entry.first->m_Name) + '\0' + Bytes(entry.second->m_Name) + '\0';
      if (m_new.Manufacturers().count(key) == 0) {
        Add(DiffChange::Change::kRemoved, DiffChange::What::kManufacturer, {Bytes(entry.first->m_Name)},
            Bytes(entry.second->m_Name))
            .oldLine = m_old.Manufacturers().at(key);
      }
    }
  }

  void DiffDevices() {
    // Devices of one path pair in order; the rest are added or removed,
    // unless a device of the same name and content stands elsewhere.
    const std::vector<DeviceRef>& olds = m_old.Devices();
    const std::vector<DeviceRef>& news = m_new.Devices();
    std::vector<long> newPartner(news.size(), -1);
    std::vector<bool> oldPaired(olds.size(), false);
    std::unordered_map<std::string, size_t> taken;
    for (size_t i = 0; i < news.size(); ++i) {
      const std::vector<size_t>* candidates = m_old.DevicesAt(news[i].key);
      if (candidates == nullptr) continue;
      size_t& next = taken[news[i].key];
      if (next >= candidates->size()) continue;
      newPartner[i] = static_cast<long>((*candidates)[next++]);
      oldPaired[static_cast<size_t>(newPartner[i])] = true;
    }
    std::unordered_map<std::string, std::vector<size_t>> removed;  // name and content -> old devices
    for (size_t i = 0; i < olds.size(); ++i) {
      if (!oldPaired[i]) removed[Bytes(olds[i].device->m_DeviceName) + '\0' + m_old.Signature(*olds[i].device)].push_back(i);
    }
    for (auto& entry : removed) std::reverse(entry.second.begin(), entry.second.end());
    std::vector<bool> oldMoved(olds.size(), false);
    for (size_t i = 0; i < news.size(); ++i) {
      const DeviceRef& ref = news[i];
      const std::string name = Bytes(ref.device->m_DeviceName);
      if (newPartner[i] >= 0) {
        DiffDevice(olds[static_cast<size_t>(newPartner[i])], ref);
        continue;
      }
      auto moved = removed.find(name + '\0' + m_new.Signature(*ref.device));
      if (moved != removed.end() && !moved->second.empty()) {
        const DeviceRef& from = olds[moved->second.back()];
        oldMoved[moved->second.back()] = true;
        moved->second.pop_back();
        DiffChange& item = Add(DiffChange::Change::kMoved, DiffChange::What::kDevice, PathOf(ref), name);
        item.from = PathOf(from);
        item.oldLine = m_old.DeviceLine(from);
        item.newLine = m_new.DeviceLine(ref);
        continue;
      }
      Add(DiffChange::Change::kAdded, DiffChange::What::kDevice, PathOf(ref), name).newLine = m_new.DeviceLine(ref);
    }
    for (size_t i = 0; i < olds.size(); ++i) {
      if (oldPaired[i] || oldMoved[i]) continue;
      Add(DiffChange::Change::kRemoved, DiffChange::What::kDevice, PathOf(olds[i]), Bytes(olds[i].device->m_DeviceName))
          .oldLine = m_old.DeviceLine(olds[i]);
    }
  }

  void DiffDevice(const DeviceRef& was, const DeviceRef& is) {
    std::vector<std::string> path = PathOf(is);
    path.push_back(Bytes(is.device->m_DeviceName));
    // The device's own fields.
    std::vector<std::pair<std::string, std::pair<DiffValue, DiffValue>>> fields;
    const DiffValue oldMarks = Marks(was.device->m_DeviceFlags);
    const DiffValue newMarks = Marks(is.device->m_DeviceFlags);
    if (oldMarks != newMarks) fields.push_back({"marks", {oldMarks, newMarks}});
    const DiffValue oldHousings = m_old.NamedList(0, was.device->m_HousingIds);
    const DiffValue newHousings = m_new.NamedList(0, is.device->m_HousingIds);
    if (oldHousings != newHousings) fields.push_back({"housings", {oldHousings, newHousings}});
    if (!fields.empty()) {
      DiffChange& item = Add(DiffChange::Change::kChanged, DiffChange::What::kDevice, PathOf(is), path.back());
      item.fields = std::move(fields);
      item.oldLine = m_old.DeviceLine(was);
      item.newLine = m_new.DeviceLine(is);
    }
    // Most devices keep their definitions in the order of their ids: they
    // pair one by one, with no index to build.
    const int count = was.device->m_DefArray.GetSize();
    if (!m_visibleOnly && count == is.device->m_DefArray.GetSize()) {
      bool inOrder = true;
      for (int i = 0; i < count && inOrder; ++i) {
        inOrder = was.device->m_DefArray[i].m_DefID == is.device->m_DefArray[i].m_DefID;
      }
      if (inOrder) {
        for (int i = 0; i < count; ++i) DiffDefinition(path, was, i, is, i);
        return;
      }
    }
    // Definitions by id; where an id is 0 or repeats, by its place among
    // those of that id.
    const std::vector<int> olds = m_old.Definitions(*was.device);
    const std::vector<int> news = m_new.Definitions(*is.device);
    std::unordered_map<DWORD, std::vector<int>> oldById;
    for (int i : olds) oldById[was.device->m_DefArray[i].m_DefID].push_back(i);
    std::unordered_map<DWORD, size_t> taken;
    std::unordered_set<int> oldPaired;
    for (int i : news) {
      DEVICE_KVRXDEF_ITEM& def = is.device->m_DefArray[i];
      auto candidates = oldById.find(def.m_DefID);
      size_t& next = taken[def.m_DefID];
      if (candidates == oldById.end() || next >= candidates->second.size()) {
        DiffChange& item = Add(DiffChange::Change::kAdded, DiffChange::What::kDefinition, path, std::string());
        item.hasId = true;
        item.id = def.m_DefID;
        item.newLine = m_new.DefinitionLine(is, i);
        continue;
      }
      const int partner = candidates->second[next++];
      oldPaired.insert(partner);
      DiffDefinition(path, was, partner, is, i);
    }
    for (int i : olds) {
      if (oldPaired.count(i) != 0) continue;
      DiffChange& item = Add(DiffChange::Change::kRemoved, DiffChange::What::kDefinition, path, std::string());
      item.hasId = true;
      item.id = was.device->m_DefArray[i].m_DefID;
      item.oldLine = m_old.DefinitionLine(was, i);
    }
  }

  // A number of each file, compared by the names they resolve to.
  bool SameName(int list, unsigned was, unsigned is) const {
    const std::vector<std::string>& oldNames = m_old.File().ListNames(list);
    const std::vector<std::string>& newNames = m_new.File().ListNames(list);
    const bool oldNamed = was < oldNames.size();
    const bool newNamed = is < newNames.size();
    if (oldNamed != newNamed) return false;
    return oldNamed ? oldNames[was] == newNames[is] : was == is;
  }
  bool SameNames(int list, const CWordArray& was, const CWordArray& is) const {
    if (was.GetSize() != is.GetSize()) return false;
    for (int i = 0; i < was.GetSize(); ++i) {
      if (!SameName(list, was[i], is[i])) return false;
    }
    return true;
  }
  // Whether two definitions mean the same, without building their fields.
  bool SameDefinition(DEVICE_KVRXDEF_ITEM& was, DEVICE_KVRXDEF_ITEM& is) const {
    return was.m_KvrType == is.m_KvrType && was.m_MarkFlags == is.m_MarkFlags && SameName(2, was.m_ModulId, is.m_ModulId) &&
           std::equal(std::begin(was.m_DefValues), std::end(was.m_DefValues), std::begin(is.m_DefValues)) &&
           was.m_DefLine == is.m_DefLine && SameNames(0, was.m_PackageIds, is.m_PackageIds) &&
           SameNames(1, was.m_AdapterIds, is.m_AdapterIds);
  }

  void DiffDefinition(const std::vector<std::string>& path, const DeviceRef& was, int oldIndex, const DeviceRef& is,
                      int newIndex) {
    DEVICE_ITEM& oldDevice = *was.device;
    DEVICE_ITEM& newDevice = *is.device;
    if (SameDefinition(oldDevice.m_DefArray[oldIndex], newDevice.m_DefArray[newIndex])) return;
    const auto oldFields = m_old.Fields(oldDevice.m_DefArray[oldIndex]);
    const auto newFields = m_new.Fields(newDevice.m_DefArray[newIndex]);
    std::vector<std::pair<std::string, std::pair<DiffValue, DiffValue>>> fields;
    for (size_t f = 0; f < oldFields.size(); ++f) {
      if (oldFields[f].second != newFields[f].second) fields.push_back({oldFields[f].first, {oldFields[f].second, newFields[f].second}});
    }
    if (fields.empty()) return;
    DiffChange& item = Add(DiffChange::Change::kChanged, DiffChange::What::kDefinition, path, std::string());
    item.hasId = true;
    item.id = newDevice.m_DefArray[newIndex].m_DefID;
    item.fields = std::move(fields);
    item.oldLine = m_old.DefinitionLine(was, oldIndex);
    item.newLine = m_new.DefinitionLine(is, newIndex);
  }

  Side& m_old;
  Side& m_new;
  bool m_visibleOnly;
  std::vector<DiffChange> m_changes;
};

}  // namespace

std::vector<DiffChange> DiffCatalogues(Analysis& oldFile, Analysis& newFile, const DiffOptions& options) {
  Side oldSide(oldFile, options);
  Side newSide(newFile, options);
  return Differ(oldSide, newSide, options.visibleOnly).Run();
}

const char* ChangeName(DiffChange::Change change) {
  switch (change) {
    case DiffChange::Change::kAdded:
      return "added";
    case DiffChange::Change::kRemoved:
      return "removed";
    case DiffChange::Change::kChanged:
      return "changed";
    case DiffChange::Change::kMoved:
      return "moved";
  }
  return "changed";
}

const char* WhatName(DiffChange::What what) {
  switch (what) {
    case DiffChange::What::kKind:
      return "kind";
    case DiffChange::What::kManufacturer:
      return "manufacturer";
    case DiffChange::What::kDevice:
      return "device";
    case DiffChange::What::kDefinition:
      return "definition";
    case DiffChange::What::kListEntry:
      return "list-entry";
  }
  return "device";
}
