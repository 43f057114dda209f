// devdef write and devdef convert: the catalogue written back through the
// library's writer, or converted to the eleven-value form.
#include <cstdio>
#include <memory>
#include <string>

#include "tools/commands/command.h"
#include "tools/file_output.h"

namespace {

struct WriteArguments : CommonArguments {
  std::string output;
};

int RunWrite(const WriteArguments& args, DefOutput what) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  KCDeviceDefCtrl& ctrl = analysis->Controller();
  if (what == DefOutput::kConvert && dynamic_cast<KCDeviceDefCtrlV2*>(&ctrl) == nullptr) {
    std::fprintf(stderr, "devdef: a layout 1 file cannot be converted; convert reads layouts 2 and 7\n");
    return kExitFileError;
  }
  return WriteDefinitionFile(ctrl, what, args.output) ? kExitSuccess : kExitFileError;
}

Command AddWriting(CLI::App& app, const char* name, const char* description, DefOutput what) {
  auto args = std::make_shared<WriteArguments>();
  CLI::App* command = app.add_subcommand(name, description);
  AddCommonOptions(command, *args, false);
  command->add_option("-o,--output", args->output, "file to write")->required();
  return Command{command, [args, what] { return RunWrite(*args, what); }};
}

}  // namespace

Command AddWriteCommand(CLI::App& app) {
  return AddWriting(app, "write", "rewrite a file through the library's writer", DefOutput::kWrite);
}

Command AddConvertCommand(CLI::App& app) {
  return AddWriting(app, "convert",
                    "write a layout 2 file with eleven values on each line (version 3), taking seven numbers "
                    "from the start of each definition's text",
                    DefOutput::kConvert);
}
