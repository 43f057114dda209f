#include "tools/text/utf8.h"

#include <cstdint>
#include <cstring>

size_t NextCodePoint(const char* bytes, size_t length, char32_t* codePoint) {
  const auto* p = reinterpret_cast<const unsigned char*>(bytes);
  const unsigned char lead = p[0];
  if (lead < 0x80) {
    *codePoint = lead;
    return 1;
  }
  // The bytes that may follow the lead, by the table of well-formed
  // sequences: the second byte's range is narrower after E0, ED, F0 and F4.
  size_t need = 0;
  char32_t value = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    need = 1;
    value = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    need = 2;
    value = lead & 0x0F;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    need = 3;
    value = lead & 0x07;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    *codePoint = kIllFormedBase + lead;
    return 1;
  }
  size_t i = 1;
  for (; i <= need && i < length; ++i) {
    if (p[i] < low || p[i] > high) break;
    low = 0x80;
    high = 0xBF;
    value = (value << 6) | (p[i] & 0x3F);
  }
  if (i <= need) {
    *codePoint = kIllFormedBase + lead;
    return i;
  }
  *codePoint = value;
  return i;
}

void AppendUtf8(std::string& out, char32_t character) {
  if (character < 0x80) {
    out += static_cast<char>(character);
  } else if (character < 0x800) {
    out += static_cast<char>(0xC0 | (character >> 6));
    out += static_cast<char>(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    out += static_cast<char>(0xE0 | (character >> 12));
    out += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (character >> 18));
    out += static_cast<char>(0x80 | ((character >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (character & 0x3F));
  }
}

size_t AsciiRun(const char* bytes, size_t length) {
  size_t i = 0;
  for (; i + 8 <= length; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, bytes + i, 8);
    if ((word & 0x8080808080808080ull) != 0) break;
  }
  while (i < length && static_cast<unsigned char>(bytes[i]) < 0x80) ++i;
  return i;
}
