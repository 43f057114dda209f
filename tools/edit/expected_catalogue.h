// The catalogue an edit asks for, by meaning: the old file's catalogue as a
// tree of kinds, manufacturers, devices and definitions, which an
// operation changes as it asks, and which the edited file, read again, must
// equal exactly, in the order of its walk.
//
// Definitions that an edit does not touch are not copied: they are read
// from the old catalogue when compared. Numbers of the old file go through
// a map per list when a list entry is inserted or removed; with the lists
// themselves compared entry by entry, comparing the numbers is comparing
// the names they stand for, and also tells apart entries of equal names.
#ifndef DEVDEF_TOOLS_EDIT_EXPECTED_CATALOGUE_H_
#define DEVDEF_TOOLS_EDIT_EXPECTED_CATALOGUE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"

// A definition's fields, as an edit asks for them.
struct DefinitionFields {
  BYTE generation = 5;
  DWORD marks = 0;
  std::vector<WORD> packages;
  DWORD module = 0;
  std::vector<WORD> adapters;
  DWORD values[11] = {};
  std::string text;
};

struct ExpectedDefinition {
  std::uint32_t oldRecord = kNoRecord;  // the definition it was in the old file, or none
  int fields = -1;                      // into ExpectedCatalogue::fields; -1: the old definition's, numbers mapped
  DWORD id = 0;
};

struct ExpectedDevice {
  std::uint32_t oldRecord = kNoRecord;
  std::string name;  // as the reader makes it: a blank for each "_"
  DWORD flags = 0;
  std::vector<WORD> housings;  // numbers of the old file (mapped) unless new
  std::vector<ExpectedDefinition> definitions;
};

struct ExpectedManufacturer {
  std::uint32_t oldRecord = kNoRecord;
  std::string name;
  std::vector<ExpectedDevice> devices;
};

struct ExpectedKind {
  std::uint32_t oldRecord = kNoRecord;
  std::string name;
  std::vector<ExpectedManufacturer> manufacturers;
};

// Where a device of the old file stands in the tree.
struct DevicePlace {
  std::uint32_t kind = 0;
  std::uint32_t manufacturer = 0;
  std::uint32_t device = 0;
};

// How a number of the old file's list reads after an entry is inserted
// (at, +1 from there on) or removed (at, -1 behind it, and the number at
// itself becomes replacement).
struct NumberMap {
  long insertedAt = -1;
  long removedAt = -1;
  DWORD replacement = 0;
  DWORD Map(DWORD number) const;
};

// Where the edited file differs from what was asked: why, and the place in
// the edited file.
struct Mismatch {
  std::string reason;
  ByteSpan place;
};

class ExpectedCatalogue {
 public:
  // The catalogue of old as it stands; old must outlive this.
  explicit ExpectedCatalogue(Analysis& old);

  Analysis& Old() { return m_old; }
  std::vector<ExpectedKind> kinds;
  std::vector<std::string> lists[3];
  NumberMap numbers[3];
  std::vector<DefinitionFields> fields;

  // Where the device of an old record stands (before any change of the
  // tree).
  const DevicePlace& PlaceOf(std::uint32_t deviceRecord) const { return m_places[deviceRecord]; }
  ExpectedDevice& DeviceAt(const DevicePlace& place) {
    return kinds[place.kind].manufacturers[place.manufacturer].devices[place.device];
  }
  // The fields of an expected definition as the edited file must hold
  // them: its own, or the old definition's with numbers mapped.
  DefinitionFields FieldsOf(const ExpectedDefinition& definition);
  // Makes the fields of a definition its own, to change them; gives them.
  DefinitionFields& Own(ExpectedDefinition& definition);

  // Compares the catalogue of edited (the edited file read again) with
  // this one; false, with where and why, at the first difference in the
  // order of the walk.
  bool Matches(Analysis& edited, Mismatch* mismatch);

 private:
  bool MatchLists(Analysis& edited, Mismatch* mismatch);
  // Whether def holds what old held, its numbers mapped.
  bool SameAsOld(const DEVICE_KVRXDEF_ITEM& def, const DEVICE_KVRXDEF_ITEM& old) const;
  bool MatchDevice(Analysis& edited, ExpectedDevice& expected, std::uint32_t record, Mismatch* mismatch);
  bool MatchDefinition(Analysis& edited, const ExpectedDefinition& expected, std::uint32_t record,
                       const std::string& device, Mismatch* mismatch);

  Analysis& m_old;
  std::vector<DevicePlace> m_places;
};

// The fields of a definition of the catalogue.
DefinitionFields FieldsOfDefinition(const DEVICE_KVRXDEF_ITEM& def);

#endif  // DEVDEF_TOOLS_EDIT_EXPECTED_CATALOGUE_H_
