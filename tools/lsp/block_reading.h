// The findings of a document whose edits since its last whole analysis lie
// inside one device's block, without reading the whole file: the library
// reads a small text made of the file's own lines (everything in front of
// the first kind, the device's kind line and manufacturer line, and the
// device's lines up to its "}" line), and the findings of the device's
// lines take the place of the old ones. That is done only where it gives
// what a read of the whole file gives: the block still ends at its "}",
// its ids are the ones it had, no finding elsewhere refers to it, and the
// number of lines is unchanged, so that every other finding keeps its
// place and its words. Otherwise the caller reads the whole file.
#ifndef DEVDEF_TOOLS_LSP_BLOCK_READING_H_
#define DEVDEF_TOOLS_LSP_BLOCK_READING_H_

#include <cstdint>
#include <string_view>

#include "tools/analysis/source_map.h"
#include "tools/lsp/block_edits.h"
#include "tools/analysis/library_lock.h"

struct BlockReading {
  AnalysisPtr analysis;  // of the small text
  // Its findings on the device's lines: [first, first + count).
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  // A line of the small text plus lineShift is the line of the document.
  long lineShift = 0;
  // The base's findings in front of the device: [0, before); behind it:
  // [behind, end).
  std::uint32_t before = 0;
  std::uint32_t behind = 0;
};

// Reads the block of edits.Device() again in bytes, the document's text
// now (map: its lines); base is the analysis the edits are counted from,
// read with options. False when the result might not be the whole file's.
bool ReadBlockAgain(const Analysis& base, const BlockEdits& edits, std::string_view bytes, const SourceMap& map,
                    const AnalysisOptions& options, BlockReading* reading);

#endif  // DEVDEF_TOOLS_LSP_BLOCK_READING_H_
