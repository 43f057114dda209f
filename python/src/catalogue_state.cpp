#include "python/src/catalogue_state.h"

#include <utility>

#include "tools/diagnostics/finding_text.h"
#include "tools/text/utf8.h"

namespace devdef_python {

namespace {

// The analysis whose names the process-wide lists hold, as Use::Lists put
// them there; null when no one's are known to be there. Guarded by the
// library lock.
const Analysis* g_listOwner = nullptr;

}  // namespace

void ForgetListOwner() { g_listOwner = nullptr; }

CatalogueState::CatalogueState(AnalysisPtr analysis, const ReadOptions& options, py::object path)
    : m_analysis(std::move(analysis)), m_options(options), m_path(std::move(path)) {
  m_encoding = DetectTextEncoding(m_analysis->Bytes());
  if (!options.encoding.empty()) ParseTextEncoding(options.encoding, &m_encoding);
}

CatalogueState::~CatalogueState() {
  // The controller empties the process-wide lists as it goes.
  std::lock_guard<std::recursive_mutex> hold(LibraryLock());
  m_analysis.reset();
  ForgetListOwner();
}

py::str CatalogueState::Text(const char* bytes, size_t length) const {
  // ASCII reads the same in every encoding, and most names are ASCII.
  if (AsciiRun(bytes, length) == length) return py::str(bytes, length);
  std::string text;
  AppendDecoded(m_encoding, bytes, length, &text);
  return py::str(text);
}

py::str CatalogueState::Text(const CString& text) const {
  return Text(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}

py::object CatalogueState::ListName(int list, unsigned number) const {
  if (!m_namesMade[list]) ListNames(list);
  if (number >= m_names[list].size()) return py::none();
  return m_names[list][number];
}

py::list CatalogueState::ListNames(int list) const {
  if (!m_namesMade[list]) {
    const std::vector<std::string>& names = m_analysis->ListNames(list);
    m_names[list].reserve(names.size());
    for (const std::string& name : names) m_names[list].push_back(Text(name));
    m_namesMade[list] = true;
  }
  py::list out(m_names[list].size());
  for (size_t i = 0; i < m_names[list].size(); ++i) out[i] = m_names[list][i];
  return out;
}

long CatalogueState::LineOf(std::uint32_t offset) const {
  // The map is made on first use.
  std::lock_guard<std::recursive_mutex> hold(LibraryLock());
  return m_analysis->Map().PointOf(offset).line;
}

LineColumn CatalogueState::PlaceOf(std::uint32_t offset) const {
  std::lock_guard<std::recursive_mutex> hold(LibraryLock());
  SetShownEncoding(m_encoding);
  const TextPoint point = ShownPoint(*m_analysis, offset, ColumnUnit::kCodePoints);
  return LineColumn{point.line, point.column};
}

std::uint32_t CatalogueState::DeviceRecordOf(const DEVICE_ITEM* device) const {
  if (m_deviceRecords.empty()) {
    const std::vector<DeviceRecord>& devices = m_analysis->Devices();
    m_deviceRecords.reserve(devices.size());
    for (std::uint32_t d = 0; d < devices.size(); ++d) m_deviceRecords.emplace(devices[d].device, d);
  }
  const auto found = m_deviceRecords.find(device);
  return found == m_deviceRecords.end() ? kNoRecord : found->second;
}

CatalogueState::Use::Use(const CatalogueState& state) : m_state(state), m_hold(LibraryLock()) {
  SetShownEncoding(state.m_encoding);
}

void CatalogueState::Use::Lists() {
  if (g_listOwner == m_state.m_analysis.get()) return;
  CStringArray* lists[] = {&DEVICE_ITEM::m_PackageList, &DEVICE_ITEM::m_AdapterList, &DEVICE_ITEM::m_ModulList};
  for (int list = 0; list < 3; ++list) {
    const std::vector<std::string>& names = m_state.m_analysis->ListNames(list);
    lists[list]->SetSize(static_cast<int>(names.size()));
    for (size_t i = 0; i < names.size(); ++i) {
      (*lists[list])[static_cast<int>(i)] = CString(names[i].data(), static_cast<int>(names[i].size()));
    }
  }
  g_listOwner = m_state.m_analysis.get();
}

}  // namespace devdef_python
