// textDocument/foldingRange: each device from its name to the end of its
// block, and each header list that spans lines.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_FOLDING_RANGES_H_
#define DEVDEF_TOOLS_LSP_FEATURES_FOLDING_RANGES_H_

#include <nlohmann/json.hpp>

#include "tools/lsp/document_view.h"

// FoldingRanges of whole lines, in the order of their first line.
nlohmann::json FoldingRanges(const DocumentView& view);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_FOLDING_RANGES_H_
