#include "tools/lsp/features/workspace_edit.h"

using nlohmann::json;

json WorkspaceEditOf(const DocumentView& view, const std::vector<ByteReplacement>& replacements) {
  json edits = json::array();
  for (const ByteReplacement& replacement : replacements) {
    edits.push_back(
        json{{"range", view.positions.RangeJson(view.RangeOf(replacement.span))}, {"newText", view.Shown(replacement.bytes)}});
  }
  return json{{"changes", {{view.uri, std::move(edits)}}}};
}
