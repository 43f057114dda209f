#include "tools/diff/unified_diff.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "tools/diff/line_diff.h"

std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (size_t at = 0; at < text.size();) {
    const size_t end = text.find('\n', at);
    const size_t next = end == std::string_view::npos ? text.size() : end + 1;
    lines.push_back(text.substr(at, next - at));
    at = next;
  }
  return lines;
}

namespace {

constexpr size_t kContext = 3;

// One step of the edit script: a line of both texts, of the old one only
// ('-') or of the new one only ('+'), with the number of lines of each text
// in front of it.
struct Step {
  char sign;
  size_t oldBefore;
  size_t newBefore;
};

// A hunk's range of one text: its first line, or the line in front of it
// when it holds none; the count unless it is 1.
std::string Range(size_t before, size_t count) {
  std::string text = std::to_string(count == 0 ? before : before + 1);
  if (count != 1) text += "," + std::to_string(count);
  return text;
}

void AppendLine(std::string& out, char sign, std::string_view line) {
  out += sign;
  out.append(line.data(), line.size());
  if (line.empty() || line.back() != '\n') out += "\n\\ No newline at end of file\n";
}

}  // namespace

std::string UnifiedDiff(std::string_view oldText, std::string_view newText, const std::string& oldName,
                        const std::string& newName) {
  if (oldText == newText) return std::string();
  if (oldText.find('\0') != std::string_view::npos || newText.find('\0') != std::string_view::npos) {
    return "Binary files " + oldName + " and " + newName + " differ\n";
  }
  const std::vector<std::string_view> oldLines = LinesOf(oldText);
  const std::vector<std::string_view> newLines = LinesOf(newText);
  LineNumbering numbering;
  std::vector<std::uint32_t> oldNumbers, newNumbers;
  oldNumbers.reserve(oldLines.size());
  newNumbers.reserve(newLines.size());
  for (std::string_view line : oldLines) oldNumbers.push_back(numbering.Of(line));
  for (std::string_view line : newLines) newNumbers.push_back(numbering.Of(line));
  const LineMatching matching = MatchLines(oldNumbers, newNumbers);

  // The edit script, removed lines in front of added ones.
  std::vector<Step> steps;
  steps.reserve(oldLines.size() + newLines.size());
  for (size_t i = 0, j = 0; i < oldLines.size() || j < newLines.size();) {
    if (i < oldLines.size() && !matching.oldMatched[i]) {
      steps.push_back(Step{'-', i++, j});
    } else if (j < newLines.size() && !matching.newMatched[j]) {
      steps.push_back(Step{'+', i, j++});
    } else {
      steps.push_back(Step{' ', i++, j++});
    }
  }

  std::string out = "--- " + oldName + "\n+++ " + newName + "\n";
  size_t at = 0;
  while (at < steps.size()) {
    while (at < steps.size() && steps[at].sign == ' ') ++at;
    if (at == steps.size()) break;
    // A hunk runs from kContext lines in front of its first change to
    // kContext lines behind its last, and takes in the next change while
    // no more than twice kContext equal lines stand in between.
    const size_t begin = at >= kContext ? at - kContext : 0;
    size_t lastChange = at;
    for (size_t k = at; k < steps.size() && k <= lastChange + 2 * kContext + 1; ++k) {
      if (steps[k].sign != ' ') lastChange = k;
    }
    const size_t end = std::min(steps.size(), lastChange + kContext + 1);
    size_t oldCount = 0, newCount = 0;
    for (size_t k = begin; k < end; ++k) {
      oldCount += steps[k].sign != '+';
      newCount += steps[k].sign != '-';
    }
    out += "@@ -" + Range(steps[begin].oldBefore, oldCount) + " +" + Range(steps[begin].newBefore, newCount) + " @@\n";
    for (size_t k = begin; k < end; ++k) {
      const Step& step = steps[k];
      AppendLine(out, step.sign, step.sign == '+' ? newLines[step.newBefore] : oldLines[step.oldBefore]);
    }
    at = end;
  }
  return out;
}
