// Finding devices in the catalogue by name or by definition id, the same
// for every command. A device is named by its record in the analysis.
#ifndef DEVDEF_TOOLS_LOOKUP_DEVICE_LOOKUP_H_
#define DEVDEF_TOOLS_LOOKUP_DEVICE_LOOKUP_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/lookup/name_match.h"

// What a name or pattern found: the devices it names (their records), in
// catalogue order, else the closest ones.
struct DeviceLookup {
  std::vector<std::uint32_t> matches;
  std::vector<std::uint32_t> closest;  // when nothing matched and the argument has no wildcards; closest first
};

// The devices named by pattern, their names decoded with the run's
// encoding: those whose name equals the argument (folded); when there are
// none, those it matches as a pattern. With allFields a device's kind and
// manufacturer count as names of it. When nothing matches and the argument
// has no wildcards, up to closestCount devices with the closest names. One
// walk over the records.
DeviceLookup LookUpDevices(const Analysis& analysis, const NamePattern& pattern, bool allFields, size_t closestCount);

// The visible definition with this id as the library's look-up finds it:
// its device's record into device and its index in the device's
// m_DefArray into index; false when no visible definition has the id.
bool FindVisibleDefinition(Analysis& analysis, std::uint32_t id, std::uint32_t* device, int* index);

// Every device with a definition of this id, visible or hidden, in
// catalogue order.
std::vector<std::uint32_t> DevicesWithId(const Analysis& analysis, std::uint32_t id);

// The generations of the hidden definitions of the devices (those with id
// only, unless anyId), each once, in the order they first stand.
std::vector<unsigned> HiddenGenerations(const Analysis& analysis, const std::vector<std::uint32_t>& devices, bool anyId,
                                        std::uint32_t id);

#endif  // DEVDEF_TOOLS_LOOKUP_DEVICE_LOOKUP_H_
