#include "tools/lsp/features/folding_ranges.h"

#include <algorithm>
#include <utility>
#include <vector>

using nlohmann::json;

json FoldingRanges(const DocumentView& view) {
  // 1-based first and last lines.
  std::vector<std::pair<long, long>> folds;
  const SourceMap& map = view.analysis.Map();
  for (const DeviceRecord& device : view.analysis.Devices()) {
    if (device.block.end <= device.block.begin) continue;
    folds.emplace_back(map.PointOf(device.name.begin).line, map.PointOf(device.block.end).line);
  }
  for (int list = 0; list < 3; ++list) {
    const std::vector<ByteSpan>& entries = view.analysis.ListEntries(list);
    if (!entries.empty()) folds.emplace_back(map.PointOf(entries.front().begin).line, map.PointOf(entries.back().end).line);
  }
  std::sort(folds.begin(), folds.end());
  json out = json::array();
  for (const auto& fold : folds) {
    if (fold.second <= fold.first) continue;
    out.push_back(json{{"startLine", fold.first - 1}, {"endLine", fold.second - 1}, {"kind", "region"}});
  }
  return out;
}
