#include "tools/analysis/source_map.h"

#include <algorithm>
#include <cstring>

#include "tools/text/line_end.h"

SourceMap::SourceMap(const std::string& bytes) : m_size(bytes.size()) {
  const char* data = bytes.data();
  const size_t size = bytes.size();
  m_starts.push_back(0);
  size_t at = 0;
  while (at < size) {
    const size_t end = FindLineEnd(reinterpret_cast<const unsigned char*>(data), at, size);
    if (end >= size) break;
    m_ends.push_back(end);
    at = end + 1;
    if (data[end] == '\r' && at < size && data[at] == '\n') ++at;
    m_starts.push_back(at);
  }
  m_ends.push_back(size);
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
  if (line < 1 || line > LineCount()) return m_size;
  return m_starts[static_cast<size_t>(line - 1)];
}

size_t SourceMap::LineEnd(long line) const {
  if (line < 1 || line > static_cast<long>(m_ends.size())) return m_size;
  return m_ends[static_cast<size_t>(line - 1)];
}
