// The catalogue as JSON documents with stable field names; the tool's text
// output is rendered from the same documents. Devices and definitions carry
// the 1-based line they stand on in the file, null where it is not known.
#ifndef DEVDEF_TOOLS_CATALOGUE_JSON_H_
#define DEVDEF_TOOLS_CATALOGUE_JSON_H_

#include <nlohmann/json.hpp>

#include "devdef/devdef.h"
#include "tools/analysis/analysis.h"

// The line of the device's name in the file, or null.
nlohmann::json DeviceLine(const Analysis& analysis, const DEVICE_ITEM& device);
// The definition at index of the device's m_DefArray: id, generation,
// hidden, visible_index (null when hidden), packages, package_name, module,
// adapters, values, text, marks, line.
nlohmann::json DefinitionJson(const Analysis& analysis, DEVICE_ITEM& device, int index);
// One device with all its definitions: kind, manufacturer, name, line,
// marks, housings, visible_definitions, definitions.
nlohmann::json DeviceJson(const Analysis& analysis, TAG_KIND_OF_DEVICE& kind, TAG_DEVICE_MANUF& manuf,
                          DEVICE_ITEM& device);
// The whole catalogue the analysis read: layout, header lists and the tree
// of kinds, manufacturers and devices.
nlohmann::json TreeJson(Analysis& analysis);

#endif  // DEVDEF_TOOLS_CATALOGUE_JSON_H_
