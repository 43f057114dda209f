// The editor's text as the bytes of a file and back, and the protocol's
// UTF-16 positions of byte columns in both encodings.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/analysis/source_map.h"
#include "tools/lsp/protocol/message_parsing.h"
#include "tools/lsp/protocol/text_positions.h"
#include "tools/text/buffer_encoding.h"

namespace {

TEST(LspText, EveryByteOfASingleByteFileComesBackFromTheEditorsText) {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  std::string text = DecodeBuffer(BufferEncoding::kWindows1252, bytes);
  EXPECT_NE(text.find("\xE2\x82\xAC"), std::string::npos);  // 0x80 is shown as the euro sign
  EXPECT_EQ(EncodeBuffer(text), BufferEncoding::kWindows1252);
  EXPECT_EQ(text, bytes);
  // Latin-1's U+0080 to U+009F give the bytes of their numbers too.
  std::string latin1 = "\xC2\x80\xC2\xB0";
  EXPECT_EQ(EncodeBuffer(latin1), BufferEncoding::kWindows1252);
  EXPECT_EQ(latin1, "\x80\xB0");
  // A character without a byte leaves the whole text as UTF-8.
  std::string wide = "\xC3\xA9 \xE2\x86\x92";
  EXPECT_EQ(EncodeBuffer(wide), BufferEncoding::kUtf8);
  EXPECT_EQ(wide, "\xC3\xA9 \xE2\x86\x92");
}

TEST(LspText, PositionsCountUtf16UnitsOfTheLine) {
  const std::string text =
      "a\xF0\x9F\x98\x80"
      "b\xC3\xA9"
      "c\r\nxy\rz";
  const SourceMap map(text);
  const PositionConverter positions(text, map, BufferEncoding::kUtf8);
  // a, U+1F600 (two units), b, é, c
  EXPECT_EQ(positions.ToPosition(TextPoint{1, 6}).character, 3);  // b
  EXPECT_EQ(positions.ToPosition(TextPoint{1, 9}).character, 5);  // c
  EXPECT_EQ(positions.ToPosition(TextPoint{1, 2}).character, 1);  // back along the line
  EXPECT_EQ(positions.ToPosition(TextPoint{3, 1}).line, 2);
  size_t offset = 0;
  ASSERT_TRUE(positions.ToOffset(LspPosition{0, 3}, &offset));
  EXPECT_EQ(offset, 5u);
  ASSERT_TRUE(positions.ToOffset(LspPosition{0, 2}, &offset));  // inside the surrogate pair
  EXPECT_EQ(offset, 1u);
  ASSERT_TRUE(positions.ToOffset(LspPosition{1, 99}, &offset));  // past the line's end
  EXPECT_EQ(offset, 13u);
  EXPECT_FALSE(positions.ToOffset(LspPosition{3, 0}, &offset));
  EXPECT_FALSE(positions.ToOffset(LspPosition{0, -1}, &offset));

  const std::string bytes = "ab\xE9\ncd";
  const SourceMap byteMap(bytes);
  const PositionConverter single(bytes, byteMap, BufferEncoding::kWindows1252);
  EXPECT_EQ(single.ToPosition(TextPoint{1, 4}).character, 3);
  ASSERT_TRUE(single.ToOffset(LspPosition{1, 5}, &offset));
  EXPECT_EQ(offset, 6u);
}

TEST(LspText, StringsDecodedOnTheirOwnReadAsTheJsonLibraryReadsThem) {
  const std::vector<std::string> bodies = {
      R"({"text":"a\n\"\\\/\u00e9\ud83d\ude00\u0000b","n":[1,"x",{"k":""}]})",
      "{\"text\":\"\xC3\xA9\xF0\x9F\x98\x80\"}",
      R"({"text":"\ud83d"})",        // a lone surrogate
      R"({"text":"\ude00\ud83d"})",  // surrogates in the wrong order
      "{\"text\":\"\x01\"}",         // a control character
      "{\"text\":\"\xC0\xAF\"}",     // an overlong form
      R"({"text":"\x"})",
      R"({"text":"abc)",
      R"({"key \u0041":"value"})",
  };
  for (const std::string& body : bodies) {
    const nlohmann::json library = nlohmann::json::parse(body, nullptr, false);
    const nlohmann::json own = ParseMessage(body, 0);
    EXPECT_EQ(own.is_discarded(), library.is_discarded()) << body;
    if (!library.is_discarded()) {
      EXPECT_EQ(own, library) << body;
    }
  }
}

}  // namespace
