// textDocument/definition: from a package, adapter or module number of a
// definition line to the entry of its header list.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_GOTO_DEFINITION_H_
#define DEVDEF_TOOLS_LSP_FEATURES_GOTO_DEFINITION_H_

#include <cstddef>
#include <nlohmann/json.hpp>

#include "tools/lsp/document_view.h"

// The Location of the list entry that the number at offset names, or null
// when there is no such number or entry.
nlohmann::json DefinitionAt(const DocumentView& view, size_t offset);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_GOTO_DEFINITION_H_
