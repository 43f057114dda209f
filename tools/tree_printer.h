// Prints a catalogue as an indented tree.
#ifndef DEVDEF_TOOLS_TREE_PRINTER_H_
#define DEVDEF_TOOLS_TREE_PRINTER_H_

#include <cstdio>

#include "devdef/devdef.h"

void PrintTree(std::FILE* out, KCDeviceDefCtrl& ctrl);

#endif  // DEVDEF_TOOLS_TREE_PRINTER_H_
