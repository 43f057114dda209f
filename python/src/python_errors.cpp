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

void RaiseEditRefused(const std::string& reason, LineColumn place, const std::vector<LineColumn>& related,
                      const py::object& path) {
  const bool placed = place.line > 0;
  py::list relatedPlaces;
  for (const LineColumn& at : related) relatedPlaces.append(py::make_tuple(at.line, at.column));
  Raise("EditRefused", py::module_::import("devdef.errors").attr("EditRefused")(
                           reason, py::arg("line") = placed ? py::object(py::int_(place.line)) : py::object(py::none()),
                           py::arg("path") = path,
                           py::arg("column") = placed ? py::object(py::int_(place.column)) : py::object(py::none()),
                           py::arg("related") = relatedPlaces));
}

void RaiseOsError(int error, const py::object& path) {
  errno = error;
  PyErr_SetFromErrnoWithFilenameObject(PyExc_OSError, path.ptr());
  throw py::error_already_set();
}

}  // namespace devdef_python
