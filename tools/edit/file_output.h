// Writing the tool's output files so that an existing file is never left
// half-written: the bytes go to a temporary file in the target's directory,
// which is renamed into place only when the library reported success.
#ifndef DEVDEF_TOOLS_EDIT_FILE_OUTPUT_H_
#define DEVDEF_TOOLS_EDIT_FILE_OUTPUT_H_

#include <cstdio>
#include <functional>
#include <string>

#include "devdef/devdef.h"
#include "tools/analysis/analysis.h"
#include "tools/edit/temp_path.h"

enum class DefOutput { kWrite, kConvert };

enum class WriteOutcome {
  kWritten,  // the file is in place
  kRefused,  // verify refused the written bytes: nothing was written
  kFailed,   // a failure, reported on standard error: nothing was written
  kStopped,  // the library's write or conversion gave 0, not yet reported: nothing was written
};

// Where the problems of these writes are said: by default one line each on
// standard error ("devdef: cannot write 'x': Permission denied"); a caller
// that reports them in its own way (the Python module) takes each message,
// without the "devdef: ", with the errno that stood when it was found.
// Null restores the default; the previous one is returned.
using WriteProblemSink = void (*)(const std::string& message, int error);
WriteProblemSink SetWriteProblemSink(WriteProblemSink sink);

// Writes ctrl's catalogue (or its conversion) to outPath ("-": standard
// output). The bytes go to a temporary file first; verify, when given, is
// called with its path and may refuse it. Only then is the file renamed
// into place, with the mode, owner and group of the file it replaces (or,
// for standard output, a device or a pipe, copied there). A file that may
// not be written, or that is read-only, is refused before anything is
// written.
WriteOutcome WriteDefinitionFile(KCDeviceDefCtrl& ctrl, DefOutput what, const std::string& outPath,
                                 const std::function<bool(const std::string& writtenPath)>& verify);

// Writes bytes to outPath ("-": standard output) in the same way: through
// a temporary file renamed into place with the mode of the file it
// replaces; kWritten or kFailed (reported).
WriteOutcome WriteFileBytes(const std::string& bytes, const std::string& outPath);

// The same for output made as it is written, which need not fit in memory:
// write puts it into the temporary file's stream (whose error state says
// whether it got there).
WriteOutcome WriteFileStream(const std::function<void(std::FILE*)>& write, const std::string& outPath);

// Makes a new directory inside dir, held by exportDir, for a controller's
// device list export (its path prefix), so that nothing half-written ever
// stands in dir; false, with a message, on failure.
bool MakeExportDirectory(const std::string& dir, TempPath* exportDir);

// Writes the device list of ctrl, the controller of analysis whose path
// prefix is exportDir + "/", and moves it into dir as "k4devicelist.txt"
// when every row is there, with the mode of the file it replaces. A
// read-only k4devicelist.txt is not replaced. On failure a message is on
// standard error, nothing is left behind, and the result is false.
bool ExportDeviceList(const Analysis& analysis, KCDeviceDefCtrlV3& ctrl, const std::string& exportDir,
                      const std::string& dir);

#endif  // DEVDEF_TOOLS_EDIT_FILE_OUTPUT_H_
