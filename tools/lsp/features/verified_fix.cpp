#include "tools/lsp/features/verified_fix.h"

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace {

// A finding as it is compared across a fix: its kind and its place.
using Key = std::tuple<int, std::uint32_t, std::uint32_t>;

Key KeyOf(const Finding& finding, ByteSpan span) { return Key(static_cast<int>(finding.kind), span.begin, span.end); }

// Where a span of the old text stands in the fixed one: bytes in front of
// the replaced span stay, bytes behind it move by the change of length, and
// bytes inside it go to the end of what replaced them. A span that ends
// where bytes are put in stays in front of them.
ByteSpan Moved(ByteSpan span, const ByteReplacement& fix) {
  const std::uint32_t end = fix.span.begin + static_cast<std::uint32_t>(fix.bytes.size());
  auto move = [&](std::uint32_t offset, bool isEnd) {
    if (offset < fix.span.begin || (isEnd && offset == fix.span.begin)) return offset;
    if (offset < fix.span.end) return end;
    return offset - fix.span.end + end;
  };
  return ByteSpan{move(span.begin, false), move(span.end, true)};
}

}  // namespace

bool FixHolds(const Analysis& analysis, const AnalysisOptions& options, const Finding& finding,
              const ByteReplacement& fix) {
  const std::string_view old = analysis.Bytes();
  if (fix.span.begin > fix.span.end || fix.span.end > old.size()) return false;
  std::string bytes;
  bytes.reserve(old.size() + fix.bytes.size());
  bytes.append(old.substr(0, fix.span.begin));
  bytes += fix.bytes;
  bytes.append(old.substr(fix.span.end));
  const std::unique_ptr<Analysis> fixed = Analysis::ReadText(analysis.Path(), std::move(bytes), options);
  if (!fixed->Usable()) return false;

  // The old findings but the fixed one, where they stand after the fix.
  std::vector<Key> before;
  for (const Finding& f : analysis.FindingsOf().List()) {
    if (&f != &finding) before.push_back(KeyOf(f, Moved(f.span, fix)));
  }
  std::vector<Key> after;
  for (const Finding& f : fixed->FindingsOf().List()) after.push_back(KeyOf(f, f.span));
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  // Every finding of the fixed text is one of the others of the old text:
  // the fixed one is gone, and nothing came.
  return std::includes(before.begin(), before.end(), after.begin(), after.end());
}
