// devdef: the command-line companion of the devdef library.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "devdef/devdef.h"
#include "tools/catalogue_file.h"
#include "tools/tree_printer.h"

namespace {

const char kUsage[] =
    "usage: devdef <command> [options] FILE\n"
    "\n"
    "Reads a device definition file through the devdef library.\n"
    "\n"
    "commands:\n"
    "  tree FILE      print the catalogue: kinds, manufacturers, devices and\n"
    "                 their visible definitions\n"
    "\n"
    "options:\n"
    "  --generation N  the generation in force: 3, 4 or 5 (default 5)\n"
    "  --check-ids     report duplicate definition ids while reading\n"
    "  -h, --help      show this help\n"
    "\n"
    "exit status: 0 success, 1 nothing found, 2 usage or file error\n";

int UsageError(const std::string& message) {
  std::fprintf(stderr, "devdef: %s\n(run 'devdef --help' for usage)\n", message.c_str());
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return UsageError("no command given");
  const std::string command = argv[1];
  if (command == "-h" || command == "--help" || command == "help") {
    std::fputs(kUsage, stdout);
    return 0;
  }

  CatalogueOptions options;
  std::vector<std::string> operands;
  for (int i = 2; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "-h" || arg == "--help") {
      std::fputs(kUsage, stdout);
      return 0;
    } else if (arg == "--check-ids") {
      options.checkIds = true;
    } else if (arg == "--generation") {
      if (i + 1 >= argc) return UsageError("--generation needs a value");
      const std::string value = argv[++i];
      if (value != "3" && value != "4" && value != "5") return UsageError("--generation takes 3, 4 or 5");
      options.generation = value[0] - '0';
    } else if (arg.size() > 1 && arg[0] == '-') {
      return UsageError("unknown option '" + arg + "'");
    } else {
      operands.push_back(arg);
    }
  }

  if (command == "tree") {
    if (operands.size() != 1) return UsageError("tree takes exactly one FILE");
    CatalogueFile catalogue(operands[0], options);
    if (!catalogue.Read()) return 2;
    PrintTree(stdout, catalogue.Controller());
    return 0;
  }
  return UsageError("unknown command '" + command + "'");
}
