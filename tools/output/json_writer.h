// JSON written as it is produced, into an output buffer, in the layout the
// tool's documents have always had: two blanks of indent per level, one
// member or element per line, "key": value, empty arrays and objects as []
// and {}. Strings are UTF-8; '"', '\' and the control characters are
// escaped (\b \f \n \r \t, others as \u00xx), and each ill-formed part of
// UTF-8 becomes U+FFFD. Keys come in the order they are written: the
// documents put them in alphabetical order, and their writers do so.
// A compact writer puts a value on one line instead, as dump() does:
// no blanks and no line ends inside it, "key":value.
#ifndef DEVDEF_TOOLS_OUTPUT_JSON_WRITER_H_
#define DEVDEF_TOOLS_OUTPUT_JSON_WRITER_H_

#include <cstdint>
#include <string_view>
#include <vector>

#include "tools/output/output_buffer.h"

class JsonWriter {
 public:
  enum class Layout { kIndented, kCompact };

  explicit JsonWriter(OutputBuffer& out, Layout layout = Layout::kIndented)
      : out_(out), compact_(layout == Layout::kCompact) {}

  void BeginObject();
  void EndObject();
  void BeginArray();
  void EndArray();
  // The key of the object's next member, whose value follows.
  void Key(std::string_view key);

  void String(std::string_view text);
  void Unsigned(std::uint64_t value);
  void Signed(std::int64_t value);
  void Bool(bool value);
  void Null();

  // The line end behind a whole document.
  void EndDocument() { out_.Append('\n'); }

  OutputBuffer& Out() { return out_; }

 private:
  // Where a value or key goes: behind the key, or on a line of its own.
  void BeforeItem();
  void Close(char bracket);
  void Escaped(std::string_view text);

  OutputBuffer& out_;
  const bool compact_;
  // Per open array or object: true while it holds nothing yet.
  std::vector<bool> empty_;
  bool afterKey_ = false;
};

#endif  // DEVDEF_TOOLS_OUTPUT_JSON_WRITER_H_
