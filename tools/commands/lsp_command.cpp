// devdef lsp: the language server for editors, on standard input and output.
#include <unistd.h>

#include <csignal>
#include <memory>

#include "tools/commands/command.h"
#include "tools/lsp/server_loop.h"

Command AddLspCommand(CLI::App& app) {
  auto settings = std::make_shared<ServerSettings>();
  CLI::App* command = app.add_subcommand(
      "lsp",
      "serve an editor as a language server (LSP over standard input and output): check's findings as "
      "diagnostics, hover, go to definition, outline, references and folding");
  command->add_option("--layout", settings->layout, "read as layout 1, 2 or 7 (default: each file's version line)")
      ->check(OneOf({"1", "2", "7"}));
  command->add_option("--generation", settings->generation, "the generation in force: 3, 4 or 5")
      ->check(OneOf({"3", "4", "5"}))
      ->capture_default_str();
  command->add_flag("--check-ids", settings->checkIds, "check definition ids while reading");
  command->add_flag("--stdio", "talk over standard input and output, the only way there is (clients may pass it)");
  return Command{command, [settings] {
                   // A client that goes away must end the server, not kill it mid-write.
                   std::signal(SIGPIPE, SIG_IGN);
                   return RunLanguageServer(STDIN_FILENO, STDOUT_FILENO, *settings, DEVDEF_VERSION);
                 }};
}
