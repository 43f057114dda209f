// devdef: the command-line companion of the devdef library.
#include <CLI/CLI.hpp>

#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/commands/command_line.h"
#include "tools/commands/git_diff_arguments.h"
#include "tools/output/message_box_output.h"

int main(int argc, char** argv) {
  CLI::App app{"Reads, queries, checks and writes device definition files of layouts 1, 2 and 7.", "devdef"};
  app.set_version_flag("--version", "devdef " DEVDEF_VERSION);
  app.require_subcommand(1);
  app.footer("'devdef help COMMAND' or 'devdef COMMAND --help' lists the options of a command.");

  const std::vector<Command> commands = {AddTreeCommand(app),   AddListCommand(app),   AddShowCommand(app),
                                         AddFindCommand(app),  AddCheckCommand(app),   AddWriteCommand(app),
                                         AddConvertCommand(app), AddExportCommand(app), AddPublishCommand(app),
                                         AddDiffCommand(app), AddEditCommand(app), AddLspCommand(app)};
  // git hands devdef diff, as its external diff program, arguments of its
  // own at the end, which are no options even where they start with "-".
  std::vector<std::string> words(argv + 1, argv + argc);
  const bool runByGit = MarkGitDiffArguments(words);
  InstallToolMessageBox();
  return RunCommandLine(app, commands, std::move(words), runByGit);
}
