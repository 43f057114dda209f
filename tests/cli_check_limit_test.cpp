// devdef check on a file with many findings: the text form stops at its
// limit and says how many it left out, as compilers stop at theirs; the
// machine forms list every finding unless told otherwise; counts and the
// exit status are of every finding.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/tool_run.h"

namespace {

using nlohmann::json;

// A layout 7 file with lines definitions, each using an adapter number of
// its own that ADAPTER_LIST does not name: one finding a line, and a note
// on its HOUSING_LIST.
std::string ManyFindings(const ScratchDir& dir, int lines) {
  std::string text = "DEF_LAYOUT_VERSION = 7\nHOUSING_LIST {\n  DIP8,\n}\nMODUL_LIST BASE;\nKind:\n:Maker\nDEV\n{\n";
  for (int i = 0; i < lines; ++i) {
    text += "KVR5DEF: " + std::to_string(100 + i) + " 0 0 " + std::to_string(10 + i) +
            " 16 0 1 2 1F 0 5 6 A 1 0 : x\n";
  }
  text += "}\n";
  const std::string path = dir.Path() + "/many.def";
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

size_t Lines(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST(CliCheckLimit, TextStopsAtTheLimitMachineFormsDoNot) {
  const ScratchDir dir;
  const std::string file = ManyFindings(dir, 150);

  const ToolRun text = RunTool("check --select bad-number " + file, "2>&1");
  EXPECT_EQ(text.status, 1);
  EXPECT_EQ(Lines(text.out, ": warning: adapter "), 100u);
  EXPECT_NE(text.out.find("\ndevdef: 50 more findings not shown (--max-findings 100; 0 shows all)\n"),
            std::string::npos)
      << text.out;
  // The summary counts what was left out too.
  EXPECT_NE(text.out.find("0 errors, 150 warnings, 0 notes\n"), std::string::npos);

  EXPECT_EQ(Lines(RunTool("check --select bad-number --max-findings 0 " + file).out, ": warning: adapter "), 150u);
  const ToolRun one = RunTool("check --select bad-number --max-findings 1 " + file);
  EXPECT_EQ(Lines(one.out, ": warning: adapter "), 1u);
  EXPECT_NE(one.out.find("devdef: 149 more findings not shown (--max-findings 1; 0 shows all)"), std::string::npos);
  // Under the limit nothing is said.
  EXPECT_EQ(RunTool("check --select bad-number --max-findings 150 " + file).out.find("not shown"), std::string::npos);

  const json all = json::parse(RunTool("check --select bad-number --json " + file).out);
  EXPECT_EQ(all["findings"].size(), 150u);
  EXPECT_FALSE(all["summary"].contains("left_out"));
  const json few = json::parse(RunTool("check --json --max-findings 10 " + file).out);
  EXPECT_EQ(few["findings"].size(), 10u);
  EXPECT_EQ(few["summary"]["left_out"], 141);
  EXPECT_EQ(few["summary"]["warnings"], 150);
  EXPECT_EQ(few["summary"]["notes"], 1);

  const json sarif = json::parse(RunTool("check --select bad-number --format sarif " + file).out);
  EXPECT_EQ(sarif["runs"][0]["results"].size(), 150u);
  EXPECT_FALSE(sarif["runs"][0].contains("properties"));
  const json cut = json::parse(RunTool("check --select bad-number --format sarif --max-findings 3 " + file).out);
  EXPECT_EQ(cut["runs"][0]["results"].size(), 3u);
  EXPECT_EQ(cut["runs"][0]["properties"]["findingsLeftOut"], 147);
}

// The exit status follows every finding, not the shown ones; a bad limit
// is a usage error.
TEST(CliCheckLimit, ExitStatusAndBadValues) {
  const ScratchDir dir;
  const std::string file = ManyFindings(dir, 3);
  EXPECT_EQ(RunTool("check --max-findings 1 --select bad-number " + file).status, 1);
  for (const char* bad : {"-1", "abc", "1.5", "99999999999"}) {
    const ToolRun run = RunTool(std::string("check --max-findings ") + bad + " " + file, "2>&1");
    EXPECT_EQ(run.status, 2) << bad;
    EXPECT_NE(run.out.find(std::string("--max-findings: '") + bad + "'"), std::string::npos) << run.out;
  }
}

// A finding repeated along a line is one, in every form: its place is the
// first, its count and last column say the rest.
TEST(CliCheckLimit, RepeatsAlongALineMergeInEveryForm) {
  const ScratchDir dir;
  const std::string path = dir.Path() + "/repeat.def";
  std::string numbers;
  for (int i = 0; i < 1000; ++i) numbers += i == 0 ? "7" : ",7";
  std::ofstream(path, std::ios::binary) << "DEF_LAYOUT_VERSION = 7\nHOUSING_LIST {\n  DIP8,\n}\nMODUL_LIST BASE;\n"
                                           "Kind:\n:Maker\nDEV\n{\n"
                                           "KVR5DEF: 1 0 0 " + numbers + " 16 0 1 2 1F 0 5 6 A 1 0 : x\n}\n";
  const ToolRun text = RunTool("check --select bad-number " + path);
  EXPECT_NE(text.out.find(":10:16: warning: adapter 7 has no name in ADAPTER_LIST (1000 times, columns 16-2014) "
                          "[bad-number]\n"),
            std::string::npos)
      << text.out;
  EXPECT_EQ(Lines(text.out, ": warning: "), 1u);

  const json finding = json::parse(RunTool("check --select bad-number --json " + path).out)["findings"][0];
  EXPECT_EQ(finding["count"], 1000);
  EXPECT_EQ(finding["column"], 16);
  EXPECT_EQ(finding["last_column"], 2014);
  EXPECT_EQ(finding["end_column"], 2015);
  EXPECT_EQ(finding["message"], "adapter 7 has no name in ADAPTER_LIST");

  const json result = json::parse(RunTool("check --select bad-number --format sarif " + path).out)["runs"][0]["results"][0];
  EXPECT_EQ(result["occurrenceCount"], 1000);
  EXPECT_EQ(result["locations"][0]["physicalLocation"]["region"]["endColumn"], 2015);
  EXPECT_EQ(result["message"]["text"], "adapter 7 has no name in ADAPTER_LIST (1000 times, columns 16-2014)");
}

}  // namespace
