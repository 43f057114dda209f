// What every command of the tool shares: the file and read options on its
// command line, the read of the file, JSON printing, and the form in which
// main sees each command.
#ifndef DEVDEF_TOOLS_COMMANDS_COMMAND_H_
#define DEVDEF_TOOLS_COMMANDS_COMMAND_H_

#include <CLI/CLI.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"

// Exit statuses of every command: 0 success, 1 nothing found or findings at
// the level asked for, 2 usage or file errors.
constexpr int kExitSuccess = 0;
constexpr int kExitNotFound = 1;
constexpr int kExitFileError = 2;

// The options every command that reads a file takes.
struct CommonArguments {
  std::string file;
  AnalysisOptions options;
  bool json = false;
  bool quiet = false;  // no warnings or notes on standard error
  std::string encoding;  // --encoding; empty: the file's bytes decide
};

// Adds FILE (required), --layout, --generation, --check-ids, --quiet and
// --encoding to command, and --json when withJson; all of them write into
// args, which must outlive the parse. Gives the FILE option.
CLI::Option* AddCommonOptions(CLI::App* command, CommonArguments& args, bool withJson);

// Adds --id to command: a definition id, decimal, signed or unsigned
// 32-bit (tools/commands/argument_values.h), kept in id.
CLI::Option* AddIdOption(CLI::App* command, std::uint32_t& id);

// A check of an option's value: one of allowed (ASCII case ignored when
// ignoreCase), or a usage error that says which values there are.
CLI::Validator OneOf(const std::vector<std::string>& allowed, bool ignoreCase = false);

// Reads args.file ("-": standard input) with args.options and sets the
// run's encoding (tools/text/text_encoding.h): --encoding, else the one the
// file's bytes call for. When it cannot be read or is no definition file:
// one line on standard error and null.
// With --check-ids and reportDuplicates, each definition that repeats an id
// is reported on standard error, as the reader's check finds it.
std::unique_ptr<Analysis> ReadForCommand(const CommonArguments& args, bool reportDuplicates = true);

// For a file whose read has errors (what check reports as errors), says on
// standard error how many and how to see them, unless args.quiet:
// "devdef: 3 errors in FILE; see 'devdef check FILE'". For the commands
// that show the catalogue, which holds what the reader made of such a file.
void SayReadErrors(const CommonArguments& args, const Analysis& analysis);

// Prints document on standard output, indented; bytes that are not UTF-8
// (such as those of a file name) are printed as U+FFFD.
void PrintJson(const nlohmann::json& document);

// A command as main sees it: the subcommand, which knows whether the command
// line named it, and the run that gives the process's exit status.
struct Command {
  CLI::App* app = nullptr;
  std::function<int()> run;
};

// Each Add...Command adds its subcommand with its options to app; the
// command's arguments live as long as the returned run.
Command AddTreeCommand(CLI::App& app);
Command AddListCommand(CLI::App& app);
Command AddShowCommand(CLI::App& app);
Command AddFindCommand(CLI::App& app);
Command AddCheckCommand(CLI::App& app);
Command AddWriteCommand(CLI::App& app);
Command AddConvertCommand(CLI::App& app);
Command AddExportCommand(CLI::App& app);
Command AddPublishCommand(CLI::App& app);
Command AddDiffCommand(CLI::App& app);
Command AddEditCommand(CLI::App& app);
Command AddLspCommand(CLI::App& app);

#endif  // DEVDEF_TOOLS_COMMANDS_COMMAND_H_
