// devdef tree: the whole catalogue, printed device by device as it is walked.
#include <cstdio>
#include <memory>

#include "tools/commands/command.h"
#include "tools/output/catalogue_json.h"
#include "tools/output/output_buffer.h"
#include "tools/output/text_output.h"

namespace {

int RunTree(const CommonArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  {
    OutputBuffer out(stdout);
    if (args.json) {
      JsonWriter writer(out);
      WriteTreeDocument(writer, *analysis);
    } else {
      WriteTreeText(out, *analysis);
    }
  }
  SayReadErrors(args, *analysis);
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
