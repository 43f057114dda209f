// Findings in the form GCC and Clang print diagnostics, which editors,
// quickfix lists and CI problem matchers read.
#ifndef DEVDEF_TOOLS_DIAGNOSTICS_GCC_OUTPUT_H_
#define DEVDEF_TOOLS_DIAGNOSTICS_GCC_OUTPUT_H_

#include <cstdio>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/diagnostics/repeated_findings.h"

// Prints each of shown, findings about analysis's file, as
// "FILE:LINE:COL: SEVERITY: MESSAGE [KIND]" and each of its related places
// right below it as "FILE:LINE:COL: note: MESSAGE"; messages as UTF-8, file
// as given. A merged finding stands at its first place, its message saying
// how often and up to which column it repeats.
void PrintGccDiagnostics(std::FILE* out, const std::string& file, const Analysis& analysis, const Findings& findings,
                         const std::vector<ShownFinding>& shown);
// The same for findings, those repeated along a line merged first.
void PrintGccDiagnostics(std::FILE* out, const std::string& file, const Analysis& analysis, const Findings& findings,
                         const std::vector<const Finding*>& findingsShown);

#endif  // DEVDEF_TOOLS_DIAGNOSTICS_GCC_OUTPUT_H_
