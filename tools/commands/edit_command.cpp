// devdef edit: changes a definition file in place, byte for byte: one
// operation from the command line, or a script of them applied all or
// nothing. The edit engine (tools/edit/edit_engine.h) verifies every edit
// by reading it back before anything is written; the edited file goes to
// standard output (as sed prints it), to -o OUT, or back into FILE (-i).
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/diagnostics/finding_text.h"
#include "tools/diff/diff_output.h"
#include "tools/diff/unified_diff.h"
#include "tools/edit/edit_engine.h"
#include "tools/edit/file_output.h"
#include "tools/output/diff_json.h"
#include "tools/output/output_buffer.h"
#include "tools/text/control_escape.h"
#include "tools/text/terminal_style.h"
#include "tools/text/text_encoding.h"

namespace {

struct EditArguments : CommonArguments {
  std::vector<std::string> words;  // the operation and its words
  std::string output;
  bool inPlace = false;
  bool dryRun = false;
  bool noColor = false;
  std::string script;
  std::string at, replaceWith, from, step;
};

// The words of a script line, split at blanks and tabs; '...' and "..."
// quote, and a backslash takes the next character as it is. False for a
// quote that is not closed.
bool SplitWords(const std::string& line, std::vector<std::string>* words) {
  std::string word;
  bool inWord = false;
  char quote = '\0';
  for (size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quote != '\0') {
      if (c == quote) {
        quote = '\0';
      } else if (c == '\\' && quote == '"' && i + 1 < line.size()) {
        word += line[++i];
      } else {
        word += c;
      }
    } else if (c == ' ' || c == '\t' || c == '\r') {
      if (inWord) words->push_back(word);
      word.clear();
      inWord = false;
    } else if (c == '\'' || c == '"') {
      quote = c;
      inWord = true;
    } else if (c == '\\' && i + 1 < line.size()) {
      word += line[++i];
      inWord = true;
    } else {
      word += c;
      inWord = true;
    }
  }
  if (inWord) words->push_back(word);
  return quote == '\0';
}

// The operations of a script ("-": standard input): one a line, "#" opens a
// comment line. False, with a message, on a line that makes none.
bool ReadScript(const std::string& path, std::vector<EditOperation>* operations) {
  std::ifstream file;
  std::istream* in = &std::cin;
  if (path != "-") {
    file.open(path, std::ios::binary);
    if (!file) {
      std::fprintf(stderr, "devdef: cannot read the script '%s'\n", path.c_str());
      return false;
    }
    in = &file;
  }
  std::string line;
  long number = 0;
  while (std::getline(*in, line)) {
    ++number;
    const size_t first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos || line[first] == '#') continue;
    std::vector<std::string> words;
    std::string error;
    EditOperation op;
    if (!SplitWords(line, &words)) {
      error = "a quote is not closed";
    } else if (ParseEditOperation(words, &op, &error)) {
      operations->push_back(op);
      continue;
    }
    std::fprintf(stderr, "%s:%ld: error: %s\n", path == "-" ? "<stdin>" : path.c_str(), number, error.c_str());
    return false;
  }
  return true;
}

// FILE:LINE:COL of an offset of the file.
std::string PlaceText(const EditArguments& args, const Analysis& analysis, std::uint32_t offset) {
  const TextPoint at = ShownPoint(analysis, offset, ColumnUnit::kUtf8Bytes);
  return args.file + ":" + std::to_string(at.line) + ":" + std::to_string(at.column);
}

int ReportFailure(const EditArguments& args, const Analysis& analysis, const EditResult& result) {
  const std::string reason = EscapeControls(result.reason);
  if (result.status == EditResult::Status::kUnknown) {
    std::fprintf(stderr, "devdef: %s%s\n", reason.c_str(), result.candidates.empty() ? "" : ":");
    for (const std::string& candidate : result.candidates) {
      std::fprintf(stderr, "  %s\n", EscapeControls(candidate).c_str());
    }
    return kExitFileError;
  }
  std::fprintf(stderr, "%s: error: %s; nothing written\n", PlaceText(args, analysis, result.place.begin).c_str(),
               reason.c_str());
  for (const ByteSpan& related : result.related) {
    std::fprintf(stderr, "%s: note: here\n", PlaceText(args, analysis, related.begin).c_str());
  }
  return kExitNotFound;
}

int RunEdit(EditArguments& args) {
  if (!args.script.empty() && !args.words.empty()) {
    std::fprintf(stderr, "devdef: give an OPERATION or --script, not both; see 'devdef edit --help'\n");
    return kExitFileError;
  }
  if (args.script.empty() && args.words.empty()) {
    std::fprintf(stderr, "devdef: OPERATION is required; see 'devdef edit --help'\n");
    return kExitFileError;
  }
  if (args.inPlace && (!args.output.empty() || args.file == "-")) {
    std::fprintf(stderr, "devdef: -i rewrites FILE, which cannot be '-' or go with -o; see 'devdef edit --help'\n");
    return kExitFileError;
  }
  if (args.file == "-" && args.script == "-") {
    std::fprintf(stderr, "devdef: FILE and --script cannot both read standard input; see 'devdef edit --help'\n");
    return kExitFileError;
  }
  if (args.json && !args.dryRun && !args.inPlace && args.output.empty()) {
    std::fprintf(stderr,
                 "devdef: --json takes standard output, which would carry the edited file: give -o, -i or "
                 "--dry-run; see 'devdef edit --help'\n");
    return kExitFileError;
  }
  std::vector<EditOperation> operations;
  if (args.script.empty()) {
    // The operation's options, which the command line took as its own.
    const std::pair<const char*, const std::string*> options[] = {
        {"--at", &args.at}, {"--replace-with", &args.replaceWith}, {"--from", &args.from}, {"--step", &args.step}};
    for (const auto& option : options) {
      if (option.second->empty()) continue;
      args.words.push_back(option.first);
      args.words.push_back(*option.second);
    }
    EditOperation op;
    std::string error;
    if (!ParseEditOperation(args.words, &op, &error)) {
      std::fprintf(stderr, "devdef: %s; see 'devdef edit --help'\n", error.c_str());
      return kExitFileError;
    }
    operations.push_back(op);
  } else if (!ReadScript(args.script, &operations)) {
    return kExitFileError;
  }
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  const EditResult result = ApplyEdits(*analysis, operations, args.dryRun || args.json);
  if (result.status != EditResult::Status::kApplied) return ReportFailure(args, *analysis, result);

  const ShowBytes show = [](const std::string& bytes) { return EscapeControls(ShownText(bytes)); };
  if (args.json) {
    const std::string target = args.dryRun ? args.file : args.inPlace ? args.file : args.output;
    OutputBuffer out(stdout);
    JsonWriter writer(out);
    WriteDiffJson(writer, args.file, analysis->Layout(), target, analysis->Layout(), result.changes);
  } else if (args.dryRun) {
    // The edit leaves the analysis as it was: its bytes are the old file's.
    std::fputs(UnifiedDiff(analysis->Bytes(), result.bytes, "a/" + args.file, "b/" + args.file).c_str(), stdout);
    if (!result.changes.empty()) {
      std::fputs("\n", stdout);
      PrintDiffText(stdout, result.changes, StylesWanted(stdout, args.noColor), show);
    }
  }
  if (args.dryRun) return kExitSuccess;
  const std::string target = args.inPlace ? args.file : args.output.empty() ? "-" : args.output;
  return WriteFileBytes(result.bytes, target) == WriteOutcome::kWritten ? kExitSuccess : kExitFileError;
}

}  // namespace

Command AddEditCommand(CLI::App& app) {
  auto args = std::make_shared<EditArguments>();
  CLI::App* command = app.add_subcommand(
      "edit",
      "change a file in place, byte for byte: set a field, rename, move, add or remove a device, a definition or a "
      "list entry, renumber ids; each edit is read back and verified before anything is written (exit status 1 "
      "when it is refused, 2 for a name that names nothing or several things)");
  AddCommonOptions(command, *args, true);
  command->add_option("OPERATION", args->words,
                      "the operation and its words: set ID FIELD=VALUE..., rename DEVICE NEW, rename-kind KIND NEW, "
                      "rename-manufacturer KIND MANUFACTURER NEW, move DEVICE KIND MANUFACTURER, add-device KIND "
                      "MANUFACTURER NAME, add-definition DEVICE [FIELD=VALUE...], remove DEVICE, remove-definition "
                      "ID, add-entry LIST NAME, rename-entry LIST OLD NEW, remove-entry LIST NAME, renumber-ids "
                      "[DEVICE | KIND MANUFACTURER]");
  command->add_option("-o,--output", args->output, "write the edited file here (- is standard output, the default)");
  command->add_flag("-i,--in-place", args->inPlace, "rewrite FILE (through a temporary file, keeping its mode)");
  command->add_flag("--dry-run", args->dryRun,
                    "write nothing: print the diff of the bytes and what devdef diff says of the change");
  command->add_flag("--no-color", args->noColor,
                    "--dry-run: no colour, also on a terminal (NO_COLOR in the environment too)");
  command->add_option("--script", args->script,
                      "apply the operations of this file (one a line, '#' comments; - reads standard input), all "
                      "or nothing");
  command->add_option("--at", args->at, "add-entry: the number the new entry gets (default: the end)");
  command->add_option("--replace-with", args->replaceWith,
                      "remove-entry: the entry that takes over the references to the one removed");
  command->add_option("--from", args->from, "renumber-ids: the first new id");
  command->add_option("--step", args->step, "renumber-ids: the distance of the new ids (default 1)");
  return Command{command, [args] { return RunEdit(*args); }};
}
