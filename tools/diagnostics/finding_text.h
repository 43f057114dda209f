// The text of a finding as every output form of "devdef check" shows it.
#ifndef DEVDEF_TOOLS_DIAGNOSTICS_FINDING_TEXT_H_
#define DEVDEF_TOOLS_DIAGNOSTICS_FINDING_TEXT_H_

#include <string>

#include "tools/analysis/analysis.h"
#include "tools/diagnostics/repeated_findings.h"
#include "tools/text/text_encoding.h"

// The message of a shown finding about analysis's file, one of findings, as
// UTF-8 (the run's encoding), with what RepeatSuffix says behind it, its
// columns in unit.
std::string FindingMessage(const Analysis& analysis, const Findings& findings, const ShownFinding& shown,
                           ColumnUnit unit);
// What stands behind a merged finding's message: " (N times)" when its
// findings share one place, " (N times, columns A-B)" when they stand
// along the line (A and B the first and last one's columns in unit);
// empty for a finding of its own.
std::string RepeatSuffix(const Analysis& analysis, const ShownFinding& shown, ColumnUnit unit);
// What a related place says, as UTF-8.
std::string RelatedMessage(const Analysis& analysis, const Findings& findings, const RelatedPlace& place);

// The line and column of the byte at offset of analysis's file, the column
// counted in unit for the file decoded as this run shows it.
TextPoint ShownPoint(const Analysis& analysis, size_t offset, ColumnUnit unit);
// Both ends of span so.
TextRange ShownRange(const Analysis& analysis, ByteSpan span, ColumnUnit unit);

#endif  // DEVDEF_TOOLS_DIAGNOSTICS_FINDING_TEXT_H_
