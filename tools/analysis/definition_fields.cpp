#include "tools/analysis/definition_fields.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "devdef/devdef.h"

namespace {

bool IsBlank(unsigned char c) { return c == ' ' || c == '\t'; }

}  // namespace

std::vector<DefinitionField> SplitDefinitionFields(const std::string& bytes, ByteSpan line, int layout) {
  std::vector<DefinitionField> fields;
  const unsigned char* b = reinterpret_cast<const unsigned char*>(bytes.data());
  size_t at = line.begin;
  if (layout == 7 && at < line.end && (b[at] == 0xB0 || b[at] == 0xDF)) ++at;
  if (line.end - at < 8) return fields;
  at += 8;
  const void* colon = std::memchr(b + at, ':', line.end - at);
  const size_t end = colon != nullptr ? static_cast<size_t>(static_cast<const unsigned char*>(colon) - b) : line.end;
  // The words in file order: id, package(s), module, adapters, values.
  const int values = layout == 7 ? 11 : layout == 2 ? 3 : 1;
  const int firstValue = layout == 1 ? 2 : 0;
  int word = 0;
  while (at < end) {
    while (at < end && DevdefIsSpace(b[at])) ++at;
    if (at >= end) break;
    size_t stop = at;
    while (stop < end && !IsBlank(b[stop])) ++stop;
    const bool packageList = word == 1 && layout == 7;
    if (word == 3 || packageList) {
      int index = 0;
      for (size_t piece = at; piece <= stop;) {
        const void* comma = std::memchr(b + piece, ',', stop - piece);
        const size_t pieceEnd = comma != nullptr ? static_cast<size_t>(static_cast<const unsigned char*>(comma) - b) : stop;
        fields.push_back(DefinitionField{packageList ? DefinitionField::kPackage : DefinitionField::kAdapter, index++,
                                         ByteSpan{piece, pieceEnd}});
        piece = pieceEnd + 1;
      }
    } else if (word == 0) {
      fields.push_back(DefinitionField{DefinitionField::kId, 0, ByteSpan{at, stop}});
    } else if (word == 1) {
      fields.push_back(DefinitionField{DefinitionField::kPackage, 0, ByteSpan{at, stop}});
    } else if (word == 2) {
      fields.push_back(DefinitionField{DefinitionField::kModule, 0, ByteSpan{at, stop}});
    } else if (word - 4 < values) {
      fields.push_back(DefinitionField{DefinitionField::kValue, firstValue + word - 4, ByteSpan{at, stop}});
    }
    ++word;
    at = stop;
  }
  return fields;
}

const DefinitionField* FindField(const std::vector<DefinitionField>& fields, const std::string& bytes,
                                 DefinitionField::Kind kind, int index, unsigned long value, unsigned long mask) {
  // The fields stand sorted by kind and index, so a line of many numbers
  // costs one search per number, not one pass.
  const auto found = std::lower_bound(fields.begin(), fields.end(), std::make_pair(kind, index),
                                      [](const DefinitionField& field, const std::pair<DefinitionField::Kind, int>& key) {
                                        return field.kind != key.first ? field.kind < key.first : field.index < key.second;
                                      });
  if (found == fields.end() || found->kind != kind || found->index != index) return nullptr;
  const DefinitionField& field = *found;
  if (mask == 0) return &field;
  int number = 0;
  const std::string text = bytes.substr(field.span.begin, field.span.end - field.span.begin);
  if (DevdefScanDecimal(text.c_str(), &number) != 1) return nullptr;
  return (static_cast<unsigned long>(static_cast<unsigned int>(number)) & mask) == (value & mask) ? &field : nullptr;
}
