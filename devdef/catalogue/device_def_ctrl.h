// KCDeviceDefCtrl: the controller of a layout 1 catalogue. It owns the
// catalogue, the found and selected lists and the read buffer, and holds
// nearly all the code; the controllers of the other layouts derive from it.
#ifndef DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_H_
#define DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_H_

#include "devdef/platform/export.h"

#include <memory>

#include "devdef/catalogue/abstract_ctrl.h"
#include "devdef/catalogue/catalogue_tags.h"
#include "devdef/catalogue/definition_item.h"
#include "devdef/catalogue/device_item.h"
#include "devdef/platform/carchive.h"
#include "devdef/platform/cfile.h"
#include "devdef/platform/clist.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/typed_arrays.h"
#include "devdef/platform/types.h"

class DevdefIdIndex;

class DEVDEF_API KCDeviceDefCtrl : public cAbstractDeviceDefCtrl {
 public:
  KCDeviceDefCtrl(CString strPath, int nKvrType, int bCheckIds);
  ~KCDeviceDefCtrl() override;
  KCDeviceDefCtrl(const KCDeviceDefCtrl&) = delete;
  KCDeviceDefCtrl& operator=(const KCDeviceDefCtrl&) = delete;

  // Reads a definition file of this class's layout into the catalogue.
  // 1: read to its end; 0: the file cannot be read or is of another layout.
  int ReadDefFile(CString strFile, bool bReportError) override;
  int FindDeviceItem(int nId, POSITION* pKindPos, POSITION* pManufPos, POSITION* pDevicePos, int* pIndex,
                     DEVICE_ITEM** ppDevice, DEVICE_KVRXDEF_ITEM** ppDef) override;
  int FindDeviceItem(_TREEITEM* hTree, POSITION& kindPos, POSITION& manufPos, POSITION& devicePos,
                     int* pIndex) override;
  // Finding by name is not supported: always 0, nothing changed.
  int FindDeviceItem(const CString& strName, DEVICE_KVRXDEF_ITEM& def) override;
  DEVICE_ITEM* GetDeviceItem(POSITION kindPos, POSITION manufPos, POSITION devicePos) override;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& getDeviceList() override { return m_DeviceList; }
  CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& getSelectedDeviceList() override { return m_SelectedList; }
  CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& getFoundDeviceList() override { return m_FoundList; }
  _TREEITEM* SetSelectedDeviceList(int nId, int& bAlreadySelected) override;
  int FoundDeviceList_addItem(DEVICE_KVRXDEF_ITEM def) override;
  void FoundDeviceList_clear() override;
  void InitSelectedDeviceList(int nCount, int* pIds) override;
  int getNextDeviceID() override { return static_cast<int>(m_nNextDeviceID); }
  // A layout 1 catalogue cannot be converted: always 0, nothing written.
  virtual int ConvertDefFileToVersion3(CArchive& ar);
  // Writes the catalogue as definition file text to the archive's file.
  // 1: all written; 0: the archive has no file. A failed write throws
  // CFileException* to the caller.
  virtual int WriteDefFile(CArchive& ar);

  // Empties the catalogue, the read buffer, the three class-wide name lists
  // (for every controller of the process) and the found and selected lists.
  void RemoveDefLists();
  int FoundDeviceList_getCount() { return m_FoundList.GetCount(); }

 protected:
  virtual int CheckDefVersion();
  virtual int RDF_ReadKvr3DefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                  unsigned char& cCurrent, int& nLineState);
  virtual int RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                unsigned char& cCurrent, int& nLineState);
  virtual int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine);

  // 1 if some definition of ctrl's catalogue, hidden or not, has the id.
  int FindId(cAbstractDeviceDefCtrl& ctrl, unsigned long nId);
  POSITION RDF_ManufacturerItem(POSITION posKind, CString& strToken, unsigned char& cCurrent, int& nLineState);
  int RDF_CheckForDeviceKindItem(POSITION& posKind, CString& strToken, int& nLineState);
  int RDF_CheckForDeviceItem(POSITION posKind, POSITION posManuf, POSITION& posDevice, CString& strToken,
                             unsigned char& cCurrent, int& nLineState);
  int RDF_ReadDefVersion(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                         unsigned char& cCurrent, int& nLineState);

  // What a device block reader does with one of the block's lines.
  typedef int (KCDeviceDefCtrl::*BlockLineReader)(POSITION posKind, POSITION posManuf, POSITION posDevice,
                                                  const CString& strLine);
  // Reads a device block line by line up to its "}", handing each line in
  // between, without comment and trimmed, to pfnLine; a 0 from it ends the
  // block. The device block readers of every layout are built on it.
  int RDF_ReadBlockLines(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                         unsigned char& cCurrent, int& nLineState, BlockLineReader pfnLine);

  // Writes one definition line, built in strLine (a buffer the walk keeps for
  // all lines so that its storage is reused); false stops the writing.
  typedef bool (KCDeviceDefCtrl::*DefinitionLineWriter)(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine);
  // Writes the version line with nVersion, the header lists and the tree,
  // each definition through pfnLine. 1 when all was written, 0 when the
  // archive has no file or pfnLine stopped.
  int WDF_WriteCatalogue(CArchive& ar, int nVersion, DefinitionLineWriter pfnLine);
  // The layout 1 definition line, also written for layout 2.
  bool WDF_WriteLayout1Line(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine);

  // The duplicate-id check that every definition reader runs before it adds
  // a definition with this id (only while m_bCheckIds is non-zero).
  void RDF_CheckDuplicateId(DWORD nId);

  DWORD m_nBufSize;
  DWORD m_nBufPos;
  CByteArray m_FileBuf;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&> m_DeviceList;
  CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&> m_SelectedList;
  CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&> m_FoundList;
  int m_nFileLayout;
  int m_nLayout;
  DWORD m_nNextDeviceID;
  int m_bCheckIds;
  int m_nKvrType;
  CString m_strPath;

 private:
  // Start and end of the id index of one read.
  void RDF_BeginIdIndex();
  void RDF_EndIdIndex();

  // Ids in use during one read, so that the duplicate-id check costs no walk
  // of the catalogue per line; null outside ReadDefFile.
  std::unique_ptr<DevdefIdIndex> m_pIdIndex;
};

#endif  // DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_H_
