// The module's errors as the exceptions of the devdef package
// (devdef/errors.py): each function raises one and does not return.
#ifndef DEVDEF_PYTHON_SRC_PYTHON_ERRORS_H_
#define DEVDEF_PYTHON_SRC_PYTHON_ERRORS_H_

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

namespace devdef_python {

namespace py = pybind11;

// NotADefinitionFile or LayoutMismatch, with the one line that says why.
[[noreturn]] void RaiseReadError(const char* exception, const std::string& message, const py::object& path);
// UnknownName (nothing named) or AmbiguousName (several named), with the
// names that match or come closest.
[[noreturn]] void RaiseNameError(bool ambiguous, const std::string& message, const std::vector<std::string>& candidates);
// A line and column of a file (1-based); line 0 where there is none.
struct LineColumn {
  long line = 0;
  long column = 0;
};

// EditRefused: why, the place (of the file before the edit) that the
// reason is about, and the further places it speaks of.
[[noreturn]] void RaiseEditRefused(const std::string& reason, LineColumn place, const std::vector<LineColumn>& related,
                                   const py::object& path);
// The OSError of errno for path: FileNotFoundError, PermissionError, ...
[[noreturn]] void RaiseOsError(int error, const py::object& path);

}  // namespace devdef_python

#endif  // DEVDEF_PYTHON_SRC_PYTHON_ERRORS_H_
