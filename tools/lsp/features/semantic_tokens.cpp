#include "tools/lsp/features/semantic_tokens.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

#include "tools/lsp/protocol/json_text.h"

using nlohmann::json;

namespace {

// The token types, in the order of the legend. The standard types are those
// that editors colour without being told: a kind is a namespace, a
// manufacturer a type, a device a class, a list entry (and every number that
// names one) a member of an enumeration.
enum TokenType : std::uint32_t {
  kKindToken,
  kManufacturerToken,
  kDeviceToken,
  kKeywordToken,
  kIdToken,
  kEntryToken,
  kValueToken,
  kTextToken,
  kMarkToken,
};
const char* const kTokenTypes[] = {"namespace", "type",   "class",  "keyword",  "variable",
                                   "enumMember", "number", "string", "decorator"};

// The modifiers, as bits in the order of the legend. A misread number is also
// "deprecated", which editors show struck through without being told: the
// number as written is not the number read.
enum TokenModifier : std::uint32_t {
  kDeclaration = 1,
  kDeprecated = 2,
  kMisread = 4,
};
const char* const kTokenModifiers[] = {"declaration", "deprecated", "misread"};

struct Token {
  ByteSpan span;
  std::uint32_t type;
  std::uint32_t modifiers;
};

bool Before(const Token& a, const Token& b) {
  return a.span.begin != b.span.begin ? a.span.begin < b.span.begin : a.span.end > b.span.end;
}

// The first of records (in file order, not overlapping) whose span ends
// behind offset.
template <class Record, class SpanOf>
size_t FirstEndingBehind(const std::vector<Record>& records, size_t offset, SpanOf spanOf) {
  return static_cast<size_t>(std::partition_point(records.begin(), records.end(),
                                                  [&](const Record& r) { return spanOf(r).end <= offset; }) -
                             records.begin());
}

// Gathers the tokens of the bytes [begin, end).
class Collector {
 public:
  Collector(const DocumentView& view, size_t begin, size_t end)
      : m_analysis(view.analysis), m_begin(begin), m_end(end) {}

  // The tokens of everything but the definition lines, in file order:
  // names, header lists and housing lines, far fewer than the tokens of the
  // definitions.
  std::vector<Token> Others() {
    const Analysis& a = m_analysis;
    const ByteSpan version = a.VersionLine();
    if (version.end - version.begin >= 18) Add(ByteSpan{version.begin, version.begin + 18}, kKeywordToken);
    for (const ListKeywordRecord& keyword : a.ListKeywords()) Add(keyword.keyword, kKeywordToken);
    for (int list = 0; list < 3; ++list) {
      const std::vector<ByteSpan>& entries = a.ListEntries(list);
      for (size_t i = FirstEndingBehind(entries, m_begin, Self); i < entries.size() && Open(entries[i]); ++i) {
        Add(entries[i], kEntryToken, kDeclaration);
      }
    }
    const auto& kinds = a.Kinds();
    for (size_t i = FirstEndingBehind(kinds, m_begin, KindSpan); i < kinds.size() && Open(kinds[i].name); ++i) {
      Add(kinds[i].name, kKindToken, kDeclaration);
    }
    const auto& manufacturers = a.Manufacturers();
    for (size_t i = FirstEndingBehind(manufacturers, m_begin, ManufacturerSpan);
         i < manufacturers.size() && Open(manufacturers[i].name); ++i) {
      Add(manufacturers[i].name, kManufacturerToken, kDeclaration);
    }
    const auto& devices = a.Devices();
    for (size_t i = FirstEndingBehind(devices, m_begin, DeviceSpan); i < devices.size() && Open(devices[i].name); ++i) {
      ByteSpan name = devices[i].name;
      if (devices[i].device->m_DeviceFlags != 0 && name.end > name.begin) {
        Add(ByteSpan{name.begin, name.begin + 1}, kMarkToken);
        ++name.begin;
      }
      Add(name, kDeviceToken, kDeclaration);
    }
    const auto& housingKeywords = a.HousingKeywords();
    for (size_t i = FirstEndingBehind(housingKeywords, m_begin, Self);
         i < housingKeywords.size() && Open(housingKeywords[i]); ++i) {
      Add(housingKeywords[i], kKeywordToken);
    }
    const auto& housing = a.HousingNumbers();
    for (size_t i = FirstEndingBehind(housing, m_begin, HousingSpan); i < housing.size() && Open(housing[i].entry);
         ++i) {
      Add(housing[i].entry, kEntryToken);
    }
    // Each kind of record stands in file order; they interleave.
    std::sort(m_tokens.begin(), m_tokens.end(), Before);
    return std::move(m_tokens);
  }

  // Calls take(line, tokens) for each definition line in the bytes asked
  // for, in file order, with the tokens of the line in order.
  template <class Take>
  void ForEachDefinition(Take take) {
    const auto& definitions = m_analysis.Definitions();
    for (size_t i = FirstEndingBehind(definitions, m_begin, LineSpan);
         i < definitions.size() && Open(definitions[i].line); ++i) {
      m_tokens.clear();
      AddDefinition(static_cast<std::uint32_t>(i));
      // A line's fields come by kind, which need not be their order on it.
      std::sort(m_tokens.begin(), m_tokens.end(), Before);
      take(definitions[i].line, m_tokens);
    }
  }

 private:
  static ByteSpan Self(const ByteSpan& span) { return span; }
  static ByteSpan KindSpan(const KindRecord& r) { return r.name; }
  static ByteSpan ManufacturerSpan(const ManufacturerRecord& r) { return r.name; }
  static ByteSpan DeviceSpan(const DeviceRecord& r) { return r.name; }
  static ByteSpan LineSpan(const DefinitionRecord& r) { return r.line; }
  static ByteSpan HousingSpan(const HousingNumberRecord& r) { return r.entry; }

  // Whether a record that starts at span may still reach into the bytes
  // asked for.
  bool Open(ByteSpan span) const { return span.begin < m_end; }

  void Add(ByteSpan span, std::uint32_t type, std::uint32_t modifiers = 0) {
    if (span.end <= span.begin || span.end <= m_begin || span.begin >= m_end) return;
    m_tokens.push_back(Token{span, type, modifiers});
  }

  void AddDefinition(std::uint32_t definition) {
    const ByteSpan line = m_analysis.Definitions()[definition].line;
    const DEVICE_KVRXDEF_ITEM& def = m_analysis.DefinitionOf(definition);
    std::uint32_t keyword = line.begin;
    if (m_analysis.Layout() == 7 && def.m_MarkFlags != 0) {
      Add(ByteSpan{keyword, keyword + 1}, kMarkToken);
      ++keyword;
    }
    // Every definition line the reader took opens with KVRnDEF:.
    Add(ByteSpan{keyword, std::min(keyword + 8, line.end)}, kKeywordToken);
    for (const FieldRecord& field : m_analysis.Fields(definition)) {
      const std::uint32_t type = field.field == kDevdefFieldId      ? kIdToken
                                 : field.field == kDevdefFieldValue ? kValueToken
                                                                    : kEntryToken;
      Add(field.word, type, Misread(field.word) ? kMisread | kDeprecated : 0);
    }
    // The definition's text is what the line ends with, as the reader stored
    // it; its blanks in front are no part of it to a reader of the file.
    const std::uint32_t length = static_cast<std::uint32_t>(def.m_DefLine.GetLength());
    if (length == 0 || length > line.end - line.begin) return;
    std::uint32_t text = line.end - length;
    const std::string_view bytes = m_analysis.Bytes();
    while (text < line.end && (bytes[text] == ' ' || bytes[text] == '\t')) ++text;
    Add(ByteSpan{text, line.end}, kTextToken);
  }

  // Whether a "number" finding stands on exactly these bytes. Fields are
  // asked for in file order, so the findings are walked once.
  bool Misread(ByteSpan word) {
    const std::vector<Finding>& findings = m_analysis.FindingsOf().List();
    if (m_finding == kNoRecord) {
      m_finding = static_cast<std::uint32_t>(
          std::partition_point(findings.begin(), findings.end(),
                               [&](const Finding& f) { return f.span.begin < word.begin; }) -
          findings.begin());
    }
    while (m_finding < findings.size() && findings[m_finding].span.begin < word.begin) ++m_finding;
    for (std::uint32_t i = m_finding; i < findings.size() && findings[i].span.begin == word.begin; ++i) {
      if (findings[i].kind == FindingKind::kNumber && findings[i].span.end == word.end) return true;
    }
    return false;
  }

  Analysis& m_analysis;
  size_t m_begin;
  size_t m_end;
  std::vector<Token> m_tokens;
  std::uint32_t m_finding = kNoRecord;
};

}  // namespace

json SemanticTokensLegend() {
  return json{{"tokenTypes", kTokenTypes}, {"tokenModifiers", kTokenModifiers}};
}

namespace {

// Writes tokens, given in file order, in the protocol's relative form.
class TokenWriter {
 public:
  TokenWriter(const DocumentView& view, std::string& out)
      : m_map(view.analysis.Map()), m_positions(view.positions), m_out(out) {}

  void Put(const Token& token) {
    // Tokens never overlap: one that starts inside the last is left out.
    if (token.span.begin < m_covered) return;
    const TextPoint start = m_map.PointOf(token.span.begin);
    // A token ends on its line; a name that the reader took across lines
    // (a kind behind a list in braces) gets none.
    if (token.span.end > m_map.LineEnd(start.line)) return;
    const TextPoint stop{start.line, start.column + static_cast<long>(token.span.end - token.span.begin)};
    const LspPosition from = m_positions.ToPosition(start);
    const LspPosition to = m_positions.ToPosition(stop);
    m_covered = token.span.end;
    // The five numbers of a token go out in one piece.
    char numbers[5 * 21];
    char* at = numbers;
    const long values[5] = {from.line - m_lastLine,
                            from.line == m_lastLine ? from.character - m_lastCharacter : from.character,
                            to.character - from.character, static_cast<long>(token.type),
                            static_cast<long>(token.modifiers)};
    for (int i = 0; i < 5; ++i) {
      if (i > 0 || !m_first) *at++ = ',';
      at = std::to_chars(at, numbers + sizeof numbers, values[i]).ptr;
    }
    m_out.append(numbers, static_cast<size_t>(at - numbers));
    m_first = false;
    m_lastLine = from.line;
    m_lastCharacter = from.character;
  }

 private:
  const SourceMap& m_map;
  const PositionConverter& m_positions;
  std::string& m_out;
  long m_lastLine = 0;
  long m_lastCharacter = 0;
  std::uint32_t m_covered = 0;
  bool m_first = true;
};

}  // namespace

std::string SemanticTokens(const DocumentView& view, size_t begin, size_t end) {
  std::string out = "{\"data\":[";
  // The tokens of a definition file take a little over twice its bytes:
  // room for them at once spares a copy of megabytes into fresh pages.
  const size_t size = view.analysis.Bytes().size();
  out.reserve((std::min(end, size) - std::min(begin, size)) * 9 / 4 + 16);
  Collector collector(view, begin, end);
  const std::vector<Token> others = collector.Others();
  TokenWriter writer(view, out);
  size_t next = 0;
  // The definitions' tokens stream in file order; the others go in between,
  // never inside a definition line.
  collector.ForEachDefinition([&](ByteSpan line, const std::vector<Token>& tokens) {
    while (next < others.size() && others[next].span.begin < line.begin) writer.Put(others[next++]);
    for (const Token& token : tokens) writer.Put(token);
  });
  while (next < others.size()) writer.Put(others[next++]);
  out += "]}";
  return out;
}
