// Rename and the quick fixes of the language server, driven as a client
// drives them: what can be renamed and where, the edits a rename sends and
// the file they make, refused renames as errors, and fixes that, applied as
// the editor applies them, leave the file without the finding they fix and
// with no other new one.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/lsp_client.h"

using nlohmann::json;

namespace {

const char kDamaged[] = "file:///examples/damaged.def";
const char kUri[] = "file:///fix.def";

std::string At(const json& range) {
  return std::to_string(range["start"]["line"].get<int>()) + ":" +
         std::to_string(range["start"]["character"].get<int>()) + "-" +
         std::to_string(range["end"]["line"].get<int>()) + ":" + std::to_string(range["end"]["character"].get<int>());
}

// The offset of a position in text of one byte per character (the tests'
// texts are ASCII).
size_t OffsetOf(const std::string& text, const json& position) {
  size_t offset = 0;
  for (int line = position["line"].get<int>(); line > 0 && offset < text.size(); ++offset) {
    if (text[offset] == '\n' || (text[offset] == '\r' && (offset + 1 >= text.size() || text[offset + 1] != '\n'))) {
      --line;
    }
  }
  return offset + position["character"].get<size_t>();
}

// The text with the TextEdits of uri in a WorkspaceEdit applied, as an editor
// applies them: each range of the text before any of them.
std::string Applied(std::string text, const json& edit, const std::string& uri) {
  const json& edits = edit["changes"][uri];
  for (size_t i = edits.size(); i-- > 0;) {
    const size_t begin = OffsetOf(text, edits[i]["range"]["start"]);
    const size_t end = OffsetOf(text, edits[i]["range"]["end"]);
    text.replace(begin, end - begin, edits[i]["newText"].get<std::string>());
  }
  return text;
}

std::vector<std::string> Codes(DirectClient& client, const std::string& uri) {
  std::vector<std::string> codes;
  for (const json& published : client.Publish()) {
    if (published["params"]["uri"] != uri) continue;
    for (const json& d : published["params"]["diagnostics"]) codes.push_back(d["code"].get<std::string>());
  }
  return codes;
}

json Rename(DirectClient& client, const std::string& uri, long line, long character, const std::string& name) {
  return client.Request("textDocument/rename", {{"textDocument", {{"uri", uri}}},
                                                {"position", {{"line", line}, {"character", character}}},
                                                {"newName", name}});
}

json Actions(DirectClient& client, const std::string& uri, long fromLine, long toLine, json context = json::object()) {
  const json range = {{"start", {{"line", fromLine}, {"character", 0}}}, {"end", {{"line", toLine}, {"character", 0}}}};
  if (!context.contains("diagnostics")) context["diagnostics"] = json::array();
  return client.Request("textDocument/codeAction",
                        {{"textDocument", {{"uri", uri}}}, {"range", range}, {"context", context}})["result"];
}

TEST(LspRename, PrepareNamesWhatCanBeRenamed) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  client.Open("file:///v7.def", ExampleText("adapters_v7.def"));
  struct Case {
    const char* uri;
    long line;
    long character;
    const char* range;  // empty: nothing to rename
    const char* placeholder;
  };
  const std::vector<Case> cases = {
      {kDamaged, 10, 3, "10:0-10:8", "AT27C256"},
      {kDamaged, 6, 0, "6:0-6:5", "EPROM"},
      {kDamaged, 8, 1, "8:1-8:6", "Atmel"},
      {kDamaged, 3, 14, "3:13-3:28", "ADP_A_DIP28/ZIF"},
      // The mark in front of a device's name stays.
      {"file:///v7.def", 26, 3, "26:1-26:10", "AT89S8252"},
      {kDamaged, 12, 14, "", ""},  // a number names an entry but is none
      {kDamaged, 0, 3, "", ""},    // a comment
      {kDamaged, 17, 3, "", ""},   // a refused line
  };
  for (const Case& c : cases) {
    const json result = client.At("textDocument/prepareRename", c.uri, c.line, c.character);
    if (*c.range == '\0') {
      EXPECT_TRUE(result.is_null()) << c.line << ":" << c.character;
      EXPECT_TRUE(Rename(client, c.uri, c.line, c.character, "X")["result"].is_null());
      continue;
    }
    ASSERT_TRUE(result.is_object()) << c.line << ":" << c.character;
    EXPECT_EQ(At(result["range"]), c.range);
    EXPECT_EQ(result["placeholder"], c.placeholder);
  }
}

TEST(LspRename, SendsTheEditsOfTheEngine) {
  DirectClient client;
  const std::string text = ExampleText("damaged.def");
  client.Open(kDamaged, text);
  const size_t findings = Codes(client, kDamaged).size();
  struct Case {
    long line;
    long character;
    const char* name;
    const char* was;
  };
  for (const Case& c : std::vector<Case>{{10, 3, "AT27C257", "\r\nAT27C256\r\n"},
                                         {6, 2, "EEPROM", "\r\nEPROM:\r\n"},
                                         {8, 3, "Microchip", "\r\n:Atmel\r\n"},
                                         {4, 12, "STANDARD", " BASE;"}}) {
    const json reply = Rename(client, kDamaged, c.line, c.character, c.name);
    ASSERT_TRUE(reply.contains("result")) << reply.dump();
    const std::string renamed = Applied(text, reply["result"], kDamaged);
    std::string expected = text;
    const size_t at = expected.find(c.was);
    ASSERT_NE(at, std::string::npos);
    const std::string was = c.was;
    const size_t name = was.find_first_not_of("\r\n :");
    expected.replace(at + name, was.find_first_of("\r\n:;", name) - name, c.name);
    EXPECT_EQ(renamed, expected) << c.name;
    // The renamed file reads as the old one did.
    client.Open("file:///renamed.def", renamed);
    EXPECT_EQ(Codes(client, "file:///renamed.def").size(), findings) << c.name;
  }
}

TEST(LspRename, RefusedAndImpossibleNamesAreErrors) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  // A name ending in ":" would make the device's line a kind.
  json reply = Rename(client, kDamaged, 10, 3, "AT27C256:");
  ASSERT_TRUE(reply.contains("error")) << reply.dump();
  EXPECT_EQ(reply["error"]["code"], -32803);
  EXPECT_FALSE(reply["error"]["message"].get<std::string>().empty());
  // U+1F600 has no byte in a single-byte file.
  reply = Rename(client, kDamaged, 10, 3, "AT\xF0\x9F\x98\x80");
  ASSERT_TRUE(reply.contains("error"));
  EXPECT_NE(reply["error"]["message"].get<std::string>().find("cannot hold"), std::string::npos);
  // "é" has one: it is written as that byte, and sent back as the editor's text.
  reply = Rename(client, kDamaged, 10, 3, "AT27C\xC3\xA9");
  ASSERT_TRUE(reply.contains("result")) << reply.dump();
  EXPECT_EQ(reply["result"]["changes"][kDamaged][0]["newText"], "AT27C\xC3\xA9");
}

// Texts with one fixable finding each, the title of its fix, and the code
// of the finding it fixes.
struct FixCase {
  const char* text;
  const char* title;
  const char* code;
};

const char kHead[] = "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST DIP8, DIP28;\nADAPTER_LIST A0, A1;\nMODUL_LIST BASE;\n";

TEST(LspCodeActions, EachFixLeavesTheFileWithoutItsFindingAndNothingNew) {
  const std::vector<FixCase> cases = {
      {"DEF_LAYOUT_VERSION = 1\nHOUSING_LIST DIP8, DIP28\nADAPTER_LIST A0;\nMODUL_LIST BASE;\nK:\n:M\nD\n{\n"
       "KVR5DEF: 1 0 0 0 28 : t\n}\n",
       "Add ';' behind 'DIP28', so that the list keeps it", "lost-entry"},
      {"K:\n:M\nD\n{\nKVR5DEF: 1 1 0 0 28 : t\n", "Close the block of D with '}'", "cut-off"},
      {"K:\n:M\nD\n{\nKVR5DEF: 1 1 0 0 28 : t\n}\n:N", "End the last line with a line end", "no-line-end"},
      {"K:\n:M\nD\n{\nKVR5DEF: 1 1 0 2 28 : t\n}\n", "Define adapter 2: add ADAPTER_2 to the end of ADAPTER_LIST",
       "bad-number"},
  };
  for (const FixCase& c : cases) {
    SCOPED_TRACE(c.title);
    const std::string text = std::string(c.text).compare(0, 3, "DEF") == 0 ? c.text : kHead + std::string(c.text);
    DirectClient client;
    client.Open(kUri, text);
    const std::vector<std::string> before = Codes(client, kUri);
    const json actions = Actions(client, kUri, 0, 100);
    ASSERT_EQ(actions.size(), 1u) << actions.dump();
    EXPECT_EQ(actions[0]["title"], c.title);
    EXPECT_EQ(actions[0]["kind"], "quickfix");
    EXPECT_EQ(actions[0]["diagnostics"][0]["code"], c.code);
    client.Open(kUri, Applied(text, actions[0]["edit"], kUri), 2);
    std::vector<std::string> expected = before;
    expected.erase(std::find(expected.begin(), expected.end(), c.code));
    EXPECT_EQ(Codes(client, kUri), expected);
  }
}

TEST(LspCodeActions, OnlyWhereTheFixIsBeyondDoubt) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  // Line 2's entry without ";" has a fix; package 7 and adapter 5 lie more
  // than one past their lists; a refused line and ids used twice have none.
  json actions = Actions(client, kDamaged, 0, 30);
  ASSERT_EQ(actions.size(), 1u);
  EXPECT_EQ(At(actions[0]["edit"]["changes"][kDamaged][0]["range"]), "2:32-2:32");
  EXPECT_TRUE(Actions(client, kDamaged, 10, 30).empty());
  // A client that asks for other kinds of action gets none.
  EXPECT_TRUE(Actions(client, kDamaged, 0, 30, {{"only", {"refactor"}}}).empty());
  EXPECT_EQ(Actions(client, kDamaged, 0, 30, {{"only", {"quickfix"}}}).size(), 1u);
  // A ";" that would not fix the file is not offered: behind this entry the
  // list would read on into a line it loses.
  client.Open(kUri, std::string(kHead) + "K:\n:M\nD\n{\nKVR5DEF: 1 1 0 0 28 : t\n}\nE\nF");
  EXPECT_EQ(Actions(client, kUri, 0, 100).size(), 0u);
}

}  // namespace
