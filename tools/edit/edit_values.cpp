#include "tools/edit/edit_values.h"

#include <cctype>

#include "tools/text/text_encoding.h"
#include "tools/text/utf8.h"
#include "tools/text/windows1252.h"

bool ParseEditNumber(const std::string& text, DWORD* value) {
  size_t at = 0;
  bool negative = false;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) negative = text[at++] == '-';
  int radix = 10;
  if (text.size() >= at + 2 && text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X')) {
    radix = 16;
    at += 2;
  }
  if (at == text.size()) return false;
  unsigned long long number = 0;
  for (; at < text.size(); ++at) {
    const int c = static_cast<unsigned char>(text[at]);
    int digit = -1;
    if (c >= '0' && c <= '9') digit = c - '0';
    if (radix == 16 && std::isxdigit(c) && digit < 0) digit = std::tolower(c) - 'a' + 10;
    if (digit < 0) return false;
    number = number * static_cast<unsigned>(radix) + static_cast<unsigned>(digit);
    if (number > 0xFFFFFFFFull) return false;
  }
  if (negative && number > 0x80000000ull) return false;
  *value = static_cast<DWORD>(negative ? 0x100000000ull - number : number);
  return true;
}

std::string FormatLike(std::string_view old, DWORD value, bool hex) {
  std::string prefix;
  std::string_view digits = old;
  if (!digits.empty() && digits[0] == '+') {
    prefix = "+";
    digits.remove_prefix(1);
  }
  bool lower = false;
  if (hex && digits.size() >= 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
    prefix += digits.substr(0, 2);
    digits.remove_prefix(2);
  }
  for (const char c : digits) lower = lower || (c >= 'a' && c <= 'f');
  std::string number;
  const char* const letters = lower ? "0123456789abcdef" : "0123456789ABCDEF";
  const DWORD radix = hex ? 16 : 10;
  do {
    number.insert(number.begin(), letters[value % radix]);
    value /= radix;
  } while (value != 0);
  // Leading zeros say the field has a width: keep it.
  if (digits.size() > 1 && digits[0] == '0' && number.size() < digits.size()) {
    number.insert(0, digits.size() - number.size(), '0');
  }
  return prefix + number;
}

namespace {

// The byte of character in encoding, or -1.
int ByteOf(TextEncoding encoding, char32_t character) {
  if (character < 0x80) return static_cast<int>(character);
  if (encoding == TextEncoding::kLatin1) return character < 0x100 ? static_cast<int>(character) : -1;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    if (Windows1252CodePoint(static_cast<unsigned char>(byte)) == character) return byte;
  }
  return -1;
}

}  // namespace

bool FileBytesOf(const std::string& argument, bool asName, std::string* bytes, std::string* problem) {
  bytes->clear();
  const TextEncoding encoding = ShownEncoding();
  size_t at = 0;
  while (at < argument.size()) {
    char32_t character = 0;
    const size_t length = NextCodePoint(argument.data() + at, argument.size() - at, &character);
    if (character < 0x20 || character == 0x7F || (character >= 0x80 && character < 0xA0)) {
      *problem = "it holds a control character, which a line of the file cannot hold";
      return false;
    }
    if (encoding == TextEncoding::kUtf8) {
      bytes->append(argument, at, length);
    } else {
      const int byte = ByteOf(encoding, character);
      if (byte < 0) {
        *problem = std::string("it holds a character that the file's encoding (") + TextEncodingName(encoding) +
                   ") cannot hold";
        return false;
      }
      bytes->push_back(static_cast<char>(byte));
    }
    at += length;
  }
  if (asName) {
    for (char& c : *bytes) c = c == ' ' ? '_' : c;
  }
  return true;
}

std::string ReadName(std::string bytes) {
  for (char& c : bytes) c = c == '_' ? ' ' : c;
  return bytes;
}
