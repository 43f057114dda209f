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
// does. 1: the cursor moves behind the list; 0: it stays. kFields: each
// number is reported as an entry of nField, the head starting at pHead.
template <bool kFields>
int ReadNumberList(CWordArray* pArray, const char** ppCursor, DevdefLineReport* pReport, int nField,
                   const char* pHead) {
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
    if (kFields) pReport->Field(nField, pArray->GetSize() - 1, pHead, scan, false, static_cast<WORD>(number));
    numberRead = true;
    commaSeen = false;
    // On to the next blank or comma; the end of the text ends the search.
    while (*scan != '\0' && *scan != ' ' && *scan != ',') ++scan;
  }
}

// The field of the head at place field (0 to 14), as a DevdefDefinitionField
// and its index.
void FieldOf(int field, int* pField, int* pIndex) {
  static const int kFields[5] = {kDevdefFieldId, kDevdefFieldPackage, kDevdefFieldModule, kDevdefFieldAdapter,
                                 kDevdefFieldValue};
  *pField = kFields[field < 4 ? field : 4];
  *pIndex = field < 4 ? 0 : field - 4;
}

// Where a refusal at the head's field (0 to 14) stands; gives nVerdict.
int FailAt(DevdefLineReport& report, int nVerdict, int field, int nListIndex) {
  int kind = 0;
  int index = 0;
  FieldOf(field, &kind, &index);
  return report.Fail(nVerdict, kind, kFieldForms[field] == kNumberList ? nListIndex : index);
}

// Reads the fifteen fields of a layout 7 head into def. Gives the verdict;
// kFields: each field is reported.
template <bool kFields>
int ReadLayout7Fields(const CString& head, DEVICE_KVRXDEF_ITEM& def, DevdefLineReport& report) {
  const char* cursor = head;
  int value = 0;  // the next of the eleven values
  for (int field = 0; field < 15; ++field) {
    if (kFieldForms[field] == kNumberList) {
      CWordArray* list = field == 1 ? &def.m_PackageIds : &def.m_AdapterIds;
      if (!ReadNumberList<kFields>(list, &cursor, &report, field == 1 ? kDevdefFieldPackage : kDevdefFieldAdapter,
                                   head)) {
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
    if (kFields) {
      int kind = 0;
      int index = 0;
      FieldOf(field, &kind, &index);
      report.Field(kind, index, head, at, kFieldForms[field] == kHex, number);
    }
    if (field == 0) {
      def.m_DefID = number;
    } else if (field == 2) {
      def.m_ModulId = number;
    } else {
      def.m_DefValues[value++] = number;
    }
    if (field == 14) break;
    // On behind the next blank; the end of the head refuses the line.
    while (*cursor != ' ' && *cursor != '\0') ++cursor;
    if (*cursor == '\0') return FailAt(report, kDevdefLineNoBlank, field, 0);
    ++cursor;
  }
  return kDevdefLineAdded;
}

// The same, reporting each field: kept out of the reader, which calls it
// only while an observer asks for fields.
DEVDEF_READER_NOINLINE int ReadLayout7FieldsReported(const CString& head, DEVICE_KVRXDEF_ITEM& def, DevdefLineReport& report) {
  return ReadLayout7Fields<true>(head, def, report);
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

  DevdefLineReport report;
  if (DevdefDefinitionKeyword(line) == 0) {
    for (const char* keyword : kDroppedKeywords) {
      if (std::strncmp(line, keyword, std::strlen(keyword)) == 0) return report.Verdict(kDevdefLinePassedKeyword);
    }
    return report.Verdict(kDevdefLineNoKeyword);
  }
  // One head buffer per thread, reused line after line.
  static thread_local CString head;
  if (!DevdefSplitDefinitionLine(line, length, def, head, report, static_cast<int>(line - static_cast<LPCTSTR>(strLine)))) {
    return report.SplitRefused(line);
  }
  const int verdict =
      report.Fields() ? ReadLayout7FieldsReported(head, def, report) : ReadLayout7Fields<false>(head, def, report);
  if (verdict == kDevdefLineAdded) {
    if (m_bCheckIds) RDF_CheckDuplicateId(def.m_DefID);
    DevdefAddReadDefinition(device, m_nKvrType, def);
  }
  return report.Verdict(verdict);
}

int KCDeviceDefCtrlV3::BuildList(CWordArray* pArray, const char** ppCursor) {
  return ReadNumberList<false>(pArray, ppCursor, nullptr, 0, nullptr);
}
