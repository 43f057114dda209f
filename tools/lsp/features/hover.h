// textDocument/hover: what the thing under a position is, in words. A
// number of a definition line gives its field and value, and for packages,
// adapters and modules the name from its header list; the keyword gives the
// generation and whether it is visible in the generation in force; a kind,
// manufacturer or device name gives its counts; a header list entry its
// number.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_HOVER_H_
#define DEVDEF_TOOLS_LSP_FEATURES_HOVER_H_

#include <cstddef>
#include <nlohmann/json.hpp>

#include "tools/lsp/document_view.h"

// The Hover result for the byte at offset ({"contents", "range"}), or null
// when nothing is there.
nlohmann::json HoverAt(const DocumentView& view, size_t offset);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_HOVER_H_
