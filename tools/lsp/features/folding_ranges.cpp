#include "tools/lsp/features/folding_ranges.h"

#include <algorithm>
#include <utility>
#include <vector>

using nlohmann::json;

json FoldingRanges(const DocumentView& view) {
  // 1-based first and last lines.
  std::vector<std::pair<long, long>> folds;
  for (const IndexedPlace& place : view.index.Places()) {
    if (place.kind != IndexedPlace::kDevice) continue;
    const DevicePlace* device = view.analysis.PlaceOf(*place.device);
    if (device == nullptr || device->block.end <= device->block.begin) continue;
    folds.emplace_back(device->name.start.line, device->block.stop.line);
  }
  for (int list = 0; list < 3; ++list) {
    const std::vector<TextRange>& entries = view.analysis.ListPlace(list).entries;
    if (!entries.empty()) folds.emplace_back(entries.front().start.line, entries.back().stop.line);
  }
  std::sort(folds.begin(), folds.end());
  json out = json::array();
  for (const auto& fold : folds) {
    if (fold.second <= fold.first) continue;
    out.push_back(json{{"startLine", fold.first - 1}, {"endLine", fold.second - 1}, {"kind", "region"}});
  }
  return out;
}
