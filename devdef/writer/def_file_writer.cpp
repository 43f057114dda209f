// The walk that every writer shares, and the layout 1 definition line.
#include "devdef/catalogue/device_def_ctrl.h"
#include "devdef/writer/block_file.h"
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

// The version line, the header lists and the tree, each definition line
// through writeLine(file, def, line). 1 when all was written, 0 when
// writeLine stopped.
template <class LineWriter>
int WriteTree(CFile& file, int nVersion, CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds,
              LineWriter writeLine) {
  CString piece = "DEF_LAYOUT_VERSION = ";
  DevdefAppendInt(piece, nVersion);
  piece += " \r\n";
  DevdefWritePiece(file, piece);
  DevdefWritePiece(file, HeaderLine("HOUSING_LIST ", DEVICE_ITEM::m_PackageList, ";\r\n"));
  DevdefWritePiece(file, HeaderLine("ADAPTER_LIST ", DEVICE_ITEM::m_AdapterList, ";\r\n"));
  DevdefWritePiece(file, HeaderLine("MODUL_LIST ", DEVICE_ITEM::m_ModulList, ";\r\n\r\n"));

  CString line;  // the definition lines' buffer, reused from line to line
  POSITION posKind = kinds.GetHeadPosition();
  for (int k = 0; k < kinds.GetCount(); ++k) {
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(posKind);
    DevdefWritePiece(file, kind.m_Name + ":\r\n\r\n");
    if (kind.m_pManufList == nullptr) continue;
    POSITION posManuf = kind.m_pManufList->GetHeadPosition();
    for (int m = 0; m < kind.m_pManufList->GetCount(); ++m) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(posManuf);
      DevdefWritePiece(file, ":" + manuf.m_Name + "\r\n\r\n");
      if (manuf.m_pDeviceList == nullptr) continue;
      POSITION posDevice = manuf.m_pDeviceList->GetHeadPosition();
      for (int d = 0; d < manuf.m_pDeviceList->GetCount(); ++d) {
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(posDevice);
        line = device.m_DeviceName;
        line += "\r\n{\r\n";
        DevdefWritePiece(file, line);
        // Hidden definitions are written like all others.
        for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
          if (!writeLine(file, device.m_DefArray[i], line)) return 0;
        }
        DevdefWritePiece(file, "}\r\n\r\n");
      }
    }
  }
  return 1;
}

}  // namespace

int KCDeviceDefCtrl::WriteDefFile(CArchive& ar) {
  return WDF_WriteCatalogue(ar, m_nLayout, &KCDeviceDefCtrl::WDF_WriteLayout1Line);
}

int KCDeviceDefCtrl::ConvertDefFileToVersion3(CArchive& /*ar*/) { return 0; }

int KCDeviceDefCtrl::WDF_WriteCatalogue(CArchive& ar, int nVersion, DefinitionLineWriter pfnLine) {
  CFile* file = ar.GetFile();
  if (file == nullptr) return 0;
  auto writeLine = [this, pfnLine](CFile& out, DEVICE_KVRXDEF_ITEM& def, CString& line) {
    return (this->*pfnLine)(out, def, line);
  };
  if (!DevdefBlockFile::Gathers(*file)) return WriteTree(*file, nVersion, m_DeviceList, writeLine);
  // Every piece is still one write, on the block file; the blocks reach the
  // file before the operation ends, however it ends, so that what was
  // written before a failure is in the file when the exception leaves here.
  DevdefBlockFile blocks(*file);
  int result = 0;
  try {
    result = WriteTree(blocks, nVersion, m_DeviceList, writeLine);
  } catch (...) {
    blocks.WritePending();
    throw;
  }
  blocks.WritePending();
  return result;
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
