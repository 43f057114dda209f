// devdef: the command-line companion of the devdef library.
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/commands/git_diff_arguments.h"
#include "tools/output/message_box_output.h"

int main(int argc, char** argv) {
  CLI::App app{"Reads, queries, checks and writes device definition files of layouts 1, 2 and 7.", "devdef"};
  app.set_version_flag("--version", "devdef " DEVDEF_VERSION);
  app.require_subcommand(1);

  const std::vector<Command> commands = {AddTreeCommand(app),  AddListCommand(app),    AddShowCommand(app),
                                         AddFindCommand(app),  AddCheckCommand(app),   AddWriteCommand(app),
                                         AddConvertCommand(app), AddExportCommand(app),
                                         AddDiffCommand(app), AddLspCommand(app)};
  // git hands devdef diff, as its external diff program, arguments of its
  // own at the end, which are no options even where they start with "-".
  std::vector<std::string> args(argv + 1, argv + argc);
  const bool runByGit = MarkGitDiffArguments(args);
  std::reverse(args.begin(), args.end());  // the order CLI11 takes them in
  try {
    app.parse(args);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    // One line with the problem and where to read more, as git does.
    std::string where = "devdef";
    for (const Command& command : commands) {
      if (command.app->parsed()) where += " " + command.app->get_name();
    }
    std::fprintf(stderr, "devdef: %s; see '%s --help'\n", e.what(), where.c_str());
    // git stops at any other status of its external diff program.
    return runByGit ? kExitSuccess : kExitFileError;
  }

  InstallToolMessageBox();
  for (const Command& command : commands) {
    if (command.app->parsed()) return command.run();
  }
  return kExitFileError;
}
