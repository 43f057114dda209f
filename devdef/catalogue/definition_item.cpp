#include "devdef/catalogue/definition_item.h"

#include <new>

namespace {

// The target holds the source's elements afterwards, in one allocation.
void CopyWords(CWordArray& target, const CWordArray& source) {
  target.SetSize(0);
  if (source.GetSize() == 0) return;
  target.SetSize(source.GetSize());
  for (int i = 0; i < source.GetSize(); ++i) target[i] = source[i];
}

}  // namespace

DEVICE_KVRXDEF_ITEM::DEVICE_KVRXDEF_ITEM()
    : m_DefID(0),
      m_KvrType(0),
      m_TypeState(0),
      m_TypeHigh(0),
      m_MarkFlags(0),
      m_ModulId(0),
      m_DefValues{},
      m_hTree(nullptr),
      m_pDevice(nullptr) {}

DEVICE_KVRXDEF_ITEM::DEVICE_KVRXDEF_ITEM(DEVICE_KVRXDEF_ITEM& other) : DEVICE_KVRXDEF_ITEM() {
  *this = other;
}

DEVICE_KVRXDEF_ITEM& DEVICE_KVRXDEF_ITEM::operator=(DEVICE_KVRXDEF_ITEM& other) {
  if (this == &other) return *this;
  m_KvrType = other.m_KvrType;
  m_TypeState = other.m_TypeState;
  m_TypeHigh = other.m_TypeHigh;
  m_MarkFlags = other.m_MarkFlags;
  m_DefID = other.m_DefID;
  CopyWords(m_PackageIds, other.m_PackageIds);
  m_ModulId = other.m_ModulId;
  CopyWords(m_AdapterIds, other.m_AdapterIds);
  for (int i = 0; i < 11; ++i) m_DefValues[i] = other.m_DefValues[i];
  m_XDefName = other.m_XDefName;
  m_DefLine = other.m_DefLine;
  m_hTree = other.m_hTree;
  m_pDevice = other.m_pDevice;
  return *this;
}

DEVICE_KVRXDEF_ITEM::DEVICE_KVRXDEF_ITEM(DEVICE_KVRXDEF_ITEM&& other) noexcept
    : m_DefID(other.m_DefID),
      m_KvrType(other.m_KvrType),
      m_TypeState(other.m_TypeState),
      m_TypeHigh(other.m_TypeHigh),
      m_MarkFlags(other.m_MarkFlags),
      m_PackageIds(static_cast<CWordArray&&>(other.m_PackageIds)),
      m_ModulId(other.m_ModulId),
      m_AdapterIds(static_cast<CWordArray&&>(other.m_AdapterIds)),
      m_XDefName(static_cast<CString&&>(other.m_XDefName)),
      m_DefLine(static_cast<CString&&>(other.m_DefLine)),
      m_hTree(other.m_hTree),
      m_pDevice(other.m_pDevice) {
  for (int i = 0; i < 11; ++i) m_DefValues[i] = other.m_DefValues[i];
}

DEVICE_KVRXDEF_ITEM& DEVICE_KVRXDEF_ITEM::operator=(DEVICE_KVRXDEF_ITEM&& other) noexcept {
  if (this == &other) return *this;
  this->~DEVICE_KVRXDEF_ITEM();
  return *new (this) DEVICE_KVRXDEF_ITEM(static_cast<DEVICE_KVRXDEF_ITEM&&>(other));
}

int DEVICE_KVRXDEF_ITEM::Valid() { return (m_DefID != 0 || !m_XDefName.IsEmpty()) ? 1 : 0; }

void DEVICE_KVRXDEF_ITEM::RefreshKvrType(int nKvrType) {
  // The low byte is compared as an unsigned number with the whole int, so a
  // value outside 0..255 always hides the definition.
  if (static_cast<int>(m_KvrType) == nKvrType) {
    m_TypeState = static_cast<BYTE>(m_TypeState & ~DEVDEF_TYPESTATE_HIDDEN);
  } else {
    m_TypeState = static_cast<BYTE>(m_TypeState | DEVDEF_TYPESTATE_HIDDEN);
  }
}
