// textDocument/codeAction: quick fixes for the findings that have one fix
// beyond doubt: a ";" behind the last entry of a one-line header list, a "}"
// that closes the block the end of the file cut off, a line end behind the
// last line, and an entry at the end of a header list for a number just past
// it. A fix that an edit operation makes (the entry) is made by the edit
// engine; the others are bytes verified by reading the fixed text again
// (verified_fix.h). A fix that does not verify is not offered.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_CODE_ACTIONS_H_
#define DEVDEF_TOOLS_LSP_FEATURES_CODE_ACTIONS_H_

#include <cstddef>
#include <nlohmann/json.hpp>

#include "tools/lsp/document_view.h"

// At most this many findings are fixed for one request: each fix reads the
// file again.
constexpr size_t kMaxFixesPerRequest = 16;

// The CodeActions (kind "quickfix", each with the diagnostic it fixes) for
// the findings that touch the bytes [begin, end].
nlohmann::json CodeActionsFor(const DocumentView& view, size_t begin, size_t end);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_CODE_ACTIONS_H_
