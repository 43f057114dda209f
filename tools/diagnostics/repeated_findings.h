// Findings as a person counts them: a finding repeated along one line (one
// kind, one message, as an adapter number without a name used 500,000
// times in one list) is one problem, shown once with how often and where
// it stands first and last.
#ifndef DEVDEF_TOOLS_DIAGNOSTICS_REPEATED_FINDINGS_H_
#define DEVDEF_TOOLS_DIAGNOSTICS_REPEATED_FINDINGS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"

// One finding as it is shown: the first of the findings it stands for,
// with their number and the place of the last of them.
struct ShownFinding {
  const Finding* finding = nullptr;
  std::uint32_t count = 1;  // the findings merged, each counted with its own count
  ByteSpan last;            // the last one's span; finding->span when there is one place

  // True when the findings stand at more than one place of the line.
  bool Spread() const { return last.begin != finding->span.begin; }
  // From the first one's start to the last one's end.
  ByteSpan Whole() const { return ByteSpan{finding->span.begin, last.end}; }
};

// The findings (in the order of the file) with those of one kind and one
// message on one line merged into the first of them; related places are
// the first one's. O(n log n) in the findings of the busiest line.
std::vector<ShownFinding> MergeRepeats(const Analysis& analysis, const std::vector<const Finding*>& findings);

#endif  // DEVDEF_TOOLS_DIAGNOSTICS_REPEATED_FINDINGS_H_
