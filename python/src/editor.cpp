#include "python/src/editor.h"

#include <pybind11/stl.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "python/src/catalogue.h"
#include "python/src/changes.h"
#include "python/src/python_errors.h"
#include "python/src/views.h"
#include "tools/diff/unified_diff.h"
#include "tools/edit/edit_engine.h"
#include "tools/edit/file_output.h"

namespace devdef_python {

namespace {

// A file being edited: the catalogue it was opened as, and the bytes and
// catalogue of the edits so far (none while nothing changed). Each
// operation is made by the edit engine on the latest catalogue and verified
// there, as devdef edit makes it, so a sequence of calls gives the bytes a
// script of the same operations gives.
class Editor {
 public:
  explicit Editor(StatePtr original) : m_original(std::move(original)) {}

  // Applies the operation the words of the command line name; raises
  // EditRefused, UnknownName or AmbiguousName and changes nothing when the
  // engine does not apply it.
  void Apply(const std::vector<std::string>& words) {
    EditOperation operation;
    std::string error;
    if (!ParseEditOperation(words, &operation, &error)) throw py::value_error(error);
    // A copy: the editor may be given another catalogue while this one is
    // edited with the GIL released.
    const StatePtr latest = Latest();
    EditResult result;
    {
      py::gil_scoped_release unlocked;
      CatalogueState::Use use(*latest);
      result = ApplyEdits(latest->A(), {operation}, false);
      ForgetListOwner();
    }
    if (result.status == EditResult::Status::kUnknown) RaiseNameError(result.ambiguous, result.reason, result.candidates);
    if (result.status == EditResult::Status::kRefused) {
      LineColumn place;
      if (!result.inEdited) place = latest->PlaceOf(result.place.begin);
      std::vector<LineColumn> related;
      for (const ByteSpan& span : result.related) related.push_back(latest->PlaceOf(span.begin));
      RaiseEditRefused(result.reason, place, related, m_original->Path());
    }
    // The edited bytes read again, for the next operation and for what
    // changes() and catalogue give.
    std::string bytes = std::move(result.bytes);
    // The name is made of the path object, which needs the interpreter.
    const std::string name = NameOf();
    AnalysisPtr analysis;
    {
      py::gil_scoped_release unlocked;
      std::lock_guard<std::recursive_mutex> hold(LibraryLock());
      AnalysisOptions options;
      options.layout = latest->A().Layout();
      options.generation = m_original->Options().generation;
      options.checkIds = m_original->Options().checkIds;
      analysis.reset(Analysis::ReadText(name, std::move(bytes), options).release());
      ForgetListOwner();
    }
    m_edited = std::make_shared<CatalogueState>(std::move(analysis), m_original->Options(), m_original->Path());
  }

  py::bytes Bytes() const {
    const std::string_view bytes = Latest()->A().Bytes();
    return py::bytes(bytes.data(), bytes.size());
  }

  // The diff of the bytes, decoded as the file's names are (its lines are
  // the file's, in its encoding).
  py::str Preview() const {
    if (!m_edited) return py::str("");
    const std::string name = NameOf();
    return m_original->Text(UnifiedDiff(m_original->A().Bytes(), m_edited->A().Bytes(), "a/" + name, "b/" + name));
  }

  py::list Changes() const {
    if (!m_edited) return py::list();
    std::lock_guard<std::recursive_mutex> hold(LibraryLock());
    SetShownEncoding(m_original->Encoding());
    return ChangeList(DiffCatalogues(m_original->A(), m_edited->A(), DiffOptions()));
  }

  void Save(const py::object& path) {
    const py::object target = path.is_none() ? m_original->Path() : path;
    if (target.is_none()) throw py::value_error("the catalogue was read from bytes: give save() a path");
    const std::string file = py::cast<std::string>(py::module_::import("os").attr("fsencode")(target));
    const std::string_view bytes = Latest()->A().Bytes();
    // The writer says its problems to a sink of this call, which raises the
    // first as an OSError.
    static thread_local std::pair<std::string, int> problem;
    problem = {std::string(), 0};
    const WriteProblemSink previous = SetWriteProblemSink([](const std::string& message, int error) {
      if (problem.first.empty()) problem = {message, error};
    });
    const WriteOutcome outcome = WriteFileBytes(std::string(bytes), file);
    SetWriteProblemSink(previous);
    if (outcome == WriteOutcome::kWritten) return;
    const int error = problem.second != 0 ? problem.second : EIO;
    const py::object exception = py::module_::import("builtins").attr("OSError")(error, problem.first, target);
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(exception.ptr())), exception.ptr());
    throw py::error_already_set();
  }

  CatalogueView Catalogue() const { return CatalogueView{Latest()}; }
  // True when the bytes differ from the file's as opened.
  bool Changed() const { return m_edited != nullptr && m_edited->A().Bytes() != m_original->A().Bytes(); }
  const StatePtr& Original() const { return m_original; }

 private:
  const StatePtr& Latest() const { return m_edited ? m_edited : m_original; }
  std::string NameOf() const {
    return m_original->Path().is_none() ? std::string("<bytes>") : py::cast<std::string>(py::str(m_original->Path()));
  }

  StatePtr m_original;
  StatePtr m_edited;
};

// A field value as the command line writes it: a list or tuple joined by
// ",", anything else as str() gives it.
std::string ValueWord(const py::handle& value) {
  if (py::isinstance<py::list>(value) || py::isinstance<py::tuple>(value)) {
    std::string joined;
    for (const py::handle item : value) joined += (joined.empty() ? "" : ",") + ValueWord(item);
    return joined;
  }
  return py::cast<std::string>(py::str(value));
}

// FIELD=VALUE words of keyword arguments; a field's "_" may stand for the
// blank of "value 2".
void AddFields(std::vector<std::string>& words, const py::kwargs& fields) {
  for (const auto& field : fields) words.push_back(py::cast<std::string>(field.first) + "=" + ValueWord(field.second));
}

std::string Word(const py::handle& value) { return py::cast<std::string>(py::str(value)); }

}  // namespace

void BindEditor(py::module_& m) {
  py::class_<Editor>(m, "Editor",
                     "Edits of one definition file, byte for byte: each method is an operation of devdef edit, made "
                     "and verified at once (the edited bytes are read again and must give the catalogue asked for, "
                     "with no new finding), else it raises and changes nothing. save() writes the result.")
      .def(
          "set",
          [](Editor& e, const py::object& definition, const py::kwargs& fields) {
            std::vector<std::string> words{"set", Word(definition)};
            AddFields(words, fields);
            e.Apply(words);
          },
          py::arg("definition"),
          "Sets fields of one definition (an id, or 'DEVICE#N'): id, generation, package, module, adapters, "
          "value_0 ... value_10, text; names or numbers of list entries, lists as lists.")
      .def(
          "rename", [](Editor& e, const std::string& device, const std::string& name) { e.Apply({"rename", device, name}); },
          py::arg("device"), py::arg("new_name"), "Renames a device.")
      .def(
          "rename_kind",
          [](Editor& e, const std::string& kind, const std::string& name) { e.Apply({"rename-kind", kind, name}); },
          py::arg("kind"), py::arg("new_name"), "Renames a kind.")
      .def(
          "rename_manufacturer",
          [](Editor& e, const std::string& kind, const std::string& manufacturer, const std::string& name) {
            e.Apply({"rename-manufacturer", kind, manufacturer, name});
          },
          py::arg("kind"), py::arg("manufacturer"), py::arg("new_name"), "Renames a manufacturer of a kind.")
      .def(
          "move",
          [](Editor& e, const std::string& device, const std::string& kind, const std::string& manufacturer) {
            e.Apply({"move", device, kind, manufacturer});
          },
          py::arg("device"), py::arg("kind"), py::arg("manufacturer"),
          "Moves a device behind the last device of a manufacturer, which is made where missing.")
      .def(
          "add_device",
          [](Editor& e, const std::string& kind, const std::string& manufacturer, const std::string& name) {
            e.Apply({"add-device", kind, manufacturer, name});
          },
          py::arg("kind"), py::arg("manufacturer"), py::arg("name"), "Adds a device with an empty block.")
      .def(
          "add_definition",
          [](Editor& e, const std::string& device, const py::kwargs& fields) {
            std::vector<std::string> words{"add-definition", device};
            AddFields(words, fields);
            e.Apply(words);
          },
          py::arg("device"), "Adds a definition behind the device's last, with the fields given (as set() takes them).")
      .def(
          "remove", [](Editor& e, const std::string& device) { e.Apply({"remove", device}); }, py::arg("device"),
          "Removes a device's lines.")
      .def(
          "remove_definition",
          [](Editor& e, const py::object& definition) { e.Apply({"remove-definition", Word(definition)}); },
          py::arg("definition"), "Removes a definition's line (an id, or 'DEVICE#N').")
      .def(
          "add_entry",
          [](Editor& e, const std::string& list, const std::string& name, const py::object& at) {
            std::vector<std::string> words{"add-entry", list, name};
            if (!at.is_none()) words.insert(words.end(), {"--at", Word(at)});
            e.Apply(words);
          },
          py::arg("list"), py::arg("name"), py::kw_only(), py::arg("at") = py::none(),
          "Inserts an entry into a header list ('housing', 'adapter' or 'module') as number at (default: the "
          "end); every reference behind it is renumbered.")
      .def(
          "rename_entry",
          [](Editor& e, const std::string& list, const py::object& old, const std::string& name) {
            e.Apply({"rename-entry", list, Word(old), name});
          },
          py::arg("list"), py::arg("old"), py::arg("new_name"), "Renames an entry of a header list.")
      .def(
          "remove_entry",
          [](Editor& e, const std::string& list, const std::string& name, const py::object& replaceWith) {
            std::vector<std::string> words{"remove-entry", list, name};
            if (!replaceWith.is_none()) words.insert(words.end(), {"--replace-with", Word(replaceWith)});
            e.Apply(words);
          },
          py::arg("list"), py::arg("name"), py::kw_only(), py::arg("replace_with") = py::none(),
          "Removes an entry of a header list; the references to it go to replace_with, and the edit is refused "
          "while any is left without one.")
      .def(
          "renumber_ids",
          [](Editor& e, const py::object& device, const py::object& kind, const py::object& manufacturer,
             long long start, long long step) {
            std::vector<std::string> words{"renumber-ids"};
            if (!device.is_none()) words.push_back(Word(device));
            if (!kind.is_none() || !manufacturer.is_none()) {
              if (kind.is_none() || manufacturer.is_none() || !device.is_none()) {
                throw py::value_error("renumber_ids takes a device, or a kind with a manufacturer, or neither");
              }
              words.insert(words.end(), {Word(kind), Word(manufacturer)});
            }
            words.insert(words.end(), {"--from", std::to_string(start), "--step", std::to_string(step)});
            e.Apply(words);
          },
          py::arg("device") = py::none(), py::kw_only(), py::arg("kind") = py::none(),
          py::arg("manufacturer") = py::none(), py::arg("start"), py::arg("step") = 1,
          "Gives the definitions of a device, of a manufacturer, or of the whole file the ids start, "
          "start + step, ...")
      .def("preview", &Editor::Preview,
           "The unified diff from the file as opened to the edits so far, its lines decoded as the catalogue's "
           "names are; empty when nothing changed.")
      .def("changes", &Editor::Changes, "What the edits so far change, by meaning, as devdef diff says it.")
      .def("bytes", &Editor::Bytes, "The edited file's bytes.")
      .def_property_readonly("changed", &Editor::Changed, "True when the edited bytes differ from the file's.")
      .def_property_readonly("catalogue", &Editor::Catalogue, "The catalogue of the edited bytes.")
      .def("save", &Editor::Save, py::arg("path") = py::none(),
           "Writes the edited bytes to path (default: the file opened) through a temporary file renamed into place, "
           "keeping the mode of the file it replaces. Raises OSError and leaves the file as it was when it cannot.")
      .def("__repr__", [](const Editor& e) {
        const py::object& path = e.Original()->Path();
        return "<Editor " + (path.is_none() ? std::string("of bytes") : py::cast<std::string>(py::repr(path))) +
               (e.Changed() ? ", changed>" : ", unchanged>");
      });

  m.def(
      "edit",
      [](const py::object& source, const py::object& layout, int generation, const py::object& encoding) {
        return Editor(ReadSource(source, MakeReadOptions(layout, generation, false, encoding)));
      },
      py::arg("path"), py::kw_only(), py::arg("layout") = py::none(), py::arg("generation") = 5,
      py::arg("encoding") = py::none(),
      "Opens the definition file at path for edits (or a Catalogue, as read() or read_bytes() gave it, whose "
      "read options then hold); nothing is written before save().");
}

}  // namespace devdef_python
