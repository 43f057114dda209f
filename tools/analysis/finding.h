// What the analysis of a definition file reports: findings of a fixed set of
// kinds (one table, finding_kinds.def), each on the bytes it is about. A
// finding holds the form of its message and the form's arguments; the
// message itself is made when it is printed (Analysis::MessageOf), so that
// a file with a finding on every line costs a few words per finding.
#ifndef DEVDEF_TOOLS_ANALYSIS_FINDING_H_
#define DEVDEF_TOOLS_ANALYSIS_FINDING_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/analysis/records.h"

enum class Severity : std::uint8_t { kError = 0, kWarning = 1, kNote = 2 };

// "error", "warning" or "note".
const char* SeverityName(Severity severity);
// The severity of a name as SeverityName gives it; false for any other text.
bool ParseSeverity(const std::string& name, Severity* severity);

enum class FindingKind : std::uint8_t {
#define DEVDEF_FINDING(name, id, severity, title, explanation) name,
#include "tools/analysis/finding_kinds.def"
#undef DEVDEF_FINDING
};

// A kind's row of the table.
struct FindingInfo {
  FindingKind kind;
  const char* id;           // stable, as options and output forms name it
  Severity severity;        // the kind's own; a finding may say otherwise
  const char* title;        // a few words
  const char* explanation;  // one paragraph, as the manual shows it
};

// Every kind, in the order of the table.
const std::vector<FindingInfo>& AllFindingKinds();
const FindingInfo& InfoOf(FindingKind kind);
// The kind with this id; false when there is none.
bool FindingKindOf(const std::string& id, FindingKind* kind);

// The forms of the messages; Analysis::MessageOf makes the text of each
// from a finding's arguments (a, b, c: record indexes, numbers, offsets)
// and its quoted bytes.
enum class MessageForm : std::uint8_t {
  kText,  // a: index of the text (Findings::Text)
  kNoVersion,
  kLayout2Writer,
  kRefused,  // a: 0 no keyword, 1 no ":", 2 a field; b: device
  kDropped,
  kDefinitionAsKind,     // a: kind
  kBlockLineAsKind,      // a: kind
  kManufacturerAsKind,   // a: kind
  kQuoteKind,            // a: kind
  kDefinitionAsDevice,   // a: device
  kBlockLineAsDevice,    // a: device
  kListAsDevice,         // a: device
  kVersionAsDevice,      // a: device
  kKindAsDevice,         // a: device
  kBlankDeviceLine,
  kNoManufacturer,       // a: device, b: its manufacturer, c: the last kind
  kLostFirstBlockLine,   // quoted: the line, a: device
  kNoBlockBehindName,    // quoted: the line, a: device
  kNoBlock,              // a: device
  kDefinitionIntoDevice, // a: device
  kCutOff,               // a: device, b: 0 its last line is not read, 1 no "}", 2 no "{"
  kShortForm,
  kIgnoredKeyword,
  kManufacturerBeforeKind,
  kListAfterKind,
  kLinePassed,           // a: 0 passed over, 1 makes no device; b: 0 no kind, 1 no manufacturer, 2 a ":" in the word
  kListNoDelimiter,
  kListEntryNoDelimiter, // quoted: the entry
  kListEntryCut,         // quoted: the entry; the byte behind it ended it
  kListInBraces,         // a: list
  kListNotRead,          // a: list, b: problem (BraceProblem), c: where the scan stopped
  kPassedByListScan,     // a: list
  kHousingEntryLost,     // quoted: the entry
  kHousingNotRead,       // b: problem, c: where the scan stopped
  kHousingNoNumber,      // quoted: the entry
  kHousingNoDevice,
  kHousingNotWritten,
  kSecondVersion,        // a: offset of the version line
  kVersionNoLineEnd,
  kVersionNoEquals,
  kVersionNoNumber,
  kNoLineEnd,
  kIdUsedAgain,          // a: id, b: offset of its next use
  kIdAlreadyUsed,        // a: id, b: offset of its first use
  kBadPackage,           // a: number
  kBadModule,            // a: number
  kBadAdapter,           // a: number
  kNameWithBlank,        // a: 0 kind, 1 manufacturer, 2 device; b: its record
  kDeviceMarkNotWritten,
  kDefinitionMarkNotWritten,
  kSecondPackageNotWritten,
  kValue10,              // a: the value
  kNumberMisread,        // a: NumberMisread | field << 8 | index << 16, b: the value, c: end of what it took; quoted: its word
  kTextCut,              // quoted: what the comment took
  kVersionBehindMark,    // a UTF-8 byte order mark in front of the version line
  kVersionBehindBlanks,  // a: how many bytes of white space stand in front of it
  // Of related places only:
  kFailedLine,
  kIdUsedAgainHere,      // a: id
  kIdFirstUsedHere,      // a: id
};

// Why a list in braces was not read, as the reader's scan ended.
enum BraceProblem : std::uint32_t {
  kBraceNoOpenClosed = 0,  // no "{" before the "}"
  kBraceNoOpen = 1,        // neither "{" nor "}"
  kBraceNoClose = 2,
  kBraceNoEntry = 3,
};

// What a message says: its form, arguments and quoted bytes.
struct MessageArgs {
  MessageForm form = MessageForm::kText;
  std::uint32_t a = 0;
  std::uint32_t b = 0;
  std::uint32_t c = 0;
  ByteSpan quoted;
};

// What a message of this form says with these arguments (and quoting the
// bytes of quoted).
inline MessageArgs Says(MessageForm form, std::uint32_t a = 0, std::uint32_t b = 0, std::uint32_t c = 0,
                        ByteSpan quoted = ByteSpan()) {
  MessageArgs says;
  says.form = form;
  says.a = a;
  says.b = b;
  says.c = c;
  says.quoted = quoted;
  return says;
}

inline bool operator==(const MessageArgs& x, const MessageArgs& y) {
  return x.form == y.form && x.a == y.a && x.b == y.b && x.c == y.c && x.quoted == y.quoted;
}

// Another place that a finding refers to: its cause or a consequence.
struct RelatedPlace {
  ByteSpan span;
  MessageArgs says;
  bool cause = false;  // the place that made this finding happen
};

struct Finding {
  FindingKind kind;
  Severity severity;  // the kind's, unless the finder says otherwise
  ByteSpan span;
  MessageArgs says;
  std::uint32_t count = 1;  // identical findings of one place merged into one
  // For a consequence of a failed line: the offset of that line, which the
  // message names; else kNoRecord.
  std::uint32_t after = kNoRecord;
  std::uint32_t firstRelated = 0;  // into Findings::related
  std::uint32_t relatedCount = 0;
};

// The findings of a file with what they share. While they are made they
// stand in the order they were found; Finish puts them in the order of the
// file.
class Findings {
 public:
  // Adds a finding of kind with its own severity; gives its number, valid
  // until Finish.
  std::uint32_t Add(FindingKind kind, ByteSpan span, MessageArgs says);
  // Adds a finding with a message of its own.
  std::uint32_t AddText(FindingKind kind, ByteSpan span, std::string text);
  Finding& operator[](std::uint32_t number) { return m_list[number]; }
  std::uint32_t Size() const { return static_cast<std::uint32_t>(m_list.size()); }
  // Adds a place that the finding of that number refers to.
  void Relate(std::uint32_t number, ByteSpan span, MessageArgs says, bool cause);
  // Sorts the findings by their place (stably: findings of one place keep
  // the order they were found in), merges identical findings of one place
  // into one with a count, and gathers each finding's related places.
  void Finish();

  const std::vector<Finding>& List() const { return m_list; }
  const std::string& Text(std::uint32_t index) const { return m_texts[index]; }
  // The related places of a finding, after Finish.
  const RelatedPlace* RelatedBegin(const Finding& finding) const { return m_related.data() + finding.firstRelated; }
  const RelatedPlace* RelatedEnd(const Finding& finding) const { return RelatedBegin(finding) + finding.relatedCount; }

 private:
  struct Relation {
    std::uint32_t owner;
    RelatedPlace place;
  };
  std::vector<Finding> m_list;
  std::vector<Relation> m_relations;  // until Finish
  std::vector<RelatedPlace> m_related;
  std::vector<std::string> m_texts;
};

#endif  // DEVDEF_TOOLS_ANALYSIS_FINDING_H_
