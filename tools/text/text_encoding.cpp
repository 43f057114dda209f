#include "tools/text/text_encoding.h"

#include <cstdint>
#include <cstring>

namespace {

// Code points of the Windows-1252 bytes 0x80 to 0x9F; the unassigned ones
// keep their own number.
constexpr char16_t kWindows1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char kReplacement[] = "\xEF\xBF\xBD";

TextEncoding g_shown = TextEncoding::kWindows1252;

void AppendCodePoint(char32_t c, std::string* out) {
  if (c < 0x80) {
    out->push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out->push_back(static_cast<char>(0xC0 | (c >> 6)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out->push_back(static_cast<char>(0xE0 | (c >> 12)));
    out->push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

// The length of the run of ASCII bytes at bytes, eight at a time.
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

// True when the byte at i is a mark the reader takes off a device name or
// a definition line (0xB0 or 0xDF first on its line, blanks before it)
// rather than the lead of a UTF-8 character.
bool IsMarkByte(const char* bytes, size_t length, size_t i) {
  const unsigned char c = static_cast<unsigned char>(bytes[i]);
  if (c != 0xB0 && c != 0xDF) return false;
  if (i + 1 < length && (static_cast<unsigned char>(bytes[i + 1]) & 0xC0) == 0x80) return false;
  size_t before = i;
  while (before > 0 && (bytes[before - 1] == ' ' || bytes[before - 1] == '\t')) --before;
  return before == 0 || bytes[before - 1] == '\n' || bytes[before - 1] == '\r';
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

TextEncoding DetectTextEncoding(const std::string& bytes) {
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
      const bool mapped = encoding == TextEncoding::kWindows1252 && c < 0xA0;
      AppendCodePoint(mapped ? kWindows1252High[c - 0x80] : c, out);
      continue;
    }
    char32_t c = 0;
    const size_t size = NextCodePoint(bytes + i, length - i, &c);
    if (c >= kIllFormedBase) {
      out->append(kReplacement, 3);
      lossless = false;
    } else {
      out->append(bytes + i, size);
    }
    i += size;
  }
  return lossless;
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
