#include "tools/diagnostics/finding_text.h"

#include "tools/utf8_text.h"

std::string FindingMessage(const Finding& finding) {
  std::string message = ToUtf8(finding.message);
  if (finding.count > 1) message += " (" + std::to_string(finding.count) + " times)";
  return message;
}
