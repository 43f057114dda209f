#include "python/src/catalogue.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "python/src/findings.h"
#include "python/src/python_errors.h"
#include "python/src/views.h"
#include "tools/lookup/device_lookup.h"

namespace devdef_python {

namespace {

// The path of a str or os.PathLike as the file system takes it.
std::string FileSystemPath(const py::object& path) {
  const py::object fspath = py::module_::import("os").attr("fsencode")(path);
  return py::cast<std::string>(fspath);
}

// Turns an analysis that did not give a usable catalogue into the error of
// the module; reading failures of the file itself are raised before.
void CheckUsable(const Analysis& analysis, const ReadOptions& options, const py::object& path) {
  if (analysis.Usable()) return;
  const int declared = analysis.DeclaredLayout();
  if (options.layout != 0 && declared != -1 && declared != options.layout) {
    const std::string shown = path.is_none() ? std::string("the bytes") : "'" + py::cast<std::string>(py::str(path)) + "'";
    RaiseReadError("LayoutMismatch",
                   shown + " declares layout " + std::to_string(declared) + ", but layout=" +
                       std::to_string(options.layout) + " reads only layout " + std::to_string(options.layout) +
                       " files: leave layout out",
                   path);
  }
  RaiseReadError("NotADefinitionFile", analysis.Error(), path);
}

AnalysisOptions AnalysisOptionsOf(const ReadOptions& options) {
  AnalysisOptions out;
  out.layout = options.layout;
  out.generation = options.generation;
  out.checkIds = options.checkIds;
  return out;
}

}  // namespace

ReadOptions MakeReadOptions(const py::object& layout, int generation, bool checkIds, const py::object& encoding) {
  ReadOptions options;
  if (!layout.is_none()) {
    options.layout = py::cast<int>(layout);
    if (options.layout != 1 && options.layout != 2 && options.layout != 7) {
      throw py::value_error("layout must be 1, 2 or 7 (or None for the layout the file declares), not " +
                            std::to_string(options.layout));
    }
  }
  if (generation < 3 || generation > 5) {
    throw py::value_error("generation must be 3, 4 or 5, not " + std::to_string(generation));
  }
  options.generation = generation;
  options.checkIds = checkIds;
  if (!encoding.is_none()) {
    options.encoding = py::cast<std::string>(encoding);
    TextEncoding parsed;
    if (!ParseTextEncoding(options.encoding, &parsed)) {
      throw py::value_error("encoding must be 'utf-8', 'cp1252' or 'latin1', not '" + options.encoding + "'");
    }
  }
  return options;
}

StatePtr ReadPath(const py::object& path, const ReadOptions& options) {
  const std::string file = FileSystemPath(path);
  // The file's own problems (missing, not allowed, a directory) are the
  // OSErrors Python programs expect.
  // Asked without opening it, as a pipe would lose what an open takes.
  struct stat info;
  if (::stat(file.c_str(), &info) != 0 || ::access(file.c_str(), R_OK) != 0) RaiseOsError(errno, path);
  if (S_ISDIR(info.st_mode)) RaiseOsError(EISDIR, path);
  AnalysisPtr analysis;
  {
    py::gil_scoped_release unlocked;
    std::lock_guard<std::recursive_mutex> hold(LibraryLock());
    analysis.reset(Analysis::ReadFile(file, AnalysisOptionsOf(options)).release());
    ForgetListOwner();
  }
  CheckUsable(*analysis, options, path);
  return std::make_shared<CatalogueState>(std::move(analysis), options, path);
}

StatePtr ReadData(std::string bytes, const ReadOptions& options) {
  AnalysisPtr analysis;
  {
    py::gil_scoped_release unlocked;
    std::lock_guard<std::recursive_mutex> hold(LibraryLock());
    analysis.reset(Analysis::ReadText("<bytes>", std::move(bytes), AnalysisOptionsOf(options)).release());
    ForgetListOwner();
  }
  CheckUsable(*analysis, options, py::none());
  return std::make_shared<CatalogueState>(std::move(analysis), options, py::none());
}

StatePtr ReadSource(const py::object& source, const ReadOptions& options) {
  if (py::isinstance<CatalogueView>(source)) return py::cast<const CatalogueView&>(source).state;
  return ReadPath(source, options);
}

void BindCatalogue(py::module_& m) {
  py::class_<CatalogueView>(m, "Catalogue",
                            "A definition file as the library read it: header lists, kinds, manufacturers, devices "
                            "and their definitions, in file order. Iterating gives the devices.")
      .def_property_readonly(
          "layout", [](const CatalogueView& c) { return c.state->A().Layout(); }, "The layout it was read as: 1, 2 or 7.")
      .def_property_readonly(
          "generation", [](const CatalogueView& c) { return c.state->Generation(); },
          "The generation in force (3, 4 or 5): the definitions of the others are hidden.")
      .def_property_readonly(
          "encoding", [](const CatalogueView& c) { return TextEncodingName(c.state->Encoding()); },
          "How names and texts are decoded: 'utf-8', 'cp1252' or 'latin1'.")
      .def_property_readonly(
          "path", [](const CatalogueView& c) { return c.state->Path(); }, "The path it was read from; None for bytes.")
      .def_property_readonly(
          "housings", [](const CatalogueView& c) { return c.state->ListNames(0); },
          "The names of HOUSING_LIST (the packages), in list order: a number is an index into it.")
      .def_property_readonly(
          "adapters", [](const CatalogueView& c) { return c.state->ListNames(1); }, "The names of ADAPTER_LIST.")
      .def_property_readonly(
          "modules", [](const CatalogueView& c) { return c.state->ListNames(2); }, "The names of MODUL_LIST.")
      .def_property_readonly(
          "kinds",
          [](const CatalogueView& c) {
            py::list out;
            for (std::uint32_t k = 0; k < c.state->A().Kinds().size(); ++k) out.append(KindView{c.state, k});
            return out;
          },
          "The kinds, in file order; each has its manufacturers, each of those its devices.")
      .def(
          "devices",
          [](const CatalogueView& c, const py::object& pattern) {
            std::vector<std::uint32_t> records;
            if (pattern.is_none()) {
              records.resize(c.state->A().Devices().size());
              for (std::uint32_t d = 0; d < records.size(); ++d) records[d] = d;
            } else {
              const NamePattern name(py::cast<std::string>(pattern));
              CatalogueState::Use use(*c.state);
              records = LookUpDevices(c.state->A(), name, false, 0).matches;
            }
            return DeviceList(c.state, records);
          },
          py::arg("pattern") = py::none(),
          "The devices in file order; with a pattern, those it names as the devdef command names them: case "
          "ignored, '_' equal to a blank, '*', '?' and '[...]' wildcards. A name equal to a device's matches it "
          "alone.")
      .def(
          "device",
          [](const CatalogueView& c, const std::string& name) {
            DeviceLookup found;
            {
              CatalogueState::Use use(*c.state);
              found = LookUpDevices(c.state->A(), NamePattern(name), false, 5);
            }
            if (found.matches.size() == 1) return DeviceView{c.state, found.matches[0]};
            const bool ambiguous = !found.matches.empty();
            // As the edit engine names devices: kind / manufacturer / name (line N).
            std::vector<std::string> candidates;
            const Analysis& a = c.state->A();
            for (std::uint32_t d : ambiguous ? found.matches : found.closest) {
              const DeviceRecord& device = a.Devices()[d];
              const ManufacturerRecord& man = a.Manufacturers()[device.manufacturer];
              candidates.push_back(py::cast<std::string>(c.state->Text(a.Kinds()[man.kind].kind->m_Name)) + " / " +
                                   py::cast<std::string>(c.state->Text(man.manufacturer->m_Name)) + " / " +
                                   py::cast<std::string>(c.state->Text(device.device->m_DeviceName)) + " (line " +
                                   std::to_string(c.state->LineOf(device.name.begin)) + ")");
            }
            RaiseNameError(ambiguous,
                           ambiguous ? "'" + name + "' names " + std::to_string(found.matches.size()) + " devices"
                                     : "no device named '" + name + "'",
                           candidates);
          },
          py::arg("name"),
          "The one device a name or pattern names. Raises UnknownName (with the closest names) when it names "
          "none, AmbiguousName (with the names) when it names several.")
      .def(
          "find",
          [](const CatalogueView& c, long long id) -> py::object {
            if (id < 0 || id > 0xFFFFFFFFLL) return py::none();
            DEVICE_ITEM* item = nullptr;
            DEVICE_KVRXDEF_ITEM* def = nullptr;
            {
              CatalogueState::Use use(*c.state);
              c.state->A().Controller().FindDeviceItem(static_cast<int>(static_cast<std::uint32_t>(id)), nullptr,
                                                       nullptr, nullptr, nullptr, &item, &def);
            }
            const std::uint32_t device = item != nullptr ? c.state->DeviceRecordOf(item) : kNoRecord;
            if (device == kNoRecord) return py::none();
            const DeviceRecord& record = c.state->A().Devices()[device];
            for (std::uint32_t i = 0; i < record.definitionCount; ++i) {
              if (&item->m_DefArray[static_cast<int>(i)] == def) {
                return py::cast(DefinitionView{c.state, record.firstDefinition + i});
              }
            }
            return py::none();
          },
          py::arg("id"),
          "The visible definition with this id as the library's look-up finds it (ids compare as 32-bit "
          "numbers); None when no visible definition has it.")
      .def(
          "definitions",
          [](const CatalogueView& c) {
            const size_t count = c.state->A().Definitions().size();
            py::list out(count);
            for (size_t i = 0; i < count; ++i) out[i] = py::cast(DefinitionView{c.state, static_cast<std::uint32_t>(i)});
            return out;
          },
          "Every definition of every device, hidden ones too, in file order.")
      .def_property_readonly(
          "findings", [](const CatalogueView& c) { return FindingsOf(c.state); },
          "What devdef check says of the file: each place where the reading differs from how the file looks, and "
          "what a write would not keep.")
      .def("__len__", [](const CatalogueView& c) { return c.state->A().Devices().size(); })
      .def("__iter__",
           [](const CatalogueView& c) {
             std::vector<std::uint32_t> all(c.state->A().Devices().size());
             for (std::uint32_t d = 0; d < all.size(); ++d) all[d] = d;
             return py::iter(DeviceList(c.state, all));
           })
      .def("__repr__", [](const CatalogueView& c) {
        const py::object& path = c.state->Path();
        const size_t devices = c.state->A().Devices().size();
        return "<Catalogue " + (path.is_none() ? std::string("of bytes") : py::cast<std::string>(py::repr(path))) +
               " layout " + std::to_string(c.state->A().Layout()) + ", " + std::to_string(devices) +
               (devices == 1 ? " device>" : " devices>");
      });

  m.def(
      "read",
      [](const py::object& path, const py::object& layout, int generation, bool checkIds, const py::object& encoding) {
        return CatalogueView{ReadPath(path, MakeReadOptions(layout, generation, checkIds, encoding))};
      },
      py::arg("path"), py::kw_only(), py::arg("layout") = py::none(), py::arg("generation") = 5,
      py::arg("check_ids") = false, py::arg("encoding") = py::none(),
      "Reads the definition file at path with the library, as the devdef command does: through the controller "
      "of the layout its version line names (or layout), with generation in force. Other Python threads run "
      "while it reads. Raises FileNotFoundError, PermissionError or IsADirectoryError for the file, "
      "NotADefinitionFile when it is none, LayoutMismatch when it declares another layout than layout.");
  m.def(
      "read_bytes",
      [](const py::bytes& data, const py::object& layout, int generation, bool checkIds, const py::object& encoding) {
        return CatalogueView{ReadData(std::string(data), MakeReadOptions(layout, generation, checkIds, encoding))};
      },
      py::arg("data"), py::kw_only(), py::arg("layout") = py::none(), py::arg("generation") = 5,
      py::arg("check_ids") = false, py::arg("encoding") = py::none(),
      "Reads the bytes of a definition file as read() reads a file.");
}

}  // namespace devdef_python
