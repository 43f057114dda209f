// devdef find: where the visible definition with an id stands.
#include <cstdint>
#include <cstdio>
#include <memory>

#include "tools/catalogue_json.h"
#include "tools/commands/command.h"
#include "tools/text_output.h"
#include "tools/utf8_text.h"

using nlohmann::json;

namespace {

struct FindArguments : CommonArguments {
  std::int64_t id = 0;
};

// The index of def in its device's m_DefArray.
int IndexOf(DEVICE_ITEM& device, const DEVICE_KVRXDEF_ITEM& def) {
  for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
    if (&device.m_DefArray[i] == &def) return i;
  }
  return -1;
}

int RunFind(const FindArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  KCDeviceDefCtrl& ctrl = analysis->Controller();
  POSITION posKind = nullptr;
  POSITION posManuf = nullptr;
  DEVICE_ITEM* device = nullptr;
  DEVICE_KVRXDEF_ITEM* def = nullptr;
  const int id = static_cast<int>(static_cast<std::uint32_t>(args.id));
  json found = json{{"found", false}};
  const int index =
      ctrl.FindDeviceItem(id, &posKind, &posManuf, nullptr, nullptr, &device, &def) ? IndexOf(*device, *def) : -1;
  if (index >= 0) {
    found = json{{"found", true},
                 {"kind", ToUtf8(ctrl.getDeviceList().GetAt(posKind).m_Name)},
                 {"manufacturer", ToUtf8(CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf).m_Name)},
                 {"device", ToUtf8(device->m_DeviceName)},
                 {"device_line", DeviceLine(*analysis, *device)},
                 {"definition", DefinitionJson(*analysis, *device, index)}};
  }
  const bool wasFound = found["found"].get<bool>();
  if (args.json) {
    PrintJson(found);
  } else if (wasFound) {
    PrintFoundText(stdout, found);
  }
  if (wasFound) return kExitSuccess;
  std::fprintf(stderr, "devdef: no visible definition has the id %u\n", static_cast<unsigned>(id));
  return kExitNotFound;
}

}  // namespace

Command AddFindCommand(CLI::App& app) {
  auto args = std::make_shared<FindArguments>();
  CLI::App* command = app.add_subcommand("find", "print where the visible definition with an id stands and its "
                                                 "fields; exit status 1 when there is none");
  AddCommonOptions(command, *args, true);
  AddIdOption(command, args->id)->required();
  return Command{command, [args] { return RunFind(*args); }};
}
