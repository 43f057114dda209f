// textDocument/references: from a header list entry (or a number that
// names one) to every number of a definition line that names it.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_REFERENCES_H_
#define DEVDEF_TOOLS_LSP_FEATURES_REFERENCES_H_

#include <cstddef>
#include <nlohmann/json.hpp>

#include "tools/lsp/document_view.h"

// The Locations of the numbers that name the entry at offset, in the order
// of the file, with the entry itself first when includeDeclaration; an
// empty array when offset is at no entry or such number.
nlohmann::json ReferencesAt(const DocumentView& view, size_t offset, bool includeDeclaration);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_REFERENCES_H_
