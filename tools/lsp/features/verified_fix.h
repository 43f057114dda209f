// A fix of a finding that no edit operation makes (a ";" that ends a list,
// a "}" that closes the last block, a line end): bytes put into the file,
// verified as the edit engine verifies its edits, by reading the fixed text
// again. Where an operation can make the fix, the edit engine makes it.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_VERIFIED_FIX_H_
#define DEVDEF_TOOLS_LSP_FEATURES_VERIFIED_FIX_H_

#include "tools/analysis/analysis.h"
#include "tools/edit/edit_engine.h"

// Whether fix, applied to the bytes of analysis (read with options), fixes
// finding: the fixed text, read again with the same options, is a
// definition file that has no finding of the fixed one's kind at its place
// and no finding that the old text did not have (places compared across the
// fix).
bool FixHolds(const Analysis& analysis, const AnalysisOptions& options, const Finding& finding,
              const ByteReplacement& fix);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_VERIFIED_FIX_H_
