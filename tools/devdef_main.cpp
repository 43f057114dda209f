// devdef: the command-line companion of the devdef library.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/output/message_box_output.h"
#include "tools/text/output_status.h"

int main(int argc, char** argv) {
  CLI::App app{"Reads, queries, checks and writes device definition files of layouts 1, 2 and 7.", "devdef"};
  app.set_version_flag("--version", "devdef " DEVDEF_VERSION);
  app.require_subcommand(1);

  const std::vector<Command> commands = {AddTreeCommand(app),  AddListCommand(app),    AddShowCommand(app),
                                         AddFindCommand(app),  AddCheckCommand(app),   AddWriteCommand(app),
                                         AddConvertCommand(app), AddExportCommand(app),
                                         AddDiffCommand(app), AddLspCommand(app)};
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    const int status = app.exit(e);
    return CloseStandardOutput() ? status : kExitFileError;
  } catch (const CLI::CallForAllHelp& e) {
    const int status = app.exit(e);
    return CloseStandardOutput() ? status : kExitFileError;
  } catch (const CLI::CallForVersion& e) {
    const int status = app.exit(e);
    return CloseStandardOutput() ? status : kExitFileError;
  } catch (const CLI::ParseError& e) {
    // One line with the problem and where to read more, as git does.
    std::string where = "devdef";
    for (const Command& command : commands) {
      if (command.app->parsed()) where += " " + command.app->get_name();
    }
    std::fprintf(stderr, "devdef: %s; see '%s --help'\n", e.what(), where.c_str());
    return kExitFileError;
  }

  InstallToolMessageBox();
  for (const Command& command : commands) {
    if (!command.app->parsed()) continue;
    const int status = command.run();
    // The language server talks through its own descriptor and ends on its
    // own terms; every other command fails when its output was lost.
    if (command.app->get_name() == "lsp") return status;
    return CloseStandardOutput() ? status : kExitFileError;
  }
  return kExitFileError;
}
