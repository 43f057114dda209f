// devdef find: where the visible definitions with an id, or those of the
// devices a name matches, stand, and their fields.
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
#include "tools/text/control_escape.h"

namespace {

struct FindArguments : CommonArguments {
  std::string name;
  std::uint32_t id = 0;
  bool byId = false;
};

// A device and the indexes in its m_DefArray of the definitions found.
struct Found {
  std::uint32_t device;
  std::vector<int> definitions;
};

// What a search found; when nothing, the devices meant perhaps and the
// generations of their hidden definitions.
struct Search {
  std::vector<Found> found;
  std::vector<std::uint32_t> candidates;
  std::vector<unsigned> generations;
  bool named = false;  // the candidates are the devices named, none with a visible definition
};

// The visible definition with the id, as the library finds it; else the
// devices that hold it hidden.
Search FindById(Analysis& analysis, std::uint32_t id) {
  Search search;
  std::uint32_t device = 0;
  int index = 0;
  if (FindVisibleDefinition(analysis, id, &device, &index)) {
    search.found.push_back(Found{device, {index}});
    return search;
  }
  search.candidates = DevicesWithId(analysis, id);
  search.named = !search.candidates.empty();
  search.generations = HiddenGenerations(analysis, search.candidates, false, id);
  return search;
}

// The visible definitions of every device the name matches; else those
// devices, or the closest ones.
Search FindByName(const Analysis& analysis, const NamePattern& pattern) {
  DeviceLookup lookup = LookUpDevices(analysis, pattern, false, 3);
  Search search;
  for (std::uint32_t device : lookup.matches) {
    Found item{device, {}};
    const CArray<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& defs = analysis.Devices()[device].device->m_DefArray;
    for (int i = 0; i < defs.GetSize(); ++i) {
      if (!defs[i].IsHidden()) item.definitions.push_back(i);
    }
    if (!item.definitions.empty()) search.found.push_back(std::move(item));
  }
  if (!search.found.empty()) return search;
  search.named = !lookup.matches.empty();
  search.candidates = search.named ? std::move(lookup.matches) : std::move(lookup.closest);
  if (search.named) search.generations = HiddenGenerations(analysis, search.candidates, true, 0);
  return search;
}

void ReportMiss(const FindArguments& args, const Analysis& analysis, const NamePattern& pattern, const Search& search) {
  const std::string id = std::to_string(args.id);
  const std::string file = ShellWord(args.file);
  if (!search.named) {
    if (args.byId) {
      std::fprintf(stderr, "devdef: no definition has the id %s\n", id.c_str());
    } else {
      ReportNoDevice(pattern, analysis, search.candidates);
    }
  } else if (args.byId) {
    ReportHidden("id " + id + " is hidden", search.generations, "find", file + " --id " + id);
  } else if (!search.generations.empty()) {
    ReportHidden("the definitions of '" + EscapeControls(pattern.Argument()) + "' are hidden", search.generations,
                 "find", file + " " + ShellWord(pattern.Argument()));
  } else {
    std::fprintf(stderr, "devdef: '%s' names no device with a definition\n",
                 EscapeControls(pattern.Argument()).c_str());
  }
}

// "matches": each device found with the definitions found, and
// "candidates" when there is none (docs/json.md).
std::vector<DocumentField> MatchesFields(const Analysis& analysis, const Search& search) {
  std::vector<DocumentField> fields;
  fields.push_back({"matches", [&analysis, &search](JsonWriter& out) {
                      out.BeginArray();
                      for (const Found& item : search.found) {
                        out.BeginObject();
                        out.Key("definitions");
                        out.BeginArray();
                        for (int index : item.definitions) WriteDefinition(out, analysis, item.device, index);
                        out.EndArray();
                        out.Key("device");
                        WriteDevice(out, analysis, item.device);
                        out.EndObject();
                      }
                      out.EndArray();
                    }});
  if (search.found.empty()) {
    fields.push_back({"candidates", [&analysis, &search](JsonWriter& out) {
                        WriteDevices(out, analysis, search.candidates);
                      }});
  }
  return fields;
}

int RunFind(const FindArguments& args) {
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  const NamePattern pattern(args.name);
  const Search search = args.byId ? FindById(*analysis, args.id)
                                  : FindByName(*analysis, pattern);
  {
    OutputBuffer out(stdout);
    if (args.json) {
      JsonWriter writer(out);
      WriteDocument(writer, *analysis, MatchesFields(*analysis, search));
    } else {
      bool first = true;
      for (const Found& item : search.found) {
        for (int index : item.definitions) {
          if (!first) out.Append('\n');
          first = false;
          WriteFoundText(out, *analysis, item.device, index);
        }
      }
    }
  }
  if (search.found.empty()) ReportMiss(args, *analysis, pattern, search);
  SayReadErrors(args, *analysis);
  return search.found.empty() ? kExitNotFound : kExitSuccess;
}

}  // namespace

Command AddFindCommand(CLI::App& app) {
  auto args = std::make_shared<FindArguments>();
  CLI::App* command = app.add_subcommand("find", "print where the visible definitions with an id, or those of the "
                                                 "devices a name matches, stand and their fields; exit status 1 "
                                                 "when there is none");
  AddCommonOptions(command, *args, true);
  CLI::Option* name = command->add_option("NAME", args->name, "device name (ASCII case ignored, '_' matches a "
                                                              "blank) or shell-style wildcard");
  CLI::Option* id = AddIdOption(command, args->id);
  name->excludes(id);
  command->callback([name, id, args]() {
    if (name->count() == 0 && id->count() == 0) throw CLI::RequiredError("NAME or --id");
    args->byId = id->count() > 0;
  });
  return Command{command, [args] { return RunFind(*args); }};
}
