// The tool's text output, rendered from the JSON objects of the catalogue
// (tools/catalogue_json.h).
#ifndef DEVDEF_TOOLS_TEXT_OUTPUT_H_
#define DEVDEF_TOOLS_TEXT_OUTPUT_H_

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

// The tree of kinds, manufacturers and devices with the visible definitions.
void PrintTreeText(std::FILE* out, const nlohmann::json& tree);
// "kind / manufacturer / name" of a device object.
std::string DevicePathText(const nlohmann::json& device);
// One line per device: "kind / manufacturer / device (N visible)".
void PrintListText(std::FILE* out, const nlohmann::json& devices);
// Everything about one device, hidden definitions marked, with the lines of
// the device and its definitions where they are known.
void PrintDeviceText(std::FILE* out, const nlohmann::json& device);
// Where a definition of a device stands, with its lines where known, and
// its fields.
void PrintFoundText(std::FILE* out, const nlohmann::json& device, const nlohmann::json& definition);

#endif  // DEVDEF_TOOLS_TEXT_OUTPUT_H_
