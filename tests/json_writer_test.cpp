// The JSON writer against nlohmann::json's dump(2), which printed every
// document of the tool before: the same bytes for the same value, tricky
// strings and numbers included; and the output buffer it writes into.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/output/json_writer.h"
#include "tools/output/output_buffer.h"

namespace {

using nlohmann::json;

// value as the writer writes it, walked member by member.
void Write(JsonWriter& writer, const json& value) {
  switch (value.type()) {
    case json::value_t::object:
      writer.BeginObject();
      for (const auto& member : value.items()) {
        writer.Key(member.key());
        Write(writer, member.value());
      }
      writer.EndObject();
      break;
    case json::value_t::array:
      writer.BeginArray();
      for (const json& element : value) Write(writer, element);
      writer.EndArray();
      break;
    case json::value_t::string:
      writer.String(value.get_ref<const std::string&>());
      break;
    case json::value_t::number_unsigned:
      writer.Unsigned(value.get<std::uint64_t>());
      break;
    case json::value_t::number_integer:
      writer.Signed(value.get<std::int64_t>());
      break;
    case json::value_t::boolean:
      writer.Bool(value.get<bool>());
      break;
    default:
      writer.Null();
      break;
  }
}

std::string Written(const json& value, JsonWriter::Layout layout = JsonWriter::Layout::kIndented) {
  std::string text;
  {
    OutputBuffer out(&text);
    JsonWriter writer(out, layout);
    Write(writer, value);
  }
  return text;
}

std::string Dumped(const json& value) { return value.dump(2, ' ', false, json::error_handler_t::replace); }

// The compact layout is dump() without an indent.
std::string Compact(const json& value) { return Written(value, JsonWriter::Layout::kCompact); }
std::string DumpedCompact(const json& value) { return value.dump(-1, ' ', false, json::error_handler_t::replace); }

TEST(JsonWriter, LayoutOfNestedValuesAsDump) {
  const json document = {
      {"empty_array", json::array()},
      {"empty_object", json::object()},
      {"nested", {{"a", json::array({json::array(), json::object(), json::array({1, 2})})}, {"b", nullptr}}},
      {"numbers", {0, 7, -1, std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(),
                   std::numeric_limits<std::uint64_t>::max(), 4294967295u}},
      {"truth", {true, false}},
      {"deep", {{{{"x", {{{"y", json::array({json::object({{"z", "w"}})})}}}}}}}},
  };
  EXPECT_EQ(Written(document), Dumped(document));
  EXPECT_EQ(Compact(document), DumpedCompact(document));
  EXPECT_EQ(Compact(document).find('\n'), std::string::npos);
  for (const json& top : {json::array(), json::object(), json(nullptr), json(-5), json("s")}) {
    EXPECT_EQ(Written(top), Dumped(top));
    EXPECT_EQ(Compact(top), DumpedCompact(top));
  }
}

TEST(JsonWriter, StringsEscapedAsDump) {
  std::string controls;
  for (int c = 0; c < 0x20; ++c) controls += static_cast<char>(c);
  const std::string strings[] = {
      controls,
      "\"quoted\" back\\slash / and DEL \x7f",
      "two \xC3\xA4, three \xE2\x82\xAC, four \xF0\x9F\x98\x80 bytes",
      // Ill-formed UTF-8: a lone continuation byte, an overlong form, a
      // surrogate, a code point above U+10FFFF, bytes that never start one,
      // sequences cut off by a byte that cannot follow and by the end.
      "a\x80z",
      "\xC0\x80",
      "\xE0\x80\x80",
      "\xED\xA0\x80",
      "\xF4\x90\x80\x80",
      "\xFF\xFE",
      "\xE2\x28\xA1",
      "\xF0\x28\x8C\x28",
      "\xC3",
      "end \xE2\x82",
      "end \xF0\x9F\x98",
      "\xC3\xC3\xA4",
      std::string("nul \0 inside", 12),
  };
  for (const std::string& text : strings) {
    EXPECT_EQ(Written(json(text)), Dumped(json(text))) << text;
    // As a key too.
    const json object = {{text, 1}};
    EXPECT_EQ(Written(object), Dumped(object)) << text;
    // A line end in a string stays escaped, so a compact value is one line.
    const json pair = {{text, text}, {"b", json::array({text})}};
    EXPECT_EQ(Compact(pair), DumpedCompact(pair)) << text;
  }
}

TEST(JsonWriter, LongStringsCrossTheBuffer) {
  std::string text(3 * OutputBuffer::kSize + 17, 'x');
  for (size_t i = 0; i < text.size(); i += 1000) text[i] = '\n';
  text[OutputBuffer::kSize - 1] = '\xE2';  // a character cut by the block's end still counts whole
  text[OutputBuffer::kSize] = '\x82';
  text[OutputBuffer::kSize + 1] = '\xAC';
  const json document = json::array({text, json::object({{"k", text}})});
  EXPECT_EQ(Written(document), Dumped(document));
}

TEST(OutputBuffer, NumbersAndRepeats) {
  std::string text;
  {
    OutputBuffer out(&text);
    out.AppendUnsigned(0);
    out.Append(' ');
    out.AppendUnsigned(std::numeric_limits<std::uint64_t>::max());
    out.Append(' ');
    out.AppendSigned(-42);
    out.Append(' ');
    out.AppendSigned(std::numeric_limits<std::int64_t>::min());
    out.AppendRepeated('.', OutputBuffer::kSize + 3);
  }
  EXPECT_EQ(text, "0 18446744073709551615 -42 -9223372036854775808" + std::string(OutputBuffer::kSize + 3, '.'));
}

TEST(OutputBuffer, WritesToTheStreamInOrderAndKeepsItsErrors) {
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  const std::string big(OutputBuffer::kSize + 10, 'b');
  {
    OutputBuffer out(file);
    out.Append("first ");
    out.Flush();
    std::fputs("between ", file);
    out.Append(big);
  }
  std::rewind(file);
  std::string read(6 + 8 + big.size() + 1, '\0');
  read.resize(std::fread(&read[0], 1, read.size(), file));
  std::fclose(file);
  EXPECT_EQ(read, "first between " + big);

  std::FILE* full = std::fopen("/dev/full", "w");
  if (full == nullptr) GTEST_SKIP() << "no /dev/full";
  {
    OutputBuffer out(full);
    out.Append(big);
  }
  EXPECT_TRUE(std::fflush(full) != 0 || std::ferror(full) != 0);
  std::fclose(full);
}

}  // namespace
