// Header lists: which bytes became which entry, and which entries were lost.
#include <cstring>

#include "tools/analysis/read_replay.h"
#include "tools/text/line_end.h"

namespace {

// What is trimmed from the end of a one-line list entry.
bool IsPieceEnd(unsigned char c) { return c == ' ' || c == '\t' || c == ',' || c == ';'; }
bool IsEntrySeparator(unsigned char c) { return c == '\t' || c == ' ' || c == ',' || IsLineEnd(c); }

const char* const kListKeywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};

}  // namespace

CStringArray& ReadReplay::ListOf(int list) {
  return list == 0 ? DEVICE_ITEM::m_PackageList : list == 1 ? DEVICE_ITEM::m_AdapterList : DEVICE_ITEM::m_ModulList;
}

size_t ReadReplay::ListDelimiter(size_t from) const {
  for (; from < m_n && !IsLineEnd(m_b[from]); ++from) {
    const unsigned char c = m_b[from];
    if (c == ' ' || c == ',' || c == ';' || (c == '{' && m_layout == 7)) return from;
  }
  return from;
}

int ReadReplay::ListKeyword(size_t lineStart) const {
  const size_t delimiter = ListDelimiter(lineStart);
  if (delimiter >= m_n || IsLineEnd(m_b[delimiter])) return -1;
  for (int list = 0; list < 3; ++list) {
    const size_t length = std::strlen(kListKeywords[list]);
    if (delimiter - lineStart != length) continue;
    bool same = true;
    for (size_t i = 0; i < length && same; ++i) {
      same = DevdefToLower(m_b[lineStart + i]) == DevdefToLower(static_cast<unsigned char>(kListKeywords[list][i]));
    }
    if (same) return list;
  }
  return -1;
}

void ReadReplay::ReplayOneLineList(int list, size_t lineStart) {
  const size_t end = LineEndFrom(lineStart);
  const size_t delimiter = ListDelimiter(lineStart);
  int stored = 0;
  size_t start = delimiter + 1;
  for (size_t i = start; i <= end; ++i) {
    const bool atEnd = i == end;
    const unsigned char c = atEnd ? 0 : m_b[i];
    if (!atEnd && c != ' ' && c != ',' && c != ';' && !(c == '{' && m_layout == 7)) continue;
    size_t first = start;
    size_t last = i;
    while (first < last && DevdefIsSpace(m_b[first])) ++first;
    while (last > first && IsPieceEnd(m_b[last - 1])) --last;
    start = i + 1;
    if (first == last) continue;
    if (atEnd) {
      Add("lost-entry", first, last,
          "header list entry '" + Text(first, last) + "' has no delimiter behind it and is lost: end the list with \";\"");
    } else {
      m_listEntries[list].push_back(ByteSpan{first, last});
      ++stored;
    }
  }
  if (ListOf(list).GetSize() - m_listSizes[list] != stored) Inconsistent();
}

ReadReplay::BraceScan ReadReplay::ScanBraces(size_t from, size_t to) const {
  enum State { kBefore, kBetween, kInEntry, kInComment };
  BraceScan scan;
  State state = kBefore;
  size_t pending = 0;
  size_t pos = from;
  for (; pos < to; ++pos) {
    const unsigned char c = m_b[pos];
    if (c == '{' && state == kBefore) {
      scan.opened = true;
      state = kBetween;
    } else if (c == '}') {
      scan.closed = true;
      if (state == kInEntry) scan.lost.push_back(ByteSpan{pending, pos});
      break;
    } else if (c == ';' || (c == '/' && state != kInEntry)) {
      if (state == kInEntry) scan.lost.push_back(ByteSpan{pending, pos});
      state = kInComment;
    } else if (state == kInComment) {
      if (IsLineEnd(c)) state = kBetween;
    } else if (state == kBetween) {
      if (scan.opened && !IsEntrySeparator(c)) {
        pending = pos;
        state = kInEntry;
      }
    } else if (state == kInEntry && IsEntrySeparator(c)) {
      scan.entries.push_back(ByteSpan{pending, pos});
      state = kBetween;
    }
  }
  scan.stop = pos;
  return scan;
}

std::string ReadReplay::BraceProblem(const BraceScan& scan) const {
  if (!scan.opened && scan.closed) {
    return "no \"{\" opens the list (a comment or the end of its line comes first), so the reader passes over "
           "everything up to the \"}\" at line " +
           std::to_string(m_map.PointOf(scan.stop).line);
  }
  if (!scan.opened) return "no \"{\" opens the list and no \"}\" ends it, so the reader passes over the rest";
  if (!scan.closed) return "no \"}\" closes the list";
  return "the list has no entry with a separator behind it";
}

void ReadReplay::ReplayBraceList(int list, int result, size_t from, size_t to, size_t keywordStart) {
  const BraceScan scan = ScanBraces(from, m_n);
  if (scan.stop != to || static_cast<int>(scan.Read()) != result ||
      ListOf(list).GetSize() - m_listSizes[list] != static_cast<int>(scan.entries.size())) {
    Inconsistent();
  }
  m_listEntries[list].insert(m_listEntries[list].end(), scan.entries.begin(), scan.entries.end());
  const std::string keyword = kListKeywords[list];
  for (const ByteSpan& lost : scan.lost) {
    Add("lost-entry", lost.begin, lost.end,
        "header list entry '" + Text(lost.begin, lost.end) + "' is lost: an entry needs a blank, tab, \",\" or line "
        "end behind it, not \"" + std::string(1, static_cast<char>(m_b[lost.end])) + "\"");
  }
  if (result != 0) {
    Add("layout7-writer", keywordStart, from,
        keyword + " in braces: the layout 7 writer puts the list on one line, which this reader does not read back");
    return;
  }
  const size_t cause = Add("list", keywordStart, from, keyword + " not read: " + BraceProblem(scan));
  if (scan.opened) return;
  // Every line the scan passed over is lost with it.
  m_cause = static_cast<long>(cause);
  m_causeLine = keywordStart;
  for (size_t line = LineEndFrom(keywordStart); line < scan.stop;) {
    while (line < m_n && IsLineEnd(m_b[line])) ++line;
    if (line >= scan.stop) break;
    const size_t end = LineEndFrom(line);
    const Look look = LookOf(line);
    const ByteSpan text = Trimmed(line, end);
    if (look != Look::kBlank && look != Look::kComment) {
      AddConsequence("misread", text.begin, text.end, "line passed over by the scan for the " + keyword + " \"{\"");
    }
    line = end;
  }
}
