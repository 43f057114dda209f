#include "python/src/python_errors.h"

#include <pybind11/stl.h>

namespace devdef_python {

namespace {

[[noreturn]] void Raise(const char* name, const py::object& exception) {
  const py::object type = py::module_::import("devdef.errors").attr(name);
  PyErr_SetObject(type.ptr(), exception.ptr());
  throw py::error_already_set();
}

}  // namespace

void RaiseReadError(const char* exception, const std::string& message, const py::object& path) {
  Raise(exception, py::module_::import("devdef.errors").attr(exception)(message, py::arg("path") = path));
}

void RaiseNameError(bool ambiguous, const std::string& message, const std::vector<std::string>& candidates) {
  const char* name = ambiguous ? "AmbiguousName" : "UnknownName";
  Raise(name, py::module_::import("devdef.errors").attr(name)(message, py::arg("candidates") = candidates));
}

void RaiseEditRefused(const std::string& reason, long line, const py::object& path) {
  Raise("EditRefused", py::module_::import("devdef.errors").attr("EditRefused")(
                           reason, py::arg("line") = line > 0 ? py::object(py::int_(line)) : py::object(py::none()),
                           py::arg("path") = path));
}

void RaiseOsError(int error, const py::object& path) {
  errno = error;
  PyErr_SetFromErrnoWithFilenameObject(PyExc_OSError, path.ptr());
  throw py::error_already_set();
}

}  // namespace devdef_python
