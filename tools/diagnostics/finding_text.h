// The text of a finding as every output form of "devdef check" shows it.
#ifndef DEVDEF_TOOLS_DIAGNOSTICS_FINDING_TEXT_H_
#define DEVDEF_TOOLS_DIAGNOSTICS_FINDING_TEXT_H_

#include <string>

#include "tools/analysis/finding.h"

// The message as UTF-8, with " (N times)" behind it when N identical
// findings were merged into this one.
std::string FindingMessage(const Finding& finding);

#endif  // DEVDEF_TOOLS_DIAGNOSTICS_FINDING_TEXT_H_
