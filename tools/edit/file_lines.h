// The lines of a file's bytes as an edit needs them: where the line of an
// offset starts, where the next one starts, and the line end the file uses
// there. LF, CR and CR LF each end a line, as everywhere in the tool.
#ifndef DEVDEF_TOOLS_EDIT_FILE_LINES_H_
#define DEVDEF_TOOLS_EDIT_FILE_LINES_H_

#include <cstdint>
#include <string>
#include <string_view>

class FileLines {
 public:
  explicit FileLines(std::string_view bytes) : m_b(bytes) {}

  std::uint32_t Size() const { return static_cast<std::uint32_t>(m_b.size()); }
  // The first byte of the line that holds offset.
  std::uint32_t LineStart(std::uint32_t offset) const;
  // The line end (LF or CR) at or behind offset, or the end of the file.
  std::uint32_t LineEnd(std::uint32_t offset) const;
  // The first byte of the line behind the one that holds offset (behind
  // its whole line end), or the end of the file.
  std::uint32_t NextLineStart(std::uint32_t offset) const;
  // The start of the line in front of the one that starts at lineStart, or
  // lineStart itself for the first line.
  std::uint32_t PreviousLineStart(std::uint32_t lineStart) const;
  // Whether the line that starts at lineStart holds only blanks and tabs.
  bool IsEmptyLine(std::uint32_t lineStart) const;
  // The line end that ends the line in front of lineStart; else the file's
  // first line end; else CR LF, which the library's writers use.
  std::string LineEndBefore(std::uint32_t lineStart) const;
  // Whether the file ends with a line end (or is empty).
  bool EndsWithLineEnd() const;
  // The blanks and tabs that open the line of lineStart.
  std::string Indent(std::uint32_t lineStart) const;

 private:
  std::string_view m_b;
};

#endif  // DEVDEF_TOOLS_EDIT_FILE_LINES_H_
