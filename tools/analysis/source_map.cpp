#include "tools/analysis/source_map.h"

#include <algorithm>

SourceMap::SourceMap(const std::string& bytes) : m_size(bytes.size()) {
  m_starts.push_back(0);
  for (size_t i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c != '\n' && c != '\r') continue;
    m_ends.push_back(i);
    if (c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
    m_starts.push_back(i + 1);
  }
  m_ends.push_back(bytes.size());
}

TextPoint SourceMap::PointOf(size_t offset) const {
  if (m_starts.empty()) return TextPoint{1, static_cast<long>(offset) + 1};
  const size_t line = static_cast<size_t>(std::upper_bound(m_starts.begin(), m_starts.end(), offset) - m_starts.begin());
  return TextPoint{static_cast<long>(line), static_cast<long>(offset - m_starts[line - 1]) + 1};
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
