#include "tools/output/findings_json.h"

#include "tools/diagnostics/severity_summary.h"
#include "tools/output/json_document.h"

using nlohmann::json;

namespace {

// The range's fields, into object.
void AddRange(json& object, const TextRange& range) {
  object["line"] = range.start.line;
  object["column"] = range.start.column;
  object["end_line"] = range.stop.line;
  object["end_column"] = range.stop.column;
}

}  // namespace

json FindingsJson(json frame, const std::vector<const Finding*>& findings) {
  json list = json::array();
  for (const Finding* finding : findings) {
    json related = json::array();
    for (const RelatedPlace& place : finding->related) {
      json item = json::object();
      AddRange(item, place.range);
      PutShownText(item, "message", place.message);
      item["cause"] = place.cause;
      related.push_back(std::move(item));
    }
    json item = json::object();
    AddRange(item, finding->range);
    item["severity"] = SeverityName(finding->severity);
    item["kind"] = finding->kind->id;
    PutShownText(item, "message", finding->message);
    item["count"] = finding->count;
    item["related"] = std::move(related);
    list.push_back(std::move(item));
  }
  const SeverityCounts counts = CountSeverities(findings);
  frame["findings"] = std::move(list);
  frame["summary"] = {{"errors", counts.errors}, {"warnings", counts.warnings}, {"notes", counts.notes}};
  return frame;
}

json FindingKindsJson() {
  json kinds = json::array();
  for (const FindingKind& kind : AllFindingKinds()) {
    kinds.push_back(json{{"id", kind.id}, {"severity", SeverityName(kind.severity)}, {"help", kind.help}});
  }
  return json{{"schema", kJsonSchema}, {"kinds", std::move(kinds)}};
}
