// devdef write and devdef convert: the catalogue written back through the
// library's writer, or converted to the eleven-value form. A write is read
// back before it replaces anything: what would not read back as it was read
// is listed, and nothing is written unless --force says so.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/diagnostics/gcc_output.h"
#include "tools/edit/file_output.h"
#include "tools/edit/round_trip.h"

namespace {

struct WriteArguments : CommonArguments {
  std::string output;
  bool force = false;
};

int RunWrite(const WriteArguments& args, DefOutput what) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  KCDeviceDefCtrl& ctrl = analysis->Controller();
  if (what == DefOutput::kConvert && dynamic_cast<KCDeviceDefCtrlV2*>(&ctrl) == nullptr) {
    std::fprintf(stderr, "devdef: a layout 1 file cannot be converted; convert reads layouts 2 and 7\n");
    return kExitFileError;
  }
  // What the read itself lost is not in the catalogue, so no write can keep it.
  size_t errors = 0;
  for (const Finding& finding : analysis->FindingsOf().List()) errors += finding.severity == Severity::kError ? 1 : 0;
  if (errors > 0 && !args.quiet) {
    std::fprintf(stderr,
                 "devdef: warning: '%s' has %zu error%s ('devdef check' lists them): what the reader lost there is "
                 "not in the catalogue, nor in what is written\n",
                 analysis->Path().c_str(), errors, errors == 1 ? "" : "s");
  }
  // The conversion writes version 3, which no reader takes back: there is
  // nothing to read back.
  std::function<bool(const std::string&)> verify;
  if (what == DefOutput::kWrite) {
    verify = [&](const std::string& written) {
      const Findings losses = RoundTripLosses(*analysis, written, analysis->Layout(),
                                              args.force ? Severity::kWarning : Severity::kError);
      if (losses.List().empty()) return true;
      if (!args.force || !args.quiet) {
        std::vector<const Finding*> shown;
        for (const Finding& loss : losses.List()) shown.push_back(&loss);
        PrintGccDiagnostics(stderr, analysis->Path(), *analysis, losses, shown);
      }
      if (args.force) return true;
      std::fprintf(stderr,
                   "devdef: nothing written: the written file would read back differently in %zu place%s "
                   "(--force writes it all the same)\n",
                   losses.List().size(), losses.List().size() == 1 ? "" : "s");
      return false;
    };
  }
  switch (WriteDefinitionFile(ctrl, what, args.output, verify)) {
    case WriteOutcome::kWritten:
      return kExitSuccess;
    case WriteOutcome::kRefused:
      return kExitNotFound;
    case WriteOutcome::kFailed:
      break;
  }
  return kExitFileError;
}

Command AddWriting(CLI::App& app, const char* name, const char* description, DefOutput what) {
  auto args = std::make_shared<WriteArguments>();
  CLI::App* command = app.add_subcommand(name, description);
  AddCommonOptions(command, *args, false);
  command->add_option("-o,--output", args->output, "file to write; - writes standard output")->required();
  if (what == DefOutput::kWrite) {
    command->add_flag("--force", args->force,
                      "write even when the written file would read back differently; the losses are listed as "
                      "warnings");
  }
  return Command{command, [args, what] { return RunWrite(*args, what); }};
}

}  // namespace

Command AddWriteCommand(CLI::App& app) {
  return AddWriting(app, "write",
                    "rewrite a file through the library's writer; the written file is read back first, and "
                    "nothing is written when it would read back differently (exit status 1) unless --force",
                    DefOutput::kWrite);
}

Command AddConvertCommand(CLI::App& app) {
  return AddWriting(app, "convert",
                    "write a layout 2 file with eleven values on each line (version 3), taking seven numbers "
                    "from the start of each definition's text",
                    DefOutput::kConvert);
}
