// Findings as a SARIF 2.1.0 log, the form code-scanning services take.
#ifndef DEVDEF_TOOLS_OUTPUT_SARIF_OUTPUT_H_
#define DEVDEF_TOOLS_OUTPUT_SARIF_OUTPUT_H_

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/diagnostics/repeated_findings.h"

// Prints a log of one run of devdef over file: the tool with one rule per
// kind of finding, the file as the run's one artifact, and one result for
// each of shown (findings about analysis's file) with its region and
// related places, written through the buffered writer as made. Columns count
// characters; end columns are exclusive. A finding merged from several
// places of its line has "occurrenceCount" and a region from the first to
// the end of the last. When leftOut findings are not shown, the run's
// properties say so ("findingsLeftOut").
void PrintSarifLog(std::FILE* out, const std::string& file, const Analysis& analysis, const Findings& findings,
                   const std::vector<ShownFinding>& shown, size_t leftOut);

// A file path as a URI reference: a relative path stays relative, an
// absolute one becomes a file: URI; every byte but letters, digits,
// "-._~/!$&'()*+,;=@" is percent-encoded.
std::string PathToUri(const std::string& path);

#endif  // DEVDEF_TOOLS_OUTPUT_SARIF_OUTPUT_H_
