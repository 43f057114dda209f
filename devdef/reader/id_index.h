// The set of definition ids in use, kept for the length of one read so that
// the duplicate-id check does not walk the catalogue for every line.
#ifndef DEVDEF_READER_ID_INDEX_H_
#define DEVDEF_READER_ID_INDEX_H_

#include <unordered_set>

#include "devdef/platform/types.h"

class DevdefIdIndex {
 public:
  bool Contains(DWORD nId) const { return m_ids.count(nId) != 0; }
  void Insert(DWORD nId) { m_ids.insert(nId); }

 private:
  std::unordered_set<DWORD> m_ids;
};

#endif  // DEVDEF_READER_ID_INDEX_H_
