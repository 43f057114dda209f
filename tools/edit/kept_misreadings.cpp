#include "tools/edit/kept_misreadings.h"

#include <string>

bool IsKeptMisreading(FindingKind kind) {
  switch (kind) {
    case FindingKind::kNumber:
    case FindingKind::kTextCut:
    case FindingKind::kMisread:
    case FindingKind::kQuoteKind:
    case FindingKind::kNoManufacturer:
    case FindingKind::kNoVersion:
      return true;
    default:
      return false;
  }
}

void AddKeptMisreadings(const Analysis& input, Severity severity, Findings* losses) {
  for (const Finding& finding : input.FindingsOf().List()) {
    if (!IsKeptMisreading(finding.kind)) continue;
    const std::uint32_t loss = losses->AddText(FindingKind::kWriteLoss, finding.span,
                                               "written as the reader read it: " + input.MessageOf(finding));
    (*losses)[loss].severity = severity;
  }
}
