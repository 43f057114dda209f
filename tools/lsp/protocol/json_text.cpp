#include "tools/lsp/protocol/json_text.h"

#include <charconv>

#include "tools/text/utf8.h"

void AppendJsonString(std::string& out, const char* text, size_t length) {
  static const char kHex[] = "0123456789abcdef";
  const unsigned char* b = reinterpret_cast<const unsigned char*>(text);
  out += '"';
  size_t i = 0;
  while (i < length) {
    size_t plain = i;
    while (plain < length && b[plain] >= 0x20 && b[plain] < 0x80 && b[plain] != '"' && b[plain] != '\\') ++plain;
    out.append(text + i, plain - i);
    i = plain;
    if (i >= length) break;
    const unsigned char c = b[i];
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
      ++i;
    } else if (c < 0x20) {
      out += "\\u00";
      out += kHex[c >> 4];
      out += kHex[c & 15];
      ++i;
    } else {
      char32_t character = 0;
      const size_t size = NextCodePoint(text + i, length - i, &character);
      if (character >= kIllFormedBase) {
        out += kReplacementCharacter;
        ++i;
      } else {
        out.append(text + i, size);
        i += size;
      }
    }
  }
  out += '"';
}

void AppendJsonString(std::string& out, const std::string& text) { AppendJsonString(out, text.data(), text.size()); }

void AppendJsonNumber(std::string& out, long long number) {
  char digits[24];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
  out.append(digits, static_cast<size_t>(result.ptr - digits));
}

void AppendJsonPosition(std::string& out, const PositionConverter& positions, const TextPoint& point) {
  const LspPosition position = positions.ToPosition(point);
  out += "{\"line\":";
  AppendJsonNumber(out, position.line);
  out += ",\"character\":";
  AppendJsonNumber(out, position.character);
  out += '}';
}

void AppendJsonRange(std::string& out, const PositionConverter& positions, const TextRange& range) {
  out += "{\"start\":";
  AppendJsonPosition(out, positions, range.start);
  out += ",\"end\":";
  AppendJsonPosition(out, positions, range.stop);
  out += '}';
}
