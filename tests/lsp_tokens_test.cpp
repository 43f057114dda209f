// Semantic tokens and completion of list entries, driven as a client drives
// them: what each part of the example files is coloured as, that a range
// gives the tokens of the full document that it overlaps, positions in
// UTF-16, and the entries offered where a number names one.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/lsp_client.h"

using nlohmann::json;

namespace {

const char kDamaged[] = "file:///examples/damaged.def";
const char kV7[] = "file:///examples/adapters_v7.def";

// A token with its absolute place, its type and modifiers by name.
struct Token {
  long line;
  long character;
  long length;
  std::string type;
  std::string modifiers;  // joined by "+"
};

// The tokens of a SemanticTokens result, decoded with the legend the
// server declared.
std::vector<Token> Decode(const json& legend, const json& result) {
  std::vector<Token> tokens;
  const json& data = result["data"];
  long line = 0;
  long character = 0;
  for (size_t i = 0; i + 4 < data.size(); i += 5) {
    const long deltaLine = data[i].get<long>();
    line += deltaLine;
    character = deltaLine == 0 ? character + data[i + 1].get<long>() : data[i + 1].get<long>();
    std::string modifiers;
    const unsigned bits = data[i + 4].get<unsigned>();
    for (size_t m = 0; m < legend["tokenModifiers"].size(); ++m) {
      if ((bits & (1u << m)) == 0) continue;
      if (!modifiers.empty()) modifiers += "+";
      modifiers += legend["tokenModifiers"][m].get<std::string>();
    }
    tokens.push_back(Token{line, character, data[i + 2].get<long>(),
                           legend["tokenTypes"][data[i + 3].get<size_t>()].get<std::string>(), modifiers});
  }
  return tokens;
}

// A client with the legend of its initialize result.
struct TokenClient {
  DirectClient client;
  json legend;

  TokenClient() {
    // The initialize request went out in the client's constructor: its
    // answer is the first message sent.
    legend = client.sent.front()["result"]["capabilities"]["semanticTokensProvider"]["legend"];
  }
  std::vector<Token> Full(const std::string& uri) {
    return Decode(legend,
                  client.Request("textDocument/semanticTokens/full", {{"textDocument", {{"uri", uri}}}})["result"]);
  }
  std::vector<Token> Range(const std::string& uri, long fromLine, long toLine) {
    const json range = {{"start", {{"line", fromLine}, {"character", 0}}}, {"end", {{"line", toLine}, {"character", 0}}}};
    return Decode(legend, client.Request("textDocument/semanticTokens/range",
                                         {{"textDocument", {{"uri", uri}}}, {"range", range}})["result"]);
  }
};

// The lines of a text as the editor has them.
std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines(1);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' || text[i] == '\n') {
      if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
      lines.emplace_back();
    } else {
      lines.back() += text[i];
    }
  }
  return lines;
}

// Each token as "LINE:text type[+modifiers]" for ASCII lines.
std::vector<std::string> Shown(const std::vector<Token>& tokens, const std::vector<std::string>& lines, long line) {
  std::vector<std::string> out;
  for (const Token& t : tokens) {
    if (t.line != line) continue;
    out.push_back(lines[static_cast<size_t>(t.line)].substr(static_cast<size_t>(t.character),
                                                             static_cast<size_t>(t.length)) +
                  " " + t.type + (t.modifiers.empty() ? "" : "+" + t.modifiers));
  }
  return out;
}

using Strings = std::vector<std::string>;

TEST(LspSemanticTokens, ColourWhatTheReaderTookEachPartFor) {
  TokenClient c;
  c.client.Open(kDamaged, ExampleText("damaged.def"));
  const std::vector<Token> tokens = c.Full(kDamaged);
  const std::vector<std::string> lines = Lines(ExampleText("damaged.def"));
  const std::vector<std::pair<long, Strings>> cases = {
      {0, {}},  // a comment
      {1, {"DEF_LAYOUT_VERSION keyword"}},
      // The entry without its ";" was lost: it gets no token.
      {2, {"HOUSING_LIST keyword", "DIP8 enumMember+declaration", "DIP28 enumMember+declaration"}},
      {6, {"EPROM namespace+declaration"}},
      {8, {"Atmel type+declaration"}},
      {10, {"AT27C256 class+declaration"}},
      {12,
       {"KVR4DEF: keyword", "4001 variable", "1 enumMember", "0 enumMember", "0 enumMember", "28 number",
        "fine string"}},
      {14,
       {"KVR5DEF: keyword", "4002 variable", "7 enumMember", "0 enumMember", "5 enumMember", "28 number",
        "package and adapter without a name string"}},
      {17, {}},  // refused: nothing of it was taken
      // Behind the refused line the "}" was read as a device.
      {20, {"} class+declaration"}},
  };
  for (const auto& c : cases) EXPECT_EQ(Shown(tokens, lines, c.first), c.second) << "line " << c.first;
}

TEST(LspSemanticTokens, MarksHousingListsAndMisreadNumbers) {
  TokenClient c;
  c.client.Open(kV7, ExampleText("adapters_v7.def"));
  const std::vector<Token> tokens = c.Full(kV7);
  const std::vector<std::string> lines = Lines(ExampleText("adapters_v7.def"));
  EXPECT_EQ(Shown(tokens, lines, 20),
            (Strings{"DEVICE_HOUSING_LIST: keyword", "1 enumMember", "2 enumMember", "3 enumMember"}));
  // Marks are tokens of their own in front of the name and the keyword: one
  // UTF-16 unit each ("\xC2\xB0" in the editor).
  std::vector<std::string> marked;
  for (const Token& t : tokens) {
    if (t.line == 26 || t.line == 29) {
      marked.push_back(std::to_string(t.line) + ":" + std::to_string(t.character) + "+" + std::to_string(t.length) +
                       " " + t.type);
    }
  }
  ASSERT_GE(marked.size(), 4u);
  EXPECT_EQ(marked[0], "26:0+1 decorator");
  EXPECT_EQ(marked[1], "26:1+9 class");
  EXPECT_EQ(marked[2], "29:0+1 decorator");
  EXPECT_EQ(marked[3], "29:1+8 keyword");
  // The packages and adapters of "2,3 0 0,1": each number a token of its own.
  const Strings lists = Shown(tokens, lines, 22);
  ASSERT_GE(lists.size(), 7u);
  EXPECT_EQ(lists[3], "3 enumMember");
  EXPECT_EQ(lists[6], "1 enumMember");

  // Numbers the reader takes otherwise than they look stand out.
  const std::string text =
      "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST A, B;\nADAPTER_LIST C;\nMODUL_LIST D;\nK:\n:M\nDEV\n{\n"
      "KVR5DEF: 10 1x 0 0 -5 : text\nKVR5DEF: 11 1 0 0 2.5 : text\n}\n";
  c.client.Open("file:///misread.def", text);
  const std::vector<Token> misread = c.Full("file:///misread.def");
  EXPECT_EQ(Shown(misread, Lines(text), 8),
            (Strings{"KVR5DEF: keyword", "10 variable", "1x enumMember+deprecated+misread", "0 enumMember",
                     "0 enumMember", "-5 number+deprecated+misread", "text string"}));
  EXPECT_EQ(Shown(misread, Lines(text), 9)[5], "2.5 number+deprecated+misread");
}

TEST(LspSemanticTokens, ARangeGivesTheTokensOfTheFullDocumentItOverlaps) {
  for (const char* example : {"damaged.def", "adapters_v7.def", "instruments.def", "programmers_v2.def"}) {
    SCOPED_TRACE(example);
    TokenClient c;
    const std::string uri = std::string("file:///") + example;
    const std::string text = ExampleText(example);
    c.client.Open(uri, text);
    const std::vector<Token> full = c.Full(uri);
    ASSERT_GT(full.size(), 20u);
    // In order, never overlapping, each within its line.
    const std::vector<std::string> lines = Lines(text);
    for (size_t i = 0; i < full.size(); ++i) {
      EXPECT_GT(full[i].length, 0);
      EXPECT_LE(static_cast<size_t>(full[i].character + full[i].length),
                lines[static_cast<size_t>(full[i].line)].size());
      if (i > 0 && full[i].line == full[i - 1].line) {
        EXPECT_GE(full[i].character, full[i - 1].character + full[i - 1].length);
      }
      if (i > 0) {
        EXPECT_GE(full[i].line, full[i - 1].line);
      }
    }
    const long last = static_cast<long>(lines.size());
    for (const auto& range :
         {std::make_pair(0L, 3L), std::make_pair(5L, 14L), std::make_pair(12L, 13L), std::make_pair(20L, last + 5)}) {
      std::vector<std::string> expected;
      for (const Token& t : full) {
        if (t.line >= range.first && t.line < range.second) expected.push_back(std::to_string(t.line) + ":" + t.type);
      }
      std::vector<std::string> got;
      for (const Token& t : c.Range(uri, range.first, range.second)) {
        got.push_back(std::to_string(t.line) + ":" + t.type);
      }
      EXPECT_EQ(got, expected) << range.first << "-" << range.second;
    }
  }
}

TEST(LspSemanticTokens, CountUtf16UnitsAndAnswerDocumentsThatAreNone) {
  TokenClient c;
  // U+1F600 is two UTF-16 units; the entry behind it starts at 17.
  c.client.Open("file:///wide.def", "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST \xF0\x9F\x98\x80, DIP28;\nK:\n");
  std::vector<Token> tokens = c.Full("file:///wide.def");
  ASSERT_EQ(tokens.size(), 5u);
  EXPECT_EQ(tokens[2].character, 13);
  EXPECT_EQ(tokens[2].length, 2);
  EXPECT_EQ(tokens[3].character, 17);
  EXPECT_EQ(tokens[3].length, 5);
  c.client.Open("file:///notes.txt", "hello\n");
  EXPECT_EQ(c.client.Request("textDocument/semanticTokens/full", {{"textDocument", {{"uri", "file:///notes.txt"}}}})
                ["result"],
            json::parse(R"({"data":[]})"));
}

// Completion: "LABEL DETAIL -> NEWTEXT" of each item, and the range of the
// first.
std::vector<std::string> Items(const json& list) {
  std::vector<std::string> out;
  for (const json& item : list["items"]) {
    out.push_back(item["label"].get<std::string>() + " " + item["detail"].get<std::string>() + " -> " +
                  item["textEdit"]["newText"].get<std::string>() + (item.contains("preselect") ? " *" : ""));
  }
  return out;
}

std::string FirstRange(const json& list) {
  const json& range = list["items"][0]["textEdit"]["range"];
  return std::to_string(range["start"]["line"].get<int>()) + ":" + std::to_string(range["start"]["character"].get<int>()) +
         "-" + std::to_string(range["end"]["line"].get<int>()) + ":" + std::to_string(range["end"]["character"].get<int>());
}

TEST(LspCompletion, OffersTheEntriesOfTheListANumberNames) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  client.Open(kV7, ExampleText("adapters_v7.def"));
  const Strings packages = {"DIP8 package 0 -> 0", "DIP28 package 1 -> 1 *"};
  struct Case {
    const char* uri;
    long line;
    long character;
    Strings items;
    const char* range;
  };
  const std::vector<Case> cases = {
      {kDamaged, 12, 14, packages, "12:14-12:15"},
      {kDamaged, 12, 15, packages, "12:14-12:15"},  // right behind the number
      {kDamaged, 12, 16, {"BASE module 0 -> 0 *"}, "12:16-12:17"},
      {kDamaged, 12, 18, {"ADP_A_DIP28/ZIF adapter 0 -> 0 *", "ADP_A_PLCC32/ZIF adapter 1 -> 1"}, "12:18-12:19"},
      // Package 7 has no entry: each entry is offered, none preselected.
      {kDamaged, 14, 14, {"DIP8 package 0 -> 0", "DIP28 package 1 -> 1"}, "14:14-14:15"},
      // The second adapter of "0,1" alone is replaced.
      {kV7, 22, 22, {"ADP_U_PLCC32/ZIF adapter 0 -> 0", "ADP_U_PLCC44/ZIF adapter 1 -> 1 *",
                     "ADP_U_TSOP48/CLAMP adapter 2 -> 2", "ADP_U_QFP64/CLAMP adapter 3 -> 3"}, "22:22-22:23"},
  };
  for (const Case& c : cases) {
    const json list = client.At("textDocument/completion", c.uri, c.line, c.character);
    EXPECT_EQ(Items(list), c.items) << c.line << ":" << c.character;
    if (!c.items.empty()) {
      EXPECT_EQ(FirstRange(list), c.range) << c.line << ":" << c.character;
    }
  }
  // A number of a housing line names a HOUSING_LIST entry.
  const json housing = client.At("textDocument/completion", kV7, 20, 26);
  ASSERT_EQ(housing["items"].size(), 6u);
  EXPECT_EQ(Items(housing)[2], "PLCC32 package 2 -> 2 *");
  EXPECT_EQ(FirstRange(housing), "20:26-20:27");
  // Where no number names an entry, nothing is offered.
  for (const auto& at : {std::make_pair(12L, 10L), std::make_pair(12L, 21L), std::make_pair(12L, 26L),
                                         std::make_pair(10L, 2L), std::make_pair(2L, 14L), std::make_pair(500L, 0L)}) {
    EXPECT_TRUE(client.At("textDocument/completion", kDamaged, at.first, at.second)["items"].empty())
        << at.first << ":" << at.second;
  }
}

TEST(LspCompletion, EveryEntryPassesTheClientsFilterOfTheTypedNumber) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  // Behind the package number 1: each filter text opens with it.
  const json list = client.At("textDocument/completion", kDamaged, 12, 15);
  for (const json& item : list["items"]) {
    EXPECT_EQ(item["filterText"].get<std::string>().substr(0, 1), "1");
    EXPECT_EQ(item["sortText"].get<std::string>().size(), 10u);
  }
}

}  // namespace
