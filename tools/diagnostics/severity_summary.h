// How many findings of each severity a run of "devdef check" reports, the
// summary line it prints and the exit status they lead to.
#ifndef DEVDEF_TOOLS_DIAGNOSTICS_SEVERITY_SUMMARY_H_
#define DEVDEF_TOOLS_DIAGNOSTICS_SEVERITY_SUMMARY_H_

#include <string>
#include <vector>

#include "tools/analysis/finding.h"
#include "tools/diagnostics/repeated_findings.h"

// The number of findings of each severity.
struct SeverityCounts {
  int errors = 0;
  int warnings = 0;
  int notes = 0;
};

// The shown findings counted by their severity: findings merged into one
// count once, as they are one problem to the reader.
SeverityCounts CountSeverities(const std::vector<ShownFinding>& findings);
// "2 errors, 1 warning, 0 notes": each count with its noun, singular for 1.
std::string SummaryText(const SeverityCounts& counts);
// True when a finding of threshold or a higher severity was counted; error
// is the highest severity, note the lowest.
bool ReachesSeverity(const SeverityCounts& counts, Severity threshold);

#endif  // DEVDEF_TOOLS_DIAGNOSTICS_SEVERITY_SUMMARY_H_
