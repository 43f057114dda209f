// devdef publish as a user meets it: the format by --format or by the
// output's name, usage errors that name the formats and the closest one,
// the file replaced through a temporary file with its mode, names decoded
// with the run's encoding, and output that cannot be written. The rows
// themselves are pinned by the golden cases and read back by
// publish_readback_test.py.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

#include "tests/tool_run.h"

namespace {

std::string Example(const std::string& name) { return std::string(DEVDEF_EXAMPLES_DIR) + "/" + name; }

const std::string kCsvHeader =
    "kind,manufacturer,device,device_line,id,generation,hidden,package_name,packages,module,adapters,text,line\r\n";

TEST(CliPublish, TheFormatComesFromTheOptionElseFromTheOutputsName) {
  ScratchDir dir;
  const std::string file = Example("instruments.def");
  const std::string csv = RunTool("publish --format csv " + file).out;
  const std::string jsonl = RunTool("publish --format jsonl " + file).out;
  ASSERT_EQ(csv.compare(0, kCsvHeader.size(), kCsvHeader), 0);
  ASSERT_EQ(jsonl.compare(0, 15, "{\"definition\":{"), 0);
  struct Case {
    std::string arguments;
    std::string out;  // the file written, in dir
    std::string expected;
  };
  const Case cases[] = {
      {"-o " + dir.Path() + "/a.csv", "a.csv", csv},
      {"-o " + dir.Path() + "/b.CSV", "b.CSV", csv},
      {"-o " + dir.Path() + "/c.jsonl", "c.jsonl", jsonl},
      {"-o " + dir.Path() + "/d.ndjson", "d.ndjson", jsonl},
      // --format wins over the name.
      {"--format jsonl -o " + dir.Path() + "/e.csv", "e.csv", jsonl},
      {"--format csv -o " + dir.Path() + "/f.txt", "f.txt", csv},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(RunTool("publish " + file + " " + c.arguments).status, 0) << c.arguments;
    EXPECT_EQ(ReadFile(dir.Path() + "/" + c.out), c.expected) << c.arguments;
  }
  for (const char* page : {"g.html", "h.HTM"}) {
    EXPECT_EQ(RunTool("publish " + file + " -o " + dir.Path() + "/" + page).status, 0) << page;
    EXPECT_EQ(ReadFile(dir.Path() + "/" + page).compare(0, 15, "<!DOCTYPE html>"), 0) << page;
  }
  // No temporary file is left behind.
  EXPECT_EQ(dir.Listing(), "a.csv\nb.CSV\nc.jsonl\nd.ndjson\ne.csv\nf.txt\ng.html\nh.HTM\n");
}

TEST(CliPublish, UsageErrorsNameTheFormatsAndWriteNothing) {
  ScratchDir dir;
  const std::string file = Example("instruments.def");
  const std::string out = dir.Path() + "/out";
  struct Case {
    std::string arguments;
    std::string says;
  };
  const Case cases[] = {
      {"", "devdef: publish to standard output needs --format html, csv or jsonl; see 'devdef publish --help'\n"},
      {"-o -", "devdef: publish to standard output needs --format html, csv or jsonl; see 'devdef publish --help'\n"},
      {"--format jsnol",
       "devdef: --format: 'jsnol' is not one of html, csv, jsonl; see 'devdef publish --help'\n\n"
       "The most similar format is\n\tjsonl\n"},
      {"--format xml -o " + out + ".csv",
       "devdef: --format: 'xml' is not one of html, csv, jsonl; see 'devdef publish --help'\n"},
      {"-o " + out + ".jsnol",
       "devdef: cannot tell the format of '" + out +
           ".jsnol' by its name: give --format html, csv or jsonl, or a "
           "name ending in .html, .htm, .csv, .jsonl or .ndjson; see 'devdef publish --help'\n\n"
           "The most similar extension is\n\t.jsonl\n"},
      {"-o " + out, "devdef: cannot tell the format of '" + out +
                        "' by its name: give --format html, csv or jsonl, or a name "
                        "ending in .html, .htm, .csv, .jsonl or .ndjson; see 'devdef publish --help'\n"},
  };
  for (const Case& c : cases) {
    const ToolRun run = RunTool("publish " + file + " " + c.arguments, "2>&1");
    EXPECT_EQ(run.status, 2) << c.arguments;
    EXPECT_EQ(run.out, c.says) << c.arguments;
  }
  EXPECT_EQ(dir.Listing(), "");

  // The file that is read is not replaced by its own table.
  const std::string copy = dir.Path() + "/cat.csv";
  std::ofstream(copy, std::ios::binary) << ReadFile(file);
  const ToolRun self = RunTool("publish --layout 1 " + copy + " -o " + copy, "2>&1");
  EXPECT_EQ(self.status, 2);
  EXPECT_EQ(self.out, "devdef: '" + copy + "' is the file being published; write the table elsewhere\n");
  EXPECT_EQ(ReadFile(copy), ReadFile(file));
}

TEST(CliPublish, AReplacedFileKeepsItsModeAndAReadOnlyOneIsLeftAlone) {
  ScratchDir dir;
  const std::string file = Example("instruments.def");
  const std::string out = dir.Path() + "/table.csv";
  std::ofstream(out) << "old\n";
  ::chmod(out.c_str(), 0640);
  EXPECT_EQ(RunTool("publish " + file + " -o " + out).status, 0);
  EXPECT_EQ(ReadFile(out).compare(0, kCsvHeader.size(), kCsvHeader), 0);
  EXPECT_EQ(ModeOf(out), 0640u);

  ::chmod(out.c_str(), 0444);
  const ToolRun refused = RunTool("publish " + file + " -o " + out, "2>&1");
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.out, "devdef: '" + out + "' is read-only; nothing written\n");
  EXPECT_EQ(ReadFile(out).compare(0, kCsvHeader.size(), kCsvHeader), 0);

  const ToolRun missing = RunTool("publish " + file + " -o " + dir.Path() + "/no/such/table.csv", "2>&1");
  EXPECT_EQ(missing.status, 2);
  EXPECT_NE(missing.out.find("cannot write into the directory of"), std::string::npos) << missing.out;
  EXPECT_EQ(dir.Listing(), "table.csv\n");
}

TEST(CliPublish, NamesAreDecodedWithTheRunsEncoding) {
  const std::string file = std::string(DEVDEF_SOURCE_DIR) + "/tests/golden/publish_names.def";
  const std::string utf8 = RunTool("publish --format csv " + file).out;
  EXPECT_NE(utf8.find("Interface,\xC3\x9C"
                      "ber Chips,\"Dual \"\"Port\"\", \xC3\x84\xE2\x88\x82\xC3\xBC\",11,"),
            std::string::npos)
      << utf8;
  // Latin-1 takes each byte for a character of its own.
  const std::string latin1 = RunTool("publish --format csv --encoding latin1 " + file).out;
  EXPECT_NE(latin1.find("Interface,\xC3\x83\xC2\x9C"
                        "ber Chips,"),
            std::string::npos)
      << latin1;
  const std::string jsonl = RunTool("publish --format jsonl --encoding latin1 " + file).out;
  EXPECT_NE(jsonl.find("\"name\":\"\xC3\x83\xC2\x9C"
                       "ber Chips\""),
            std::string::npos)
      << jsonl;
}

TEST(CliPublish, OutputThatCannotBeWrittenFails) {
  struct stat info;
  if (::stat("/dev/full", &info) != 0 || !S_ISCHR(info.st_mode)) GTEST_SKIP() << "no /dev/full";
  const std::string file = Example("instruments.def");
  for (const char* format : {"csv", "jsonl", "html"}) {
    const ToolRun stdout_full = RunTool("publish --format " + std::string(format) + " " + file, "2>&1 >/dev/full");
    EXPECT_EQ(stdout_full.status, 2) << format;
    EXPECT_EQ(stdout_full.out, "devdef: cannot write standard output: No space left on device\n") << format;
    const ToolRun file_full = RunTool("publish --format " + std::string(format) + " " + file + " -o /dev/full", "2>&1");
    EXPECT_EQ(file_full.status, 2) << format;
    EXPECT_EQ(file_full.out, "devdef: cannot write '/dev/full': No space left on device\n") << format;
  }
}

}  // namespace
