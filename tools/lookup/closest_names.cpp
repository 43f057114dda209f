#include "tools/lookup/closest_names.h"

#include <algorithm>

#include "tools/lookup/name_match.h"
#include "tools/text/utf8.h"

namespace {

void Fold(std::string_view text, std::vector<char32_t>* out) {
  out->clear();
  for (size_t i = 0; i < text.size();) {
    char32_t c = 0;
    i += NextCodePoint(text.data() + i, text.size() - i, &c);
    out->push_back(FoldNameChar(c));
  }
}

}  // namespace

ClosestNames::ClosestNames(std::string_view argument, size_t count, size_t maxEdits) : m_count(count) {
  Fold(argument, &m_argument);
  m_limit = maxEdits > 0 ? maxEdits : std::min<size_t>(8, std::max<size_t>(1, m_argument.size() / 3));
}

void ClosestNames::Offer(std::string_view name, size_t id) {
  if (m_count == 0 || m_argument.empty()) return;
  Fold(name, &m_name);
  size_t distance = 0;
  if (m_name.size() >= m_argument.size() && std::equal(m_argument.begin(), m_argument.end(), m_name.begin())) {
    distance = m_name.size() - m_argument.size();  // the insertions behind it, and no fewer
  } else {
    distance = BoundedDistance();
    if (distance > m_limit) return;
  }
  if (m_kept.size() == m_count && distance >= m_kept.back().distance) return;
  auto place = std::upper_bound(m_kept.begin(), m_kept.end(), distance,
                                [](size_t d, const Kept& kept) { return d < kept.distance; });
  m_kept.insert(place, Kept{distance, id});
  if (m_kept.size() > m_count) m_kept.pop_back();
}

std::vector<size_t> ClosestNames::Ids() const {
  std::vector<size_t> ids;
  for (const Kept& kept : m_kept) ids.push_back(kept.id);
  return ids;
}

size_t ClosestNames::BoundedDistance() {
  // The table of edit distances, only the band within m_limit of its
  // diagonal: cells outside it hold m_limit + 1, more than any kept.
  const size_t m = m_argument.size();
  const size_t n = m_name.size();
  const size_t k = m_limit;
  const size_t far = k + 1;
  if ((m > n ? m - n : n - m) > k) return far;
  m_previous.assign(n + 1, far);
  m_current.assign(n + 1, far);
  for (size_t j = 0; j <= std::min(n, k); ++j) m_previous[j] = j;
  for (size_t i = 1; i <= m; ++i) {
    const size_t low = i > k ? i - k : 1;
    const size_t high = std::min(n, i + k);
    m_current[low - 1] = low == 1 && i <= k ? i : far;
    size_t best = m_current[low - 1];
    for (size_t j = low; j <= high; ++j) {
      const size_t substitute = m_previous[j - 1] + (m_argument[i - 1] == m_name[j - 1] ? 0 : 1);
      const size_t cell = std::min({substitute, m_previous[j] + 1, m_current[j - 1] + 1, far});
      m_current[j] = cell;
      best = std::min(best, cell);
    }
    if (high < n) m_current[high + 1] = far;
    if (best > k) return far;
    std::swap(m_previous, m_current);
  }
  return std::min(m_previous[n], far);
}
