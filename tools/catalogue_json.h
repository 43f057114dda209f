// The catalogue as JSON, one shape for each thing wherever it appears
// (docs/json.md): a kind, a manufacturer, a device and a definition. The
// tool's text output is rendered from the same objects. Names and texts are
// decoded with the run's encoding (tools/json_document.h); "line" is the
// 1-based line a thing stands on in the file, null where it is not known.
#ifndef DEVDEF_TOOLS_CATALOGUE_JSON_H_
#define DEVDEF_TOOLS_CATALOGUE_JSON_H_

#include <nlohmann/json.hpp>

#include "devdef/devdef.h"
#include "tools/analysis/analysis.h"
#include "tools/device_lookup.h"

// A kind or a manufacturer: {"name", "line"}.
nlohmann::json KindJson(const Analysis& analysis, POSITION kindPos, const TAG_KIND_OF_DEVICE& kind);
nlohmann::json ManufacturerJson(const Analysis& analysis, POSITION manufPos, const TAG_DEVICE_MANUF& manuf);
// The definition at index of the device's m_DefArray: {"id", "generation",
// "hidden", "visible_index" (null when hidden), "packages", "package_name",
// "module", "adapters", "values", "text", "marks", "line"}.
nlohmann::json DefinitionJson(const Analysis& analysis, DEVICE_ITEM& device, int index);
// A device: {"name", "line", "kind", "manufacturer", "marks", "housings",
// "visible_definitions", "definitions"}, with all its definitions.
nlohmann::json DeviceJson(const Analysis& analysis, const DeviceAt& at);
// An array of the devices.
nlohmann::json DevicesJson(const Analysis& analysis, const std::vector<DeviceAt>& devices);
// The whole catalogue: the document frame, the header lists "packages",
// "adapters" and "modules" as numbered names, and "kinds", each kind with
// its "manufacturers", each with its "devices".
nlohmann::json TreeJson(Analysis& analysis);

#endif  // DEVDEF_TOOLS_CATALOGUE_JSON_H_
