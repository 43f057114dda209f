#include "tools/edit/conversion_stop.h"

std::uint32_t ConversionStop(const Analysis& analysis) {
  // The records stand in the catalogue's walk order, which the conversion
  // follows.
  const std::uint32_t count = static_cast<std::uint32_t>(analysis.Definitions().size());
  for (std::uint32_t record = 0; record < count; ++record) {
    const DEVICE_KVRXDEF_ITEM& def = analysis.DefinitionOf(record);
    // Each destination of the width its conversion writes.
    DWORD field1 = 0;
    WORD field2 = 0;
    WORD field3 = 0;
    WORD field4 = 0;
    WORD field5 = 0;
    DWORD field6 = 0;
    WORD field7 = 0;
    unsigned short scanned = 0;
    ScanFormatted(&scanned, static_cast<LPCTSTR>(def.m_DefLine), "%uld %ud %ud %ud %ud %ulx %ud", &field1, &field2,
                  &field3, &field4, &field5, &field6, &field7);
    if (scanned != 7) return record;
  }
  return kNoRecord;
}
