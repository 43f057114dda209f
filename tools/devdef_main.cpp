// devdef: the command-line companion of the devdef library.
#include <CLI/CLI.hpp>

#include <cstdint>
#include <cstdio>
#include <string>

#include "devdef/devdef.h"
#include "tools/catalogue_file.h"
#include "tools/file_output.h"
#include "tools/tree_printer.h"

namespace {

const char kVersion[] = "devdef " DEVDEF_VERSION;

// Exit statuses: 0 success, 1 nothing found or problems found, 2 usage or
// file errors.
const int kExitNotFound = 1;
const int kExitFileError = 2;

struct Arguments {
  std::string file;
  std::string output;
  std::string dir;
  std::int64_t id = 0;
  CatalogueOptions options;
};

void AddCommonOptions(CLI::App* command, Arguments& args) {
  command->add_option("FILE", args.file, "definition file")->required();
  command->add_option("--layout", args.options.layout, "read as layout 1, 2 or 7 (default: the file's version line)")
      ->check(CLI::IsMember({1, 2, 7}));
  command->add_option("--generation", args.options.generation, "the generation in force: 3, 4 or 5")
      ->check(CLI::IsMember({3, 4, 5}))
      ->capture_default_str();
  command->add_flag("--check-ids", args.options.checkIds, "report duplicate definition ids while reading");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Reads, queries and writes device definition files of layouts 1, 2 and 7.", "devdef"};
  app.set_version_flag("--version", kVersion);
  app.require_subcommand(1);
  app.failure_message(CLI::FailureMessage::help);
  Arguments args;

  CLI::App* tree = app.add_subcommand("tree", "print the catalogue: kinds, manufacturers, devices and their "
                                              "visible definitions with package, module and adapter names");
  AddCommonOptions(tree, args);

  CLI::App* find = app.add_subcommand("find", "print where the visible definition with an id stands and its "
                                              "fields; exit status 1 when there is none");
  AddCommonOptions(find, args);
  find->add_option("--id", args.id, "definition id, signed or unsigned 32-bit")
      ->required()
      ->check(CLI::Range(static_cast<std::int64_t>(INT32_MIN), static_cast<std::int64_t>(UINT32_MAX)));

  CLI::App* write = app.add_subcommand("write", "rewrite a file through the library's writer");
  AddCommonOptions(write, args);
  write->add_option("-o,--output", args.output, "file to write")->required();

  CLI::App* convert = app.add_subcommand(
      "convert", "write a layout 2 file with eleven values on each line (version 3), taking seven numbers "
                 "from the start of each definition's text");
  AddCommonOptions(convert, args);
  convert->add_option("-o,--output", args.output, "file to write")->required();

  CLI::App* exportList =
      app.add_subcommand("export", "write k4devicelist.txt: every device of a layout 7 file with the adapters "
                                   "of its generation 4 definitions");
  AddCommonOptions(exportList, args);
  exportList->add_option("--dir", args.dir, "directory to write k4devicelist.txt into")
      ->required()
      ->check(CLI::ExistingDirectory);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    const int status = app.exit(e);
    return status == 0 ? 0 : kExitFileError;
  }

  if (exportList->parsed()) {
    if (args.options.layout != 0 && args.options.layout != 7) {
      std::fprintf(stderr, "devdef: export needs a layout 7 file\n");
      return kExitFileError;
    }
    return ExportDeviceList(args.file, args.options.generation, args.dir) ? 0 : kExitFileError;
  }

  CatalogueFile catalogue(args.file, args.options);
  if (!catalogue.Read()) return kExitFileError;
  KCDeviceDefCtrl& ctrl = catalogue.Controller();
  if (tree->parsed()) {
    PrintTree(stdout, ctrl);
    return 0;
  }
  if (find->parsed()) {
    const int id = static_cast<int>(static_cast<std::uint32_t>(args.id));
    if (PrintFoundId(stdout, ctrl, id)) return 0;
    std::fprintf(stderr, "devdef: no visible definition has the id %u\n", static_cast<unsigned>(id));
    return kExitNotFound;
  }
  if (write->parsed()) return WriteDefinitionFile(ctrl, DefOutput::kWrite, args.output) ? 0 : kExitFileError;
  if (convert->parsed()) {
    if (dynamic_cast<KCDeviceDefCtrlV2*>(&ctrl) == nullptr) {
      std::fprintf(stderr, "devdef: a layout 1 file cannot be converted; convert reads layouts 2 and 7\n");
      return kExitFileError;
    }
    return WriteDefinitionFile(ctrl, DefOutput::kConvert, args.output) ? 0 : kExitFileError;
  }
  return kExitFileError;
}
