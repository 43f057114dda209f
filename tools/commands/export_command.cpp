// devdef export: k4devicelist.txt of a layout 7 file.
#include <cstdio>
#include <memory>
#include <string>

#include "tools/commands/command.h"
#include "tools/file_output.h"

namespace {

struct ExportArguments : CommonArguments {
  std::string dir;
};

// The export reads the file itself, with the layout 7 controller that
// writes the list.
int RunExport(const ExportArguments& args) {
  if (args.options.layout != 0 && args.options.layout != 7) {
    std::fprintf(stderr, "devdef: export needs a layout 7 file\n");
    return kExitFileError;
  }
  return ExportDeviceList(args.file, args.options.generation, args.dir) ? kExitSuccess : kExitFileError;
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
