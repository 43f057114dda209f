#include "tools/diff/line_diff.h"

#include <algorithm>
#include <cmath>

namespace {

using Index = std::int64_t;

// A part of the two sequences still to compare: [xBegin, xEnd) of the old
// one against [yBegin, yEnd) of the new one.
struct Part {
  Index xBegin, xEnd, yBegin, yEnd;
};

// Myers's search, part by part: each part's common lines at its ends are
// matched, then the part is split at the middle of a shortest edit script
// and both halves are compared in turn. Parts wait on a stack of their
// own, so that no input deepens the call stack.
class MiddleSearch {
 public:
  MiddleSearch(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b)
      : m_a(a), m_b(b), m_aMatched(a.size(), false), m_bMatched(b.size(), false) {
    const Index total = static_cast<Index>(a.size() + b.size());
    m_forward.resize(static_cast<size_t>(total) + 4);
    m_backward.resize(static_cast<size_t>(total) + 4);
    m_budget = 64 * total + (Index{1} << 22);
    m_expensive = std::max<Index>(256, static_cast<Index>(std::sqrt(static_cast<double>(total))));
  }

  // Matches what it can of the parts; they must not overlap.
  void Run(std::vector<Part> parts) {
    while (!parts.empty()) {
      Part part = parts.back();
      parts.pop_back();
      while (part.xBegin < part.xEnd && part.yBegin < part.yEnd && m_a[At(part.xBegin)] == m_b[At(part.yBegin)]) {
        Match(part.xBegin++, part.yBegin++);
      }
      while (part.xBegin < part.xEnd && part.yBegin < part.yEnd && m_a[At(part.xEnd - 1)] == m_b[At(part.yEnd - 1)]) {
        Match(--part.xEnd, --part.yEnd);
      }
      if (part.xBegin == part.xEnd || part.yBegin == part.yEnd || m_budget <= 0) continue;
      Index x = 0;
      Index y = 0;
      if (!Split(part, &x, &y)) continue;  // left unmatched
      parts.push_back(Part{x, part.xEnd, y, part.yEnd});
      parts.push_back(Part{part.xBegin, x, part.yBegin, y});
    }
  }

  std::vector<bool>& AMatched() { return m_aMatched; }
  std::vector<bool>& BMatched() { return m_bMatched; }
  void Match(Index x, Index y) {
    m_aMatched[At(x)] = true;
    m_bMatched[At(y)] = true;
  }

 private:
  static size_t At(Index i) { return static_cast<size_t>(i); }

  // Where to split a part whose first lines differ and whose last lines
  // differ: a point on a shortest edit script, or past the search's limit
  // the point furthest from either end that it reached. Coordinates inside
  // the search count from the part's start (forward) or end (backward), and
  // diagonal k holds the points with x - y = k. False when the part is to
  // stay unmatched.
  bool Split(const Part& part, Index* xSplit, Index* ySplit) {
    const Index n = part.xEnd - part.xBegin;
    const Index m = part.yEnd - part.yBegin;
    const Index maxD = (n + m + 1) / 2;
    const Index offset = maxD;  // of diagonal 0 in the arrays
    const Index length = 2 * maxD + 2;
    std::fill(m_forward.begin(), m_forward.begin() + length, -1);
    std::fill(m_backward.begin(), m_backward.begin() + length, -1);
    m_forward[At(offset + 1)] = 0;
    m_backward[At(offset + 1)] = 0;
    const Index delta = n - m;
    const bool odd = (delta & 1) != 0;  // the forward search meets the backward one
    // Diagonals that ran off the grid at either side are not searched again.
    Index forwardLow = 0, forwardHigh = 0, backwardLow = 0, backwardHigh = 0;
    const auto a = [&](Index x) { return m_a[At(part.xBegin + x)]; };
    const auto b = [&](Index y) { return m_b[At(part.yBegin + y)]; };
    for (Index d = 0; d < maxD; ++d) {
      for (Index k = -d + forwardLow; k <= d - forwardHigh; k += 2) {
        const Index at = offset + k;
        Index x = k == -d || (k != d && m_forward[At(at - 1)] < m_forward[At(at + 1)]) ? m_forward[At(at + 1)]
                                                                                       : m_forward[At(at - 1)] + 1;
        Index y = x - k;
        const Index from = x;
        while (x < n && y < m && a(x) == b(y)) {
          ++x;
          ++y;
        }
        m_budget -= 1 + (x - from);
        m_forward[At(at)] = x;
        if (x > n) {
          forwardHigh += 2;
        } else if (y > m) {
          forwardLow += 2;
        } else if (odd) {
          const Index other = offset + delta - k;
          if (other >= 0 && other < length && m_backward[At(other)] != -1 && x >= n - m_backward[At(other)]) {
            return SplitAt(part, x, y, xSplit, ySplit);
          }
        }
      }
      for (Index k = -d + backwardLow; k <= d - backwardHigh; k += 2) {
        const Index at = offset + k;
        Index x = k == -d || (k != d && m_backward[At(at - 1)] < m_backward[At(at + 1)]) ? m_backward[At(at + 1)]
                                                                                         : m_backward[At(at - 1)] + 1;
        Index y = x - k;
        const Index from = x;
        while (x < n && y < m && a(n - x - 1) == b(m - y - 1)) {
          ++x;
          ++y;
        }
        m_budget -= 1 + (x - from);
        m_backward[At(at)] = x;
        if (x > n) {
          backwardHigh += 2;
        } else if (y > m) {
          backwardLow += 2;
        } else if (!odd) {
          const Index other = offset + delta - k;
          if (other >= 0 && other < length && m_forward[At(other)] != -1) {
            const Index forwardX = m_forward[At(other)];
            if (forwardX >= n - x) return SplitAt(part, forwardX, forwardX - (other - offset), xSplit, ySplit);
          }
        }
      }
      if (m_budget <= 0) return false;
      if (d >= m_expensive) return FurthestPoint(part, d, offset, xSplit, ySplit);
    }
    return false;
  }

  // The point (x, y) of the part, unless it is one of the part's corners,
  // where a split gets no further.
  static bool SplitAt(const Part& part, Index x, Index y, Index* xSplit, Index* ySplit) {
    const Index n = part.xEnd - part.xBegin;
    const Index m = part.yEnd - part.yBegin;
    if (x < 0 || y < 0 || x > n || y > m || (x == 0 && y == 0) || (x == n && y == m)) return false;
    *xSplit = part.xBegin + x;
    *ySplit = part.yBegin + y;
    return true;
  }

  // The point the searches of d steps reached that lies furthest from the
  // end they started at.
  bool FurthestPoint(const Part& part, Index d, Index offset, Index* xSplit, Index* ySplit) {
    const Index n = part.xEnd - part.xBegin;
    const Index m = part.yEnd - part.yBegin;
    Index best = -1, bestX = 0, bestY = 0;
    bool forward = true;
    for (int side = 0; side < 2; ++side) {
      const std::vector<Index>& reached = side == 0 ? m_forward : m_backward;
      for (Index k = -d; k <= d; ++k) {
        const Index x = reached[At(offset + k)];
        const Index y = x - k;
        if (x < 0 || x > n || y < 0 || y > m || x + y <= best) continue;
        best = x + y;
        bestX = x;
        bestY = y;
        forward = side == 0;
      }
    }
    if (best < 0) return false;
    return forward ? SplitAt(part, bestX, bestY, xSplit, ySplit) : SplitAt(part, n - bestX, m - bestY, xSplit, ySplit);
  }

  const std::vector<std::uint32_t>& m_a;
  const std::vector<std::uint32_t>& m_b;
  std::vector<bool> m_aMatched;
  std::vector<bool> m_bMatched;
  std::vector<Index> m_forward;   // by diagonal: the furthest x reached from the part's start
  std::vector<Index> m_backward;  // by diagonal: the furthest x reached from the part's end, counted backward
  Index m_budget = 0;
  Index m_expensive = 0;
};

// Long sequences are first tied together where they surely agree: lines
// that stand once on each side pair up, and the longest run of such pairs
// in the same order on both sides is matched without a search. Only the
// parts between them are searched, which keeps a long file with changes
// all over it (line ends, a line put in every few lines) a search of many
// small parts. The result may be longer than the shortest, so short
// sequences are searched whole.
constexpr size_t kAnchorsFrom = 4096;

std::vector<Part> PartsBetweenAnchors(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b,
                                      std::uint32_t top, MiddleSearch& search) {
  const Index n = static_cast<Index>(a.size());
  const Index m = static_cast<Index>(b.size());
  if (a.size() + b.size() < kAnchorsFrom) return {Part{0, n, 0, m}};
  std::vector<std::uint32_t> oldCount(top, 0), newCount(top, 0), newAt(top, 0);
  for (std::uint32_t line : a) ++oldCount[line];
  for (size_t j = 0; j < b.size(); ++j) {
    ++newCount[b[j]];
    newAt[b[j]] = static_cast<std::uint32_t>(j);
  }
  // The longest rising run of new places among the pairs, in old order.
  std::vector<std::pair<Index, Index>> pairs;
  for (size_t i = 0; i < a.size(); ++i) {
    if (oldCount[a[i]] == 1 && newCount[a[i]] == 1) pairs.emplace_back(static_cast<Index>(i), newAt[a[i]]);
  }
  std::vector<Index> tails;      // the smallest new place ending a run of each length
  std::vector<size_t> tailPair;  // the pair that ends it
  std::vector<size_t> before(pairs.size(), 0);
  for (size_t p = 0; p < pairs.size(); ++p) {
    const size_t length =
        static_cast<size_t>(std::lower_bound(tails.begin(), tails.end(), pairs[p].second) - tails.begin());
    before[p] = length > 0 ? tailPair[length - 1] : p;
    if (length == tails.size()) {
      tails.push_back(pairs[p].second);
      tailPair.push_back(p);
    } else {
      tails[length] = pairs[p].second;
      tailPair[length] = p;
    }
  }
  std::vector<size_t> anchors(tails.size());
  for (size_t k = tails.size(), p = tails.empty() ? 0 : tailPair.back(); k-- > 0; p = before[p]) anchors[k] = p;
  std::vector<Part> parts;
  Index x = 0;
  Index y = 0;
  for (size_t p : anchors) {
    parts.push_back(Part{x, pairs[p].first, y, pairs[p].second});
    search.Match(pairs[p].first, pairs[p].second);
    x = pairs[p].first + 1;
    y = pairs[p].second + 1;
  }
  parts.push_back(Part{x, n, y, m});
  return parts;
}

}  // namespace

std::uint32_t LineNumbering::Of(std::string_view line) {
  return m_numbers.emplace(line, static_cast<std::uint32_t>(m_numbers.size())).first->second;
}

LineMatching MatchLines(const std::vector<std::uint32_t>& oldLines, const std::vector<std::uint32_t>& newLines) {
  // How often each line number stands on each side: 1 old, 2 new, 3 both.
  std::uint32_t top = 0;
  for (std::uint32_t line : oldLines) top = std::max(top, line + 1);
  for (std::uint32_t line : newLines) top = std::max(top, line + 1);
  std::vector<unsigned char> sides(top, 0);
  for (std::uint32_t line : oldLines) sides[line] |= 1;
  for (std::uint32_t line : newLines) sides[line] |= 2;
  // The lines that can match, with where they stand.
  std::vector<std::uint32_t> a, b;
  std::vector<size_t> aAt, bAt;
  for (size_t i = 0; i < oldLines.size(); ++i) {
    if (sides[oldLines[i]] != 3) continue;
    a.push_back(oldLines[i]);
    aAt.push_back(i);
  }
  for (size_t i = 0; i < newLines.size(); ++i) {
    if (sides[newLines[i]] != 3) continue;
    b.push_back(newLines[i]);
    bAt.push_back(i);
  }
  MiddleSearch search(a, b);
  search.Run(PartsBetweenAnchors(a, b, top, search));
  LineMatching matching;
  matching.oldMatched.assign(oldLines.size(), false);
  matching.newMatched.assign(newLines.size(), false);
  for (size_t i = 0; i < a.size(); ++i) {
    if (search.AMatched()[i]) matching.oldMatched[aAt[i]] = true;
  }
  for (size_t i = 0; i < b.size(); ++i) {
    if (search.BMatched()[i]) matching.newMatched[bAt[i]] = true;
  }
  return matching;
}
