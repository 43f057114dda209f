#include "tools/diagnostics/gcc_output.h"

#include "tools/diagnostics/finding_text.h"
#include "tools/text/control_escape.h"

void PrintGccDiagnostics(std::FILE* out, const std::string& file, const Analysis& analysis, const Findings& findings,
                         const std::vector<ShownFinding>& shown) {
  // Columns count UTF-8 bytes, as Vim counts them in the decoded line; the
  // messages quote the file, its control characters escaped.
  for (const ShownFinding& item : shown) {
    const Finding* finding = item.finding;
    const TextPoint at = ShownPoint(analysis, finding->span.begin, ColumnUnit::kUtf8Bytes);
    std::fprintf(out, "%s:%ld:%ld: %s: %s [%s]\n", file.c_str(), at.line, at.column, SeverityName(finding->severity),
                 EscapeControls(FindingMessage(analysis, findings, item, ColumnUnit::kUtf8Bytes)).c_str(),
                 InfoOf(finding->kind).id);
    for (const RelatedPlace* related = findings.RelatedBegin(*finding); related != findings.RelatedEnd(*finding);
         ++related) {
      // A consequence's message names its cause's line already.
      if (related->cause) continue;
      const TextPoint place = ShownPoint(analysis, related->span.begin, ColumnUnit::kUtf8Bytes);
      std::fprintf(out, "%s:%ld:%ld: note: %s\n", file.c_str(), place.line, place.column,
                   EscapeControls(RelatedMessage(analysis, findings, *related)).c_str());
    }
  }
}

void PrintGccDiagnostics(std::FILE* out, const std::string& file, const Analysis& analysis, const Findings& findings,
                         const std::vector<const Finding*>& findingsShown) {
  PrintGccDiagnostics(out, file, analysis, findings, MergeRepeats(analysis, findingsShown));
}
