#include "devdef/catalogue/device_def_ctrl.h"

namespace {

const int kSelectedListLimit = 10;

}  // namespace

_TREEITEM* KCDeviceDefCtrl::SetSelectedDeviceList(int nId, int& bAlreadySelected) {
  bAlreadySelected = 0;
  DEVICE_KVRXDEF_ITEM* def = nullptr;
  if (!FindDeviceItem(nId, nullptr, nullptr, nullptr, nullptr, nullptr, &def)) return nullptr;
  POSITION pos = m_SelectedList.GetHeadPosition();
  while (pos != nullptr) {
    if (m_SelectedList.GetNext(pos).m_DefID == static_cast<DWORD>(nId)) {
      bAlreadySelected = 1;
      return nullptr;
    }
  }
  m_SelectedList.AddHead(*def);
  if (m_SelectedList.GetCount() <= kSelectedListLimit) return nullptr;
  _TREEITEM* dropped = m_SelectedList.GetTail().m_hTree;
  m_SelectedList.RemoveTail();
  return dropped;
}

void KCDeviceDefCtrl::InitSelectedDeviceList(int nCount, int* pIds) {
  if (nCount < 1 || nCount > kSelectedListLimit || pIds == nullptr) return;
  for (int i = nCount - 1; i >= 0; --i) {
    int alreadySelected = 0;
    SetSelectedDeviceList(pIds[i], alreadySelected);
  }
}

int KCDeviceDefCtrl::FoundDeviceList_addItem(DEVICE_KVRXDEF_ITEM def) {
  if (def.m_DefID == 0) return -1;
  m_FoundList.AddTail(def);
  return m_FoundList.GetCount();
}

void KCDeviceDefCtrl::FoundDeviceList_clear() { m_FoundList.RemoveAll(); }
