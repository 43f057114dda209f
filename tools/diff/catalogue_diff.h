// What changed between two catalogues, by meaning: kinds, manufacturers and
// devices matched by their names along their path, devices that stand
// elsewhere or under another name matched by their definitions, definitions
// by id within their device, numbers compared by the names they resolve to
// in each file's own header lists, and the header lists themselves compared
// by their names.
#ifndef DEVDEF_TOOLS_DIFF_CATALOGUE_DIFF_H_
#define DEVDEF_TOOLS_DIFF_CATALOGUE_DIFF_H_

#include <string>
#include <utility>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/diff/diff_value.h"

struct DiffChange {
  enum class Change { kAdded, kRemoved, kChanged, kMoved, kRenamed };
  enum class What { kKind, kManufacturer, kDevice, kDefinition, kListEntry };

  Change change;
  What what;
  // The names from the kind down to the thing's parent; for a definition,
  // down to its device; for a list entry, the list's keyword. For a move,
  // the path it has in the new file.
  std::vector<std::string> path;
  std::string name;     // the thing's own name (empty for a definition)
  std::string oldName;  // for a renamed device: its name in the old file
  bool hasId = false;
  DWORD id = 0;
  // Each changed field with its old and new value, names resolved through
  // each file's lists; for a thing added or removed, each field it has,
  // with none on the other side.
  std::vector<std::pair<std::string, std::pair<DiffValue, DiffValue>>> fields;
  std::vector<std::string> from;  // for a moved or renamed device: the old path
  long oldLine = 0;               // 0: not in that file
  long newLine = 0;
};

// Options of a comparison.
struct DiffOptions {
  bool visibleOnly = false;  // leave hidden definitions out
};

// The changes that turn the catalogue of oldFile into that of newFile: list
// entries first, then kinds and manufacturers, then devices in the order of
// the new file, each followed by the changes of its definitions, and the
// removed devices in the order of the old. A device that is not where it
// was is, in this order of preference: moved (the same name and
// definitions elsewhere), renamed (the same definitions, at least one, under
// another name, perhaps elsewhere), moved and changed (the same name
// elsewhere); else it is added, and the old one removed. Linear in the two
// catalogues, the devices matched by hashing.
std::vector<DiffChange> DiffCatalogues(Analysis& oldFile, Analysis& newFile, const DiffOptions& options);

// "added", "removed", "changed", "moved", "renamed"; "kind", "manufacturer", ...
const char* ChangeName(DiffChange::Change change);
const char* WhatName(DiffChange::What what);

#endif  // DEVDEF_TOOLS_DIFF_CATALOGUE_DIFF_H_
