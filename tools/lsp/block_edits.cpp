#include "tools/lsp/block_edits.h"

#include <algorithm>
#include <cstring>

size_t LineStartOf(std::string_view bytes, size_t offset) {
  while (offset > 0 && bytes[offset - 1] != '\n' && bytes[offset - 1] != '\r') --offset;
  return offset;
}

size_t LineEndFrom(std::string_view bytes, size_t offset) {
  while (offset < bytes.size() && bytes[offset] != '\n' && bytes[offset] != '\r') ++offset;
  return offset;
}

void BlockEdits::Note(const Analysis& base, size_t begin, size_t end, size_t inserted) {
  if (m_state == kScattered) return;
  if (m_state == kNone) {
    // The device whose block holds the edit: blocks stand in the order of
    // the file.
    const std::vector<DeviceRecord>& devices = base.Devices();
    auto after = std::upper_bound(devices.begin(), devices.end(), begin,
                                  [](size_t at, const DeviceRecord& device) { return at < device.block.begin; });
    if (after == devices.begin() || !(after - 1)->closed) {
      m_state = kScattered;
      return;
    }
    const DeviceRecord& device = *(after - 1);
    const std::string_view bytes = base.Bytes();
    const size_t open = LineEndFrom(bytes, device.block.begin);
    const size_t close = device.block.end > 0 ? LineEndFrom(bytes, device.block.end - 1) : bytes.size();
    if (open >= bytes.size() || close >= bytes.size()) {
      m_state = kScattered;
      return;
    }
    m_device = static_cast<std::uint32_t>(after - 1 - devices.begin());
    m_begin = open + 1;
    m_end = LineStartOf(bytes, device.block.end - 1);
    m_linesBegin = LineStartOf(bytes, device.name.begin);
    m_linesEnd = close + 1;
    m_state = kOneBlock;
  }
  if (begin < m_begin || end > m_end || m_end < m_begin) {
    m_state = kScattered;
    return;
  }
  const long long change = static_cast<long long>(inserted) - static_cast<long long>(end - begin);
  m_end = static_cast<size_t>(static_cast<long long>(m_end) + change);
  m_delta += change;
}
