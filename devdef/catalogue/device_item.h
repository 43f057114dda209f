// DEVICE_ITEM: one device of the catalogue with its definitions, and the
// process-wide name lists that the numbers of the definitions refer to.
#ifndef DEVDEF_CATALOGUE_DEVICE_ITEM_H_
#define DEVDEF_CATALOGUE_DEVICE_ITEM_H_

#include "devdef/platform/export.h"


#include <string>

#include "devdef/catalogue/definition_item.h"
#include "devdef/platform/carray.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/typed_arrays.h"
#include "devdef/platform/types.h"

class DEVDEF_API DEVICE_ITEM {
 public:
  DEVICE_ITEM();
  DEVICE_ITEM(DEVICE_ITEM& other);
  DEVICE_ITEM& operator=(DEVICE_ITEM& other);
  ~DEVICE_ITEM() = default;

  const char* GetDeviceName() { return m_DeviceName; }
  CString& GetDeviceNameString() { return m_DeviceName; }
  // Appends a copy of def, after setting def's hidden bit by nKvrType and its
  // owner to this device.
  void AddDevice(int nKvrType, DEVICE_KVRXDEF_ITEM& def);

  // Visible definitions: those whose hidden bit is clear, indexed from 0.
  int RefreshKvrType(int nKvrType);
  int GetNumDevDefs();
  int GetNumOfSmallDefs(int nKvrType);
  DEVICE_KVRXDEF_ITEM* find_by_index(int nIndex);
  DEVICE_KVRXDEF_ITEM* GetDeviceXItem(const CString& strName);
  DEVICE_KVRXDEF_ITEM& GetDeviceXItemRef(int nIndex);
  _TREEITEM* GetDeviceHTree(int nIndex);
  void SetDeviceHTree(int nIndex, _TREEITEM* hTree);
  int GetDeviceID(int nIndex);
  const char* GetDeviceDefLine(int nIndex);
  int FindDefID(unsigned long nId);
  int FindHTree(_TREEITEM* hTree);

  // Names behind the numbers: null outside the list.
  static const char* GetPackageName(int nIndex);
  static const char* GetAdapterName(int nIndex);
  static const char* GetModulName(int nIndex);
  // The package piece of an adapter name "a_b_package/rest", or empty.
  CString GetAdaptPackage(CString strName);

  // The package name of the visible definition at nIndex, or null. The text
  // is one string shared by the whole process: it holds until the next call
  // on any device.
  const char* GetDevicePackage(int nIndex);
  // The package and the module pieces of a structured name
  // "path/lead#package#module#rest"; the module comes as "@(MODULE = m)".
  static std::string GetK5PackageName(std::string strName);
  static std::string GetK5ModuleName(std::string strName);

  CString m_DeviceName;
  CWordArray m_HousingIds;
  POSITION m_ManufPos;
  POSITION m_KindPos;
  CArray<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&> m_DefArray;
  DWORD m_DeviceFlags;  // bit 0: name opened with 0xB0, bit 1: with 0xDF
  DEVICE_KVRXDEF_ITEM m_EmptyDef;

  // Shared by every device and controller of the process.
  static CStringArray m_PackageList;
  static CStringArray m_AdapterList;
  static CStringArray m_ModulList;
};

#endif  // DEVDEF_CATALOGUE_DEVICE_ITEM_H_
