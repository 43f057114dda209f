#include "tools/commands/command.h"

#include <cstdio>

CLI::Option* AddCommonOptions(CLI::App* command, CommonArguments& args, bool withJson) {
  CLI::Option* file = command->add_option("FILE", args.file, "definition file")->required();
  command->add_option("--layout", args.options.layout, "read as layout 1, 2 or 7 (default: the file's version line)")
      ->check(CLI::IsMember({1, 2, 7}));
  command->add_option("--generation", args.options.generation, "the generation in force: 3, 4 or 5")
      ->check(CLI::IsMember({3, 4, 5}))
      ->capture_default_str();
  command->add_flag("--check-ids", args.options.checkIds, "report duplicate definition ids while reading");
  if (withJson) command->add_flag("--json", args.json, "print one JSON document instead of text");
  return file;
}

CLI::Option* AddIdOption(CLI::App* command, std::int64_t& id) {
  return command->add_option("--id", id, "definition id, signed or unsigned 32-bit")
      ->check(CLI::Range(static_cast<std::int64_t>(INT32_MIN), static_cast<std::int64_t>(UINT32_MAX)));
}

std::unique_ptr<Analysis> ReadForCommand(const CommonArguments& args) {
  std::unique_ptr<Analysis> analysis = Analysis::ReadFile(args.file, args.options);
  if (analysis != nullptr && analysis->Read()) {
    if (!analysis->Exact()) {
      std::fprintf(stderr,
                   "devdef: warning: the places given for '%s' may be off: the replay of the read lost its step "
                   "(please report this file)\n",
                   args.file.c_str());
    }
    return analysis;
  }
  if (analysis != nullptr && !analysis->Error().empty()) {
    std::fprintf(stderr, "devdef: %s\n", analysis->Error().c_str());
  } else {
    std::fprintf(stderr, "devdef: cannot read '%s' as a definition file\n", args.file.c_str());
  }
  return nullptr;
}

void PrintJson(const nlohmann::json& document) {
  std::printf("%s\n", document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}
