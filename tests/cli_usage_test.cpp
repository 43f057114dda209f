// The tool's command line as a user meets it: help, commands and options
// that do not exist, and option values that do not fit. Each usage error is
// one line on standard error and exit status 2; a word that names nothing
// is followed by the most similar names, as git does.
#include <gtest/gtest.h>

#include <string>

#include "tests/tool_run.h"

namespace {

const std::string kFile = std::string(DEVDEF_EXAMPLES_DIR) + "/instruments.def";

// Standard error alone, standard output dropped.
ToolRun Stderr(const std::string& arguments) { return RunTool(arguments, "2>&1 >/dev/null"); }

TEST(CliUsage, MistakesAreSaidInOneLineWithTheMostSimilarName) {
  const struct {
    std::string arguments;
    std::string said;  // all of standard error
  } cases[] = {
      {"", "devdef: a command is required. See 'devdef --help'.\n"},
      {"bogus", "devdef: 'bogus' is not a devdef command. See 'devdef --help'.\n"},
      {"help bogus", "devdef: 'bogus' is not a devdef command. See 'devdef --help'.\n"},
      {"chek " + kFile,
       "devdef: 'chek' is not a devdef command. See 'devdef --help'.\n\nThe most similar command is\n\tcheck\n"},
      {"shwo", "devdef: 'shwo' is not a devdef command. See 'devdef --help'.\n\nThe most similar command is\n\tshow\n"},
      {"c", "devdef: 'c' is not a devdef command. See 'devdef --help'.\n\nThe most similar commands are\n\tcheck\n"
            "\tconvert\n"},
      {"--verison", "devdef: unknown option '--verison'; see 'devdef --help'\n\nThe most similar option is\n"
                    "\t--version\n"},
      {"tree --jsno " + kFile,
       "devdef: unknown option '--jsno'; see 'devdef tree --help'\n\nThe most similar option is\n\t--json\n"},
      {"tree --jsno=1 " + kFile,
       "devdef: unknown option '--jsno'; see 'devdef tree --help'\n\nThe most similar option is\n\t--json\n"},
      {"list --id 3 " + kFile, "devdef: unknown option '--id'; see 'devdef list --help'\n"},
      {"tree " + kFile + " extra", "devdef: unexpected argument 'extra'; see 'devdef tree --help'\n"},
      {"tree -- " + kFile + " extra", "devdef: unexpected argument 'extra'; see 'devdef tree --help'\n"},
      {"show " + kFile + " --id abc", "devdef: --id: 'abc' is not a number; see 'devdef show --help'\n"},
      {"find " + kFile + " --id 0x10", "devdef: --id: '0x10' is not a number; see 'devdef find --help'\n"},
      {"show " + kFile + " --id ''", "devdef: --id: '' is not a number; see 'devdef show --help'\n"},
      {"show " + kFile + " --id 4294967296",
       "devdef: --id: '4294967296' is out of range: an id is a 32-bit number from -2147483648 to 4294967295; see "
       "'devdef show --help'\n"},
      {"show " + kFile + " --id -2147483649",
       "devdef: --id: '-2147483649' is out of range: an id is a 32-bit number from -2147483648 to 4294967295; see "
       "'devdef show --help'\n"},
      {"show " + kFile + " --id", "devdef: --id needs a value; see 'devdef show --help'\n"},
      {"tree --layout 5 " + kFile, "devdef: --layout: '5' is not one of 1, 2, 7; see 'devdef tree --help'\n"},
      {"lsp --generation 6", "devdef: --generation: '6' is not one of 3, 4, 5; see 'devdef lsp --help'\n"},
      {"list --encoding koi8-r " + kFile,
       "devdef: --encoding: 'koi8-r' is not one of utf-8, cp1252, latin1; see 'devdef list --help'\n"},
      {"check --format srif " + kFile,
       "devdef: --format: 'srif' is not one of text, json, sarif; see 'devdef check --help'\n"},
  };
  for (const auto& c : cases) {
    const ToolRun run = Stderr(c.arguments);
    EXPECT_EQ(run.status, 2) << c.arguments;
    EXPECT_EQ(run.out, c.said) << c.arguments;
  }
}

// An id is decimal, signed or unsigned 32-bit: the message of a miss shows
// the number the argument became.
TEST(CliUsage, IdValues) {
  const struct {
    const char* argument;
    const char* id;
  } cases[] = {
      {"-1", "4294967295"}, {"-2147483648", "2147483648"}, {"4294967295", "4294967295"},
      {"+77", "77"},        {"0099", "99"},                {"-0", "0"},
  };
  for (const auto& c : cases) {
    const ToolRun run = Stderr("show " + kFile + " --id " + c.argument);
    EXPECT_EQ(run.status, 1) << c.argument;
    EXPECT_EQ(run.out, std::string("devdef: no definition has the id ") + c.id + "\n") << c.argument;
  }
  EXPECT_EQ(RunTool("find " + kFile + " --id 1003").status, 0);
}

// "devdef help" is --help, "devdef help COMMAND" that command's --help.
TEST(CliUsage, HelpCommand) {
  const ToolRun help = RunTool("help");
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.out, RunTool("--help").out);
  EXPECT_EQ(RunTool("help help").out, help.out);
  EXPECT_NE(help.out.find("'devdef help COMMAND'"), std::string::npos);
  // "--" ends the options: a file may then begin with "-".
  const ToolRun dashed = RunTool("list -- - < " + kFile);
  EXPECT_EQ(dashed.status, 0);
  EXPECT_NE(dashed.out.find("AT89C51"), std::string::npos);
  for (const char* command : {"tree", "check", "write", "diff", "lsp"}) {
    const ToolRun one = RunTool(std::string("help ") + command);
    EXPECT_EQ(one.status, 0) << command;
    EXPECT_EQ(one.out, RunTool(std::string(command) + " --help").out) << command;
    EXPECT_NE(one.out.find(std::string("Usage: devdef ") + command), std::string::npos) << one.out;
  }
}

}  // namespace
