// A written file read again through a bare controller of its layout, with
// no analysis around it: nothing of the read is kept but the catalogue, and
// each device is handed over as soon as the reader is done with it, so that
// a comparison can go along with the read and let go of what it compared.
#ifndef DEVDEF_TOOLS_EDIT_READ_BACK_H_
#define DEVDEF_TOOLS_EDIT_READ_BACK_H_

#include <functional>
#include <memory>
#include <string>

#include "devdef/devdef.h"
#include "tools/analysis/analysis_ctrl.h"

// A device of the read-back, complete: the reader has read its block and
// goes on to the next line of the file. Its manufacturer, and the kind of
// that manufacturer (which may be an earlier one than the last kind read).
using DeviceReadBack =
    std::function<void(const TAG_KIND_OF_DEVICE& kind, const TAG_DEVICE_MANUF& manuf, const DEVICE_ITEM& device)>;

// Reads the file at path with the controller of layout (1, 2 or 7),
// emptying the process-wide name lists first, the library's message boxes
// silent, and calls deviceRead for each device in the order of the file.
// The controller with its catalogue, which the caller may walk afterwards;
// *read tells whether the library read the file (ReadDefFile gave 1). When
// it did not, devices read before it stopped may have been handed over.
std::unique_ptr<AnalysisCtrl> ReadBack(const std::string& path, int layout, const DeviceReadBack& deviceRead,
                                       bool* read);

#endif  // DEVDEF_TOOLS_EDIT_READ_BACK_H_
