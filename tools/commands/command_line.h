// The tool's command line from its words to the exit status: which command
// runs, "devdef help [COMMAND]", and what is wrong with a command line that
// names nothing the tool has, said as git says it: one line, followed by
// the most similar command or option where there is one. A command's
// output that cannot be written is a failure of the command.
#ifndef DEVDEF_TOOLS_COMMANDS_COMMAND_LINE_H_
#define DEVDEF_TOOLS_COMMANDS_COMMAND_LINE_H_

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

#include "tools/commands/command.h"

// Parses words (the command line without the program's name) against app,
// whose subcommands are commands, runs the command they name and gives the
// process's exit status: the command's, or kExitFileError for a usage error
// or output that did not reach standard output (the language server, which
// prints nothing through it, aside). When git runs the tool as its external
// diff program (runByGit), a usage error ends with 0 all the same: git
// stops at any other status.
int RunCommandLine(CLI::App& app, const std::vector<Command>& commands, std::vector<std::string> words,
                   bool runByGit);

#endif  // DEVDEF_TOOLS_COMMANDS_COMMAND_LINE_H_
