// devdef tree: the whole catalogue, printed device by device as it is walked.
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "tools/commands/command.h"
#include "tools/output/catalogue_json.h"
#include "tools/output/json_stream.h"
#include "tools/output/text_output.h"
#include "tools/text/control_escape.h"

using nlohmann::json;

namespace {

class TreeText : public TreeVisitor {
 public:
  void Kind(json kind) override { std::printf("%s\n", EscapeControls(kind["name"].get<std::string>()).c_str()); }
  void Manufacturer(json manufacturer) override {
    std::printf("  %s\n", EscapeControls(manufacturer["name"].get<std::string>()).c_str());
  }
  void Device(const json& device) override { PrintTreeDeviceText(stdout, device); }
  void EndManufacturer() override {}
  void EndKind() override {}
};

// The kinds, manufacturers and devices into the "kinds" of an open document.
class TreeDocument : public TreeVisitor {
 public:
  explicit TreeDocument(JsonStream& stream) : stream_(stream) {}
  void Kind(json kind) override { stream_.OpenObject(std::move(kind), "manufacturers"); }
  void Manufacturer(json manufacturer) override { stream_.OpenObject(std::move(manufacturer), "devices"); }
  void Device(const json& device) override { stream_.Element(device); }
  void EndManufacturer() override { stream_.CloseObject(); }
  void EndKind() override { stream_.CloseObject(); }

 private:
  JsonStream& stream_;
};

int RunTree(const CommonArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  if (args.json) {
    JsonStream stream(stdout);
    stream.OpenObject(TreeFrame(*analysis), "kinds");
    TreeDocument document(stream);
    WalkTree(*analysis, document);
    stream.CloseObject();
  } else {
    TreeText text;
    WalkTree(*analysis, text);
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
