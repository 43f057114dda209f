#include "tools/lsp/features/references.h"

#include "tools/lsp/features/definition_field_at.h"

using nlohmann::json;

namespace {

// The header list entry at offset: an entry itself or a number naming one.
bool EntryAt(const DocumentView& view, size_t offset, int* list, unsigned long* number) {
  const IndexedPlace* place = view.index.At(offset);
  if (place == nullptr) return false;
  if (place->kind == IndexedPlace::kListEntry) {
    *list = place->list;
    *number = static_cast<unsigned long>(place->index);
    return true;
  }
  if (place->kind != IndexedPlace::kDefinition) return false;
  const std::vector<StoredField> fields =
      StoredFields(view.analysis.Bytes(), ByteSpan{place->range->begin, place->range->end},
                   DefinitionLayout(view.analysis.Layout()), place->device->m_DefArray[place->index]);
  const StoredField* field = FieldAt(fields, offset);
  if (field == nullptr || field->list < 0 || !field->stored) return false;
  *list = field->list;
  *number = field->value;
  return true;
}

// Whether the definition names the entry: a quick test before its line is
// split.
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
  const std::vector<TextRange>& entries = view.analysis.ListPlace(list).entries;
  if (includeDeclaration && number < entries.size()) locations.push_back(view.Location(entries[number]));
  const int layout = DefinitionLayout(view.analysis.Layout());
  for (const IndexedPlace& place : view.index.Places()) {
    if (place.kind != IndexedPlace::kDefinition) continue;
    const DEVICE_KVRXDEF_ITEM& def = place.device->m_DefArray[place.index];
    if (!Names(def, list, number)) continue;
    const ByteSpan line{place.range->begin, place.range->end};
    bool found = false;
    for (const StoredField& field : StoredFields(view.analysis.Bytes(), line, layout, def)) {
      if (field.list != list || !field.stored || field.value != number) continue;
      locations.push_back(view.Location(field.asWritten ? view.RangeOf(field.field.span) : *place.range));
      found = true;
    }
    // A number the line's words do not show where the reader took it from.
    if (!found) locations.push_back(view.Location(*place.range));
  }
  return locations;
}
