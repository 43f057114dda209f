// devdef.read, devdef.read_bytes and the Catalogue they give.
#ifndef DEVDEF_PYTHON_SRC_CATALOGUE_H_
#define DEVDEF_PYTHON_SRC_CATALOGUE_H_

#include <string>

#include "python/src/catalogue_state.h"

namespace devdef_python {

// The keyword arguments of read(), checked: ValueError for a layout,
// generation or encoding that is none.
ReadOptions MakeReadOptions(const py::object& layout, int generation, bool checkIds, const py::object& encoding);
// Reads the file at path (str or os.PathLike) with the GIL released; raises
// the module's errors.
StatePtr ReadPath(const py::object& path, const ReadOptions& options);
// Reads bytes in the same way.
StatePtr ReadData(std::string bytes, const ReadOptions& options);
// A Catalogue's state, or the state of the file a path names, read.
StatePtr ReadSource(const py::object& source, const ReadOptions& options);

void BindCatalogue(py::module_& module);

}  // namespace devdef_python

#endif  // DEVDEF_PYTHON_SRC_CATALOGUE_H_
