#include "tools/output/findings_json.h"

#include "tools/diagnostics/severity_summary.h"
#include "tools/output/json_document.h"
#include "tools/output/json_stream.h"

using nlohmann::json;

namespace {

// The span's place, into object.
void AddRange(json& object, const SourceMap& map, ByteSpan span) {
  const TextRange range = map.RangeOf(span);
  object["line"] = range.start.line;
  object["column"] = range.start.column;
  object["end_line"] = range.stop.line;
  object["end_column"] = range.stop.column;
}

json FindingJson(const Analysis& analysis, const Findings& findings, const Finding* finding) {
  const SourceMap& map = analysis.Map();
  json related = json::array();
  for (const RelatedPlace* place = findings.RelatedBegin(*finding); place != findings.RelatedEnd(*finding); ++place) {
    json item = json::object();
    AddRange(item, map, place->span);
    PutShownText(item, "message", analysis.MessageOf(place->says, findings));
    item["cause"] = place->cause;
    related.push_back(std::move(item));
  }
  json item = json::object();
  AddRange(item, map, finding->span);
  item["severity"] = SeverityName(finding->severity);
  item["kind"] = InfoOf(finding->kind).id;
  PutShownText(item, "message", analysis.MessageOf(*finding, findings));
  item["count"] = finding->count;
  item["related"] = std::move(related);
  return item;
}

}  // namespace

void PrintFindingsJson(std::FILE* out, json frame, const Analysis& analysis, const Findings& findings,
                       const std::vector<const Finding*>& shown) {
  const SeverityCounts counts = CountSeverities(shown);
  frame["summary"] = {{"errors", counts.errors}, {"warnings", counts.warnings}, {"notes", counts.notes}};
  JsonStream stream(out);
  stream.OpenObject(std::move(frame), "findings");
  for (const Finding* finding : shown) stream.Element(FindingJson(analysis, findings, finding));
  stream.CloseObject();
}

json FindingKindsJson() {
  json kinds = json::array();
  for (const FindingInfo& info : AllFindingKinds()) {
    kinds.push_back(json{{"id", info.id}, {"severity", SeverityName(info.severity)}, {"help", info.explanation}});
  }
  return json{{"schema", kJsonSchema}, {"kinds", std::move(kinds)}};
}
