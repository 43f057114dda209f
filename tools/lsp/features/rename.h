// textDocument/prepareRename and textDocument/rename: kinds, manufacturers
// and devices by their names, and header list entries. The rename is an
// operation of the edit engine, so it is verified as every edit is: the
// renamed file must read as the old one with the one name changed. A device
// is named by its record, so devices that share a name are no problem.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_RENAME_H_
#define DEVDEF_TOOLS_LSP_FEATURES_RENAME_H_

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/lsp/document_view.h"

// {"range", "placeholder"} of the name at offset, or null where nothing
// that can be renamed stands.
nlohmann::json PrepareRenameAt(const DocumentView& view, size_t offset);

// The WorkspaceEdit that renames the thing at offset to newName (as the
// editor's text), or null where nothing that can be renamed stands.
// RpcError (RequestFailed) with the engine's reason when the edit is refused
// or names nothing, or when the name has characters the file cannot hold.
nlohmann::json RenameAt(const DocumentView& view, size_t offset, const std::string& newName);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_RENAME_H_
