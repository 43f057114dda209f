// Findings, and the kinds of finding, as the JSON documents of
// "devdef check --json".
#ifndef DEVDEF_TOOLS_OUTPUT_FINDINGS_JSON_H_
#define DEVDEF_TOOLS_OUTPUT_FINDINGS_JSON_H_

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/diagnostics/repeated_findings.h"
#include "tools/diagnostics/severity_summary.h"

// Prints the document frame (tools/output/json_document.h) with "findings":
// [{"line", "column", "end_line", "end_column", "severity", "kind",
// "message", "count", "related": [{"line", "column", "end_line",
// "end_column", "message", "cause"}]}] for each of shown, findings about
// analysis's file, and "summary": {"errors", "warnings", "notes"} as
// counts says; messages decoded with the run's encoding, without the
// count. A finding merged from several places of its line spans from the
// first to the end of the last, and "last_column" says where the last
// starts. When leftOut findings are not shown, the summary says so in
// "left_out". Written as it is made, through the buffered writer.
void PrintFindingsJson(std::FILE* out, const Analysis& analysis, const Findings& findings,
                       const std::vector<ShownFinding>& shown, const SeverityCounts& counts, size_t leftOut);

// {"schema", "kinds": [{"id", "severity", "help"}]}, every kind in its fixed
// order.
nlohmann::json FindingKindsJson();

#endif  // DEVDEF_TOOLS_OUTPUT_FINDINGS_JSON_H_
