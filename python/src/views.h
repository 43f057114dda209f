// The objects Python sees of a catalogue: each is its catalogue's state and
// the index of a record of its analysis, so it stays valid as long as it
// lives, whatever else the caller keeps or drops.
#ifndef DEVDEF_PYTHON_SRC_VIEWS_H_
#define DEVDEF_PYTHON_SRC_VIEWS_H_

#include <cstdint>

#include "python/src/catalogue_state.h"

namespace devdef_python {

struct CatalogueView {
  StatePtr state;
};

struct KindView {
  StatePtr state;
  std::uint32_t record;
};

struct ManufacturerView {
  StatePtr state;
  std::uint32_t record;
};

struct DeviceView {
  StatePtr state;
  std::uint32_t record;
};

struct DefinitionView {
  StatePtr state;
  std::uint32_t record;
};

// The classes Catalogue, Kind, Manufacturer, Device and Definition.
void BindViews(py::module_& module);

// A Python list of the devices of records.
py::list DeviceList(const StatePtr& state, const std::vector<std::uint32_t>& records);

}  // namespace devdef_python

#endif  // DEVDEF_PYTHON_SRC_VIEWS_H_
