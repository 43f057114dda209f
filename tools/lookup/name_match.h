// How an argument names devices, the same in every command: names compare
// without regard to ASCII case and with '_' (as files spell blanks) equal
// to ' ' (as names are shown); a pattern takes shell wildcards.
#ifndef DEVDEF_TOOLS_LOOKUP_NAME_MATCH_H_
#define DEVDEF_TOOLS_LOOKUP_NAME_MATCH_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// A character as names compare it: ASCII letters in lower case, '_' as ' '.
char32_t FoldNameChar(char32_t c);

// An argument (UTF-8) against names as shown (UTF-8).
class NamePattern {
 public:
  // As a pattern, "*" is any run of characters, "?" any one, "[...]" one of
  // a set with ranges ("!" or "^" first negates it; "]" first is a member)
  // and "\" takes the next character as it is; a "[" without its "]" is an
  // ordinary character.
  explicit NamePattern(std::string argument);

  // The argument as given.
  const std::string& Argument() const { return m_argument; }
  // True when the argument holds "*", "?" or a set.
  bool HasWildcards() const { return m_hasWildcards; }
  // True when name is the argument, character for character as folded.
  bool Equals(std::string_view name) const;
  // True when name matches the argument as a pattern. At most (pattern
  // length x name length) steps; linear in the name for a pattern with one
  // "*" or none.
  bool Matches(std::string_view name) const;

 private:
  enum class AtomKind { kStar, kAny, kChar, kSet };
  struct Atom {
    AtomKind kind;
    char32_t c;          // kChar: the folded character
    size_t first = 0;    // kSet: its ranges in m_ranges
    size_t count = 0;
    bool negate = false;
  };
  struct Range {
    char32_t low;
    char32_t high;
  };
  // Reads the set behind the "[" at position; false when it has no "]".
  bool ReadSet(size_t* position);
  bool AtomMatches(const Atom& atom, char32_t folded) const;

  std::string m_argument;
  std::vector<Atom> m_atoms;
  std::vector<Range> m_ranges;
  bool m_hasWildcards = false;
};

#endif  // DEVDEF_TOOLS_LOOKUP_NAME_MATCH_H_
