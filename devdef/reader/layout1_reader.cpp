// The layout 1 definition line reader and the one-line header list reader of
// layouts 1 and 2.
#include "devdef/catalogue/device_def_ctrl.h"
#include "devdef/platform/crt.h"
#include "devdef/reader/definition_head.h"

namespace {

// Reads the number fields of a layout 1 head into def: id, package, module,
// adapters joined by ",", then a value, each reported to report. Gives the
// verdict.
template <class Report>
int ReadLayout1Fields(const CString& head, DEVICE_KVRXDEF_ITEM& def, Report& report) {
  const char* text = head;
  int number = 0;
  if (DevdefScanDecimal(text, &number) != 1) return report.Fail(kDevdefLineNoNumber, kDevdefFieldId, 0);
  def.m_DefID = static_cast<DWORD>(number);
  report.Field(kDevdefFieldId, 0, text, text, false, def.m_DefID);

  int blank = head.Find(' ');
  if (blank < 0) return report.Fail(kDevdefLineNoBlank, kDevdefFieldId, 0);
  int field = blank + 1;
  int package = 0;
  if (DevdefScanDecimal(text + field, &package) != 1) return report.Fail(kDevdefLineNoNumber, kDevdefFieldPackage, 0);
  blank = head.Find(' ', field);
  if (blank < 0) return report.Fail(kDevdefLineNoBlank, kDevdefFieldPackage, 0);
  def.m_PackageIds.SetAtGrow(def.m_PackageIds.GetSize(), static_cast<WORD>(package));
  report.Field(kDevdefFieldPackage, 0, text, text + field, false, static_cast<WORD>(package));

  field = blank + 1;
  if (DevdefScanDecimal(text + field, &number) != 1) return report.Fail(kDevdefLineNoNumber, kDevdefFieldModule, 0);
  def.m_ModulId = static_cast<DWORD>(number);
  report.Field(kDevdefFieldModule, 0, text, text + field, false, def.m_ModulId);
  blank = head.Find(' ', field);
  if (blank < 0) return report.Fail(kDevdefLineNoBlank, kDevdefFieldModule, 0);

  // The adapter list: numbers joined by ",". The comma is searched through
  // the whole rest of the head.
  int cursor = blank + 1;
  for (;;) {
    if (DevdefScanDecimal(text + cursor, &number) != 1) {
      return report.Fail(kDevdefLineNoNumber, kDevdefFieldAdapter, def.m_AdapterIds.GetSize());
    }
    def.m_AdapterIds.SetAtGrow(def.m_AdapterIds.GetSize(), static_cast<WORD>(number));
    report.Field(kDevdefFieldAdapter, def.m_AdapterIds.GetSize() - 1, text, text + cursor, false,
                 static_cast<WORD>(number));
    const int comma = head.Find(',', cursor);
    if (comma < 0) break;
    cursor = comma + 1;
  }

  // With no blank behind the adapters the line is accepted without a
  // definition.
  blank = head.Find(' ', cursor);
  if (blank < 0) return kDevdefLineNoDefinition;
  if (DevdefScanDecimal(text + blank + 1, &number) != 1) return report.Fail(kDevdefLineNoNumber, kDevdefFieldValue, 2);
  def.m_DefValues[2] = static_cast<DWORD>(number);
  report.Field(kDevdefFieldValue, 2, text, text + blank + 1, false, def.m_DefValues[2]);
  return kDevdefLineAdded;
}

}  // namespace

int KCDeviceDefCtrl::RDF_ReadKvrXDefLine(POSITION /*posKind*/, POSITION /*posManuf*/, POSITION posDevice,
                                         const CString& strLine) {
  DEVICE_KVRXDEF_ITEM def;
  return DevdefReadSplitLine(
      strLine, def,
      [](const CString& head, DEVICE_KVRXDEF_ITEM& read, auto& report) {
        return ReadLayout1Fields(head, read, report);
      },
      [&] {
        if (m_bCheckIds) RDF_CheckDuplicateId(def.m_DefID);
        DevdefAddReadDefinition(CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice), m_nKvrType, def);
      });
}

int KCDeviceDefCtrl::RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                       unsigned char& cCurrent, int& nLineState) {
  if (!strToken.IsEmpty() || posKind != nullptr || posManuf != nullptr || posDevice != nullptr) return 0;
  const DWORD savedPos = m_nBufPos;
  const unsigned char savedCurrent = cCurrent;
  const BYTE* buffer = m_FileBuf.GetData();
  int itemStart = -1;
  CStringArray* target = nullptr;
  DevdefReadObserver* observer = nullptr;
  int list = 0;
  for (;;) {
    if (m_nBufPos >= m_nBufSize) return 0;
    cCurrent = buffer[m_nBufPos];
    if (cCurrent == ' ' || cCurrent == ',' || cCurrent == ';') {
      if (itemStart == -1) {
        target = DevdefHeaderList(strToken);
        if (target == nullptr) break;
        observer = DevdefActiveReadObserver();
        list = DevdefListName(target);
        if (observer != nullptr) observer->ListKeyword(list, savedPos, m_nBufPos);
      } else {
        DevdefAppendListPiece(target, strToken, itemStart, observer, list, savedPos);
      }
      itemStart = strToken.GetLength() + 1;
    }
    if (cCurrent == '\n' || cCurrent == '\r') {
      if (target == nullptr) break;
      // The piece behind the last delimiter is not stored.
      if (observer != nullptr) DevdefAppendListPiece(nullptr, strToken, itemStart, observer, list, savedPos);
      --m_nBufPos;
      nLineState = 2;
      return 1;
    }
    strToken += cCurrent;
    ++m_nBufPos;
  }
  m_nBufPos = savedPos;
  cCurrent = savedCurrent;
  strToken.Empty();
  return 0;
}
