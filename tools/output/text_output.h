// The tool's text output, rendered from the JSON objects of the catalogue
// (tools/output/catalogue_json.h). Names and texts show their control
// characters escaped (tools/text/control_escape.h).
#ifndef DEVDEF_TOOLS_OUTPUT_TEXT_OUTPUT_H_
#define DEVDEF_TOOLS_OUTPUT_TEXT_OUTPUT_H_

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

// A device of the tree, under its kind's and manufacturer's names, with its
// visible definitions.
void PrintTreeDeviceText(std::FILE* out, const nlohmann::json& device);
// "kind / manufacturer / name" of a device object.
std::string DevicePathText(const nlohmann::json& device);
// A device's line in a list: "kind / manufacturer / device (N visible)".
void PrintListLine(std::FILE* out, const nlohmann::json& device);
// Everything about one device, hidden definitions marked, with the lines of
// the device and its definitions where they are known.
void PrintDeviceText(std::FILE* out, const nlohmann::json& device);
// Where a definition of a device stands, with its lines where known, and
// its fields.
void PrintFoundText(std::FILE* out, const nlohmann::json& device, const nlohmann::json& definition);

#endif  // DEVDEF_TOOLS_OUTPUT_TEXT_OUTPUT_H_
