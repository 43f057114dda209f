#include "tools/commands/argument_values.h"

#include <cstddef>

#include "tools/lookup/closest_names.h"

namespace {

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameWord(const std::string& x, const std::string& y, bool ignoreCase) {
  if (x.size() != y.size()) return false;
  for (size_t i = 0; i < x.size(); ++i) {
    if (ignoreCase ? AsciiLower(x[i]) != AsciiLower(y[i]) : x[i] != y[i]) return false;
  }
  return true;
}

}  // namespace

bool ParseCount(const std::string& text, long* count, std::string* problem) {
  long value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') {
      *problem = "'" + text + "' is not a count (0, 1, 2, ...)";
      return false;
    }
    value = value * 10 + (c - '0');
    if (value > 2147483647L) {
      *problem = "'" + text + "' is out of range: at most 2147483647";
      return false;
    }
  }
  if (text.empty()) {
    *problem = "'' is not a count (0, 1, 2, ...)";
    return false;
  }
  *count = value;
  return true;
}

bool ParseDefinitionId(const std::string& text, std::uint32_t* id, std::string* problem) {
  size_t at = 0;
  const bool negative = !text.empty() && text[0] == '-';
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) at = 1;
  if (at == text.size()) {
    *problem = "'" + text + "' is not a number";
    return false;
  }
  // Digits past what 4294967295 needs make no difference but to the range.
  std::uint64_t value = 0;
  for (size_t i = at; i < text.size(); ++i) {
    if (text[i] < '0' || text[i] > '9') {
      *problem = "'" + text + "' is not a number";
      return false;
    }
    if (value <= UINT32_MAX) value = value * 10 + static_cast<std::uint64_t>(text[i] - '0');
  }
  const std::uint64_t limit = negative ? std::uint64_t{1} << 31 : UINT32_MAX;
  if (value > limit) {
    *problem = "'" + text + "' is out of range: an id is a 32-bit number from -2147483648 to 4294967295";
    return false;
  }
  *id = negative ? static_cast<std::uint32_t>(0 - value) : static_cast<std::uint32_t>(value);
  return true;
}

std::string OneOfProblem(const std::string& value, const std::vector<std::string>& allowed, bool ignoreCase) {
  std::string list;
  for (const std::string& name : allowed) {
    if (SameWord(value, name, ignoreCase)) return std::string();
    list += (list.empty() ? "" : ", ") + name;
  }
  return "'" + value + "' is not one of " + list;
}

std::vector<std::string> MostSimilar(const std::string& word, const std::vector<std::string>& candidates) {
  // A command or an option is a short word: two edits (a swap of two
  // letters among them) still leave it recognisable from four letters on.
  ClosestNames closest(word, 3, word.size() >= 4 ? 2 : 1);
  for (size_t i = 0; i < candidates.size(); ++i) closest.Offer(candidates[i], i);
  std::vector<std::string> names;
  for (size_t id : closest.Ids()) names.push_back(candidates[id]);
  return names;
}

std::string SimilarLines(const std::vector<std::string>& names, const char* what) {
  if (names.empty()) return std::string();
  std::string lines = std::string("\nThe most similar ") + what + (names.size() == 1 ? " is\n" : "s are\n");
  for (const std::string& name : names) lines += "\t" + name + "\n";
  return lines;
}
