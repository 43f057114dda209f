// devdef show: everything about a device, named or found by a definition id.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "tools/catalogue_json.h"
#include "tools/catalogue_walk.h"
#include "tools/commands/command.h"
#include "tools/text_output.h"

using nlohmann::json;

namespace {

struct ShowArguments : CommonArguments {
  std::string device;
  std::int64_t id = 0;
  bool byId = false;
};

int RunShow(const ShowArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  KCDeviceDefCtrl& ctrl = analysis->Controller();
  json devices = json::array();
  if (args.byId) {
    POSITION posKind = nullptr;
    POSITION posManuf = nullptr;
    DEVICE_ITEM* device = nullptr;
    if (ctrl.FindDeviceItem(static_cast<int>(static_cast<std::uint32_t>(args.id)), &posKind, &posManuf, nullptr,
                            nullptr, &device, nullptr)) {
      devices.push_back(DeviceJson(*analysis, ctrl.getDeviceList().GetAt(posKind),
                                   CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf), *device));
    }
  } else {
    ForEachDevice(ctrl, [&](TAG_KIND_OF_DEVICE& kind, TAG_DEVICE_MANUF& manuf, DEVICE_ITEM& device) {
      if (args.device == device.GetDeviceName()) devices.push_back(DeviceJson(*analysis, kind, manuf, device));
    });
  }
  if (args.json) {
    PrintJson(json{{"devices", devices}});
  } else {
    for (size_t i = 0; i < devices.size(); ++i) {
      if (i > 0) std::printf("\n");
      PrintDeviceText(stdout, devices[i]);
    }
  }
  if (devices.empty()) {
    std::fprintf(stderr, "devdef: no device %s\n",
                 args.byId ? ("holds a visible definition with the id " +
                              std::to_string(static_cast<std::uint32_t>(args.id))).c_str()
                           : ("is named '" + args.device + "'").c_str());
    return kExitNotFound;
  }
  return kExitSuccess;
}

}  // namespace

Command AddShowCommand(CLI::App& app) {
  auto args = std::make_shared<ShowArguments>();
  CLI::App* command = app.add_subcommand("show", "everything about a device: all its definitions (hidden ones "
                                                 "marked), names, values, housings and marks, with their lines");
  AddCommonOptions(command, *args, true);
  CLI::Option* device = command->add_option("DEVICE", args->device, "device name, as the catalogue holds it");
  CLI::Option* id = AddIdOption(command, args->id);
  device->excludes(id);
  command->callback([device, id, args]() {
    if (device->count() == 0 && id->count() == 0) throw CLI::RequiredError("DEVICE or --id");
    args->byId = id->count() > 0;
  });
  return Command{command, [args] { return RunShow(*args); }};
}
