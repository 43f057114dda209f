// What a write keeps of a misreading. Where the reader read a line
// otherwise than it looks (a number it took differently, a text it cut at
// a ";", a line it took for something else, a version line it did not
// see), the catalogue holds what the reader made, so the written file does
// too and reads back the same: no comparison of catalogues shows it. Such
// places are part of what a write loses of the file.
#ifndef DEVDEF_TOOLS_EDIT_KEPT_MISREADINGS_H_
#define DEVDEF_TOOLS_EDIT_KEPT_MISREADINGS_H_

#include "tools/analysis/analysis.h"

// True for the kinds of finding whose misreading the catalogue keeps and a
// write writes: number, text-cut, misread, quote-kind, no-manufacturer,
// and no-version for a version line the reader did not see.
bool IsKeptMisreading(FindingKind kind);

// Adds to losses a finding of the kind "write-loss", of the given
// severity, at the place of each such finding of input: "written as the
// reader read it: " and that finding's message.
void AddKeptMisreadings(const Analysis& input, Severity severity, Findings* losses);

#endif  // DEVDEF_TOOLS_EDIT_KEPT_MISREADINGS_H_
