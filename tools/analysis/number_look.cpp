#include "tools/analysis/number_look.h"

#include "devdef/reader/read_observer.h"

namespace {

bool IsDigit(char c, bool hex) {
  if (c >= '0' && c <= '9') return true;
  return hex && ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'));
}

unsigned DigitValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  return static_cast<unsigned>(c - 'A' + 10);
}

}  // namespace

ByteSpan NumberWord(std::string_view bytes, std::uint32_t begin, std::uint32_t lineEnd, bool list) {
  std::uint32_t end = begin;
  while (end < lineEnd) {
    const char c = bytes[end];
    if (c == ' ' || c == '\t' || c == ':' || (list && c == ',')) break;
    ++end;
  }
  return ByteSpan{begin, end};
}

std::string FieldName(int field, int index) {
  switch (field) {
    case kDevdefFieldId:
      return "id";
    case kDevdefFieldPackage:
      return "package";
    case kDevdefFieldModule:
      return "module";
    case kDevdefFieldAdapter:
      return "adapter";
    default:
      return "value " + std::to_string(index);
  }
}

bool ListField(int layout, int field) {
  return field == kDevdefFieldAdapter || (layout == 7 && field == kDevdefFieldPackage);
}

bool SixteenBitField(int field) { return field == kDevdefFieldPackage || field == kDevdefFieldAdapter; }

NumberMisread LookOfNumber(std::string_view bytes, const FieldRecord& field) {
  // Most numbers are digits that the reader took whole (the word opens with
  // a digit of the field's radix and the reader took all of it, so it is
  // digits alone, or 0x and digits), too few to pass the field's width.
  const std::uint32_t length = field.word.end - field.word.begin;
  const unsigned char first = static_cast<unsigned char>(bytes[field.word.begin]);
  const bool digitFirst =
      (first >= '0' && first <= '9') || (field.hex && ((first >= 'a' && first <= 'f') || (first >= 'A' && first <= 'F')));
  const std::uint32_t safe = SixteenBitField(field.field) ? 4 : field.hex ? 8 : 9;
  if (digitFirst && field.taken.begin == field.word.begin && field.taken.end == field.word.end && length <= safe) {
    return NumberMisread::kNone;
  }
  const std::string_view word = bytes.substr(field.word.begin, field.word.end - field.word.begin);
  const size_t taken = field.taken.end > field.word.begin ? field.taken.end - field.word.begin : 0;
  size_t at = 0;
  bool negative = false;
  if (at < word.size() && (word[at] == '-' || word[at] == '+')) negative = word[at++] == '-';
  if (field.hex && at + 2 < word.size() && word[at] == '0' && (word[at + 1] == 'x' || word[at + 1] == 'X')) at += 2;
  // The digits' value, held up to the first bit past 32.
  std::uint64_t value = 0;
  const size_t digits = at;
  while (at < word.size() && IsDigit(word[at], field.hex)) {
    value = value * (field.hex ? 16 : 10) + DigitValue(word[at]);
    if (value > 0xFFFFFFFFull) value = 0x100000000ull;
    ++at;
  }
  if (negative) return NumberMisread::kSign;
  if (taken < word.size()) {
    const char stop = word[taken];
    if ((stop == 'x' || stop == 'X') && !field.hex && taken == digits + 1 && word[digits] == '0') {
      return NumberMisread::kRadixPrefix;
    }
    if (stop == '.' && taken + 1 < word.size() && IsDigit(word[taken + 1], false)) return NumberMisread::kDecimalPoint;
    return NumberMisread::kTrailing;
  }
  const std::uint64_t limit = SixteenBitField(field.field) ? 0xFFFFu : 0xFFFFFFFFu;
  if (value > limit || value != field.value) return NumberMisread::kWidth;
  return NumberMisread::kNone;
}
