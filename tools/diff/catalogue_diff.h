// What changed between two catalogues, by meaning: kinds, manufacturers and
// devices matched by their names along their path, definitions by id within
// their device, numbers compared by the names they resolve to in each file's
// own header lists, and the header lists themselves compared by their names.
#ifndef DEVDEF_TOOLS_DIFF_CATALOGUE_DIFF_H_
#define DEVDEF_TOOLS_DIFF_CATALOGUE_DIFF_H_

#include <string>
#include <utility>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/diff/diff_value.h"

struct DiffChange {
  enum class Change { kAdded, kRemoved, kChanged, kMoved };
  enum class What { kKind, kManufacturer, kDevice, kDefinition, kListEntry };

  Change change;
  What what;
  // The names from the kind down to the thing's parent; for a definition,
  // down to its device; for a list entry, the list's keyword. For a move,
  // the path it has in the new file.
  std::vector<std::string> path;
  std::string name;  // the thing's own name (empty for a definition)
  bool hasId = false;
  DWORD id = 0;
  // For changes: each changed field with its old and new value, names
  // resolved through each file's lists.
  std::vector<std::pair<std::string, std::pair<DiffValue, DiffValue>>> fields;
  std::vector<std::string> from;  // for a move: the old path
  long oldLine = 0;               // 0: not in that file
  long newLine = 0;
};

// Options of a comparison.
struct DiffOptions {
  bool visibleOnly = false;  // leave hidden definitions out
};

// The changes that turn the catalogue of oldFile into that of newFile: list
// entries first, then kinds, manufacturers, devices and definitions in the
// order of the new file (removed things where they stood in the old).
// Linear in the two catalogues.
std::vector<DiffChange> DiffCatalogues(Analysis& oldFile, Analysis& newFile, const DiffOptions& options);

// "added", "removed", "changed", "moved"; "kind", "manufacturer", ...
const char* ChangeName(DiffChange::Change change);
const char* WhatName(DiffChange::What what);

#endif  // DEVDEF_TOOLS_DIFF_CATALOGUE_DIFF_H_
