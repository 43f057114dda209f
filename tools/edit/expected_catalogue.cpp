#include "tools/edit/expected_catalogue.h"

#include "tools/text/text_encoding.h"

namespace {

std::string BytesOf(const CString& text) { return std::string(text, static_cast<size_t>(text.GetLength())); }

std::vector<WORD> Numbers(const CWordArray& array) {
  std::vector<WORD> out;
  out.reserve(static_cast<size_t>(array.GetSize()));
  for (int i = 0; i < array.GetSize(); ++i) out.push_back(array[i]);
  return out;
}

const char* const kListNames[3] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};

std::string Quoted(const std::string& bytes) { return "'" + ShownText(bytes) + "'"; }

std::string NumberList(const std::vector<WORD>& numbers) {
  if (numbers.empty()) return "none";
  std::string out;
  for (const WORD n : numbers) out += (out.empty() ? "" : ",") + std::to_string(n);
  return out;
}

std::string Count(size_t n, const char* one, const char* many) {
  return std::to_string(n) + " " + (n == 1 ? one : many);
}

// A field that differs: "FIELD of WHAT would read as X where Y is asked".
bool Differs(const std::string& field, const std::string& what, const std::string& got, const std::string& asked,
             ByteSpan place, Mismatch* mismatch) {
  mismatch->reason =
      "the edited file would read " + field + " of " + what + " as " + got + " where " + asked + " is asked";
  mismatch->place = place;
  return false;
}

}  // namespace

DWORD NumberMap::Map(DWORD number) const {
  if (insertedAt >= 0 && number >= static_cast<DWORD>(insertedAt)) return number + 1;
  if (removedAt >= 0) {
    const DWORD at = static_cast<DWORD>(removedAt);
    if (number == at) return replacement;
    if (number > at) return number - 1;
  }
  return number;
}

DefinitionFields FieldsOfDefinition(const DEVICE_KVRXDEF_ITEM& def) {
  DefinitionFields fields;
  fields.generation = def.m_KvrType;
  fields.marks = def.m_MarkFlags;
  fields.packages = Numbers(def.m_PackageIds);
  fields.module = def.m_ModulId;
  fields.adapters = Numbers(def.m_AdapterIds);
  for (int i = 0; i < 11; ++i) fields.values[i] = def.m_DefValues[i];
  fields.text = BytesOf(def.m_DefLine);
  return fields;
}

ExpectedCatalogue::ExpectedCatalogue(Analysis& old) : m_old(old) {
  for (int list = 0; list < 3; ++list) lists[list] = old.ListNames(list);
  m_places.resize(old.Devices().size());
  const std::vector<ManufacturerRecord>& manufacturers = old.Manufacturers();
  const std::vector<DeviceRecord>& devices = old.Devices();
  kinds.reserve(old.Kinds().size());
  for (std::uint32_t k = 0; k < old.Kinds().size(); ++k) {
    const KindRecord& kindRecord = old.Kinds()[k];
    ExpectedKind kind;
    kind.oldRecord = k;
    kind.name = BytesOf(kindRecord.kind->m_Name);
    for (std::uint32_t m = kindRecord.firstManufacturer;
         m < kindRecord.firstManufacturer + kindRecord.manufacturerCount; ++m) {
      ExpectedManufacturer manufacturer;
      manufacturer.oldRecord = m;
      manufacturer.name = BytesOf(manufacturers[m].manufacturer->m_Name);
      const ManufacturerRecord& mr = manufacturers[m];
      for (std::uint32_t d = mr.firstDevice; d < mr.firstDevice + mr.deviceCount; ++d) {
        DEVICE_ITEM& item = *devices[d].device;
        ExpectedDevice device;
        device.oldRecord = d;
        device.name = BytesOf(item.m_DeviceName);
        device.flags = item.m_DeviceFlags;
        device.housings = Numbers(item.m_HousingIds);
        device.definitions.reserve(devices[d].definitionCount);
        for (std::uint32_t i = 0; i < devices[d].definitionCount; ++i) {
          const std::uint32_t record = devices[d].firstDefinition + i;
          device.definitions.push_back(ExpectedDefinition{record, -1, old.DefinitionOf(record).m_DefID});
        }
        m_places[d] =
            DevicePlace{static_cast<std::uint32_t>(kinds.size()), static_cast<std::uint32_t>(kind.manufacturers.size()),
                        static_cast<std::uint32_t>(manufacturer.devices.size())};
        manufacturer.devices.push_back(std::move(device));
      }
      kind.manufacturers.push_back(std::move(manufacturer));
    }
    kinds.push_back(std::move(kind));
  }
}

DefinitionFields ExpectedCatalogue::FieldsOf(const ExpectedDefinition& definition) {
  if (definition.fields >= 0) return fields[static_cast<size_t>(definition.fields)];
  DefinitionFields out = FieldsOfDefinition(m_old.DefinitionOf(definition.oldRecord));
  for (WORD& n : out.packages) n = static_cast<WORD>(numbers[0].Map(n));
  out.module = numbers[2].Map(out.module);
  for (WORD& n : out.adapters) n = static_cast<WORD>(numbers[1].Map(n));
  return out;
}

DefinitionFields& ExpectedCatalogue::Own(ExpectedDefinition& definition) {
  if (definition.fields < 0) {
    DefinitionFields owned = FieldsOf(definition);
    definition.fields = static_cast<int>(fields.size());
    fields.push_back(std::move(owned));
  }
  return fields[static_cast<size_t>(definition.fields)];
}

bool ExpectedCatalogue::SameAsOld(const DEVICE_KVRXDEF_ITEM& def, const DEVICE_KVRXDEF_ITEM& old) const {
  // Most definitions are untouched: compared in place, without copies.
  if (def.m_KvrType != old.m_KvrType || def.m_MarkFlags != old.m_MarkFlags ||
      def.m_ModulId != numbers[2].Map(old.m_ModulId) || def.m_PackageIds.GetSize() != old.m_PackageIds.GetSize() ||
      def.m_AdapterIds.GetSize() != old.m_AdapterIds.GetSize() || def.m_DefLine != old.m_DefLine) {
    return false;
  }
  for (int i = 0; i < def.m_PackageIds.GetSize(); ++i) {
    if (def.m_PackageIds[i] != static_cast<WORD>(numbers[0].Map(old.m_PackageIds[i]))) return false;
  }
  for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
    if (def.m_AdapterIds[i] != static_cast<WORD>(numbers[1].Map(old.m_AdapterIds[i]))) return false;
  }
  for (int i = 0; i < 11; ++i) {
    if (def.m_DefValues[i] != old.m_DefValues[i]) return false;
  }
  return true;
}

bool ExpectedCatalogue::MatchLists(Analysis& edited, Mismatch* mismatch) {
  for (int list = 0; list < 3; ++list) {
    const std::vector<std::string>& got = edited.ListNames(list);
    const std::vector<ByteSpan>& places = edited.ListEntries(list);
    const std::vector<std::string>& asked = lists[list];
    for (size_t i = 0; i < got.size() && i < asked.size(); ++i) {
      if (got[i] == asked[i]) continue;
      mismatch->reason = std::string("the edited file would read entry ") + std::to_string(i) + " of " +
                         kListNames[list] + " as " + Quoted(got[i]) + " where " + Quoted(asked[i]) + " is asked";
      mismatch->place = i < places.size() ? places[i] : edited.VersionLine();
      return false;
    }
    if (got.size() != asked.size()) {
      mismatch->reason = std::string("the edited file's ") + kListNames[list] + " would hold " +
                         Count(got.size(), "entry", "entries") + " where " + std::to_string(asked.size()) +
                         " are asked";
      const size_t at = std::min(got.size(), asked.size());
      mismatch->place = at < places.size() ? places[at] : (places.empty() ? edited.VersionLine() : places.back());
      return false;
    }
  }
  return true;
}

bool ExpectedCatalogue::Matches(Analysis& edited, Mismatch* mismatch) {
  if (!MatchLists(edited, mismatch)) return false;
  const std::vector<KindRecord>& kindRecords = edited.Kinds();
  const std::vector<ManufacturerRecord>& manufacturerRecords = edited.Manufacturers();
  const std::vector<DeviceRecord>& deviceRecords = edited.Devices();
  const ByteSpan end{static_cast<std::uint32_t>(edited.Bytes().size()),
                     static_cast<std::uint32_t>(edited.Bytes().size())};
  for (size_t k = 0; k < kinds.size() || k < kindRecords.size(); ++k) {
    if (k >= kinds.size() || k >= kindRecords.size()) {
      mismatch->reason = "the edited file would hold " + Count(kindRecords.size(), "kind", "kinds") + " where " +
                         std::to_string(kinds.size()) + " are asked";
      mismatch->place = k < kindRecords.size() ? kindRecords[k].name : end;
      return false;
    }
    const KindRecord& kr = kindRecords[k];
    ExpectedKind& kind = kinds[k];
    const std::string kindName = BytesOf(kr.kind->m_Name);
    if (kindName != kind.name) {
      mismatch->reason =
          "the edited file would read kind " + Quoted(kindName) + " where " + Quoted(kind.name) + " is asked";
      mismatch->place = kr.name;
      return false;
    }
    for (size_t m = 0; m < kind.manufacturers.size() || m < kr.manufacturerCount; ++m) {
      if (m >= kind.manufacturers.size() || m >= kr.manufacturerCount) {
        mismatch->reason = "the edited file would hold " +
                           Count(kr.manufacturerCount, "manufacturer", "manufacturers") + " under " +
                           Quoted(kind.name) + " where " + std::to_string(kind.manufacturers.size()) + " are asked";
        mismatch->place = m < kr.manufacturerCount ? manufacturerRecords[kr.firstManufacturer + m].name : kr.name;
        return false;
      }
      const ManufacturerRecord& mr = manufacturerRecords[kr.firstManufacturer + m];
      ExpectedManufacturer& manufacturer = kind.manufacturers[m];
      const std::string manufacturerName = BytesOf(mr.manufacturer->m_Name);
      if (manufacturerName != manufacturer.name) {
        mismatch->reason = "the edited file would read manufacturer " + Quoted(manufacturerName) + " where " +
                           Quoted(manufacturer.name) + " is asked";
        mismatch->place = mr.name;
        return false;
      }
      for (size_t d = 0; d < manufacturer.devices.size() || d < mr.deviceCount; ++d) {
        if (d >= manufacturer.devices.size() || d >= mr.deviceCount) {
          mismatch->reason = "the edited file would hold " + Count(mr.deviceCount, "device", "devices") + " under " +
                             Quoted(kind.name) + " / " + Quoted(manufacturer.name) + " where " +
                             std::to_string(manufacturer.devices.size()) + " are asked";
          mismatch->place = d < mr.deviceCount ? deviceRecords[mr.firstDevice + d].name : mr.name;
          return false;
        }
        if (!MatchDevice(edited, manufacturer.devices[d], mr.firstDevice + static_cast<std::uint32_t>(d), mismatch)) {
          return false;
        }
      }
    }
  }
  return true;
}

bool ExpectedCatalogue::MatchDevice(Analysis& edited, ExpectedDevice& expected, std::uint32_t record,
                                    Mismatch* mismatch) {
  const DeviceRecord& dr = edited.Devices()[record];
  DEVICE_ITEM& device = *dr.device;
  const std::string name = BytesOf(device.m_DeviceName);
  if (name != expected.name) {
    mismatch->reason =
        "the edited file would read device " + Quoted(name) + " where " + Quoted(expected.name) + " is asked";
    mismatch->place = dr.name;
    return false;
  }
  const std::string what = "device " + Quoted(name);
  if (device.m_DeviceFlags != expected.flags) {
    return Differs("the marks", what, std::to_string(device.m_DeviceFlags), std::to_string(expected.flags), dr.name,
                   mismatch);
  }
  std::vector<WORD> housings = expected.housings;
  for (WORD& n : housings) n = static_cast<WORD>(numbers[0].Map(n));
  if (Numbers(device.m_HousingIds) != housings) {
    return Differs("the housings", what, NumberList(Numbers(device.m_HousingIds)), NumberList(housings), dr.name,
                   mismatch);
  }
  if (dr.definitionCount != expected.definitions.size()) {
    mismatch->reason = "the edited file would give " + what + " " +
                       Count(dr.definitionCount, "definition", "definitions") + " where " +
                       std::to_string(expected.definitions.size()) + " are asked";
    const size_t at = std::min<size_t>(dr.definitionCount, expected.definitions.size());
    mismatch->place = at < dr.definitionCount ? edited.Definitions()[dr.firstDefinition + at].line : dr.block;
    return false;
  }
  for (std::uint32_t i = 0; i < dr.definitionCount; ++i) {
    if (!MatchDefinition(edited, expected.definitions[i], dr.firstDefinition + i, name, mismatch)) return false;
  }
  return true;
}

bool ExpectedCatalogue::MatchDefinition(Analysis& edited, const ExpectedDefinition& expected, std::uint32_t record,
                                        const std::string& device, Mismatch* mismatch) {
  const DEVICE_KVRXDEF_ITEM& def = edited.DefinitionOf(record);
  const ByteSpan place = edited.Definitions()[record].line;
  const std::string what = "definition " + std::to_string(expected.id) + " of " + Quoted(device);
  if (def.m_DefID != expected.id) {
    return Differs("the id", what, std::to_string(def.m_DefID), std::to_string(expected.id), place, mismatch);
  }
  if (expected.fields < 0 && SameAsOld(def, m_old.DefinitionOf(expected.oldRecord))) return true;
  const DefinitionFields got = FieldsOfDefinition(def);
  const DefinitionFields asked = FieldsOf(expected);
  if (got.generation != asked.generation) {
    return Differs("the generation", what, std::to_string(got.generation), std::to_string(asked.generation), place,
                   mismatch);
  }
  if (got.packages != asked.packages) {
    return Differs("the packages", what, NumberList(got.packages), NumberList(asked.packages), place, mismatch);
  }
  if (got.module != asked.module) {
    return Differs("the module", what, std::to_string(got.module), std::to_string(asked.module), place, mismatch);
  }
  if (got.adapters != asked.adapters) {
    return Differs("the adapters", what, NumberList(got.adapters), NumberList(asked.adapters), place, mismatch);
  }
  for (int i = 0; i < 11; ++i) {
    if (got.values[i] != asked.values[i]) {
      return Differs("value " + std::to_string(i), what, std::to_string(got.values[i]), std::to_string(asked.values[i]),
                     place, mismatch);
    }
  }
  if (got.text != asked.text) return Differs("the text", what, Quoted(got.text), Quoted(asked.text), place, mismatch);
  if (got.marks != asked.marks) {
    return Differs("the marks", what, std::to_string(got.marks), std::to_string(asked.marks), place, mismatch);
  }
  return true;
}
