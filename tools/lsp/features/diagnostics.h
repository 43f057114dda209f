// The findings of a document's analysis as the protocol's diagnostics: each
// with its range, severity, kind (as code), source "devdef", message and
// related places. The notification is written straight into its text, as a
// large file has many thousands of findings.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_DIAGNOSTICS_H_
#define DEVDEF_TOOLS_LSP_FEATURES_DIAGNOSTICS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/lsp/protocol/text_positions.h"
#include "tools/text/buffer_encoding.h"

// The body of the textDocument/publishDiagnostics notification for the
// document uri at version, analysed as analysis from bytes in encoding. A
// document that is no definition file gets one diagnostic that says why; a
// null analysis (a closed document) none. markOnDisk: the file on disk
// opens with a UTF-8 byte order mark that the editor does not show, which
// hides a version line at the start of the text from the reader.
std::string PublishDiagnosticsBody(const std::string& uri, std::int64_t version, const Analysis* analysis,
                                   BufferEncoding encoding, bool markOnDisk = false);

// The diagnostics of a usable document's findings, each as its JSON text,
// kept so that a change inside one device's block writes only that block's
// again (block_reading.h).
struct DiagnosticItems {
  std::string text;          // the items, one behind the other
  std::vector<size_t> ends;  // where the item of each finding ends in text
  std::string tail;          // the item behind the findings' (a hidden byte order mark), or empty
};
DiagnosticItems MakeDiagnosticItems(const std::string& uri, const Analysis& analysis, BufferEncoding encoding,
                                    bool markOnDisk);
// The notification of those items.
std::string PublishDiagnosticsBody(const std::string& uri, std::int64_t version, const DiagnosticItems& items);
// The notification of the items of findings [0, before) and [behind, end)
// with, between them, the findings [first, first + count) of small, whose
// line L is the document's line L + lineShift.
std::string PublishSplicedBody(const std::string& uri, std::int64_t version, const DiagnosticItems& items,
                               size_t before, size_t behind, const Analysis& small, size_t first, size_t count,
                               long lineShift, BufferEncoding encoding);

// One finding of a usable document's analysis as the Diagnostic that the
// notification above publishes for it (JSON text), for the code actions
// that fix it.
std::string DiagnosticText(const std::string& uri, const Analysis& analysis, const PositionConverter& positions,
                           BufferEncoding encoding, const Finding& finding);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_DIAGNOSTICS_H_
