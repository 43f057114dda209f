// How a line of a definition file looks to a person, whatever the reader
// makes of it. The analysis never takes a place from here: places come
// from the reader's own steps. It compares them with how a line looks, to
// say when the reader took a line for something else.
#ifndef DEVDEF_TOOLS_ANALYSIS_LINE_LOOK_H_
#define DEVDEF_TOOLS_ANALYSIS_LINE_LOOK_H_

#include <cstddef>
#include <string_view>

#include "tools/analysis/records.h"

enum class LineLook {
  kBlank,
  kComment,     // opens with ";" or "/", or its first byte that is no white space is ";"
  kQuote,       // opens with a double quote
  kBlockOpen,   // "{"
  kBlockClose,  // "}"
  kDefinition,  // a definition keyword, or in layout 7 a housing or dropped keyword
  kManufacturer,
  kList,        // a header list keyword
  kVersion,     // DEF_LAYOUT_VERSION
  kKind,        // a word with a ":" behind it that has a blank or the line end behind it
  kDevice,      // anything else
};

// The bytes of a file with the layout it is read as, asked about its lines.
class LineLooks {
 public:
  LineLooks(std::string_view bytes, int layout) : m_bytes(bytes), m_layout(layout) {}

  // How the line that starts at lineStart looks.
  LineLook Of(std::uint32_t lineStart) const;
  // Whether a line of that look belongs in a device block.
  static bool InBlock(LineLook look) {
    return look == LineLook::kBlockOpen || look == LineLook::kBlockClose || look == LineLook::kDefinition;
  }
  // The first line end (LF or CR) at or behind pos, or the end of the bytes.
  std::uint32_t LineEnd(std::uint32_t pos) const;
  // [begin, end) without white space at either end.
  ByteSpan Trimmed(std::uint32_t begin, std::uint32_t end) const;
  // The first line that opens with DEF_LAYOUT_VERSION behind a UTF-8 byte
  // order mark (on the first line) or white space, which hide it from the
  // reader: sets *keyword to where the keyword stands and gives the line's
  // start, or kNoRecord when there is none.
  std::uint32_t HiddenVersionLine(std::uint32_t* keyword) const;
  // Whether the bytes at pos open with word, ASCII case ignored.
  bool OpensWithNoCase(std::uint32_t pos, std::uint32_t end, const char* word) const;

 private:
  std::string_view m_bytes;
  int m_layout;
};

#endif  // DEVDEF_TOOLS_ANALYSIS_LINE_LOOK_H_
