// devdef list: one line per device whose name (or kind or manufacturer)
// matches a pattern.
#include <memory>
#include <string>

#include "tools/commands/command.h"
#include "tools/commands/lookup_report.h"
#include "tools/lookup/device_lookup.h"
#include "tools/output/catalogue_json.h"
#include "tools/output/json_document.h"
#include "tools/output/output_buffer.h"
#include "tools/output/text_output.h"

namespace {

struct ListArguments : CommonArguments {
  std::string pattern;
  bool allFields = false;
};

int RunList(const ListArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  const NamePattern pattern(args.pattern.empty() ? "*" : args.pattern);
  const DeviceLookup found = LookUpDevices(*analysis, pattern, args.allFields, 3);
  {
    OutputBuffer out(stdout);
    if (args.json) {
      JsonWriter writer(out);
      WriteDocument(writer, *analysis, DevicesFields(*analysis, "devices", found.matches, found.closest));
    } else {
      for (std::uint32_t device : found.matches) WriteListLine(out, *analysis, device);
    }
  }
  if (found.matches.empty()) ReportNoDevice(pattern, *analysis, found.closest);
  SayReadErrors(args, *analysis);
  return found.matches.empty() ? kExitNotFound : kExitSuccess;
}

}  // namespace

Command AddListCommand(CLI::App& app) {
  auto args = std::make_shared<ListArguments>();
  CLI::App* command = app.add_subcommand("list", "one line per device with its number of visible definitions; "
                                                 "exit status 1 when no device matches");
  AddCommonOptions(command, *args, true);
  command->add_option("PATTERN", args->pattern, "device name or shell-style wildcard (*, ?, [...]); ASCII case is "
                                                "ignored and '_' matches a blank");
  command->add_flag("--all-fields", args->allFields, "match the pattern against kind and manufacturer too");
  return Command{command, [args] { return RunList(*args); }};
}
