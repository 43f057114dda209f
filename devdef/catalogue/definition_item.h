/// \file
/// DEVICE_KVRXDEF_ITEM: one definition of a device, what one definition line
/// of a file says for one generation.
#ifndef DEVDEF_CATALOGUE_DEFINITION_ITEM_H_
#define DEVDEF_CATALOGUE_DEFINITION_ITEM_H_

#include "devdef/platform/export.h"

#include "devdef/platform/cstring.h"
#include "devdef/platform/typed_arrays.h"
#include "devdef/platform/types.h"

class DEVICE_ITEM;

/// Bit 15 of the type word, the top bit of DEVICE_KVRXDEF_ITEM::m_TypeState: the definition is not of the
/// generation in force (it is hidden).
const BYTE DEVDEF_TYPESTATE_HIDDEN = 0x80;

/// One definition of a device: what one definition line of a file says for one generation.
///
/// A plain value with public fields. The catalogue's definitions lie in DEVICE_ITEM::m_DefArray; the found and
/// selected lists hold independent copies. A definition whose generation is not the one in force is hidden: it stays
/// in its device and is written, but the visible-index operations of DEVICE_ITEM pass over it.
class DEVDEF_API DEVICE_KVRXDEF_ITEM {
 public:
  /// Every number 0, arrays and strings empty, pointers null: not Valid, not hidden.
  DEVICE_KVRXDEF_ITEM();
  /// Copies every field, as operator= does; other is not changed.
  DEVICE_KVRXDEF_ITEM(DEVICE_KVRXDEF_ITEM& other);
  /// Moves a definition, as its array does when it grows; other is left fit only for assignment or destruction.
  DEVICE_KVRXDEF_ITEM(DEVICE_KVRXDEF_ITEM&& other) noexcept;
  /// Copies every field: the arrays as independent copies, m_hTree and m_pDevice as they are (the copy still names
  /// the source's device). other is not changed.
  DEVICE_KVRXDEF_ITEM& operator=(DEVICE_KVRXDEF_ITEM& other);
  /// Moves every field from other, which is left fit only for assignment or destruction.
  DEVICE_KVRXDEF_ITEM& operator=(DEVICE_KVRXDEF_ITEM&& other) noexcept;
  ~DEVICE_KVRXDEF_ITEM() = default;

  /// 1 if the definition has an id (m_DefID not 0) or a name (m_XDefName not empty), else 0.
  int Valid();
  /// Clears the hidden bit if nKvrType is this definition's generation,
  /// sets it otherwise (always for a value outside 0 to 255). m_KvrType does not change.
  void RefreshKvrType(int nKvrType);
  /// Whether the hidden bit is set.
  BOOL IsHidden() const { return (m_TypeState & DEVDEF_TYPESTATE_HIDDEN) != 0; }

  /// The definition's id, the first number of its line. 0 is allowed, but such a definition is not Valid (unless
  /// it has a name) and the found list refuses it.
  DWORD m_DefID;
  // The type word: the generation in its low byte, the hidden bit at the top
  // of its second byte; the upper 16 bits are unused.
  /// The generation: 3, 4 or 5 from "KVR3DEF:", "KVR4DEF:", "KVR5DEF:"; 9 to 12 only if the host sets it.
  BYTE m_KvrType;
  /// Its top bit (DEVDEF_TYPESTATE_HIDDEN) is the hidden bit, set by RefreshKvrType; the other bits are 0.
  BYTE m_TypeState;
  /// The unused upper half of the type word; 0.
  WORD m_TypeHigh;
  /// Bit 0: mark 0xB0, bit 1: mark 0xDF, from the line and its device name (layout 7 only); never written out.
  DWORD m_MarkFlags;
  /// Package numbers, indexes into DEVICE_ITEM::m_PackageList; one in layouts 1 and 2; the writers write the first.
  CWordArray m_PackageIds;
  /// The module number; DEVICE_ITEM::GetModulName turns it into a name.
  DWORD m_ModulId;
  /// Adapter numbers, indexes into DEVICE_ITEM::m_AdapterList; at least one in a definition read from a file.
  CWordArray m_AdapterIds;
  /// The line's further values, in file order: layout 1 fills [2], layout 2 [0] to [2], layout 7 all eleven; the
  /// others stay 0. Their meaning is the host's.
  DWORD m_DefValues[11];
  /// A name for DEVICE_ITEM::GetDeviceXItem and DEVICE_ITEM::GetDevicePackage; empty after a read, only the host
  /// sets it.
  CString m_XDefName;
  /// The line's text behind the colon that closes its number fields, with its leading blank, without comment.
  CString m_DefLine;
  /// The host's tree item, set with DEVICE_ITEM::SetDeviceHTree; null until then. The library only stores, copies
  /// and compares it.
  _TREEITEM* m_hTree;
  /// The owning device, set by DEVICE_ITEM::AddDevice; null until then; not owned. Copies keep it, so it is good
  /// only while the catalogue stands.
  DEVICE_ITEM* m_pDevice;
};

#endif  // DEVDEF_CATALOGUE_DEFINITION_ITEM_H_
