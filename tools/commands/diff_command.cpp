// devdef diff: what changed between two catalogues, by meaning. It takes
// OLD NEW, or the seven arguments git hands an external diff program
// (path, old file, old hash, old mode, new file, new hash, new mode).
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/diff/catalogue_diff.h"
#include "tools/diff/diff_output.h"
#include "tools/output/diff_json.h"
#include "tools/text/terminal_style.h"
#include "tools/text/text_encoding.h"

namespace {

struct DiffArguments {
  std::vector<std::string> files;
  AnalysisOptions options;
  bool json = false;
  bool stat = false;
  bool noColor = false;
  bool visibleOnly = false;
  std::string encoding;
};

// A side of the comparison; git names a file that does not exist on that
// side /dev/null, which is an empty catalogue.
std::unique_ptr<Analysis> ReadSide(const std::string& path, const std::string& shownAs, const AnalysisOptions& options) {
  std::unique_ptr<Analysis> analysis;
  if (path == "/dev/null") {
    AnalysisOptions empty = options;
    empty.layout = 1;
    return Analysis::ReadText(shownAs, "DEF_LAYOUT_VERSION = 1 \n", empty);
  }
  analysis = Analysis::ReadFile(path, options);
  if (!analysis->Usable()) {
    std::fprintf(stderr, "devdef: %s\n", analysis->Error().c_str());
    return nullptr;
  }
  return analysis;
}

int RunDiff(const DiffArguments& args) {
  const bool gitDriver = args.files.size() == 7;
  if (args.files.size() != 2 && !gitDriver) {
    std::fprintf(stderr, "devdef: diff takes OLD and NEW (or the seven arguments of git's external diff); see "
                         "'devdef diff --help'\n");
    return kExitFileError;
  }
  const std::string& oldPath = gitDriver ? args.files[1] : args.files[0];
  const std::string& newPath = gitDriver ? args.files[4] : args.files[1];
  const std::string oldName = gitDriver ? "a/" + args.files[0] : oldPath;
  const std::string newName = gitDriver ? "b/" + args.files[0] : newPath;
  // Each file keeps its own catalogue and list names, so both stay alive.
  std::unique_ptr<Analysis> oldFile = ReadSide(oldPath, oldName, args.options);
  if (oldFile == nullptr) return kExitFileError;
  std::unique_ptr<Analysis> newFile = ReadSide(newPath, newName, args.options);
  if (newFile == nullptr) return kExitFileError;

  DiffOptions options;
  options.visibleOnly = args.visibleOnly;
  const std::vector<DiffChange> changes = DiffCatalogues(*oldFile, *newFile, options);
  // One encoding shows both files: UTF-8 when both are UTF-8.
  TextEncoding encoding = DetectTextEncoding(oldFile->Bytes()) == TextEncoding::kUtf8
                              ? DetectTextEncoding(newFile->Bytes())
                              : TextEncoding::kWindows1252;
  if (!args.encoding.empty()) ParseTextEncoding(args.encoding, &encoding);
  SetShownEncoding(encoding);
  const ShowBytes show = [](const std::string& bytes) { return ShownText(bytes); };
  if (args.json) {
    PrintJson(DiffJson(oldName, oldFile->Layout(), newName, newFile->Layout(), changes, show));
  } else if (args.stat) {
    PrintDiffStat(stdout, changes, show);
  } else {
    if (gitDriver && !changes.empty()) std::printf("devdef diff %s %s\n", oldName.c_str(), newName.c_str());
    PrintDiffText(stdout, changes, StylesWanted(stdout, args.noColor), show);
  }
  // git takes any status but 0 from an external diff for a failure.
  if (gitDriver) return kExitSuccess;
  return changes.empty() ? kExitSuccess : kExitNotFound;
}

}  // namespace

Command AddDiffCommand(CLI::App& app) {
  auto args = std::make_shared<DiffArguments>();
  CLI::App* command = app.add_subcommand(
      "diff", "what changed between two catalogues by meaning: list entries, kinds, manufacturers, devices (moved "
              "ones too) and definition fields, numbers compared by the names they stand for; exit status 0 when "
              "nothing changed, 1 when something did, 2 on trouble");
  command->add_option("OLD NEW", args->files, "the two definition files (or git's seven external diff arguments)")
      ->required()
      ->expected(2, 7);
  command->add_option("--layout", args->options.layout, "read both as layout 1, 2 or 7 (default: each file's own)")
      ->check(CLI::IsMember({1, 2, 7}));
  command->add_option("--generation", args->options.generation, "the generation in force: 3, 4 or 5")
      ->check(CLI::IsMember({3, 4, 5}))
      ->capture_default_str();
  command->add_option("--encoding", args->encoding,
                      "how names and texts are shown: utf-8, cp1252 or latin1 (default: UTF-8 when both files are "
                      "UTF-8, else cp1252)")
      ->check(CLI::IsMember({"utf-8", "cp1252", "latin1"}, CLI::ignore_case));
  command->add_flag("--visible-only", args->visibleOnly, "compare only the definitions of the generation in force");
  command->add_flag("--stat", args->stat, "print counts of the changes instead of the changes");
  command->add_flag("--json", args->json, "print one JSON document");
  command->add_flag("--no-color", args->noColor, "no colour, also on a terminal (NO_COLOR in the environment too)");
  return Command{command, [args] { return RunDiff(*args); }};
}
