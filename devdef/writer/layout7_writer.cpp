// The layout 7 writer: the shared walk with the eleven-value line.
#include "devdef/catalogue/device_def_ctrl_v3.h"
#include "devdef/writer/text_piece.h"

int KCDeviceDefCtrlV3::WriteDefFile(CArchive& ar) {
  return WDF_WriteCatalogue(ar, m_nLayout, static_cast<DefinitionLineWriter>(&KCDeviceDefCtrlV3::WDF_WriteLayout7Line));
}

bool KCDeviceDefCtrlV3::WDF_WriteLayout7Line(CFile& file, DEVICE_KVRXDEF_ITEM& def) {
  const DWORD* v = def.m_DefValues;
  CString line;
  DevdefAppendLineStart(line, def);
  // Values 4, 5 and 8 in hexadecimal; two blanks in front of value 10.
  line.AppendFormat(" %d %d %d %d %X %X %d %d %X %d  %d : ", static_cast<int>(v[0]), static_cast<int>(v[1]),
                    static_cast<int>(v[2]), static_cast<int>(v[3]), v[4], v[5], static_cast<int>(v[6]),
                    static_cast<int>(v[7]), v[8], static_cast<int>(v[9]), static_cast<int>(v[10]));
  line += def.m_DefLine;
  line += "\r\n";
  DevdefWritePiece(file, line);
  return true;
}
