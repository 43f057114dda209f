// The layout 7 writer: the shared walk with the eleven-value line.
#include "devdef/catalogue/device_def_ctrl_v3.h"
#include "devdef/writer/text_piece.h"

int KCDeviceDefCtrlV3::WriteDefFile(CArchive& ar) {
  return WDF_WriteCatalogue(ar, m_nLayout, static_cast<DefinitionLineWriter>(&KCDeviceDefCtrlV3::WDF_WriteLayout7Line));
}

bool KCDeviceDefCtrlV3::WDF_WriteLayout7Line(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine) {
  strLine.Empty();
  DevdefAppendLineStart(strLine, def);
  // The eleven values with a blank in front of each: values 4, 5 and 8 in
  // hexadecimal, two blanks in front of value 10.
  for (int i = 0; i < 11; ++i) {
    strLine += i == 10 ? "  " : " ";
    const DWORD value = def.m_DefValues[i];
    if (i == 4 || i == 5 || i == 8) {
      DevdefAppendHex(strLine, value);
    } else {
      DevdefAppendInt(strLine, static_cast<int>(value));
    }
  }
  strLine += " : ";
  strLine += def.m_DefLine;
  strLine += "\r\n";
  DevdefWritePiece(file, strLine);
  return true;
}
