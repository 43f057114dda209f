// The layout 2 definition line reader: the layout 1 line with three values
// in front of the colon.
#include "devdef/catalogue/device_def_ctrl_v2.h"
#include "devdef/platform/crt.h"
#include "devdef/reader/definition_head.h"

int KCDeviceDefCtrlV2::RDF_ReadKvrXDefLine(POSITION /*posKind*/, POSITION /*posManuf*/, POSITION posDevice,
                                           const CString& strLine) {
  DEVICE_KVRXDEF_ITEM def;
  // One head buffer per thread, reused line after line.
  static thread_local CString head;
  if (!DevdefSplitDefinitionLine(strLine, strLine.GetLength(), def, head)) return 0;
  const char* text = head;

  // Id, package and module, each with a blank behind it.
  int fields[3] = {0, 0, 0};
  int cursor = 0;
  for (int& field : fields) {
    if (DevdefScanDecimal(text + cursor, &field) != 1) return 0;
    const int blank = head.Find(' ', cursor);
    if (blank < 0) return 0;
    cursor = blank + 1;
  }
  def.m_DefID = static_cast<DWORD>(fields[0]);
  def.m_PackageIds.SetAtGrow(def.m_PackageIds.GetSize(), static_cast<WORD>(fields[1]));
  def.m_ModulId = static_cast<DWORD>(fields[2]);

  // The adapter list; the comma is searched through the whole rest of the head.
  int number = 0;
  for (;;) {
    if (DevdefScanDecimal(text + cursor, &number) != 1) return 0;
    def.m_AdapterIds.SetAtGrow(def.m_AdapterIds.GetSize(), static_cast<WORD>(number));
    const int comma = head.Find(',', cursor);
    if (comma < 0) break;
    cursor = comma + 1;
  }

  // With no blank behind the adapters the line is accepted without a
  // definition (the short form).
  int blank = head.Find(' ', cursor);
  if (blank < 0) return 1;
  for (int value = 0; value < 3; ++value) {
    cursor = blank + 1;
    if (DevdefScanDecimal(text + cursor, &number) != 1) return 0;
    def.m_DefValues[value] = static_cast<DWORD>(number);
    if (value == 2) break;
    blank = head.Find(' ', cursor);
    if (blank < 0) return 0;
  }

  if (m_bCheckIds) RDF_CheckDuplicateId(def.m_DefID);
  DevdefAddReadDefinition(CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice), m_nKvrType, def);
  return 1;
}
