// KCDeviceDefCtrlV3: the controller of a layout 7 catalogue.
#ifndef DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_
#define DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_

#include "devdef/platform/export.h"

#include "devdef/catalogue/device_def_ctrl_v2.h"

// The host's configuration content; the library only passes a pointer to it.
class cKvr5CfgContent;

class DEVDEF_API KCDeviceDefCtrlV3 : public KCDeviceDefCtrlV2 {
 public:
  // pCfgContent is not used.
  KCDeviceDefCtrlV3(CString strPath, int nKvrType, int bCheckIds, cKvr5CfgContent* pCfgContent);
  ~KCDeviceDefCtrlV3() override = default;

  // Writes the catalogue with the eleven-value definition line.
  int WriteDefFile(CArchive& ar) override;
  // Writes m_strPath + "k4devicelist.txt": every device with the adapters of
  // its generation 4 definitions. Failures of the file are swallowed.
  virtual void WriteK4DeviceList();

 protected:
  // Device blocks with "DEVICE_HOUSING_LIST:" lines.
  int RDF_ReadKvr3DefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                          unsigned char& cCurrent, int& nLineState) override;
  // "HOUSING_LIST" and "ADAPTER_LIST" in braces, "MODUL_LIST" on one line.
  int RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                        unsigned char& cCurrent, int& nLineState) override;
  // Reads a layout 7 definition line: marks, fifteen fields, dropped keywords.
  int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine) override;

  // Reads a number list "1, 2,,3" at *ppCursor into pArray. 1: the cursor
  // moves behind the list; 0: the cursor stays. Entries read stay either way.
  int BuildList(CWordArray* pArray, const char** ppCursor);
  // Reads a list in braces into pList, from pText, or from the read buffer at
  // m_nBufPos when pText is null. 1 when the list opened, closed and stored
  // at least one entry.
  int RDF_BuildList(CStringArray* pList, CByteArray* pText);

 private:
  bool WDF_WriteLayout7Line(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine);
  // One line of a device block: a housing line or a definition line.
  int RDF_ReadBlockLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine);
};

#endif  // DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_
