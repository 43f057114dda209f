// What the words of an operation name in the file: a device (through the
// name matcher every command shares), a definition (by id, or DEVICE#N),
// a kind, a manufacturer, a header list and its entries. A name that names
// nothing or several things makes the step Unknown, with candidates.
#ifndef DEVDEF_TOOLS_EDIT_EDIT_ADDRESS_H_
#define DEVDEF_TOOLS_EDIT_EDIT_ADDRESS_H_

#include <cstdint>
#include <string>

#include "tools/edit/edit_step.h"

// The device record that name (or record, when set) names.
bool FindDevice(EditStep& step, const std::string& name, std::uint32_t record, std::uint32_t* device);
// The definition record that name (an id, or DEVICE#N from 1) or record names.
bool FindDefinition(EditStep& step, const std::string& name, std::uint32_t record, std::uint32_t* definition);
// The kind record of that name, or kNoRecord when there is none (and
// mayBeMissing); false when there are several, or none and !mayBeMissing.
bool FindKind(EditStep& step, const std::string& name, bool mayBeMissing, std::uint32_t* kind);
// The manufacturer record of that name under the kind record, as FindKind.
bool FindManufacturer(EditStep& step, std::uint32_t kind, const std::string& name, bool mayBeMissing,
                      std::uint32_t* manufacturer);
// The header list that a word names: "housing", "adapter" or "module"
// (or the list's keyword); -1 for anything else.
int ListOfWord(const std::string& word);
// The index of the entry of a list that name names.
bool FindEntry(EditStep& step, int list, const std::string& name, long* index);
// A number of a list: an entry's name, or a number.
bool ResolveNumber(EditStep& step, int list, const std::string& value, DWORD* number);
// "Kind / Manufacturer / Device (line N)" of a device record.
std::string DevicePath(Analysis& a, std::uint32_t device);

#endif  // DEVDEF_TOOLS_EDIT_EDIT_ADDRESS_H_
