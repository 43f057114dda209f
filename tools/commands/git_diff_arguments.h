// The arguments git hands an external diff program (diff.<driver>.command,
// GIT_EXTERNAL_DIFF), which devdef diff takes in place of OLD NEW:
//   path old-file old-hex old-mode new-file new-hex new-mode
// for a file added, removed or changed; the same and new-path rename-info
// for a file renamed or copied; path alone for a file that is unmerged.
// git sets GIT_DIFF_PATH_TOTAL for the program it runs so, and takes any
// exit status but 0 for a failure that stops it.
#ifndef DEVDEF_TOOLS_COMMANDS_GIT_DIFF_ARGUMENTS_H_
#define DEVDEF_TOOLS_COMMANDS_GIT_DIFF_ARGUMENTS_H_

#include <string>
#include <vector>

struct GitDiffArguments {
  enum class Form { kUnmerged, kChange, kRenameOrCopy };
  Form form = Form::kChange;
  std::string oldPath;  // as the repository names the file on each side
  std::string newPath;
  std::string oldFile;  // where each side's content is; /dev/null where there is none
  std::string newFile;
  std::string oldMode;  // in octal; "." where there is no file
  std::string newMode;
  bool copy = false;  // of a rename or copy: a copy
};

// Whether git runs this process as its external diff program.
bool RunByGit();

// How many of the last arguments are git's: 9 or 7 when they have the
// shape of git's (hashes and modes in their places), 1 when git runs the
// program with one argument; else 0.
size_t GitArgumentCount(const std::vector<std::string>& args, bool runByGit);

// Puts "--" in front of git's arguments at the end of the arguments of
// "diff" (args without the program's name), so that a path that starts
// with "-" is not taken for an option. Gives whether git runs the program.
bool MarkGitDiffArguments(std::vector<std::string>& args);

// The arguments of files as git's, when they have a shape of git's.
bool ParseGitDiffArguments(const std::vector<std::string>& files, bool runByGit, GitDiffArguments* git);

#endif  // DEVDEF_TOOLS_COMMANDS_GIT_DIFF_ARGUMENTS_H_
