#include "tools/diff/list_diff.h"

#include <unordered_map>

std::vector<ListEntryChange> DiffList(const std::vector<std::string>& oldList,
                                      const std::vector<std::string>& newList) {
  // The k-th entry of a name in one list pairs with its k-th in the other.
  std::unordered_map<std::string, std::vector<long>> newPlaces;
  newPlaces.reserve(newList.size());
  for (size_t i = 0; i < newList.size(); ++i) newPlaces[newList[i]].push_back(static_cast<long>(i));
  std::unordered_map<std::string, size_t> taken;
  std::vector<bool> newPaired(newList.size(), false);
  std::vector<ListEntryChange> changes;
  for (size_t i = 0; i < oldList.size(); ++i) {
    const long oldIndex = static_cast<long>(i);
    auto places = newPlaces.find(oldList[i]);
    size_t& next = taken[oldList[i]];
    if (places == newPlaces.end() || next >= places->second.size()) {
      changes.push_back(ListEntryChange{ListEntryChange::Change::kRemoved, oldList[i], oldIndex, -1});
      continue;
    }
    const long newIndex = places->second[next++];
    newPaired[static_cast<size_t>(newIndex)] = true;
    if (newIndex != oldIndex) {
      changes.push_back(ListEntryChange{ListEntryChange::Change::kMoved, oldList[i], oldIndex, newIndex});
    }
  }
  for (size_t i = 0; i < newList.size(); ++i) {
    if (!newPaired[i])
      changes.push_back(ListEntryChange{ListEntryChange::Change::kAdded, newList[i], -1, static_cast<long>(i)});
  }
  return changes;
}
