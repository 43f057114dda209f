// Reads arbitrary bytes through the tool's analysis, as the layout that the
// last byte picks, and checks that every record holds what the catalogue
// got in the catalogue's order, that every field the reader reports again
// lies in its line and either reads as it looks or carries a finding, and
// that every finding lies in the file and says something. The options come from the input's last byte, so that the seed
// files are read whole.
#include <strings.h>

#include <cstring>
#include <set>
#include <utility>

#include "fuzz/fuzz_support.h"
#include "tools/analysis/analysis.h"

namespace {

std::string Named(std::string_view bytes) {
  std::string name(bytes);
  for (char& c : name) c = c == '_' ? ' ' : c;
  return name;
}

// Whether a kind's bytes hold its name: they are its name, or (layout 7)
// a header list keyword whose list in braces the loop read before it went
// on to the ":", keeping the keyword in the name.
bool KindNameHolds(std::string_view bytes, const std::string& name) {
  if (Named(bytes) == name) return true;
  for (const char* keyword : {"HOUSING_LIST", "ADAPTER_LIST"}) {
    if (bytes.size() >= 12 && strncasecmp(bytes.data(), keyword, 12) == 0 && bytes.find('}') != std::string::npos &&
        Named(bytes.substr(0, 12)) == name.substr(0, 12)) {
      return true;
    }
  }
  return false;
}

// Whether a number's word reads as it looks: digits of its radix alone
// (a "+" and, in hexadecimal, "0x" in front allowed) whose value fits the
// field and is the value stored.
bool ReadsAsItLooks(std::string_view word, const FieldRecord& field) {
  size_t at = 0;
  if (at < word.size() && word[at] == '+') ++at;
  // A hexadecimal "0x" reads 0, with or without digits behind it.
  if (field.hex && word.size() == at + 2 && word[at] == '0' && (word[at + 1] == 'x' || word[at + 1] == 'X')) {
    return field.value == 0;
  }
  if (field.hex && word.size() > at + 2 && word[at] == '0' && (word[at + 1] == 'x' || word[at + 1] == 'X')) at += 2;
  if (at == word.size()) return false;
  unsigned long long value = 0;
  for (; at < word.size(); ++at) {
    const char c = word[at];
    unsigned digit = 0;
    if (c >= '0' && c <= '9') {
      digit = static_cast<unsigned>(c - '0');
    } else if (field.hex && c >= 'a' && c <= 'f') {
      digit = static_cast<unsigned>(c - 'a' + 10);
    } else if (field.hex && c >= 'A' && c <= 'F') {
      digit = static_cast<unsigned>(c - 'A' + 10);
    } else {
      return false;
    }
    value = value * (field.hex ? 16 : 10) + digit;
    if (value > 0xFFFFFFFFull) return false;
  }
  const bool sixteen = field.field == kDevdefFieldPackage || field.field == kDevdefFieldAdapter;
  return value <= (sixteen ? 0xFFFFull : 0xFFFFFFFFull) && value == field.value;
}

void CheckRecords(Analysis& analysis) {
  std::set<std::pair<std::uint32_t, std::uint32_t>> misread;
  for (const Finding& finding : analysis.FindingsOf().List()) {
    if (finding.kind == FindingKind::kNumber) misread.emplace(finding.span.begin, finding.span.end);
  }
  const std::string_view bytes = analysis.Bytes();
  std::uint32_t device = 0;
  for (const KindRecord& kind : analysis.Kinds()) {
    DEVDEF_FUZZ_CHECK(kind.name.end <= bytes.size());
    DEVDEF_FUZZ_CHECK(KindNameHolds(bytes.substr(kind.name.begin, kind.name.end - kind.name.begin),
                                    std::string(kind.kind->m_Name, static_cast<size_t>(kind.kind->m_Name.GetLength()))));
    for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
      const ManufacturerRecord& manufacturer = analysis.Manufacturers()[m];
      DEVDEF_FUZZ_CHECK(manufacturer.firstDevice == device);
      device += manufacturer.deviceCount;
    }
  }
  DEVDEF_FUZZ_CHECK(device == analysis.Devices().size());
  for (const DeviceRecord& record : analysis.Devices()) {
    DEVICE_ITEM& item = *record.device;
    std::string name = Named(bytes.substr(record.name.begin, record.name.end - record.name.begin));
    if (item.m_DeviceFlags != 0) name.erase(0, 1);
    DEVDEF_FUZZ_CHECK(name == std::string(item.m_DeviceName, static_cast<size_t>(item.m_DeviceName.GetLength())));
    DEVDEF_FUZZ_CHECK(record.definitionCount == static_cast<std::uint32_t>(item.m_DefArray.GetSize()));
    for (std::uint32_t i = 0; i < record.definitionCount; ++i) {
      const std::uint32_t definition = record.firstDefinition + i;
      const ByteSpan line = analysis.Definitions()[definition].line;
      const CString& text = item.m_DefArray[static_cast<int>(i)].m_DefLine;
      const size_t length = static_cast<size_t>(text.GetLength());
      DEVDEF_FUZZ_CHECK(line.end - line.begin >= length);
      DEVDEF_FUZZ_CHECK(std::memcmp(bytes.data() + line.end - length, static_cast<LPCTSTR>(text), length) == 0);
      if (definition < 64) {
        for (const FieldRecord& field : analysis.Fields(definition)) {
          DEVDEF_FUZZ_CHECK(line.begin <= field.taken.begin && field.taken.end <= field.word.end &&
                            field.word.end <= line.end);
          const std::string_view word = bytes.substr(field.word.begin, field.word.end - field.word.begin);
          DEVDEF_FUZZ_CHECK(ReadsAsItLooks(word, field) ||
                            misread.count(std::make_pair(field.word.begin, field.word.end)) == 1);
        }
      }
    }
  }
  const Findings& findings = analysis.FindingsOf();
  for (const Finding& finding : findings.List()) {
    DEVDEF_FUZZ_CHECK(finding.span.begin <= finding.span.end && finding.span.end <= bytes.size());
    DEVDEF_FUZZ_CHECK(!analysis.MessageOf(finding).empty());
    for (const RelatedPlace* place = findings.RelatedBegin(finding); place != findings.RelatedEnd(finding); ++place) {
      DEVDEF_FUZZ_CHECK(place->span.end <= bytes.size() && !analysis.MessageOf(place->says, findings).empty());
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const uint8_t pick = nSize > 0 ? pData[nSize - 1] : 0;
  const int layouts[] = {0, 1, 2, 7};
  AnalysisOptions options;
  options.layout = layouts[pick & 3];
  options.generation = 3 + ((pick >> 2) & 3) % 3;
  options.checkIds = ((pick >> 4) & 1) != 0;
  const std::string path = DevdefFuzzInputFile(pData, nSize);
  std::unique_ptr<Analysis> analysis = Analysis::ReadFile(path, options);
  if (!analysis->Read()) return 0;
  CheckRecords(*analysis);
  return 0;
}
