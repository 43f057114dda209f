// What stands where in an analysed document: the names of kinds,
// manufacturers and devices, the definition lines and the header list
// entries, in the order of the file, so that a position finds the thing it
// points at with one search.
#ifndef DEVDEF_TOOLS_LSP_DOCUMENT_INDEX_H_
#define DEVDEF_TOOLS_LSP_DOCUMENT_INDEX_H_

#include <cstddef>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/analysis.h"

// A thing the read made, where it stands, and where it belongs.
struct IndexedPlace {
  enum Kind { kKind, kManufacturer, kDevice, kDefinition, kListEntry };
  Kind kind;
  const TextRange* range;                    // owned by the analysis
  TAG_KIND_OF_DEVICE* kindItem = nullptr;    // all but list entries
  TAG_DEVICE_MANUF* manufacturer = nullptr;  // manufacturers, devices, definitions
  DEVICE_ITEM* device = nullptr;             // devices, definitions
  int index = 0;                             // a definition's index in m_DefArray; a list entry's number
  int list = 0;                              // a list entry's list: 0 HOUSING_LIST, 1 ADAPTER_LIST, 2 MODUL_LIST
};

class DocumentIndex {
 public:
  // analysis must be usable and outlive the index.
  explicit DocumentIndex(Analysis& analysis);

  // The place whose bytes hold offset, or null.
  const IndexedPlace* At(size_t offset) const;
  // Every place, in the order of the file.
  const std::vector<IndexedPlace>& Places() const { return m_places; }

 private:
  std::vector<IndexedPlace> m_places;
};

// "HOUSING_LIST", "ADAPTER_LIST" or "MODUL_LIST".
const char* ListKeyword(int list);

#endif  // DEVDEF_TOOLS_LSP_DOCUMENT_INDEX_H_
