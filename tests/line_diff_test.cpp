// The diff of lines: the common lines it finds are common, in order, and as
// many as a longest common subsequence holds; the unified form applies back
// to the new text, has diff -u's hunks and marks, and long texts that differ
// everywhere still end soon with a correct diff.
#include "tools/diff/line_diff.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tools/diff/unified_diff.h"

namespace {

// The length of a longest common subsequence, by the quadratic table.
size_t LcsLength(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
  std::vector<std::vector<size_t>> table(a.size() + 1, std::vector<size_t>(b.size() + 1, 0));
  for (size_t i = a.size(); i-- > 0;) {
    for (size_t j = b.size(); j-- > 0;) {
      table[i][j] = a[i] == b[j] ? table[i + 1][j + 1] + 1 : std::max(table[i + 1][j], table[i][j + 1]);
    }
  }
  return table[0][0];
}

// The matched lines of each side, which must pair equal lines in order.
size_t CheckedMatches(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b,
                      const LineMatching& matching) {
  std::vector<std::uint32_t> oldKept, newKept;
  for (size_t i = 0; i < a.size(); ++i) {
    if (matching.oldMatched[i]) oldKept.push_back(a[i]);
  }
  for (size_t j = 0; j < b.size(); ++j) {
    if (matching.newMatched[j]) newKept.push_back(b[j]);
  }
  EXPECT_EQ(oldKept, newKept);
  return oldKept.size();
}

// Applies a unified diff to old; the hunks must stand in order and their
// equal and removed lines must be old's.
std::string Apply(const std::string& old, const std::string& diff) {
  std::vector<std::string> lines;
  for (size_t at = 0; at < old.size();) {
    const size_t end = std::min(old.find('\n', at), old.size() - 1) + 1;
    lines.push_back(old.substr(at, end - at));
    at = end;
  }
  std::vector<std::string> patch;
  for (size_t at = 0; at < diff.size();) {
    const size_t end = diff.find('\n', at) + 1;
    patch.push_back(diff.substr(at, end - at));
    at = end;
  }
  std::string out;
  size_t next = 0;  // the next line of old not yet copied
  for (size_t p = 2; p < patch.size(); ++p) {
    if (patch[p].compare(0, 4, "@@ -") == 0) {
      size_t start = std::stoul(patch[p].substr(4));
      const size_t comma = patch[p].find(',');
      const bool empty = comma < patch[p].find(' ', 4) && std::stoul(patch[p].substr(comma + 1)) == 0;
      start = empty ? start : start - 1;
      EXPECT_LE(next, start);
      for (; next < start && next < lines.size(); ++next) out += lines[next];
      continue;
    }
    if (patch[p] == "\\ No newline at end of file\n") {
      if (!out.empty() && patch[p - 1][0] != '-') out.pop_back();
      continue;
    }
    const std::string line = patch[p].substr(1);
    if (patch[p][0] != '+') {
      EXPECT_LT(next, lines.size());
      if (next < lines.size()) {
        EXPECT_EQ(line, lines[next] + (lines[next].back() == '\n' ? "" : "\n"));
      }
      ++next;
    }
    if (patch[p][0] != '-') out += line;
  }
  for (; next < lines.size(); ++next) out += lines[next];
  return out;
}

TEST(LineDiff, MatchesALongestCommonSubsequence) {
  std::mt19937 random(27);
  for (int round = 0; round < 400; ++round) {
    std::vector<std::uint32_t> a(random() % 30), b(random() % 30);
    const std::uint32_t kinds = 1 + random() % 5;
    for (std::uint32_t& line : a) line = random() % kinds;
    for (std::uint32_t& line : b) line = random() % kinds;
    const LineMatching matching = MatchLines(a, b);
    EXPECT_EQ(CheckedMatches(a, b, matching), LcsLength(a, b)) << "round " << round;
  }
}

TEST(LineDiff, LongTextsMatchOnlyWhatIsCommon) {
  // Long enough to be tied together by their unique lines first; lines of
  // many kinds, some once and some often, the new text an edit of the old.
  std::mt19937 random(3);
  for (int round = 0; round < 20; ++round) {
    std::vector<std::uint32_t> a(3000 + random() % 3000), b;
    for (std::uint32_t& line : a) line = random() % (random() % 2 ? 5000 : 20);
    for (std::uint32_t line : a) {
      if (random() % 10 == 0) b.push_back(random() % 5000);
      if (random() % 10 != 0) b.push_back(line);
    }
    EXPECT_GT(CheckedMatches(a, b, MatchLines(a, b)), a.size() / 2) << "round " << round;
  }
}

TEST(LineDiff, LongTextsThatDifferEverywhereEndSoon) {
  // Few kinds of line, shuffled: no line stands on one side only, and a
  // shortest edit script is long. The budget ends the search; what it
  // matched is still common.
  std::mt19937 random(5);
  std::vector<std::uint32_t> a(50000), b(50000);
  for (std::uint32_t& line : a) line = random() % 4;
  for (std::uint32_t& line : b) line = random() % 4;
  const LineMatching matching = MatchLines(a, b);
  EXPECT_GT(CheckedMatches(a, b, matching), 0u);
}

TEST(LineDiff, LongTextsWithChangesAllOverMatchWhatTheyShare) {
  // The new text is the old one with a blank line behind every line, as a
  // line end of CR CR LF reads: its old lines are all common. A search of
  // the whole would spend its budget long before the end.
  std::vector<std::uint32_t> a, b;
  for (std::uint32_t line = 1; line <= 200000; ++line) {
    a.push_back(line);
    if (line % 3 == 0) a.push_back(0);
    b.push_back(line);
    b.push_back(0);
  }
  EXPECT_EQ(CheckedMatches(a, b, MatchLines(a, b)), a.size());
}

TEST(UnifiedDiff, Forms) {
  const std::string ten = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n";
  const struct {
    const char* what;
    std::string oldText, newText, diff;
  } cases[] = {
      {"equal texts", ten, ten, ""},
      {"a line changed in the middle", ten, "1\n2\n3\n4\nfive\n6\n7\n8\n9\n10\n",
       "--- a\n+++ b\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n"},
      {"changes six equal lines apart share a hunk", ten, "one\n2\n3\n4\n5\n6\n7\neight\n9\n10\n",
       "--- a\n+++ b\n@@ -1,10 +1,10 @@\n-1\n+one\n 2\n 3\n 4\n 5\n 6\n 7\n-8\n+eight\n 9\n 10\n"},
      {"changes seven equal lines apart do not", ten, "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n",
       "--- a\n+++ b\n@@ -1,4 +1,4 @@\n-1\n+one\n 2\n 3\n 4\n@@ -8,3 +8,4 @@\n 8\n 9\n 10\n+11\n"},
      {"a last line without a line end", "a\nb", "a\nb\n",
       "--- a\n+++ b\n@@ -1,2 +1,2 @@\n a\n-b\n\\ No newline at end of file\n+b\n"},
      {"from nothing", "", "x\ny\n", "--- a\n+++ b\n@@ -0,0 +1,2 @@\n+x\n+y\n"},
      {"to nothing", "x\n", "", "--- a\n+++ b\n@@ -1 +0,0 @@\n-x\n"},
      {"CR LF against LF", "x\r\n", "x\n", "--- a\n+++ b\n@@ -1 +1 @@\n-x\r\n+x\n"},
      {"a NUL byte", "x\n", std::string("x\0\n", 3), "Binary files a and b differ\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(UnifiedDiff(c.oldText, c.newText, "a", "b"), c.diff) << c.what;
    if (c.diff.compare(0, 3, "---") == 0) {
      EXPECT_EQ(Apply(c.oldText, c.diff), c.newText) << c.what;
    }
  }
}

TEST(UnifiedDiff, AppliesBackToTheNewText) {
  std::mt19937 random(11);
  const char* const words[] = {"a", "b", "c", "d\r", ""};
  for (int round = 0; round < 300; ++round) {
    std::string texts[2];
    for (std::string& text : texts) {
      for (unsigned n = random() % 40; n > 0; --n) text += std::string(words[random() % 5]) + "\n";
      if (random() % 3 == 0 && !text.empty()) text.pop_back();
    }
    const std::string diff = UnifiedDiff(texts[0], texts[1], "a", "b");
    EXPECT_EQ(diff.empty(), texts[0] == texts[1]);
    if (!diff.empty()) {
      EXPECT_EQ(Apply(texts[0], diff), texts[1]) << diff;
    }
  }
}

}  // namespace
