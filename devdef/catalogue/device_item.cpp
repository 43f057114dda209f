#include "devdef/catalogue/device_item.h"

#include "devdef/platform/crt.h"

DEVICE_ITEM::DEVICE_ITEM() : m_ManufPos(nullptr), m_KindPos(nullptr), m_DeviceFlags(0) {}

DEVICE_ITEM::DEVICE_ITEM(DEVICE_ITEM& other) : DEVICE_ITEM() { *this = other; }

DEVICE_ITEM& DEVICE_ITEM::operator=(DEVICE_ITEM& other) {
  if (this == &other) return *this;
  m_DeviceName = other.m_DeviceName;
  m_DeviceFlags = other.m_DeviceFlags;
  m_DefArray.SetSize(0);
  m_HousingIds.SetSize(0);
  m_ManufPos = other.m_ManufPos;
  m_KindPos = other.m_KindPos;
  // Copies keep m_pDevice of their source: they still name the device they
  // were added to.
  for (int i = 0; i < other.m_DefArray.GetSize(); ++i) {
    m_DefArray.SetAtGrow(m_DefArray.GetSize(), other.m_DefArray[i]);
  }
  for (int i = 0; i < other.m_HousingIds.GetSize(); ++i) {
    m_HousingIds.SetAtGrow(m_HousingIds.GetSize(), other.m_HousingIds[i]);
  }
  return *this;
}

void DEVICE_ITEM::AddDevice(int nKvrType, DEVICE_KVRXDEF_ITEM& def) {
  def.RefreshKvrType(nKvrType);
  def.m_pDevice = this;
  m_DefArray.SetAtGrow(m_DefArray.GetSize(), def);
}

int DEVICE_ITEM::RefreshKvrType(int nKvrType) {
  for (int i = 0; i < m_DefArray.GetSize(); ++i) m_DefArray[i].RefreshKvrType(nKvrType);
  return nKvrType;
}

int DEVICE_ITEM::GetNumDevDefs() {
  int count = 0;
  for (int i = 0; i < m_DefArray.GetSize(); ++i) {
    if (!m_DefArray[i].IsHidden()) ++count;
  }
  return count;
}

int DEVICE_ITEM::GetNumOfSmallDefs(int nKvrType) {
  int count = 0;
  for (int i = 0; i < m_DefArray.GetSize(); ++i) {
    if (static_cast<int>(m_DefArray[i].m_KvrType) < nKvrType) ++count;
  }
  return count;
}

DEVICE_KVRXDEF_ITEM* DEVICE_ITEM::find_by_index(int nIndex) {
  if (nIndex < 0) return nullptr;
  int visible = 0;
  for (int i = 0; i < m_DefArray.GetSize(); ++i) {
    if (m_DefArray[i].IsHidden()) continue;
    if (visible == nIndex) return &m_DefArray[i];
    ++visible;
  }
  return nullptr;
}

DEVICE_KVRXDEF_ITEM* DEVICE_ITEM::GetDeviceXItem(const CString& strName) {
  for (int i = 0; i < m_DefArray.GetSize(); ++i) {
    DEVICE_KVRXDEF_ITEM& def = m_DefArray[i];
    if (!def.IsHidden() &&
        _mbscmp(reinterpret_cast<const unsigned char*>(static_cast<LPCTSTR>(def.m_XDefName)),
                reinterpret_cast<const unsigned char*>(static_cast<LPCTSTR>(strName))) == 0) {
      return &def;
    }
  }
  return nullptr;
}

DEVICE_KVRXDEF_ITEM& DEVICE_ITEM::GetDeviceXItemRef(int nIndex) {
  DEVICE_KVRXDEF_ITEM* def = find_by_index(nIndex);
  return def != nullptr ? *def : m_EmptyDef;
}

_TREEITEM* DEVICE_ITEM::GetDeviceHTree(int nIndex) {
  DEVICE_KVRXDEF_ITEM* def = find_by_index(nIndex);
  return def != nullptr ? def->m_hTree : nullptr;
}

void DEVICE_ITEM::SetDeviceHTree(int nIndex, _TREEITEM* hTree) {
  DEVICE_KVRXDEF_ITEM* def = find_by_index(nIndex);
  if (def != nullptr) def->m_hTree = hTree;
}

int DEVICE_ITEM::GetDeviceID(int nIndex) {
  DEVICE_KVRXDEF_ITEM* def = find_by_index(nIndex);
  return def != nullptr ? static_cast<int>(def->m_DefID) : 0;
}

const char* DEVICE_ITEM::GetDeviceDefLine(int nIndex) {
  DEVICE_KVRXDEF_ITEM* def = find_by_index(nIndex);
  return def != nullptr ? static_cast<const char*>(def->m_DefLine) : nullptr;
}

int DEVICE_ITEM::FindDefID(unsigned long nId) {
  // Ids are 32-bit values, also where unsigned long is wider.
  const DWORD id = static_cast<DWORD>(nId);
  int visible = 0;
  for (int i = 0; i < m_DefArray.GetSize(); ++i) {
    if (m_DefArray[i].IsHidden()) continue;
    if (m_DefArray[i].m_DefID == id) return visible;
    ++visible;
  }
  return -1;
}

int DEVICE_ITEM::FindHTree(_TREEITEM* hTree) {
  int visible = 0;
  for (int i = 0; i < m_DefArray.GetSize(); ++i) {
    if (m_DefArray[i].IsHidden()) continue;
    if (m_DefArray[i].m_hTree == hTree) return visible;
    ++visible;
  }
  return -1;
}
