// devdef.diff and the Change it gives.
#ifndef DEVDEF_PYTHON_SRC_CHANGES_H_
#define DEVDEF_PYTHON_SRC_CHANGES_H_

#include <vector>

#include "python/src/catalogue_state.h"
#include "tools/diff/catalogue_diff.h"

namespace devdef_python {

// The changes as a list of Change, their names decoded as the run's
// encoding decodes them (the library lock held).
py::list ChangeList(const std::vector<DiffChange>& changes);

void BindChanges(py::module_& module);

}  // namespace devdef_python

#endif  // DEVDEF_PYTHON_SRC_CHANGES_H_
