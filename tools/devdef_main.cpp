// devdef: the command-line companion of the devdef library.
#include <CLI/CLI.hpp>

#include <vector>

#include "tools/commands/command.h"
#include "tools/message_box_output.h"

int main(int argc, char** argv) {
  CLI::App app{"Reads, queries, checks and writes device definition files of layouts 1, 2 and 7.", "devdef"};
  app.set_version_flag("--version", "devdef " DEVDEF_VERSION);
  app.require_subcommand(1);
  app.failure_message(CLI::FailureMessage::help);

  const std::vector<Command> commands = {AddTreeCommand(app),  AddListCommand(app),    AddShowCommand(app),
                                         AddFindCommand(app),  AddCheckCommand(app),   AddWriteCommand(app),
                                         AddConvertCommand(app), AddExportCommand(app)};
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    const int status = app.exit(e);
    return status == 0 ? kExitSuccess : kExitFileError;
  }

  InstallToolMessageBox();
  for (const Command& command : commands) {
    if (command.app->parsed()) return command.run();
  }
  return kExitFileError;
}
