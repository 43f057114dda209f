// Prints a catalogue as an indented tree, and single definitions found by id.
#ifndef DEVDEF_TOOLS_TREE_PRINTER_H_
#define DEVDEF_TOOLS_TREE_PRINTER_H_

#include <cstdio>

#include "devdef/devdef.h"

void PrintTree(std::FILE* out, KCDeviceDefCtrl& ctrl);

// Finds the visible definition with the id and prints where it stands and
// its fields. Returns false when no visible definition has the id.
bool PrintFoundId(std::FILE* out, KCDeviceDefCtrl& ctrl, int nId);

#endif  // DEVDEF_TOOLS_TREE_PRINTER_H_
