// Writing the tool's output files so that an existing file is never left
// half-written: the bytes go to a temporary file in the target's directory,
// which is renamed into place only when the library reported success.
#ifndef DEVDEF_TOOLS_FILE_OUTPUT_H_
#define DEVDEF_TOOLS_FILE_OUTPUT_H_

#include <string>

#include "devdef/devdef.h"

enum class DefOutput { kWrite, kConvert };

// Writes ctrl's catalogue (or its conversion) to outPath. On failure a
// message is on standard error, nothing is left behind, and the result is
// false.
bool WriteDefinitionFile(KCDeviceDefCtrl& ctrl, DefOutput what, const std::string& outPath);

// Writes the device list of the layout 7 file at inPath into dir as
// "k4devicelist.txt". Same guarantees as above.
bool ExportDeviceList(const std::string& inPath, int generation, const std::string& dir);

#endif  // DEVDEF_TOOLS_FILE_OUTPUT_H_
