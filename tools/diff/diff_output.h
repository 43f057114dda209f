// The changes between two catalogues for people: text with +, - and ~
// lines under a header per device path or list, coloured on a terminal,
// and counts (--stat). The JSON form is tools/output/diff_json.h.
#ifndef DEVDEF_TOOLS_DIFF_DIFF_OUTPUT_H_
#define DEVDEF_TOOLS_DIFF_DIFF_OUTPUT_H_

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "tools/diff/catalogue_diff.h"

// How the file's bytes are shown: names and texts pass through it.
using ShowBytes = std::function<std::string(const std::string&)>;

// The changes as text; colour with ANSI escapes when colour is set.
void PrintDiffText(std::FILE* out, const std::vector<DiffChange>& changes, bool colour, const ShowBytes& show);

// Counts per kind of change and thing, and the changes per kind of device.
void PrintDiffStat(std::FILE* out, const std::vector<DiffChange>& changes, const ShowBytes& show);

#endif  // DEVDEF_TOOLS_DIFF_DIFF_OUTPUT_H_
