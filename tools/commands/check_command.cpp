// devdef check: the findings of the analysis as compiler diagnostics, JSON
// or SARIF, with an exit status for CI.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/commands/argument_values.h"
#include "tools/commands/command.h"
#include "tools/diagnostics/finding_filter.h"
#include "tools/diagnostics/gcc_output.h"
#include "tools/diagnostics/severity_summary.h"
#include "tools/output/findings_json.h"
#include "tools/output/json_document.h"
#include "tools/output/sarif_output.h"
#include "tools/text/output_status.h"

namespace {

struct CheckArguments : CommonArguments {
  std::string format = "text";
  std::string failOn = "warning";
  std::vector<std::string> select;
  std::vector<std::string> ignore;
  bool listKinds = false;
  long maxFindings = -1;  // -1: the form's default
};

// How many findings the text form shows when --max-findings does not say.
constexpr long kTextFindingLimit = 100;

// Every kind with its severity and help, one line each, or as JSON.
int ListKinds(bool json) {
  if (json) {
    PrintJson(FindingKindsJson());
    return kExitSuccess;
  }
  for (const FindingInfo& info : AllFindingKinds()) {
    std::printf("%-16s %-8s %s\n", info.id, SeverityName(info.severity), info.explanation);
  }
  return kExitSuccess;
}

int RunCheck(const CheckArguments& args) {
  const bool json = args.json || args.format == "json";
  if (args.listKinds) return ListKinds(json);
  FindingFilter filter;
  std::string error;
  if (!filter.Configure(args.select, args.ignore, &error)) {
    std::fprintf(stderr, "devdef: %s\n", error.c_str());
    return kExitFileError;
  }
  Severity failOn = Severity::kWarning;
  ParseSeverity(args.failOn, &failOn);
  // The duplicates are among the findings.
  std::unique_ptr<Analysis> analysis = ReadForCommand(args, false);
  if (analysis == nullptr) return kExitFileError;
  const Findings& all = analysis->FindingsOf();
  std::vector<ShownFinding> findings = MergeRepeats(*analysis, filter.Apply(all.List()));
  // The counts and the exit status are of every finding, shown or not.
  const SeverityCounts counts = CountSeverities(findings);
  const bool text = !json && args.format != "sarif";
  const long limit = args.maxFindings >= 0 ? args.maxFindings : text ? kTextFindingLimit : 0;
  size_t leftOut = 0;
  if (limit > 0 && findings.size() > static_cast<size_t>(limit)) {
    leftOut = findings.size() - static_cast<size_t>(limit);
    findings.resize(static_cast<size_t>(limit));
  }
  if (json) {
    PrintFindingsJson(stdout, *analysis, all, findings, counts, leftOut);
  } else if (!text) {
    PrintSarifLog(stdout, args.file, *analysis, all, findings, leftOut);
  } else {
    PrintGccDiagnostics(stdout, args.file, *analysis, all, findings);
    // As compilers stop at their error limit: the last line says what is
    // left out and how to see it.
    if (leftOut > 0) {
      std::printf("devdef: %zu more finding%s not shown (--max-findings %ld; 0 shows all)\n", leftOut,
                  leftOut == 1 ? "" : "s", limit);
    }
    // No summary of findings that did not reach their reader.
    if (!OutputReached(stdout, "standard output")) return kExitFileError;
    if (!findings.empty() && !args.quiet) std::fprintf(stderr, "%s\n", SummaryText(counts).c_str());
  }
  return ReachesSeverity(counts, failOn) ? kExitNotFound : kExitSuccess;
}

}  // namespace

Command AddCheckCommand(CLI::App& app) {
  auto args = std::make_shared<CheckArguments>();
  CLI::App* command = app.add_subcommand(
      "check", "report, as a compiler does, what the reader refused, dropped or read differently from what the "
               "file looks like, and what a write will not keep; exit status 1 when a finding reaches --fail-on");
  CLI::Option* file = AddCommonOptions(command, *args, true);
  file->required(false);
  CLI::Option* format = command->add_option("--format", args->format, "output form: text (FILE:LINE:COL: lines), "
                                                                      "json or sarif (SARIF 2.1.0)")
                            ->check(OneOf({"text", "json", "sarif"}))
                            ->capture_default_str();
  command->get_option("--json")->excludes(format);
  command->add_option("--fail-on", args->failOn, "exit status 1 when a finding of this severity or a higher one "
                                                 "is reported: error, warning or note")
      ->check(OneOf({"error", "warning", "note"}))
      ->capture_default_str();
  command->add_option("--select", args->select, "report only these kinds (comma-separated; repeatable)")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--ignore", args->ignore, "do not report these kinds (comma-separated; repeatable)")
      ->delimiter(',')
      ->allow_extra_args(false);
  command
      ->add_option_function<std::string>(
          "--max-findings",
          [args](const std::string& text) {
            std::string problem;
            ParseCount(text, &args->maxFindings, &problem);
          },
          "show at most N findings, then say how many are left out; 0 shows all (default: 100 in the text form, "
          "all in json and sarif)")
      ->type_name("N")
      ->check(CLI::Validator(
          [](std::string& text) {
            long count = 0;
            std::string problem;
            return ParseCount(text, &count, &problem) ? std::string() : problem;
          },
          ""));
  CLI::Option* listKinds =
      command->add_flag("--list-kinds", args->listKinds, "print every kind of finding with its severity and help");
  listKinds->excludes(file);
  command->callback([file, listKinds]() {
    if (file->count() == 0 && listKinds->count() == 0) throw CLI::RequiredError("FILE");
  });
  return Command{command, [args] { return RunCheck(*args); }};
}
