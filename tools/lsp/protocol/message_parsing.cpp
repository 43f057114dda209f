#include "tools/lsp/protocol/message_parsing.h"

#include <cstring>
#include <vector>

#include "tools/text/utf8.h"

using nlohmann::json;

namespace {

// What stands for a decoded string in the text the library parses; the
// number behind it is the string's index. NUL and U+0001 begin no string a
// client sends for a value that is this long.
constexpr char kMark[] = "\\u0000\\u0001devdef:";
constexpr char kDecodedMark[] =
    "\x00\x01"
    "devdef:";
constexpr size_t kDecodedMarkLength = sizeof kDecodedMark - 1;

int HexValue(unsigned char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Four hex digits at text; -1 when they are not.
long Hex4(const unsigned char* text, size_t length) {
  if (length < 4) return -1;
  long value = 0;
  for (size_t i = 0; i < 4; ++i) {
    const int digit = HexValue(text[i]);
    if (digit < 0) return -1;
    value = value * 16 + digit;
  }
  return value;
}

// Decodes the contents of a JSON string (between its quotes) into out;
// false for anything that is not a well-formed string.
bool DecodeString(const unsigned char* text, size_t length, std::string& out) {
  out.reserve(length);
  size_t i = 0;
  while (i < length) {
    size_t plain = i;
    while (plain < length && text[plain] >= 0x20 && text[plain] < 0x80 && text[plain] != '\\') ++plain;
    out.append(reinterpret_cast<const char*>(text + i), plain - i);
    i = plain;
    if (i >= length) break;
    const unsigned char c = text[i];
    if (c < 0x20) return false;
    if (c >= 0x80) {
      char32_t character = 0;
      const size_t size = NextCodePoint(reinterpret_cast<const char*>(text + i), length - i, &character);
      if (character >= kIllFormedBase) return false;
      out.append(reinterpret_cast<const char*>(text + i), size);
      i += size;
      continue;
    }
    // An escape.
    if (i + 1 >= length) return false;
    const unsigned char kind = text[i + 1];
    const char* simple = std::strchr("\"\\/bfnrt", kind);
    if (kind != 0 && simple != nullptr && kind != 'u') {
      static const char kReplacements[] = "\"\\/\b\f\n\r\t";
      out += kReplacements[simple - "\"\\/bfnrt"];
      i += 2;
      continue;
    }
    if (kind != 'u') return false;
    long unit = Hex4(text + i + 2, length - i - 2);
    if (unit < 0) return false;
    i += 6;
    char32_t character = static_cast<char32_t>(unit);
    if (unit >= 0xDC00 && unit <= 0xDFFF) return false;
    if (unit >= 0xD800 && unit <= 0xDBFF) {
      if (i + 6 > length || text[i] != '\\' || text[i + 1] != 'u') return false;
      const long low = Hex4(text + i + 2, length - i - 2);
      if (low < 0xDC00 || low > 0xDFFF) return false;
      character = 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (static_cast<char32_t>(low) - 0xDC00);
      i += 6;
    }
    AppendUtf8(out, character);
  }
  return true;
}

// The closing quote of the string whose contents start at from, or npos.
size_t StringEnd(const std::string& body, size_t from) {
  for (size_t at = from; at < body.size(); ++at) {
    const void* quote = std::memchr(body.data() + at, '"', body.size() - at);
    if (quote == nullptr) return std::string::npos;
    at = static_cast<size_t>(static_cast<const char*>(quote) - body.data());
    size_t backslashes = 0;
    while (at - backslashes > from && body[at - backslashes - 1] == '\\') ++backslashes;
    if (backslashes % 2 == 0) return at;
  }
  return std::string::npos;
}

// Puts each decoded string where its mark stands.
void PutBack(json& root, std::vector<std::string>& decoded) {
  std::vector<json*> pending{&root};
  while (!pending.empty()) {
    json* value = pending.back();
    pending.pop_back();
    if (value->is_structured()) {
      for (json& child : *value) pending.push_back(&child);
      continue;
    }
    if (!value->is_string()) continue;
    const std::string& text = value->get_ref<const std::string&>();
    if (text.size() <= kDecodedMarkLength ||
        text.compare(0, kDecodedMarkLength, kDecodedMark, kDecodedMarkLength) != 0) {
      continue;
    }
    const size_t index = std::strtoul(text.c_str() + kDecodedMarkLength, nullptr, 10);
    if (index < decoded.size()) *value = std::move(decoded[index]);
  }
}

}  // namespace

json ParseMessage(const std::string& body, size_t longString) {
  std::vector<std::string> decoded;
  std::string rest;
  size_t copied = 0;
  for (size_t at = 0; at < body.size();) {
    const void* quote = std::memchr(body.data() + at, '"', body.size() - at);
    if (quote == nullptr) break;
    const size_t open = static_cast<size_t>(static_cast<const char*>(quote) - body.data());
    const size_t close = StringEnd(body, open + 1);
    if (close == std::string::npos) break;
    at = close + 1;
    if (close - open - 1 < longString) continue;
    // A key stays where it is: the mark must stand for a value.
    size_t behind = at;
    while (behind < body.size() &&
           (body[behind] == ' ' || body[behind] == '\t' || body[behind] == '\n' || body[behind] == '\r')) {
      ++behind;
    }
    if (behind < body.size() && body[behind] == ':') continue;
    std::string text;
    if (!DecodeString(reinterpret_cast<const unsigned char*>(body.data()) + open + 1, close - open - 1, text)) {
      return json::parse(body, nullptr, false);
    }
    rest.append(body, copied, open + 1 - copied);
    rest += kMark + std::to_string(decoded.size());
    copied = close;
    decoded.push_back(std::move(text));
  }
  if (decoded.empty()) return json::parse(body, nullptr, false);
  rest.append(body, copied, std::string::npos);
  json message = json::parse(rest, nullptr, false);
  if (!message.is_discarded()) PutBack(message, decoded);
  return message;
}
