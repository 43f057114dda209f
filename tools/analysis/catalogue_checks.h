// Findings about what the read made, rather than how it read: duplicate
// ids, numbers without a name in their list, and what a write will not keep.
#ifndef DEVDEF_TOOLS_ANALYSIS_CATALOGUE_CHECKS_H_
#define DEVDEF_TOOLS_ANALYSIS_CATALOGUE_CHECKS_H_

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/read_replay.h"
#include "tools/analysis/source_map.h"

// A name of the catalogue and the bytes it was read from.
struct NamePlace {
  const CString* name;
  const char* what;  // "kind", "manufacturer", "device"
  ByteSpan span;
};

// Names that hold a blank: a write keeps the blank, so they do not read back
// whole.
void CheckNames(const std::vector<NamePlace>& names, std::vector<RawFinding>& out);

// Duplicate ids, numbers without names and, for layout 7, what its writer
// loses; definitions in the order of the file, bytes the file's.
void CheckDefinitions(const std::string& bytes, const std::vector<DefinitionSpan>& order, int layout,
                      const SourceMap& map, std::vector<RawFinding>& out);

#endif  // DEVDEF_TOOLS_ANALYSIS_CATALOGUE_CHECKS_H_
