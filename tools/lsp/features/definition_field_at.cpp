#include "tools/lsp/features/definition_field_at.h"

int ListOfField(int field) {
  switch (field) {
    case kDevdefFieldPackage:
      return 0;
    case kDevdefFieldAdapter:
      return 1;
    case kDevdefFieldModule:
      return 2;
    default:
      return -1;
  }
}

ByteSpan KeywordSpan(std::string_view bytes, ByteSpan line, int layout) {
  std::uint32_t end = line.begin;
  if (layout == 7 && end < line.end) {
    const unsigned char first = static_cast<unsigned char>(bytes[end]);
    if (first == 0xB0 || first == 0xDF) ++end;
  }
  end = end + 8 <= line.end ? end + 8 : line.end;
  return ByteSpan{line.begin, end};
}

const FieldRecord* FieldAt(const std::vector<FieldRecord>& fields, size_t offset) {
  for (const FieldRecord& field : fields) {
    if (field.word.begin <= offset && offset < field.word.end) return &field;
  }
  return nullptr;
}
