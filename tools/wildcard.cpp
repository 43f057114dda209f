#include "tools/wildcard.h"

#include "devdef/platform/crt.h"

namespace {

unsigned char Fold(char c) { return DevdefToLower(static_cast<unsigned char>(c)); }

// Matches one byte against the set at pattern (just behind "["). Sets *end to
// the byte behind the closing "]"; returns false through *valid when the set
// has no "]", in which case "[" is an ordinary byte.
bool MatchSet(const char* pattern, char c, const char** end, bool* valid) {
  const char* p = pattern;
  bool negate = false;
  if (*p == '!' || *p == '^') {
    negate = true;
    ++p;
  }
  bool matched = false;
  bool first = true;
  const unsigned char folded = Fold(c);
  while (*p != '\0' && (first || *p != ']')) {
    first = false;
    unsigned char low = Fold(*p);
    unsigned char high = low;
    if (p[1] == '-' && p[2] != '\0' && p[2] != ']') {
      high = Fold(p[2]);
      p += 3;
    } else {
      ++p;
    }
    if (folded >= low && folded <= high) matched = true;
  }
  if (*p != ']') {
    *valid = false;
    return false;
  }
  *valid = true;
  *end = p + 1;
  return matched != negate;
}

}  // namespace

bool WildcardMatch(const char* pattern, const char* text) {
  // Greedy matching with one back-track point: the last "*" seen.
  const char* starPattern = nullptr;
  const char* starText = nullptr;
  while (*text != '\0') {
    bool advanced = false;
    if (*pattern == '*') {
      starPattern = ++pattern;
      starText = text;
      continue;
    }
    if (*pattern == '?') {
      ++pattern;
      advanced = true;
    } else if (*pattern == '[') {
      const char* end = nullptr;
      bool valid = false;
      const bool matched = MatchSet(pattern + 1, *text, &end, &valid);
      if (valid && matched) {
        pattern = end;
        advanced = true;
      } else if (!valid && Fold(*text) == '[') {
        ++pattern;
        advanced = true;
      }
    } else if (*pattern != '\0' && Fold(*pattern) == Fold(*text)) {
      ++pattern;
      advanced = true;
    }
    if (advanced) {
      ++text;
      continue;
    }
    if (starPattern == nullptr) return false;
    pattern = starPattern;
    text = ++starText;
  }
  while (*pattern == '*') ++pattern;
  return *pattern == '\0';
}
