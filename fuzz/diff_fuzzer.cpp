// Compares two texts made of the input: the bytes up to the first line end
// behind its middle, and the first line followed by the rest (so that a
// definition file gives two files with its version line). Checks that the
// diff of lines applies back to the new text hunk by hunk; and, where both
// read as catalogues, that a catalogue compared with itself shows no change,
// and that the lines said to differ are no more than the two files hold and
// none when their bytes are equal.
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "tools/diff/catalogue_diff.h"
#include "tools/diff/same_meaning.h"
#include "tools/diff/unified_diff.h"

namespace {

size_t Number(std::string_view text, size_t* at) {
  size_t value = 0;
  DEVDEF_FUZZ_CHECK(*at < text.size() && text[*at] >= '0' && text[*at] <= '9');
  while (*at < text.size() && text[*at] >= '0' && text[*at] <= '9') value = value * 10 + (text[(*at)++] - '0');
  return value;
}

// A hunk's range "-S,C" or "-S": its first line (the line in front when
// it holds none) and its count.
void Range(std::string_view text, size_t* at, size_t* start, size_t* count) {
  *start = Number(text, at);
  *count = 1;
  if (*at < text.size() && text[*at] == ',') {
    ++*at;
    *count = Number(text, at);
  }
  if (*count > 0) {
    DEVDEF_FUZZ_CHECK(*start > 0);
    --*start;
  }
}

// old with the unified diff applied; every line the diff says old holds
// must be old's.
std::string Apply(std::string_view old, std::string_view diff) {
  const std::vector<std::string_view> lines = LinesOf(old);
  const std::vector<std::string_view> patch = LinesOf(diff);
  DEVDEF_FUZZ_CHECK(patch.size() >= 3 && patch[0].substr(0, 4) == "--- " && patch[1].substr(0, 4) == "+++ ");
  std::string out;
  size_t next = 0;
  size_t oldLeft = 0, newLeft = 0;  // of the hunk
  for (size_t p = 2; p < patch.size(); ++p) {
    const std::string_view line = patch[p];
    if (line.substr(0, 4) == "@@ -") {
      DEVDEF_FUZZ_CHECK(oldLeft == 0 && newLeft == 0);
      size_t at = 4, start = 0, newStart = 0;
      Range(line, &at, &start, &oldLeft);
      DEVDEF_FUZZ_CHECK(line.substr(at, 2) == " +");
      at += 2;
      Range(line, &at, &newStart, &newLeft);
      DEVDEF_FUZZ_CHECK(line.substr(at) == " @@\n" && next <= start && start <= lines.size());
      for (; next < start; ++next) out.append(lines[next]);
      continue;
    }
    if (line == "\\ No newline at end of file\n") {
      if (patch[p - 1][0] != '-') out.pop_back();
      continue;
    }
    const std::string_view text = line.substr(1);
    if (line[0] != '+') {
      DEVDEF_FUZZ_CHECK(line[0] == ' ' || line[0] == '-');
      DEVDEF_FUZZ_CHECK(oldLeft > 0 && next < lines.size());
      const std::string_view was = lines[next++];
      DEVDEF_FUZZ_CHECK(was == text || (was.back() != '\n' && std::string(was) + "\n" == text));
      --oldLeft;
    }
    if (line[0] != '-') {
      DEVDEF_FUZZ_CHECK(newLeft > 0);
      out.append(text);
      --newLeft;
    }
  }
  DEVDEF_FUZZ_CHECK(oldLeft == 0 && newLeft == 0);
  for (; next < lines.size(); ++next) out.append(lines[next]);
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const std::string_view input(reinterpret_cast<const char*>(pData), nSize);
  const size_t middle = input.find('\n', nSize / 2);
  const size_t split = middle == std::string_view::npos ? nSize : middle + 1;
  const std::string oldText(input.substr(0, split));
  const size_t firstEnd = input.find('\n');
  const std::string newText = std::string(input.substr(0, firstEnd == std::string_view::npos ? 0 : firstEnd + 1)) +
                              std::string(input.substr(split));

  const std::string diff = UnifiedDiff(oldText, newText, "a", "b");
  DEVDEF_FUZZ_CHECK(diff.empty() == (oldText == newText));
  if (diff.compare(0, 7, "Binary ") == 0) {
    DEVDEF_FUZZ_CHECK(oldText.find('\0') != std::string::npos || newText.find('\0') != std::string::npos);
  } else if (!diff.empty()) {
    DEVDEF_FUZZ_CHECK(Apply(oldText, diff) == newText);
  }

  DevdefFuzzDir();  // message boxes answered silently
  std::unique_ptr<Analysis> oldFile = Analysis::ReadText("old.def", oldText, AnalysisOptions());
  std::unique_ptr<Analysis> again = Analysis::ReadText("again.def", oldText, AnalysisOptions());
  std::unique_ptr<Analysis> newFile = Analysis::ReadText("new.def", newText, AnalysisOptions());
  if (!oldFile->Usable() || !newFile->Usable()) return 0;
  DEVDEF_FUZZ_CHECK(DiffCatalogues(*oldFile, *again, DiffOptions()).empty());
  DEVDEF_FUZZ_CHECK(CompareLines(*oldFile, *again).lines == 0);
  DiffOptions visible;
  visible.visibleOnly = true;
  DiffCatalogues(*oldFile, *newFile, visible);
  DiffCatalogues(*oldFile, *newFile, DiffOptions());
  const LineDifferences lines = CompareLines(*oldFile, *newFile);
  DEVDEF_FUZZ_CHECK(lines.lines <= static_cast<size_t>(oldFile->Map().LineCount() + newFile->Map().LineCount()));
  return 0;
}
