// The tool's text output, written from the analysis's records into an
// output buffer. Names and texts are decoded with the run's encoding and
// show their control characters escaped (tools/text/control_escape.h).
#ifndef DEVDEF_TOOLS_OUTPUT_TEXT_OUTPUT_H_
#define DEVDEF_TOOLS_OUTPUT_TEXT_OUTPUT_H_

#include <cstdint>
#include <string>

#include "tools/analysis/analysis.h"
#include "tools/output/output_buffer.h"

// The whole catalogue: each kind, its manufacturers indented under it, and
// their devices under them, each with its visible definitions.
void WriteTreeText(OutputBuffer& out, const Analysis& analysis);
// "kind / manufacturer / name" of a device.
std::string DevicePathText(const Analysis& analysis, std::uint32_t device);
// A device's line in a list: "kind / manufacturer / device (N visible)".
void WriteListLine(OutputBuffer& out, const Analysis& analysis, std::uint32_t device);
// Everything about one device, hidden definitions marked, with the lines of
// the device and its definitions.
void WriteDeviceText(OutputBuffer& out, const Analysis& analysis, std::uint32_t device);
// Where the definition at index of a device's m_DefArray stands, with its
// lines, and its fields; the definition is visible.
void WriteFoundText(OutputBuffer& out, const Analysis& analysis, std::uint32_t device, int index);

#endif  // DEVDEF_TOOLS_OUTPUT_TEXT_OUTPUT_H_
