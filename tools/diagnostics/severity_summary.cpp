#include "tools/diagnostics/severity_summary.h"

namespace {

std::string Counted(int count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

SeverityCounts CountSeverities(const std::vector<ShownFinding>& findings) {
  SeverityCounts counts;
  for (const ShownFinding& shown : findings) {
    switch (shown.finding->severity) {
      case Severity::kError:
        ++counts.errors;
        break;
      case Severity::kWarning:
        ++counts.warnings;
        break;
      case Severity::kNote:
        ++counts.notes;
        break;
    }
  }
  return counts;
}

std::string SummaryText(const SeverityCounts& counts) {
  return Counted(counts.errors, "error") + ", " + Counted(counts.warnings, "warning") + ", " +
         Counted(counts.notes, "note");
}

bool ReachesSeverity(const SeverityCounts& counts, Severity threshold) {
  switch (threshold) {
    case Severity::kNote:
      return counts.errors + counts.warnings + counts.notes > 0;
    case Severity::kWarning:
      return counts.errors + counts.warnings > 0;
    case Severity::kError:
      return counts.errors > 0;
  }
  return counts.errors > 0;
}
