// The comparison of two catalogues by meaning: each kind of change with the
// fields of what was added or removed, header lists renumbered without any
// definition changing, how a device that is not where it was is found
// (moved, renamed, moved and changed), ids that are 0 or repeat, files of
// two layouts, and the text form.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/tool_run.h"
#include "tools/diff/catalogue_diff.h"
#include "tools/diff/diff_output.h"

namespace {

std::unique_ptr<Analysis> Read(const std::string& text) {
  std::unique_ptr<Analysis> analysis = Analysis::ReadText("test.def", text, AnalysisOptions());
  EXPECT_TRUE(analysis->Usable()) << analysis->Error();
  return analysis;
}

// Each change as "change what path/name #id field,field old_line new_line".
std::vector<std::string> Diff(const std::string& oldText, const std::string& newText, bool visibleOnly = false) {
  std::unique_ptr<Analysis> oldFile = Read(oldText);
  std::unique_ptr<Analysis> newFile = Read(newText);
  DiffOptions options;
  options.visibleOnly = visibleOnly;
  std::vector<std::string> out;
  for (const DiffChange& change : DiffCatalogues(*oldFile, *newFile, options)) {
    std::string line = std::string(ChangeName(change.change)) + " " + WhatName(change.what) + " ";
    for (const std::string& name : change.path) line += name + "/";
    line += change.name;
    if (change.hasId) line += "#" + std::to_string(change.id);
    for (const auto& field : change.fields) {
      line += " " + field.first + "=" + field.second.first.Literal() + ">" + field.second.second.Literal();
    }
    if (!change.from.empty()) line += " from " + change.from[0] + "/" + change.from[1];
    if (!change.oldName.empty()) line += "/" + change.oldName;
    line += " " + std::to_string(change.oldLine) + ":" + std::to_string(change.newLine);
    out.push_back(line);
  }
  return out;
}

const std::string kOld =
    "DEF_LAYOUT_VERSION = 1 \n"      // 1
    "HOUSING_LIST DIP8, PLCC32;\n"   // 2
    "ADAPTER_LIST ADP1, ADP2;\n"     // 3
    "MODUL_LIST BASE, FAST;\n"       // 4
    "EPROM:\n"                       // 5
    ":AMD\n"                         // 6
    "A1\n"                           // 7
    "{\n"                            // 8
    "KVR5DEF: 1 0 0 0 28 : one\n"    // 9
    "KVR5DEF: 2 1 1 1 28 : two\n"    // 10
    "KVR5DEF: 3 1 1 1 28 : three\n"  // 11
    "}\n"                            // 12
    "MOVER\n"                        // 13
    "{\n"                            // 14
    "KVR5DEF: 9 0 0 0 1 : m\n"       // 15
    "}\n"                            // 16
    ":Gone\n"                        // 17
    "OLD\n"                          // 18
    "{\n"                            // 19
    "}\n";                           // 20

TEST(Diff, EachKindOfChange) {
  const std::string changed =
      "DEF_LAYOUT_VERSION = 1 \n"           // 1
      "HOUSING_LIST DIP8, PLCC32;\n"        // 2
      "ADAPTER_LIST ADP1, ADP2;\n"          // 3
      "MODUL_LIST BASE, FAST;\n"            // 4
      "EPROM:\n"                            // 5
      ":AMD\n"                              // 6
      "A1\n"                                // 7
      "{\n"                                 // 8
      "KVR5DEF: 1 0 1 0 28 : one, faster\n" // 9
      "KVR5DEF: 3 1 1 1 28 : three\n"       // 10
      "KVR4DEF: 4 1 1 0,1 28 : four\n"      // 11
      "}\n"                                 // 12
      "NEW\n"                               // 13
      "{\n"                                 // 14
      "}\n"                                 // 15
      "FLASH:\n"                            // 16
      ":Intel\n"                            // 17
      "MOVER\n"                             // 18
      "{\n"                                 // 19
      "KVR5DEF: 9 0 0 0 1 : m\n"            // 20
      "}\n";                                // 21
  EXPECT_EQ(Diff(kOld, changed),
            (std::vector<std::string>{
                "added kind FLASH 0:16",
                "added manufacturer FLASH/Intel 0:17",
                "removed manufacturer EPROM/Gone 17:0",
                "changed definition EPROM/AMD/A1/#1 module=\"BASE\">\"FAST\" text=\" one\">\" one, faster\" 9:9",
                // What was added or removed has its fields: the one value a
                // layout 1 line holds, and none of the ten it does not.
                "added definition EPROM/AMD/A1/#4 generation=null>4 packages=null>[\"PLCC32\"] module=null>\"FAST\" "
                "adapters=null>[\"ADP1\",\"ADP2\"] value 2=null>28 text=null>\" four\" 0:11",
                "removed definition EPROM/AMD/A1/#2 generation=5>null packages=[\"PLCC32\"]>null module=\"FAST\">null "
                "adapters=[\"ADP2\"]>null value 2=28>null text=\" two\">null 10:0",
                "added device EPROM/AMD/NEW 0:13",
                "moved device FLASH/Intel/MOVER from EPROM/AMD 13:18",
                "removed device EPROM/Gone/OLD 18:0",
            }));
  EXPECT_TRUE(Diff(kOld, kOld).empty());
}

TEST(Diff, RenumberedListChangesNoDefinition) {
  // A name put in front of HOUSING_LIST and ADAPTER_LIST shifts every
  // number behind it; the definitions name the same packages as before.
  std::string renumbered = kOld;
  renumbered.replace(renumbered.find("HOUSING_LIST DIP8"), 17, "HOUSING_LIST QFP64, DIP8");
  renumbered.replace(renumbered.find("ADAPTER_LIST ADP1, ADP2"), 23, "ADAPTER_LIST ADP2, ADP1");
  for (const char* line : {"KVR5DEF: 1 0 0 0 28", "KVR5DEF: 2 1 1 1 28", "KVR5DEF: 3 1 1 1 28", "KVR5DEF: 9 0 0 0 1"}) {
    std::string to = line;
    to[11] = static_cast<char>(to[11] + 1);                   // the package
    to[15] = to[15] == '0' ? '1' : '0';                       // the adapter
    renumbered.replace(renumbered.find(line), to.size(), to);
  }
  // An entry put in front shifts the others' numbers but moves none of
  // them; both entries of a swap moved.
  EXPECT_EQ(Diff(kOld, renumbered), (std::vector<std::string>{"added list-entry HOUSING_LIST/QFP64 number=null>0 0:2",
                                                              "moved list-entry ADAPTER_LIST/ADP1 number=0>1 3:3",
                                                              "moved list-entry ADAPTER_LIST/ADP2 number=1>0 3:3"}));
}

TEST(Diff, ZeroAndRepeatedIdsPairByPlace) {
  const std::string head = "DEF_LAYOUT_VERSION = 2 \nHOUSING_LIST P;\nADAPTER_LIST A;\nMODUL_LIST M;\nK:\n:M\nD\n{\n";
  const std::string oldText = head +
                              "KVR5DEF: 0 0 0 0 1 2 3 : first zero\n"
                              "KVR5DEF: 0 0 0 0 1 2 3 : second zero\n"
                              "KVR3DEF: 7 0 0 0 1 2 3 : hidden seven\n"
                              "KVR5DEF: 7 0 0 0 1 2 3 : seven\n}\n";
  const std::string newText = head +
                              "KVR5DEF: 0 0 0 0 1 2 3 : first zero\n"
                              "KVR5DEF: 0 0 0 0 1 2 9 : second zero\n"
                              "KVR3DEF: 7 0 0 0 1 2 3 : hidden seven, changed\n"
                              "KVR5DEF: 7 0 0 0 1 2 3 : seven\n}\n";
  EXPECT_EQ(Diff(oldText, newText), (std::vector<std::string>{"changed definition K/M/D/#0 value 2=3>9 10:10",
                                                              "changed definition K/M/D/#7 text=\" hidden seven\">\" hidden "
                                                              "seven, changed\" 11:11"}));
  // The hidden definition is left out with --visible-only.
  EXPECT_EQ(Diff(oldText, newText, true).size(), 1u);
}

TEST(Diff, DevicesOfSingleByteTextMoveAndGo) {
  // Names and texts in Windows-1252 are no UTF-8; a device that stands
  // elsewhere with the same content has moved all the same.
  const std::string head = "DEF_LAYOUT_VERSION = 1 \nHOUSING_LIST P;\nADAPTER_LIST A;\nMODUL_LIST M;\nK:\n";
  const std::string oldText = head +
                              ":M\n"
                              "D\xC9\n{\nKVR5DEF: 1 0 0 0 8 : caf\xE9 \x93x\x94\n}\n"
                              "GONE\n{\nKVR5DEF: 2 0 0 0 8 : \xE4\n}\n";
  const std::string newText = head +
                              ":N\n"
                              "D\xC9\n{\nKVR5DEF: 1 0 0 0 8 : caf\xE9 \x93x\x94\n}\n";
  EXPECT_EQ(Diff(oldText, newText), (std::vector<std::string>{"added manufacturer K/N 0:6",
                                                              "removed manufacturer K/M 6:0",
                                                              "moved device K/N/D\xC9 from K/M 7:7",
                                                              "removed device K/M/GONE 11:0",
                                                              "removed definition K/M/GONE/#2 generation=5>null "
                                                              "packages=[\"P\"]>null module=\"M\">null "
                                                              "adapters=[\"A\"]>null value 2=8>null "
                                                              "text=\" \xE4\">null 13:0"}));
}

TEST(Diff, FilesOfTwoLayouts) {
  const std::string layout1 =
      "DEF_LAYOUT_VERSION = 1 \nHOUSING_LIST P;\nADAPTER_LIST A;\nMODUL_LIST M;\nK:\n:M\nD\n{\nKVR5DEF: 1 0 0 0 28 : t\n}\n";
  const std::string layout2 =
      "DEF_LAYOUT_VERSION = 2 \nHOUSING_LIST P;\nADAPTER_LIST A;\nMODUL_LIST M;\nK:\n:M\nD\n{\nKVR5DEF: 1 0 0 0 5 6 28 : t\n}\n";
  EXPECT_EQ(Diff(layout1, layout2),
            (std::vector<std::string>{"changed definition K/M/D/#1 value 0=0>5 value 1=0>6 9:9"}));
}

TEST(Diff, DeviceNotWhereItWas) {
  const std::string head = "DEF_LAYOUT_VERSION = 1 \nHOUSING_LIST P;\nADAPTER_LIST A;\nMODUL_LIST M;\nK:\n:M\n";
  const std::string x = "X\n{\nKVR5DEF: 1 0 0 0 8 : x\n}\n";
  const std::string oldText = head + x + "E\n{\n}\n:N\n";  // X at line 7, E at 11
  const struct {
    const char* what;
    std::string newText;
    std::vector<std::string> changes;
  } cases[] = {
      {"renamed", head + "Y\n{\nKVR5DEF: 1 0 0 0 8 : x\n}\nE\n{\n}\n:N\n", {"renamed device K/M/Y from K/M/X 7:7"}},
      {"renamed and moved",
       head + "E\n{\n}\n:N\nY\n{\nKVR5DEF: 1 0 0 0 8 : x\n}\n",
       {"renamed device K/N/Y from K/M/X 7:11"}},
      {"moved and changed",
       head + "E\n{\n}\n:N\nX\n{\nKVR5DEF: 1 0 0 0 9 : x\n}\n",
       {"moved device K/N/X from K/M 7:11", "changed definition K/N/X/#1 value 2=8>9 9:13"}},
      {"the same name and definitions elsewhere before the same definitions under another name",
       head + "Y\n{\nKVR5DEF: 1 0 0 0 8 : x\n}\nE\n{\n}\n:N\n" + x,
       {"added device K/M/Y 0:7", "added definition K/M/Y/#1 generation=null>5 packages=null>[\"P\"] "
                                  "module=null>\"M\" adapters=null>[\"A\"] value 2=null>8 text=null>\" x\" 0:9",
        "moved device K/N/X from K/M 7:15"}},
      {"a device without definitions is not known by them",
       head + x + "F\n{\n}\n:N\n",
       {"added device K/M/F 0:11", "removed device K/M/E 11:0"}},
  };
  for (const auto& c : cases) EXPECT_EQ(Diff(oldText, c.newText), c.changes) << c.what;
}

// The text form of what the cases above give: fields of one side alone
// without an arrow, a rename and a move on a line of their own.
TEST(Diff, TextForm) {
  const std::string head = "DEF_LAYOUT_VERSION = 1 \nHOUSING_LIST P;\nADAPTER_LIST A;\nMODUL_LIST M;\nK:\n:M\n";
  std::unique_ptr<Analysis> oldFile =
      Read(head + "X\n{\nKVR5DEF: 1 0 0 0 8 : x\n}\nZ\n{\nKVR5DEF: 2 0 0 0 1 : z\n}\n:N\n");
  std::unique_ptr<Analysis> newFile = Read(head + "Y\n{\nKVR5DEF: 1 0 0 0 8 : x\n}\nW\n{\nKVR5DEF: 3 0 0 0 2 : w\n}\n"
                                                  ":N\nZ\n{\nKVR5DEF: 2 0 0 0 7 : z\n}\n");
  std::FILE* out = std::tmpfile();
  ASSERT_NE(out, nullptr);
  PrintDiffText(out, DiffCatalogues(*oldFile, *newFile, DiffOptions()), false, [](const std::string& s) { return s; });
  std::string text(static_cast<size_t>(std::ftell(out)), '\0');
  std::rewind(out);
  ASSERT_EQ(std::fread(&text[0], 1, text.size(), out), text.size());
  std::fclose(out);
  EXPECT_EQ(text,
            "~ device K / M / Y renamed from X (old line 7, new line 7)\n"
            "+ device K / M / W (new line 11)\n"
            "\n"
            "K / M / W\n"
            "  + definition 3 (new line 13)\n"
            "      generation: 5\n"
            "      packages: P\n"
            "      module: M\n"
            "      adapters: A\n"
            "      value 2: 2\n"
            "      text: \" w\"\n"
            "\n"
            "~ device K / N / Z moved from K / M (old line 11, new line 16)\n"
            "\n"
            "K / N / Z\n"
            "  ~ definition 2 (old line 13, new line 18)\n"
            "      value 2: 1 -> 7\n");
}

}  // namespace

namespace {

// The command end to end: exit statuses as diff(1), the JSON parsed back,
// and the command as git's external diff driver in a repository.
TEST(DiffCommand, ExitStatusJsonAndGitDriver) {
  char dirName[] = "/tmp/devdef-diff-XXXXXX";
  ASSERT_NE(::mkdtemp(dirName), nullptr);
  const std::string dir = dirName;
  std::ofstream(dir + "/old.def", std::ios::binary) << kOld;
  std::string edited = kOld;
  edited.replace(edited.find("KVR5DEF: 2 1 1 1 28 : two"), 25, "KVR5DEF: 2 1 0 1 28 : two");
  std::ofstream(dir + "/new.def", std::ios::binary) << edited;

  const ToolRun same = RunTool("diff old.def old.def", "2>&1", dir);
  EXPECT_EQ(same.status, 0);
  EXPECT_EQ(same.out, "");
  EXPECT_EQ(RunTool("diff old.def missing.def", "2>/dev/null", dir).status, 2);
  const ToolRun text = RunTool("diff old.def new.def", "2>&1", dir);
  EXPECT_EQ(text.status, 1);
  EXPECT_EQ(text.out, "EPROM / AMD / A1\n  ~ definition 2 (old line 10, new line 10)\n      module: FAST -> BASE\n");
  const nlohmann::json json = nlohmann::json::parse(RunTool("diff --json old.def new.def", "2>&1", dir).out);
  EXPECT_EQ(json["schema"], 2);
  EXPECT_EQ(json["old"]["file"], "old.def");
  ASSERT_EQ(json["changes"].size(), 1u);
  EXPECT_EQ(json["changes"][0]["fields"]["module"], nlohmann::json::parse(R"(["FAST", "BASE"])"));
  EXPECT_EQ(json["changes"][0]["path"], nlohmann::json::parse(R"(["EPROM", "AMD", "A1"])"));

  // A value is named as check names it, by its place in the values of
  // show --json.
  std::string revalued = kOld;
  revalued.replace(revalued.find("KVR5DEF: 2 1 1 1 28"), 19, "KVR5DEF: 2 1 1 1 30");
  std::ofstream(dir + "/revalued.def", std::ios::binary) << revalued;
  const nlohmann::json values = nlohmann::json::parse(RunTool("diff --json old.def revalued.def", "2>&1", dir).out);
  ASSERT_EQ(values["changes"].size(), 1u);
  const nlohmann::json fields = values["changes"][0]["fields"];
  ASSERT_EQ(fields.size(), 1u);
  const std::string name = fields.begin().key();
  ASSERT_EQ(name.compare(0, 6, "value "), 0) << name;
  const size_t index = std::stoul(name.substr(6));
  for (const char* file : {"old.def", "revalued.def"}) {
    const nlohmann::json shown =
        nlohmann::json::parse(RunTool(std::string("show --json ") + file + " A1", "", dir).out);
    EXPECT_EQ(shown["devices"][0]["definitions"][1]["values"][index], fields[name][file[0] == 'o' ? 0 : 1]) << file;
  }
  EXPECT_NE(RunTool("diff old.def revalued.def", "", dir).out.find("      " + name + ": 28 -> 30\n"),
            std::string::npos);

  // git hands the driver seven arguments and takes any status but 0 for a
  // failure of the driver.
  const std::string git = "cd '" + dir + "' && git -c user.name=t -c user.email=t@t ";
  ASSERT_EQ(std::system((git + "init -q repo && cp old.def repo/c.def && cd repo && echo '*.def diff=devdef' > "
                               ".gitattributes && git config diff.devdef.command '" + ToolPath() + " diff' && git add . && "
                               "git -c user.name=t -c user.email=t@t commit -qm c && cp ../new.def c.def").c_str()),
            0);
  const ToolRun viaGit = RunShell("cd '" + dir + "/repo' && git diff 2>&1");
  EXPECT_EQ(viaGit.status, 0);
  EXPECT_EQ(viaGit.out, "devdef diff a/c.def b/c.def\nEPROM / AMD / A1\n  ~ definition 2 (old line 10, new line 10)\n"
                        "      module: FAST -> BASE\n");
  std::system(("rm -rf '" + dir + "'").c_str());
}

}  // namespace
