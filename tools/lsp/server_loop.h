// The language server on two streams: a thread reads and parses the
// messages of the input while the server works, and the server takes every
// message that arrived at once, so that a run of changes to a document is
// analysed once and a request cancelled while it waited is not worked on.
// Diagnostics are published when the messages that arrived are handled.
#ifndef DEVDEF_TOOLS_LSP_SERVER_LOOP_H_
#define DEVDEF_TOOLS_LSP_SERVER_LOOP_H_

#include <string>

#include "tools/lsp/server_settings.h"

// Serves the client on input and output (file descriptors) until it sends
// exit, the input ends or the output fails; gives the exit status: 0 when
// the client asked to shut down first, else 1. Writes to a closed output
// must not raise SIGPIPE (the caller ignores it).
int RunLanguageServer(int input, int output, const ServerSettings& settings, const std::string& version);

#endif  // DEVDEF_TOOLS_LSP_SERVER_LOOP_H_
