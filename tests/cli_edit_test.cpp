// devdef edit as a user meets it: the edited file on standard output, -o,
// -i that keeps the file's mode and refuses a read-only one, refused edits
// and unknown names with their exit statuses and places, a script from
// standard input applied all or nothing, --dry-run and --json.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

#include "tests/tool_run.h"

namespace {

std::string Example(const std::string& name) { return std::string(DEVDEF_EXAMPLES_DIR) + "/" + name; }

// A copy of an example in dir, with mode.
std::string CopyOf(const ScratchDir& dir, const std::string& name, mode_t mode) {
  const std::string path = dir.Path() + "/" + name;
  std::ofstream(path, std::ios::binary) << ReadFile(Example(name));
  ::chmod(path.c_str(), mode);
  return path;
}

TEST(CliEdit, TheEditedFileGoesToStandardOutputToOutOrBackInPlace) {
  ScratchDir dir;
  const std::string file = CopyOf(dir, "instruments.def", 0640);
  const std::string before = ReadFile(file);
  std::string expected = before;
  const std::string old = "KVR5DEF: 2021 1 1 0 28";
  expected.replace(expected.find(old), old.size(), "KVR5DEF: 2021 1 0 0 28");

  ToolRun run = RunTool("edit " + file + " set 2021 module=BASE");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, expected);
  EXPECT_EQ(ReadFile(file), before);

  EXPECT_EQ(RunTool("edit " + file + " set 2021 module=BASE -o " + dir.Path() + "/out.def").status, 0);
  EXPECT_EQ(ReadFile(dir.Path() + "/out.def"), expected);

  EXPECT_EQ(RunTool("edit -i " + file + " set 2021 module=BASE").status, 0);
  EXPECT_EQ(ReadFile(file), expected);
  EXPECT_EQ(ModeOf(file), 0640u);
  EXPECT_EQ(dir.Listing(), "instruments.def\nout.def\n");
}

TEST(CliEdit, NothingIsWrittenWhenAnEditIsRefusedOrANameUnknown) {
  ScratchDir dir;
  const std::string file = CopyOf(dir, "instruments.def", 0644);
  const std::string before = ReadFile(file);
  struct Case {
    std::string arguments;
    int status;
    std::string says;
  };
  const Case cases[] = {
      {"edit -i " + file + " set 2021 'text=a;b'", 1,
       file + ":58:25: error: the edited file would read otherwise than it looks: the text ends at the \";\""},
      {"edit -i " + file + " remove-entry module FAST", 1, file + ":17:17: note: here"},
      {"edit -i " + file + " remove 'AT89*'", 2, "  Microcontroller / Atmel / AT89S8252 (line 21)"},
      {"edit -i " + file + " set 2021 modul=BASE", 2, "no field 'modul'"},
      {"edit -i " + file + " frobnicate X", 2, "'frobnicate' is no operation"},
      {"edit " + file + " set 2021 module=BASE --json", 2, "--json takes standard output"},
      {"edit -i - set 2021 module=BASE", 2, "-i rewrites FILE"},
      {"edit - --script -", 2, "cannot both read standard input"},
  };
  for (const Case& c : cases) {
    const ToolRun run = RunTool(c.arguments, "2>&1");
    EXPECT_EQ(run.status, c.status) << c.arguments << "\n" << run.out;
    EXPECT_NE(run.out.find(c.says), std::string::npos) << c.arguments << "\n" << run.out;
    EXPECT_EQ(ReadFile(file), before) << c.arguments;
  }
  ::chmod(file.c_str(), 0444);
  const ToolRun readOnly = RunTool("edit -i " + file + " set 2021 module=BASE", "2>&1");
  EXPECT_EQ(readOnly.status, 2);
  EXPECT_EQ(readOnly.out, "devdef: '" + file + "' is read-only; nothing written\n");
  EXPECT_EQ(ReadFile(file), before);
}

TEST(CliEdit, AScriptIsAppliedAllOrNothing) {
  ScratchDir dir;
  const std::string file = CopyOf(dir, "adapters_v7.def", 0644);
  const std::string before = ReadFile(file);
  const ToolRun refused = RunShell("printf '# two edits\\nrename AT89C51 AT89C52\\nset 3201 \"text=a;b\"\\n' | " +
                                   ToolPath() + " edit -i " + file + " --script - 2>&1");
  EXPECT_EQ(refused.status, 1) << refused.out;
  EXPECT_EQ(ReadFile(file), before);
  const ToolRun bad = RunShell("printf 'rename AT89C51\\n' | " + ToolPath() + " edit -i " + file + " --script - 2>&1");
  EXPECT_EQ(bad.status, 2);
  EXPECT_EQ(bad.out, "<stdin>:1: error: rename takes DEVICE NEW\n");
  const ToolRun applied = RunShell("printf 'rename AT89C51 AT89C52\\nadd-entry housing SOIC8 --at 0\\n' | " +
                                   ToolPath() + " edit -i " + file + " --script - 2>&1");
  EXPECT_EQ(applied.status, 0) << applied.out;
  const std::string after = ReadFile(file);
  EXPECT_NE(after.find("\r\nAT89C52\r\n"), std::string::npos);
  EXPECT_NE(after.find("  SOIC8, DIP8, DIP28"), std::string::npos);
  EXPECT_EQ(RunTool("diff " + Example("adapters_v7.def") + " " + file).status, 1);
}

TEST(CliEdit, DryRunShowsTheBytesAndTheMeaningAndWritesNothing) {
  ScratchDir dir;
  const std::string file = CopyOf(dir, "instruments.def", 0644);
  const std::string before = ReadFile(file);
  const ToolRun text = RunTool("edit --dry-run --no-color " + file + " set 2021 module=BASE");
  EXPECT_EQ(text.status, 0);
  EXPECT_NE(text.out.find("-KVR5DEF: 2021 1 1 0 28 : 64 K x 8\r\n+KVR5DEF: 2021 1 0 0 28 : 64 K x 8\r\n"),
            std::string::npos);
  EXPECT_NE(text.out.find("\n      module: FAST -> BASE\n"), std::string::npos) << text.out;
  const ToolRun json = RunTool("edit --dry-run --json " + file + " set 2021 module=BASE");
  EXPECT_EQ(json.status, 0);
  EXPECT_NE(json.out.find("\"module\": [\n          \"FAST\",\n          \"BASE\"\n        ]"), std::string::npos)
      << json.out;
  EXPECT_EQ(ReadFile(file), before);
}

}  // namespace
