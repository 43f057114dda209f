// devdef export: k4devicelist.txt of a layout 7 file.
#include <cstdio>
#include <memory>
#include <string>

#include "tools/commands/command.h"
#include "tools/edit/file_output.h"

namespace {

struct ExportArguments : CommonArguments {
  std::string dir;
};

// The controller writes the list under its path prefix: a directory of its
// own inside the target directory, until the list is complete.
int RunExport(const ExportArguments& args) {
  TempPath exportDir;
  if (!MakeExportDirectory(args.dir, &exportDir)) return kExitFileError;
  ExportArguments read = args;
  read.options.pathPrefix = exportDir.Path() + "/";
  int status = kExitFileError;
  {
    std::unique_ptr<Analysis> analysis = ReadForCommand(read);
    KCDeviceDefCtrlV3* ctrl = analysis != nullptr ? dynamic_cast<KCDeviceDefCtrlV3*>(&analysis->Controller()) : nullptr;
    if (analysis != nullptr && ctrl == nullptr) {
      std::fprintf(stderr, "devdef: export writes the device list of a layout 7 file; '%s' is of layout %d\n",
                   analysis->Path().c_str(), analysis->Layout());
    } else if (ctrl != nullptr && ExportDeviceList(*analysis, *ctrl, exportDir.Path(), args.dir)) {
      status = kExitSuccess;
    }
  }
  return status;
}

}  // namespace

Command AddExportCommand(CLI::App& app) {
  auto args = std::make_shared<ExportArguments>();
  CLI::App* command = app.add_subcommand("export", "write k4devicelist.txt: every device of a layout 7 file with "
                                                   "the adapters of its generation 4 definitions");
  AddCommonOptions(command, *args, false);
  command->add_option("--dir", args->dir, "directory to write k4devicelist.txt into")
      ->required()
      ->check(CLI::ExistingDirectory);
  return Command{command, [args] { return RunExport(*args); }};
}
