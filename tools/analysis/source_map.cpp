#include "tools/analysis/source_map.h"

#include <algorithm>

#include "tools/text/line_end.h"

namespace {

// Calls found(offset) for the first byte of every line but the first.
template <class Found>
void ForEachLineStart(std::string_view bytes, Found found) {
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes.data());
  const size_t size = bytes.size();
  for (size_t at = 0; at < size;) {
    const size_t end = FindLineEnd(data, at, size);
    if (end >= size) break;
    at = end + 1;
    if (data[end] == '\r' && at < size && data[at] == '\n') ++at;
    found(at);
  }
}

}  // namespace

SourceMap::SourceMap(std::string_view bytes) : m_bytes(bytes) {
  // The lines are counted first, so that their starts take a block of just
  // that size.
  size_t lines = 1;
  ForEachLineStart(bytes, [&lines](size_t) { ++lines; });
  m_starts.reserve(lines);
  m_starts.push_back(0);
  ForEachLineStart(bytes, [this](size_t at) { m_starts.push_back(static_cast<std::uint32_t>(at)); });
}

TextPoint SourceMap::PointOf(size_t offset) const {
  // Places are mostly asked for in the order of the file: the line of the
  // last answer, or the next one, is tried first.
  size_t line = m_cursor;
  if (line >= m_starts.size() || offset < m_starts[line]) {
    line = static_cast<size_t>(std::upper_bound(m_starts.begin(), m_starts.end(), offset) - m_starts.begin()) - 1;
  } else {
    while (line + 1 < m_starts.size() && offset >= m_starts[line + 1]) {
      if (line + 2 < m_starts.size() && offset >= m_starts[line + 2]) {
        line = static_cast<size_t>(std::upper_bound(m_starts.begin() + static_cast<long>(line), m_starts.end(), offset) -
                                   m_starts.begin()) -
               1;
        break;
      }
      ++line;
    }
  }
  m_cursor = line;
  return TextPoint{static_cast<long>(line) + 1, static_cast<long>(offset - m_starts[line]) + 1};
}

TextRange SourceMap::RangeOf(size_t begin, size_t end) const {
  if (end < begin) end = begin;
  return TextRange{begin, end, PointOf(begin), PointOf(end)};
}

size_t SourceMap::LineStart(long line) const {
  if (line < 1 || line > LineCount()) return m_bytes.size();
  return m_starts[static_cast<size_t>(line - 1)];
}

size_t SourceMap::LineEnd(long line) const {
  if (line < 1 || line >= LineCount()) return m_bytes.size();
  // The line ends where its line end begins: one byte in front of the next
  // line's start, or two for CR LF.
  size_t end = m_starts[static_cast<size_t>(line)] - 1;
  if (m_bytes[end] == '\n' && end > m_starts[static_cast<size_t>(line - 1)] && m_bytes[end - 1] == '\r') --end;
  return end;
}
