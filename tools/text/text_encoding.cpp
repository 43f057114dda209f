#include "tools/text/text_encoding.h"

#include "tools/text/line_end.h"
#include "tools/text/utf8.h"
#include "tools/text/windows1252.h"

namespace {

TextEncoding g_shown = TextEncoding::kWindows1252;

// True when the byte at i is a mark the reader takes off a device name or
// a definition line (0xB0 or 0xDF first on its line, blanks before it)
// rather than the lead of a UTF-8 character.
bool IsMarkByte(const char* bytes, size_t length, size_t i) {
  const unsigned char c = static_cast<unsigned char>(bytes[i]);
  if (c != 0xB0 && c != 0xDF) return false;
  if (i + 1 < length && (static_cast<unsigned char>(bytes[i + 1]) & 0xC0) == 0x80) return false;
  size_t before = i;
  while (before > 0 && (bytes[before - 1] == ' ' || bytes[before - 1] == '\t')) --before;
  return before == 0 || IsLineEnd(bytes[before - 1]);
}

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameAsciiCase(const std::string& name, const char* expected) {
  size_t i = 0;
  for (; i < name.size() && expected[i] != '\0'; ++i) {
    if (AsciiLower(name[i]) != expected[i]) return false;
  }
  return i == name.size() && expected[i] == '\0';
}

}  // namespace

bool ParseTextEncoding(const std::string& name, TextEncoding* encoding) {
  for (TextEncoding candidate : {TextEncoding::kUtf8, TextEncoding::kWindows1252, TextEncoding::kLatin1}) {
    if (SameAsciiCase(name, TextEncodingName(candidate))) {
      *encoding = candidate;
      return true;
    }
  }
  return false;
}

const char* TextEncodingName(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::kUtf8:
      return "utf-8";
    case TextEncoding::kWindows1252:
      return "cp1252";
    case TextEncoding::kLatin1:
      break;
  }
  return "latin1";
}

TextEncoding DetectTextEncoding(std::string_view bytes) {
  const char* data = bytes.data();
  const size_t length = bytes.size();
  size_t i = 0;
  while (i < length) {
    i += AsciiRun(data + i, length - i);
    if (i == length) break;
    char32_t c = 0;
    const size_t size = NextCodePoint(data + i, length - i, &c);
    if (c < kIllFormedBase) {
      i += size;
      continue;
    }
    if (!IsMarkByte(data, length, i)) return TextEncoding::kWindows1252;
    ++i;
  }
  return TextEncoding::kUtf8;
}

bool AppendDecoded(TextEncoding encoding, const char* bytes, size_t length, std::string* out) {
  out->reserve(out->size() + length);
  bool lossless = true;
  size_t i = 0;
  while (i < length) {
    const size_t ascii = AsciiRun(bytes + i, length - i);
    out->append(bytes + i, ascii);
    i += ascii;
    if (i == length) break;
    if (encoding != TextEncoding::kUtf8) {
      const unsigned char c = static_cast<unsigned char>(bytes[i++]);
      AppendUtf8(*out, encoding == TextEncoding::kWindows1252 ? Windows1252CodePoint(c) : c);
      continue;
    }
    char32_t c = 0;
    const size_t size = NextCodePoint(bytes + i, length - i, &c);
    if (c >= kIllFormedBase) {
      out->append(kReplacementCharacter, 3);
      lossless = false;
    } else {
      out->append(bytes + i, size);
    }
    i += size;
  }
  return lossless;
}

long ColumnOf(TextEncoding encoding, std::string_view before, ColumnUnit unit) {
  long column = 1;
  size_t at = 0;
  while (at < before.size()) {
    const size_t ascii = AsciiRun(before.data() + at, before.size() - at);
    column += static_cast<long>(ascii);
    at += ascii;
    if (at >= before.size()) break;
    if (encoding != TextEncoding::kUtf8) {
      // One byte, one character of two or three bytes in UTF-8.
      const char32_t character = encoding == TextEncoding::kLatin1
                                     ? static_cast<unsigned char>(before[at])
                                     : Windows1252CodePoint(static_cast<unsigned char>(before[at]));
      column += unit == ColumnUnit::kCodePoints ? 1 : character < 0x800 ? 2 : 3;
      ++at;
      continue;
    }
    char32_t character = 0;
    const size_t length = NextCodePoint(before.data() + at, before.size() - at, &character);
    const size_t taken = length == 0 ? 1 : length;
    column += unit == ColumnUnit::kCodePoints ? 1 : static_cast<long>(taken);
    at += taken;
  }
  return column;
}

void SetShownEncoding(TextEncoding encoding) { g_shown = encoding; }

TextEncoding ShownEncoding() { return g_shown; }

std::string ShownText(const char* bytes, size_t length) {
  std::string text;
  AppendDecoded(g_shown, bytes, length, &text);
  return text;
}

std::string ShownText(const std::string& bytes) { return ShownText(bytes.data(), bytes.size()); }

std::string ShownText(const CString& text) {
  return ShownText(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}
