// What the read of a definition file made, where it stands: flat records in
// the order the reader met them, each with its bytes. Records refer to each
// other by index, and to the catalogue by pointer; the order of the file is
// also the catalogue's walk order (a manufacturer is always made under the
// last kind, and a device goes to the last manufacturer).
#ifndef DEVDEF_TOOLS_ANALYSIS_RECORDS_H_
#define DEVDEF_TOOLS_ANALYSIS_RECORDS_H_

#include <cstdint>

#include "devdef/devdef.h"

// Bytes [begin, end) of the file. Files of 2 GiB and more are not read, so
// an offset fits 32 bits.
struct ByteSpan {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

inline bool operator==(const ByteSpan& a, const ByteSpan& b) { return a.begin == b.begin && a.end == b.end; }
inline bool operator!=(const ByteSpan& a, const ByteSpan& b) { return !(a == b); }

// "No record": an index that names none.
constexpr std::uint32_t kNoRecord = 0xFFFFFFFFu;

struct KindRecord {
  ByteSpan name;  // the bytes in front of its ":"
  POSITION pos;
  TAG_KIND_OF_DEVICE* kind;
  std::uint32_t firstManufacturer = 0;  // its manufacturers are the next manufacturerCount records
  std::uint32_t manufacturerCount = 0;
};

struct ManufacturerRecord {
  ByteSpan name;  // the bytes behind its ":"
  std::uint32_t kind;
  POSITION pos;
  TAG_DEVICE_MANUF* manufacturer;
  std::uint32_t firstDevice = 0;  // its devices are the next deviceCount records
  std::uint32_t deviceCount = 0;
};

struct DeviceRecord {
  ByteSpan name;   // its name on its line, a mark byte included
  ByteSpan block;  // from its "{" to its "}", or to where the block ended
  bool closed = false;  // the block ended at its "}"
  std::uint32_t manufacturer;  // under which it went, which may belong to an earlier kind than the last one
  POSITION pos;
  DEVICE_ITEM* device;
  // Its definitions are the next definitionCount records, in the order of
  // its m_DefArray.
  std::uint32_t firstDefinition = 0;
  std::uint32_t definitionCount = 0;
};

struct DefinitionRecord {
  ByteSpan line;  // the line without comment and white space at its ends
  std::uint32_t device;
  std::uint32_t id;  // the offset of its id's first byte
};

// A header list keyword that opened a list (0: HOUSING_LIST, 1:
// ADAPTER_LIST, 2: MODUL_LIST); a keyword may come more than once.
struct ListKeywordRecord {
  ByteSpan keyword;
  int list;
};

// A number of a DEVICE_HOUSING_LIST line that went to its device's
// m_HousingIds: the list entry it was read from, and its index there.
struct HousingNumberRecord {
  ByteSpan entry;
  std::uint32_t device;
  std::uint32_t index;
};

// A number field of a definition line as the reader read it.
struct FieldRecord {
  int field;      // a DevdefDefinitionField
  int index;      // its place in its list, or in m_DefValues
  ByteSpan taken; // the bytes the number took
  ByteSpan word;  // the word it stands in, as it looks: up to a blank, tab or ":" (or "," in a list)
  DWORD value;    // the number stored
  bool hex;       // read in hexadecimal
};

#endif  // DEVDEF_TOOLS_ANALYSIS_RECORDS_H_
