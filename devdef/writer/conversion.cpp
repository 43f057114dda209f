// The conversion of a layout 2 catalogue to the eleven-value lines of
// layout 3: seven numbers at the start of each text move into the line.
#include "devdef/catalogue/device_def_ctrl_v2.h"
#include "devdef/writer/format_scanner.h"
#include "devdef/writer/text_piece.h"

int KCDeviceDefCtrlV2::ConvertDefFileToVersion3(CArchive& ar) {
  return WDF_WriteCatalogue(ar, 3, static_cast<DefinitionLineWriter>(&KCDeviceDefCtrlV2::WDF_WriteConvertedLine));
}

bool KCDeviceDefCtrlV2::WDF_WriteConvertedLine(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine) {
  strLine.Empty();
  DevdefAppendLineStart(strLine, def);
  for (int i = 0; i < 3; ++i) {
    strLine += ' ';
    DevdefAppendInt(strLine, static_cast<int>(def.m_DefValues[i]));
  }
  strLine += ' ';
  // The line so far is written before the scan, so a failed scan leaves it
  // in the file without a line end.
  DevdefWritePiece(file, strLine);

  // The scan only reads the text: the catalogue's text stays as it is.
  const CString& text = def.m_DefLine;
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

  // " %d %d %X %d %d %X %d %d : " over the seven fields and a 0.
  strLine.Empty();
  const unsigned fields[8] = {field1, field2, field3, field4, field5, field6, field7, 0};
  for (int i = 0; i < 8; ++i) {
    strLine += ' ';
    if (i == 2 || i == 5) {
      DevdefAppendHex(strLine, fields[i]);
    } else {
      DevdefAppendInt(strLine, static_cast<int>(fields[i]));
    }
  }
  strLine += " : ";
  // The rest runs to the end of the text, whatever bytes it holds.
  const int restStart = static_cast<int>(rest - static_cast<LPCTSTR>(text));
  strLine.Append(static_cast<LPCTSTR>(text) + restStart, text.GetLength() - restStart);
  strLine += "\r\n";
  DevdefWritePiece(file, strLine);
  return true;
}
