// Byte offsets of a file turned into lines and columns as editors count
// them: LF, CR and CR LF each end one line; lines and columns start at 1 and
// columns count bytes. The line starts are found once; an offset becomes a
// line and a column only when it is printed.
#ifndef DEVDEF_TOOLS_ANALYSIS_SOURCE_MAP_H_
#define DEVDEF_TOOLS_ANALYSIS_SOURCE_MAP_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "tools/analysis/records.h"

// A 1-based line and a 1-based byte column.
struct TextPoint {
  long line = 0;
  long column = 0;
};

// Bytes [begin, end) of the file with their start and end as lines and
// columns; end is the place of the byte behind the last one.
struct TextRange {
  size_t begin = 0;
  size_t end = 0;
  TextPoint start;
  TextPoint stop;
};

class SourceMap {
 public:
  SourceMap() = default;
  // bytes must outlive the map.
  explicit SourceMap(std::string_view bytes);

  // The line and column of the byte at offset (or of the end of the file).
  TextPoint PointOf(size_t offset) const;
  // The range of bytes [begin, end) with both ends as points.
  TextRange RangeOf(size_t begin, size_t end) const;
  TextRange RangeOf(ByteSpan span) const { return RangeOf(span.begin, span.end); }
  // The offset of the first byte of a 1-based line; the file's size past the
  // last line.
  size_t LineStart(long line) const;
  // The offset of the line end (or the file's end) of a 1-based line.
  size_t LineEnd(long line) const;
  long LineCount() const { return static_cast<long>(m_starts.size()); }
  size_t Size() const { return m_bytes.size(); }

 private:
  std::string_view m_bytes;
  std::vector<std::uint32_t> m_starts;  // offset of each line's first byte
  mutable size_t m_cursor = 0;          // the line of the last answer of PointOf
};

#endif  // DEVDEF_TOOLS_ANALYSIS_SOURCE_MAP_H_
