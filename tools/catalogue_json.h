// The catalogue as JSON documents with stable field names; the tool's text
// output is rendered from the same documents.
#ifndef DEVDEF_TOOLS_CATALOGUE_JSON_H_
#define DEVDEF_TOOLS_CATALOGUE_JSON_H_

#include <nlohmann/json.hpp>
#include <string>

#include "devdef/devdef.h"

// A byte string of the catalogue as UTF-8: bytes of 0x80 and above are
// taken as Latin-1.
std::string ToUtf8(const char* bytes, size_t length);
std::string ToUtf8(const CString& text);

// One definition: id, generation, hidden, visible_index (null when hidden),
// packages, package_name, module, adapters, values, text, marks.
nlohmann::json DefinitionJson(DEVICE_ITEM& device, DEVICE_KVRXDEF_ITEM& def);
// One device with all its definitions: kind, manufacturer, name, marks,
// housings, visible_definitions, definitions.
nlohmann::json DeviceJson(TAG_KIND_OF_DEVICE& kind, TAG_DEVICE_MANUF& manuf, DEVICE_ITEM& device);
// The whole catalogue: layout, header lists and the tree of kinds,
// manufacturers and devices.
nlohmann::json TreeJson(KCDeviceDefCtrl& ctrl, int layout);

#endif  // DEVDEF_TOOLS_CATALOGUE_JSON_H_
