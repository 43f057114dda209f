/// \file
/// DEVICE_ITEM: one device of the catalogue with its definitions, and the
/// process-wide name lists that the numbers of the definitions refer to.
#ifndef DEVDEF_CATALOGUE_DEVICE_ITEM_H_
#define DEVDEF_CATALOGUE_DEVICE_ITEM_H_

#include "devdef/platform/export.h"


#include <string>

#include "devdef/catalogue/definition_item.h"
#include "devdef/platform/carray.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/typed_arrays.h"
#include "devdef/platform/types.h"

/// One device of the catalogue: its name and its definitions, presented by visible index.
///
/// A device lies by value in a node of its manufacturer's list and lives until KCDeviceDefCtrl::RemoveDefLists. The
/// visible definitions are those whose hidden bit is clear, indexed from 0 in array order; every `int nIndex` below
/// is such a visible index, not an index into m_DefArray. The class also holds the three process-wide name lists
/// that the numbers of a definition refer to.
class DEVDEF_API DEVICE_ITEM {
 public:
  /// An empty name, no definitions, flags 0, null positions.
  DEVICE_ITEM();
  /// Copies as operator= does; other is not changed.
  DEVICE_ITEM(DEVICE_ITEM& other);
  /// Copies the name, flags, positions, m_HousingIds and every definition. The copied definitions keep m_pDevice
  /// of their source, so they still name the device they were added to. m_EmptyDef is not copied.
  DEVICE_ITEM& operator=(DEVICE_ITEM& other);
  ~DEVICE_ITEM() = default;

  /// The characters of m_DeviceName; they live as long as the name is unchanged.
  const char* GetDeviceName() { return m_DeviceName; }
  /// m_DeviceName itself.
  CString& GetDeviceNameString() { return m_DeviceName; }
  /// Appends a copy of def, after setting def's hidden bit by nKvrType and its
  /// owner to this device: the caller's record changes too.
  ///
  /// Pointers and references into m_DefArray, from this device or from a look-up, are invalid afterwards, since the
  /// array may move.
  void AddDevice(int nKvrType, DEVICE_KVRXDEF_ITEM& def);

  /// Hides every definition whose generation is not nKvrType and shows the others; returns nKvrType.
  ///
  /// Visible indexes of this device change with it. No controller operation does this for the whole catalogue: the
  /// host calls it on each device. Later reads still use the controller's generation in force.
  int RefreshKvrType(int nKvrType);
  /// The number of visible definitions.
  int GetNumDevDefs();
  /// The number of definitions whose generation is below nKvrType, hidden ones included.
  int GetNumOfSmallDefs(int nKvrType);
  /// The visible definition at nIndex, or null (nIndex negative or past the last). The pointer holds until the next
  /// AddDevice on this device or KCDeviceDefCtrl::RemoveDefLists.
  DEVICE_KVRXDEF_ITEM* find_by_index(int nIndex);
  /// The first visible definition whose m_XDefName equals strName exactly (case-sensitive), or null. Reads leave
  /// every m_XDefName empty, so an empty strName finds the first visible definition. Lifetime as find_by_index.
  DEVICE_KVRXDEF_ITEM* GetDeviceXItem(const CString& strName);
  /// The visible definition at nIndex; when there is none, m_EmptyDef, which is not Valid and must not be written
  /// to. Lifetime as find_by_index.
  DEVICE_KVRXDEF_ITEM& GetDeviceXItemRef(int nIndex);
  /// The tree item of the visible definition at nIndex; null when there is none or it has no tree item yet.
  _TREEITEM* GetDeviceHTree(int nIndex);
  /// Stores hTree in the visible definition at nIndex; does nothing when there is none. Copies in the found and
  /// selected lists keep their old tree item.
  void SetDeviceHTree(int nIndex, _TREEITEM* hTree);
  /// The id of the visible definition at nIndex; 0 when there is none (as for a definition with the id 0).
  int GetDeviceID(int nIndex);
  /// The characters of the text (m_DefLine) of the visible definition at nIndex, or null; lifetime as find_by_index.
  const char* GetDeviceDefLine(int nIndex);
  /// The visible index of the first visible definition with the id nId, or -1. A hidden definition does not match.
  int FindDefID(unsigned long nId);
  /// The visible index of the first visible definition whose tree item is hTree, or -1. A null hTree matches the
  /// first visible definition without a tree item.
  int FindHTree(_TREEITEM* hTree);

  /// The characters of the package name at nIndex in m_PackageList; null when nIndex is negative or not below the
  /// list's size. The text lives until the list is emptied (RemoveDefLists or destruction of any controller).
  static const char* GetPackageName(int nIndex);
  /// The characters of the adapter name at nIndex in m_AdapterList, or null; as GetPackageName.
  static const char* GetAdapterName(int nIndex);
  /// The characters of the module name at nIndex in m_ModulList, or null; as GetPackageName.
  static const char* GetModulName(int nIndex);
  /// The package piece of an adapter name `a_b_package/rest`: what stands between the second "_" and the next
  /// "/"; empty when one of them is missing. Depends on strName alone.
  CString GetAdaptPackage(CString strName);

  /// The package name of the visible definition at nIndex, or null when there is none.
  ///
  /// Generations 9 to 12 give GetK5PackageName and GetK5ModuleName of m_XDefName, run together; generation 5 with a
  /// name gives GetK5PackageName of it; all others the list name of the first package number, `No PackageId`
  /// without one, or `##n` for a number n outside m_PackageList. The text is one string shared by the whole
  /// process: it holds until the next call on any device of any controller (copy it first to keep it), so two
  /// threads must not call this at once.
  const char* GetDevicePackage(int nIndex);
  /// The package piece of a structured name `path/lead#package#module#rest`: in the part behind the last "/", what
  /// stands between the first and the second `#`; empty without a second `#`.
  static std::string GetK5PackageName(std::string strName);
  /// The module piece of a structured name, as `@(MODULE = module)`: what stands between the second and the third
  /// `#` behind the last "/"; empty without a third `#`.
  static std::string GetK5ModuleName(std::string strName);

  /// The device's name, without its mark byte and with blanks for the file's "_".
  CString m_DeviceName;
  /// Housing numbers from "DEVICE_HOUSING_LIST:" lines (layout 7); empty in layouts 1 and 2; never written out.
  CWordArray m_HousingIds;
  /// The manufacturer's node, set when the device is read; nothing in the library decides by it.
  POSITION m_ManufPos;
  /// The node in KCDeviceDefCtrl::m_DeviceList of the kind current when the device was read; nothing decides by it.
  POSITION m_KindPos;
  /// The definitions in the order of their lines, hidden ones included. Elements move when it grows.
  CArray<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&> m_DefArray;
  /// Bit 0: the name opened with the mark 0xB0, bit 1: with 0xDF; seeds the layout 7 definitions' m_MarkFlags.
  DWORD m_DeviceFlags;
  /// The empty definition that GetDeviceXItemRef returns when it finds nothing; not Valid.
  DEVICE_KVRXDEF_ITEM m_EmptyDef;

  /// Package names, from the file's "HOUSING_LIST"; indexed by DEVICE_KVRXDEF_ITEM::m_PackageIds.
  ///
  /// This and the two lists below are shared by every device and controller of the process: each read appends to
  /// them, and RemoveDefLists or the destruction of any controller empties them for all.
  static CStringArray m_PackageList;
  /// Adapter names, from "ADAPTER_LIST"; indexed by DEVICE_KVRXDEF_ITEM::m_AdapterIds. Process-wide, as m_PackageList.
  static CStringArray m_AdapterList;
  /// Module names, from "MODUL_LIST"; for GetModulName, the library itself never looks one up. Process-wide, as
  /// m_PackageList.
  static CStringArray m_ModulList;
};

#endif  // DEVDEF_CATALOGUE_DEVICE_ITEM_H_
