// textDocument/documentSymbol: the outline of a definition file, kinds
// holding manufacturers holding devices holding their definitions (by id),
// named as the library names them. Written straight into JSON text: a large
// file has tens of thousands of symbols.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_DOCUMENT_SYMBOLS_H_
#define DEVDEF_TOOLS_LSP_FEATURES_DOCUMENT_SYMBOLS_H_

#include <string>

#include "tools/lsp/document_view.h"

// The JSON text of DocumentSymbol trees when hierarchical, else of a flat
// list of SymbolInformation with each one's container, for clients that
// take no trees.
std::string DocumentSymbols(const DocumentView& view, bool hierarchical);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_DOCUMENT_SYMBOLS_H_
