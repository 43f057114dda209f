// The catalogue as JSON, one shape for each thing wherever it appears
// (docs/json.md): a kind, a manufacturer, a device and a definition,
// written from the analysis's records as they are walked. Names and texts
// are decoded with the run's encoding (tools/output/json_document.h);
// "line" is the 1-based line a thing stands on in the file. Keys are
// written in alphabetical order.
#ifndef DEVDEF_TOOLS_OUTPUT_CATALOGUE_JSON_H_
#define DEVDEF_TOOLS_OUTPUT_CATALOGUE_JSON_H_

#include <cstdint>
#include <functional>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/analysis.h"
#include "tools/output/json_document.h"
#include "tools/output/json_writer.h"

// A kind of its record: {"line", "name"}; with manufacturers, also the
// member "manufacturers", whose value it writes.
void WriteKind(JsonWriter& writer, const Analysis& analysis, std::uint32_t kind,
               const std::function<void()>& manufacturers = nullptr);
// A manufacturer: {"line", "name"}; with devices, also the member "devices".
void WriteManufacturer(JsonWriter& writer, const Analysis& analysis, std::uint32_t manufacturer,
                       const std::function<void()>& devices = nullptr);
// The definition at index of the device's m_DefArray: {"adapters",
// "generation", "hidden", "id", "line", "marks", "module", "package_name",
// "packages", "text", "values", "visible_index" (null when hidden)}.
void WriteDefinition(JsonWriter& writer, const Analysis& analysis, std::uint32_t device, int index);
// A device: {"definitions", "housings", "kind", "line", "manufacturer",
// "marks", "name", "visible_definitions"}, with all its definitions.
void WriteDevice(JsonWriter& writer, const Analysis& analysis, std::uint32_t device);
// An array of the devices.
void WriteDevices(JsonWriter& writer, const Analysis& analysis, const std::vector<std::uint32_t>& devices);

// The members of a document of devices found (list, show): key with the
// devices and, when there are none, "candidates" with the devices meant
// perhaps (docs/json.md). The vectors must outlive the members.
std::vector<DocumentField> DevicesFields(const Analysis& analysis, const char* key,
                                         const std::vector<std::uint32_t>& devices,
                                         const std::vector<std::uint32_t>& candidates);

// The whole catalogue's document: the frame, the header lists "packages",
// "adapters" and "modules" as numbered names, and "kinds", each kind with
// its "manufacturers", each with its "devices"; kinds and manufacturers
// without devices too.
void WriteTreeDocument(JsonWriter& writer, const Analysis& analysis);

#endif  // DEVDEF_TOOLS_OUTPUT_CATALOGUE_JSON_H_
