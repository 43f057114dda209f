// The names closest to an argument that named nothing, for a "did you
// mean" line: names that start with the argument, and names within a few
// edits of it (insertions, deletions, substitutions of characters), as
// names compare (tools/lookup/name_match.h).
#ifndef DEVDEF_TOOLS_LOOKUP_CLOSEST_NAMES_H_
#define DEVDEF_TOOLS_LOOKUP_CLOSEST_NAMES_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class ClosestNames {
 public:
  // Keeps up to count names for argument (UTF-8). A name is close when it
  // starts with the argument or is at most maxEdits edits away; by default
  // (0) a third of the argument's length (at least 1, at most 8).
  ClosestNames(std::string_view argument, size_t count, size_t maxEdits = 0);

  // Offers a name (UTF-8) under an id of the caller's. Costs a bounded
  // number of steps per character of the argument, so offering every name
  // of a catalogue is linear in the catalogue.
  void Offer(std::string_view name, size_t id);
  // The ids of the closest names offered, closest first; of names equally
  // close, the one offered first comes first.
  std::vector<size_t> Ids() const;

 private:
  // The edit distance of m_name to m_argument when it is at most m_limit,
  // else m_limit + 1.
  size_t BoundedDistance();

  struct Kept {
    size_t distance;
    size_t id;
  };
  std::vector<char32_t> m_argument;  // folded
  std::vector<char32_t> m_name;      // the name offered, folded
  std::vector<size_t> m_previous;    // rows of the distance table
  std::vector<size_t> m_current;
  size_t m_limit;
  size_t m_count;
  std::vector<Kept> m_kept;
};

#endif  // DEVDEF_TOOLS_LOOKUP_CLOSEST_NAMES_H_
