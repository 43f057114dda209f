// An analysed definition file as the features of the server see it: the
// analysis, what stands where, the conversion of its places to the
// protocol's positions, and the generation in force.
#ifndef DEVDEF_TOOLS_LSP_DOCUMENT_VIEW_H_
#define DEVDEF_TOOLS_LSP_DOCUMENT_VIEW_H_

#include <nlohmann/json.hpp>
#include <string>

#include "tools/analysis/analysis.h"
#include "tools/lsp/document_index.h"
#include "tools/lsp/protocol/text_positions.h"

struct DocumentView {
  const std::string& uri;
  Analysis& analysis;  // usable
  const DocumentIndex& index;
  const PositionConverter& positions;
  int generation;           // the generation in force
  BufferEncoding encoding;  // of the analysis's bytes
  AnalysisOptions options;  // those the document was read with

  // The range of the bytes of span.
  TextRange RangeOf(ByteSpan span) const;
  // {"uri", "range"}: a place of this document as a Location.
  nlohmann::json Location(const TextRange& range) const;
  // Bytes of the document (or text made of them) as UTF-8.
  std::string Shown(const std::string& bytes) const;
  // A name of the catalogue as UTF-8, or "(no name)" for an empty one, as
  // clients show no empty names.
  std::string Name(const CString& name) const;
};

#endif  // DEVDEF_TOOLS_LSP_DOCUMENT_VIEW_H_
