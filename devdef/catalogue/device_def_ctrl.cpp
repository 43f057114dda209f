#include "devdef/catalogue/device_def_ctrl.h"

#include "devdef/reader/id_index.h"

KCDeviceDefCtrl::KCDeviceDefCtrl(CString strPath, int nKvrType, int bCheckIds)
    : m_nBufSize(0),
      m_nBufPos(0),
      m_DeviceList(10),
      m_SelectedList(10),
      m_FoundList(10),
      m_nFileLayout(-1),
      m_nLayout(1),
      m_nNextDeviceID(0),
      m_bCheckIds(bCheckIds),
      m_nKvrType(nKvrType),
      m_strPath(strPath) {}

KCDeviceDefCtrl::~KCDeviceDefCtrl() { RemoveDefLists(); }

void KCDeviceDefCtrl::RemoveDefLists() {
  POSITION posKind = m_DeviceList.GetHeadPosition();
  for (int k = 0; k < m_DeviceList.GetCount(); ++k) {
    TAG_KIND_OF_DEVICE& kind = m_DeviceList.GetNext(posKind);
    CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>* manufList = kind.m_pManufList;
    if (manufList == nullptr) continue;
    POSITION posManuf = manufList->GetHeadPosition();
    for (int m = 0; m < manufList->GetCount(); ++m) {
      TAG_DEVICE_MANUF& manuf = manufList->GetNext(posManuf);
      // An emptied device list is deleted too, so that nothing leaks.
      if (manuf.m_pDeviceList != nullptr) {
        manuf.m_pDeviceList->RemoveAll();
        delete manuf.m_pDeviceList;
        manuf.m_pDeviceList = nullptr;
      }
    }
    manufList->RemoveAll();
    delete manufList;
    kind.m_pManufList = nullptr;
  }
  m_DeviceList.RemoveAll();
  m_FileBuf.SetSize(0);
  DEVICE_ITEM::m_PackageList.SetSize(0);
  DEVICE_ITEM::m_AdapterList.SetSize(0);
  DEVICE_ITEM::m_ModulList.SetSize(0);
  m_SelectedList.RemoveAll();
  m_FoundList.RemoveAll();
}

int KCDeviceDefCtrl::FindDeviceItem(const CString& /*strName*/, DEVICE_KVRXDEF_ITEM& /*def*/) { return 0; }
