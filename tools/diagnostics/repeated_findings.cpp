#include "tools/diagnostics/repeated_findings.h"

#include <algorithm>
#include <string_view>
#include <tuple>

namespace {

// True when a line end stands in bytes [from, to).
bool LineEndBetween(std::string_view bytes, std::uint32_t from, std::uint32_t to) {
  to = std::min<std::uint32_t>(to, static_cast<std::uint32_t>(bytes.size()));
  for (std::uint32_t i = from; i < to; ++i) {
    if (bytes[i] == '\n' || bytes[i] == '\r') return true;
  }
  return false;
}

// Whether two findings say the same: kind, severity and message, the
// quoted bytes compared as bytes wherever they stand.
class SameMessage {
 public:
  explicit SameMessage(std::string_view bytes) : m_bytes(bytes) {}

  bool Less(const Finding& x, const Finding& y) const {
    const auto key = [](const Finding& f) {
      return std::make_tuple(f.kind, f.severity, f.says.form, f.says.a, f.says.b, f.says.c, f.after);
    };
    if (key(x) != key(y)) return key(x) < key(y);
    return Quoted(x) < Quoted(y);
  }
  bool Equal(const Finding& x, const Finding& y) const { return !Less(x, y) && !Less(y, x); }

 private:
  std::string_view Quoted(const Finding& f) const {
    const ByteSpan q = f.says.quoted;
    if (q.begin >= q.end || q.end > m_bytes.size()) return std::string_view();
    return m_bytes.substr(q.begin, q.end - q.begin);
  }

  std::string_view m_bytes;
};

// Merges the findings of one line, [begin, end) of findings, onto out.
void MergeLine(const SameMessage& same, const std::vector<const Finding*>& findings, size_t begin, size_t end,
               std::vector<ShownFinding>* out) {
  if (end - begin == 1) {
    out->push_back(ShownFinding{findings[begin], findings[begin]->count, findings[begin]->span});
    return;
  }
  // Alike findings next to each other, each run in the order of the file;
  // then the runs in the order of their first findings.
  std::vector<size_t> order;
  order.reserve(end - begin);
  for (size_t i = begin; i < end; ++i) order.push_back(i);
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t x, size_t y) { return same.Less(*findings[x], *findings[y]); });
  const size_t first = out->size();
  for (size_t k = 0; k < order.size(); ++k) {
    const Finding* finding = findings[order[k]];
    if (k > 0 && same.Equal(*findings[order[k - 1]], *finding)) {
      out->back().count += finding->count;
      out->back().last = finding->span;
    } else {
      out->push_back(ShownFinding{finding, finding->count, finding->span});
    }
  }
  std::sort(out->begin() + static_cast<std::ptrdiff_t>(first), out->end(),
            [](const ShownFinding& x, const ShownFinding& y) { return x.finding < y.finding; });
}

}  // namespace

std::vector<ShownFinding> MergeRepeats(const Analysis& analysis, const std::vector<const Finding*>& findings) {
  const std::string_view bytes = analysis.Bytes();
  const SameMessage same(bytes);
  std::vector<ShownFinding> shown;
  shown.reserve(findings.size());
  // The findings stand in the order of the file: a line's are consecutive,
  // and the bytes between two of them are looked at once.
  size_t lineBegin = 0;
  for (size_t i = 1; i <= findings.size(); ++i) {
    if (i < findings.size() && !LineEndBetween(bytes, findings[i - 1]->span.begin, findings[i]->span.begin)) continue;
    if (i > lineBegin) MergeLine(same, findings, lineBegin, i, &shown);
    lineBegin = i;
  }
  return shown;
}
