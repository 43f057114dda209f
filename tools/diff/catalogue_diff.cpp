#include "tools/diff/catalogue_diff.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "tools/diff/diff_side.h"
#include "tools/diff/list_diff.h"

namespace {

const char* const kListKeywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};

using FieldChanges = std::vector<std::pair<std::string, std::pair<DiffValue, DiffValue>>>;

// Fields of one side as changes: the old side's as removed values, the
// new side's as added ones.
FieldChanges OneSided(std::vector<DiffField> fields, bool old) {
  FieldChanges changes;
  for (DiffField& field : fields) {
    changes.push_back({std::move(field.first), old ? std::make_pair(std::move(field.second), DiffValue::None())
                                                   : std::make_pair(DiffValue::None(), std::move(field.second))});
  }
  return changes;
}

// Each field whose values differ, of two lists of the same fields.
FieldChanges Changed(const std::vector<DiffField>& was, const std::vector<DiffField>& is) {
  FieldChanges changes;
  for (size_t f = 0; f < was.size() && f < is.size(); ++f) {
    if (was[f].second != is[f].second) changes.push_back({was[f].first, {was[f].second, is[f].second}});
  }
  return changes;
}

// How a device of the new file found its old self.
enum class Found : unsigned char { kNot, kSamePath, kMoved, kRenamed, kMovedAndChanged };

class Differ {
 public:
  Differ(DiffSide& oldSide, DiffSide& newSide, bool visibleOnly)
      : m_old(oldSide), m_new(newSide), m_visibleOnly(visibleOnly) {}

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
        const DiffValue oldNumber = entry.oldIndex >= 0 ? DiffValue::Number(entry.oldIndex) : DiffValue::None();
        const DiffValue newNumber = entry.newIndex >= 0 ? DiffValue::Number(entry.newIndex) : DiffValue::None();
        item.fields.push_back({"number", {oldNumber, newNumber}});
        item.oldLine = m_old.EntryLine(list, entry.oldIndex);
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
    const std::vector<DeviceRef>& olds = m_old.Devices();
    const std::vector<DeviceRef>& news = m_new.Devices();
    m_partner.assign(news.size(), kNone);
    m_found.assign(news.size(), Found::kNot);
    m_oldTaken.assign(olds.size(), false);
    m_leftOld = olds.size();
    m_leftNew = news.size();
    // Devices of one path pair in order.
    std::unordered_map<std::string, size_t> taken;
    for (size_t i = 0; i < news.size(); ++i) {
      const std::vector<size_t>* candidates = m_old.DevicesAt(news[i].key);
      if (candidates == nullptr) continue;
      size_t& next = taken[news[i].key];
      if (next < candidates->size()) Pair(i, (*candidates)[next++], Found::kSamePath);
    }
    // The rest by their content and name, each way of finding a device
    // over all of them before the next.
    if (m_leftOld > 0 && m_leftNew > 0) {
      std::vector<std::string> oldSignatures(olds.size()), newSignatures(news.size());
      for (size_t i = 0; i < olds.size(); ++i) {
        if (!m_oldTaken[i]) oldSignatures[i] = m_old.Signature(*olds[i].device);
      }
      for (size_t i = 0; i < news.size(); ++i) {
        if (m_partner[i] == kNone) newSignatures[i] = m_new.Signature(*news[i].device);
      }
      PairBy(Found::kMoved, [&](const DeviceRef& ref, const std::string& signature, std::string* key) {
        *key = NameOf(ref) + '\0' + signature;
        return true;
      }, oldSignatures, newSignatures);
      // A device without definitions has nothing to be known by.
      PairBy(Found::kRenamed, [&](const DeviceRef&, const std::string& signature, std::string* key) {
        *key = signature;
        return !signature.empty();
      }, oldSignatures, newSignatures);
      PairBy(Found::kMovedAndChanged, [&](const DeviceRef& ref, const std::string&, std::string* key) {
        *key = NameOf(ref);
        return true;
      }, oldSignatures, newSignatures);
    }
    for (size_t i = 0; i < news.size(); ++i) {
      const DeviceRef& ref = news[i];
      switch (m_found[i]) {
        case Found::kNot:
          AddDevice(m_new, ref, DiffChange::Change::kAdded);
          break;
        case Found::kSamePath:
          DiffDevice(olds[m_partner[i]], ref, DiffChange::Change::kChanged);
          break;
        case Found::kRenamed:
          DiffDevice(olds[m_partner[i]], ref, DiffChange::Change::kRenamed);
          break;
        case Found::kMoved:
        case Found::kMovedAndChanged:
          DiffDevice(olds[m_partner[i]], ref, DiffChange::Change::kMoved);
          break;
      }
    }
    for (size_t i = 0; i < olds.size(); ++i) {
      if (!m_oldTaken[i]) AddDevice(m_old, olds[i], DiffChange::Change::kRemoved);
    }
  }

  static constexpr size_t kNone = static_cast<size_t>(-1);

  void Pair(size_t newDevice, size_t oldDevice, Found how) {
    m_partner[newDevice] = oldDevice;
    m_found[newDevice] = how;
    m_oldTaken[oldDevice] = true;
    --m_leftOld;
    --m_leftNew;
  }

  // Pairs each device of the new file not yet paired with the first device
  // of the old file not yet paired that key gives the same key; key may
  // give a device none.
  template <class Key>
  void PairBy(Found how, Key key, const std::vector<std::string>& oldSignatures,
              const std::vector<std::string>& newSignatures) {
    const std::vector<DeviceRef>& olds = m_old.Devices();
    const std::vector<DeviceRef>& news = m_new.Devices();
    std::unordered_map<std::string, std::vector<size_t>> waiting;  // the old devices of a key, the first last
    std::string text;
    for (size_t i = olds.size(); i-- > 0;) {
      if (!m_oldTaken[i] && key(olds[i], oldSignatures[i], &text)) waiting[text].push_back(i);
    }
    for (size_t i = 0; i < news.size() && !waiting.empty(); ++i) {
      if (m_partner[i] != kNone || !key(news[i], newSignatures[i], &text)) continue;
      auto found = waiting.find(text);
      if (found == waiting.end()) continue;
      Pair(i, found->second.back(), how);
      found->second.pop_back();
      if (found->second.empty()) waiting.erase(found);
    }
  }

  // A device added or removed, with its fields and its definitions.
  void AddDevice(DiffSide& side, const DeviceRef& ref, DiffChange::Change change) {
    const bool old = change == DiffChange::Change::kRemoved;
    DiffChange& item = Add(change, DiffChange::What::kDevice, PathOf(ref), NameOf(ref));
    item.fields = OneSided(side.DeviceFields(ref, false), old);
    (old ? item.oldLine : item.newLine) = side.DeviceLine(ref);
    std::vector<std::string> path = PathOf(ref);
    path.push_back(NameOf(ref));
    for (int i : side.Definitions(*ref.device)) AddDefinition(side, path, ref, i, change);
  }

  void AddDefinition(DiffSide& side, const std::vector<std::string>& path, const DeviceRef& ref, int index,
                     DiffChange::Change change) {
    const bool old = change == DiffChange::Change::kRemoved;
    DiffChange& item = Add(change, DiffChange::What::kDefinition, path, std::string());
    item.hasId = true;
    item.id = ref.device->m_DefArray[index].m_DefID;
    item.fields = OneSided(side.LineFields(ref, index), old);
    (old ? item.oldLine : item.newLine) = side.DefinitionLine(ref, index);
  }

  // A device of the old file and its new self: the device's own change
  // (always said for a move or a rename, for a change only when a field of
  // the device changed), then its definitions.
  void DiffDevice(const DeviceRef& was, const DeviceRef& is, DiffChange::Change change) {
    std::vector<std::string> path = PathOf(is);
    path.push_back(NameOf(is));
    FieldChanges fields = Changed(m_old.DeviceFields(was, true), m_new.DeviceFields(is, true));
    if (change != DiffChange::Change::kChanged || !fields.empty()) {
      DiffChange& item = Add(change, DiffChange::What::kDevice, PathOf(is), path.back());
      item.fields = std::move(fields);
      if (change != DiffChange::Change::kChanged) item.from = PathOf(was);
      if (change == DiffChange::Change::kRenamed) item.oldName = NameOf(was);
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
        AddDefinition(m_new, path, is, i, DiffChange::Change::kAdded);
        continue;
      }
      const int partner = candidates->second[next++];
      oldPaired.insert(partner);
      DiffDefinition(path, was, partner, is, i);
    }
    for (int i : olds) {
      if (oldPaired.count(i) == 0) AddDefinition(m_old, path, was, i, DiffChange::Change::kRemoved);
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
    DEVICE_KVRXDEF_ITEM& oldDef = was.device->m_DefArray[oldIndex];
    DEVICE_KVRXDEF_ITEM& newDef = is.device->m_DefArray[newIndex];
    if (SameDefinition(oldDef, newDef)) return;
    FieldChanges fields = Changed(m_old.Fields(oldDef), m_new.Fields(newDef));
    if (fields.empty()) return;
    DiffChange& item = Add(DiffChange::Change::kChanged, DiffChange::What::kDefinition, path, std::string());
    item.hasId = true;
    item.id = newDef.m_DefID;
    item.fields = std::move(fields);
    item.oldLine = m_old.DefinitionLine(was, oldIndex);
    item.newLine = m_new.DefinitionLine(is, newIndex);
  }

  DiffSide& m_old;
  DiffSide& m_new;
  bool m_visibleOnly;
  std::vector<DiffChange> m_changes;
  // The devices: the old partner of each new one and how it was found;
  // which old ones have a partner; how many of each file have none.
  std::vector<size_t> m_partner;
  std::vector<Found> m_found;
  std::vector<bool> m_oldTaken;
  size_t m_leftOld = 0;
  size_t m_leftNew = 0;
};

}  // namespace

std::vector<DiffChange> DiffCatalogues(Analysis& oldFile, Analysis& newFile, const DiffOptions& options) {
  DiffSide oldSide(oldFile, options.visibleOnly);
  DiffSide newSide(newFile, options.visibleOnly);
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
    case DiffChange::Change::kRenamed:
      return "renamed";
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
