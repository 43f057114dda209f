// What stands at a place of an analysed document: the name of a kind,
// manufacturer or device, a definition line or a header list entry. Each
// kind of record stands in the order of the file, so a position finds the
// thing it points at with a search in each.
#ifndef DEVDEF_TOOLS_LSP_DOCUMENT_INDEX_H_
#define DEVDEF_TOOLS_LSP_DOCUMENT_INDEX_H_

#include <cstddef>
#include <cstdint>

#include "tools/analysis/analysis.h"

// A thing the read made and where it stands.
struct IndexedPlace {
  enum Kind { kKind, kManufacturer, kDevice, kDefinition, kListEntry };
  Kind kind;
  ByteSpan span;
  std::uint32_t record;  // of its kind in the analysis; a list entry's number
  int list = 0;          // a list entry's list: 0 HOUSING_LIST, 1 ADAPTER_LIST, 2 MODUL_LIST
};

class DocumentIndex {
 public:
  // analysis must outlive the index.
  explicit DocumentIndex(const Analysis& analysis) : m_analysis(analysis) {}

  // The place whose bytes hold offset; false when there is none.
  bool At(size_t offset, IndexedPlace* place) const;

 private:
  const Analysis& m_analysis;
};

// "HOUSING_LIST", "ADAPTER_LIST" or "MODUL_LIST".
const char* ListKeyword(int list);

#endif  // DEVDEF_TOOLS_LSP_DOCUMENT_INDEX_H_
