// The catalogue as JSON, one shape for each thing wherever it appears
// (docs/json.md): a kind, a manufacturer, a device and a definition. The
// tool's text output is rendered from the same objects. Names and texts are
// decoded with the run's encoding (tools/output/json_document.h); "line" is the
// 1-based line a thing stands on in the file, null where it is not known.
#ifndef DEVDEF_TOOLS_OUTPUT_CATALOGUE_JSON_H_
#define DEVDEF_TOOLS_OUTPUT_CATALOGUE_JSON_H_

#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/analysis.h"

// A kind or a manufacturer of its record: {"name", "line"}.
nlohmann::json KindJson(const Analysis& analysis, std::uint32_t kind);
nlohmann::json ManufacturerJson(const Analysis& analysis, std::uint32_t manufacturer);
// The definition at index of the device's m_DefArray: {"id", "generation",
// "hidden", "visible_index" (null when hidden), "packages", "package_name",
// "module", "adapters", "values", "text", "marks", "line"}.
nlohmann::json DefinitionJson(const Analysis& analysis, std::uint32_t device, int index);
// A device: {"name", "line", "kind", "manufacturer", "marks", "housings",
// "visible_definitions", "definitions"}, with all its definitions.
nlohmann::json DeviceJson(const Analysis& analysis, std::uint32_t device);
// An array of the devices.
nlohmann::json DevicesJson(const Analysis& analysis, const std::vector<std::uint32_t>& devices);
// Prints document with its field key holding the devices' objects, byte
// for byte as the whole document would print, one device in memory at a
// time.
void PrintDevicesJson(std::FILE* out, nlohmann::json document, const char* key, const Analysis& analysis,
                      const std::vector<std::uint32_t>& devices);

// The frame of the whole catalogue's document: the document frame with the
// header lists "packages", "adapters" and "modules" as numbered names. Its
// field "kinds" follows, each kind with its "manufacturers", each with its
// "devices".
nlohmann::json TreeFrame(const Analysis& analysis);

// What WalkTree hands out: each kind and manufacturer without its list, and
// each device whole, in walk order; kinds and manufacturers without devices
// too.
class TreeVisitor {
 public:
  virtual ~TreeVisitor() = default;
  virtual void Kind(nlohmann::json kind) = 0;
  virtual void Manufacturer(nlohmann::json manufacturer) = 0;
  virtual void Device(const nlohmann::json& device) = 0;
  virtual void EndManufacturer() = 0;
  virtual void EndKind() = 0;
};

// Walks the catalogue, one device's object in memory at a time.
void WalkTree(const Analysis& analysis, TreeVisitor& visitor);

#endif  // DEVDEF_TOOLS_OUTPUT_CATALOGUE_JSON_H_
