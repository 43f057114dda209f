#include "devdef/writer/text_piece.h"

void DevdefWritePiece(CFile& file, const CString& strPiece) {
  if (strPiece.IsEmpty()) return;
  file.Write(static_cast<LPCTSTR>(strPiece), static_cast<UINT>(strPiece.GetLength()));
}

void DevdefAppendLineStart(CString& strLine, DEVICE_KVRXDEF_ITEM& def) {
  switch (def.m_KvrType) {
    case 3: strLine += "KVR3DEF: "; break;
    case 4: strLine += "KVR4DEF: "; break;
    case 5: strLine += "KVR5DEF: "; break;
    default: break;
  }
  // A definition without a package number can only come from a host; it is
  // written with package 0 so that the line keeps its columns.
  const unsigned package = def.m_PackageIds.GetSize() > 0 ? def.m_PackageIds[0] : 0u;
  strLine.AppendFormat("%d %u %d ", static_cast<int>(def.m_DefID), package, static_cast<int>(def.m_ModulId));
  for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
    strLine.AppendFormat(i == 0 ? "%u" : ",%u", static_cast<unsigned>(def.m_AdapterIds[i]));
  }
}
