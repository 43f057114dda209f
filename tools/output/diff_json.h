// The changes between two catalogues as one JSON document.
#ifndef DEVDEF_TOOLS_OUTPUT_DIFF_JSON_H_
#define DEVDEF_TOOLS_OUTPUT_DIFF_JSON_H_

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/diff/catalogue_diff.h"
#include "tools/diff/diff_output.h"

// {"schema": 2, "old": {"file", "layout"}, "new": {...}, "changes": [...]}.
nlohmann::json DiffJson(const std::string& oldName, int oldLayout, const std::string& newName, int newLayout,
                        const std::vector<DiffChange>& changes, const ShowBytes& show);

#endif  // DEVDEF_TOOLS_OUTPUT_DIFF_JSON_H_
