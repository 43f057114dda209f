// textDocument/completion: the entries of a header list where the reader
// took a number that names one, a package, module or adapter number of a
// definition line or a number of a DEVICE_HOUSING_LIST line. Each item is
// labelled with the entry's name and says its number in its detail; what it
// inserts is the number, since the file holds numbers, in place of the number
// under the position.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_COMPLETION_H_
#define DEVDEF_TOOLS_LSP_FEATURES_COMPLETION_H_

#include <cstddef>
#include <nlohmann/json.hpp>

#include "tools/lsp/document_view.h"

// The CompletionList for the position at offset: empty where no number that
// names a list entry stands at, or right behind, offset.
nlohmann::json CompletionAt(const DocumentView& view, size_t offset);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_COMPLETION_H_
