#include "tools/lsp/document_index.h"

#include <algorithm>
#include <vector>

namespace {

// The record of records whose span holds offset, found by the span that
// spanOf gives each; false when none does.
template <class Record, class SpanOf>
bool Holding(const std::vector<Record>& records, size_t offset, SpanOf spanOf, std::uint32_t* found) {
  auto after = std::upper_bound(records.begin(), records.end(), offset,
                                [&spanOf](size_t at, const Record& record) { return at < spanOf(record).begin; });
  if (after == records.begin()) return false;
  const Record& record = *(after - 1);
  if (offset >= spanOf(record).end) return false;
  *found = static_cast<std::uint32_t>(after - 1 - records.begin());
  return true;
}

}  // namespace

bool DocumentIndex::At(size_t offset, IndexedPlace* place) const {
  std::uint32_t record = 0;
  if (Holding(m_analysis.Definitions(), offset, [](const DefinitionRecord& r) { return r.line; }, &record)) {
    *place = IndexedPlace{IndexedPlace::kDefinition, m_analysis.Definitions()[record].line, record};
    return true;
  }
  if (Holding(m_analysis.Devices(), offset, [](const DeviceRecord& r) { return r.name; }, &record)) {
    *place = IndexedPlace{IndexedPlace::kDevice, m_analysis.Devices()[record].name, record};
    return true;
  }
  if (Holding(m_analysis.Manufacturers(), offset, [](const ManufacturerRecord& r) { return r.name; }, &record)) {
    *place = IndexedPlace{IndexedPlace::kManufacturer, m_analysis.Manufacturers()[record].name, record};
    return true;
  }
  if (Holding(m_analysis.Kinds(), offset, [](const KindRecord& r) { return r.name; }, &record)) {
    *place = IndexedPlace{IndexedPlace::kKind, m_analysis.Kinds()[record].name, record};
    return true;
  }
  for (int list = 0; list < 3; ++list) {
    if (Holding(m_analysis.ListEntries(list), offset, [](const ByteSpan& span) { return span; }, &record)) {
      *place = IndexedPlace{IndexedPlace::kListEntry, m_analysis.ListEntries(list)[record], record, list};
      return true;
    }
  }
  return false;
}

const char* ListKeyword(int list) {
  static const char* const keywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};
  return list >= 0 && list < 3 ? keywords[list] : "";
}
