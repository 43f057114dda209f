#include "tools/text/buffer_encoding.h"

#include <cstring>

#include "tools/text/utf8.h"

namespace {

// The characters of the bytes 0x80 to 0x9F in Windows-1252; the five bytes
// it leaves unassigned stand for the control characters of their number.
const char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

// The byte of a character, or -1 when Windows-1252 has none.
int ByteOf(char32_t character) {
  if (character <= 0xFF) return static_cast<int>(character);
  for (int i = 0; i < 32; ++i) {
    if (kHighControls[i] == character) return 0x80 + i;
  }
  return -1;
}

}  // namespace

BufferEncoding EncodeBuffer(std::string& text) {
  unsigned char* b = reinterpret_cast<unsigned char*>(&text[0]);
  const size_t length = text.size();
  // First only look: a character without a byte leaves the text as it is.
  size_t first = AsciiRun(b, length);
  if (first == length) return BufferEncoding::kWindows1252;
  for (size_t i = first; i < length;) {
    i += AsciiRun(b + i, length - i);
    if (i >= length) break;
    char32_t character = 0;
    const size_t size = DecodeUtf8(b + i, length - i, &character);
    if (size == 0 || ByteOf(character) < 0) return BufferEncoding::kUtf8;
    i += size;
  }
  size_t out = first;
  for (size_t i = first; i < length;) {
    const size_t run = AsciiRun(b + i, length - i);
    if (run > 0) {
      std::memmove(b + out, b + i, run);
      out += run;
      i += run;
      continue;
    }
    char32_t character = 0;
    i += DecodeUtf8(b + i, length - i, &character);
    b[out++] = static_cast<unsigned char>(ByteOf(character));
  }
  text.resize(out);
  return BufferEncoding::kWindows1252;
}

std::string DecodeBuffer(BufferEncoding encoding, const std::string& bytes) {
  const unsigned char* b = reinterpret_cast<const unsigned char*>(bytes.data());
  if (encoding == BufferEncoding::kUtf8 || AsciiRun(b, bytes.size()) == bytes.size()) return bytes;
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  for (size_t i = 0; i < bytes.size(); ++i) {
    const unsigned char c = b[i];
    AppendUtf8(out, c >= 0x80 && c < 0xA0 ? kHighControls[c - 0x80] : c);
  }
  return out;
}
