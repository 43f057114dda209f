// End-to-end tests of the devdef tool on the sample files.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "tests/tool_run.h"

namespace {

std::string Example(const char* name) { return std::string(DEVDEF_EXAMPLES_DIR) + "/" + name; }

// Runs the tool with the arguments (a shell word list) and captures what
// redirect leaves on standard output: by default standard error is dropped.
ToolRun Tool(const std::string& arguments, const char* redirect = "2>/dev/null") { return RunTool(arguments, redirect); }

TEST(Cli, TreeOfEachLayout) {
  for (const char* file : {"instruments.def", "programmers_v2.def", "adapters_v7.def"}) {
    SCOPED_TRACE(file);
    const ToolRun text = Tool("tree " + Example(file));
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("  "), std::string::npos);
    const ToolRun json = Tool("tree --json " + Example(file));
    ASSERT_EQ(json.status, 0);
    const nlohmann::json tree = nlohmann::json::parse(json.out);
    // Printed device by device, the document reads as if printed whole.
    EXPECT_EQ(json.out, tree.dump(2) + "\n");
    EXPECT_FALSE(tree["kinds"].empty());
    EXPECT_FALSE(tree["packages"].empty());
  }
  const nlohmann::json v7 = nlohmann::json::parse(Tool("tree --json " + Example("adapters_v7.def")).out);
  EXPECT_EQ(v7["layout"], 7);
  EXPECT_EQ(v7["adapters"][0], (nlohmann::json{{"number", 0}, {"name", "ADP_U_PLCC32/ZIF"}}));
  const nlohmann::json& manufacturer = v7["kinds"][0]["manufacturers"][0];
  const nlohmann::json& device = manufacturer["devices"][0];
  EXPECT_EQ(device["name"], "AT89C51");
  EXPECT_EQ(device["housings"].size(), 3u);
  EXPECT_EQ(device["definitions"][1]["values"][4], 0x2F);
  // The lines of the kind, manufacturer, name and each definition; line 24
  // makes none. A device carries its kind and manufacturer as the tree does.
  EXPECT_EQ(v7["kinds"][1]["line"], 41);
  EXPECT_EQ(device["kind"], (nlohmann::json{{"name", "Microcontroller"}, {"line", 15}}));
  EXPECT_EQ(device["manufacturer"]["line"], manufacturer["line"]);
  EXPECT_EQ(device["line"], 19);
  EXPECT_EQ(device["definitions"][0]["line"], 22);
  EXPECT_EQ(device["definitions"][1]["line"], 23);
}

// Every document names its schema, the file, its layout and the encoding
// its text was decoded with.
TEST(Cli, EveryJsonDocumentHasOneFrame) {
  const std::string file = Example("adapters_v7.def");
  for (const std::string command : {"tree", "list", "show --id 3010", "find --id 3010", "check"}) {
    const nlohmann::json document = nlohmann::json::parse(Tool(command + " --json " + file).out);
    EXPECT_EQ(document["schema"], 1) << command;
    EXPECT_EQ(document["file"], file) << command;
    EXPECT_EQ(document["layout"], 7) << command;
    EXPECT_EQ(document["encoding"], "utf-8") << command;  // its marks are not text
  }
}

TEST(Cli, ListAndPatterns) {
  const ToolRun all = Tool("list " + Example("adapters_v7.def"));
  EXPECT_EQ(all.status, 0);
  EXPECT_NE(all.out.find("Microcontroller / Atmel / AT89C51 (1 visible)\n"), std::string::npos);
  const ToolRun some = Tool("list --json " + Example("adapters_v7.def") + " 'at89[cs]*'");
  ASSERT_EQ(some.status, 0);
  const nlohmann::json list = nlohmann::json::parse(some.out);
  ASSERT_EQ(list["devices"].size(), 2u);
  EXPECT_EQ(list["devices"][1]["name"], "AT89S8252");
  EXPECT_EQ(list["devices"][1]["line"], 27);
  EXPECT_EQ(Tool("list " + Example("adapters_v7.def") + " 'intel'").status, 1);
  const ToolRun none = Tool("list --json " + Example("adapters_v7.def") + " 'intel'");
  EXPECT_EQ(none.out, nlohmann::json::parse(none.out).dump(2) + "\n");
  const ToolRun fields = Tool("list --all-fields " + Example("adapters_v7.def") + " 'intel'");
  EXPECT_EQ(fields.status, 0);
  EXPECT_NE(fields.out.find("28F320J3"), std::string::npos);
}

TEST(Cli, ShowAndFind) {
  const ToolRun show = Tool("show " + Example("adapters_v7.def") + " P89C51RD2");
  ASSERT_EQ(show.status, 0);
  EXPECT_NE(show.out.find("device: P89C51RD2 (line 35)\n"), std::string::npos) << show.out;
  EXPECT_NE(show.out.find("id 3100  KVR3  (hidden)"), std::string::npos);
  EXPECT_NE(show.out.find("(hidden)  package 2 (PLCC32)  module 0 (BASE)  adapters 0 (ADP_U_PLCC32/ZIF)  line 37\n"),
            std::string::npos);
  const nlohmann::json byId = nlohmann::json::parse(Tool("show --json --id 3011 " + Example("adapters_v7.def")).out);
  EXPECT_EQ(byId["devices"][0]["name"], "AT89S8252");
  EXPECT_EQ(byId["devices"][0]["marks"][0], "0xB0");
  EXPECT_EQ(byId["devices"][0]["line"], 27);  // behind the mark byte
  EXPECT_EQ(byId["devices"][0]["definitions"][1]["line"], 30);

  const ToolRun found = Tool("find --json --id 3201 " + Example("adapters_v7.def"));
  ASSERT_EQ(found.status, 0);
  const nlohmann::json match = nlohmann::json::parse(found.out)["matches"][0];
  EXPECT_EQ(match["device"]["name"], "28F320J3");
  EXPECT_EQ(match["device"]["line"], 45);
  ASSERT_EQ(match["definitions"].size(), 1u);
  EXPECT_EQ(match["definitions"][0], match["device"]["definitions"][1]);
  EXPECT_EQ(match["definitions"][0]["package_name"], "TSOP48");
  EXPECT_EQ(match["definitions"][0]["visible_index"], 0);  // 3200 before it is hidden
  EXPECT_EQ(match["definitions"][0]["line"], 49);
  const ToolRun foundText = Tool("find --id 3201 " + Example("adapters_v7.def"));
  EXPECT_NE(foundText.out.find("device: 28F320J3 (line 45)\nvisible index: 0\nid: 3201 (line 49)\n"), std::string::npos);
  EXPECT_EQ(Tool("find --id 3100 --generation 3 " + Example("adapters_v7.def")).status, 0);
}

// A hidden definition is not found by its id, but the message says which
// generation shows it; the JSON names its device as a candidate.
TEST(Cli, HiddenIdSaysItsGeneration) {
  const std::string file = Example("adapters_v7.def");
  for (const char* command : {"show", "find"}) {
    const ToolRun hidden = Tool(std::string(command) + " --id 3100 " + file, "2>&1 >/dev/null");
    EXPECT_EQ(hidden.status, 1);
    EXPECT_EQ(hidden.out, "devdef: id 3100 is hidden: its generation is 3 (devdef " + std::string(command) +
                              " --generation 3 " + file + " --id 3100)\n");
    const nlohmann::json json = nlohmann::json::parse(Tool(std::string(command) + " --json --id 3100 " + file).out);
    EXPECT_TRUE(json[command == std::string("show") ? "devices" : "matches"].empty());
    EXPECT_EQ(json["candidates"][0]["name"], "P89C51RD2");
    EXPECT_EQ(Tool(std::string(command) + " --id -1 " + file, "2>&1").out,
              "devdef: no definition has the id 4294967295\n");
  }
}

// One way to name a device: ASCII case ignored, '_' as a blank, shell
// wildcards; list, show and find agree on what a name matches.
TEST(Cli, NamesMatchAlikeInListShowAndFind) {
  const std::string file = Example("instruments.def");
  const struct {
    const char* argument;
    const char* name;
  } names[] = {{"at89s8252", "AT89S8252"}, {"'AT89S*'", "AT89S8252"}, {"'at89?8[0-9]5[!0-1]'", "AT89S8252"},
               {"Empty_Slot", "Empty Slot"}, {"'empty slot'", "Empty Slot"}, {"'EMPTY_S*'", "Empty Slot"}};
  for (const auto& name : names) {
    SCOPED_TRACE(name.argument);
    const nlohmann::json list = nlohmann::json::parse(Tool("list --json " + file + " " + name.argument).out);
    ASSERT_EQ(list["devices"].size(), 1u);
    EXPECT_EQ(list["devices"][0]["name"], name.name);
    const nlohmann::json show = nlohmann::json::parse(Tool("show --json " + file + " " + name.argument).out);
    EXPECT_EQ(show["devices"], list["devices"]);  // one object for a device
    const ToolRun find = Tool("find --json " + file + " " + name.argument, "2>&1");
    if (list["devices"][0]["visible_definitions"] == 0) {
      EXPECT_EQ(find.status, 1);
      EXPECT_NE(find.out.find("names no device with a definition"), std::string::npos) << find.out;
    } else {
      EXPECT_EQ(nlohmann::json::parse(find.out)["matches"][0]["device"], list["devices"][0]);
    }
  }
  // Several devices: list and find give them all, show names them and
  // shows them only with --all.
  EXPECT_EQ(nlohmann::json::parse(Tool("list --json " + file + " 'at89*'").out)["devices"].size(), 2u);
  EXPECT_EQ(nlohmann::json::parse(Tool("find --json " + file + " 'at89*'").out)["matches"].size(), 2u);
  const ToolRun several = Tool("show " + file + " 'at89*'", "2>&1");
  EXPECT_EQ(several.status, 1);
  EXPECT_EQ(several.out, "devdef: 'at89*' names 2 devices; name one, or show them all with --all:\n"
                         "  Microcontroller / Atmel / AT89C51 (line 14)\n"
                         "  Microcontroller / Atmel / AT89S8252 (line 21)\n");
  EXPECT_EQ(nlohmann::json::parse(Tool("show --json --all " + file + " 'at89*'").out)["devices"].size(), 2u);
  // A name that matches nothing: the closest names, in each command alike.
  for (const char* command : {"list", "show", "find"}) {
    const ToolRun miss = Tool(std::string(command) + " " + file + " AT89S825", "2>&1 >/dev/null");
    EXPECT_EQ(miss.status, 1);
    EXPECT_EQ(miss.out, "devdef: no device named 'AT89S825'; closest: AT89S8252\n") << command;
    const nlohmann::json json = nlohmann::json::parse(Tool(std::string(command) + " --json " + file + " am27c265").out);
    ASSERT_EQ(json["candidates"].size(), 1u) << command;
    EXPECT_EQ(json["candidates"][0]["name"], "Am27C256");
  }
  EXPECT_EQ(Tool("show " + file + " NoSuchDevice", "2>&1").out, "devdef: no device named 'NoSuchDevice'\n");
  EXPECT_EQ(Tool("list " + file + " 'x*'", "2>&1").out, "devdef: no device matches 'x*'\n");
}

// The same names in a Windows-1252 file and in a UTF-8 one (with mark
// bytes, which are no text): each shown as it is meant and named by the
// UTF-8 a terminal gives; bytes the encoding asked for cannot decode are
// kept in hex.
TEST(Cli, EncodingsOfNamesAndTexts) {
  ScratchDir dir;
  const std::string cp1252 = dir.Path() + "/cp1252.def";
  std::ofstream(cp1252, std::ios::binary)
      << "DEF_LAYOUT_VERSION = 1 \r\nHOUSING_LIST DIP8;\r\nADAPTER_LIST ADP;\r\nMODUL_LIST BASE;\r\nEPROM:\r\n"
         ":Atm\xE9l\r\n\xC4T89C51-\xB5\r\n{\r\nKVR5DEF: 1 0 0 0 28 : 5 \x80 \x81\r\nbad line\r\n}\r\n";
  const std::string utf8 = dir.Path() + "/utf8.def";
  std::ofstream(utf8, std::ios::binary)
      << "DEF_LAYOUT_VERSION = 7 \r\nHOUSING_LIST {\r\n DIP8,\r\n}\r\nADAPTER_LIST {\r\n ADP\r\n}\r\n"
         "MODUL_LIST BASE;\r\nEPROM:\r\n:Atm\xC3\xA9l\r\n\xB0\xC3\x84T89C51-\xC2\xB5\r\n{\r\n"
         "\xDFKVR5DEF: 1 0 0 0 28 0 1 2 1F 0 5 6 A 1 0 : 5 \xE2\x82\xAC \xC2\x81\r\n}\r\n";
  for (const auto& [file, encoding] : {std::pair{cp1252, "cp1252"}, std::pair{utf8, "utf-8"}}) {
    SCOPED_TRACE(encoding);
    EXPECT_EQ(Tool("list " + file).out, "EPROM / Atm\u00e9l / \u00c4T89C51-\u00b5 (1 visible)\n");
    const ToolRun show = Tool("show " + file + " '\u00c4t89c51-\u00b5'");
    EXPECT_EQ(show.status, 0);
    // U+0081 is a control character: text output shows it escaped.
    EXPECT_NE(show.out.find("text: 5 \u20ac \\u0081\n"), std::string::npos) << show.out;
    const nlohmann::json found = nlohmann::json::parse(Tool("find --json " + file + " '\u00c4T89C51-*'").out);
    EXPECT_EQ(found["encoding"], encoding);
    EXPECT_EQ(found["matches"][0]["device"]["manufacturer"]["name"], "Atm\u00e9l");
    EXPECT_EQ(found["matches"][0]["definitions"][0]["text"], " 5 \u20ac \u0081");
    EXPECT_FALSE(found["matches"][0]["device"].contains("name_bytes"));
    // Only ASCII letters fold.
    EXPECT_EQ(Tool("show " + file + " '\u00e4T89C51-\u00b5'").status, 1);
  }
  // The messages of check decode names as the rest of the output does.
  EXPECT_NE(Tool("check " + cp1252).out.find("the block of the device '\u00c4T89C51-\u00b5' ends here"),
            std::string::npos);
  const nlohmann::json forced = nlohmann::json::parse(Tool("show --json --encoding utf-8 --id 1 " + cp1252).out);
  EXPECT_EQ(forced["encoding"], "utf-8");
  EXPECT_EQ(forced["devices"][0]["name"], "\ufffdT89C51-\ufffd");
  EXPECT_EQ(forced["devices"][0]["name_bytes"], "c45438394335312db5");
  EXPECT_EQ(Tool("list --encoding latin1 " + utf8).out,
            "EPROM / Atm\u00c3\u00a9l / \u00c3\\u0084T89C51-\u00c2\u00b5 (1 visible)\n");
  EXPECT_EQ(Tool("list --encoding ebcdic " + utf8).status, 2);
}

// The default form: one line per finding as compilers print them, related
// places as notes below, and a summary on standard error that agrees with
// the JSON form.
TEST(Cli, CheckPrintsCompilerDiagnostics) {
  const std::string damaged = Example("damaged.def");
  const ToolRun text = Tool("check " + damaged);
  EXPECT_EQ(text.status, 1);
  // Behind "FILE:": a finding, or a related place below one.
  const std::regex finding("([0-9]+):[0-9]+: (error|warning|note): .* \\[([a-z0-9-]+)\\]");
  const std::regex related("[0-9]+:[0-9]+: note: .*");
  std::istringstream lines(text.out);
  std::string line;
  size_t findings = 0;
  bool refused = false;
  for (std::smatch match; std::getline(lines, line);) {
    ASSERT_EQ(line.rfind(damaged + ":", 0), 0u) << line;
    const std::string rest = line.substr(damaged.size() + 1);
    if (std::regex_match(rest, match, finding)) {
      ++findings;
      refused = refused || (match[1] == "18" && match[3] == "refused");
    } else {
      EXPECT_TRUE(findings > 0 && std::regex_match(rest, related)) << line;
    }
  }
  EXPECT_TRUE(refused) << text.out;

  const nlohmann::json json = nlohmann::json::parse(Tool("check --json " + damaged).out);
  EXPECT_EQ(json["layout"], 1);
  ASSERT_EQ(json["findings"].size(), findings);
  int counts[3] = {0, 0, 0};
  for (const nlohmann::json& f : json["findings"]) {
    ++counts[f["severity"] == "error" ? 0 : f["severity"] == "warning" ? 1 : 2];
    EXPECT_GE(f["line"].get<long>(), 1);
    EXPECT_GE(f["count"].get<int>(), 1);
  }
  EXPECT_EQ(json["summary"], (nlohmann::json{{"errors", counts[0]}, {"warnings", counts[1]}, {"notes", counts[2]}}));
  std::string summary;
  for (int i = 0; i < 3; ++i) {
    summary += (i > 0 ? ", " : "") + std::to_string(counts[i]) + " " + (i == 0 ? "error" : i == 1 ? "warning" : "note") +
               (counts[i] == 1 ? "" : "s");
  }
  EXPECT_EQ(Tool("check " + damaged, "2>&1 >/dev/null").out, summary + "\n");
  EXPECT_EQ(Tool("check --select version " + damaged, "2>&1 >/dev/null").out, "");  // nothing found, nothing said
}

TEST(Cli, CheckExitStatusAndKindFilters) {
  // The good samples carry notes only.
  for (const char* file : {"instruments.def", "programmers_v2.def", "adapters_v7.def"}) {
    EXPECT_EQ(Tool("check --fail-on warning " + Example(file)).status, 0) << file;
  }
  EXPECT_EQ(Tool("check --fail-on note " + Example("instruments.def")).status, 1);
  const std::string damaged = Example("damaged.def");
  EXPECT_EQ(Tool("check --fail-on warning " + damaged).status, 1);
  // Filters act before the exit status: duplicate ids are warnings.
  EXPECT_EQ(Tool("check --select duplicate-id --fail-on error " + damaged).status, 0);
  EXPECT_EQ(Tool("check --select duplicate-id " + damaged).status, 1);

  const nlohmann::json some =
      nlohmann::json::parse(Tool("check --json --select refused,duplicate-id --select dropped --ignore dropped " +
                                 damaged).out);
  std::set<std::string> kinds;
  for (const nlohmann::json& f : some["findings"]) kinds.insert(f["kind"].get<std::string>());
  EXPECT_EQ(kinds, (std::set<std::string>{"refused", "duplicate-id"}));
  const ToolRun unknown = Tool("check --ignore refused,bogus " + damaged, "2>&1");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_NE(unknown.out.find("'bogus'"), std::string::npos);
  EXPECT_NE(unknown.out.find("duplicate-id"), std::string::npos);  // the valid kinds listed
  EXPECT_EQ(Tool("check --select bogus " + damaged).status, 2);
  EXPECT_EQ(Tool("check /nonexistent/file.def").status, 2);
}

// The SARIF log names one rule per kind, and each result points at its rule
// and at the place the JSON form gives.
TEST(Cli, CheckSarifLog) {
  const nlohmann::json kinds = nlohmann::json::parse(Tool("check --list-kinds --json").out)["kinds"];
  const nlohmann::json findings = nlohmann::json::parse(Tool("check --json " + Example("damaged.def")).out)["findings"];
  const nlohmann::json sarif = nlohmann::json::parse(Tool("check --format sarif " + Example("damaged.def")).out);
  EXPECT_EQ(sarif["version"], "2.1.0");
  const nlohmann::json& run = sarif["runs"][0];
  const nlohmann::json& rules = run["tool"]["driver"]["rules"];
  ASSERT_EQ(rules.size(), kinds.size());
  for (size_t i = 0; i < rules.size(); ++i) {
    EXPECT_EQ(rules[i]["id"], kinds[i]["id"]);
    EXPECT_EQ(rules[i]["defaultConfiguration"]["level"], kinds[i]["severity"]);
  }
  const nlohmann::json& results = run["results"];
  ASSERT_EQ(results.size(), findings.size());
  ASSERT_FALSE(results.empty());
  for (size_t i = 0; i < results.size(); ++i) {
    const nlohmann::json& result = results[i];
    EXPECT_EQ(rules.at(result["ruleIndex"].get<size_t>())["id"], result["ruleId"]);
    EXPECT_EQ(result["ruleId"], findings[i]["kind"]);
    EXPECT_EQ(result["level"], findings[i]["severity"]);
    EXPECT_FALSE(result["message"]["text"].get<std::string>().empty());
    const nlohmann::json& region = result["locations"][0]["physicalLocation"]["region"];
    EXPECT_EQ(region["startLine"], findings[i]["line"]);
    EXPECT_EQ(region["startColumn"], findings[i]["column"]);
    EXPECT_EQ(region["endColumn"], findings[i]["end_column"]);
  }
  // An absolute path becomes a file: URI, percent-encoded.
  ScratchDir dir;
  const std::string spaced = dir.Path() + "/a b.def";
  std::ofstream(spaced, std::ios::binary) << ReadFile(Example("damaged.def"));
  const nlohmann::json copy = nlohmann::json::parse(Tool("check --format sarif '" + spaced + "'").out);
  EXPECT_EQ(copy["runs"][0]["artifacts"][0]["location"]["uri"], "file://" + dir.Path() + "/a%20b.def");
}

// Files that are no definition files, and command lines that are wrong:
// exit status 2 and one line that says what was expected and found.
TEST(Cli, FileErrorsAndUsage) {
  ScratchDir dir;
  const std::string path = dir.Path() + "/x.def";
  const struct {
    std::string bytes;
    std::string said;
  } files[] = {
      {"", "is empty"},
      {std::string("\x7f" "ELF\0\0\1\2", 8), "binary data"},
      {"some notes\nDEF_LAYOUT_VERSION = \nEPROM:\n", "no line opens with \"DEF_LAYOUT_VERSION = N\" (line 2"},
      {"DEF_LAYOUT_VERSION = 3 \r\n", "declares layout 3, which devdef does not read"},
  };
  for (const auto& file : files) {
    std::ofstream(path, std::ios::binary) << file.bytes;
    for (const char* command : {"tree ", "check ", "list --json "}) {
      const ToolRun run = Tool(command + path, "2>&1");
      EXPECT_EQ(run.status, 2) << command << file.said;
      EXPECT_NE(run.out.find(file.said), std::string::npos) << run.out;
      EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1) << run.out;
    }
  }
  const ToolRun wrong = Tool("tree --layout 7 " + Example("instruments.def"), "2>&1");
  EXPECT_EQ(wrong.status, 2);
  EXPECT_NE(wrong.out.find("declares layout 1, but --layout 7 reads only layout 7 files: leave --layout out"),
            std::string::npos);
  EXPECT_EQ(Tool("tree /nonexistent/file.def").status, 2);
  for (const char* usage : {"tree", "frobnicate x", "show --id x "}) {
    const ToolRun run = Tool(usage, "2>&1");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 1) << run.out;
    EXPECT_NE(run.out.find("--help'"), std::string::npos) << run.out;
  }
  EXPECT_NE(Tool("tree", "2>&1").out.find("see 'devdef tree --help'"), std::string::npos);
  EXPECT_EQ(Tool("--help").status, 0);
  EXPECT_EQ(Tool("check --help").status, 0);
  EXPECT_NE(Tool("--version").out.find("devdef "), std::string::npos);
  // "-" is standard input, and the library's duplicate-id box is said in the
  // tool's words, once for each repeat.
  EXPECT_NE(Tool("list - < " + Example("adapters_v7.def")).out.find("AT89S8252"), std::string::npos);
  const ToolRun ids = Tool("list --check-ids - < " + Example("damaged.def"), "2>&1");
  EXPECT_NE(ids.out.find("<stdin>:14:10: warning: id 4001 is already used at line 13 [duplicate-id]\n"),
            std::string::npos)
      << ids.out;
  EXPECT_EQ(ids.out.find("Doppelte"), std::string::npos);
  EXPECT_EQ(ids.out.find("4001", ids.out.find("[duplicate-id]")), std::string::npos);
}

// The commands that show a catalogue say, after their output, that the file
// has errors and how to see them; --quiet leaves that out, and a file
// without errors gets no such line.
TEST(Cli, ShownCatalogueOfDamagedFileSaysItsErrors) {
  const std::string damaged = Example("damaged.def");
  const std::string hint = "devdef: 7 errors in " + damaged + "; see 'devdef check " + damaged + "'\n";
  for (const std::string command : {"tree ", "tree --json ", "list ", "show --all ", "find "}) {
    const std::string pattern = command == "tree " || command == "tree --json " ? "" : " '*'";
    EXPECT_EQ(Tool(command + damaged + pattern, "2>&1 >/dev/null").out, hint) << command;
    const ToolRun quiet = Tool(command + "-q " + damaged + pattern, "2>&1 >/dev/null");
    EXPECT_EQ(quiet.status, 0) << command;
    EXPECT_EQ(quiet.out, "") << command;
    EXPECT_EQ(Tool(command + Example("instruments.def") + pattern, "2>&1 >/dev/null").out, "") << command;
  }
  // A miss is said first; the status stays the miss's.
  const ToolRun miss = Tool("show " + damaged + " nothing", "2>&1 >/dev/null");
  EXPECT_EQ(miss.status, 1);
  EXPECT_EQ(miss.out.substr(miss.out.find('\n') + 1), hint);
}

// A write is read back first: a rewrite that would lose something writes
// nothing and lists each loss, unless --force; a faithful one is written.
TEST(Cli, WritesKeepWhatTheyPromise) {
  ScratchDir dir;
  const std::string copy = dir.Path() + "/adapters.def";
  std::ofstream(copy, std::ios::binary) << ReadFile(Example("adapters_v7.def"));
  const ToolRun refused = Tool("write " + copy + " -o " + copy, "2>&1");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(ReadFile(copy), ReadFile(Example("adapters_v7.def")));
  EXPECT_NE(refused.out.find(copy + ":4:3: error: HOUSING_LIST does not read back"), std::string::npos) << refused.out;
  EXPECT_NE(refused.out.find(copy + ":41:1: error: kind 'Flash Memory' and all under it do not read back"),
            std::string::npos);
  EXPECT_NE(refused.out.find("nothing written"), std::string::npos);
  // Each list is lost for its own reason: ADAPTER_LIST for its braces,
  // MODUL_LIST (on one line) for the written HOUSING_LIST that the reader
  // does not take, whose scan passes over it.
  EXPECT_NE(refused.out.find("ADAPTER_LIST does not read back: its 4 entries are lost (ADAPTER_LIST in braces"),
            std::string::npos);
  EXPECT_NE(refused.out.find("MODUL_LIST does not read back: its 3 entries are lost (the written file reads "
                             "differently from its line 2 on: HOUSING_LIST not read"),
            std::string::npos);
  const ToolRun forced = Tool("write --force " + copy + " -o " + copy, "2>&1");
  EXPECT_EQ(forced.status, 0);
  EXPECT_NE(forced.out.find(copy + ":4:3: warning: HOUSING_LIST does not read back"), std::string::npos);
  EXPECT_EQ(ReadFile(copy).compare(0, 25, "DEF_LAYOUT_VERSION = 7 \r\n"), 0);

  // Each rewrite puts one more blank in front of every text: a loss, said
  // once for all the texts, and again for the file so written.
  const std::string clean = dir.Path() + "/clean.def";
  std::ofstream(clean, std::ios::binary) << "DEF_LAYOUT_VERSION = 1 \nHOUSING_LIST DIP8;\nADAPTER_LIST ADP;\n"
                                            "MODUL_LIST BASE;\nEPROM:\n:AMD\nAm27C256\n{\nKVR5DEF: 1 0 0 0 28 : text\n"
                                            "KVR4DEF: 2 0 0 0 28 : more\n}\n";
  const std::string blank = "error: the texts of 2 definitions, from definition 1 of 'Am27C256' on, read back with "
                            "one more blank in front";
  const std::string rewritten = dir.Path() + "/rewritten.def";
  std::string from = clean;
  const struct {
    const char* line;  // of the first definition in the file written from
    const char* text;  // its line as written
  } rounds[] = {{"9", "KVR5DEF: 1 0 0 0 28 :  text\r\n"}, {"12", "KVR5DEF: 1 0 0 0 28 :   text\r\n"}};
  for (const auto& round : rounds) {
    const ToolRun again = Tool("write " + from + " -o " + rewritten, "2>&1");
    EXPECT_EQ(again.status, 1);
    EXPECT_EQ(again.out.find(from + ":" + round.line + ":1: " + blank), 0u) << again.out;
    EXPECT_EQ(std::count(again.out.begin(), again.out.end(), '\n'), 2) << again.out;
    const ToolRun toStdout = Tool("write --force -q " + from + " -o -", "2>&1");
    EXPECT_EQ(toStdout.status, 0);
    EXPECT_NE(toStdout.out.find(round.text), std::string::npos) << toStdout.out;
    EXPECT_EQ(Tool("write --force -q " + from + " -o " + rewritten).status, 0);
    from = dir.Path() + "/from.def";
    std::ofstream(from, std::ios::binary) << ReadFile(rewritten);
  }
  // A catalogue without definitions reads back whole.
  const std::string bare = dir.Path() + "/bare.def";
  std::ofstream(bare, std::ios::binary) << "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST A;\nADAPTER_LIST B;\nMODUL_LIST C;\n"
                                           "EPROM:\n:AMD\nX\n{\n}\n";
  EXPECT_EQ(Tool("write " + bare + " -o " + bare, "2>&1").out, "");
  EXPECT_EQ(ReadFile(bare).compare(0, 25, "DEF_LAYOUT_VERSION = 1 \r\n"), 0);
}

TEST(Cli, WriteConvertAndExport) {
  ScratchDir dir;
  ASSERT_FALSE(dir.Path().empty());
  const std::string out = dir.Path() + "/out.def";
  ASSERT_EQ(Tool("write --force " + Example("instruments.def") + " -o " + out).status, 0);
  const std::string written = ReadFile(out);
  EXPECT_EQ(written.compare(0, 25, "DEF_LAYOUT_VERSION = 1 \r\n"), 0);

  const std::string converted = dir.Path() + "/v3.def";
  ASSERT_EQ(Tool("convert " + Example("programmers_v2.def") + " -o " + converted).status, 0);
  EXPECT_NE(ReadFile(converted).find("KVR3DEF: 2001 1 0 0 2 5 28  100 12 FF 0 0 1F 3 0 : 27C256 one-time programmable\r\n"),
            std::string::npos);
  // A failed conversion leaves nothing behind, not even over an existing file.
  EXPECT_EQ(Tool("convert " + Example("adapters_v7.def") + " -o " + out).status, 2);
  EXPECT_EQ(ReadFile(out).substr(0, 25), "DEF_LAYOUT_VERSION = 1 \r\n");
  EXPECT_EQ(Tool("convert " + Example("instruments.def") + " -o " + converted).status, 2);

  ASSERT_EQ(Tool("export " + Example("adapters_v7.def") + " --dir " + dir.Path()).status, 0);
  EXPECT_EQ(ReadFile(dir.Path() + "/k4devicelist.txt"),
            "KOVIR32 K4 Device List \r\n1:\tAT89C51\r\n\t\tADP_U_PLCC32/ZIF\r\n2:\tAT89S8252\r\n3:\tP89C51RD2\r\n"
            "4:\t28F320J3\r\n\t\tADP_U_TSOP48/CLAMP\r\n");

  // A read-only directory: a clear failure and nothing left behind.
  const std::string locked = dir.Path() + "/locked";
  ASSERT_EQ(::mkdir(locked.c_str(), 0555), 0);
  // Root writes into any directory whatever its mode; /proc refuses new
  // files to everyone.
  const std::string readOnly = ::access(locked.c_str(), W_OK) != 0 ? locked : "/proc";
  EXPECT_EQ(Tool("write --force " + Example("instruments.def") + " -o " + readOnly + "/x.def").status, 2);
  EXPECT_EQ(Tool("export " + Example("adapters_v7.def") + " --dir " + readOnly).status, 2);
  EXPECT_NE(::access((readOnly + "/x.def").c_str(), F_OK), 0);
  EXPECT_NE(::access((readOnly + "/k4devicelist.txt").c_str(), F_OK), 0);
  // A full device: the write fails and the target is left as it was.
  struct stat full;
  if (::stat("/dev/full", &full) == 0 && S_ISCHR(full.st_mode)) {
    EXPECT_EQ(Tool("write --force " + Example("instruments.def") + " -o /dev/full").status, 2);
    ASSERT_EQ(::stat("/dev/full", &full), 0);
    EXPECT_TRUE(S_ISCHR(full.st_mode));  // written into, never replaced
  }
  EXPECT_EQ(dir.Listing(), "k4devicelist.txt\nlocked\nout.def\nv3.def\n");
}

}  // namespace
