// devdef diff: what changed between two catalogues, by meaning. It takes
// OLD NEW, or the arguments git hands an external diff program
// (git_diff_arguments.h). As git's program it never stops git: it exits 0
// and shows a side that it cannot read as a catalogue as a diff of lines.
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tools/commands/command.h"
#include "tools/commands/git_diff_arguments.h"
#include "tools/diff/catalogue_diff.h"
#include "tools/diff/diff_output.h"
#include "tools/diff/same_meaning.h"
#include "tools/diff/unified_diff.h"
#include "tools/output/diff_json.h"
#include "tools/output/output_buffer.h"
#include "tools/text/control_escape.h"
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

const char* const kNoFile = "/dev/null";

// A side of the comparison; git names a file that does not exist on that
// side /dev/null, which is an empty catalogue. An error names the file as
// shownAs.
std::unique_ptr<Analysis> ReadSide(const std::string& path, const std::string& shownAs, const AnalysisOptions& options,
                                   std::string* error) {
  if (path == kNoFile) {
    AnalysisOptions empty = options;
    empty.layout = 1;
    return Analysis::ReadText(shownAs, "DEF_LAYOUT_VERSION = 1 \n", empty);
  }
  std::unique_ptr<Analysis> analysis = Analysis::ReadFile(path, options);
  if (analysis->Usable()) return analysis;
  *error = analysis->Error();
  const size_t at = error->find("'" + path + "'");
  if (at != std::string::npos) error->replace(at + 1, path.size(), shownAs);
  return nullptr;
}

// The bytes of a file; false when it cannot be read.
bool ReadBytes(const std::string& path, std::string* bytes) {
  if (path == kNoFile) return true;
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream all;
  all << in.rdbuf();
  *bytes = all.str();
  return !in.bad();
}

// Prints the changes in the form asked for; gives whether there were any.
bool PrintChanges(const DiffArguments& args, Analysis& oldFile, const std::string& oldName, Analysis& newFile,
                  const std::string& newName, const std::string& head) {
  DiffOptions options;
  options.visibleOnly = args.visibleOnly;
  const std::vector<DiffChange> changes = DiffCatalogues(oldFile, newFile, options);
  // One encoding shows both files: UTF-8 when both are UTF-8.
  TextEncoding encoding = DetectTextEncoding(oldFile.Bytes()) == TextEncoding::kUtf8
                              ? DetectTextEncoding(newFile.Bytes())
                              : TextEncoding::kWindows1252;
  if (!args.encoding.empty()) ParseTextEncoding(args.encoding, &encoding);
  SetShownEncoding(encoding);
  // JSON escapes control characters itself; text shows them escaped.
  const ShowBytes show = [](const std::string& bytes) { return EscapeControls(ShownText(bytes)); };
  if (args.json) {
    OutputBuffer out(stdout);
    JsonWriter writer(out);
    WriteDiffJson(writer, oldName, oldFile.Layout(), newName, newFile.Layout(), changes);
  } else if (args.stat) {
    PrintDiffStat(stdout, changes, show);
  } else if (!changes.empty()) {
    std::fputs(head.c_str(), stdout);
    PrintDiffText(stdout, changes, StylesWanted(stdout, args.noColor), show);
  } else if (oldFile.Bytes() != newFile.Bytes() && oldFile.Path() != kNoFile && newFile.Path() != kNoFile) {
    // A change that alters no meaning still changed the file.
    std::printf("%sno change in meaning (%s)\n", head.c_str(), CompareLines(oldFile, newFile).Text().c_str());
  } else if (head.find('\n') + 1 < head.size()) {
    std::fputs(head.c_str(), stdout);  // a rename, a new mode, a file added or deleted
  }
  return !changes.empty();
}

// As git's external diff program: git's header, then the changes; a side
// that is no catalogue gets a diff of lines, with a line that says why.
int RunGitDriver(const DiffArguments& args, const GitDiffArguments& git) {
  if (git.form == GitDiffArguments::Form::kUnmerged) {
    std::printf("* Unmerged path %s\n", git.oldPath.c_str());
    return kExitSuccess;
  }
  const std::string oldName = git.oldFile == kNoFile ? kNoFile : "a/" + git.oldPath;
  const std::string newName = git.newFile == kNoFile ? kNoFile : "b/" + git.newPath;
  std::string head = "devdef diff a/" + git.oldPath + " b/" + git.newPath + "\n";
  if (git.form == GitDiffArguments::Form::kRenameOrCopy) {
    head += (git.copy ? "copied " : "renamed ") + git.oldPath + " -> " + git.newPath + "\n";
  }
  if (git.oldFile == kNoFile) {
    head += "new file mode " + git.newMode + "\n";
  } else if (git.newFile == kNoFile) {
    head += "deleted file mode " + git.oldMode + "\n";
  } else if (git.oldMode != git.newMode) {
    head += "mode " + git.oldMode + " -> " + git.newMode + "\n";
  }
  std::string why;
  std::unique_ptr<Analysis> oldFile = ReadSide(git.oldFile, oldName, args.options, &why);
  std::unique_ptr<Analysis> newFile = oldFile != nullptr ? ReadSide(git.newFile, newName, args.options, &why) : nullptr;
  if (newFile != nullptr) {
    PrintChanges(args, *oldFile, oldName, *newFile, newName, head);
    return kExitSuccess;
  }
  if (args.json || args.stat) {
    std::fprintf(stderr, "devdef: %s\n", why.c_str());
    return kExitSuccess;
  }
  std::string oldBytes, newBytes;
  if (!ReadBytes(git.oldFile, &oldBytes) || !ReadBytes(git.newFile, &newBytes)) {
    std::printf("%sdevdef: %s\n", head.c_str(), why.c_str());
    return kExitSuccess;
  }
  std::printf("%sdevdef: %s; the lines are compared instead\n%s", head.c_str(), why.c_str(),
              UnifiedDiff(oldBytes, newBytes, oldName, newName).c_str());
  return kExitSuccess;
}

int RunDiff(const DiffArguments& args) {
  const bool runByGit = RunByGit();
  GitDiffArguments git;
  if (ParseGitDiffArguments(args.files, runByGit, &git)) return RunGitDriver(args, git);
  if (args.files.size() != 2) {
    std::fprintf(stderr, "devdef: diff takes OLD and NEW (or the arguments git hands an external diff program); see "
                         "'devdef diff --help'\n");
    return runByGit ? kExitSuccess : kExitFileError;
  }
  // Each file keeps its own catalogue and list names, so both stay alive.
  std::string why;
  std::unique_ptr<Analysis> oldFile = ReadSide(args.files[0], args.files[0], args.options, &why);
  std::unique_ptr<Analysis> newFile =
      oldFile != nullptr ? ReadSide(args.files[1], args.files[1], args.options, &why) : nullptr;
  if (newFile == nullptr) {
    std::fprintf(stderr, "devdef: %s\n", why.c_str());
    return kExitFileError;
  }
  return PrintChanges(args, *oldFile, args.files[0], *newFile, args.files[1], std::string()) ? kExitNotFound
                                                                                              : kExitSuccess;
}

}  // namespace

Command AddDiffCommand(CLI::App& app) {
  auto args = std::make_shared<DiffArguments>();
  CLI::App* command = app.add_subcommand(
      "diff", "what changed between two catalogues by meaning: list entries, kinds, manufacturers, devices (moved "
              "and renamed ones too) and definition fields, numbers compared by the names they stand for; exit "
              "status 0 when nothing changed, 1 when something did, 2 on trouble (as git's diff driver, always 0)");
  command->add_option("OLD NEW", args->files, "the two definition files (or the arguments git hands an external diff)")
      ->required()
      ->expected(1, 9);
  command->add_option("--layout", args->options.layout, "read both as layout 1, 2 or 7 (default: each file's own)")
      ->check(OneOf({"1", "2", "7"}));
  command->add_option("--generation", args->options.generation, "the generation in force: 3, 4 or 5")
      ->check(OneOf({"3", "4", "5"}))
      ->capture_default_str();
  command->add_option("--encoding", args->encoding,
                      "how names and texts are shown: utf-8, cp1252 or latin1 (default: UTF-8 when both files are "
                      "UTF-8, else cp1252)")
      ->check(OneOf({"utf-8", "cp1252", "latin1"}, true));
  command->add_flag("--visible-only", args->visibleOnly, "compare only the definitions of the generation in force");
  command->add_flag("--stat", args->stat, "print counts of the changes instead of the changes");
  command->add_flag("--json", args->json, "print one JSON document");
  command->add_flag("--no-color", args->noColor, "no colour, also on a terminal (NO_COLOR in the environment too)");
  return Command{command, [args] { return RunDiff(*args); }};
}
