// What a written definition file loses: the written bytes read back through
// the class that reads that layout, and the catalogue it gives compared with
// the one that was written, field by field and text by text (the writer
// adds a blank in front of every definition text, so a rewrite is never the
// same), and the misreadings of the input that a write keeps
// (tools/edit/kept_misreadings.h).
#ifndef DEVDEF_TOOLS_EDIT_ROUND_TRIP_H_
#define DEVDEF_TOOLS_EDIT_ROUND_TRIP_H_

#include <string>
#include <vector>

#include "tools/analysis/analysis.h"

// Reads the file at writtenPath as layout (1, 2 or 7) and compares it with
// the catalogue of input, device by device as the read goes on; nothing of
// the read is kept but its catalogue. Each loss is a finding of the kind "write-loss" at
// the place in input of what is lost, with the reason where the input's own
// findings give one (for layout 7, else, where the written file first reads
// otherwise), of the given severity. The texts that read back with one more
// blank in front are one loss, at the first of them. The process-wide name
// lists hold the written file's lists afterwards. Input's devices are let
// go of their definitions and housings once compared (what a write holds
// twice otherwise): afterwards input's catalogue has its kinds,
// manufacturers and device names, and its records, bytes and findings
// stay.
Findings RoundTripLosses(Analysis& input, const std::string& writtenPath, int layout, Severity severity);

#endif  // DEVDEF_TOOLS_EDIT_ROUND_TRIP_H_
