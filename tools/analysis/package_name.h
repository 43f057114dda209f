// The package name of a visible definition, as its device gives it.
#ifndef DEVDEF_TOOLS_ANALYSIS_PACKAGE_NAME_H_
#define DEVDEF_TOOLS_ANALYSIS_PACKAGE_NAME_H_

#include "devdef/devdef.h"

// The device finds a definition by its visible index with a walk over its
// definitions, so asking it for each of many would cost their number
// squared: the name is asked of a device that holds a copy of this
// definition alone. Null when the library gives none; the text lives
// until the next call.
const char* PackageNameOf(DEVICE_KVRXDEF_ITEM& def);

#endif  // DEVDEF_TOOLS_ANALYSIS_PACKAGE_NAME_H_
