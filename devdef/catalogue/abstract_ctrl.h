/// \file
/// cAbstractDeviceDefCtrl: the operations a host calls on any controller.
#ifndef DEVDEF_CATALOGUE_ABSTRACT_CTRL_H_
#define DEVDEF_CATALOGUE_ABSTRACT_CTRL_H_

#include "devdef/platform/export.h"

#include "devdef/catalogue/catalogue_tags.h"
#include "devdef/catalogue/definition_item.h"
#include "devdef/catalogue/device_item.h"
#include "devdef/platform/clist.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

/// The interface of every controller: reading, look-up and the found and selected lists.
///
/// It holds no data. The host builds a KCDeviceDefCtrl, KCDeviceDefCtrlV2 or KCDeviceDefCtrlV3 for the layout of its
/// file and may work through this interface. A controller is used from one thread at a time; reads, RemoveDefLists
/// and destructors of different controllers must not overlap, since they share the name lists of DEVICE_ITEM.
/// Everything handed out (pointers, POSITIONs, list references) lives until KCDeviceDefCtrl::RemoveDefLists or the
/// controller's destruction; a definition pointer also ends when a definition is added to its device.
class DEVDEF_API cAbstractDeviceDefCtrl {
 public:
  /// Builds the empty interface part.
  cAbstractDeviceDefCtrl() = default;
  /// Copies nothing: the interface has no data.
  cAbstractDeviceDefCtrl(const cAbstractDeviceDefCtrl&) {}
  /// Copies nothing: the interface has no data.
  cAbstractDeviceDefCtrl& operator=(const cAbstractDeviceDefCtrl&) { return *this; }
  /// Destroys the controller and, in KCDeviceDefCtrl, all it handed out (see KCDeviceDefCtrl::RemoveDefLists).
  virtual ~cAbstractDeviceDefCtrl() = default;

  /// Reads the definition file strFile into the catalogue and the name lists, appending to what they hold.
  ///
  /// The whole file is read into memory. The first version line is compared with the controller's layout; no line
  /// before it is read, so a file without one reads as empty. A malformed line is not reported; a refused definition
  /// line ends its device's block. Once a version line has been read (even a refused one), later reads skip the
  /// check and append, also after KCDeviceDefCtrl::RemoveDefLists. The new header names go behind the names already
  /// in the class-wide lists of DEVICE_ITEM, which every controller of the process shares, while the numbers in the
  /// new definitions count from 0. With the duplicate-id check on, each duplicate id shows a message box; message
  /// boxes go to the handler of AfxSetMessageBoxHandler and the read waits for it.
  /// \param strFile      Path of the file.
  /// \param bReportError Whether a failed file access is shown to the user (the class library's report).
  /// \return 1 when the file was read to its end; 0 when it cannot be opened or read (the CFileException is caught
  ///         and deleted here) or its layout is not the controller's (then "Wrong Def Version!" is shown, whatever
  ///         bReportError says, and nothing is added).
  virtual int ReadDefFile(CString strFile, bool bReportError) = 0;
  /// Finds the first visible definition with the id nId, in walk order (kinds, manufacturers, devices, definitions).
  ///
  /// Each output pointer may be null; the outputs are written only on a hit: the three positions, the visible index
  /// within the device (DEVICE_ITEM::GetDeviceXItemRef), the device and the definition. A hidden definition is not
  /// found. The device and the positions hold until RemoveDefLists; the definition pointer also until a definition is
  /// added to that device.
  /// \return 1 found, 0 not found.
  virtual int FindDeviceItem(int nId, POSITION* pKindPos, POSITION* pManufPos, POSITION* pDevicePos,
                             int* pIndex, DEVICE_ITEM** ppDevice, DEVICE_KVRXDEF_ITEM** ppDef) = 0;
  /// Finds the first visible definition whose tree item is hTree, in walk order.
  ///
  /// The three positions are the walk's own, so they change even when nothing is found (the kind position is then
  /// null). On a hit they rest on the definition's kind, manufacturer and device, and *pIndex (if pIndex is not null)
  /// is its visible index; get the device with GetDeviceItem. A null hTree matches the first visible definition that
  /// has no tree item yet.
  /// \return 1 found, 0 not found.
  virtual int FindDeviceItem(_TREEITEM* hTree, POSITION& kindPos, POSITION& manufPos, POSITION& devicePos,
                             int* pIndex) = 0;
  /// Look-up of a definition by name into def; no controller of this library supports it: 0, and def is unchanged.
  virtual int FindDeviceItem(const CString& strName, DEVICE_KVRXDEF_ITEM& def) = 0;
  /// The device at the three positions of a walk or of FindDeviceItem, or null.
  ///
  /// Null when a position is null or the kind or manufacturer has no list below it. The positions must be live and
  /// of one branch of this controller's catalogue; that is not checked. The device lives until RemoveDefLists.
  virtual DEVICE_ITEM* GetDeviceItem(POSITION kindPos, POSITION manufPos, POSITION devicePos) = 0;
  /// The catalogue itself (not a copy): the kinds in file order, each with its manufacturers and devices.
  ///
  /// A kind's or manufacturer's list pointer is null until its first child. The host may walk the lists and read the
  /// records, but must not delete records or lists: the controller owns them until RemoveDefLists.
  virtual CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& getDeviceList() = 0;
  /// The selected list itself: copies of the last selected definitions, newest at the head, at most ten.
  virtual CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& getSelectedDeviceList() = 0;
  /// The found list itself: copies of the definitions given to FoundDeviceList_addItem, in the order added.
  virtual CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& getFoundDeviceList() = 0;
  /// Selects the visible definition with the id nId: a copy of it goes to the head of the selected list.
  ///
  /// bAlreadySelected is set to 1 if a definition with that id is in the list already (the list is then unchanged,
  /// and that entry does not move), else to 0. An id that no visible definition bears is ignored. The list keeps ten
  /// entries at most: when the new one makes eleven, the oldest is removed.
  /// \return the tree item of the removed entry, as it was when that entry was selected; null when nothing was
  ///         removed (and when the removed entry had no tree item).
  virtual _TREEITEM* SetSelectedDeviceList(int nId, int& bAlreadySelected) = 0;
  /// Appends a copy of def to the found list; the same definition may stand in it any number of times.
  /// \return the new number of entries, or -1 (nothing added) when def's id is 0.
  virtual int FoundDeviceList_addItem(DEVICE_KVRXDEF_ITEM def) = 0;
  /// Empties the found list; the selected list is not touched.
  virtual void FoundDeviceList_clear() = 0;
  /// Restores a saved selection: selects the nCount ids of pIds, last first, so that pIds[0] ends at the head.
  ///
  /// Does nothing at all unless nCount is 1 to 10. Ids that are not found or already selected are passed over. The
  /// list is not emptied first: older entries stay behind the new ones, and those past ten are dropped without a
  /// word about their tree items.
  virtual void InitSelectedDeviceList(int nCount, int* pIds) = 0;
  /// One above the highest definition id read with the duplicate-id check on; 0 if the check is off.
  ///
  /// Never lowered, not even by RemoveDefLists.
  virtual int getNextDeviceID() = 0;
};

#endif  // DEVDEF_CATALOGUE_ABSTRACT_CTRL_H_
