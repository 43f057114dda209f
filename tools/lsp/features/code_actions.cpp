#include "tools/lsp/features/code_actions.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tools/edit/edit_engine.h"
#include "tools/lsp/features/diagnostics.h"
#include "tools/lsp/features/verified_fix.h"
#include "tools/lsp/features/workspace_edit.h"
#include "tools/text/line_end.h"

using nlohmann::json;

namespace {

// A fix: what it does in words (bytes of the file, as names are) and the
// replacements that make it.
struct Fix {
  std::string title;
  std::vector<ByteReplacement> replacements;
};

// The line end the file uses first, for lines a fix adds; LF in a file of
// one line.
std::string LineEndOf(std::string_view bytes) {
  const size_t at = FindLineEnd(reinterpret_cast<const unsigned char*>(bytes.data()), 0, bytes.size());
  if (at >= bytes.size() || bytes[at] == '\n') return "\n";
  return at + 1 < bytes.size() && bytes[at + 1] == '\n' ? "\r\n" : "\r";
}

// Bytes put in at offset, as a fix of finding that must verify.
bool Inserted(const DocumentView& view, const Finding& finding, std::uint32_t offset, std::string bytes, Fix* fix) {
  const ByteReplacement replacement{ByteSpan{offset, offset}, std::move(bytes)};
  if (!FixHolds(view.analysis, view.options, finding, replacement)) return false;
  fix->replacements.push_back(replacement);
  return true;
}

// The number of a bad-number finding and its list.
bool BadNumber(const Finding& finding, int* list) {
  switch (finding.says.form) {
    case MessageForm::kBadPackage:
      *list = 0;
      return true;
    case MessageForm::kBadAdapter:
      *list = 1;
      return true;
    case MessageForm::kBadModule:
      *list = 2;
      return true;
    default:
      return false;
  }
}

// A number one past the end of its list: an entry at the end gives it a
// name, made of the list's and the number's.
bool DefineNumber(const DocumentView& view, const Finding& finding, Fix* fix) {
  int list = 0;
  if (!BadNumber(finding, &list)) return false;
  const std::vector<std::string>& names = view.analysis.ListNames(list);
  if (finding.says.a != names.size()) return false;  // how many entries would be a guess
  static const char* const prefixes[] = {"HOUSING_", "ADAPTER_", "MODULE_"};
  static const char* const lists[] = {"housing", "adapter", "module"};
  static const char* const fields[] = {"package", "adapter", "module"};
  const std::string name = prefixes[list] + std::to_string(finding.says.a);
  if (std::find(names.begin(), names.end(), name) != names.end()) return false;
  EditOperation operation;
  operation.kind = EditOperation::Kind::kAddEntry;
  operation.list = lists[list];
  operation.entry = name;
  const EditResult result = ApplyToDocument(view, {operation});
  if (result.status != EditResult::Status::kApplied) return false;
  fix->title = std::string("Define ") + fields[list] + " " + std::to_string(finding.says.a) + ": add " + name +
               " to the end of " + ListKeyword(list);
  fix->replacements = result.replacements;
  return true;
}

bool FixOf(const DocumentView& view, const Finding& finding, Fix* fix) {
  const std::string_view bytes = view.analysis.Bytes();
  const std::uint32_t size = static_cast<std::uint32_t>(bytes.size());
  const bool ended = size > 0 && IsLineEnd(static_cast<unsigned char>(bytes[size - 1]));
  switch (finding.kind) {
    case FindingKind::kLostEntry:
      if (finding.says.form != MessageForm::kListEntryNoDelimiter) return false;
      fix->title = "Add ';' behind '" + std::string(bytes.substr(finding.span.begin, finding.span.end - finding.span.begin)) +
                   "', so that the list keeps it";
      return Inserted(view, finding, finding.span.end, ";", fix);
    case FindingKind::kNoLineEnd:
      fix->title = "End the last line with a line end";
      return Inserted(view, finding, size, LineEndOf(bytes), fix);
    case FindingKind::kCutOff:
      if (finding.says.b == 0) {
        fix->title = "End the last line with a line end";
        return Inserted(view, finding, size, LineEndOf(bytes), fix);
      }
      if (finding.says.b != 1) return false;
      {
        const CString& name = view.analysis.Devices()[finding.says.a].device->m_DeviceName;
        fix->title = "Close the block of " + std::string(static_cast<LPCTSTR>(name), static_cast<size_t>(name.GetLength())) +
                     " with '}'";
      }
      return Inserted(view, finding, size, (ended ? "" : LineEndOf(bytes)) + "}" + LineEndOf(bytes), fix);
    case FindingKind::kBadNumber:
      return DefineNumber(view, finding, fix);
    default:
      return false;
  }
}

}  // namespace

json CodeActionsFor(const DocumentView& view, size_t begin, size_t end) {
  json actions = json::array();
  const std::vector<Finding>& findings = view.analysis.FindingsOf().List();
  size_t tried = 0;
  for (const Finding& finding : findings) {
    if (finding.span.begin > end) break;
    if (finding.span.end < begin) continue;
    if (tried == kMaxFixesPerRequest) break;
    Fix fix;
    if (finding.kind != FindingKind::kLostEntry && finding.kind != FindingKind::kNoLineEnd &&
        finding.kind != FindingKind::kCutOff && finding.kind != FindingKind::kBadNumber) {
      continue;
    }
    ++tried;
    if (!FixOf(view, finding, &fix)) continue;
    actions.push_back(json{
        {"title", view.Shown(fix.title)},
        {"kind", "quickfix"},
        {"diagnostics",
         json::array({json::parse(DiagnosticText(view.uri, view.analysis, view.positions, view.encoding, finding))})},
        {"isPreferred", true},
        {"edit", WorkspaceEditOf(view, fix.replacements)}});
  }
  return actions;
}
