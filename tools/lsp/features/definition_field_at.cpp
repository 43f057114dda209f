#include "tools/lsp/features/definition_field_at.h"

#include <string>

#include "devdef/platform/number_scan.h"

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

bool ShowsItsNumber(std::string_view bytes, const FieldRecord& field) {
  if (field.taken != field.word) return false;
  const std::string word(bytes.substr(field.word.begin, field.word.end - field.word.begin));
  unsigned int number = 0;
  if (DevdefScanNumber(word.c_str(), false, &number, nullptr) == nullptr) return false;
  const DWORD mask = ListOfField(field.field) == 0 || ListOfField(field.field) == 1 ? 0xFFFF : 0xFFFFFFFF;
  return (number & mask) == (field.value & mask);
}

const FieldRecord* FieldAt(const std::vector<FieldRecord>& fields, size_t offset) {
  for (const FieldRecord& field : fields) {
    if (field.word.begin <= offset && offset < field.word.end) return &field;
  }
  return nullptr;
}
