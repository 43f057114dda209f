#include "tools/output/json_writer.h"

#include "tools/text/utf8.h"

namespace {

constexpr char kHex[] = "0123456789abcdef";

// True for the bytes a string cannot hold as they are, or that may start
// an ill-formed part.
bool Special(unsigned char c) { return c < 0x20 || c == '"' || c == '\\' || c >= 0x80; }

}  // namespace

void JsonWriter::BeforeItem() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (empty_.empty()) return;
  if (compact_) {
    if (!empty_.back()) out_.Append(',');
    empty_.back() = false;
    return;
  }
  if (empty_.back()) {
    out_.Append('\n');
    empty_.back() = false;
  } else {
    out_.Append(",\n", 2);
  }
  out_.AppendRepeated(' ', 2 * empty_.size());
}

void JsonWriter::Close(char bracket) {
  const bool empty = empty_.back();
  empty_.pop_back();
  if (!empty && !compact_) {
    out_.Append('\n');
    out_.AppendRepeated(' ', 2 * empty_.size());
  }
  out_.Append(bracket);
}

void JsonWriter::BeginObject() {
  BeforeItem();
  out_.Append('{');
  empty_.push_back(true);
}

void JsonWriter::EndObject() { Close('}'); }

void JsonWriter::BeginArray() {
  BeforeItem();
  out_.Append('[');
  empty_.push_back(true);
}

void JsonWriter::EndArray() { Close(']'); }

void JsonWriter::Key(std::string_view key) {
  BeforeItem();
  Escaped(key);
  if (compact_) {
    out_.Append(':');
  } else {
    out_.Append(": ", 2);
  }
  afterKey_ = true;
}

void JsonWriter::String(std::string_view text) {
  BeforeItem();
  Escaped(text);
}

void JsonWriter::Unsigned(std::uint64_t value) {
  BeforeItem();
  out_.AppendUnsigned(value);
}

void JsonWriter::Signed(std::int64_t value) {
  BeforeItem();
  out_.AppendSigned(value);
}

void JsonWriter::Bool(bool value) {
  BeforeItem();
  if (value) {
    out_.Append("true", 4);
  } else {
    out_.Append("false", 5);
  }
}

void JsonWriter::Null() {
  BeforeItem();
  out_.Append("null", 4);
}

void JsonWriter::Escaped(std::string_view text) {
  out_.Append('"');
  const char* bytes = text.data();
  const size_t length = text.size();
  size_t i = 0;
  while (i < length) {
    size_t plain = i;
    while (plain < length && !Special(static_cast<unsigned char>(bytes[plain]))) ++plain;
    out_.Append(bytes + i, plain - i);
    i = plain;
    if (i == length) break;
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    if (c >= 0x80) {
      // A well-formed character as it is; an ill-formed part (the longest
      // start of a well-formed sequence, or one byte) as one U+FFFD.
      char32_t code = 0;
      const size_t size = NextCodePoint(bytes + i, length - i, &code);
      if (code >= kIllFormedBase) {
        out_.Append(kReplacementCharacter, 3);
      } else {
        out_.Append(bytes + i, size);
      }
      i += size;
      continue;
    }
    ++i;
    switch (c) {
      case '"':
        out_.Append("\\\"", 2);
        break;
      case '\\':
        out_.Append("\\\\", 2);
        break;
      case '\b':
        out_.Append("\\b", 2);
        break;
      case '\f':
        out_.Append("\\f", 2);
        break;
      case '\n':
        out_.Append("\\n", 2);
        break;
      case '\r':
        out_.Append("\\r", 2);
        break;
      case '\t':
        out_.Append("\\t", 2);
        break;
      default: {
        const char escape[6] = {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 0xF]};
        out_.Append(escape, 6);
        break;
      }
    }
  }
  out_.Append('"');
}
