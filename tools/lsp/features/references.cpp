#include "tools/lsp/features/references.h"

#include "tools/lsp/features/definition_field_at.h"

using nlohmann::json;

namespace {

// The header list entry at offset: an entry itself or a number naming one.
bool EntryAt(const DocumentView& view, size_t offset, int* list, unsigned long* number) {
  IndexedPlace place;
  if (!view.index.At(offset, &place)) return false;
  if (place.kind == IndexedPlace::kListEntry) {
    *list = place.list;
    *number = place.record;
    return true;
  }
  if (place.kind != IndexedPlace::kDefinition) return false;
  const std::vector<FieldRecord> fields = view.analysis.Fields(place.record);
  const FieldRecord* field = FieldAt(fields, offset);
  if (field == nullptr || ListOfField(field->field) < 0) return false;
  *list = ListOfField(field->field);
  *number = field->value;
  return true;
}

// Whether the definition names the entry: a quick test before its line is
// read again for its fields.
bool Names(const DEVICE_KVRXDEF_ITEM& def, int list, unsigned long number) {
  if (list == 2) return def.m_ModulId == number;
  const CWordArray& ids = list == 0 ? def.m_PackageIds : def.m_AdapterIds;
  for (int i = 0; i < ids.GetSize(); ++i) {
    if (ids[i] == number) return true;
  }
  return false;
}

}  // namespace

json ReferencesAt(const DocumentView& view, size_t offset, bool includeDeclaration) {
  json locations = json::array();
  int list = 0;
  unsigned long number = 0;
  if (!EntryAt(view, offset, &list, &number)) return locations;
  const std::vector<ByteSpan>& entries = view.analysis.ListEntries(list);
  if (includeDeclaration && number < entries.size()) locations.push_back(view.Location(view.RangeOf(entries[number])));
  for (std::uint32_t d = 0; d < view.analysis.Definitions().size(); ++d) {
    if (!Names(view.analysis.DefinitionOf(d), list, number)) continue;
    for (const FieldRecord& field : view.analysis.Fields(d)) {
      if (ListOfField(field.field) == list && field.value == number) locations.push_back(view.Location(view.RangeOf(field.word)));
    }
  }
  return locations;
}
