#include "tools/output/findings_json.h"

#include "tools/diagnostics/finding_text.h"
#include "tools/diagnostics/severity_summary.h"
#include "tools/output/json_document.h"
#include "tools/output/json_stream.h"

using nlohmann::json;

namespace {

// The span's place, into object; columns count characters, as SARIF's do.
void AddRange(json& object, const Analysis& analysis, ByteSpan span) {
  const TextRange range = ShownRange(analysis, span, ColumnUnit::kCodePoints);
  object["line"] = range.start.line;
  object["column"] = range.start.column;
  object["end_line"] = range.stop.line;
  object["end_column"] = range.stop.column;
}

json FindingJson(const Analysis& analysis, const Findings& findings, const ShownFinding& shown) {
  const Finding* finding = shown.finding;
  json related = json::array();
  for (const RelatedPlace* place = findings.RelatedBegin(*finding); place != findings.RelatedEnd(*finding); ++place) {
    json item = json::object();
    AddRange(item, analysis, place->span);
    PutShownText(item, "message", analysis.MessageOf(place->says, findings));
    item["cause"] = place->cause;
    related.push_back(std::move(item));
  }
  json item = json::object();
  AddRange(item, analysis, shown.Whole());
  if (shown.Spread()) item["last_column"] = ShownPoint(analysis, shown.last.begin, ColumnUnit::kCodePoints).column;
  item["severity"] = SeverityName(finding->severity);
  item["kind"] = InfoOf(finding->kind).id;
  PutShownText(item, "message", analysis.MessageOf(*finding, findings));
  item["count"] = shown.count;
  item["related"] = std::move(related);
  return item;
}

}  // namespace

void PrintFindingsJson(std::FILE* out, json frame, const Analysis& analysis, const Findings& findings,
                       const std::vector<ShownFinding>& shown, const SeverityCounts& counts, size_t leftOut) {
  frame["summary"] = {{"errors", counts.errors}, {"warnings", counts.warnings}, {"notes", counts.notes}};
  if (leftOut > 0) frame["summary"]["left_out"] = leftOut;
  JsonStream stream(out);
  stream.OpenObject(std::move(frame), "findings");
  for (const ShownFinding& item : shown) stream.Element(FindingJson(analysis, findings, item));
  stream.CloseObject();
}

json FindingKindsJson() {
  json kinds = json::array();
  for (const FindingInfo& info : AllFindingKinds()) {
    kinds.push_back(json{{"id", info.id}, {"severity", SeverityName(info.severity)}, {"help", info.explanation}});
  }
  return json{{"schema", kJsonSchema}, {"kinds", std::move(kinds)}};
}
