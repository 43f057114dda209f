// What the analysis of a definition file reports: findings of a fixed set of
// kinds, each with a severity, a place in the file and one line of message.
#ifndef DEVDEF_TOOLS_ANALYSIS_FINDING_H_
#define DEVDEF_TOOLS_ANALYSIS_FINDING_H_

#include <cstddef>
#include <string>
#include <vector>

#include "tools/analysis/source_map.h"

enum class Severity { kError = 0, kWarning = 1, kNote = 2 };

// "error", "warning" or "note".
const char* SeverityName(Severity severity);
// The severity of a name as SeverityName gives it; false for any other text.
bool ParseSeverity(const std::string& name, Severity* severity);

// A kind of finding: a short stable id, its severity and one line of help.
struct FindingKind {
  const char* id;
  Severity severity;
  const char* help;
};

// Every kind the analysis can report, in a fixed order.
const std::vector<FindingKind>& AllFindingKinds();
// The kind with this id, or null.
const FindingKind* FindFindingKind(const std::string& id);

// Another place that a finding refers to: its cause or a consequence.
struct RelatedPlace {
  TextRange range;
  std::string message;
  bool cause = false;  // the place that made this finding happen
};

struct Finding {
  const FindingKind* kind = nullptr;
  Severity severity = Severity::kError;  // the kind's, unless the finder says otherwise
  TextRange range;      // where in the file; start and end as editors count them
  std::string message;  // one line; names and texts are the file's bytes
  int count = 1;        // identical findings of one place merged into one
  std::vector<RelatedPlace> related;
};

#endif  // DEVDEF_TOOLS_ANALYSIS_FINDING_H_
