#include "tools/diff/same_meaning.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/diff/line_diff.h"

namespace {

const char* const kNames[kLineDifferenceKinds] = {
    "comments", "blank lines", "order", "spacing", "line ends", "lines the reader drops", "lines written otherwise",
};

// What the reading made of a line.
enum class Role : unsigned char {
  kNothing,  // no record and no finding: a comment, or a line the reader passes over unseen
  kBlank,
  kTaken,    // the reader took something from it: a name, a list entry, a definition, a block's brace ...
  kDropped,  // a finding says the reader refused it, passed it over or skipped it
};

bool Drops(FindingKind kind) {
  switch (kind) {
    case FindingKind::kRefused:
    case FindingKind::kDropped:
    case FindingKind::kIgnored:
    case FindingKind::kShortForm:
    case FindingKind::kIgnoredKeyword:
    case FindingKind::kNoLineEnd:
      return true;
    default:
      return false;
  }
}

// A file's lines, each with what the reader took from it (from its first
// to its last byte taken) and its role.
class FileLines {
 public:
  explicit FileLines(const Analysis& file) : m_bytes(file.Bytes()) {
    const SourceMap& map = file.Map();
    for (long line = 1; line <= map.LineCount(); ++line) {
      const size_t begin = map.LineStart(line);
      // No line stands behind the file's last line end.
      if (begin >= m_bytes.size() && (line > 1 || m_bytes.empty())) break;
      m_text.push_back(Span(begin, map.LineEnd(line)));
      m_ends.push_back(Span(map.LineEnd(line), line < map.LineCount() ? map.LineStart(line + 1) : m_bytes.size()));
    }
    m_taken.assign(m_text.size(), ByteSpan());
    m_roles.assign(m_text.size(), Role::kNothing);
    Take(map, file.VersionLine());
    for (const KindRecord& kind : file.Kinds()) Take(map, kind.name);
    for (const ManufacturerRecord& manufacturer : file.Manufacturers()) Take(map, manufacturer.name);
    for (const DeviceRecord& device : file.Devices()) {
      Take(map, device.name);
      if (device.block.begin < device.block.end) {
        Take(map, ByteSpan{device.block.begin, device.block.begin + 1});
        Take(map, ByteSpan{device.block.end - 1, device.block.end});
      }
    }
    for (const DefinitionRecord& definition : file.Definitions()) Take(map, definition.line);
    for (int list = 0; list < 3; ++list) {
      for (const ByteSpan& entry : file.ListEntries(list)) Take(map, entry);
    }
    for (const ByteSpan& line : file.HousingLines()) Take(map, line);
    for (size_t i = 0; i < m_text.size(); ++i) {
      if (m_taken[i].begin < m_taken[i].end) {
        m_roles[i] = Role::kTaken;
      } else if (Text(i).find_first_not_of(" \t") == std::string_view::npos) {
        m_roles[i] = Role::kBlank;
      }
    }
    for (const Finding& finding : file.FindingsOf().List()) {
      const size_t line = LineOf(map, finding.span.begin);
      if (Drops(finding.kind) && line < m_roles.size()) m_roles[line] = Role::kDropped;
    }
  }

  size_t Size() const { return m_text.size(); }
  std::string_view Text(size_t line) const { return Bytes(m_text[line]); }
  std::string_view End(size_t line) const { return Bytes(m_ends[line]); }
  std::string_view Taken(size_t line) const { return Bytes(m_taken[line]); }
  Role RoleOf(size_t line) const { return m_roles[line]; }

 private:
  static ByteSpan Span(size_t begin, size_t end) {
    return ByteSpan{static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
  }
  std::string_view Bytes(ByteSpan span) const { return m_bytes.substr(span.begin, span.end - span.begin); }
  static size_t LineOf(const SourceMap& map, std::uint32_t offset) {
    return static_cast<size_t>(map.PointOf(offset).line - 1);
  }
  // Notes the bytes of span that lie on its first line as taken.
  void Take(const SourceMap& map, ByteSpan span) {
    if (span.begin >= span.end) return;
    const size_t line = LineOf(map, span.begin);
    if (line >= m_text.size()) return;
    const std::uint32_t end = std::min(span.end, m_text[line].end);
    if (end <= span.begin) return;
    ByteSpan& taken = m_taken[line];
    if (taken.begin == taken.end) {
      taken = ByteSpan{span.begin, end};
    } else {
      taken.begin = std::min(taken.begin, span.begin);
      taken.end = std::max(taken.end, end);
    }
  }

  std::string_view m_bytes;
  std::vector<ByteSpan> m_text;  // without its line end
  std::vector<ByteSpan> m_ends;
  std::vector<ByteSpan> m_taken;
  std::vector<Role> m_roles;
};

// A line with its runs of blanks and tabs made one blank, none at its ends.
std::string Spaced(std::string_view text) {
  std::string spaced;
  bool blank = false;
  for (const char c : text) {
    if (c == ' ' || c == '\t') {
      blank = !spaced.empty();
      continue;
    }
    if (blank) spaced += ' ';
    blank = false;
    spaced += c;
  }
  return spaced;
}

LineDifference KindOf(Role role) {
  switch (role) {
    case Role::kBlank:
      return LineDifference::kBlank;
    case Role::kTaken:
      return LineDifference::kOther;
    case Role::kDropped:
      return LineDifference::kDropped;
    case Role::kNothing:
      break;
  }
  return LineDifference::kComments;
}

// The lines left over on each side once the diff of lines matched what it
// could, paired across the files by a key at a time.
class LeftOver {
 public:
  LeftOver(const FileLines& a, const FileLines& b, const LineMatching& matching, LineDifferences& result)
      : m_a(a), m_b(b), m_result(result) {
    // The gap between matched lines that each line stands in.
    size_t gap = 0;
    for (size_t i = 0; i < a.Size(); ++i) {
      if (matching.oldMatched[i]) {
        ++gap;
      } else {
        m_old.push_back(i);
        m_oldGap.push_back(gap);
      }
    }
    gap = 0;
    for (size_t j = 0; j < b.Size(); ++j) {
      if (matching.newMatched[j]) {
        ++gap;
      } else {
        m_new.push_back(j);
        m_newGap.push_back(gap);
      }
    }
    m_oldPaired.assign(m_old.size(), false);
    m_newPaired.assign(m_new.size(), false);
  }

  // Pairs each line that key gives a key (a line it gives none to takes
  // no part) with the first line of the old file of the same key not yet
  // paired; kind says what a pair of two lines is.
  template <class Key, class Kind>
  void PairBy(Key key, Kind kind) {
    struct Waiting {
      std::vector<size_t> lines;  // into m_old
      size_t next = 0;
    };
    std::unordered_map<std::string, Waiting> waiting;
    std::string text;
    for (size_t i = 0; i < m_old.size(); ++i) {
      if (!m_oldPaired[i] && key(m_a, m_old[i], &text)) waiting[text].lines.push_back(i);
    }
    if (waiting.empty()) return;
    for (size_t j = 0; j < m_new.size(); ++j) {
      if (m_newPaired[j] || !key(m_b, m_new[j], &text)) continue;
      auto found = waiting.find(text);
      if (found == waiting.end() || found->second.next == found->second.lines.size()) continue;
      const size_t i = found->second.lines[found->second.next++];
      m_oldPaired[i] = true;
      m_newPaired[j] = true;
      Note(kind(m_old[i], m_new[j]));
    }
  }

  // Each line not paired, by its role. Lines of the two files in one gap
  // between matched lines replaced each other: a pair counts once.
  void NoteTheRest() {
    size_t i = 0;
    size_t j = 0;
    while (i < m_old.size() || j < m_new.size()) {
      const size_t gap =
          j == m_new.size() || (i < m_old.size() && m_oldGap[i] < m_newGap[j]) ? m_oldGap[i] : m_newGap[j];
      size_t olds = 0;
      size_t news = 0;
      for (; i < m_old.size() && m_oldGap[i] == gap; ++i) {
        if (m_oldPaired[i]) continue;
        ++olds;
        Mark(KindOf(m_a.RoleOf(m_old[i])));
      }
      for (; j < m_new.size() && m_newGap[j] == gap; ++j) {
        if (m_newPaired[j]) continue;
        ++news;
        Mark(KindOf(m_b.RoleOf(m_new[j])));
      }
      m_result.lines += std::max(olds, news);
    }
  }

  void Note(LineDifference kind) {
    ++m_result.lines;
    Mark(kind);
  }
  void Mark(LineDifference kind) { m_result.kinds[static_cast<size_t>(kind)] = true; }

 private:
  const FileLines& m_a;
  const FileLines& m_b;
  LineDifferences& m_result;
  std::vector<size_t> m_old, m_new;  // the lines left over
  std::vector<size_t> m_oldGap, m_newGap;
  std::vector<bool> m_oldPaired, m_newPaired;
};

}  // namespace

std::string LineDifferences::Text() const {
  std::string text = std::to_string(lines) + (lines == 1 ? " line differs" : " lines differ");
  const char* separator = ": ";
  for (size_t kind = 0; kind < kLineDifferenceKinds; ++kind) {
    if (!kinds[kind]) continue;
    text += separator;
    text += kNames[kind];
    separator = ", ";
  }
  return text;
}

LineDifferences CompareLines(const Analysis& oldFile, const Analysis& newFile) {
  const FileLines a(oldFile);
  const FileLines b(newFile);
  LineNumbering numbering;
  std::vector<std::uint32_t> oldNumbers, newNumbers;
  for (size_t i = 0; i < a.Size(); ++i) oldNumbers.push_back(numbering.Of(a.Text(i)));
  for (size_t j = 0; j < b.Size(); ++j) newNumbers.push_back(numbering.Of(b.Text(j)));
  const LineMatching matching = MatchLines(oldNumbers, newNumbers);

  LineDifferences result;
  LeftOver left(a, b, matching, result);
  // Matched lines pair in order; they differ at most in their line ends.
  for (size_t i = 0, j = 0;; ++i, ++j) {
    while (i < a.Size() && !matching.oldMatched[i]) ++i;
    while (j < b.Size() && !matching.newMatched[j]) ++j;
    if (i == a.Size() || j == b.Size()) break;
    if (a.End(i) != b.End(j)) left.Note(LineDifference::kLineEnds);
  }
  // A line that stands in both files, but elsewhere: a moved line that
  // makes something is a change of order, any other is what it is.
  left.PairBy(
      [](const FileLines& lines, size_t line, std::string* key) {
        if (lines.RoleOf(line) == Role::kBlank) return false;
        key->assign(lines.Text(line));
        return true;
      },
      [&a](size_t i, size_t) { return a.RoleOf(i) == Role::kTaken ? LineDifference::kOrder : KindOf(a.RoleOf(i)); });
  left.PairBy(
      [](const FileLines& lines, size_t line, std::string* key) {
        if (lines.RoleOf(line) == Role::kBlank) return false;
        *key = Spaced(lines.Text(line));
        return true;
      },
      [](size_t, size_t) { return LineDifference::kSpacing; });
  // Lines that the reader took the same from differ where it took nothing.
  left.PairBy(
      [](const FileLines& lines, size_t line, std::string* key) {
        if (lines.RoleOf(line) != Role::kTaken) return false;
        key->assign(lines.Taken(line));
        return true;
      },
      [](size_t, size_t) { return LineDifference::kComments; });
  left.NoteTheRest();
  return result;
}
