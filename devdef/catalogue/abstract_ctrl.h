// cAbstractDeviceDefCtrl: the operations a host calls on any controller.
#ifndef DEVDEF_CATALOGUE_ABSTRACT_CTRL_H_
#define DEVDEF_CATALOGUE_ABSTRACT_CTRL_H_

#include "devdef/platform/export.h"

#include "devdef/catalogue/catalogue_tags.h"
#include "devdef/catalogue/definition_item.h"
#include "devdef/catalogue/device_item.h"
#include "devdef/platform/clist.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

class DEVDEF_API cAbstractDeviceDefCtrl {
 public:
  cAbstractDeviceDefCtrl() = default;
  cAbstractDeviceDefCtrl(const cAbstractDeviceDefCtrl&) {}
  cAbstractDeviceDefCtrl& operator=(const cAbstractDeviceDefCtrl&) { return *this; }
  virtual ~cAbstractDeviceDefCtrl() = default;

  virtual int ReadDefFile(CString strFile, bool bReportError) = 0;
  virtual int FindDeviceItem(int nId, POSITION* pKindPos, POSITION* pManufPos, POSITION* pDevicePos,
                             int* pIndex, DEVICE_ITEM** ppDevice, DEVICE_KVRXDEF_ITEM** ppDef) = 0;
  virtual int FindDeviceItem(_TREEITEM* hTree, POSITION& kindPos, POSITION& manufPos, POSITION& devicePos,
                             int* pIndex) = 0;
  virtual int FindDeviceItem(const CString& strName, DEVICE_KVRXDEF_ITEM& def) = 0;
  virtual DEVICE_ITEM* GetDeviceItem(POSITION kindPos, POSITION manufPos, POSITION devicePos) = 0;
  virtual CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& getDeviceList() = 0;
  virtual CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& getSelectedDeviceList() = 0;
  virtual CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& getFoundDeviceList() = 0;
  virtual _TREEITEM* SetSelectedDeviceList(int nId, int& bAlreadySelected) = 0;
  virtual int FoundDeviceList_addItem(DEVICE_KVRXDEF_ITEM def) = 0;
  virtual void FoundDeviceList_clear() = 0;
  virtual void InitSelectedDeviceList(int nCount, int* pIds) = 0;
  virtual int getNextDeviceID() = 0;
};

#endif  // DEVDEF_CATALOGUE_ABSTRACT_CTRL_H_
