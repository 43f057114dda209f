// The extension module devdef._devdef, which the devdef package opens.
#include <pybind11/pybind11.h>

#include "python/src/catalogue.h"
#include "python/src/changes.h"
#include "python/src/editor.h"
#include "python/src/findings.h"
#include "python/src/views.h"

namespace {

// The library's message boxes come only from reads, which the analysis
// turns into findings; any other is kept from the terminal of a Python
// program as well and answered at once.
int SilentBox(LPCSTR, LPCSTR, UINT) { return IDOK; }

}  // namespace

PYBIND11_MODULE(_devdef, m) {
  m.doc() = "The devdef library, its analysis, diff and edit engine (use the devdef package).";
  AfxSetMessageBoxHandler(&SilentBox);
  devdef_python::BindViews(m);
  devdef_python::BindCatalogue(m);
  devdef_python::BindFindings(m);
  devdef_python::BindChanges(m);
  devdef_python::BindEditor(m);
}
