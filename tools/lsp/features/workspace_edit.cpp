#include "tools/lsp/features/workspace_edit.h"

#include "tools/text/text_encoding.h"

using nlohmann::json;

json WorkspaceEditOf(const DocumentView& view, const std::vector<ByteReplacement>& replacements) {
  json edits = json::array();
  for (const ByteReplacement& replacement : replacements) {
    edits.push_back(
        json{{"range", view.positions.RangeJson(view.RangeOf(replacement.span))}, {"newText", view.Shown(replacement.bytes)}});
  }
  return json{{"changes", {{view.uri, std::move(edits)}}}};
}

EditResult ApplyToDocument(const DocumentView& view, const std::vector<EditOperation>& operations) {
  // The engine takes names in the run's encoding, which for the server is
  // that of the document at hand.
  const TextEncoding before = ShownEncoding();
  SetShownEncoding(view.encoding == BufferEncoding::kUtf8 ? TextEncoding::kUtf8 : TextEncoding::kWindows1252);
  EditResult result = ApplyEdits(view.analysis, operations, false);
  SetShownEncoding(before);
  return result;
}
