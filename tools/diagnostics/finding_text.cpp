#include "tools/diagnostics/finding_text.h"

#include "tools/text/text_encoding.h"

std::string FindingMessage(const Finding& finding) {
  std::string message = ShownText(finding.message);
  if (finding.count > 1) message += " (" + std::to_string(finding.count) + " times)";
  return message;
}
