// devdef: the command-line companion of the devdef library.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
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
    "  find FILE --id N\n"
    "                 print where the visible definition with id N stands and\n"
    "                 its fields; exit status 1 when there is none\n"
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

// An id as the file writes it: a 32-bit number, given signed or unsigned.
bool ParseId(const char* text, int* pId) {
  char* end = nullptr;
  errno = 0;
  const long long value = std::strtoll(text, &end, 10);
  if (errno != 0 || end == text || *end != '\0' || value < INT32_MIN || value > UINT32_MAX) return false;
  *pId = static_cast<int>(static_cast<std::uint32_t>(value));
  return true;
}

std::string IdText(int id) { return std::to_string(static_cast<std::uint32_t>(id)); }

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return UsageError("no command given");
  const std::string command = argv[1];
  if (command == "-h" || command == "--help" || command == "help") {
    std::fputs(kUsage, stdout);
    return 0;
  }

  CatalogueOptions options;
  bool haveId = false;
  int id = 0;
  std::vector<std::string> operands;
  for (int i = 2; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "-h" || arg == "--help") {
      std::fputs(kUsage, stdout);
      return 0;
    } else if (arg == "--check-ids") {
      options.checkIds = true;
    } else if (arg == "--id") {
      if (i + 1 >= argc) return UsageError("--id needs a value");
      if (!ParseId(argv[++i], &id)) return UsageError("--id takes a whole number");
      haveId = true;
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
  if (command == "find") {
    if (operands.size() != 1) return UsageError("find takes exactly one FILE");
    if (!haveId) return UsageError("find needs --id N");
    CatalogueFile catalogue(operands[0], options);
    if (!catalogue.Read()) return 2;
    if (PrintFoundId(stdout, catalogue.Controller(), id)) return 0;
    std::fprintf(stderr, "devdef: no visible definition has the id %s\n", IdText(id).c_str());
    return 1;
  }
  return UsageError("unknown command '" + command + "'");
}
