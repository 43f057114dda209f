// Places in a document as the analysis gives them (1-based lines, 1-based
// byte columns) and as the protocol counts them (0-based lines, columns in
// UTF-16 code units). In bytes of one byte per character the two columns
// are the same; in UTF-8 only the lines asked about are read, and a run of
// places along one line is counted in one pass.
#ifndef DEVDEF_TOOLS_LSP_PROTOCOL_TEXT_POSITIONS_H_
#define DEVDEF_TOOLS_LSP_PROTOCOL_TEXT_POSITIONS_H_

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "tools/analysis/source_map.h"
#include "tools/text/buffer_encoding.h"

// A 0-based line and a 0-based column in UTF-16 code units.
struct LspPosition {
  long line = 0;
  long character = 0;
};

class PositionConverter {
 public:
  // bytes (in encoding) and map, made of the same bytes, must outlive the
  // converter.
  PositionConverter(std::string_view bytes, const SourceMap& map, BufferEncoding encoding);

  // The protocol's position of a point of the analysis.
  LspPosition ToPosition(const TextPoint& point) const;
  // Positions given from now on stand lines further down: the bytes are a
  // piece of a document whose lines are the same but counted from another
  // line.
  void ShiftLines(long lines) { m_lineShift = lines; }
  // The byte offset of a position: a column past the line's end gives the
  // line end, one inside a character the character's start. False when the
  // line is not in the document.
  bool ToOffset(LspPosition position, size_t* offset) const;

  // {"line", "character"} and {"start", "end"} as the protocol writes them.
  nlohmann::json PositionJson(const TextPoint& point) const;
  nlohmann::json RangeJson(const TextRange& range) const;

 private:
  // UTF-16 code units of the bytes [lineStart, offset).
  long Units(size_t lineStart, size_t offset) const;

  std::string_view m_bytes;
  const SourceMap& m_map;
  bool m_singleByte;
  long m_lineShift = 0;
  // The last count: places along a line continue from it.
  mutable size_t m_lastLine = static_cast<size_t>(-1);
  mutable size_t m_lastOffset = 0;
  mutable long m_lastUnits = 0;
};

#endif  // DEVDEF_TOOLS_LSP_PROTOCOL_TEXT_POSITIONS_H_
