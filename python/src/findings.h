// devdef.check and the Finding it gives: what devdef check --json says of a
// file, one object for each finding shown (repeats along a line merged).
#ifndef DEVDEF_PYTHON_SRC_FINDINGS_H_
#define DEVDEF_PYTHON_SRC_FINDINGS_H_

#include "python/src/catalogue_state.h"

namespace devdef_python {

// The findings of a catalogue's read as a list of Finding.
py::list FindingsOf(const StatePtr& state);

void BindFindings(py::module_& module);

}  // namespace devdef_python

#endif  // DEVDEF_PYTHON_SRC_FINDINGS_H_
