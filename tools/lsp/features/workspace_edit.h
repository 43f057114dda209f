// Edits of a document through the edit engine, and their replacements of
// bytes as the protocol's WorkspaceEdit: each span as a range in the
// document's positions, its bytes as the editor's text. Rename and the code
// actions answer with these.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_WORKSPACE_EDIT_H_
#define DEVDEF_TOOLS_LSP_FEATURES_WORKSPACE_EDIT_H_

#include <nlohmann/json.hpp>
#include <vector>

#include "tools/edit/edit_engine.h"
#include "tools/lsp/document_view.h"

// {"changes": {uri: [TextEdit...]}} of replacements of the document's bytes,
// which are in file order and do not overlap.
nlohmann::json WorkspaceEditOf(const DocumentView& view, const std::vector<ByteReplacement>& replacements);

// The operations applied to the document by the edit engine, verified as
// the command line verifies them. Names and values in the operations are
// the editor's text (UTF-8); the engine writes them as the document's
// encoding holds them.
EditResult ApplyToDocument(const DocumentView& view, const std::vector<EditOperation>& operations);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_WORKSPACE_EDIT_H_
