// What a written definition file loses: the written bytes read back through
// the class that reads that layout, and the catalogue it gives compared with
// the one that was written. The writer adds a blank in front of every
// definition text; that blank is the format's own and counts as no loss.
#ifndef DEVDEF_TOOLS_EDIT_ROUND_TRIP_H_
#define DEVDEF_TOOLS_EDIT_ROUND_TRIP_H_

#include <string>
#include <vector>

#include "tools/analysis/analysis.h"

// Reads the file at writtenPath as layout (1, 2 or 7) and compares it with
// the catalogue of input. Each loss is a finding of the kind "write-loss" at
// the place in input of what is lost, with the reason where the input's own
// findings give one, of the given severity. The process-wide name lists
// hold the written file's lists afterwards; input's catalogue is unchanged.
Findings RoundTripLosses(Analysis& input, const std::string& writtenPath, int layout, Severity severity);

#endif  // DEVDEF_TOOLS_EDIT_ROUND_TRIP_H_
