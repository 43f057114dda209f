// The set of definition ids in use, kept for the length of one read so that
// the duplicate-id check does not walk the catalogue for every line.
#ifndef DEVDEF_READER_ID_INDEX_H_
#define DEVDEF_READER_ID_INDEX_H_

#include <cstdint>
#include <vector>

#include "devdef/platform/types.h"

// An open-addressing hash set of 32-bit ids in one flat table: no heap block
// per id, and a look-up touches one or two neighbouring slots.
class DevdefIdIndex {
 public:
  bool Contains(DWORD nId) const;
  void Insert(DWORD nId);

 private:
  // A slot holds an id, or kEmpty, which no 32-bit id can be.
  static constexpr std::uint64_t kEmpty = ~std::uint64_t{0};

  size_t SlotOf(DWORD nId) const;
  void Grow();

  std::vector<std::uint64_t> m_slots;
  size_t m_nCount = 0;
};

#endif  // DEVDEF_READER_ID_INDEX_H_
