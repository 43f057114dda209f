#include "tools/utf8_text.h"

std::string ToUtf8(const char* bytes, size_t length) {
  std::string out;
  out.reserve(length);
  for (size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

std::string ToUtf8(const std::string& bytes) { return ToUtf8(bytes.data(), bytes.size()); }

std::string ToUtf8(const CString& text) {
  return ToUtf8(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}
