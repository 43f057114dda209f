#include "tools/lsp/document_view.h"

TextRange DocumentView::RangeOf(ByteSpan span) const { return analysis.Map().RangeOf(span.begin, span.end); }

nlohmann::json DocumentView::Location(const TextRange& range) const {
  return nlohmann::json{{"uri", uri}, {"range", positions.RangeJson(range)}};
}

std::string DocumentView::Shown(const std::string& bytes) const { return DecodeBuffer(encoding, bytes); }

std::string DocumentView::Name(const CString& name) const {
  if (name.GetLength() == 0) return "(no name)";
  return Shown(std::string(static_cast<LPCTSTR>(name), static_cast<size_t>(name.GetLength())));
}
