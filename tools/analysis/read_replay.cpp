#include "tools/analysis/read_replay.h"

#include <cstring>

#include "tools/text/line_end.h"

namespace {

bool StartsWithNoCase(const unsigned char* text, size_t length, const char* word) {
  const size_t size = std::strlen(word);
  if (length < size) return false;
  for (size_t i = 0; i < size; ++i) {
    if (DevdefToLower(text[i]) != DevdefToLower(static_cast<unsigned char>(word[i]))) return false;
  }
  return true;
}

bool StartsWith(const unsigned char* text, size_t length, const char* word) {
  const size_t size = std::strlen(word);
  return length >= size && std::memcmp(text, word, size) == 0;
}

const char* const kBlockKeywords[] = {"KVR3DEF:", "KVR4DEF:", "KVR5DEF:"};
const char* const kLayout7Keywords[] = {"KVR5M_DEF:", "KVR5D_DEF:", "KVR5P_DEF:", "DEVICE_HOUSING_LIST:"};

}  // namespace

ReadReplay::ReadReplay(const std::string& bytes, const SourceMap& map, int layout)
    : m_b(reinterpret_cast<const unsigned char*>(bytes.data())), m_n(bytes.size()), m_map(map), m_layout(layout) {}

// ---------------------------------------------------------------------------
// The loop

void ReadReplay::Run() {
  while (m_stop == Stop::kNone && m_pos < m_n) Pass();
}

void ReadReplay::Pass() {
  m_current = m_b[m_pos];
  if (IsLineEnd(m_current)) {
    EndLine();
    m_lineState = 0;
    m_tokenEmpty = true;
    ++m_pos;
    m_lineStart = m_pos;
    m_lineFresh = true;
    m_lineMade = false;
    return;
  }
  if (m_lineState == 1) {
    Tail();
    return;
  }
  if (m_current == ';' || m_current == '/') {
    m_lineState = 1;
    Tail();
    return;
  }
  if (m_tokenEmpty) {
    if (!m_versionRead && m_lineState == 0) {
      Version();
      Tail();
      return;
    }
    if (m_current == ':' && m_lineState == 0) Manufacturer();
  }
  if (m_tokenEmpty && m_lineState == 0 && m_current != '"') {
    m_stop = Stop::kLists;
    m_stopAt = m_pos;
    return;
  }
  AfterListStep();
}

void ReadReplay::AfterListStep() {
  if (!m_tokenEmpty && m_current == ':' && m_lineState == 0) Kind();
  Tail();
}

void ReadReplay::Tail() {
  m_tokenEmpty = false;
  ++m_pos;
}

void ReadReplay::Arrive(Stop stop, size_t bufPos) {
  Run();
  if (m_stop != stop || m_stopAt != bufPos) {
    // The replay lost the library's step: take its place and go on.
    Inconsistent();
    m_pos = bufPos;
    m_lineState = 0;
    m_tokenEmpty = true;
  }
  m_stop = Stop::kNone;
}

void ReadReplay::BeforeLists(size_t bufPos, POSITION posKind, POSITION posManuf) {
  Arrive(Stop::kLists, bufPos);
  m_haveKind = posKind != nullptr;
  m_haveManuf = posManuf != nullptr;
  for (int list = 0; list < 3; ++list) m_listSizes[list] = ListOf(list).GetSize();
}

void ReadReplay::AfterLists(int result, size_t bufPos, unsigned char current, bool tokenEmpty, int lineState) {
  const size_t lineStart = m_pos;
  const int list = m_haveKind ? -1 : ListKeyword(lineStart);
  if (list >= 0) {
    m_lineMade = true;
    if (m_layout == 7 && list != 2) {
      ReplayBraceList(list, result, ListDelimiter(lineStart), bufPos, lineStart);
    } else {
      ReplayOneLineList(list, lineStart);
    }
  }
  m_pos = bufPos;
  m_current = current;
  m_tokenEmpty = tokenEmpty;
  m_lineState = lineState;
  if (result == 0 && Device()) {
    m_stop = Stop::kBlock;
    m_stopAt = m_pos;
    return;
  }
  AfterListStep();
}

void ReadReplay::Finish() {
  Run();
  if (m_stop != Stop::kNone) Inconsistent();
  // The last line, cut off by the end of the file.
  if (m_dropArmed || (m_lineStart < m_n && m_pos >= m_n)) EndLine();
}

void ReadReplay::EndLine() {
  const size_t end = m_pos < m_n ? m_pos : m_n;
  if (m_dropArmed) {
    m_dropArmed = false;
    const ByteSpan dropped = Trimmed(m_dropFrom, end);
    if (dropped.begin < dropped.end) {
      AddConsequence("dropped", dropped.begin, dropped.end,
                     "line skipped unread: the reader passes over the line behind a failed block line");
    }
    return;
  }
  if (!m_lineFresh || m_lineMade || m_lineStart >= end) return;
  const ByteSpan line = Trimmed(m_lineStart, end);
  if (line.begin == line.end) return;
  const bool lastLine = m_pos >= m_n;
  const Look look = LookOf(m_lineStart);
  if (look == Look::kBlank || look == Look::kComment || look == Look::kQuote) return;
  if (lastLine && m_versionRead) {
    Add("no-line-end", line.begin, line.end,
        "the file's last line has no line end: the reader passes over it");
    return;
  }
  switch (look) {
    case Look::kVersion:
      Add("version", line.begin, line.end,
          "a second version line has no meaning: the version line at line " +
              std::to_string(m_map.PointOf(m_versionSpan.begin).line) + " holds");
      return;
    case Look::kManufacturer:
      AddConsequence("ignored", line.begin, line.end, "manufacturer line before any kind line: it makes no manufacturer");
      return;
    case Look::kList:
      if (!m_haveKind) {
        Add("list", line.begin, line.end,
            "header list keyword without a blank, \",\" or \";\" behind it on its line: the line is no list");
      } else {
        AddConsequence("ignored", line.begin, line.end,
                       "header list after the first kind line: header lists are read only in front of it");
      }
      return;
    case Look::kKind:
      return;
    default:
      break;
  }
  std::string why;
  if (!m_haveKind) {
    why = "no kind line comes before it";
  } else if (!m_haveManuf) {
    why = "its kind has no manufacturer line before it";
  } else {
    why = "a \":\" in its first word makes it no device";
  }
  const char* what = look == Look::kDevice ? "line makes no device: " : "line passed over: ";
  AddConsequence("ignored", line.begin, line.end, what + why);
}

// ---------------------------------------------------------------------------
// The recognisers that the loop calls directly

void ReadReplay::Version() {
  const size_t start = m_pos;
  m_lineMade = true;
  bool seen = false;
  for (;;) {
    if (m_pos >= m_n) {
      if (StartsWithNoCase(m_b + start, m_n - start, "DEF_LAYOUT_VERSION")) {
        Add("version", start, m_n, "version line without a line end: the reader passes over it");
      }
      return;
    }
    m_current = m_b[m_pos];
    if (m_pos - start == 18 && StartsWithNoCase(m_b + start, 18, "DEF_LAYOUT_VERSION")) seen = true;
    if (IsLineEnd(m_current)) break;
    ++m_pos;
  }
  const unsigned char* equals =
      static_cast<const unsigned char*>(std::memchr(m_b + start, '=', m_pos - start));
  int number = 0;
  bool read = false;
  if (seen && equals != nullptr) {
    const std::string rest = Text(static_cast<size_t>(equals - m_b) + 1, m_pos);
    read = DevdefScanDecimal(rest.c_str(), &number) == 1;
  }
  if (read) {
    m_versionRead = true;
    m_versionSpan = ByteSpan{start, m_pos};
    m_lineState = 2;
  } else if (seen) {
    Add("version", start, m_pos,
        equals == nullptr ? "version line without \"=\": the reader passes over it"
                          : "version line without a number behind its first \"=\": the reader passes over it");
  }
  m_tokenEmpty = false;
  --m_pos;
}

void ReadReplay::Manufacturer() {
  if (!m_haveKind) {
    m_haveManuf = false;
    return;
  }
  const size_t colon = m_pos;
  for (;;) {
    ++m_pos;
    if (m_pos >= m_n) {
      m_haveManuf = false;
      m_tokenEmpty = m_pos == colon + 1;
      return;
    }
    m_current = m_b[m_pos];
    if (m_current == ' ' || IsLineEnd(m_current)) break;
  }
  --m_pos;
  m_manufacturers.push_back(MadeEntry{ByteSpan{colon + 1, m_pos + 1}, m_kinds.size() - 1});
  m_haveManuf = true;
  m_tokenEmpty = true;
  m_lineState = 2;
  m_lineMade = true;
  m_cause = -1;  // a manufacturer read as it looks ends a cascade
}

void ReadReplay::Kind() {
  if (m_pos + 1 >= m_n) return;
  const unsigned char behind = m_b[m_pos + 1];
  if (behind != ' ' && !IsLineEnd(behind)) return;
  const ByteSpan name{m_lineStart, m_pos};
  m_kinds.push_back(MadeEntry{name, m_kinds.size()});
  m_haveKind = true;
  m_tokenEmpty = true;
  m_lineState = 2;
  m_lineMade = true;
  const std::string quoted = "'" + Name(name.begin, name.end) + "'";
  const ByteSpan line = Trimmed(m_lineStart, LineEndFrom(m_lineStart));
  switch (LookOf(m_lineStart)) {
    case Look::kQuote:
      Add("quote-kind", line.begin, line.end,
          "line opens with a double quote but makes a kind named " + quoted +
              ": a \":\" with a blank or the line end behind it still makes a kind here");
      return;
    case Look::kDefinition:
      AddConsequence("misread", line.begin, line.end, "definition line read as a kind named " + quoted);
      return;
    case Look::kBlockOpen:
    case Look::kBlockClose:
      AddConsequence("misread", line.begin, line.end, "block line read as a kind named " + quoted);
      return;
    case Look::kManufacturer:
      AddConsequence("misread", line.begin, line.end,
                     "manufacturer line read as a kind named " + quoted + ": no kind line comes before it");
      return;
    default:
      m_cause = -1;  // a kind read as it looks ends a cascade
      return;
  }
}

bool ReadReplay::Device() {
  if (!m_haveKind || !m_haveManuf) return false;
  const size_t start = m_pos;
  for (;;) {
    if (m_pos >= m_n) {
      m_tokenEmpty = m_pos == start;
      return false;
    }
    m_current = m_b[m_pos];
    if (m_current == ':') {
      m_tokenEmpty = m_pos == start;
      return false;
    }
    if (m_current == ' ' || IsLineEnd(m_current)) break;
    ++m_pos;
  }
  m_tokenEmpty = true;
  m_lineState = 2;
  m_lineMade = true;
  return true;
}

// ---------------------------------------------------------------------------
// Lines and names

size_t ReadReplay::LineEndFrom(size_t pos) const { return FindLineEnd(m_b, pos, m_n); }

ReadReplay::Look ReadReplay::LookOf(size_t lineStart) const {
  const size_t end = LineEndFrom(lineStart);
  const ByteSpan trimmed = Trimmed(lineStart, end);
  if (trimmed.begin == trimmed.end) return Look::kBlank;
  const unsigned char first = m_b[lineStart];
  if (first == ';' || first == '/' || m_b[trimmed.begin] == ';') return Look::kComment;
  if (first == '"') return Look::kQuote;
  const unsigned char* text = m_b + trimmed.begin;
  size_t length = trimmed.end - trimmed.begin;
  if (text[0] == '{') return Look::kBlockOpen;
  if (text[0] == '}') return Look::kBlockClose;
  if (m_layout == 7 && (text[0] == 0xB0 || text[0] == 0xDF)) {
    ++text;
    --length;
  }
  for (const char* keyword : kBlockKeywords) {
    if (StartsWith(text, length, keyword)) return Look::kDefinition;
  }
  for (const char* keyword : kLayout7Keywords) {
    if (StartsWith(text, length, keyword)) return Look::kDefinition;
  }
  if (first == ':') return Look::kManufacturer;
  const size_t rawLength = end - lineStart;
  for (const char* keyword : {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"}) {
    if (StartsWithNoCase(m_b + lineStart, rawLength, keyword)) return Look::kList;
  }
  if (StartsWithNoCase(m_b + lineStart, rawLength, "DEF_LAYOUT_VERSION")) return Look::kVersion;
  for (size_t i = lineStart; i < end; ++i) {
    if (m_b[i] == ';' || m_b[i] == '/') break;
    if (m_b[i] == ':') {
      if (i > lineStart && (i + 1 >= m_n || m_b[i + 1] == ' ' || IsLineEnd(m_b[i + 1]))) return Look::kKind;
      break;
    }
  }
  return Look::kDevice;
}

bool ReadReplay::LooksLikeBlockLine(Look look) const {
  return look == Look::kBlockOpen || look == Look::kBlockClose || look == Look::kDefinition;
}

std::string ReadReplay::Text(size_t begin, size_t end) const {
  return std::string(reinterpret_cast<const char*>(m_b) + begin, end - begin);
}

std::string ReadReplay::Name(size_t begin, size_t end) const {
  std::string name = Text(begin, end);
  for (char& c : name) {
    if (c == '_') c = ' ';
  }
  return name;
}

ByteSpan ReadReplay::Trimmed(size_t begin, size_t end) const {
  while (begin < end && DevdefIsSpace(m_b[begin])) ++begin;
  while (end > begin && DevdefIsSpace(m_b[end - 1])) --end;
  return ByteSpan{begin, end};
}

// ---------------------------------------------------------------------------
// Findings

size_t ReadReplay::Add(const char* kind, size_t begin, size_t end, std::string message) {
  m_findings.push_back(RawFinding{kind, ByteSpan{begin, end}, std::move(message), {}});
  return m_findings.size() - 1;
}

void ReadReplay::AddConsequence(const char* kind, size_t begin, size_t end, std::string message) {
  if (m_cause < 0) {
    Add(kind, begin, end, std::move(message));
    return;
  }
  RawFinding& cause = m_findings[static_cast<size_t>(m_cause)];
  // A long cascade names its first consequences; each names the cause.
  const size_t kMaxListed = 50;
  if (cause.related.size() < kMaxListed) cause.related.push_back(RelatedSpan{ByteSpan{begin, end}, message});
  const size_t line = static_cast<size_t>(m_map.PointOf(m_causeLine).line);
  message += " (after the failed line " + std::to_string(line) + ")";
  RelatedSpan back{cause.span, "the failed line", true};
  const size_t index = Add(kind, begin, end, std::move(message));
  m_findings[index].related.push_back(std::move(back));
}
