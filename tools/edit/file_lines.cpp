#include "tools/edit/file_lines.h"

#include "tools/text/line_end.h"

namespace {

const unsigned char* Data(std::string_view bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

}  // namespace

std::uint32_t FileLines::LineStart(std::uint32_t offset) const {
  while (offset > 0 && !IsLineEnd(static_cast<unsigned char>(m_b[offset - 1]))) --offset;
  return offset;
}

std::uint32_t FileLines::LineEnd(std::uint32_t offset) const {
  return static_cast<std::uint32_t>(FindLineEnd(Data(m_b), offset, m_b.size()));
}

std::uint32_t FileLines::NextLineStart(std::uint32_t offset) const {
  std::uint32_t end = LineEnd(offset);
  if (end >= m_b.size()) return end;
  if (m_b[end] == '\r' && end + 1 < m_b.size() && m_b[end + 1] == '\n') return end + 2;
  return end + 1;
}

std::uint32_t FileLines::PreviousLineStart(std::uint32_t lineStart) const {
  if (lineStart == 0) return 0;
  std::uint32_t end = lineStart - 1;  // the last byte of the line end in front
  if (m_b[end] == '\n' && end > 0 && m_b[end - 1] == '\r') --end;
  return LineStart(end);
}

bool FileLines::IsEmptyLine(std::uint32_t lineStart) const {
  for (std::uint32_t i = lineStart; i < m_b.size() && !IsLineEnd(static_cast<unsigned char>(m_b[i])); ++i) {
    if (m_b[i] != ' ' && m_b[i] != '\t') return false;
  }
  return true;
}

std::string FileLines::LineEndBefore(std::uint32_t lineStart) const {
  if (lineStart > 0 && lineStart <= m_b.size() && IsLineEnd(static_cast<unsigned char>(m_b[lineStart - 1]))) {
    if (m_b[lineStart - 1] == '\n') return lineStart >= 2 && m_b[lineStart - 2] == '\r' ? "\r\n" : "\n";
    return "\r";
  }
  const std::uint32_t first = LineEnd(0);
  if (first < m_b.size()) {
    if (m_b[first] == '\n') return "\n";
    return first + 1 < m_b.size() && m_b[first + 1] == '\n' ? "\r\n" : "\r";
  }
  return "\r\n";
}

bool FileLines::EndsWithLineEnd() const { return m_b.empty() || IsLineEnd(static_cast<unsigned char>(m_b.back())); }

std::string FileLines::Indent(std::uint32_t lineStart) const {
  std::uint32_t end = lineStart;
  while (end < m_b.size() && (m_b[end] == ' ' || m_b[end] == '\t')) ++end;
  return std::string(m_b.substr(lineStart, end - lineStart));
}
