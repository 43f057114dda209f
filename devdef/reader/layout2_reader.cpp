// The layout 2 definition line reader: the layout 1 line with three values
// in front of the colon.
#include "devdef/catalogue/device_def_ctrl_v2.h"
#include "devdef/platform/crt.h"
#include "devdef/reader/definition_head.h"

namespace {

// Reads the number fields of a layout 2 head into def: id, package and
// module, adapters joined by ",", then three values, each reported to
// report. Gives the verdict.
template <class Report>
int ReadLayout2Fields(const CString& head, DEVICE_KVRXDEF_ITEM& def, Report& report) {
  const char* text = head;
  // Id, package and module, each with a blank behind it.
  static const int kFirstFields[3] = {kDevdefFieldId, kDevdefFieldPackage, kDevdefFieldModule};
  int fields[3] = {0, 0, 0};
  int cursor = 0;
  for (int i = 0; i < 3; ++i) {
    if (DevdefScanDecimal(text + cursor, &fields[i]) != 1) return report.Fail(kDevdefLineNoNumber, kFirstFields[i], 0);
    report.Field(kFirstFields[i], 0, text, text + cursor, false,
                 i == 1 ? static_cast<WORD>(fields[i]) : static_cast<DWORD>(fields[i]));
    const int blank = head.Find(' ', cursor);
    if (blank < 0) return report.Fail(kDevdefLineNoBlank, kFirstFields[i], 0);
    cursor = blank + 1;
  }
  def.m_DefID = static_cast<DWORD>(fields[0]);
  def.m_PackageIds.SetAtGrow(def.m_PackageIds.GetSize(), static_cast<WORD>(fields[1]));
  def.m_ModulId = static_cast<DWORD>(fields[2]);

  // The adapter list; the comma is searched through the whole rest of the head.
  int number = 0;
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
  // definition (the short form).
  int blank = head.Find(' ', cursor);
  if (blank < 0) return kDevdefLineNoDefinition;
  for (int value = 0; value < 3; ++value) {
    cursor = blank + 1;
    if (DevdefScanDecimal(text + cursor, &number) != 1)
      return report.Fail(kDevdefLineNoNumber, kDevdefFieldValue, value);
    def.m_DefValues[value] = static_cast<DWORD>(number);
    report.Field(kDevdefFieldValue, value, text, text + cursor, false, def.m_DefValues[value]);
    if (value == 2) break;
    blank = head.Find(' ', cursor);
    if (blank < 0) return report.Fail(kDevdefLineNoBlank, kDevdefFieldValue, value);
  }
  return kDevdefLineAdded;
}

}  // namespace

int KCDeviceDefCtrlV2::RDF_ReadKvrXDefLine(POSITION /*posKind*/, POSITION /*posManuf*/, POSITION posDevice,
                                           const CString& strLine) {
  DEVICE_KVRXDEF_ITEM def;
  return DevdefReadSplitLine(
      strLine, def,
      [](const CString& head, DEVICE_KVRXDEF_ITEM& read, auto& report) {
        return ReadLayout2Fields(head, read, report);
      },
      [&] {
        if (m_bCheckIds) RDF_CheckDuplicateId(def.m_DefID);
        DevdefAddReadDefinition(CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice), m_nKvrType, def);
      });
}
