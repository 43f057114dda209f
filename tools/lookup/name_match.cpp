#include "tools/lookup/name_match.h"

#include <utility>

#include "tools/text/utf8.h"

namespace {

// The character at position of text and its length.
size_t CharAt(std::string_view text, size_t position, char32_t* c) {
  return NextCodePoint(text.data() + position, text.size() - position, c);
}

}  // namespace

char32_t FoldNameChar(char32_t c) {
  if (c >= 'A' && c <= 'Z') return c - 'A' + 'a';
  return c == '_' ? ' ' : c;
}

NamePattern::NamePattern(std::string argument) : m_argument(std::move(argument)) {
  size_t i = 0;
  while (i < m_argument.size()) {
    const char byte = m_argument[i];
    if (byte == '*') {
      ++i;
      m_hasWildcards = true;
      if (m_atoms.empty() || m_atoms.back().kind != AtomKind::kStar) m_atoms.push_back(Atom{AtomKind::kStar, 0});
      continue;
    }
    if (byte == '?') {
      ++i;
      m_hasWildcards = true;
      m_atoms.push_back(Atom{AtomKind::kAny, 0});
      continue;
    }
    if (byte == '[') {
      size_t end = i + 1;
      if (ReadSet(&end)) {
        i = end;
        m_hasWildcards = true;
        continue;
      }
    }
    if (byte == '\\' && i + 1 < m_argument.size()) ++i;
    char32_t c = 0;
    i += CharAt(m_argument, i, &c);
    m_atoms.push_back(Atom{AtomKind::kChar, FoldNameChar(c)});
  }
}

bool NamePattern::ReadSet(size_t* position) {
  size_t i = *position;
  Atom set{AtomKind::kSet, 0, m_ranges.size(), 0, false};
  if (i < m_argument.size() && (m_argument[i] == '!' || m_argument[i] == '^')) {
    set.negate = true;
    ++i;
  }
  bool first = true;
  while (i < m_argument.size() && (first || m_argument[i] != ']')) {
    first = false;
    char32_t low = 0;
    i += CharAt(m_argument, i, &low);
    char32_t high = low;
    if (i + 1 < m_argument.size() && m_argument[i] == '-' && m_argument[i + 1] != ']') {
      i += 1 + CharAt(m_argument, i + 1, &high);
    }
    m_ranges.push_back(Range{FoldNameChar(low), FoldNameChar(high)});
    ++set.count;
  }
  if (i >= m_argument.size()) {
    m_ranges.resize(set.first);
    return false;
  }
  m_atoms.push_back(set);
  *position = i + 1;
  return true;
}

bool NamePattern::AtomMatches(const Atom& atom, char32_t folded) const {
  switch (atom.kind) {
    case AtomKind::kAny:
      return true;
    case AtomKind::kChar:
      return atom.c == folded;
    case AtomKind::kSet: {
      bool member = false;
      for (size_t r = atom.first; r < atom.first + atom.count && !member; ++r) {
        member = folded >= m_ranges[r].low && folded <= m_ranges[r].high;
      }
      return member != atom.negate;
    }
    case AtomKind::kStar:
      break;
  }
  return false;
}

bool NamePattern::Equals(std::string_view name) const {
  size_t a = 0;
  size_t n = 0;
  while (a < m_argument.size() && n < name.size()) {
    char32_t left = 0;
    char32_t right = 0;
    a += CharAt(m_argument, a, &left);
    n += CharAt(name, n, &right);
    if (FoldNameChar(left) != FoldNameChar(right)) return false;
  }
  return a == m_argument.size() && n == name.size();
}

bool NamePattern::Matches(std::string_view name) const {
  // Greedy, with one point to go back to: the last "*" seen. A later "*"
  // can take whatever an earlier one would have, so the last one suffices.
  constexpr size_t kNone = static_cast<size_t>(-1);
  size_t atom = 0;
  size_t at = 0;
  size_t starAtom = kNone;
  size_t starAt = 0;
  while (at < name.size()) {
    char32_t c = 0;
    const size_t length = CharAt(name, at, &c);
    if (atom < m_atoms.size()) {
      if (m_atoms[atom].kind == AtomKind::kStar) {
        starAtom = ++atom;
        starAt = at;
        continue;
      }
      if (AtomMatches(m_atoms[atom], FoldNameChar(c))) {
        ++atom;
        at += length;
        continue;
      }
    }
    if (starAtom == kNone) return false;
    atom = starAtom;
    starAt += CharAt(name, starAt, &c);
    at = starAt;
  }
  while (atom < m_atoms.size() && m_atoms[atom].kind == AtomKind::kStar) ++atom;
  return atom == m_atoms.size();
}
