/// \file
/// KCDeviceDefCtrlV3: the controller of a layout 7 catalogue.
#ifndef DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_
#define DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_

#include "devdef/platform/export.h"

#include "devdef/catalogue/device_def_ctrl_v2.h"

// The host's configuration content; the library only passes a pointer to it.
class cKvr5CfgContent;

/// The controller of a layout 7 definition file ("DEF_LAYOUT_VERSION = 7"): eleven-value definition lines with
/// marks and number lists, header lists in braces, housing lines in device blocks; its own writer, and the device
/// list export.
///
/// It reads only layout 7 files. ConvertDefFileToVersion3 is KCDeviceDefCtrlV2's and treats the texts of a layout 7
/// catalogue in the same way.
class DEVDEF_API KCDeviceDefCtrlV3 : public KCDeviceDefCtrlV2 {
 public:
  /// Builds a layout 7 controller; the first three arguments are those of KCDeviceDefCtrl::KCDeviceDefCtrl,
  /// pCfgContent is not used.
  KCDeviceDefCtrlV3(CString strPath, int nKvrType, int bCheckIds, cKvr5CfgContent* pCfgContent);
  ~KCDeviceDefCtrlV3() override = default;

  /// Writes the catalogue and the name lists as layout 7 text, with the eleven-value definition line, to ar's file.
  ///
  /// As KCDeviceDefCtrl::WriteDefFile, with the same result and exceptions (CFileException* passes to the caller).
  /// The header lists go out on one line each, not in braces, and housing lines are not written, so the text does
  /// not read back into a KCDeviceDefCtrlV3. Only the first package number of each definition is written; values
  /// 4, 5 and 8 go out in hexadecimal, value 10 in decimal.
  int WriteDefFile(CArchive& ar) override;
  /// Writes the text file m_strPath + "k4devicelist.txt" (no separator added; an existing file is emptied):
  /// a banner line, then every device in walk order as "number:", a tab and its name, numbered from 1, each followed
  /// by the names of the adapters of its generation 4 definitions (hidden ones too), one a line behind two tabs.
  ///
  /// CFileException* and CArchiveException* are caught and deleted here, so the host cannot learn of a failure;
  /// the file then holds what reached it. The catalogue is not changed.
  virtual void WriteK4DeviceList();

 protected:
  /// Reads a device block as KCDeviceDefCtrl::RDF_ReadKvr3DefLine does, with the same results, and also takes
  /// "DEVICE_HOUSING_LIST:" lines: the numbers of their list in braces are appended to DEVICE_ITEM::m_HousingIds.
  int RDF_ReadKvr3DefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                          unsigned char& cCurrent, int& nLineState) override;
  /// Reads a header list as KCDeviceDefCtrl::RDF_ReadListsInfo does, but "HOUSING_LIST" and "ADAPTER_LIST" are
  /// lists in braces, which may span lines (read by RDF_BuildList, whose result it returns); "MODUL_LIST" stays on
  /// one line, with "{" as one more delimiter.
  /// \return 1 a list was read; 0 not (also for a list in braces without any entry).
  int RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                        unsigned char& cCurrent, int& nLineState) override;
  /// Reads a layout 7 definition line: an optional mark byte (0xB0 or 0xDF, into m_MarkFlags, which starts as the
  /// device's m_DeviceFlags), the keyword, id, package list, module, adapter list and eleven values (values 4, 5, 8
  /// and 10 in hexadecimal).
  ///
  /// Lines of the keywords "KVR5M_DEF:", "KVR5D_DEF:", "KVR5P_DEF:" and their "_ORIGIN" forms are accepted and
  /// dropped. Called and answering as KCDeviceDefCtrl::RDF_ReadKvrXDefLine; a line without all fields is refused.
  int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine) override;

  /// Reads a number list "1, 2,,3" at *ppCursor into pArray. 1: the cursor
  /// moves behind the list; 0: the cursor stays. Entries read stay either way.
  int BuildList(CWordArray* pArray, const char** ppCursor);
  /// Reads a list in braces into pList, from pText, or from the read buffer at
  /// m_nBufPos when pText is null (m_nBufPos then moves to the "}" or the end). 1 when the list opened, closed and
  /// stored at least one entry; entries stored before a 0 stay.
  int RDF_BuildList(CStringArray* pList, CByteArray* pText);

 private:
  bool WDF_WriteLayout7Line(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine);
  // One line of a device block: a housing line or a definition line.
  int RDF_ReadBlockLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine);
};

#endif  // DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_
