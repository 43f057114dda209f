#include "tools/commands/command.h"

#include <sys/stat.h>

#include <cstdio>

#include "tools/commands/argument_values.h"
#include "tools/commands/lookup_report.h"
#include "tools/diagnostics/finding_text.h"
#include "tools/text/control_escape.h"
#include "tools/text/output_status.h"
#include "tools/text/progress_line.h"
#include "tools/text/text_encoding.h"

CLI::Validator OneOf(const std::vector<std::string>& allowed, bool ignoreCase) {
  std::string names;
  for (const std::string& name : allowed) names += (names.empty() ? "" : ",") + name;
  return CLI::Validator(
      [allowed, ignoreCase](std::string& value) { return OneOfProblem(value, allowed, ignoreCase); },
      "{" + names + "}");
}

CLI::Option* AddCommonOptions(CLI::App* command, CommonArguments& args, bool withJson) {
  CLI::Option* file =
      command->add_option("FILE", args.file, "definition file; - reads standard input")->required();
  command->add_option("--layout", args.options.layout, "read as layout 1, 2 or 7 (default: the file's version line)")
      ->check(OneOf({"1", "2", "7"}));
  command->add_option("--generation", args.options.generation, "the generation in force: 3, 4 or 5")
      ->check(OneOf({"3", "4", "5"}))
      ->capture_default_str();
  command->add_flag("--check-ids", args.options.checkIds,
                    "check definition ids while reading, and report each definition that repeats one");
  command->add_flag("-q,--quiet", args.quiet,
                    "print no warnings or notes on standard error (nor the hint that the file has errors), only "
                    "errors");
  command->add_option("--encoding", args.encoding, "how names and texts of the file are shown and matched: utf-8, "
                                                  "cp1252 or latin1 (default: utf-8 when the file is UTF-8, "
                                                  "else cp1252)")
      ->check(OneOf({"utf-8", "cp1252", "latin1"}, true));
  if (withJson) command->add_flag("--json", args.json, "print one JSON document instead of text");
  return file;
}

CLI::Option* AddIdOption(CLI::App* command, std::uint32_t& id) {
  return command
      ->add_option_function<std::string>(
          "--id",
          [&id](const std::string& text) {
            std::string problem;
            ParseDefinitionId(text, &id, &problem);
          },
          "definition id, decimal, signed or unsigned 32-bit (-1 is 4294967295)")
      ->type_name("ID")
      ->check(CLI::Validator(
          [](std::string& text) {
            std::uint32_t id = 0;
            std::string problem;
            return ParseDefinitionId(text, &id, &problem) ? std::string() : problem;
          },
          ""));
}

std::unique_ptr<Analysis> ReadForCommand(const CommonArguments& args, bool reportDuplicates) {
  std::unique_ptr<Analysis> analysis;
  // A read that takes long shows where it stands; the line is gone before
  // the command says or prints anything.
  progress_line::Enable(!args.quiet);
  AnalysisOptions options = args.options;
  options.progress = &progress_line::Position();
  if (args.file == "-") {
    progress_line::Start("reading standard input", 0);
    std::string bytes;
    char block[65536];
    size_t got = 0;
    while ((got = std::fread(block, 1, sizeof block, stdin)) > 0) bytes.append(block, got);
    progress_line::Start("reading standard input", bytes.size());
    analysis = Analysis::ReadText("<stdin>", std::move(bytes), options);
  } else {
    struct stat info;
    const bool sized = ::stat(args.file.c_str(), &info) == 0 && S_ISREG(info.st_mode);
    progress_line::Start("reading " + args.file, sized ? static_cast<std::uint64_t>(info.st_size) : 0);
    analysis = Analysis::ReadFile(args.file, options);
  }
  progress_line::Stop();
  if (!analysis->Usable()) {
    std::fprintf(stderr, "devdef: %s\n", analysis->Error().c_str());
    return nullptr;
  }
  TextEncoding encoding = DetectTextEncoding(analysis->Bytes());
  if (!args.encoding.empty()) ParseTextEncoding(args.encoding, &encoding);
  SetShownEncoding(encoding);
  // The reader's duplicate-id check, said once for each definition that
  // repeats an id.
  if (reportDuplicates && args.options.checkIds && !args.quiet) {
    for (const Finding& finding : analysis->FindingsOf().List()) {
      if (finding.says.form != MessageForm::kIdAlreadyUsed) continue;
      const TextPoint at = ShownPoint(*analysis, finding.span.begin, ColumnUnit::kUtf8Bytes);
      std::fprintf(stderr, "%s:%ld:%ld: warning: %s [duplicate-id]\n", analysis->Path().c_str(), at.line, at.column,
                   EscapeControls(ShownText(analysis->MessageOf(finding))).c_str());
    }
  }
  return analysis;
}

void SayReadErrors(const CommonArguments& args, const Analysis& analysis) {
  // Behind the output it is about; output that was lost is said instead.
  if (args.quiet || !OutputReached(stdout, "standard output")) return;
  size_t errors = 0;
  for (const Finding& finding : analysis.FindingsOf().List()) errors += finding.severity == Severity::kError ? 1 : 0;
  if (errors == 0) return;
  // The command that lists them reads the file as this one did.
  std::string check = "devdef check";
  if (args.options.layout != 0) check += " --layout " + std::to_string(args.options.layout);
  check += " " + ShellWord(args.file);
  std::fprintf(stderr, "devdef: %zu error%s in %s; see '%s'\n", errors, errors == 1 ? "" : "s",
               analysis.Path().c_str(), check.c_str());
}

void PrintJson(const nlohmann::json& document) {
  std::printf("%s\n", document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}
