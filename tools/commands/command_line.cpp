#include "tools/commands/command_line.h"

#include <cstdio>
#include <string>

#include "tools/commands/argument_values.h"
#include "tools/text/output_status.h"
#include "tools/text/progress_line.h"

namespace {

const Command* CommandNamed(const std::vector<Command>& commands, const std::string& name) {
  for (const Command& command : commands) {
    if (command.app->get_name() == name) return &command;
  }
  return nullptr;
}

std::vector<std::string> CommandNames(const std::vector<Command>& commands) {
  std::vector<std::string> names;
  for (const Command& command : commands) names.push_back(command.app->get_name());
  return names;
}

// "devdef: 'WORD' is not a devdef command. See 'devdef --help'." and the
// most similar commands.
int NoSuchCommand(const std::vector<Command>& commands, const std::string& word) {
  std::fprintf(stderr, "devdef: '%s' is not a devdef command. See 'devdef --help'.\n%s", word.c_str(),
               SimilarLines(MostSimilar(word, CommandNames(commands)), "command").c_str());
  return kExitFileError;
}

// The long (--name) or short (-n) options of command, as a word names one.
std::vector<std::string> OptionNames(const CLI::App& command, bool longNames) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : longNames ? option->get_lnames() : option->get_snames()) {
      names.push_back((longNames ? "--" : "-") + name);
    }
  }
  return names;
}

// The first word of the command line that the command took for no option
// or argument of its own, said with the most similar option.
void UnexpectedWord(const CLI::App& command, const std::string& word) {
  const std::string where = "devdef " + command.get_name();
  if (word.size() < 2 || word[0] != '-') {
    std::fprintf(stderr, "devdef: unexpected argument '%s'; see '%s --help'\n", word.c_str(), where.c_str());
    return;
  }
  // An option with its value in one word ("--jsno=x") is named by its name.
  const std::string name = word.substr(0, word.find('='));
  const bool longName = name.compare(0, 2, "--") == 0;
  std::vector<std::string> similar;
  if (name.size() > 2) similar = MostSimilar(name, OptionNames(command, longName));
  std::fprintf(stderr, "devdef: unknown option '%s'; see '%s --help'\n%s", name.c_str(), where.c_str(),
               SimilarLines(similar, "option").c_str());
}

// CLI11's words for a value that is missing, made plain.
std::string PlainProblem(const CLI::ParseError& e) {
  const std::string what = e.what();
  const size_t colon = what.find(": 1 required ");
  if (e.get_name() == "ArgumentMismatch" && colon != std::string::npos && what.size() > 8 &&
      what.compare(what.size() - 8, 8, " missing") == 0) {
    return what.substr(0, colon) + " needs a value";
  }
  return what;
}

}  // namespace

int RunCommandLine(CLI::App& app, const std::vector<Command>& commands, std::vector<std::string> words,
                   bool runByGit) {
  const int usageError = runByGit ? kExitSuccess : kExitFileError;
  // The first word names a command, "help" or an option of the tool itself.
  if (words.empty()) {
    std::fprintf(stderr, "devdef: a command is required. See 'devdef --help'.\n");
    return kExitFileError;
  }
  if (words[0] == "help") {
    // "devdef help" (and "devdef help help") and "devdef help COMMAND" are
    // the --help of each.
    if (words.size() > 1 && words[1] == "help") words.erase(words.begin() + 1);
    if (words.size() > 1 && CommandNamed(commands, words[1]) == nullptr) return NoSuchCommand(commands, words[1]);
    words = words.size() > 1 ? std::vector<std::string>{words[1], "--help"} : std::vector<std::string>{"--help"};
  } else if (words[0].size() > 1 && words[0][0] == '-') {
    if (words[0] != "-h" && words[0] != "--help" && words[0] != "--version") {
      std::fprintf(stderr, "devdef: unknown option '%s'; see 'devdef --help'\n%s", words[0].c_str(),
                   SimilarLines(MostSimilar(words[0], {"--help", "--version"}), "option").c_str());
      return kExitFileError;
    }
  } else if (CommandNamed(commands, words[0]) == nullptr) {
    return NoSuchCommand(commands, words[0]);
  }
  // Words no command takes are said by name, with the options most like
  // them, rather than as CLI11's list of them.
  for (const Command& command : commands) command.app->allow_extras();

  int status = kExitFileError;
  const Command* ran = nullptr;
  try {
    // CLI11 takes the words last first.
    std::vector<std::string> reversed(words.rbegin(), words.rend());
    app.parse(reversed);
    for (const Command& command : commands) {
      if (!command.app->parsed()) continue;
      // CLI11 keeps the "--" that ends the options among them.
      for (const std::string& extra : command.app->remaining()) {
        if (extra == "--") continue;
        UnexpectedWord(*command.app, extra);
        return usageError;
      }
      ran = &command;
      status = command.run();
      progress_line::Stop();
    }
  } catch (const CLI::CallForHelp& e) {
    status = app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    status = app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    status = app.exit(e);
  } catch (const CLI::ParseError& e) {
    // One line with the problem and where to read more.
    std::string where = "devdef";
    for (const Command& command : commands) {
      if (command.app->parsed()) where += " " + command.app->get_name();
    }
    std::fprintf(stderr, "devdef: %s; see '%s --help'\n", PlainProblem(e).c_str(), where.c_str());
    return usageError;
  }
  // The language server talks through its own descriptor and ends on its
  // own terms.
  if (ran != nullptr && ran->app->get_name() == "lsp") return status;
  return CloseStandardOutput() ? status : kExitFileError;
}
