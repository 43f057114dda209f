#include "tools/diagnostics/finding_text.h"

#include "tools/text/text_encoding.h"

std::string FindingMessage(const Analysis& analysis, const Findings& findings, const Finding& finding) {
  std::string message = ShownText(analysis.MessageOf(finding, findings));
  if (finding.count > 1) message += " (" + std::to_string(finding.count) + " times)";
  return message;
}

std::string RelatedMessage(const Analysis& analysis, const Findings& findings, const RelatedPlace& place) {
  return ShownText(analysis.MessageOf(place.says, findings));
}
