// What the tool does when its output cannot be written: every command
// fails with exit status 2 and one line on standard error, instead of
// ending as if what it printed had been read.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "tests/tool_run.h"

namespace {

std::string Example(const char* name) { return std::string(DEVDEF_EXAMPLES_DIR) + "/" + name; }

bool HaveDevFull() {
  struct stat info;
  return ::stat("/dev/full", &info) == 0 && S_ISCHR(info.st_mode);
}

TEST(CliOutput, EveryCommandFailsWhenStandardOutputIsFull) {
  if (!HaveDevFull()) GTEST_SKIP() << "no /dev/full";
  const std::string damaged = Example("damaged.def");
  const std::string good = Example("instruments.def");
  // Each would succeed or report findings (exit status 0 or 1) with
  // somewhere to write to.
  const std::string commands[] = {
      "check " + damaged,
      "check --format json " + damaged,
      "check --format sarif " + damaged,
      "check --list-kinds",
      "tree " + damaged,
      "tree --json " + good,
      "list " + good,
      "list --json " + good + " 'at*'",
      "show " + good + " AT89C51",
      "show --json " + good + " --id 1003",
      "find " + good + " 'pic*'",
      "find --json " + good + " --id 1003",
      "write --force -q " + good + " -o -",
      "convert " + Example("programmers_v2.def") + " -o -",
      "publish --format csv " + good,
      "publish --format jsonl " + damaged,
      "diff " + good + " " + damaged,
      "diff --json " + good + " " + damaged,
      "diff --stat " + good + " " + damaged,
      "edit " + good + " set 2021 module=BASE",
      "edit --dry-run " + good + " set 2021 module=BASE",
      "help",
      "tree --help",
      "--version",
  };
  for (const std::string& command : commands) {
    const ToolRun run = RunTool(command, "2>&1 >/dev/full");
    EXPECT_EQ(run.status, 2) << command;
    EXPECT_EQ(run.out, "devdef: cannot write standard output: No space left on device\n") << command;
  }
}

// A closed standard output fails the commands that print to it, and none
// that print nothing there.
TEST(CliOutput, ClosedStandardOutput) {
  const ToolRun tree = RunTool("tree " + Example("instruments.def"), "2>&1 >&-");
  EXPECT_EQ(tree.status, 2);
  EXPECT_EQ(tree.out, "devdef: cannot write standard output: Bad file descriptor\n");
  ScratchDir dir;
  const std::string out = dir.Path() + "/out.def";
  const ToolRun write = RunTool("write --force -q " + Example("instruments.def") + " -o " + out, "2>&1 >&-");
  EXPECT_EQ(write.status, 0);
  EXPECT_EQ(write.out, "");
  EXPECT_EQ(dir.Listing(), "out.def\n");
}

}  // namespace
