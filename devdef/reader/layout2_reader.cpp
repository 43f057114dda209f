// The layout 2 definition line reader: the layout 1 line with three values
// in front of the colon.
#include "devdef/catalogue/device_def_ctrl_v2.h"
#include "devdef/platform/crt.h"
#include "devdef/reader/definition_head.h"

int KCDeviceDefCtrlV2::RDF_ReadKvrXDefLine(POSITION /*posKind*/, POSITION /*posManuf*/, POSITION posDevice,
                                           const CString& strLine) {
  DEVICE_KVRXDEF_ITEM def;
  DevdefLineReport report;
  // One head buffer per thread, reused line after line.
  static thread_local CString head;
  if (!DevdefSplitDefinitionLine(strLine, strLine.GetLength(), def, head, report.Sources(strLine.GetLength(), 0))) {
    return report.SplitRefused(strLine);
  }
  const char* text = head;

  // Id, package and module, each with a blank behind it.
  static const int kFirstFields[3] = {kDevdefFieldId, kDevdefFieldPackage, kDevdefFieldModule};
  int fields[3] = {0, 0, 0};
  int cursor = 0;
  for (int i = 0; i < 3; ++i) {
    if (DevdefScanDecimal(text + cursor, &fields[i]) != 1) return report.Verdict(kDevdefLineNoNumber, kFirstFields[i], 0);
    report.Field(kFirstFields[i], 0, text, text + cursor, false,
                 i == 1 ? static_cast<WORD>(fields[i]) : static_cast<DWORD>(fields[i]));
    const int blank = head.Find(' ', cursor);
    if (blank < 0) return report.Verdict(kDevdefLineNoBlank, kFirstFields[i], 0);
    cursor = blank + 1;
  }
  def.m_DefID = static_cast<DWORD>(fields[0]);
  def.m_PackageIds.SetAtGrow(def.m_PackageIds.GetSize(), static_cast<WORD>(fields[1]));
  def.m_ModulId = static_cast<DWORD>(fields[2]);

  // The adapter list; the comma is searched through the whole rest of the head.
  int number = 0;
  for (int adapter = 0;; ++adapter) {
    if (DevdefScanDecimal(text + cursor, &number) != 1) {
      return report.Verdict(kDevdefLineNoNumber, kDevdefFieldAdapter, adapter);
    }
    def.m_AdapterIds.SetAtGrow(def.m_AdapterIds.GetSize(), static_cast<WORD>(number));
    report.Field(kDevdefFieldAdapter, adapter, text, text + cursor, false, static_cast<WORD>(number));
    const int comma = head.Find(',', cursor);
    if (comma < 0) break;
    cursor = comma + 1;
  }

  // With no blank behind the adapters the line is accepted without a
  // definition (the short form).
  int blank = head.Find(' ', cursor);
  if (blank < 0) return report.Verdict(kDevdefLineNoDefinition);
  for (int value = 0; value < 3; ++value) {
    cursor = blank + 1;
    if (DevdefScanDecimal(text + cursor, &number) != 1) return report.Verdict(kDevdefLineNoNumber, kDevdefFieldValue, value);
    def.m_DefValues[value] = static_cast<DWORD>(number);
    report.Field(kDevdefFieldValue, value, text, text + cursor, false, def.m_DefValues[value]);
    if (value == 2) break;
    blank = head.Find(' ', cursor);
    if (blank < 0) return report.Verdict(kDevdefLineNoBlank, kDevdefFieldValue, value);
  }

  if (m_bCheckIds) RDF_CheckDuplicateId(def.m_DefID);
  DevdefAddReadDefinition(CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice), m_nKvrType, def);
  return report.Verdict(kDevdefLineAdded);
}
