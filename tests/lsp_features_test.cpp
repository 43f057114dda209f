// The language server's features on the example files, driven as a client
// drives them: diagnostics at the protocol's positions, hover, go to
// definition, outline, references and folding, settings, several documents
// at once and documents that are no definition files.
#include <gtest/gtest.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/lsp_client.h"
#include "tools/analysis/analysis.h"

using nlohmann::json;

namespace {

const char kDamaged[] = "file:///examples/damaged.def";

std::string HoverText(const json& hover) {
  return hover.is_null() ? "null" : hover["contents"]["value"].get<std::string>();
}

// "LINE:CHAR-LINE:CHAR" of a protocol range.
std::string At(const json& range) {
  return std::to_string(range["start"]["line"].get<int>()) + ":" +
         std::to_string(range["start"]["character"].get<int>()) + "-" +
         std::to_string(range["end"]["line"].get<int>()) + ":" + std::to_string(range["end"]["character"].get<int>());
}

// The outline as "name(child,child)" trees.
std::string Outline(const json& symbols) {
  std::string text;
  for (const json& symbol : symbols) {
    if (!text.empty()) text += ",";
    text += symbol["name"].get<std::string>();
    if (!symbol["children"].empty()) text += "(" + Outline(symbol["children"]) + ")";
  }
  return text;
}

// The diagnostics as "LINE:CHAR severity code", as check's findings of the
// file on disk give them (every sample line is ASCII before its findings).
std::vector<std::string> Diagnostics(const json& published) {
  std::vector<std::string> out;
  for (const json& d : published["params"]["diagnostics"]) {
    out.push_back(std::to_string(d["range"]["start"]["line"].get<int>()) + ":" +
                  std::to_string(d["range"]["start"]["character"].get<int>()) + " " +
                  std::to_string(d["severity"].get<int>()) + " " + d["code"].get<std::string>());
  }
  return out;
}

std::vector<std::string> Findings(const char* example) {
  std::unique_ptr<Analysis> analysis = Analysis::ReadFile(std::string(DEVDEF_EXAMPLES_DIR) + "/" + example, {});
  std::vector<std::string> out;
  for (const Finding& f : analysis->FindingsOf().List()) {
    const TextPoint at = analysis->Map().PointOf(f.span.begin);
    out.push_back(std::to_string(at.line - 1) + ":" + std::to_string(at.column - 1) + " " +
                  std::to_string(static_cast<int>(f.severity) + 1) + " " + InfoOf(f.kind).id);
  }
  return out;
}

TEST(LspDiagnostics, AreCheckFindingsOfTheFileTheEditorShows) {
  for (const char* example : {"damaged.def", "adapters_v7.def", "instruments.def", "programmers_v2.def"}) {
    DirectClient client;
    const std::string uri = std::string("file:///") + example;
    client.Open(uri, ExampleText(example));
    const std::vector<json> published = client.Publish();
    ASSERT_EQ(published.size(), 1u) << example;
    // The marks of layout 7 ("°", "ß" in the editor) are read as the bytes
    // of the file, so the same findings come out.
    EXPECT_EQ(Diagnostics(published[0]), Findings(example)) << example;
  }
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  const json diagnostics = client.Publish()[0]["params"]["diagnostics"];
  const json& refused = diagnostics[6];
  EXPECT_EQ(refused["code"], "refused");
  EXPECT_EQ(refused["source"], "devdef");
  EXPECT_EQ(At(refused["range"]), "17:0-17:43");
  // The lines that lost their meaning are diagnostics of their own, each
  // pointing back at the refused line; the refused line does not list them
  // again.
  EXPECT_FALSE(refused.contains("relatedInformation"));
  const json& misread = diagnostics[8];
  EXPECT_EQ(At(misread["range"]), "19:0-19:39");
  ASSERT_EQ(misread["relatedInformation"].size(), 1u);
  EXPECT_EQ(misread["relatedInformation"][0]["location"]["uri"], kDamaged);
  EXPECT_EQ(At(misread["relatedInformation"][0]["location"]["range"]), "17:0-17:43");
  EXPECT_EQ(misread["relatedInformation"][0]["message"], "the failed line");
}

TEST(LspDiagnostics, CountColumnsInUtf16AndShowNamesAsTheEditorDoes) {
  DirectClient client;
  const std::string head = "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST ";
  // U+1F600 has no byte of its own in a single-byte file: the text is read
  // as UTF-8 and the character counts two UTF-16 units.
  client.Open("file:///wide.def", head + "\xF0\x9F\x98\x80, DIP28, PLCC32\nK:\n");
  EXPECT_EQ(At(client.Publish()[0]["params"]["diagnostics"][0]["range"]), "1:24-1:30");
  EXPECT_EQ(HoverText(client.At("textDocument/hover", "file:///wide.def", 1, 17)), "HOUSING_LIST entry 1: DIP28");
  // "é" and "€" are single bytes of the file, shown again as themselves.
  client.Open("file:///narrow.def", head + "\xC3\xA9\xE2\x82\xAC, DIP28, PLCC32\nK\xC3\xA9_1:\n");
  const json diagnostics = client.Publish()[0]["params"]["diagnostics"];
  EXPECT_EQ(At(diagnostics[0]["range"]), "1:24-1:30");
  EXPECT_EQ(diagnostics[1]["message"],
            "kind name 'K\xC3\xA9 1' holds a blank, which the writer keeps: the name will "
            "not read back whole");
  EXPECT_EQ(HoverText(client.At("textDocument/hover", "file:///narrow.def", 1, 13)),
            "HOUSING_LIST entry 0: \xC3\xA9\xE2\x82\xAC");
}

// A finding repeated along a line is one diagnostic, as check shows it:
// from the first place to the end of the last, its message saying how often.
TEST(LspDiagnostics, RepeatsAlongALineAreOne) {
  DirectClient client;
  client.Open("file:///repeat.def",
              "DEF_LAYOUT_VERSION = 7\nMODUL_LIST BASE;\nK:\n:M\nD\n{\n"
              "KVR5DEF: 1 0 0 9,9,5,9 16 0 1 2 1F 0 5 6 A 1 0 : x\nKVR5DEF: 2 0 0 9 16 0 1 2 1F 0 5 6 A 1 0 : y\n}\n");
  std::vector<std::string> adapters;
  const std::vector<json> published = client.Publish();
  ASSERT_EQ(published.size(), 1u);
  for (const json& d : published[0]["params"]["diagnostics"]) {
    const std::string message = d["message"];
    if (message.rfind("adapter", 0) == 0) adapters.push_back(At(d["range"]) + " " + message);
  }
  // published diagnostics, for a failure's message
  SCOPED_TRACE(published[0].dump());
  EXPECT_EQ(adapters, (std::vector<std::string>{
                          "6:15-6:22 adapter 9 has no name in ADAPTER_LIST (3 times, columns 16-22)",
                          "6:19-6:20 adapter 5 has no name in ADAPTER_LIST",
                          "7:15-7:16 adapter 9 has no name in ADAPTER_LIST",
                      }));
}

TEST(LspDiagnostics, AByteOrderMarkTheEditorHidesIsSaid) {
  // The editor sends the text without the mark its file on disk opens with.
  const std::string text = "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST A;\nADAPTER_LIST B;\nMODUL_LIST C;\nK:\n";
  const std::string path = ::testing::TempDir() + "marked%20file.def";
  const std::string disk = ::testing::TempDir() + "marked file.def";
  std::FILE* file = std::fopen(disk.c_str(), "wb");
  ASSERT_NE(file, nullptr);
  std::fputs(("\xEF\xBB\xBF" + text).c_str(), file);
  std::fclose(file);
  DirectClient client;
  client.Open("file://" + path, text);
  const json diagnostics = client.Publish()[0]["params"]["diagnostics"];
  ASSERT_EQ(diagnostics.size(), 1u);
  EXPECT_EQ(diagnostics[0]["code"], "no-version");
  EXPECT_EQ(At(diagnostics[0]["range"]), "0:0-0:18");
  // Sent with the mark, the text says so itself; a file without one says nothing.
  client.Open("file://" + path, "\xEF\xBB\xBF" + text);
  EXPECT_EQ(client.Publish()[0]["params"]["diagnostics"].size(), 1u);
  std::remove(disk.c_str());
  client.Open("file://" + path, text);
  EXPECT_EQ(client.Publish()[0]["params"]["diagnostics"].size(), 0u);
}

TEST(LspFeatures, HoverNamesWhatStandsUnderThePosition) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  const std::vector<std::pair<std::pair<int, int>, std::string>> cases = {
      {{12, 2}, "generation 4: hidden in generation 5, the generation in force\ndefinition 4001 of AT27C256"},
      {{13, 2}, "generation 5: visible in generation 5, the generation in force\ndefinition 4001 of AT27C256"},
      {{12, 10}, "id 4001"},
      {{12, 14}, "package 1: DIP28\nentry 1 of HOUSING_LIST (line 3)"},
      {{12, 16}, "module 0: BASE\nentry 0 of MODUL_LIST (line 5)"},
      {{12, 21}, "value 2: 28"},
      {{14, 14}, "package 7: no entry 7 in HOUSING_LIST (it has 2 entries)"},
      {{14, 18}, "adapter 5: no entry 5 in ADAPTER_LIST (it has 2 entries)"},
      {{10, 3}, "device AT27C256 (EPROM / Atmel)\n4 definitions, 3 visible in generation 5"},
      {{6, 0}, "kind EPROM\n1 manufacturer, 2 devices, 4 definitions, 3 visible in generation 5"},
      {{8, 1}, "manufacturer Atmel (EPROM)\n2 devices, 4 definitions, 3 visible in generation 5"},
      {{3, 14}, "ADAPTER_LIST entry 0: ADP_A_DIP28/ZIF"},
      {{12, 26}, "null"},  // the text behind ":"
      {{0, 3}, "null"},    // a comment
      {{400, 0}, "null"},  // past the last line
  };
  for (const auto& c : cases) {
    EXPECT_EQ(HoverText(client.At("textDocument/hover", kDamaged, c.first.first, c.first.second)), c.second)
        << c.first.first << ":" << c.first.second;
  }
  EXPECT_EQ(At(client.At("textDocument/hover", kDamaged, 12, 14)["range"]), "12:14-12:15");
  // A second package and adapter of a layout 7 line, and a hexadecimal value.
  client.Open("file:///v7.def", ExampleText("adapters_v7.def"));
  EXPECT_EQ(HoverText(client.At("textDocument/hover", "file:///v7.def", 22, 22)),
            "adapter 1: ADP_U_PLCC44/ZIF\nentry 1 of ADAPTER_LIST (line 9)\nadapter 2 of the line");
  EXPECT_EQ(HoverText(client.At("textDocument/hover", "file:///v7.def", 21, 29)),
            "value 4: 31, read in hexadecimal");
  EXPECT_EQ(HoverText(client.At("textDocument/hover", "file:///v7.def", 29, 0)),
            "generation 5: visible in generation 5, the generation in force\ndefinition 3011 of AT89S8252");
}

TEST(LspFeatures, DefinitionReferencesOutlineAndFolding) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  EXPECT_EQ(At(client.At("textDocument/definition", kDamaged, 12, 14)["range"]), "2:19-2:24");
  EXPECT_EQ(client.At("textDocument/definition", kDamaged, 12, 14)["uri"], kDamaged);
  EXPECT_TRUE(client.At("textDocument/definition", kDamaged, 14, 14).is_null());  // no entry 7
  EXPECT_TRUE(client.At("textDocument/definition", kDamaged, 12, 10).is_null());  // an id

  std::vector<std::string> references;
  for (const json& location : client.At("textDocument/references", kDamaged, 3, 14))
    references.push_back(At(location["range"]));
  EXPECT_EQ(references, (std::vector<std::string>{"3:13-3:28", "12:18-12:19", "13:18-13:19", "16:18-16:19"}));
  EXPECT_EQ(client.At("textDocument/references", kDamaged, 12, 18).size(), 4u);  // from a number naming it

  const json params = {{"textDocument", {{"uri", kDamaged}}}};
  DirectClient trees(json::parse(R"({"capabilities":{"textDocument":{"documentSymbol":
                                    {"hierarchicalDocumentSymbolSupport":true}}}})"));
  trees.Open(kDamaged, ExampleText("damaged.def"));
  const json outline = trees.Request("textDocument/documentSymbol", params)["result"];
  EXPECT_EQ(Outline(outline), "EPROM(Atmel(AT27C256(id 4001,id 4001,id 4002,id 4004),})),KVR5DEF");
  const json& device = outline[0]["children"][0]["children"][0];
  EXPECT_EQ(At(device["selectionRange"]), "10:0-10:8");
  EXPECT_EQ(At(device["range"]), "10:0-17:43");  // the block ends at the refused line
  EXPECT_EQ(At(device["children"][0]["selectionRange"]), "12:9-12:13");

  json folds = client.Request("textDocument/foldingRange", params)["result"];
  EXPECT_EQ(folds, json::parse(R"([{"startLine":10,"endLine":17,"kind":"region"},
                                   {"startLine":20,"endLine":22,"kind":"region"}])"));
  client.Open("file:///v7.def", ExampleText("adapters_v7.def"));
  folds = client.Request("textDocument/foldingRange", {{"textDocument", {{"uri", "file:///v7.def"}}}})["result"];
  EXPECT_EQ(folds.size(), 6u);
  EXPECT_EQ(folds[0], json::parse(R"({"startLine":3,"endLine":4,"kind":"region"})"));  // HOUSING_LIST's entries
}

TEST(LspFeatures, FlatOutlineForClientsWithoutTrees) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  const json symbols = client.Request("textDocument/documentSymbol", {{"textDocument", {{"uri", kDamaged}}}})["result"];
  ASSERT_EQ(symbols.size(), 9u);
  EXPECT_EQ(symbols[2]["name"], "AT27C256");
  EXPECT_EQ(symbols[2]["containerName"], "Atmel");
  EXPECT_EQ(symbols[3]["containerName"], "AT27C256");
}

TEST(LspFeatures, EachDocumentKeepsItsOwnHeaderLists) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  // A read of another file starts the process's name lists anew.
  client.Open("file:///v7.def", ExampleText("adapters_v7.def"));
  client.Publish();
  EXPECT_EQ(HoverText(client.At("textDocument/hover", kDamaged, 12, 14)),
            "package 1: DIP28\nentry 1 of HOUSING_LIST (line 3)");
  EXPECT_EQ(HoverText(client.At("textDocument/hover", "file:///v7.def", 22, 14)),
            "package 2: PLCC32\nentry 2 of HOUSING_LIST (line 4)");
}

TEST(LspFeatures, SettingsRangeChangesAndFilesThatAreNoDefinitionFiles) {
  DirectClient client;
  client.Open(kDamaged, ExampleText("damaged.def"));
  client.Publish();
  client.Notify("workspace/didChangeConfiguration",
                {{"settings", {{"devdef", {{"generation", 4}, {"checkIds", "yes"}}}}}});
  EXPECT_EQ(client.sent.back()["method"], "window/logMessage");
  EXPECT_EQ(client.Publish().size(), 1u);  // analysed again under the new settings
  EXPECT_EQ(HoverText(client.At("textDocument/hover", kDamaged, 12, 2)),
            "generation 4: visible in generation 4, the generation in force\ndefinition 4001 of AT27C256");

  // A change of a range, as clients that ignore full sync send: package 7
  // becomes 1, and its finding goes.
  client.Notify(
      "textDocument/didChange",
      {{"textDocument", {{"uri", kDamaged}, {"version", 2}}},
       {"contentChanges",
        {{{"range", {{"start", {{"line", 14}, {"character", 14}}}, {"end", {{"line", 14}, {"character", 15}}}}},
          {"text", "1"}}}}});
  const json diagnostics = client.Publish()[0]["params"]["diagnostics"];
  EXPECT_EQ(diagnostics[3]["message"], "adapter 5 has no name in ADAPTER_LIST");

  client.Open("file:///notes.txt", "hello\nworld\n");
  json published = client.Publish()[0]["params"]["diagnostics"];
  ASSERT_EQ(published.size(), 1u);
  EXPECT_EQ(published[0]["code"], "no-version");
  EXPECT_EQ(published[0]["message"],
            "'notes.txt' is not a definition file: no line opens with \"DEF_LAYOUT_VERSION = N\"");
  EXPECT_TRUE(client.At("textDocument/hover", "file:///notes.txt", 0, 0).is_null());
  EXPECT_EQ(client.Request("textDocument/foldingRange", {{"textDocument", {{"uri", "file:///notes.txt"}}}})["result"],
            json::array());
  // A layout forced on a file of another: the reason, at the file's start.
  client.Notify("workspace/didChangeConfiguration", {{"settings", {{"devdef", {{"layout", 7}}}}}});
  for (const json& message : client.Publish()) {
    if (message["params"]["uri"] != kDamaged) continue;
    EXPECT_EQ(At(message["params"]["diagnostics"][0]["range"]), "0:0-0:0");
    EXPECT_FALSE(message["params"]["diagnostics"][0].contains("code"));
  }
}

}  // namespace
