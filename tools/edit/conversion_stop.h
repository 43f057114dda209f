// Where the library's conversion to the eleven-value form stops. The
// conversion scans seven numbers from the start of each definition's text
// and, at the first text that does not open with them, stops and gives 0
// without saying which; the tool names that definition.
#ifndef DEVDEF_TOOLS_EDIT_CONVERSION_STOP_H_
#define DEVDEF_TOOLS_EDIT_CONVERSION_STOP_H_

#include <cstdint>

#include "tools/analysis/analysis.h"

// The record of the first definition, in the catalogue's walk order, whose
// text the conversion's scan (ScanFormatted with the conversion's format)
// does not take seven numbers from; kNoRecord when every text gives them.
std::uint32_t ConversionStop(const Analysis& analysis);

#endif  // DEVDEF_TOOLS_EDIT_CONVERSION_STOP_H_
