// devdef tree: the whole catalogue.
#include <memory>

#include "tools/catalogue_json.h"
#include "tools/commands/command.h"
#include "tools/text_output.h"

namespace {

int RunTree(const CommonArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  const nlohmann::json document = TreeJson(*analysis);
  if (args.json) {
    PrintJson(document);
  } else {
    PrintTreeText(stdout, document);
  }
  return kExitSuccess;
}

}  // namespace

Command AddTreeCommand(CLI::App& app) {
  auto args = std::make_shared<CommonArguments>();
  CLI::App* command = app.add_subcommand("tree", "print the catalogue: kinds, manufacturers, devices and their "
                                                 "visible definitions with package, module and adapter names");
  AddCommonOptions(command, *args, true);
  return Command{command, [args] { return RunTree(*args); }};
}
