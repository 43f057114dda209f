// The text of every message form: what a finding says, made when it is
// printed from the finding's arguments, the records and the file's bytes.
#include <string>

#include "tools/analysis/analysis.h"
#include "tools/analysis/number_look.h"

namespace {

const char* const kListKeywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};

std::string Quoted(const CString& name) { return "'" + std::string(name, static_cast<size_t>(name.GetLength())) + "'"; }

// Up to 40 bytes of a line, for messages.
std::string Excerpt(std::string text) {
  if (text.size() > 40) text = text.substr(0, 37) + "...";
  return text;
}

}  // namespace

std::string Analysis::Text(ByteSpan span) const {
  const std::string_view bytes = Bytes();
  return std::string(bytes.substr(span.begin, span.end - span.begin));
}

long Analysis::LineOf(std::uint32_t offset) const { return Map().PointOf(offset).line; }

std::string Analysis::BraceProblemText(std::uint32_t problem, std::uint32_t stop) const {
  switch (problem) {
    case kBraceNoOpenClosed:
      return "no \"{\" opens the list (a comment or the end of its line comes first), so the reader passes over "
             "everything up to the \"}\" at line " +
             std::to_string(LineOf(stop));
    case kBraceNoOpen:
      return "no \"{\" opens the list and no \"}\" ends it, so the reader passes over the rest";
    case kBraceNoClose:
      return "no \"}\" closes the list";
    default:
      return "the list has no entry with a separator behind it";
  }
}

std::string Analysis::MessageOf(const Finding& finding, const Findings& owner) const {
  std::string message = MessageOf(finding.says, owner);
  if (finding.after != kNoRecord) message += " (after the failed line " + std::to_string(LineOf(finding.after)) + ")";
  return message;
}

std::string Analysis::MessageOf(const MessageArgs& says, const Findings& owner) const {
  auto device = [this](std::uint32_t record) { return Quoted(Devices()[record].device->m_DeviceName); };
  auto kind = [this](std::uint32_t record) { return Quoted(Kinds()[record].kind->m_Name); };
  auto line = [this](std::uint32_t offset) { return std::to_string(LineOf(offset)); };
  auto deviceLine = [this, &line](std::uint32_t record) { return line(Devices()[record].name.begin); };
  const std::string quoted = "'" + Text(says.quoted) + "'";
  switch (says.form) {
    case MessageForm::kText:
      return owner.Text(says.a);
    case MessageForm::kNoVersion:
      return "no version line \"DEF_LAYOUT_VERSION = N\" that the reader takes: it passes over every line of the "
             "file";
    case MessageForm::kLayout2Writer:
      return "a write of this layout 2 file puts out definition lines with one value, which the layout 2 reader "
             "refuses: the written file loses every definition";
    case MessageForm::kRefused: {
      const char* reason = says.a == 0   ? "it does not open with KVR3DEF:, KVR4DEF: or KVR5DEF:"
                           : says.a == 1 ? "no \":\" closes its number fields"
                           : m_layout == 7
                               ? "its fifteen number fields are incomplete or hold something that is no number"
                               : "its number fields are incomplete or hold something that is no number";
      return std::string("definition line refused (") + reason + "): the definition is lost and the block of the device " +
             device(says.b) + " ends here";
    }
    case MessageForm::kDropped:
      return "line skipped unread: the reader passes over the line behind a failed block line";
    case MessageForm::kDefinitionAsKind:
      return "definition line read as a kind named " + kind(says.a);
    case MessageForm::kBlockLineAsKind:
      return "block line read as a kind named " + kind(says.a);
    case MessageForm::kManufacturerAsKind:
      return "manufacturer line read as a kind named " + kind(says.a) + ": no kind line comes before it";
    case MessageForm::kQuoteKind:
      return "line opens with a double quote but makes a kind named " + kind(says.a) +
             ": a \":\" with a blank or the line end behind it still makes a kind here";
    case MessageForm::kDefinitionAsDevice:
      return "definition line read as a device named " + device(says.a);
    case MessageForm::kBlockLineAsDevice:
      return "block line read as a device named " + device(says.a);
    case MessageForm::kListAsDevice:
      return "header list line read as a device named " + device(says.a) +
             ": header lists are read only in front of the first kind line";
    case MessageForm::kVersionAsDevice:
      return "version line read as a device named " + device(says.a);
    case MessageForm::kKindAsDevice:
      return "kind line read as a device named " + device(says.a) +
             ": once a manufacturer is read, a line with a blank in front of its \":\" is a device";
    case MessageForm::kBlankDeviceLine:
      return "line opens with a blank: read as a device with an empty name whose block starts on this line";
    case MessageForm::kNoManufacturer: {
      const ManufacturerRecord& owner = Manufacturers()[says.b];
      return "device " + device(says.a) + " goes to the manufacturer " + Quoted(owner.manufacturer->m_Name) +
             " of the kind " + kind(owner.kind) + " (line " + line(owner.name.begin) + "): the kind " + kind(says.c) +
             " at line " + line(Kinds()[says.c].name.begin) + " has no manufacturer line";
    }
    case MessageForm::kLostFirstBlockLine:
      return "'" + Excerpt(Text(says.quoted)) + "' read as the first line of the block of the device " +
             device(says.a) + " at line " + deviceLine(says.a) + ", which must open with \"{\": the line is lost";
    case MessageForm::kNoBlockBehindName:
      return "'" + Excerpt(Text(says.quoted)) + "' behind the device name is read as the first line of the block of " +
             device(says.a) + ", which must open with \"{\": the device gets no definitions";
    case MessageForm::kNoBlock:
      return "the block of the device " + device(says.a) + " at line " + deviceLine(says.a) +
             " does not open with \"{\": this line is read in its place and lost, and the device gets no definitions";
    case MessageForm::kDefinitionIntoDevice:
      return "definition read into the device " + device(says.a);
    case MessageForm::kCutOff:
      return "the block of the device " + device(says.a) + " runs to the end of the file" +
             (says.b == 0   ? ": its last line has no line end and is not read"
              : says.b == 1 ? " without its \"}\""
                            : " and never opens");
    case MessageForm::kShortForm:
      return "definition line accepted without a definition: its number fields end behind the adapters, with no "
             "blank and value behind them";
    case MessageForm::kIgnoredKeyword:
      return "line of a keyword that the reader accepts and passes over: it makes no definition, and a write does "
             "not keep it";
    case MessageForm::kManufacturerBeforeKind:
      return "manufacturer line before any kind line: it makes no manufacturer";
    case MessageForm::kListAfterKind:
      return "header list after the first kind line: header lists are read only in front of it";
    case MessageForm::kLinePassed: {
      const char* why = says.b == 0   ? "no kind line comes before it"
                        : says.b == 1 ? "its kind has no manufacturer line before it"
                                      : "a \":\" in its first word makes it no device";
      return std::string(says.a == 1 ? "line makes no device: " : "line passed over: ") + why;
    }
    case MessageForm::kListNoDelimiter:
      return "header list keyword without a blank, \",\" or \";\" behind it on its line: the line is no list";
    case MessageForm::kListEntryNoDelimiter:
      return "header list entry " + quoted + " has no delimiter behind it and is lost: end the list with \";\"";
    case MessageForm::kListEntryCut:
      return "header list entry " + quoted + " is lost: an entry needs a blank, tab, \",\" or line end behind it, not \"" +
             std::string(1, Bytes()[says.quoted.end]) + "\"";
    case MessageForm::kListInBraces:
      return std::string(kListKeywords[says.a]) +
             " in braces: the layout 7 writer puts the list on one line, which this reader does not read back";
    case MessageForm::kListNotRead:
      return std::string(kListKeywords[says.a]) + " not read: " + BraceProblemText(says.b, says.c);
    case MessageForm::kPassedByListScan:
      return std::string("line passed over by the scan for the ") + kListKeywords[says.a] + " \"{\"";
    case MessageForm::kHousingEntryLost:
      return "housing entry " + quoted + " is lost: it needs a blank, tab or \",\" behind it";
    case MessageForm::kHousingNotRead:
      return "housing list not read: " + BraceProblemText(says.b, says.c) + " on this line; the line counts for nothing";
    case MessageForm::kHousingNoNumber:
      return "housing entry " + quoted + " is no number: it and the entries behind it are lost";
    case MessageForm::kHousingNoDevice:
      return "housing numbers lost: the device's kind has no manufacturer line, so the reader finds no device to "
             "give them to";
    case MessageForm::kHousingNotWritten:
      return "the device's housing numbers are not written back: no writer puts out DEVICE_HOUSING_LIST";
    case MessageForm::kSecondVersion:
      return "a second version line has no meaning: the version line at line " + line(says.a) + " holds";
    case MessageForm::kVersionNoLineEnd:
      return "version line without a line end: the reader passes over it";
    case MessageForm::kVersionNoEquals:
      return "version line without \"=\": the reader passes over it";
    case MessageForm::kVersionNoNumber:
      return "version line without a number behind its first \"=\": the reader passes over it";
    case MessageForm::kNoLineEnd:
      return "the file's last line has no line end: the reader passes over it";
    case MessageForm::kIdUsedAgain:
      return "id " + std::to_string(says.a) + " is used again at line " + line(says.b);
    case MessageForm::kIdAlreadyUsed:
      return "id " + std::to_string(says.a) + " is already used at line " + line(says.b);
    case MessageForm::kBadPackage:
      return "package " + std::to_string(says.a) + " has no name in HOUSING_LIST";
    case MessageForm::kBadModule:
      return "module " + std::to_string(says.a) + " has no name in MODUL_LIST";
    case MessageForm::kBadAdapter:
      return "adapter " + std::to_string(says.a) + " has no name in ADAPTER_LIST";
    case MessageForm::kNameWithBlank: {
      static const char* const kWhat[] = {"kind", "manufacturer", "device"};
      const CString& name = says.a == 0   ? Kinds()[says.b].kind->m_Name
                            : says.a == 1 ? Manufacturers()[says.b].manufacturer->m_Name
                                          : Devices()[says.b].device->m_DeviceName;
      return std::string(kWhat[says.a]) + " name " + Quoted(name) +
             " holds a blank, which the writer keeps: the name will not read back whole";
    }
    case MessageForm::kDeviceMarkNotWritten:
      return "the mark in front of the device name is not written back";
    case MessageForm::kDefinitionMarkNotWritten:
      return "the mark in front of the definition line is not written back";
    case MessageForm::kSecondPackageNotWritten:
      return "only the first of the package numbers is written back";
    case MessageForm::kValue10:
      return "value 10 (" + std::to_string(says.a) +
             ") is written in decimal and read in hexadecimal: it will not read back the same";
    case MessageForm::kNumberMisread: {
      const NumberMisread why = static_cast<NumberMisread>(says.a & 0xFF);
      const std::string field = FieldName(static_cast<int>((says.a >> 8) & 0xFF), static_cast<int>(says.a >> 16));
      const std::string head = field + " " + quoted + " is read as " + std::to_string(says.b) + ": ";
      const std::string rest = "'" + Text(ByteSpan{says.c, says.quoted.end}) + "'";
      switch (why) {
        case NumberMisread::kSign:
          return head + "the field holds no sign";
        case NumberMisread::kRadixPrefix:
          return head + "the field is decimal, so the reader stops in front of the 'x'";
        case NumberMisread::kDecimalPoint:
          return head + "the field holds whole numbers, so the reader passes over " + rest;
        case NumberMisread::kWidth:
          return head + "the field holds " + (SixteenBitField(static_cast<int>((says.a >> 8) & 0xFF)) ? "16" : "32") +
                 " bits";
        default:
          return head + "the reader passes over " + rest + " behind the digits";
      }
    }
    case MessageForm::kTextCut:
      return "the text ends at the \";\": the reader takes " + quoted +
             " for a comment, so the definition's text ends in front of it and a write drops it";
    case MessageForm::kVersionBehindMark:
      return "a UTF-8 byte order mark stands in front of DEF_LAYOUT_VERSION: the reader takes a version line only "
             "when the keyword is the line's first byte, so it takes none and passes over every line of the file; "
             "save the file without the mark";
    case MessageForm::kVersionBehindBlanks:
      return "white space stands in front of DEF_LAYOUT_VERSION: the reader takes a version line only when the keyword is the line's "
             "first byte, so it takes none and passes over every line of the file";
    case MessageForm::kFailedLine:
      return "the failed line";
    case MessageForm::kIdUsedAgainHere:
      return "id " + std::to_string(says.a) + " used again";
    case MessageForm::kIdFirstUsedHere:
      return "id " + std::to_string(says.a) + " first used here";
  }
  return std::string();
}
