// The changes between two catalogues as one JSON document, written change
// by change.
#ifndef DEVDEF_TOOLS_OUTPUT_DIFF_JSON_H_
#define DEVDEF_TOOLS_OUTPUT_DIFF_JSON_H_

#include <string>
#include <vector>

#include "tools/diff/catalogue_diff.h"
#include "tools/output/json_writer.h"

// {"changes": [...], "new": {"file", "layout"}, "old": {...}, "schema": 2}
// and a line end; names and texts decoded with the run's encoding, file
// names too.
void WriteDiffJson(JsonWriter& writer, const std::string& oldName, int oldLayout, const std::string& newName,
                   int newLayout, const std::vector<DiffChange>& changes);

#endif  // DEVDEF_TOOLS_OUTPUT_DIFF_JSON_H_
