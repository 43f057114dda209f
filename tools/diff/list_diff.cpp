#include "tools/diff/list_diff.h"

#include <algorithm>
#include <unordered_map>

std::vector<ListEntryChange> DiffList(const std::vector<std::string>& oldList, const std::vector<std::string>& newList) {
  // The k-th entry of a name in one list pairs with its k-th in the other.
  std::unordered_map<std::string, std::vector<long>> newPlaces;
  newPlaces.reserve(newList.size());
  for (size_t i = 0; i < newList.size(); ++i) newPlaces[newList[i]].push_back(static_cast<long>(i));
  std::unordered_map<std::string, size_t> taken;
  std::vector<long> pairedNew(oldList.size(), -1);
  std::vector<bool> newPaired(newList.size(), false);
  for (size_t i = 0; i < oldList.size(); ++i) {
    auto places = newPlaces.find(oldList[i]);
    if (places == newPlaces.end()) continue;
    size_t& next = taken[oldList[i]];
    if (next >= places->second.size()) continue;
    pairedNew[i] = places->second[next++];
    newPaired[static_cast<size_t>(pairedNew[i])] = true;
  }
  // The paired entries that keep their order are the longest rising run of
  // new places in old order; the others moved.
  std::vector<long> tails;     // smallest new place ending a rising run of each length
  std::vector<size_t> tailAt;  // the old index of that entry
  std::vector<long> before(oldList.size(), -1);
  for (size_t i = 0; i < oldList.size(); ++i) {
    if (pairedNew[i] < 0) continue;
    const size_t length = static_cast<size_t>(std::lower_bound(tails.begin(), tails.end(), pairedNew[i]) - tails.begin());
    before[i] = length > 0 ? static_cast<long>(tailAt[length - 1]) : -1;
    if (length == tails.size()) {
      tails.push_back(pairedNew[i]);
      tailAt.push_back(i);
    } else {
      tails[length] = pairedNew[i];
      tailAt[length] = i;
    }
  }
  std::vector<bool> stays(oldList.size(), false);
  for (long i = tails.empty() ? -1 : static_cast<long>(tailAt.back()); i >= 0; i = before[static_cast<size_t>(i)]) {
    stays[static_cast<size_t>(i)] = true;
  }
  std::vector<ListEntryChange> changes;
  for (size_t i = 0; i < oldList.size(); ++i) {
    if (pairedNew[i] < 0) {
      changes.push_back(ListEntryChange{ListEntryChange::Change::kRemoved, oldList[i], static_cast<long>(i), -1});
    } else if (!stays[i]) {
      changes.push_back(ListEntryChange{ListEntryChange::Change::kMoved, oldList[i], static_cast<long>(i), pairedNew[i]});
    }
  }
  for (size_t i = 0; i < newList.size(); ++i) {
    if (!newPaired[i]) changes.push_back(ListEntryChange{ListEntryChange::Change::kAdded, newList[i], -1, static_cast<long>(i)});
  }
  return changes;
}
