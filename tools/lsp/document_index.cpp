#include "tools/lsp/document_index.h"

#include <algorithm>

DocumentIndex::DocumentIndex(Analysis& analysis) {
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = analysis.Controller().getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    const TextRange* kindPlace = analysis.KindPlace(k);
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (kindPlace != nullptr) m_places.push_back(IndexedPlace{IndexedPlace::kKind, kindPlace, &kind});
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      const TextRange* manufPlace = analysis.ManufacturerPlace(m);
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (manufPlace != nullptr) {
        m_places.push_back(IndexedPlace{IndexedPlace::kManufacturer, manufPlace, &kind, &manuf});
      }
      if (manuf.m_pDeviceList == nullptr) continue;
      for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(d);
        const DevicePlace* place = analysis.PlaceOf(device);
        if (place == nullptr) continue;
        m_places.push_back(IndexedPlace{IndexedPlace::kDevice, &place->name, &kind, &manuf, &device});
        for (size_t i = 0; i < place->definitions.size(); ++i) {
          m_places.push_back(IndexedPlace{IndexedPlace::kDefinition, &place->definitions[i], &kind, &manuf, &device,
                                          static_cast<int>(i)});
        }
      }
    }
  }
  for (int list = 0; list < 3; ++list) {
    const std::vector<TextRange>& entries = analysis.ListPlace(list).entries;
    for (size_t i = 0; i < entries.size(); ++i) {
      m_places.push_back(
          IndexedPlace{IndexedPlace::kListEntry, &entries[i], nullptr, nullptr, nullptr, static_cast<int>(i), list});
    }
  }
  std::stable_sort(m_places.begin(), m_places.end(),
                   [](const IndexedPlace& a, const IndexedPlace& b) { return a.range->begin < b.range->begin; });
}

const IndexedPlace* DocumentIndex::At(size_t offset) const {
  auto after = std::upper_bound(m_places.begin(), m_places.end(), offset,
                                [](size_t at, const IndexedPlace& place) { return at < place.range->begin; });
  if (after == m_places.begin()) return nullptr;
  const IndexedPlace& place = *(after - 1);
  return offset < place.range->end ? &place : nullptr;
}

const char* ListKeyword(int list) {
  static const char* const keywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};
  return list >= 0 && list < 3 ? keywords[list] : "";
}
