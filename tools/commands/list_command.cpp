// devdef list: one line per device whose name (or kind or manufacturer)
// matches a pattern.
#include <memory>
#include <string>

#include "tools/catalogue_json.h"
#include "tools/catalogue_walk.h"
#include "tools/commands/command.h"
#include "tools/text_output.h"
#include "tools/utf8_text.h"
#include "tools/wildcard.h"

using nlohmann::json;

namespace {

struct ListArguments : CommonArguments {
  std::string pattern;
  bool allFields = false;
};

int RunList(const ListArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  json devices = json::array();
  const std::string pattern = args.pattern.empty() ? "*" : args.pattern;
  ForEachDevice(analysis->Controller(), [&](TAG_KIND_OF_DEVICE& kind, TAG_DEVICE_MANUF& manuf, DEVICE_ITEM& device) {
    bool match = WildcardMatch(pattern.c_str(), device.GetDeviceName());
    if (!match && args.allFields) {
      match = WildcardMatch(pattern.c_str(), kind.m_Name) || WildcardMatch(pattern.c_str(), manuf.m_Name);
    }
    if (!match) return;
    devices.push_back(json{{"kind", ToUtf8(kind.m_Name)},
                           {"manufacturer", ToUtf8(manuf.m_Name)},
                           {"name", ToUtf8(device.m_DeviceName)},
                           {"line", DeviceLine(*analysis, device)},
                           {"visible_definitions", device.GetNumDevDefs()}});
  });
  if (args.json) {
    PrintJson(json{{"devices", devices}});
  } else {
    PrintListText(stdout, devices);
  }
  return devices.empty() ? kExitNotFound : kExitSuccess;
}

}  // namespace

Command AddListCommand(CLI::App& app) {
  auto args = std::make_shared<ListArguments>();
  CLI::App* command = app.add_subcommand("list", "one line per device with its number of visible definitions; "
                                                 "exit status 1 when no device matches");
  AddCommonOptions(command, *args, true);
  command->add_option("PATTERN", args->pattern, "shell-style wildcard (*, ?, [...]) matched without regard to case "
                                                "against the device name");
  command->add_flag("--all-fields", args->allFields, "match the pattern against kind and manufacturer too");
  return Command{command, [args] { return RunList(*args); }};
}
