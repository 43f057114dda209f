// The layout 7 definition line reader and its number lists.
#include <cstring>

#include "devdef/catalogue/device_def_ctrl_v3.h"
#include "devdef/platform/crt.h"
#include "devdef/reader/definition_head.h"

namespace {

// Keywords whose lines are accepted and dropped, compared over their length.
const char* const kDroppedKeywords[] = {
    "KVR5M_DEF:", "KVR5D_DEF:", "KVR5P_DEF:", "KVR5M_DEF_ORIGIN:", "KVR5D_DEF_ORIGIN:", "KVR5P_DEF_ORIGIN:",
};

enum FieldForm { kDecimal, kHex, kNumberList };

// The fifteen fields of the head in file order: id, package list, module,
// adapter list, then the eleven values.
const FieldForm kFieldForms[15] = {kDecimal, kNumberList, kDecimal, kNumberList, kDecimal, kDecimal, kDecimal, kDecimal,
                                   kHex,     kHex,        kDecimal, kDecimal,    kHex,     kDecimal, kHex};

// Reads a number list "1, 2,,3" at *ppCursor into pArray, as BuildList
// does. 1: the cursor moves behind the list; 0: it stays. Each number is
// reported to report as an entry of nField, the head starting at pHead.
template <class Report>
int ReadNumberList(CWordArray* pArray, const char** ppCursor, Report& report, int nField, const char* pHead) {
  const char* scan = *ppCursor;
  bool numberRead = false;
  bool commaSeen = false;
  for (;;) {
    if (*scan == ' ') {
      ++scan;
      continue;
    }
    if (*scan == ',' && numberRead) {
      commaSeen = true;
      ++scan;
      continue;
    }
    if (numberRead && !commaSeen) {
      *ppCursor = scan;
      return 1;
    }
    int number = 0;
    if (DevdefScanDecimal(scan, &number) != 1) return 0;
    pArray->SetAtGrow(pArray->GetSize(), static_cast<WORD>(number));
    report.Field(nField, pArray->GetSize() - 1, pHead, scan, false, static_cast<WORD>(number));
    numberRead = true;
    commaSeen = false;
    // On to the next blank or comma; the end of the text ends the search.
    while (*scan != '\0' && *scan != ' ' && *scan != ',') ++scan;
  }
}

// The field of the head at place field (0 to 14), as a DevdefDefinitionField
// and its index (for a list, the entry at nListIndex).
void FieldOf(int field, int nListIndex, int* pField, int* pIndex) {
  static const int kFields[5] = {kDevdefFieldId, kDevdefFieldPackage, kDevdefFieldModule, kDevdefFieldAdapter,
                                 kDevdefFieldValue};
  *pField = kFields[field < 4 ? field : 4];
  *pIndex = kFieldForms[field] == kNumberList ? nListIndex : field < 4 ? 0 : field - 4;
}

// A refusal at the head's field (0 to 14): where it stands, to report;
// gives nVerdict.
template <class Report>
int FailAt(Report& report, int nVerdict, int field, int nListIndex) {
  int kind = 0;
  int index = 0;
  FieldOf(field, nListIndex, &kind, &index);
  return report.Fail(nVerdict, kind, index);
}

// Reads a layout 7 definition line (without its mark byte: nLength bytes at
// pLine, which stands at nOffset of the reader's line) into def, reporting
// to report. Gives the verdict.
template <class Report>
int ReadLayout7Line(const char* line, int length, int offset, DEVICE_KVRXDEF_ITEM& def, Report& report) {
  if (DevdefDefinitionKeyword(line) == 0) {
    for (const char* keyword : kDroppedKeywords) {
      if (std::strncmp(line, keyword, std::strlen(keyword)) == 0) return kDevdefLinePassedKeyword;
    }
    return kDevdefLineNoKeyword;
  }
  // One head buffer per thread, reused line after line.
  static thread_local CString head;
  if (!DevdefSplitDefinitionLine(line, length, def, head, report, offset)) return report.SplitRefused(line);

  const char* cursor = head;
  for (int field = 0; field < 15; ++field) {
    if (kFieldForms[field] == kNumberList) {
      CWordArray* list = field == 1 ? &def.m_PackageIds : &def.m_AdapterIds;
      if (!ReadNumberList(list, &cursor, report, field == 1 ? kDevdefFieldPackage : kDevdefFieldAdapter, head)) {
        return FailAt(report, kDevdefLineNoNumber, field, list->GetSize());
      }
      continue;
    }
    const char* at = cursor;
    DWORD number = 0;
    if (kFieldForms[field] == kHex) {
      unsigned int hex = 0;
      if (DevdefScanHex(cursor, &hex) != 1) return FailAt(report, kDevdefLineNoNumber, field, 0);
      number = hex;
    } else {
      int decimal = 0;
      if (DevdefScanDecimal(cursor, &decimal) != 1) return FailAt(report, kDevdefLineNoNumber, field, 0);
      number = static_cast<DWORD>(decimal);
    }
    if (field == 0) {
      def.m_DefID = number;
    } else if (field == 2) {
      def.m_ModulId = number;
    } else {
      def.m_DefValues[field - 4] = number;  // the values are the fields from the fifth on
    }
    report.Field(field == 0   ? kDevdefFieldId
                 : field == 2 ? kDevdefFieldModule
                              : kDevdefFieldValue,
                 field == 0 || field == 2 ? 0 : field - 4, head, at, kFieldForms[field] == kHex, number);
    if (field == 14) break;
    // On behind the next blank; the end of the head refuses the line.
    while (*cursor != ' ' && *cursor != '\0') ++cursor;
    if (*cursor == '\0') return FailAt(report, kDevdefLineNoBlank, field, 0);
    ++cursor;
  }
  return kDevdefLineAdded;
}

}  // namespace

int KCDeviceDefCtrlV3::RDF_ReadKvrXDefLine(POSITION /*posKind*/, POSITION /*posManuf*/, POSITION posDevice,
                                           const CString& strLine) {
  DEVICE_ITEM& device = CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice);
  DEVICE_KVRXDEF_ITEM def;
  def.m_MarkFlags = device.m_DeviceFlags;

  // The line without its mark byte, if it has one.
  const char* line = strLine;
  int length = strLine.GetLength();
  if (length > 0) {
    const unsigned char first = static_cast<unsigned char>(line[0]);
    if (first == 0xB0 || first == 0xDF) {
      def.m_MarkFlags |= first == 0xB0 ? 1 : 2;
      ++line;
      --length;
    }
  }
  const int offset = static_cast<int>(line - static_cast<LPCTSTR>(strLine));
  if (DevdefReadObserver* observer = DevdefActiveReadObserver()) {
    return DevdefReadReportedLine(
        observer,
        [line, length, offset, &def](DevdefLineReport& report) {
          return ReadLayout7Line(line, length, offset, def, report);
        },
        [this, &device, &def] {
          if (m_bCheckIds) RDF_CheckDuplicateId(def.m_DefID);
          DevdefAddReadDefinition(device, m_nKvrType, def);
        });
  }
  DevdefNoReport silent;
  const int verdict = ReadLayout7Line(line, length, offset, def, silent);
  if (verdict == kDevdefLineAdded) {
    if (m_bCheckIds) RDF_CheckDuplicateId(def.m_DefID);
    DevdefAddReadDefinition(device, m_nKvrType, def);
  }
  return DevdefLineResult(verdict);
}

int KCDeviceDefCtrlV3::BuildList(CWordArray* pArray, const char** ppCursor) {
  DevdefNoReport silent;
  return ReadNumberList(pArray, ppCursor, silent, 0, nullptr);
}
