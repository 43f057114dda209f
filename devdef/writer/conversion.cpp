// The conversion of a layout 2 catalogue to the eleven-value lines of
// layout 3: seven numbers at the start of each text move into the line.
#include "devdef/catalogue/device_def_ctrl_v2.h"
#include "devdef/writer/format_scanner.h"
#include "devdef/writer/text_piece.h"

int KCDeviceDefCtrlV2::ConvertDefFileToVersion3(CArchive& ar) {
  return WDF_WriteCatalogue(ar, 3, static_cast<DefinitionLineWriter>(&KCDeviceDefCtrlV2::WDF_WriteConvertedLine));
}

bool KCDeviceDefCtrlV2::WDF_WriteConvertedLine(CFile& file, DEVICE_KVRXDEF_ITEM& def) {
  CString line;
  DevdefAppendLineStart(line, def);
  line.AppendFormat(" %d %d %d ", static_cast<int>(def.m_DefValues[0]), static_cast<int>(def.m_DefValues[1]),
                    static_cast<int>(def.m_DefValues[2]));
  // The line so far is written before the scan, so a failed scan leaves it
  // in the file without a line end.
  DevdefWritePiece(file, line);

  // The scan works on a copy: the catalogue's text stays as it is.
  const CString text = def.m_DefLine;
  DWORD field1 = 0;
  WORD field2 = 0;
  WORD field3 = 0;
  WORD field4 = 0;
  WORD field5 = 0;
  DWORD field6 = 0;
  WORD field7 = 0;
  unsigned short count = 0;
  const char* rest = ScanFormatted(&count, text, "%uld %ud %ud %ud %ud %ulx %ud", &field1, &field2, &field3, &field4,
                                   &field5, &field6, &field7);
  if (count != 7 || rest == nullptr) return false;

  line.Format(" %d %d %X %d %d %X %d %d : ", static_cast<int>(field1), field2, field3, field4, field5, field6, field7,
              0);
  // The rest runs to the end of the text, whatever bytes it holds.
  const int restStart = static_cast<int>(rest - static_cast<LPCTSTR>(text));
  line += text.Mid(restStart);
  line += "\r\n";
  DevdefWritePiece(file, line);
  return true;
}
