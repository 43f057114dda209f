// The catalogue as a table for other programs: one row per definition with
// the path of its device, as CSV or as JSON Lines. Both are written as the
// catalogue is walked (kinds, their manufacturers, their devices, each
// device's definitions in file order), so what they take in memory does
// not grow with their size. Names and texts are decoded with the run's
// encoding.
#ifndef DEVDEF_TOOLS_OUTPUT_PUBLISHED_TABLE_H_
#define DEVDEF_TOOLS_OUTPUT_PUBLISHED_TABLE_H_

#include "tools/analysis/analysis.h"
#include "tools/output/output_buffer.h"
#include "tools/output/published_page.h"

// CSV as RFC 4180 has it: UTF-8, a header row, lines ended by CR LF, a
// field in double quotes when it holds a comma, a double quote (doubled
// inside) or a line end. The columns: kind, manufacturer, device,
// device_line, id, generation, hidden (true or false), package_name (empty
// when hidden or none), packages, module, adapters (names; a number the
// header list has no name for as #N; a list's names joined with ';'), text
// and line. Bytes that UTF-8 cannot decode, where it is the run's encoding,
// are U+FFFD.
void WritePublishedCsv(OutputBuffer& out, const Analysis& analysis, const PublishOptions& options);

// JSON Lines: one object on a line per definition, {"definition": the
// definition object of the JSON documents, "device": {"line", "name"},
// "kind": {"line", "name"}, "manufacturer": {"line", "name"}}.
void WritePublishedJsonLines(OutputBuffer& out, const Analysis& analysis, const PublishOptions& options);

#endif  // DEVDEF_TOOLS_OUTPUT_PUBLISHED_TABLE_H_
