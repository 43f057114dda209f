#include "tools/commands/git_diff_arguments.h"

#include <algorithm>
#include <cstdlib>

namespace {

// An object name in hexadecimal (git gives 40 or 64 digits), or "." for
// no file.
bool IsHash(const std::string& text) {
  if (text == ".") return true;
  if (text.size() < 4 || text.size() > 64) return false;
  return std::all_of(text.begin(), text.end(), [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); });
}

// A file mode in octal, or "." for no file.
bool IsMode(const std::string& text) {
  if (text == ".") return true;
  if (text.empty() || text.size() > 6) return false;
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '7'; });
}

// Whether the seven arguments from first on have the shape of git's.
bool SevenFrom(const std::vector<std::string>& args, size_t first) {
  return IsHash(args[first + 2]) && IsMode(args[first + 3]) && IsHash(args[first + 5]) && IsMode(args[first + 6]);
}

}  // namespace

bool RunByGit() { return std::getenv("GIT_DIFF_PATH_TOTAL") != nullptr; }

size_t GitArgumentCount(const std::vector<std::string>& args, bool runByGit) {
  if (args.size() >= 9 && SevenFrom(args, args.size() - 9)) return 9;
  if (args.size() >= 7 && SevenFrom(args, args.size() - 7)) return 7;
  return runByGit && !args.empty() ? 1 : 0;
}

bool MarkGitDiffArguments(std::vector<std::string>& args) {
  const bool runByGit = RunByGit();
  if (args.empty() || args[0] != "diff") return false;
  const size_t count = GitArgumentCount(std::vector<std::string>(args.begin() + 1, args.end()), runByGit);
  if (count == 0) return runByGit;
  const auto first = args.end() - static_cast<long>(count);
  // A "--" of the configured command already ends the options.
  if (std::find(args.begin() + 1, first, "--") == first) args.insert(first, "--");
  return runByGit;
}

bool ParseGitDiffArguments(const std::vector<std::string>& files, bool runByGit, GitDiffArguments* git) {
  if (files.size() == 1 && runByGit) {
    git->form = GitDiffArguments::Form::kUnmerged;
    git->oldPath = git->newPath = files[0];
    return true;
  }
  if ((files.size() != 7 && files.size() != 9) || !SevenFrom(files, 0)) return false;
  git->form = files.size() == 9 ? GitDiffArguments::Form::kRenameOrCopy : GitDiffArguments::Form::kChange;
  git->oldPath = files[0];
  git->oldFile = files[1];
  git->oldMode = files[3];
  git->newFile = files[4];
  git->newMode = files[6];
  git->newPath = files.size() == 9 ? files[7] : files[0];
  // The rename information is git's header lines: "similarity index 90%",
  // then "rename from ..." or "copy from ...".
  git->copy = files.size() == 9 &&
              (files[8].compare(0, 10, "copy from ") == 0 || files[8].find("\ncopy from ") != std::string::npos);
  return true;
}
