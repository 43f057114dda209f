#include "tools/edit/conversion_stop.h"

std::uint32_t ConversionStop(const Analysis& analysis) {
  // The records stand in the catalogue's walk order, which the conversion
  // follows.
  const std::uint32_t count = static_cast<std::uint32_t>(analysis.Definitions().size());
  for (std::uint32_t record = 0; record < count; ++record) {
    const DEVICE_KVRXDEF_ITEM& def = analysis.DefinitionOf(record);
    std::uint32_t fields[7] = {0, 0, 0, 0, 0, 0, 0};
    unsigned short scanned = 0;
    ScanFormatted(&scanned, static_cast<LPCTSTR>(def.m_DefLine), "%uld %ud %ud %ud %ud %ulx %ud", &fields[0],
                  &fields[1], &fields[2], &fields[3], &fields[4], &fields[5], &fields[6]);
    if (scanned != 7) return record;
  }
  return kNoRecord;
}
