#include "tools/output/findings_json.h"

#include "tools/diagnostics/finding_text.h"
#include "tools/output/json_document.h"
#include "tools/output/output_buffer.h"

using nlohmann::json;

namespace {

// The members of a span's place, in the order of their keys but
// "last_column", which falls between them; columns count characters, as
// SARIF's do. Behind "end_line", what between writes.
template <typename Between>
void WriteRange(JsonWriter& out, const Analysis& analysis, ByteSpan span, Between between) {
  const TextRange range = ShownRange(analysis, span, ColumnUnit::kCodePoints);
  out.Key("column");
  out.Signed(range.start.column);
  between(0);
  out.Key("end_column");
  out.Signed(range.stop.column);
  out.Key("end_line");
  out.Signed(range.stop.line);
  between(1);
  out.Key("line");
  out.Signed(range.start.line);
}

void WriteFinding(JsonWriter& out, const Analysis& analysis, const Findings& findings, const ShownFinding& shown) {
  const Finding* finding = shown.finding;
  out.BeginObject();
  WriteRange(out, analysis, shown.Whole(), [&](int at) {
    if (at == 0) {
      out.Key("count");
      out.Unsigned(shown.count);
      return;
    }
    out.Key("kind");
    out.String(InfoOf(finding->kind).id);
    if (shown.Spread()) {
      out.Key("last_column");
      out.Signed(ShownPoint(analysis, shown.last.begin, ColumnUnit::kCodePoints).column);
    }
  });
  const std::string message = analysis.MessageOf(*finding, findings);
  WriteShownText(out, "message", message.data(), message.size());
  out.Key("related");
  out.BeginArray();
  for (const RelatedPlace* place = findings.RelatedBegin(*finding); place != findings.RelatedEnd(*finding); ++place) {
    out.BeginObject();
    out.Key("cause");
    out.Bool(place->cause);
    WriteRange(out, analysis, place->span, [](int) {});
    const std::string says = analysis.MessageOf(place->says, findings);
    WriteShownText(out, "message", says.data(), says.size());
    out.EndObject();
  }
  out.EndArray();
  out.Key("severity");
  out.String(SeverityName(finding->severity));
  out.EndObject();
}

}  // namespace

void PrintFindingsJson(std::FILE* stream, const Analysis& analysis, const Findings& findings,
                       const std::vector<ShownFinding>& shown, const SeverityCounts& counts, size_t leftOut) {
  OutputBuffer buffer(stream);
  JsonWriter writer(buffer);
  const auto list = [&](JsonWriter& out) {
    out.BeginArray();
    for (const ShownFinding& item : shown) WriteFinding(out, analysis, findings, item);
    out.EndArray();
  };
  const auto summary = [&](JsonWriter& out) {
    out.BeginObject();
    out.Key("errors");
    out.Signed(counts.errors);
    if (leftOut > 0) {
      out.Key("left_out");
      out.Unsigned(leftOut);
    }
    out.Key("notes");
    out.Signed(counts.notes);
    out.Key("warnings");
    out.Signed(counts.warnings);
    out.EndObject();
  };
  WriteDocument(writer, analysis, {{"findings", list}, {"summary", summary}});
}

json FindingKindsJson() {
  json kinds = json::array();
  for (const FindingInfo& info : AllFindingKinds()) {
    kinds.push_back(json{{"id", info.id}, {"severity", SeverityName(info.severity)}, {"help", info.explanation}});
  }
  return json{{"schema", kJsonSchema}, {"kinds", std::move(kinds)}};
}
