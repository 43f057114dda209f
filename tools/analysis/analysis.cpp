#include "tools/analysis/analysis.h"

#include "tools/analysis/analysis_ctrl.h"

std::string_view Analysis::Bytes() const {
  if (!m_text.empty() || m_records.bytes == nullptr) return m_text;
  return std::string_view(reinterpret_cast<const char*>(m_records.bytes->GetData()),
                          static_cast<size_t>(m_records.bytes->GetSize()));
}

const SourceMap& Analysis::Map() const {
  if (m_map == nullptr) m_map = std::make_unique<SourceMap>(Bytes());
  return *m_map;
}

KCDeviceDefCtrl& Analysis::Controller() { return m_ctrl->Ctrl(); }

DEVICE_KVRXDEF_ITEM& Analysis::DefinitionOf(std::uint32_t definition) const {
  const DeviceRecord& device = m_records.devices[m_records.definitions[definition].device];
  return device.device->m_DefArray[static_cast<int>(definition - device.firstDefinition)];
}

std::uint32_t Analysis::DeviceRecordOf(const DEVICE_ITEM* device) const {
  for (std::uint32_t i = 0; i < m_records.devices.size(); ++i) {
    if (m_records.devices[i].device == device) return i;
  }
  return kNoRecord;
}

