// JSON written straight into text, for the large results of the server
// (the diagnostics and the outline of a big file) where a tree of JSON
// values would cost many times the text itself.
#ifndef DEVDEF_TOOLS_LSP_PROTOCOL_JSON_TEXT_H_
#define DEVDEF_TOOLS_LSP_PROTOCOL_JSON_TEXT_H_

#include <cstddef>
#include <string>

#include "tools/analysis/source_map.h"
#include "tools/lsp/protocol/text_positions.h"

// Appends text as a JSON string (in quotes); bytes that are no UTF-8
// become U+FFFD.
void AppendJsonString(std::string& out, const char* text, size_t length);
void AppendJsonString(std::string& out, const std::string& text);
void AppendJsonNumber(std::string& out, long long number);
// {"line":L,"character":C} and {"start":...,"end":...} of the protocol.
void AppendJsonPosition(std::string& out, const PositionConverter& positions, const TextPoint& point);
void AppendJsonRange(std::string& out, const PositionConverter& positions, const TextRange& range);

#endif  // DEVDEF_TOOLS_LSP_PROTOCOL_JSON_TEXT_H_
