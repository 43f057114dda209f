// The lines two texts have in common, for a diff of lines: a longest common
// subsequence of two sequences of line numbers (equal numbers, equal lines),
// found by Myers's search for the middle of a shortest edit script, which
// takes time O((N+M)D) and space O(N+M). Lines that stand in one sequence
// only can match nothing and are set aside first, and common lines at both
// ends of a part are matched without a search. Long sequences (4096 lines
// and more) are first tied together by the lines that stand once on each
// side, in the order both sides agree on, as patience diff does; only the
// parts between them are searched.
//
// The search has a budget in proportion to the lengths. A search whose cost
// grows past the square root of the lengths splits at the furthest point it
// reached instead of the middle, and what is left once the budget is spent
// stays unmatched. Long sequences that differ everywhere thus cost linear
// time and still give a correct diff, only a longer one than the shortest.
#ifndef DEVDEF_TOOLS_DIFF_LINE_DIFF_H_
#define DEVDEF_TOOLS_DIFF_LINE_DIFF_H_

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

// Gives equal lines equal numbers, counting from 0. The lines' bytes must
// outlive it.
class LineNumbering {
 public:
  std::uint32_t Of(std::string_view line);

 private:
  std::unordered_map<std::string_view, std::uint32_t> m_numbers;
};

// Which lines of each side are common: the k-th matched line of the old
// side pairs with the k-th matched line of the new side, and paired lines
// are equal.
struct LineMatching {
  std::vector<bool> oldMatched;
  std::vector<bool> newMatched;
};

LineMatching MatchLines(const std::vector<std::uint32_t>& oldLines, const std::vector<std::uint32_t>& newLines);

#endif  // DEVDEF_TOOLS_DIFF_LINE_DIFF_H_
