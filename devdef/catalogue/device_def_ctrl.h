/// \file
/// KCDeviceDefCtrl: the controller of a layout 1 catalogue. It owns the
/// catalogue, the found and selected lists and the read buffer, and holds
/// nearly all the code; the controllers of the other layouts derive from it.
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

/// The controller of a layout 1 definition file ("DEF_LAYOUT_VERSION = 1"), and the base of the other controllers.
///
/// It owns the catalogue (kinds, manufacturers, devices, definitions), the found and selected lists and the read
/// buffer, and implements every operation of cAbstractDeviceDefCtrl; those are documented there. It reads only files
/// of its own layout. Subclasses change what a layout changes through the protected virtual operations, which the
/// read loop of ReadDefFile calls.
class DEVDEF_API KCDeviceDefCtrl : public cAbstractDeviceDefCtrl {
 public:
  /// Builds a controller with an empty catalogue.
  /// \param strPath   Text put in front of the export file's name (KCDeviceDefCtrlV3::WriteK4DeviceList); it must end
  ///                  in a path separator to name a directory. Nothing else reads it.
  /// \param nKvrType  The generation in force (3, 4 or 5): definitions of another generation are read in hidden.
  ///                  Fixed for the controller's life.
  /// \param bCheckIds Non-zero: every definition read is checked for a duplicate id (a message box) and
  ///                  getNextDeviceID is kept.
  KCDeviceDefCtrl(CString strPath, int nKvrType, int bCheckIds);
  /// Calls RemoveDefLists, which also empties the class-wide name lists under every other controller.
  ~KCDeviceDefCtrl() override;
  KCDeviceDefCtrl(const KCDeviceDefCtrl&) = delete;             ///< Not copyable: it owns the catalogue.
  KCDeviceDefCtrl& operator=(const KCDeviceDefCtrl&) = delete;  ///< Not copyable: it owns the catalogue.

  // The operations of cAbstractDeviceDefCtrl, documented there.
  int ReadDefFile(CString strFile, bool bReportError) override;
  int FindDeviceItem(int nId, POSITION* pKindPos, POSITION* pManufPos, POSITION* pDevicePos, int* pIndex,
                     DEVICE_ITEM** ppDevice, DEVICE_KVRXDEF_ITEM** ppDef) override;
  int FindDeviceItem(_TREEITEM* hTree, POSITION& kindPos, POSITION& manufPos, POSITION& devicePos,
                     int* pIndex) override;
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

  /// Writes the catalogue as layout 3 text; a layout 1 catalogue cannot be converted: always 0, nothing written.
  /// KCDeviceDefCtrlV2 replaces it with the working conversion.
  virtual int ConvertDefFileToVersion3(CArchive& ar);
  /// Writes the catalogue and the three name lists as definition file text, version m_nLayout, to ar's file.
  ///
  /// The bytes go straight to the archive's file at its position, not through the archive's buffer; the archive is
  /// neither flushed nor closed. Every definition is written, hidden ones included, as a layout 1 line (one value,
  /// m_DefValues[2]). Names go out as held, so a name with a blank does not read back whole; marks are not written.
  /// KCDeviceDefCtrlV2 writes this line too, which its own reader refuses.
  /// A failed write throws CFileException* to the caller, who frees it with Delete(); what was written stays.
  /// \return 1 when all was written; 0 when the archive has no file (nothing written).
  virtual int WriteDefFile(CArchive& ar);

  /// Empties the catalogue, the read buffer, the found and selected lists and the three name lists of DEVICE_ITEM.
  ///
  /// The name lists are class-wide: they are emptied for every controller of the process, whose definitions then
  /// have numbers without names. Every pointer, POSITION and record reference handed out becomes invalid. The layout
  /// read before and getNextDeviceID stay, so a later ReadDefFile skips the layout check. May be called at any time
  /// and repeated.
  void RemoveDefLists();
  /// The number of entries in the found list.
  int FoundDeviceList_getCount() { return m_FoundList.GetCount(); }

 protected:
  /// Called by ReadDefFile right after the version line set m_nFileLayout.
  /// \return 1: the layout is the class's (m_nLayout), the read goes on; 0: ReadDefFile shows "Wrong Def Version!"
  ///         and returns 0.
  virtual int CheckDefVersion();
  /// Reads the block of the device just made, called by the read loop right after RDF_CheckForDeviceItem succeeded.
  ///
  /// Reads the "{" line, then hands each line up to the "}" line, without comment and trimmed, to
  /// RDF_ReadKvrXDefLine. The loop ignores the result; on 0 the device keeps what was read and the rest of the block
  /// is read as top-level lines.
  /// \return 1: read up to its "}"; 0: no "{" first, a line refused, or the file ended.
  virtual int RDF_ReadKvr3DefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                  unsigned char& cCurrent, int& nLineState);
  /// Reads a header list line ("HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST", any case, names separated by blanks,
  /// "," or ";") into the name lists of DEVICE_ITEM, appending.
  ///
  /// Called by the read loop at the start of each open line (not for a line opening with a double quote); it
  /// answers 0 at once once a kind has been read.
  /// \return 1: a list line, taken; 0: not one, the read position is restored and the loop tries a device.
  virtual int RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                unsigned char& cCurrent, int& nLineState);
  /// Reads one line of a device block (without comment, trimmed) as a layout 1 definition line, called by the block
  /// reader for each line between the braces.
  ///
  /// On success it runs RDF_CheckDuplicateId (if m_bCheckIds) and adds the definition to the device at posDevice
  /// with DEVICE_ITEM::AddDevice and m_nKvrType.
  /// \return 0: the line is refused (nothing stored) and the block ends; non-zero: the block goes on, also for a
  ///         line that ends behind the adapters and is dropped without a definition.
  virtual int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine);

  /// 1 if some definition of ctrl's catalogue, hidden or not, has the id nId, else 0. Walks ctrl.getDeviceList().
  int FindId(cAbstractDeviceDefCtrl& ctrl, unsigned long nId);
  /// Makes a manufacturer of the kind at posKind from the name behind the ":" at m_nBufPos, up to a blank or the
  /// line end ("_" becomes a blank). Called by the read loop on a ":" that opens a line.
  /// \return the new manufacturer's position; null when no kind is current or the file ends in the name.
  POSITION RDF_ManufacturerItem(POSITION posKind, CString& strToken, unsigned char& cCurrent, int& nLineState);
  /// Makes a kind named strToken ("_" becomes a blank) when the ":" at m_nBufPos has a blank or line end behind it,
  /// and sets posKind to it. Called by the read loop on a ":" behind the line's first bytes.
  /// \return 1 kind made, 0 not.
  int RDF_CheckForDeviceKindItem(POSITION& posKind, CString& strToken, int& nLineState);
  /// Makes a device of the current manufacturer from the name at m_nBufPos, up to a blank or the line end, and sets
  /// posDevice to it. A leading mark byte 0xB0 or 0xDF is taken off into DEVICE_ITEM::m_DeviceFlags.
  /// \return 1 device made; 0 when no manufacturer is current, at a ":" (the line may be a kind) or at the file's
  ///         end.
  int RDF_CheckForDeviceItem(POSITION posKind, POSITION posManuf, POSITION& posDevice, CString& strToken,
                             unsigned char& cCurrent, int& nLineState);
  /// Reads the line at m_nBufPos as the version line, "DEF_LAYOUT_VERSION" (any case), "=" and a decimal number,
  /// into m_nFileLayout. Called at the start of each open line until a version has been read, so no other line is
  /// recognised ahead of it.
  /// \return 1 version read; 0 not (the line is dropped).
  int RDF_ReadDefVersion(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                         unsigned char& cCurrent, int& nLineState);

  /// What a device block reader does with one of the block's lines: 0 ends the block, non-zero goes on.
  typedef int (KCDeviceDefCtrl::*BlockLineReader)(POSITION posKind, POSITION posManuf, POSITION posDevice,
                                                  const CString& strLine);
  /// Reads a device block line by line up to its "}", handing each line in
  /// between, without comment and trimmed, to pfnLine; a 0 from it ends the
  /// block. The device block readers of every layout are built on it; results as RDF_ReadKvr3DefLine.
  int RDF_ReadBlockLines(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                         unsigned char& cCurrent, int& nLineState, BlockLineReader pfnLine);

  /// Writes one definition line, built in strLine (a buffer the walk keeps for
  /// all lines so that its storage is reused); false stops the writing.
  typedef bool (KCDeviceDefCtrl::*DefinitionLineWriter)(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine);
  /// Writes the version line with nVersion, the header lists and the tree,
  /// each definition through pfnLine. 1 when all was written, 0 when the
  /// archive has no file or pfnLine stopped. A failed write throws CFileException* to the caller.
  int WDF_WriteCatalogue(CArchive& ar, int nVersion, DefinitionLineWriter pfnLine);
  /// The layout 1 definition line, also written for layout 2; always true.
  bool WDF_WriteLayout1Line(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine);

  /// The duplicate-id check that every definition reader runs before it adds
  /// a definition with this id (only while m_bCheckIds is non-zero): raises m_nNextDeviceID above nId, and shows
  /// the message box "Doppelte device id gefunden" with the id (caption "INTERN_VERSION") if the id is in use.
  /// The definition is added anyway.
  void RDF_CheckDuplicateId(DWORD nId);

  DWORD m_nBufSize;      ///< Bytes in the read buffer; set by ReadDefFile.
  DWORD m_nBufPos;       ///< Index of the next byte the read loop looks at; may pass m_nBufSize by one.
  CByteArray m_FileBuf;  ///< The file's bytes during a read; emptied at its end (kept after a wrong layout).
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&> m_DeviceList;      ///< The catalogue: kinds in file order.
  CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&> m_SelectedList;  ///< Copies of selected definitions, newest first.
  CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&> m_FoundList;  ///< Copies of found definitions, in the order added.
  int m_nFileLayout;      ///< Layout version read from the file; -1 until one is read, never reset.
  int m_nLayout;          ///< Layout version of the class: 1, 2 or 7; set by the constructors.
  DWORD m_nNextDeviceID;  ///< One above the highest id read while m_bCheckIds is set; 0 at the start; never lowered.
  int m_bCheckIds;        ///< Non-zero: the readers run the duplicate-id check and keep m_nNextDeviceID.
  int m_nKvrType;         ///< The generation in force, given to DEVICE_ITEM::AddDevice; fixed at construction.
  CString m_strPath;      ///< Put in front of "k4devicelist.txt" by KCDeviceDefCtrlV3::WriteK4DeviceList.

 private:
  // Start and end of the id index of one read.
  void RDF_BeginIdIndex();
  void RDF_EndIdIndex();

  // Ids in use during one read, so that the duplicate-id check costs no walk
  // of the catalogue per line; null outside ReadDefFile.
  std::unique_ptr<DevdefIdIndex> m_pIdIndex;
};

#endif  // DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_H_
