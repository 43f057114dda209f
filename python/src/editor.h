// devdef.edit and the Editor it gives: the operations of devdef edit as
// methods, verified by the same engine.
#ifndef DEVDEF_PYTHON_SRC_EDITOR_H_
#define DEVDEF_PYTHON_SRC_EDITOR_H_

#include "python/src/catalogue_state.h"

namespace devdef_python {

void BindEditor(py::module_& module);

}  // namespace devdef_python

#endif  // DEVDEF_PYTHON_SRC_EDITOR_H_
