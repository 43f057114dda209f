// Where the edits of a document since its last whole analysis lie. The
// common keystroke changes a line inside the block of one device; as long
// as every edit stays between that block's "{" line and its "}" line, the
// rest of the file reads as before, shifted, and the block can be read
// again on its own (block_reading.h).
#ifndef DEVDEF_TOOLS_LSP_BLOCK_EDITS_H_
#define DEVDEF_TOOLS_LSP_BLOCK_EDITS_H_

#include <cstddef>
#include <cstdint>

#include "tools/analysis/analysis.h"

class BlockEdits {
 public:
  // The analysis is of the text as it is: no edits yet.
  void Reset() { *this = BlockEdits(); }
  // An edit that no block holds, or a text replaced whole.
  void Scatter() { m_state = kScattered; }
  // Bytes [begin, end) of the text as it is now were replaced by inserted
  // bytes; base is the analysis that the edits are counted from (usable).
  void Note(const Analysis& base, size_t begin, size_t end, size_t inserted);

  // No edit since the analysis.
  bool None() const { return m_state == kNone; }
  // Every edit lies inside the block of Device().
  bool InOneBlock() const { return m_state == kOneBlock; }
  std::uint32_t Device() const { return m_device; }
  // What the edits added to the length of the text (negative: removed).
  long long Delta() const { return m_delta; }
  // The device's lines in the base: from its name line to the first byte
  // of its "}" line's end. In the text now they end Delta() bytes later.
  size_t LinesBegin() const { return m_linesBegin; }
  size_t LinesEnd() const { return m_linesEnd; }

 private:
  enum State { kNone, kOneBlock, kScattered };
  State m_state = kNone;
  std::uint32_t m_device = kNoRecord;
  // From the first byte behind the "{" line's end to the start of the "}"
  // line, in the text as it is now.
  size_t m_begin = 0;
  size_t m_end = 0;
  long long m_delta = 0;
  size_t m_linesBegin = 0;
  size_t m_linesEnd = 0;
};

// The offset of the first byte of the line that holds offset.
size_t LineStartOf(std::string_view bytes, size_t offset);
// The offset of the line end (CR or LF) at or behind offset; the size when
// there is none.
size_t LineEndFrom(std::string_view bytes, size_t offset);

#endif  // DEVDEF_TOOLS_LSP_BLOCK_EDITS_H_
