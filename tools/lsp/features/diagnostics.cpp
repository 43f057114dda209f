#include "tools/lsp/features/diagnostics.h"

#include <cstring>

#include "tools/lsp/protocol/json_text.h"
#include "tools/lsp/protocol/text_positions.h"

namespace {

void AppendString(std::string& out, const std::string& text) { AppendJsonString(out, text); }

// Where the diagnostics go: the document and how its bytes are shown.
struct Target {
  std::string& out;
  const std::string& uri;
  const PositionConverter& positions;
  BufferEncoding encoding;

  void Text(const std::string& bytes) { AppendString(out, DecodeBuffer(encoding, bytes)); }
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
  const PositionConverter& positions = target.positions;
  out += "{\"range\":";
  AppendJsonRange(out, positions, finding.range);
  out += ",\"severity\":";
  AppendJsonNumber(out, SeverityNumber(finding.severity));
  out += ",\"code\":";
  AppendString(out, finding.kind->id);
  out += ",\"source\":\"devdef\",\"message\":";
  target.Text(finding.count > 1 ? finding.message + " (" + std::to_string(finding.count) + " times)" : finding.message);
  if (!finding.related.empty()) {
    out += ",\"relatedInformation\":[";
    for (size_t i = 0; i < finding.related.size(); ++i) {
      const RelatedPlace& related = finding.related[i];
      if (i > 0) out += ',';
      out += "{\"location\":{\"uri\":";
      AppendString(out, target.uri);
      out += ",\"range\":";
      AppendJsonRange(out, positions, related.range);
      out += "},\"message\":";
      target.Text(related.message);
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
  for (const Finding& finding : analysis.Findings()) {
    if (std::strcmp(finding.kind->id, "no-version") == 0) noVersion = &finding;
  }
  out += "{\"range\":";
  if (noVersion != nullptr) {
    AppendJsonRange(out, target.positions, noVersion->range);
  } else {
    out += "{\"start\":{\"line\":0,\"character\":0},\"end\":{\"line\":0,\"character\":0}}";
  }
  out += ",\"severity\":1";
  if (noVersion != nullptr) out += ",\"code\":\"no-version\"";
  out += ",\"source\":\"devdef\",\"message\":";
  target.Text(analysis.Error().empty() ? std::string("not a definition file") : analysis.Error());
  out += '}';
}

}  // namespace

std::string PublishDiagnosticsBody(const std::string& uri, std::int64_t version, const Analysis* analysis,
                                   BufferEncoding encoding) {
  std::string out = "{\"jsonrpc\":\"2.0\",\"method\":\"textDocument/publishDiagnostics\",\"params\":{\"uri\":";
  AppendString(out, uri);
  if (analysis != nullptr) {
    out += ",\"version\":";
    AppendJsonNumber(out, static_cast<long long>(version));
  }
  out += ",\"diagnostics\":[";
  if (analysis != nullptr) {
    const PositionConverter positions(analysis->Bytes(), analysis->Map(), encoding);
    Target target{out, uri, positions, encoding};
    if (!analysis->Usable()) {
      AppendUnusable(target, *analysis);
    } else {
      const std::vector<Finding>& findings = analysis->Findings();
      out.reserve(out.size() + findings.size() * 200);
      for (size_t i = 0; i < findings.size(); ++i) {
        if (i > 0) out += ',';
        AppendDiagnostic(target, findings[i]);
      }
    }
  }
  out += "]}}";
  return out;
}
