// textDocument/semanticTokens/full and /range: what the reader took each
// part of a definition file for, so that an editor colours it so. Kinds,
// manufacturers and devices by their names, the keywords that opened the
// version line, the header lists, the definition lines and the housing lines,
// header list entries and the numbers that name them, ids, values, texts and
// marks; a number that the reader took differently from how it looks (where
// a "number" finding stands) carries the modifier misread. Everything comes
// from the analysis's records; what the reader did not take (comments, lines
// it passed over) gets no token.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_SEMANTIC_TOKENS_H_
#define DEVDEF_TOOLS_LSP_FEATURES_SEMANTIC_TOKENS_H_

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/lsp/document_view.h"

// The legend of the initialize result: {"tokenTypes", "tokenModifiers"}.
nlohmann::json SemanticTokensLegend();

// The JSON text of SemanticTokens ({"data": [...]}) for the tokens that
// overlap the bytes [begin, end) of the document, in the protocol's relative
// form, positions counted as view.positions counts them.
std::string SemanticTokens(const DocumentView& view, size_t begin, size_t end);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_SEMANTIC_TOKENS_H_
