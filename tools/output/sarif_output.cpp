#include "tools/output/sarif_output.h"

#include <cstring>

#include "tools/diagnostics/finding_text.h"
#include "tools/output/json_writer.h"
#include "tools/output/output_buffer.h"
#include "tools/text/text_encoding.h"

namespace {

// A finding's severity as a SARIF level: the names are the same.
const char* Level(Severity severity) { return SeverityName(severity); }

// {"text": text}.
void WriteMessage(JsonWriter& out, const std::string& text) {
  out.BeginObject();
  out.Key("text");
  out.String(text);
  out.EndObject();
}

void WriteRules(JsonWriter& out) {
  out.BeginArray();
  for (const FindingInfo& info : AllFindingKinds()) {
    out.BeginObject();
    out.Key("defaultConfiguration");
    out.BeginObject();
    out.Key("level");
    out.String(Level(info.severity));
    out.EndObject();
    out.Key("help");
    WriteMessage(out, info.explanation);
    out.Key("id");
    out.String(info.id);
    out.Key("shortDescription");
    WriteMessage(out, info.explanation);
    out.EndObject();
  }
  out.EndArray();
}

// A place in the file: the run's artifact 0 and the span as a region.
void WritePhysicalLocation(JsonWriter& out, const std::string& uri, const Analysis& analysis, ByteSpan span) {
  const TextRange range = ShownRange(analysis, span, ColumnUnit::kCodePoints);
  out.BeginObject();
  out.Key("artifactLocation");
  out.BeginObject();
  out.Key("index");
  out.Signed(0);
  out.Key("uri");
  out.String(uri);
  out.EndObject();
  // Lines and columns start at 1; a place without them has no region.
  if (range.start.line >= 1 && range.start.column >= 1) {
    out.Key("region");
    out.BeginObject();
    out.Key("endColumn");
    out.Signed(range.stop.column);
    out.Key("endLine");
    out.Signed(range.stop.line);
    out.Key("startColumn");
    out.Signed(range.start.column);
    out.Key("startLine");
    out.Signed(range.start.line);
    out.EndObject();
  }
  out.EndObject();
}

// One finding as a result of the run.
void WriteResult(JsonWriter& out, const std::string& uri, const Analysis& analysis, const Findings& findings,
                 const ShownFinding& shown) {
  const Finding* finding = shown.finding;
  out.BeginObject();
  out.Key("level");
  out.String(Level(finding->severity));
  out.Key("locations");
  out.BeginArray();
  out.BeginObject();
  out.Key("physicalLocation");
  WritePhysicalLocation(out, uri, analysis, shown.Whole());
  out.EndObject();
  out.EndArray();
  out.Key("message");
  WriteMessage(out, FindingMessage(analysis, findings, shown, ColumnUnit::kCodePoints));
  out.Key("occurrenceCount");
  out.Unsigned(shown.count);
  if (finding->relatedCount > 0) {
    out.Key("relatedLocations");
    out.BeginArray();
    std::uint64_t id = 0;
    for (const RelatedPlace* place = findings.RelatedBegin(*finding); place != findings.RelatedEnd(*finding); ++place) {
      out.BeginObject();
      out.Key("id");
      out.Unsigned(id++);
      out.Key("message");
      WriteMessage(out, RelatedMessage(analysis, findings, *place));
      out.Key("physicalLocation");
      WritePhysicalLocation(out, uri, analysis, place->span);
      out.EndObject();
    }
    out.EndArray();
  }
  out.Key("ruleId");
  out.String(InfoOf(finding->kind).id);
  out.Key("ruleIndex");
  out.Signed(static_cast<int>(finding->kind));
  out.EndObject();
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

void PrintSarifLog(std::FILE* stream, const std::string& file, const Analysis& analysis, const Findings& findings,
                   const std::vector<ShownFinding>& shown, size_t leftOut) {
  const std::string uri = PathToUri(file);
  OutputBuffer buffer(stream);
  JsonWriter out(buffer);
  out.BeginObject();
  out.Key("$schema");
  out.String("https://json.schemastore.org/sarif-2.1.0.json");
  out.Key("runs");
  out.BeginArray();
  out.BeginObject();
  out.Key("artifacts");
  out.BeginArray();
  out.BeginObject();
  out.Key("location");
  out.BeginObject();
  out.Key("uri");
  out.String(uri);
  out.EndObject();
  out.Key("roles");
  out.BeginArray();
  out.String("analysisTarget");
  out.EndArray();
  out.EndObject();
  out.EndArray();
  out.Key("columnKind");
  out.String("unicodeCodePoints");
  if (leftOut > 0) {
    out.Key("properties");
    out.BeginObject();
    out.Key("findingsLeftOut");
    out.Unsigned(leftOut);
    out.EndObject();
  }
  out.Key("results");
  out.BeginArray();
  for (const ShownFinding& item : shown) WriteResult(out, uri, analysis, findings, item);
  out.EndArray();
  out.Key("tool");
  out.BeginObject();
  out.Key("driver");
  out.BeginObject();
  out.Key("name");
  out.String("devdef");
  out.Key("rules");
  WriteRules(out);
  out.Key("version");
  out.String(DEVDEF_VERSION);
  out.EndObject();
  out.EndObject();
  out.EndObject();
  out.EndArray();
  out.Key("version");
  out.String("2.1.0");
  out.EndObject();
  out.EndDocument();
}
