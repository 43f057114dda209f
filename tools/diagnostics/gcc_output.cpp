#include "tools/diagnostics/gcc_output.h"

#include "tools/diagnostics/finding_text.h"
#include "tools/text/text_encoding.h"

void PrintGccDiagnostics(std::FILE* out, const std::string& file, const std::vector<const Finding*>& findings) {
  for (const Finding* finding : findings) {
    std::fprintf(out, "%s:%ld:%ld: %s: %s [%s]\n", file.c_str(), finding->range.start.line,
                 finding->range.start.column, SeverityName(finding->severity), FindingMessage(*finding).c_str(),
                 finding->kind->id);
    for (const RelatedPlace& related : finding->related) {
      // A consequence's message names its cause's line already.
      if (related.cause) continue;
      std::fprintf(out, "%s:%ld:%ld: note: %s\n", file.c_str(), related.range.start.line, related.range.start.column,
                   ShownText(related.message).c_str());
    }
  }
}
