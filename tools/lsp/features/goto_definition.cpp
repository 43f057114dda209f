#include "tools/lsp/features/goto_definition.h"

#include "tools/lsp/features/definition_field_at.h"

nlohmann::json DefinitionAt(const DocumentView& view, size_t offset) {
  IndexedPlace place;
  if (!view.index.At(offset, &place) || place.kind != IndexedPlace::kDefinition) return nullptr;
  const std::vector<FieldRecord> fields = view.analysis.Fields(place.record);
  const FieldRecord* field = FieldAt(fields, offset);
  if (field == nullptr || ListOfField(field->field) < 0) return nullptr;
  const std::vector<ByteSpan>& entries = view.analysis.ListEntries(ListOfField(field->field));
  if (field->value >= entries.size()) return nullptr;
  return view.Location(view.RangeOf(entries[field->value]));
}
