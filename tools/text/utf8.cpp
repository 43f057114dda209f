#include "tools/text/utf8.h"

#include <cstdint>
#include <cstring>

size_t DecodeUtf8(const unsigned char* text, size_t length, char32_t* character) {
  const unsigned char c = text[0];
  if (c < 0x80) {
    *character = c;
    return 1;
  }
  const size_t need = c >= 0xC2 && c <= 0xDF ? 2 : c >= 0xE0 && c <= 0xEF ? 3 : c >= 0xF0 && c <= 0xF4 ? 4 : 0;
  if (need == 0 || need > length) return 0;
  char32_t value = need == 2 ? (c & 0x1F) : need == 3 ? (c & 0x0F) : (c & 0x07);
  for (size_t i = 1; i < need; ++i) {
    if ((text[i] & 0xC0) != 0x80) return 0;
    value = (value << 6) | (text[i] & 0x3F);
  }
  static const char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kLeast[need] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return 0;
  *character = value;
  return need;
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

size_t AsciiRun(const unsigned char* text, size_t length) {
  size_t i = 0;
  while (i + 8 <= length) {
    std::uint64_t word;
    std::memcpy(&word, text + i, 8);
    if ((word & 0x8080808080808080ull) != 0) break;
    i += 8;
  }
  while (i < length && text[i] < 0x80) ++i;
  return i;
}
