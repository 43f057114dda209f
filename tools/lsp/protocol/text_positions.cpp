#include "tools/lsp/protocol/text_positions.h"

#include <algorithm>

namespace {

// UTF-16 code units of a UTF-8 byte: a character's first byte counts one,
// the first byte of a four-byte character (a surrogate pair) two, and a
// continuation byte none.
long UnitsOfByte(unsigned char c) { return (c & 0xC0) == 0x80 ? 0 : c >= 0xF0 ? 2 : 1; }

}  // namespace

PositionConverter::PositionConverter(std::string_view bytes, const SourceMap& map, BufferEncoding encoding)
    : m_bytes(bytes), m_map(map), m_singleByte(encoding == BufferEncoding::kWindows1252) {}

long PositionConverter::Units(size_t lineStart, size_t offset) const {
  if (offset > m_bytes.size()) offset = m_bytes.size();
  if (offset < lineStart) return 0;
  if (m_singleByte) return static_cast<long>(offset - lineStart);
  size_t from = lineStart;
  long units = 0;
  if (lineStart == m_lastLine && offset >= m_lastOffset) {
    from = m_lastOffset;
    units = m_lastUnits;
  }
  const unsigned char* b = reinterpret_cast<const unsigned char*>(m_bytes.data());
  for (size_t i = from; i < offset; ++i) units += UnitsOfByte(b[i]);
  m_lastLine = lineStart;
  m_lastOffset = offset;
  m_lastUnits = units;
  return units;
}

LspPosition PositionConverter::ToPosition(const TextPoint& point) const {
  const size_t lineStart = m_map.LineStart(point.line);
  const size_t offset = lineStart + static_cast<size_t>(point.column > 0 ? point.column - 1 : 0);
  return LspPosition{point.line - 1 + m_lineShift, Units(lineStart, offset)};
}

bool PositionConverter::ToOffset(LspPosition position, size_t* offset) const {
  if (position.line < 0 || position.line >= m_map.LineCount() || position.character < 0) return false;
  const size_t lineStart = m_map.LineStart(position.line + 1);
  const size_t lineEnd = m_map.LineEnd(position.line + 1);
  if (m_singleByte) {
    *offset = lineStart + std::min(static_cast<size_t>(position.character), lineEnd - lineStart);
    return true;
  }
  const unsigned char* b = reinterpret_cast<const unsigned char*>(m_bytes.data());
  long units = 0;
  size_t at = lineStart;
  while (at < lineEnd) {
    const long width = UnitsOfByte(b[at]);
    if (units + width > position.character) break;
    units += width;
    ++at;
    while (at < lineEnd && UnitsOfByte(b[at]) == 0) ++at;
  }
  *offset = at;
  return true;
}

nlohmann::json PositionConverter::PositionJson(const TextPoint& point) const {
  const LspPosition position = ToPosition(point);
  return nlohmann::json{{"line", position.line}, {"character", position.character}};
}

nlohmann::json PositionConverter::RangeJson(const TextRange& range) const {
  return nlohmann::json{{"start", PositionJson(range.start)}, {"end", PositionJson(range.stop)}};
}
