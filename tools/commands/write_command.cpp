// devdef write and devdef convert: the catalogue written back through the
// library's writer, or converted to the eleven-value form. A write is read
// back before it replaces anything: what would not read back as it was read,
// and what the reader misread and the write would keep, is listed, and
// nothing is written unless --force says so. A conversion lists what it
// keeps of misreadings, and names the definition it stops at.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/diagnostics/finding_text.h"
#include "tools/diagnostics/gcc_output.h"
#include "tools/edit/conversion_stop.h"
#include "tools/edit/file_output.h"
#include "tools/edit/kept_misreadings.h"
#include "tools/edit/round_trip.h"
#include "tools/text/control_escape.h"
#include "tools/text/text_encoding.h"

namespace {

struct WriteArguments : CommonArguments {
  std::string output;
  bool force = false;
};

// Each finding on standard error, as check prints findings.
void PrintAll(const Analysis& analysis, const Findings& findings) {
  std::vector<const Finding*> shown;
  for (const Finding& finding : findings.List()) shown.push_back(&finding);
  PrintGccDiagnostics(stderr, analysis.Path(), analysis, findings, shown);
}

// What the read itself lost is not in the catalogue, so no write can keep
// it: said once, unless --quiet. The misreadings a write keeps are listed
// on their own.
void WarnOfReadErrors(const WriteArguments& args, const Analysis& analysis) {
  size_t errors = 0;
  for (const Finding& finding : analysis.FindingsOf().List()) {
    errors += finding.severity == Severity::kError && !IsKeptMisreading(finding.kind) ? 1 : 0;
  }
  if (errors == 0 || args.quiet) return;
  std::fprintf(stderr,
               "devdef: warning: '%s' has %zu error%s ('devdef check' lists them): what the reader lost there is "
               "not in the catalogue, nor in what is written\n",
               analysis.Path().c_str(), errors, errors == 1 ? "" : "s");
}

// Where the conversion stopped, at the definition whose text does not open
// with seven numbers.
void ReportConversionStop(const WriteArguments& args, Analysis& analysis) {
  const std::uint32_t record = ConversionStop(analysis);
  if (record == kNoRecord) {
    std::fprintf(stderr, "devdef: the conversion stopped; nothing written\n");
    return;
  }
  const DEVICE_KVRXDEF_ITEM& def = analysis.DefinitionOf(record);
  const DEVICE_ITEM& device = *analysis.Devices()[analysis.Definitions()[record].device].device;
  const TextPoint at = ShownPoint(analysis, analysis.Definitions()[record].line.begin, ColumnUnit::kUtf8Bytes);
  std::fprintf(stderr,
               "%s:%ld:%ld: error: the conversion stops at definition %u of '%s': its text '%s' does not open with "
               "seven numbers; nothing written\n",
               args.file.c_str(), at.line, at.column, static_cast<unsigned>(def.m_DefID),
               EscapeControls(ShownText(device.m_DeviceName)).c_str(),
               EscapeControls(ShownText(def.m_DefLine)).c_str());
}

int RunWrite(const WriteArguments& args, DefOutput what) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  KCDeviceDefCtrl& ctrl = analysis->Controller();
  if (what == DefOutput::kConvert && dynamic_cast<KCDeviceDefCtrlV2*>(&ctrl) == nullptr) {
    std::fprintf(stderr, "devdef: a layout 1 file cannot be converted; convert reads layouts 2 and 7\n");
    return kExitFileError;
  }
  WarnOfReadErrors(args, *analysis);
  std::function<bool(const std::string&)> verify;
  if (what == DefOutput::kWrite) {
    verify = [&](const std::string& written) {
      const Findings losses = RoundTripLosses(*analysis, written, analysis->Layout(),
                                              args.force ? Severity::kWarning : Severity::kError);
      if (losses.List().empty()) return true;
      if (!args.force || !args.quiet) PrintAll(*analysis, losses);
      if (args.force) return true;
      std::fprintf(stderr,
                   "devdef: nothing written: the write would lose what the file holds in %zu place%s (--force "
                   "writes it all the same)\n",
                   losses.List().size(), losses.List().size() == 1 ? "" : "s");
      return false;
    };
  }
  switch (WriteDefinitionFile(ctrl, what, args.output, verify)) {
    case WriteOutcome::kWritten:
      if (what == DefOutput::kConvert && !args.quiet) {
        // The conversion writes version 3, which no reader takes back:
        // there is nothing to read back, but what the reader misread went
        // into it too.
        Findings kept;
        AddKeptMisreadings(*analysis, Severity::kWarning, &kept);
        kept.Finish();
        PrintAll(*analysis, kept);
      }
      return kExitSuccess;
    case WriteOutcome::kRefused:
      return kExitNotFound;
    case WriteOutcome::kStopped:
      if (what == DefOutput::kConvert) {
        ReportConversionStop(args, *analysis);
      } else {
        std::fprintf(stderr, "devdef: the catalogue could not be written; nothing written\n");
      }
      break;
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
                      "write even when something would be lost (a difference in the read-back, a misreading "
                      "kept); the losses are listed as warnings");
  }
  return Command{command, [args, what] { return RunWrite(*args, what); }};
}

}  // namespace

Command AddWriteCommand(CLI::App& app) {
  return AddWriting(app, "write",
                    "rewrite a file through the library's writer; the written file is read back first, and "
                    "nothing is written when it would read back differently or keep what the reader misread "
                    "(exit status 1) unless --force",
                    DefOutput::kWrite);
}

Command AddConvertCommand(CLI::App& app) {
  return AddWriting(app, "convert",
                    "write a layout 2 file with eleven values on each line (version 3), taking seven numbers "
                    "from the start of each definition's text",
                    DefOutput::kConvert);
}
