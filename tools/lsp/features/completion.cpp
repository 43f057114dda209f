#include "tools/lsp/features/completion.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tools/analysis/number_look.h"
#include "tools/lsp/features/definition_field_at.h"

using nlohmann::json;

namespace {

// The protocol's CompletionItemKind of an enumeration member.
const int kEnumMemberItem = 20;

// A number the reader took that names an entry of a header list.
struct Reference {
  int list = -1;
  int field = kDevdefFieldPackage;  // what the number is: a package, module or adapter
  ByteSpan word;                    // the number as it looks, which an item replaces
  unsigned long value = 0;
};

bool Holds(ByteSpan span, size_t offset) { return span.begin <= offset && offset <= span.end; }

// The number of a definition line at or right behind offset.
bool FieldReference(const DocumentView& view, size_t offset, Reference* found) {
  IndexedPlace place;
  // Right behind the last byte of a line's text the index finds no line;
  // numbers stand in front of the text anyway.
  if (!view.index.At(offset, &place) || place.kind != IndexedPlace::kDefinition) return false;
  for (const FieldRecord& field : view.analysis.Fields(place.record)) {
    if (ListOfField(field.field) < 0 || !Holds(field.word, offset)) continue;
    found->list = ListOfField(field.field);
    found->field = field.field;
    found->word = field.word;
    found->value = field.value;
    return true;
  }
  return false;
}

// The number of a housing line at or right behind offset: an entry of
// HOUSING_LIST.
bool HousingReference(const DocumentView& view, size_t offset, Reference* found) {
  const std::vector<HousingNumberRecord>& entries = view.analysis.HousingNumbers();
  auto after = std::upper_bound(entries.begin(), entries.end(), offset,
                                [](size_t at, const HousingNumberRecord& entry) { return at < entry.entry.begin; });
  if (after == entries.begin() || !Holds((after - 1)->entry, offset)) return false;
  const HousingNumberRecord& entry = *(after - 1);
  found->list = 0;
  found->word = entry.entry;
  found->value = view.analysis.Devices()[entry.device].device->m_HousingIds[static_cast<int>(entry.index)];
  return true;
}

// Entry numbers padded to one width, so that clients sort the items in the
// order of the list.
std::string SortKey(size_t number) {
  std::string digits = std::to_string(number);
  return std::string(digits.size() < 10 ? 10 - digits.size() : 0, '0') + digits;
}

}  // namespace

json CompletionAt(const DocumentView& view, size_t offset) {
  json list = {{"isIncomplete", false}, {"items", json::array()}};
  Reference reference;
  if (!FieldReference(view, offset, &reference) && !HousingReference(view, offset, &reference)) return list;
  const std::vector<std::string>& names = view.analysis.ListNames(reference.list);
  const json range = view.positions.RangeJson(view.RangeOf(reference.word));
  // Clients keep the items whose filter text matches what stands in front of
  // the position, which here is a number: each item's filter text opens with
  // it, so every entry is offered, and with the name, by which a user picks.
  const std::string typed =
      view.Shown(std::string(view.analysis.Bytes().substr(reference.word.begin, offset - reference.word.begin)));
  json& items = list["items"];
  for (size_t number = 0; number < names.size(); ++number) {
    const std::string name = names[number].empty() ? std::string("(no name)") : view.Shown(names[number]);
    json item = {{"label", name},
                 {"kind", kEnumMemberItem},
                 {"detail", FieldName(reference.field, 0) + " " + std::to_string(number)},
                 {"sortText", SortKey(number)},
                 {"filterText", typed + name},
                 {"textEdit", {{"range", range}, {"newText", std::to_string(number)}}}};
    if (number == reference.value) item["preselect"] = true;
    items.push_back(std::move(item));
  }
  return list;
}
