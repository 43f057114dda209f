// DEVICE_KVRXDEF_ITEM: one definition of a device, what one definition line
// of a file says for one generation.
#ifndef DEVDEF_CATALOGUE_DEFINITION_ITEM_H_
#define DEVDEF_CATALOGUE_DEFINITION_ITEM_H_

#include "devdef/platform/export.h"

#include "devdef/platform/cstring.h"
#include "devdef/platform/typed_arrays.h"
#include "devdef/platform/types.h"

class DEVICE_ITEM;

// Bit 15 of the type word: the definition is not of the generation in force.
const BYTE DEVDEF_TYPESTATE_HIDDEN = 0x80;

class DEVDEF_API DEVICE_KVRXDEF_ITEM {
 public:
  DEVICE_KVRXDEF_ITEM();
  DEVICE_KVRXDEF_ITEM(DEVICE_KVRXDEF_ITEM& other);
  // Moves a definition, as its array does when it grows.
  DEVICE_KVRXDEF_ITEM(DEVICE_KVRXDEF_ITEM&& other) noexcept;
  DEVICE_KVRXDEF_ITEM& operator=(DEVICE_KVRXDEF_ITEM& other);
  DEVICE_KVRXDEF_ITEM& operator=(DEVICE_KVRXDEF_ITEM&& other) noexcept;
  ~DEVICE_KVRXDEF_ITEM() = default;

  // 1 if the definition has an id or a name, else 0.
  int Valid();
  // Clears the hidden bit if nKvrType is this definition's generation,
  // sets it otherwise.
  void RefreshKvrType(int nKvrType);
  BOOL IsHidden() const { return (m_TypeState & DEVDEF_TYPESTATE_HIDDEN) != 0; }

  DWORD m_DefID;
  // The type word: the generation in its low byte, the hidden bit at the top
  // of its second byte; the upper 16 bits are unused.
  BYTE m_KvrType;
  BYTE m_TypeState;
  WORD m_TypeHigh;
  DWORD m_MarkFlags;  // bit 0: mark 0xB0, bit 1: mark 0xDF
  CWordArray m_PackageIds;
  DWORD m_ModulId;
  CWordArray m_AdapterIds;
  DWORD m_DefValues[11];
  CString m_XDefName;
  CString m_DefLine;
  _TREEITEM* m_hTree;
  DEVICE_ITEM* m_pDevice;
};

#endif  // DEVDEF_CATALOGUE_DEFINITION_ITEM_H_
