// Findings, and the kinds of finding, as the JSON documents of
// "devdef check --json".
#ifndef DEVDEF_TOOLS_DIAGNOSTICS_FINDINGS_JSON_H_
#define DEVDEF_TOOLS_DIAGNOSTICS_FINDINGS_JSON_H_

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/analysis/finding.h"

// {"file", "layout", "findings": [{"line", "column", "end_line",
// "end_column", "severity", "kind", "message", "count", "related": [{"line",
// "column", "end_line", "end_column", "message"}]}], "summary": {"errors",
// "warnings", "notes"}}; findings each with their kind, messages as UTF-8
// without the count.
nlohmann::json FindingsJson(const std::string& file, int layout, const std::vector<const Finding*>& findings);

// {"kinds": [{"id", "severity", "help"}]}, every kind in its fixed order.
nlohmann::json FindingKindsJson();

#endif  // DEVDEF_TOOLS_DIAGNOSTICS_FINDINGS_JSON_H_
