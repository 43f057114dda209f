// The progress line of a long command: on a terminal only, gone before the
// command's output, never with --quiet. A pseudo-terminal (script(1))
// stands for the user's terminal, and a delay of 0 for a long command.
#include <gtest/gtest.h>

#include <string>

#include "tests/tool_run.h"

namespace {

std::string Example(const char* name) { return std::string(DEVDEF_EXAMPLES_DIR) + "/" + name; }

// What the terminal shows of the tool's standard error while standard
// output goes to a file.
ToolRun OnTerminal(const std::string& arguments, const std::string& out) {
  const std::string command = "DEVDEF_PROGRESS_DELAY=0 " + ToolPath() + " " + arguments + " >" + out;
  return RunShell("script -qec '" + command + "' /dev/null </dev/null");
}

TEST(CliProgress, ShownOnATerminalClearedBeforeOutputAndNowhereElse) {
  if (RunShell("command -v script").status != 0) GTEST_SKIP() << "no script(1)";
  const ScratchDir dir;
  const std::string out = dir.Path() + "/out";
  const std::string file = Example("instruments.def");

  const ToolRun shown = OnTerminal("tree " + file, out);
  EXPECT_NE(shown.out.find("\rdevdef: reading " + file + ": "), std::string::npos) << shown.out;
  // The line ends cleared, and the output is the command's alone.
  EXPECT_EQ(shown.out.substr(shown.out.size() >= 4 ? shown.out.size() - 4 : 0), "\r\033[K");
  EXPECT_EQ(ReadFile(out), RunTool("tree " + file).out);

  EXPECT_EQ(OnTerminal("tree -q " + file, out).out, "");
  // Standard error that is no terminal gets no progress line.
  const ToolRun piped = RunShell("DEVDEF_PROGRESS_DELAY=0 " + ToolPath() + " tree " + file + " 2>&1 >/dev/null");
  EXPECT_EQ(piped.out, "");
}

}  // namespace
