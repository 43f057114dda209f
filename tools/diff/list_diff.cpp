#include "tools/diff/list_diff.h"

#include <unordered_map>

std::vector<ListEntryChange> DiffList(const std::vector<std::string>& oldList,
                                      const std::vector<std::string>& newList) {
  // The k-th entry of a name in one list pairs with its k-th in the other.
  std::unordered_map<std::string, std::vector<long>> newPlaces;
  newPlaces.reserve(newList.size());
  for (size_t i = 0; i < newList.size(); ++i) newPlaces[newList[i]].push_back(static_cast<long>(i));
  std::unordered_map<std::string, size_t> taken;
  std::vector<long> pairedWith(oldList.size(), -1);
  std::vector<bool> newPaired(newList.size(), false);
  for (size_t i = 0; i < oldList.size(); ++i) {
    auto places = newPlaces.find(oldList[i]);
    size_t& next = taken[oldList[i]];
    if (places == newPlaces.end() || next >= places->second.size()) continue;
    pairedWith[i] = places->second[next++];
    newPaired[static_cast<size_t>(pairedWith[i])] = true;
  }
  // The place of each paired entry among the paired entries of the new
  // list: an entry moved when that differs from its place among them in the
  // old one. Entries that came or went in front of it shift its number, but
  // do not move it.
  std::vector<long> newRank(newList.size(), -1);
  long rank = 0;
  for (size_t i = 0; i < newList.size(); ++i) {
    if (newPaired[i]) newRank[i] = rank++;
  }
  std::vector<ListEntryChange> changes;
  rank = 0;
  for (size_t i = 0; i < oldList.size(); ++i) {
    const long oldIndex = static_cast<long>(i);
    if (pairedWith[i] < 0) {
      changes.push_back(ListEntryChange{ListEntryChange::Change::kRemoved, oldList[i], oldIndex, -1});
      continue;
    }
    if (newRank[static_cast<size_t>(pairedWith[i])] != rank++) {
      changes.push_back(ListEntryChange{ListEntryChange::Change::kMoved, oldList[i], oldIndex, pairedWith[i]});
    }
  }
  for (size_t i = 0; i < newList.size(); ++i) {
    if (!newPaired[i])
      changes.push_back(ListEntryChange{ListEntryChange::Change::kAdded, newList[i], -1, static_cast<long>(i)});
  }
  return changes;
}
