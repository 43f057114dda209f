#include "tools/lsp/features/goto_definition.h"

#include "tools/lsp/features/definition_field_at.h"

nlohmann::json DefinitionAt(const DocumentView& view, size_t offset) {
  const IndexedPlace* place = view.index.At(offset);
  if (place == nullptr || place->kind != IndexedPlace::kDefinition) return nullptr;
  const ByteSpan line{place->range->begin, place->range->end};
  const std::vector<StoredField> fields = StoredFields(
      view.analysis.Bytes(), line, DefinitionLayout(view.analysis.Layout()), place->device->m_DefArray[place->index]);
  const StoredField* field = FieldAt(fields, offset);
  if (field == nullptr || field->list < 0 || !field->stored) return nullptr;
  const std::vector<TextRange>& entries = view.analysis.ListPlace(field->list).entries;
  if (field->value >= entries.size()) return nullptr;
  return view.Location(entries[field->value]);
}
