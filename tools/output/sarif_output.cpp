#include "tools/output/sarif_output.h"

#include <cstring>
#include <unordered_map>

#include "tools/diagnostics/finding_text.h"
#include "tools/text/text_encoding.h"

using nlohmann::json;

namespace {

// A finding's severity as a SARIF level: the names are the same.
const char* Level(Severity severity) { return SeverityName(severity); }

json Rules() {
  json rules = json::array();
  for (const FindingKind& kind : AllFindingKinds()) {
    rules.push_back(json{{"id", kind.id},
                         {"shortDescription", {{"text", kind.help}}},
                         {"help", {{"text", kind.help}}},
                         {"defaultConfiguration", {{"level", Level(kind.severity)}}}});
  }
  return rules;
}

// A place in the file: the run's artifact 0 and the range as a region.
json PhysicalLocation(const std::string& uri, const TextRange& range) {
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

json SarifLog(const std::string& file, const std::vector<const Finding*>& findings) {
  const std::string uri = PathToUri(file);
  std::unordered_map<std::string, int> ruleIndex;
  for (const FindingKind& kind : AllFindingKinds()) ruleIndex.emplace(kind.id, static_cast<int>(ruleIndex.size()));
  json results = json::array();
  for (const Finding* finding : findings) {
    json result = {{"ruleId", finding->kind->id},
                   {"ruleIndex", ruleIndex.at(finding->kind->id)},
                   {"level", Level(finding->severity)},
                   {"message", {{"text", FindingMessage(*finding)}}},
                   {"locations", json::array({{{"physicalLocation", PhysicalLocation(uri, finding->range)}}})},
                   {"occurrenceCount", finding->count}};
    if (!finding->related.empty()) {
      json related = json::array();
      for (const RelatedPlace& place : finding->related) {
        related.push_back(json{{"id", related.size()},
                               {"physicalLocation", PhysicalLocation(uri, place.range)},
                               {"message", {{"text", ShownText(place.message)}}}});
      }
      result["relatedLocations"] = std::move(related);
    }
    results.push_back(std::move(result));
  }
  json driver = {{"name", "devdef"}, {"version", DEVDEF_VERSION}, {"rules", Rules()}};
  json run = {{"tool", {{"driver", std::move(driver)}}},
              {"artifacts", json::array({{{"location", {{"uri", uri}}}, {"roles", json::array({"analysisTarget"})}}})},
              {"columnKind", "unicodeCodePoints"},
              {"results", std::move(results)}};
  return json{{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
              {"version", "2.1.0"},
              {"runs", json::array({std::move(run)})}};
}
