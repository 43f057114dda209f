#include "tools/lsp/features/definition_field_at.h"

namespace {

// The number the reader stored for a field, and the mask it compares with.
bool StoredValue(const DEVICE_KVRXDEF_ITEM& def, const DefinitionField& field, unsigned long* value,
                 unsigned long* mask) {
  *mask = 0xFFFFFFFF;
  switch (field.kind) {
    case DefinitionField::kId:
      *value = def.m_DefID;
      return true;
    case DefinitionField::kPackage:
      if (field.index >= def.m_PackageIds.GetSize()) return false;
      *value = def.m_PackageIds[field.index];
      *mask = 0xFFFF;
      return true;
    case DefinitionField::kModule:
      *value = def.m_ModulId;
      return true;
    case DefinitionField::kAdapter:
      if (field.index >= def.m_AdapterIds.GetSize()) return false;
      *value = def.m_AdapterIds[field.index];
      *mask = 0xFFFF;
      return true;
    case DefinitionField::kValue:
      if (field.index < 0 || field.index >= 11) return false;
      *value = def.m_DefValues[field.index];
      return true;
  }
  return false;
}

int ListOf(DefinitionField::Kind kind) {
  switch (kind) {
    case DefinitionField::kPackage:
      return 0;
    case DefinitionField::kAdapter:
      return 1;
    case DefinitionField::kModule:
      return 2;
    default:
      return -1;
  }
}

}  // namespace

int DefinitionLayout(int analysisLayout) { return analysisLayout == 2 || analysisLayout == 7 ? analysisLayout : 1; }

ByteSpan KeywordSpan(const std::string& bytes, ByteSpan line, int layout) {
  size_t end = line.begin;
  if (layout == 7 && end < line.end) {
    const unsigned char first = static_cast<unsigned char>(bytes[end]);
    if (first == 0xB0 || first == 0xDF) ++end;
  }
  end = end + 8 <= line.end ? end + 8 : line.end;
  return ByteSpan{line.begin, end};
}

std::vector<StoredField> StoredFields(const std::string& bytes, ByteSpan line, int layout,
                                      const DEVICE_KVRXDEF_ITEM& def) {
  const std::vector<DefinitionField> fields = SplitDefinitionFields(bytes, line, layout);
  std::vector<StoredField> out;
  out.reserve(fields.size());
  for (const DefinitionField& field : fields) {
    StoredField stored;
    stored.field = field;
    stored.list = ListOf(field.kind);
    unsigned long mask = 0;
    stored.stored = StoredValue(def, field, &stored.value, &mask);
    stored.asWritten =
        stored.stored && FindField(fields, bytes, field.kind, field.index, stored.value, mask) != nullptr;
    out.push_back(stored);
  }
  return out;
}

const StoredField* FieldAt(const std::vector<StoredField>& fields, size_t offset) {
  for (const StoredField& field : fields) {
    if (field.field.span.begin <= offset && offset < field.field.span.end) return &field;
  }
  return nullptr;
}
