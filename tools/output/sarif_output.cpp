#include "tools/output/sarif_output.h"

#include <cstring>

#include "tools/diagnostics/finding_text.h"
#include "tools/output/json_stream.h"
#include "tools/text/text_encoding.h"

using nlohmann::json;

namespace {

// A finding's severity as a SARIF level: the names are the same.
const char* Level(Severity severity) { return SeverityName(severity); }

json Rules() {
  json rules = json::array();
  for (const FindingInfo& info : AllFindingKinds()) {
    rules.push_back(json{{"id", info.id},
                         {"shortDescription", {{"text", info.explanation}}},
                         {"help", {{"text", info.explanation}}},
                         {"defaultConfiguration", {{"level", Level(info.severity)}}}});
  }
  return rules;
}

// A place in the file: the run's artifact 0 and the span as a region.
json PhysicalLocation(const std::string& uri, const Analysis& analysis, ByteSpan span) {
  const TextRange range = ShownRange(analysis, span, ColumnUnit::kCodePoints);
  json location = {{"artifactLocation", {{"uri", uri}, {"index", 0}}}};
  // Lines and columns start at 1; a place without them has no region.
  if (range.start.line >= 1 && range.start.column >= 1) {
    location["region"] = {{"startLine", range.start.line},
                          {"startColumn", range.start.column},
                          {"endLine", range.stop.line},
                          {"endColumn", range.stop.column}};
  }
  return location;
}

// One finding as a result of the run.
json Result(const std::string& uri, const Analysis& analysis, const Findings& findings, const ShownFinding& shown) {
  const Finding* finding = shown.finding;
  json result = {{"ruleId", InfoOf(finding->kind).id},
                 {"ruleIndex", static_cast<int>(finding->kind)},
                 {"level", Level(finding->severity)},
                 {"message", {{"text", FindingMessage(analysis, findings, shown, ColumnUnit::kCodePoints)}}},
                 {"locations", json::array({{{"physicalLocation", PhysicalLocation(uri, analysis, shown.Whole())}}})},
                 {"occurrenceCount", shown.count}};
  if (finding->relatedCount > 0) {
    json related = json::array();
    for (const RelatedPlace* place = findings.RelatedBegin(*finding); place != findings.RelatedEnd(*finding); ++place) {
      related.push_back(json{{"id", related.size()},
                             {"physicalLocation", PhysicalLocation(uri, analysis, place->span)},
                             {"message", {{"text", RelatedMessage(analysis, findings, *place)}}}});
    }
    result["relatedLocations"] = std::move(related);
  }
  return result;
}

}  // namespace

std::string PathToUri(const std::string& path) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string uri = !path.empty() && path[0] == '/' ? "file://" : "";
  for (const char c : path) {
    const unsigned char byte = static_cast<unsigned char>(c);
    const bool plain = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
                       (byte != 0 && std::strchr("-._~/!$&'()*+,;=@", byte) != nullptr);
    if (plain) {
      uri += c;
    } else {
      uri += '%';
      uri += kHex[byte >> 4];
      uri += kHex[byte & 0xF];
    }
  }
  return uri;
}

void PrintSarifLog(std::FILE* out, const std::string& file, const Analysis& analysis, const Findings& findings,
                   const std::vector<ShownFinding>& shown, size_t leftOut) {
  const std::string uri = PathToUri(file);
  json driver = {{"name", "devdef"}, {"version", DEVDEF_VERSION}, {"rules", Rules()}};
  json run = {{"tool", {{"driver", std::move(driver)}}},
              {"artifacts", json::array({{{"location", {{"uri", uri}}}, {"roles", json::array({"analysisTarget"})}}})},
              {"columnKind", "unicodeCodePoints"}};
  if (leftOut > 0) run["properties"] = {{"findingsLeftOut", leftOut}};
  JsonStream stream(out);
  stream.OpenObject(json{{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"}, {"version", "2.1.0"}}, "runs");
  stream.OpenObject(std::move(run), "results");
  for (const ShownFinding& item : shown) stream.Element(Result(uri, analysis, findings, item));
  stream.CloseObject();
  stream.CloseObject();
}
