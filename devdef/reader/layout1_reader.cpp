// The layout 1 definition line reader and the one-line header list reader of
// layouts 1 and 2.
#include "devdef/catalogue/device_def_ctrl.h"
#include "devdef/platform/crt.h"
#include "devdef/reader/definition_head.h"

int KCDeviceDefCtrl::RDF_ReadKvrXDefLine(POSITION /*posKind*/, POSITION /*posManuf*/, POSITION posDevice,
                                         const CString& strLine) {
  DEVICE_KVRXDEF_ITEM def;
  // One head buffer per thread, reused line after line.
  static thread_local CString head;
  if (!DevdefSplitDefinitionLine(strLine, strLine.GetLength(), def, head)) return 0;
  const char* text = head;

  int number = 0;
  if (DevdefScanDecimal(text, &number) != 1) return 0;
  def.m_DefID = static_cast<DWORD>(number);

  int blank = head.Find(' ');
  if (blank < 0) return 0;
  int field = blank + 1;
  int package = 0;
  if (DevdefScanDecimal(text + field, &package) != 1) return 0;
  blank = head.Find(' ', field);
  if (blank < 0) return 0;
  def.m_PackageIds.SetAtGrow(def.m_PackageIds.GetSize(), static_cast<WORD>(package));

  field = blank + 1;
  if (DevdefScanDecimal(text + field, &number) != 1) return 0;
  def.m_ModulId = static_cast<DWORD>(number);
  blank = head.Find(' ', field);
  if (blank < 0) return 0;

  // The adapter list: numbers joined by ",". The comma is searched through
  // the whole rest of the head.
  int cursor = blank + 1;
  for (;;) {
    if (DevdefScanDecimal(text + cursor, &number) != 1) return 0;
    def.m_AdapterIds.SetAtGrow(def.m_AdapterIds.GetSize(), static_cast<WORD>(number));
    const int comma = head.Find(',', cursor);
    if (comma < 0) break;
    cursor = comma + 1;
  }

  // With no blank behind the adapters the line is accepted without a
  // definition.
  blank = head.Find(' ', cursor);
  if (blank < 0) return 1;
  if (DevdefScanDecimal(text + blank + 1, &number) != 1) return 0;
  def.m_DefValues[2] = static_cast<DWORD>(number);

  if (m_bCheckIds) RDF_CheckDuplicateId(def.m_DefID);
  DevdefAddReadDefinition(CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice), m_nKvrType, def);
  return 1;
}

int KCDeviceDefCtrl::RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                       unsigned char& cCurrent, int& nLineState) {
  if (!strToken.IsEmpty() || posKind != nullptr || posManuf != nullptr || posDevice != nullptr) return 0;
  const DWORD savedPos = m_nBufPos;
  const unsigned char savedCurrent = cCurrent;
  const BYTE* buffer = m_FileBuf.GetData();
  int itemStart = -1;
  CStringArray* target = nullptr;
  for (;;) {
    if (m_nBufPos >= m_nBufSize) return 0;
    cCurrent = buffer[m_nBufPos];
    if (cCurrent == ' ' || cCurrent == ',' || cCurrent == ';') {
      if (itemStart == -1) {
        target = DevdefHeaderList(strToken);
        if (target == nullptr) break;
      } else {
        DevdefAppendListPiece(target, strToken, itemStart);
      }
      itemStart = strToken.GetLength() + 1;
    }
    if (cCurrent == '\n' || cCurrent == '\r') {
      if (target == nullptr) break;
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
