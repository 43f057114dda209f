// The operations on header lists: add-entry, rename-entry and remove-entry.
// Inserting or removing an entry moves the numbers of the entries behind
// it, so every reference to them (the definitions' numbers and the
// housing lines' entries) is written anew, in one pass over the file.
#include <functional>

#include "tools/edit/edit_address.h"
#include "tools/edit/edit_step.h"
#include "tools/edit/edit_values.h"
#include "tools/text/text_encoding.h"

namespace {

const char* const kKeywords[3] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};

// Calls visit with the bytes and the number of every reference to an
// entry of list, in the order of the file.
void ForEachReference(EditStep& step, int list, const std::function<void(ByteSpan, DWORD)>& visit) {
  Analysis& a = step.a;
  const int kind = list == 0 ? kDevdefFieldPackage : list == 1 ? kDevdefFieldAdapter : kDevdefFieldModule;
  const std::vector<HousingNumberRecord>& housings = a.HousingNumbers();
  size_t housing = 0;
  std::uint32_t lastDevice = kNoRecord;
  int inDevice = 0;
  for (std::uint32_t d = 0; d < a.Definitions().size(); ++d) {
    const std::uint32_t device = a.Definitions()[d].device;
    // The housings of the devices up to this one, in the order of the file.
    while (list == 0 && housing < housings.size() && housings[housing].device <= device &&
           housings[housing].entry.begin < a.Definitions()[d].line.begin) {
      const HousingNumberRecord& h = housings[housing++];
      inDevice = h.device == lastDevice ? inDevice + 1 : 0;
      lastDevice = h.device;
      visit(h.entry, a.Devices()[h.device].device->m_HousingIds[inDevice]);
    }
    for (const FieldRecord& f : a.Fields(d)) {
      if (f.field == kind) visit(f.taken, f.value);
    }
  }
  while (list == 0 && housing < housings.size()) {
    const HousingNumberRecord& h = housings[housing++];
    inDevice = h.device == lastDevice ? inDevice + 1 : 0;
    lastDevice = h.device;
    visit(h.entry, a.Devices()[h.device].device->m_HousingIds[inDevice]);
  }
}

// The bytes of a reference that its number took: a housing entry's sign
// and digits; a field's taken bytes are that already.
ByteSpan NumberBytes(EditStep& step, ByteSpan span) {
  const std::string_view b = step.Bytes();
  std::uint32_t end = span.begin;
  if (end < span.end && (b[end] == '+' || b[end] == '-')) ++end;
  while (end < span.end && b[end] >= '0' && b[end] <= '9') ++end;
  return ByteSpan{span.begin, end};
}

// Writes every reference of list anew as map says.
void Renumber(EditStep& step, int list, const NumberMap& map) {
  ForEachReference(step, list, [&](ByteSpan span, DWORD number) {
    const DWORD mapped = map.Map(number);
    if (mapped == number) return;
    const ByteSpan digits = NumberBytes(step, span);
    step.Replace(digits, FormatLike(step.Bytes().substr(digits.begin, digits.end - digits.begin), mapped, false));
  });
}

// The list and its entries; refused when an entry's place is not known.
bool ListAndEntries(EditStep& step, const EditOperation& op, int* list) {
  *list = ListOfWord(op.list);
  if (*list < 0) return step.Unknown("no list '" + op.list + "'; the lists are housing, adapter and module", {});
  if (step.a.ListEntries(*list).size() != step.a.ListNames(*list).size()) {
    return step.Refuse(std::string(kKeywords[*list]) + " has entries whose places are not known", step.a.VersionLine());
  }
  return true;
}

// The bytes between two entries, as a new entry is to be set apart; the
// usual ", " when they hold anything but separators.
std::string Separator(EditStep& step, int list, ByteSpan before, ByteSpan after) {
  const std::string between = step.Text(ByteSpan{before.end, after.begin});
  const bool braces = step.a.Layout() == 7 && list != 2;
  const char* const allowed = braces ? " \t,\r\n" : " ,";
  if (between.empty() || between.find_first_not_of(allowed) != std::string::npos) return ", ";
  return between;
}

}  // namespace

bool PlanAddEntry(EditStep& step, const EditOperation& op) {
  int list = 0;
  if (!ListAndEntries(step, op, &list)) return false;
  const std::vector<ByteSpan>& entries = step.a.ListEntries(list);
  std::string bytes, problem;
  if (!FileBytesOf(op.entry, false, &bytes, &problem))
    return step.Refuse("the entry '" + op.entry + "': " + problem, {});
  if (bytes.empty()) return step.Refuse("an entry needs a name", {});
  if (entries.empty()) {
    return step.Refuse(std::string(kKeywords[list]) + " has no entry for the new one to take its form from",
                       step.a.VersionLine());
  }
  const long size = static_cast<long>(entries.size());
  const long at = op.at < 0 ? size : op.at;
  if (at > size) {
    return step.Unknown("--at " + std::to_string(op.at) + ": " + kKeywords[list] + " has " + std::to_string(size) +
                            " entries, so the new one can be number 0 to " + std::to_string(size),
                        {});
  }
  const size_t k = static_cast<size_t>(at);
  if (at < size) {
    const std::string separator =
        size >= 2 ? Separator(step, list, entries[k == 0 ? 0 : k - 1], entries[k == 0 ? 1 : k]) : ", ";
    step.Insert(entries[k].begin, bytes + separator);
  } else {
    const std::string separator = size >= 2 ? Separator(step, list, entries[k - 2], entries[k - 1]) : ", ";
    step.Insert(entries[k - 1].end, separator + bytes);
  }
  step.expect.lists[list].insert(step.expect.lists[list].begin() + at, bytes);
  // An entry appended to the end takes the number that stood past the
  // list, so the references that used it without a name now name it; the
  // numbers further past stay past the end. An entry inserted in front of
  // others moves every number from its own on, past the end too, so that
  // no reference comes to name another entry than before.
  if (at == size) return true;
  NumberMap map;
  map.insertedAt = at;
  Renumber(step, list, map);
  step.expect.numbers[list] = map;
  return true;
}

bool PlanRenameEntry(EditStep& step, const EditOperation& op) {
  int list = 0;
  long index = op.entryNumber;
  if (!ListAndEntries(step, op, &list)) return false;
  if ((index < 0 || static_cast<size_t>(index) >= step.a.ListEntries(list).size()) &&
      !FindEntry(step, list, op.entry, &index)) {
    return false;
  }
  std::string bytes, problem;
  if (!FileBytesOf(op.newName, false, &bytes, &problem)) {
    return step.Refuse("the entry '" + op.newName + "': " + problem, {});
  }
  if (bytes.empty()) return step.Refuse("an entry needs a name", {});
  step.Replace(step.a.ListEntries(list)[static_cast<size_t>(index)], bytes);
  step.expect.lists[list][static_cast<size_t>(index)] = bytes;
  return true;
}

bool PlanRemoveEntry(EditStep& step, const EditOperation& op) {
  int list = 0;
  long index = 0;
  if (!ListAndEntries(step, op, &list) || !FindEntry(step, list, op.entry, &index)) return false;
  const std::vector<ByteSpan>& entries = step.a.ListEntries(list);
  const size_t i = static_cast<size_t>(index);
  NumberMap map;
  map.removedAt = index;
  if (!op.replaceWith.empty()) {
    long with = 0;
    if (!FindEntry(step, list, op.replaceWith, &with)) return false;
    if (with == index) return step.Refuse("an entry cannot replace itself", entries[i]);
    map.replacement = static_cast<DWORD>(with > index ? with - 1 : with);
  } else {
    std::vector<ByteSpan> uses;
    ForEachReference(step, list, [&](ByteSpan span, DWORD number) {
      if (number == static_cast<DWORD>(index)) uses.push_back(span);
    });
    if (!uses.empty()) {
      return step.Refuse(std::string("entry '") + ShownText(step.Text(entries[i])) + "' of " + kKeywords[list] + " is used " +
                             std::to_string(uses.size()) + (uses.size() == 1 ? " time" : " times") +
                             "; name an entry to use instead with --replace-with",
                         entries[i], uses);
    }
  }
  // The entry goes with the separator behind it (for the last, the one in
  // front of it).
  ByteSpan removed = entries[i];
  if (i + 1 < entries.size()) {
    removed.end = entries[i + 1].begin;
  } else if (i > 0) {
    removed.begin = entries[i - 1].end;
  }
  step.Replace(removed, std::string());
  Renumber(step, list, map);
  step.expect.lists[list].erase(step.expect.lists[list].begin() + index);
  step.expect.numbers[list] = map;
  return true;
}
