// The differences between two header lists by their names: entries added,
// removed, and moved: put elsewhere among the entries both lists hold, so
// that their order changed (each entry of a swap is moved). A number that
// shifts only because entries came or went in front of it is no change:
// definitions refer to entries through their numbers, but compared by
// names they still name the same entries.
#ifndef DEVDEF_TOOLS_DIFF_LIST_DIFF_H_
#define DEVDEF_TOOLS_DIFF_LIST_DIFF_H_

#include <string>
#include <vector>

struct ListEntryChange {
  enum class Change { kAdded, kRemoved, kMoved };
  Change change;
  std::string name;
  long oldIndex = -1;  // -1: not in that list
  long newIndex = -1;
};

// Removed and moved entries in the order of the old list, then added ones
// in the order of the new. Linear in the lengths of the lists; a name that
// stands twice counts as two entries, matched in order.
std::vector<ListEntryChange> DiffList(const std::vector<std::string>& oldList, const std::vector<std::string>& newList);

#endif  // DEVDEF_TOOLS_DIFF_LIST_DIFF_H_
