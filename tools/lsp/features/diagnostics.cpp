#include "tools/lsp/features/diagnostics.h"

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

void AppendDiagnostic(Target& target, const Finding& finding) {
  std::string& out = target.out;
  const Analysis& analysis = target.analysis;
  out += "{\"range\":";
  target.Range(finding.span);
  out += ",\"severity\":";
  AppendJsonNumber(out, SeverityNumber(finding.severity));
  out += ",\"code\":";
  AppendString(out, InfoOf(finding.kind).id);
  out += ",\"source\":\"devdef\",\"message\":";
  const std::string message = analysis.MessageOf(finding);
  target.Text(finding.count > 1 ? message + " (" + std::to_string(finding.count) + " times)" : message);
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

std::string PublishDiagnosticsBody(const std::string& uri, std::int64_t version, const Analysis* analysis,
                                   BufferEncoding encoding, bool markOnDisk) {
  std::string out = "{\"jsonrpc\":\"2.0\",\"method\":\"textDocument/publishDiagnostics\",\"params\":{\"uri\":";
  AppendString(out, uri);
  if (analysis != nullptr) {
    out += ",\"version\":";
    AppendJsonNumber(out, static_cast<long long>(version));
  }
  out += ",\"diagnostics\":[";
  if (analysis != nullptr) {
    const PositionConverter positions(analysis->Bytes(), analysis->Map(), encoding);
    Target target{out, uri, *analysis, positions, encoding};
    if (!analysis->Usable()) {
      AppendUnusable(target, *analysis);
    } else {
      const std::vector<Finding>& findings = analysis->FindingsOf().List();
      out.reserve(out.size() + findings.size() * 200);
      for (size_t i = 0; i < findings.size(); ++i) {
        if (i > 0) out += ',';
        AppendDiagnostic(target, findings[i]);
      }
      const std::string_view bytes = analysis->Bytes();
      const LineLooks looks(bytes, analysis->Layout());
      if (markOnDisk && looks.OpensWithNoCase(0, static_cast<std::uint32_t>(bytes.size()), "DEF_LAYOUT_VERSION")) {
        if (!findings.empty()) out += ',';
        AppendHiddenMark(target);
      }
    }
  }
  out += "]}}";
  return out;
}

std::string DiagnosticText(const std::string& uri, const Analysis& analysis, const PositionConverter& positions,
                           BufferEncoding encoding, const Finding& finding) {
  std::string out;
  Target target{out, uri, analysis, positions, encoding};
  AppendDiagnostic(target, finding);
  return out;
}
