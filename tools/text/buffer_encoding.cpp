#include "tools/text/buffer_encoding.h"

#include <cstring>

#include "tools/text/text_encoding.h"
#include "tools/text/utf8.h"
#include "tools/text/windows1252.h"

namespace {

// The byte of a character, or -1 when it has none: U+0000 to U+00FF give
// the byte of their number, the other characters of Windows-1252 their
// byte there.
int ByteOf(char32_t character) {
  if (character <= 0xFF) return static_cast<int>(character);
  for (int byte = 0x80; byte < 0xA0; ++byte) {
    if (Windows1252CodePoint(static_cast<unsigned char>(byte)) == character) return byte;
  }
  return -1;
}

}  // namespace

BufferEncoding EncodeBuffer(std::string& text) {
  char* b = &text[0];
  const size_t length = text.size();
  // First only look: a character without a byte leaves the text as it is.
  size_t first = AsciiRun(b, length);
  if (first == length) return BufferEncoding::kWindows1252;
  for (size_t i = first; i < length;) {
    i += AsciiRun(b + i, length - i);
    if (i >= length) break;
    char32_t character = 0;
    const size_t size = NextCodePoint(b + i, length - i, &character);
    if (character >= kIllFormedBase || ByteOf(character) < 0) return BufferEncoding::kUtf8;
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
    i += NextCodePoint(b + i, length - i, &character);
    b[out++] = static_cast<char>(ByteOf(character));
  }
  text.resize(out);
  return BufferEncoding::kWindows1252;
}

std::string DecodeBuffer(BufferEncoding encoding, std::string_view bytes) {
  if (encoding == BufferEncoding::kUtf8) return std::string(bytes);
  std::string out;
  AppendDecoded(TextEncoding::kWindows1252, bytes.data(), bytes.size(), &out);
  return out;
}
