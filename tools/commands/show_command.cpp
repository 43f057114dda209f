// devdef show: everything about a device, named or found by a definition id.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/commands/lookup_report.h"
#include "tools/lookup/device_lookup.h"
#include "tools/output/catalogue_json.h"
#include "tools/output/json_document.h"
#include "tools/output/output_buffer.h"
#include "tools/output/text_output.h"

namespace {

struct ShowArguments : CommonArguments {
  std::string device;
  std::uint32_t id = 0;
  bool byId = false;
  bool all = false;
};

enum class Miss { kNone, kNoDevice, kSeveralDevices, kNoId, kHiddenId };

// The devices to show; when there are none, why, and the devices meant
// perhaps.
struct Shown {
  std::vector<std::uint32_t> devices;
  std::vector<std::uint32_t> candidates;
  Miss miss = Miss::kNone;
};

// The device of the visible definition with the id; else, as candidates,
// the devices that hold it hidden.
Shown ShowById(Analysis& analysis, std::uint32_t id) {
  Shown shown;
  std::uint32_t device = 0;
  int index = 0;
  if (FindVisibleDefinition(analysis, id, &device, &index)) {
    shown.devices.push_back(device);
    return shown;
  }
  shown.candidates = DevicesWithId(analysis, id);
  shown.miss = shown.candidates.empty() ? Miss::kNoId : Miss::kHiddenId;
  return shown;
}

// The one device the name names, or all with --all; else the closest or
// the several ones as candidates.
Shown ShowByName(const Analysis& analysis, const NamePattern& pattern, bool all) {
  DeviceLookup found = LookUpDevices(analysis, pattern, false, 3);
  Shown shown;
  if (found.matches.empty()) {
    shown.candidates = std::move(found.closest);
    shown.miss = Miss::kNoDevice;
  } else if (found.matches.size() > 1 && !all) {
    shown.candidates = std::move(found.matches);
    shown.miss = Miss::kSeveralDevices;
  } else {
    shown.devices = std::move(found.matches);
  }
  return shown;
}

void ReportMiss(const ShowArguments& args, const Analysis& analysis, const NamePattern& pattern, const Shown& shown) {
  const std::string id = std::to_string(args.id);
  switch (shown.miss) {
    case Miss::kNoDevice:
      ReportNoDevice(pattern, analysis, shown.candidates);
      break;
    case Miss::kSeveralDevices:
      ReportSeveralDevices(pattern, analysis, shown.candidates, "name one, or show them all with --all");
      break;
    case Miss::kNoId:
      std::fprintf(stderr, "devdef: no definition has the id %s\n", id.c_str());
      break;
    case Miss::kHiddenId:
      ReportHidden("id " + id + " is hidden", HiddenGenerations(analysis, shown.candidates, false, args.id),
                   "show", ShellWord(args.file) + " --id " + id);
      break;
    case Miss::kNone:
      break;
  }
}

int RunShow(const ShowArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  const NamePattern pattern(args.device);
  const Shown shown = args.byId ? ShowById(*analysis, args.id)
                                : ShowByName(*analysis, pattern, args.all);
  {
    OutputBuffer out(stdout);
    if (args.json) {
      JsonWriter writer(out);
      WriteDocument(writer, *analysis, DevicesFields(*analysis, "devices", shown.devices, shown.candidates));
    } else {
      for (size_t i = 0; i < shown.devices.size(); ++i) {
        if (i > 0) out.Append('\n');
        WriteDeviceText(out, *analysis, shown.devices[i]);
      }
    }
  }
  if (shown.devices.empty()) ReportMiss(args, *analysis, pattern, shown);
  SayReadErrors(args, *analysis);
  return shown.devices.empty() ? kExitNotFound : kExitSuccess;
}

}  // namespace

Command AddShowCommand(CLI::App& app) {
  auto args = std::make_shared<ShowArguments>();
  CLI::App* command = app.add_subcommand("show", "everything about a device: all its definitions (hidden ones "
                                                 "marked), names, values, housings and marks, with their lines");
  AddCommonOptions(command, *args, true);
  CLI::Option* device = command->add_option("DEVICE", args->device, "device name (ASCII case ignored, '_' matches "
                                                                    "a blank) or shell-style wildcard");
  CLI::Option* id = AddIdOption(command, args->id);
  device->excludes(id);
  command->add_flag("--all", args->all, "show every device DEVICE names, not only when it names one");
  command->callback([device, id, args]() {
    if (device->count() == 0 && id->count() == 0) throw CLI::RequiredError("DEVICE or --id");
    args->byId = id->count() > 0;
  });
  return Command{command, [args] { return RunShow(*args); }};
}
