// devdef: the command-line companion of the devdef library.
#include <CLI/CLI.hpp>

#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "devdef/devdef.h"
#include "tools/catalogue_file.h"
#include "tools/catalogue_json.h"
#include "tools/catalogue_walk.h"
#include "tools/checker.h"
#include "tools/file_output.h"
#include "tools/text_output.h"
#include "tools/wildcard.h"

using nlohmann::json;

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
  std::string pattern;
  std::string device;
  std::int64_t id = 0;
  bool json = false;
  bool allFields = false;
  CatalogueOptions options;
};

void AddCommonOptions(CLI::App* command, Arguments& args, bool withJson) {
  command->add_option("FILE", args.file, "definition file")->required();
  command->add_option("--layout", args.options.layout, "read as layout 1, 2 or 7 (default: the file's version line)")
      ->check(CLI::IsMember({1, 2, 7}));
  command->add_option("--generation", args.options.generation, "the generation in force: 3, 4 or 5")
      ->check(CLI::IsMember({3, 4, 5}))
      ->capture_default_str();
  command->add_flag("--check-ids", args.options.checkIds, "report duplicate definition ids while reading");
  if (withJson) command->add_flag("--json", args.json, "print one JSON document instead of text");
}

CLI::Option* AddIdOption(CLI::App* command, Arguments& args) {
  return command->add_option("--id", args.id, "definition id, signed or unsigned 32-bit")
      ->check(CLI::Range(static_cast<std::int64_t>(INT32_MIN), static_cast<std::int64_t>(UINT32_MAX)));
}

void PrintJson(const json& document) {
  std::printf("%s\n", document.dump(2).c_str());
}

int RunList(KCDeviceDefCtrl& ctrl, const Arguments& args) {
  json devices = json::array();
  const std::string pattern = args.pattern.empty() ? "*" : args.pattern;
  ForEachDevice(ctrl, [&](TAG_KIND_OF_DEVICE& kind, TAG_DEVICE_MANUF& manuf, DEVICE_ITEM& device) {
    bool match = WildcardMatch(pattern.c_str(), device.GetDeviceName());
    if (!match && args.allFields) {
      match = WildcardMatch(pattern.c_str(), kind.m_Name) || WildcardMatch(pattern.c_str(), manuf.m_Name);
    }
    if (!match) return;
    devices.push_back(json{{"kind", ToUtf8(kind.m_Name)},
                           {"manufacturer", ToUtf8(manuf.m_Name)},
                           {"name", ToUtf8(device.m_DeviceName)},
                           {"visible_definitions", device.GetNumDevDefs()}});
  });
  if (args.json) {
    PrintJson(json{{"devices", devices}});
  } else {
    PrintListText(stdout, devices);
  }
  return devices.empty() ? kExitNotFound : 0;
}

int RunShow(KCDeviceDefCtrl& ctrl, const Arguments& args, bool byId) {
  json devices = json::array();
  if (byId) {
    POSITION posKind = nullptr;
    POSITION posManuf = nullptr;
    DEVICE_ITEM* device = nullptr;
    if (ctrl.FindDeviceItem(static_cast<int>(static_cast<std::uint32_t>(args.id)), &posKind, &posManuf, nullptr,
                            nullptr, &device, nullptr)) {
      devices.push_back(DeviceJson(ctrl.getDeviceList().GetAt(posKind),
                                   CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf), *device));
    }
  } else {
    ForEachDevice(ctrl, [&](TAG_KIND_OF_DEVICE& kind, TAG_DEVICE_MANUF& manuf, DEVICE_ITEM& device) {
      if (args.device == device.GetDeviceName()) devices.push_back(DeviceJson(kind, manuf, device));
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
                 byId ? ("holds a visible definition with the id " + std::to_string(static_cast<std::uint32_t>(args.id))).c_str()
                      : ("is named '" + args.device + "'").c_str());
    return kExitNotFound;
  }
  return 0;
}

int RunFind(KCDeviceDefCtrl& ctrl, const Arguments& args) {
  POSITION posKind = nullptr;
  POSITION posManuf = nullptr;
  DEVICE_ITEM* device = nullptr;
  DEVICE_KVRXDEF_ITEM* def = nullptr;
  const int id = static_cast<int>(static_cast<std::uint32_t>(args.id));
  json found = json{{"found", false}};
  if (ctrl.FindDeviceItem(id, &posKind, &posManuf, nullptr, nullptr, &device, &def)) {
    found = json{{"found", true},
                 {"kind", ToUtf8(ctrl.getDeviceList().GetAt(posKind).m_Name)},
                 {"manufacturer", ToUtf8(CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf).m_Name)},
                 {"device", ToUtf8(device->m_DeviceName)},
                 {"definition", DefinitionJson(*device, *def)}};
  }
  if (args.json) {
    PrintJson(found);
  } else if (found["found"].get<bool>()) {
    PrintFoundText(stdout, found);
  }
  if (found["found"].get<bool>()) return 0;
  std::fprintf(stderr, "devdef: no visible definition has the id %u\n", static_cast<unsigned>(id));
  return kExitNotFound;
}

int RunCheck(const Arguments& args) {
  const CheckResult result = CheckDefinitionFile(args.file, args.options);
  if (!result.read) {
    std::fprintf(stderr, "devdef: cannot read '%s' as a definition file\n", args.file.c_str());
    return kExitFileError;
  }
  if (args.json) {
    json findings = json::array();
    for (const Finding& f : result.findings) {
      findings.push_back(json{{"line", f.line}, {"kind", f.kind}, {"message", ToUtf8(f.message.data(), f.message.size())}});
    }
    PrintJson(json{{"file", args.file}, {"layout", result.layout}, {"findings", findings}});
  } else {
    for (const Finding& f : result.findings) {
      std::printf("%s:%ld: %s: %s\n", args.file.c_str(), f.line, f.kind.c_str(), f.message.c_str());
    }
  }
  return result.findings.empty() ? 0 : kExitNotFound;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Reads, queries, checks and writes device definition files of layouts 1, 2 and 7.", "devdef"};
  app.set_version_flag("--version", kVersion);
  app.require_subcommand(1);
  app.failure_message(CLI::FailureMessage::help);
  Arguments args;

  CLI::App* tree = app.add_subcommand("tree", "print the catalogue: kinds, manufacturers, devices and their "
                                              "visible definitions with package, module and adapter names");
  AddCommonOptions(tree, args, true);

  CLI::App* list = app.add_subcommand("list", "one line per device with its number of visible definitions; "
                                              "exit status 1 when no device matches");
  AddCommonOptions(list, args, true);
  list->add_option("PATTERN", args.pattern, "shell-style wildcard (*, ?, [...]) matched without regard to case "
                                            "against the device name");
  list->add_flag("--all-fields", args.allFields, "match the pattern against kind and manufacturer too");

  CLI::App* show = app.add_subcommand("show", "everything about a device: all its definitions (hidden ones "
                                              "marked), names, values, housings and marks");
  AddCommonOptions(show, args, true);
  CLI::Option* showDevice = show->add_option("DEVICE", args.device, "device name, as the catalogue holds it");
  CLI::Option* showId = AddIdOption(show, args);
  showDevice->excludes(showId);
  show->callback([&]() {
    if (showDevice->count() == 0 && showId->count() == 0) throw CLI::RequiredError("DEVICE or --id");
  });

  CLI::App* find = app.add_subcommand("find", "print where the visible definition with an id stands and its "
                                              "fields; exit status 1 when there is none");
  AddCommonOptions(find, args, true);
  AddIdOption(find, args)->required();

  CLI::App* check = app.add_subcommand(
      "check", "report refused and dropped lines, lost list entries, duplicate ids, numbers without names and "
               "what will not survive a write, as FILE:LINE: kind: message; exit status 1 when anything is found");
  AddCommonOptions(check, args, true);

  CLI::App* write = app.add_subcommand("write", "rewrite a file through the library's writer");
  AddCommonOptions(write, args, false);
  write->add_option("-o,--output", args.output, "file to write")->required();

  CLI::App* convert = app.add_subcommand(
      "convert", "write a layout 2 file with eleven values on each line (version 3), taking seven numbers "
                 "from the start of each definition's text");
  AddCommonOptions(convert, args, false);
  convert->add_option("-o,--output", args.output, "file to write")->required();

  CLI::App* exportList =
      app.add_subcommand("export", "write k4devicelist.txt: every device of a layout 7 file with the adapters "
                                   "of its generation 4 definitions");
  AddCommonOptions(exportList, args, false);
  exportList->add_option("--dir", args.dir, "directory to write k4devicelist.txt into")
      ->required()
      ->check(CLI::ExistingDirectory);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    const int status = app.exit(e);
    return status == 0 ? 0 : kExitFileError;
  }

  InstallToolMessageBox();
  if (check->parsed()) return RunCheck(args);
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
    const json document = TreeJson(ctrl, catalogue.Layout());
    if (args.json) {
      PrintJson(document);
    } else {
      PrintTreeText(stdout, document);
    }
    return 0;
  }
  if (list->parsed()) return RunList(ctrl, args);
  if (show->parsed()) return RunShow(ctrl, args, showId->count() > 0);
  if (find->parsed()) return RunFind(ctrl, args);
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
