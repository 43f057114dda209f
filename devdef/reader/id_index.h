// The set of definition ids in use, kept for the length of one read so that
// the duplicate-id check does not walk the catalogue for every line.
#ifndef DEVDEF_READER_ID_INDEX_H_
#define DEVDEF_READER_ID_INDEX_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "devdef/platform/types.h"

// The ids of a file mostly follow each other, so the set starts as a bitmap
// over the range of ids seen (a bit per id). When the ids spread so far that
// the bitmap would take more than 8 bytes per id, it turns into an
// open-addressing hash set of 32-bit ids in one flat table.
class DevdefIdIndex {
 public:
  // Adds nId; returns whether it was in the set already.
  bool Add(DWORD nId);

 private:
  // The bitmap: bit (id - m_nBase) of the words; m_nBase is a multiple of 64.
  bool AddToBitmap(DWORD nId);
  // Widens the bitmap to hold nId, or returns false if that would make it
  // too sparse.
  bool WidenBitmap(DWORD nId);
  void MoveToTable();

  // The table: a slot holds an id or 0 (empty); the id 0 itself is kept
  // aside in m_bHasZero. At most half the slots are used.
  bool AddToTable(DWORD nId);
  size_t SlotOf(DWORD nId) const;
  void GrowTable();

  bool m_bBitmap = true;
  std::uint64_t m_nBase = 0;
  std::vector<std::uint64_t> m_bits;
  std::vector<DWORD> m_slots;
  bool m_bHasZero = false;
  size_t m_nCount = 0;  // ids in the set
};

#endif  // DEVDEF_READER_ID_INDEX_H_
