#include "tools/text/control_escape.h"

namespace {

constexpr char kHex[] = "0123456789abcdef";

bool IsC0OrDelete(unsigned char c) { return c < 0x20 || c == 0x7f; }

// U+0080 to U+009F, which UTF-8 writes as 0xC2 0x80 to 0xC2 0x9F.
bool IsC1At(std::string_view text, size_t i) {
  return static_cast<unsigned char>(text[i]) == 0xC2 && i + 1 < text.size() &&
         static_cast<unsigned char>(text[i + 1]) >= 0x80 && static_cast<unsigned char>(text[i + 1]) <= 0x9F;
}

void AppendHex(std::string& out, unsigned char c) {
  out += kHex[c >> 4];
  out += kHex[c & 0xF];
}

}  // namespace

std::string EscapeControls(std::string_view text) {
  std::string out;
  AppendEscapedControls(text, &out);
  return out;
}

void AppendEscapedControls(std::string_view text, std::string* out) {
  out->reserve(out->size() + text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (IsC0OrDelete(c)) {
      *out += "\\x";
      AppendHex(*out, c);
    } else if (IsC1At(text, i)) {
      *out += "\\u00";
      AppendHex(*out, static_cast<unsigned char>(text[++i]));
    } else {
      *out += text[i];
    }
  }
}
