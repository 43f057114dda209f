#include "python/src/changes.h"

#include <pybind11/stl.h>

#include "python/src/catalogue.h"
#include "tools/text/text_encoding.h"

namespace devdef_python {

namespace {

// A change as devdef diff --json gives it, its names decoded.
struct ChangeValue {
  std::string change;
  std::string what;
  std::vector<std::string> path;
  py::object name;
  py::object oldName;
  py::object id;
  py::dict fields;
  py::object from;
  py::object oldLine;
  py::object newLine;
};

py::object ValueOf(const DiffValue& value) {
  switch (value.type) {
    case DiffValue::Type::kNone:
      return py::none();
    case DiffValue::Type::kNumber:
      return py::int_(value.number);
    case DiffValue::Type::kText:
      return py::str(ShownText(value.text));
    case DiffValue::Type::kList: {
      py::list items;
      for (const DiffValue& item : value.items) items.append(ValueOf(item));
      return std::move(items);
    }
  }
  return py::none();
}

std::vector<std::string> Shown(const std::vector<std::string>& names) {
  std::vector<std::string> out;
  for (const std::string& name : names) out.push_back(ShownText(name));
  return out;
}

py::object LineOrNone(long line) { return line > 0 ? py::object(py::int_(line)) : py::object(py::none()); }

}  // namespace

py::list ChangeList(const std::vector<DiffChange>& changes) {
  py::list out;
  for (const DiffChange& c : changes) {
    ChangeValue value;
    value.change = ChangeName(c.change);
    value.what = WhatName(c.what);
    value.path = Shown(c.path);
    value.name = c.name.empty() ? py::object(py::none()) : py::object(py::str(ShownText(c.name)));
    value.oldName = c.change == DiffChange::Change::kRenamed ? py::object(py::str(ShownText(c.oldName)))
                                                             : py::object(py::none());
    value.id = c.hasId ? py::object(py::int_(static_cast<unsigned>(c.id))) : py::object(py::none());
    // Of a field given twice, the last value, as the JSON form keeps it.
    for (const auto& field : c.fields) {
      value.fields[py::str(field.first)] = py::make_tuple(ValueOf(field.second.first), ValueOf(field.second.second));
    }
    value.from = c.from.empty() ? py::object(py::none()) : py::cast(Shown(c.from));
    value.oldLine = LineOrNone(c.oldLine);
    value.newLine = LineOrNone(c.newLine);
    out.append(py::cast(std::move(value)));
  }
  return out;
}

void BindChanges(py::module_& m) {
  py::class_<ChangeValue>(m, "Change", "One change between two catalogues by meaning, as devdef diff --json gives it.")
      .def_readonly("change", &ChangeValue::change, "'added', 'removed', 'changed', 'moved' or 'renamed'.")
      .def_readonly("what", &ChangeValue::what, "'kind', 'manufacturer', 'device', 'definition' or 'list-entry'.")
      .def_readonly("path", &ChangeValue::path,
                    "The names from the kind down to the thing's parent (for a move: in the new file); for a list "
                    "entry, the list's keyword.")
      .def_readonly("name", &ChangeValue::name, "The thing's own name; None for a definition.")
      .def_readonly("old_name", &ChangeValue::oldName, "For a renamed device: its old name; else None.")
      .def_readonly("id", &ChangeValue::id, "For a definition: its id; else None.")
      .def_readonly("fields", &ChangeValue::fields,
                    "Each changed field with (old, new); for a thing added or removed, every field it has, None on "
                    "the other side.")
      .def_readonly("from_path", &ChangeValue::from, "For a moved or renamed device: its old path; else None.")
      .def_property_readonly(
          "to_path", [](const ChangeValue& c) { return c.from.is_none() ? py::object(py::none()) : py::cast(c.path); },
          "For a moved or renamed device: its new path; else None.")
      .def_readonly("old_line", &ChangeValue::oldLine, "Its line in the old file; None when not there.")
      .def_readonly("new_line", &ChangeValue::newLine, "Its line in the new file; None when not there.")
      .def("__repr__", [](const ChangeValue& c) {
        std::string path;
        for (const std::string& name : c.path) path += name + "/";
        std::string own = c.name.is_none() ? "" : py::cast<std::string>(c.name);
        if (!c.id.is_none()) own = "definition " + py::cast<std::string>(py::str(c.id));
        return "<Change " + c.change + " " + c.what + " " + path + own + ">";
      });

  m.def(
      "diff",
      [](const py::object& oldSource, const py::object& newSource, bool visibleOnly, const py::object& layout,
         int generation, const py::object& encoding) {
        const ReadOptions options = MakeReadOptions(layout, generation, false, encoding);
        const StatePtr oldFile = ReadSource(oldSource, options);
        const StatePtr newFile = ReadSource(newSource, options);
        DiffOptions diffOptions;
        diffOptions.visibleOnly = visibleOnly;
        std::lock_guard<std::recursive_mutex> hold(LibraryLock());
        TextEncoding shown = oldFile->Encoding() == TextEncoding::kUtf8 ? newFile->Encoding() : TextEncoding::kWindows1252;
        if (!options.encoding.empty()) ParseTextEncoding(options.encoding, &shown);
        SetShownEncoding(shown);
        return ChangeList(DiffCatalogues(oldFile->A(), newFile->A(), diffOptions));
      },
      py::arg("old"), py::arg("new"), py::kw_only(), py::arg("visible_only") = false, py::arg("layout") = py::none(),
      py::arg("generation") = 5, py::arg("encoding") = py::none(),
      "What changed between two catalogues by meaning, as devdef diff --json says it: each is a path or a "
      "Catalogue. List entries first, then kinds and manufacturers, then devices in the order of the new file, "
      "each followed by its definitions' changes, then the removed devices.");
}

}  // namespace devdef_python
