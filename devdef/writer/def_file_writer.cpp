// The walk that every writer shares, and the layout 1 definition line.
#include "devdef/catalogue/device_def_ctrl.h"
#include "devdef/writer/text_piece.h"

namespace {

// "KEYWORD " and the names joined by ", ", then the line's end.
CString HeaderLine(const char* pszKeyword, const CStringArray& names, const char* pszEnd) {
  CString line = pszKeyword;
  for (int i = 0; i < names.GetSize(); ++i) {
    if (i > 0) line += ", ";
    line += names[i];
  }
  line += pszEnd;
  return line;
}

}  // namespace

int KCDeviceDefCtrl::WriteDefFile(CArchive& ar) {
  return WDF_WriteCatalogue(ar, m_nLayout, &KCDeviceDefCtrl::WDF_WriteLayout1Line);
}

int KCDeviceDefCtrl::ConvertDefFileToVersion3(CArchive& /*ar*/) { return 0; }

int KCDeviceDefCtrl::WDF_WriteCatalogue(CArchive& ar, int nVersion, DefinitionLineWriter pfnLine) {
  CFile* file = ar.GetFile();
  if (file == nullptr) return 0;
  CString piece = "DEF_LAYOUT_VERSION = ";
  DevdefAppendInt(piece, nVersion);
  piece += " \r\n";
  DevdefWritePiece(*file, piece);
  DevdefWritePiece(*file, HeaderLine("HOUSING_LIST ", DEVICE_ITEM::m_PackageList, ";\r\n"));
  DevdefWritePiece(*file, HeaderLine("ADAPTER_LIST ", DEVICE_ITEM::m_AdapterList, ";\r\n"));
  DevdefWritePiece(*file, HeaderLine("MODUL_LIST ", DEVICE_ITEM::m_ModulList, ";\r\n\r\n"));

  CString line;  // the definition lines' buffer, reused from line to line
  POSITION posKind = m_DeviceList.GetHeadPosition();
  for (int k = 0; k < m_DeviceList.GetCount(); ++k) {
    TAG_KIND_OF_DEVICE& kind = m_DeviceList.GetNext(posKind);
    DevdefWritePiece(*file, kind.m_Name + ":\r\n\r\n");
    if (kind.m_pManufList == nullptr) continue;
    POSITION posManuf = kind.m_pManufList->GetHeadPosition();
    for (int m = 0; m < kind.m_pManufList->GetCount(); ++m) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(posManuf);
      DevdefWritePiece(*file, ":" + manuf.m_Name + "\r\n\r\n");
      if (manuf.m_pDeviceList == nullptr) continue;
      POSITION posDevice = manuf.m_pDeviceList->GetHeadPosition();
      for (int d = 0; d < manuf.m_pDeviceList->GetCount(); ++d) {
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(posDevice);
        line = device.m_DeviceName;
        line += "\r\n{\r\n";
        DevdefWritePiece(*file, line);
        // Hidden definitions are written like all others.
        for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
          if (!(this->*pfnLine)(*file, device.m_DefArray[i], line)) return 0;
        }
        DevdefWritePiece(*file, "}\r\n\r\n");
      }
    }
  }
  return 1;
}

bool KCDeviceDefCtrl::WDF_WriteLayout1Line(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine) {
  strLine.Empty();
  DevdefAppendLineStart(strLine, def);
  strLine += ' ';
  DevdefAppendInt(strLine, static_cast<int>(def.m_DefValues[2]));
  strLine += " : ";
  strLine += def.m_DefLine;
  strLine += "\r\n";
  DevdefWritePiece(file, strLine);
  return true;
}
