#include "tools/lsp/features/diagnostics.h"

#include "tools/diagnostics/finding_text.h"
#include "tools/diagnostics/repeated_findings.h"
#include "tools/lsp/protocol/json_text.h"
#include "tools/lsp/protocol/text_positions.h"

namespace {

void AppendString(std::string& out, const std::string& text) { AppendJsonString(out, text); }

// Where the diagnostics go: the document, its analysis and how its bytes
// are shown.
struct Target {
  std::string& out;
  const std::string& uri;
  const Analysis& analysis;
  const PositionConverter& positions;
  BufferEncoding encoding;

  void Text(const std::string& bytes) { AppendString(out, DecodeBuffer(encoding, bytes)); }
  void Range(ByteSpan span) { AppendJsonRange(out, positions, analysis.Map().RangeOf(span)); }
};

// The findings [from, to) of a list.
std::vector<const Finding*> AllOf(const std::vector<Finding>& findings, size_t from, size_t to) {
  std::vector<const Finding*> all;
  all.reserve(to - from);
  for (size_t i = from; i < to; ++i) all.push_back(&findings[i]);
  return all;
}

// The protocol's severity: Error 1, Warning 2, Information 3.
int SeverityNumber(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return 1;
    case Severity::kWarning:
      return 2;
    case Severity::kNote:
      return 3;
  }
  return 1;
}

// A finding, or findings repeated along its line merged into it
// (tools/diagnostics/repeated_findings.h): its range runs to the end of the
// last, its message says how often and where.
void AppendDiagnostic(Target& target, const ShownFinding& shown) {
  const Finding& finding = *shown.finding;
  std::string& out = target.out;
  const Analysis& analysis = target.analysis;
  out += "{\"range\":";
  target.Range(shown.Whole());
  out += ",\"severity\":";
  AppendJsonNumber(out, SeverityNumber(finding.severity));
  out += ",\"code\":";
  AppendString(out, InfoOf(finding.kind).id);
  out += ",\"source\":\"devdef\",\"message\":";
  const std::string message = analysis.MessageOf(finding);
  target.Text(message + RepeatSuffix(analysis, shown, ColumnUnit::kCodePoints));
  const Findings& findings = analysis.FindingsOf();
  if (finding.relatedCount > 0) {
    out += ",\"relatedInformation\":[";
    for (const RelatedPlace* related = findings.RelatedBegin(finding); related != findings.RelatedEnd(finding);
         ++related) {
      if (related != findings.RelatedBegin(finding)) out += ',';
      out += "{\"location\":{\"uri\":";
      AppendString(out, target.uri);
      out += ",\"range\":";
      target.Range(related->span);
      out += "},\"message\":";
      target.Text(analysis.MessageOf(related->says, findings));
      out += '}';
    }
    out += ']';
  }
  out += '}';
}

// The one diagnostic of a document that is no definition file: at its
// no-version finding when there is one, else at its start.
void AppendUnusable(Target& target, const Analysis& analysis) {
  std::string& out = target.out;
  const Finding* noVersion = nullptr;
  for (const Finding& finding : analysis.FindingsOf().List()) {
    if (finding.kind == FindingKind::kNoVersion) noVersion = &finding;
  }
  out += "{\"range\":";
  if (noVersion != nullptr) {
    target.Range(noVersion->span);
  } else {
    out += "{\"start\":{\"line\":0,\"character\":0},\"end\":{\"line\":0,\"character\":0}}";
  }
  out += ",\"severity\":1";
  if (noVersion != nullptr) out += ",\"code\":\"no-version\"";
  out += ",\"source\":\"devdef\",\"message\":";
  target.Text(analysis.Error().empty() ? std::string("not a definition file") : analysis.Error());
  out += '}';
}

// The file on disk opens with a byte order mark that the editor hides: the
// library reads it with the mark, in front of the version line.
void AppendHiddenMark(Target& target) {
  std::string& out = target.out;
  out += "{\"range\":";
  target.Range(ByteSpan{0, 18});
  out += ",\"severity\":1,\"code\":\"no-version\",\"source\":\"devdef\",\"message\":";
  target.Text(target.analysis.MessageOf(Says(MessageForm::kVersionBehindMark), target.analysis.FindingsOf()) +
              " (the editor does not show the mark, but the file on disk opens with it)");
  out += '}';
}

}  // namespace

namespace {

void AppendHead(std::string& out, const std::string& uri, const std::int64_t* version) {
  out += "{\"jsonrpc\":\"2.0\",\"method\":\"textDocument/publishDiagnostics\",\"params\":{\"uri\":";
  AppendString(out, uri);
  if (version != nullptr) {
    out += ",\"version\":";
    AppendJsonNumber(out, static_cast<long long>(*version));
  }
  out += ",\"diagnostics\":[";
}

// Items [from, to) of items, each behind a "," unless it is the first of
// the list.
void AppendItems(std::string& out, const DiagnosticItems& items, size_t from, size_t to, bool& first) {
  for (size_t i = from; i < to; ++i) {
    const size_t begin = i == 0 ? 0 : items.ends[i - 1];
    // A finding merged into one before it has no item of its own.
    if (begin == items.ends[i]) continue;
    if (!first) out += ',';
    first = false;
    out.append(items.text, begin, items.ends[i] - begin);
  }
}

void AppendTail(std::string& out, const DiagnosticItems& items, bool first) {
  if (!items.tail.empty()) {
    if (!first) out += ',';
    out += items.tail;
  }
  out += "]}}";
}

}  // namespace

DiagnosticItems MakeDiagnosticItems(const std::string& uri, const Analysis& analysis, BufferEncoding encoding,
                                    bool markOnDisk) {
  DiagnosticItems items;
  const PositionConverter positions(analysis.Bytes(), analysis.Map(), encoding);
  Target target{items.text, uri, analysis, positions, encoding};
  const std::vector<Finding>& findings = analysis.FindingsOf().List();
  items.text.reserve(findings.size() * 200);
  items.ends.reserve(findings.size());
  // Each finding's item; one merged into another keeps an empty one, so
  // that the items stay one a finding.
  const std::vector<ShownFinding> shown = MergeRepeats(analysis, AllOf(findings, 0, findings.size()));
  size_t next = 0;
  for (size_t i = 0; i < findings.size(); ++i) {
    if (next < shown.size() && shown[next].finding == &findings[i]) AppendDiagnostic(target, shown[next++]);
    items.ends.push_back(items.text.size());
  }
  const std::string_view bytes = analysis.Bytes();
  const LineLooks looks(bytes, analysis.Layout());
  if (markOnDisk && looks.OpensWithNoCase(0, static_cast<std::uint32_t>(bytes.size()), "DEF_LAYOUT_VERSION")) {
    Target tail{items.tail, uri, analysis, positions, encoding};
    AppendHiddenMark(tail);
  }
  return items;
}

std::string PublishDiagnosticsBody(const std::string& uri, std::int64_t version, const DiagnosticItems& items) {
  std::string out;
  out.reserve(items.text.size() + items.ends.size() + items.tail.size() + uri.size() + 128);
  AppendHead(out, uri, &version);
  bool first = true;
  AppendItems(out, items, 0, items.ends.size(), first);
  AppendTail(out, items, first);
  return out;
}

std::string PublishSplicedBody(const std::string& uri, std::int64_t version, const DiagnosticItems& items,
                               size_t before, size_t behind, const Analysis& small, size_t first, size_t count,
                               long lineShift, BufferEncoding encoding) {
  std::string out;
  out.reserve(items.text.size() + items.ends.size() + items.tail.size() + uri.size() + 128 + count * 200);
  AppendHead(out, uri, &version);
  bool none = true;
  AppendItems(out, items, 0, before, none);
  PositionConverter positions(small.Bytes(), small.Map(), encoding);
  positions.ShiftLines(lineShift);
  Target target{out, uri, small, positions, encoding};
  const std::vector<Finding>& findings = small.FindingsOf().List();
  for (const ShownFinding& shown : MergeRepeats(small, AllOf(findings, first, first + count))) {
    if (!none) out += ',';
    none = false;
    AppendDiagnostic(target, shown);
  }
  AppendItems(out, items, behind, items.ends.size(), none);
  AppendTail(out, items, none);
  return out;
}

std::string PublishDiagnosticsBody(const std::string& uri, std::int64_t version, const Analysis* analysis,
                                   BufferEncoding encoding, bool markOnDisk) {
  if (analysis != nullptr && analysis->Usable()) {
    return PublishDiagnosticsBody(uri, version, MakeDiagnosticItems(uri, *analysis, encoding, markOnDisk));
  }
  std::string out;
  AppendHead(out, uri, analysis != nullptr ? &version : nullptr);
  if (analysis != nullptr) {
    const PositionConverter positions(analysis->Bytes(), analysis->Map(), encoding);
    Target target{out, uri, *analysis, positions, encoding};
    AppendUnusable(target, *analysis);
  }
  out += "]}}";
  return out;
}

std::string DiagnosticText(const std::string& uri, const Analysis& analysis, const PositionConverter& positions,
                           BufferEncoding encoding, const Finding& finding) {
  std::string out;
  Target target{out, uri, analysis, positions, encoding};
  AppendDiagnostic(target, ShownFinding{&finding, finding.count, finding.span});
  return out;
}
