// Reads arbitrary bytes through the position-aware read of the tool, as the
// layout that the first byte picks, and checks that the replay of the read
// never loses the library's step, that every device name and definition
// place holds the bytes the catalogue got, and that every finding lies in
// the file. The options come from the input's last byte, so that the seed
// files are read whole.
#include <cstring>

#include "fuzz/fuzz_support.h"
#include "tools/analysis/analysis.h"

namespace {

void CheckPlaces(Analysis& analysis) {
  const std::string& bytes = analysis.Bytes();
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = analysis.Controller().getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    DEVDEF_FUZZ_CHECK(analysis.KindPlace(k) != nullptr);
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      DEVDEF_FUZZ_CHECK(analysis.ManufacturerPlace(m) != nullptr);
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (manuf.m_pDeviceList == nullptr) continue;
      for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(d);
        const DevicePlace* place = analysis.PlaceOf(device);
        DEVDEF_FUZZ_CHECK(place != nullptr);
        std::string name = bytes.substr(place->name.begin, place->name.end - place->name.begin);
        for (char& c : name) c = c == '_' ? ' ' : c;
        if (device.m_DeviceFlags != 0) name.erase(0, 1);
        DEVDEF_FUZZ_CHECK(name == std::string(device.GetDeviceName(), device.m_DeviceName.GetLength()));
        DEVDEF_FUZZ_CHECK(place->definitions.size() == static_cast<size_t>(device.m_DefArray.GetSize()));
        for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
          const TextRange& def = place->definitions[static_cast<size_t>(i)];
          const CString& text = device.m_DefArray[i].m_DefLine;
          const size_t length = static_cast<size_t>(text.GetLength());
          DEVDEF_FUZZ_CHECK(def.end - def.begin >= length);
          DEVDEF_FUZZ_CHECK(std::memcmp(bytes.data() + def.end - length, static_cast<LPCTSTR>(text), length) == 0);
        }
      }
    }
  }
  for (const Finding& finding : analysis.Findings()) {
    DEVDEF_FUZZ_CHECK(finding.kind != nullptr);
    DEVDEF_FUZZ_CHECK(finding.range.begin <= finding.range.end && finding.range.end <= bytes.size());
    DEVDEF_FUZZ_CHECK(finding.range.start.line >= 1 && finding.range.start.column >= 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const uint8_t pick = nSize > 0 ? pData[nSize - 1] : 0;
  const int layouts[] = {0, 1, 2, 7};
  AnalysisOptions options;
  options.layout = layouts[pick & 3];
  options.generation = 3 + ((pick >> 2) & 3) % 3;
  options.checkIds = ((pick >> 4) & 1) != 0;
  const std::string path = DevdefFuzzInputFile(pData, nSize);
  std::unique_ptr<Analysis> analysis = Analysis::ReadFile(path, options);
  if (!analysis->Read()) return 0;
  DEVDEF_FUZZ_CHECK(analysis->Exact());
  CheckPlaces(*analysis);
  return 0;
}
