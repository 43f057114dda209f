// What differs between two files whose catalogues mean the same: the lines
// that a diff of lines finds, each put down to what the reading of its file
// made of it, so that a change without meaning can say what it changed.
#ifndef DEVDEF_TOOLS_DIFF_SAME_MEANING_H_
#define DEVDEF_TOOLS_DIFF_SAME_MEANING_H_

#include <array>
#include <cstddef>
#include <string>

#include "tools/analysis/analysis.h"

// The kinds of line difference, in the order they are named.
enum class LineDifference {
  kComments,  // lines that make nothing, or differ only outside what the reader took from them
  kBlank,     // lines of blanks and tabs alone
  kOrder,     // lines that make something and stand in the other file elsewhere
  kSpacing,   // lines that differ only in blanks and tabs
  kLineEnds,  // equal lines ended by other bytes (LF, CR LF, CR, none)
  kDropped,   // lines that the reader drops: refused, passed over, skipped
  kOther,     // lines that make something and read the same, written otherwise
};
constexpr size_t kLineDifferenceKinds = 7;

struct LineDifferences {
  // The lines that differ: a line that changed in place, moved or got
  // another line end counts once, and so does a line of one file alone.
  size_t lines = 0;
  std::array<bool, kLineDifferenceKinds> kinds{};

  // "3 lines differ: comments, order".
  std::string Text() const;
};

// The lines of two files put side by side, lines ending as the reader
// ends them (LF, CR LF or CR).
LineDifferences CompareLines(const Analysis& oldFile, const Analysis& newFile);

#endif  // DEVDEF_TOOLS_DIFF_SAME_MEANING_H_
