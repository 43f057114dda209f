#include "tools/edit/edit_address.h"

#include <cstdlib>

#include "tools/edit/edit_values.h"
#include "tools/lookup/closest_names.h"
#include "tools/lookup/device_lookup.h"
#include "tools/lookup/name_match.h"
#include "tools/text/text_encoding.h"

namespace {

const char* const kListWords[3] = {"housing", "adapter", "module"};
const char* const kListKeywords[3] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};

std::string Shown(const CString& name) { return ShownText(name); }

// The names among names (shown) closest to argument, at most five.
std::vector<std::string> Closest(const std::string& argument, const std::vector<std::string>& names) {
  ClosestNames closest(argument, 5);
  for (size_t i = 0; i < names.size(); ++i) closest.Offer(names[i], i);
  std::vector<std::string> out;
  for (const size_t id : closest.Ids()) out.push_back(names[id]);
  return out;
}

}  // namespace

std::string DevicePath(Analysis& a, std::uint32_t device) {
  const DeviceRecord& d = a.Devices()[device];
  const ManufacturerRecord& m = a.Manufacturers()[d.manufacturer];
  const KindRecord& k = a.Kinds()[m.kind];
  return Shown(k.kind->m_Name) + " / " + Shown(m.manufacturer->m_Name) + " / " + Shown(d.device->m_DeviceName) +
         " (line " + std::to_string(a.Map().PointOf(d.name.begin).line) + ")";
}

bool FindDevice(EditStep& step, const std::string& name, std::uint32_t record, std::uint32_t* device) {
  if (record != kNoRecord) {
    if (record >= step.a.Devices().size())
      return step.Unknown("there is no device record " + std::to_string(record), {});
    *device = record;
    return true;
  }
  const NamePattern pattern(name);
  const DeviceLookup found = LookUpDevices(step.a, pattern, false, 5);
  if (found.matches.size() == 1) {
    *device = found.matches[0];
    return true;
  }
  std::vector<std::string> candidates;
  if (found.matches.empty()) {
    for (const std::uint32_t d : found.closest) candidates.push_back(DevicePath(step.a, d));
    return step.Unknown("no device named '" + name + "'", candidates);
  }
  for (const std::uint32_t d : found.matches) candidates.push_back(DevicePath(step.a, d));
  return step.Unknown("'" + name + "' names " + std::to_string(found.matches.size()) + " devices; name one",
                      candidates, true);
}

bool FindDefinition(EditStep& step, const std::string& name, std::uint32_t record, std::uint32_t* definition) {
  Analysis& a = step.a;
  if (record != kNoRecord) {
    if (record >= a.Definitions().size())
      return step.Unknown("there is no definition record " + std::to_string(record), {});
    *definition = record;
    return true;
  }
  const size_t hash = name.rfind('#');
  if (hash != std::string::npos) {
    std::uint32_t device = 0;
    if (!FindDevice(step, name.substr(0, hash), kNoRecord, &device)) return false;
    const DeviceRecord& d = a.Devices()[device];
    const std::string number = name.substr(hash + 1);
    char* end = nullptr;
    const long n = std::strtol(number.c_str(), &end, 10);
    if (number.empty() || *end != '\0' || n < 1 || static_cast<unsigned long>(n) > d.definitionCount) {
      return step.Unknown("'" + name + "': " + ShownText(d.device->m_DeviceName) + " has " +
                              std::to_string(d.definitionCount) + " definitions, counted from 1",
                          {});
    }
    *definition = d.firstDefinition + static_cast<std::uint32_t>(n - 1);
    return true;
  }
  DWORD id = 0;
  if (!ParseEditNumber(name, &id) || name.find_first_of("xX") != std::string::npos) {
    return step.Unknown("'" + name + "' is neither a definition id nor DEVICE#N", {});
  }
  std::vector<std::uint32_t> found;
  for (std::uint32_t i = 0; i < a.Definitions().size(); ++i) {
    if (a.DefinitionOf(i).m_DefID == id) found.push_back(i);
  }
  if (found.size() == 1) {
    *definition = found[0];
    return true;
  }
  if (found.empty()) return step.Unknown("no definition has the id " + std::to_string(id), {});
  std::vector<std::string> candidates;
  for (const std::uint32_t f : found) {
    const std::uint32_t device = a.Definitions()[f].device;
    const DeviceRecord& d = a.Devices()[device];
    std::string dev = ShownText(d.device->m_DeviceName);
    for (char& c : dev) c = c == ' ' ? '_' : c;
    candidates.push_back(dev + "#" + std::to_string(f - d.firstDefinition + 1) + " (line " +
                         std::to_string(a.Map().PointOf(a.Definitions()[f].line.begin).line) + ")");
  }
  return step.Unknown("the id " + std::to_string(id) + " is used by " + std::to_string(found.size()) +
                          " definitions; name one as DEVICE#N",
                      candidates, true);
}

namespace {

// The records among [first, first + count) whose name (nameOf) the argument
// names; Unknown when several, or none and !mayBeMissing.
template <class NameOf>
bool FindNamed(EditStep& step, const char* what, const std::string& name, std::uint32_t first, std::uint32_t count,
               bool mayBeMissing, std::uint32_t* record, const NameOf& nameOf) {
  const NamePattern pattern(name);
  std::vector<std::uint32_t> found;
  std::vector<std::string> names;
  for (std::uint32_t i = first; i < first + count; ++i) {
    names.push_back(nameOf(i));
    if (pattern.Equals(names.back())) found.push_back(i);
  }
  if (found.size() == 1) {
    *record = found[0];
    return true;
  }
  if (found.empty() && mayBeMissing) {
    *record = kNoRecord;
    return true;
  }
  if (found.empty()) return step.Unknown(std::string("no ") + what + " named '" + name + "'", Closest(name, names));
  std::vector<std::string> candidates;
  for (const std::uint32_t f : found) candidates.push_back(names[f - first] + " (record " + std::to_string(f) + ")");
  return step.Unknown(std::string("'") + name + "' names " + std::to_string(found.size()) + " " + what +
                          "s of that name; the edit cannot tell which",
                      candidates, true);
}

}  // namespace

bool FindKind(EditStep& step, const std::string& name, bool mayBeMissing, std::uint32_t* kind) {
  const std::vector<KindRecord>& kinds = step.a.Kinds();
  return FindNamed(step, "kind", name, 0, static_cast<std::uint32_t>(kinds.size()), mayBeMissing, kind,
                   [&](std::uint32_t i) { return Shown(kinds[i].kind->m_Name); });
}

bool FindManufacturer(EditStep& step, std::uint32_t kind, const std::string& name, bool mayBeMissing,
                      std::uint32_t* manufacturer) {
  const KindRecord& k = step.a.Kinds()[kind];
  const std::vector<ManufacturerRecord>& manufacturers = step.a.Manufacturers();
  return FindNamed(step, "manufacturer", name, k.firstManufacturer, k.manufacturerCount, mayBeMissing, manufacturer,
                   [&](std::uint32_t i) { return Shown(manufacturers[i].manufacturer->m_Name); });
}

int ListOfWord(const std::string& word) {
  for (int list = 0; list < 3; ++list) {
    const std::string plural = std::string(kListWords[list]) + "s";
    if (word == kListWords[list] || word == plural || word == kListKeywords[list]) return list;
  }
  if (word == "package" || word == "packages") return 0;
  return -1;
}

bool FindEntry(EditStep& step, int list, const std::string& name, long* index) {
  const std::vector<std::string>& names = step.a.ListNames(list);
  std::string bytes, problem;
  const bool encoded = FileBytesOf(name, false, &bytes, &problem);
  std::vector<long> exact, folded;
  std::vector<std::string> shown;
  for (size_t i = 0; i < names.size(); ++i) {
    shown.push_back(ShownText(names[i]));
    if (encoded && names[i] == bytes) exact.push_back(static_cast<long>(i));
    if (NamePattern(name).Equals(shown.back())) folded.push_back(static_cast<long>(i));
  }
  const std::vector<long>& found = exact.empty() ? folded : exact;
  if (found.size() == 1) {
    *index = found[0];
    return true;
  }
  const std::string keyword = kListKeywords[list];
  if (found.empty()) return step.Unknown(keyword + " has no entry '" + name + "'", Closest(name, shown));
  std::vector<std::string> candidates;
  for (const long f : found)
    candidates.push_back(shown[static_cast<size_t>(f)] + " (number " + std::to_string(f) + ")");
  return step.Unknown(
      keyword + " has " + std::to_string(found.size()) + " entries named '" + name + "'; give the number instead",
      candidates, true);
}

bool ResolveNumber(EditStep& step, int list, const std::string& value, DWORD* number) {
  if (!value.empty() && value[0] >= '0' && value[0] <= '9' && ParseEditNumber(value, number)) return true;
  long index = 0;
  if (!FindEntry(step, list, value, &index)) return false;
  *number = static_cast<DWORD>(index);
  return true;
}
