#include "python/src/views.h"

#include <pybind11/stl.h>

#include <string>

#include "python/src/python_errors.h"
#include "tools/analysis/package_name.h"
#include "tools/lookup/device_lookup.h"

namespace devdef_python {

namespace {

const DeviceRecord& DeviceOf(const DeviceView& d) { return d.state->A().Devices()[d.record]; }
DEVICE_KVRXDEF_ITEM& DefinitionOf(const DefinitionView& d) { return d.state->A().DefinitionOf(d.record); }

// "EPROM/AMD/AM27C256": a device's path as text, for reprs.
std::string PathText(const StatePtr& state, std::uint32_t manufacturer, const CString* device) {
  const Analysis& a = state->A();
  const ManufacturerRecord& m = a.Manufacturers()[manufacturer];
  std::string path = py::cast<std::string>(state->Text(a.Kinds()[m.kind].kind->m_Name)) + "/" +
                     py::cast<std::string>(state->Text(m.manufacturer->m_Name));
  if (device != nullptr) path += "/" + py::cast<std::string>(state->Text(*device));
  return path;
}

py::list Marks(DWORD flags) {
  py::list marks;
  if (flags & 1) marks.append("0xB0");
  if (flags & 2) marks.append("0xDF");
  return marks;
}

// Names of the numbers of a list, None where the list has no entry.
template <class Numbers>
py::list NamesOf(const StatePtr& state, int list, const Numbers& numbers) {
  py::list names(static_cast<size_t>(numbers.GetSize()));
  for (int i = 0; i < numbers.GetSize(); ++i) names[static_cast<size_t>(i)] = state->ListName(list, numbers[i]);
  return names;
}

template <class Numbers>
py::list NumbersOf(const Numbers& numbers) {
  py::list out(static_cast<size_t>(numbers.GetSize()));
  for (int i = 0; i < numbers.GetSize(); ++i) out[static_cast<size_t>(i)] = py::int_(static_cast<unsigned>(numbers[i]));
  return out;
}

py::list DefinitionList(const StatePtr& state, std::uint32_t device, bool visibleOnly) {
  const DeviceRecord& d = state->A().Devices()[device];
  py::list out;
  for (std::uint32_t i = 0; i < d.definitionCount; ++i) {
    if (visibleOnly && d.device->m_DefArray[static_cast<int>(i)].IsHidden()) continue;
    out.append(DefinitionView{state, d.firstDefinition + i});
  }
  return out;
}

// The index among its device's visible definitions, or -1 when hidden.
int VisibleIndex(const DefinitionView& d) {
  const Analysis& a = d.state->A();
  const DeviceRecord& device = a.Devices()[a.Definitions()[d.record].device];
  const int index = static_cast<int>(d.record - device.firstDefinition);
  if (device.device->m_DefArray[index].IsHidden()) return -1;
  int visible = 0;
  for (int i = 0; i < index; ++i) visible += device.device->m_DefArray[i].IsHidden() ? 0 : 1;
  return visible;
}

py::object PackageName(const DefinitionView& d) {
  DEVICE_KVRXDEF_ITEM& def = DefinitionOf(d);
  if (def.IsHidden()) return py::none();
  std::string name;
  {
    CatalogueState::Use use(*d.state);
    use.Lists();
    const char* text = PackageNameOf(def);
    if (text == nullptr) return py::none();
    name = text;
  }
  return d.state->Text(name);
}

// Equality and hashing by catalogue and record, for views of one type.
template <class View, class Class>
void BindIdentity(Class& cls) {
  cls.def("__eq__", [](const View& a, const py::object& b) {
    if (!py::isinstance<View>(b)) return false;
    const View& other = py::cast<const View&>(b);
    return a.state == other.state && a.record == other.record;
  });
  cls.def("__hash__", [](const View& v) {
    return py::hash(py::make_tuple(reinterpret_cast<std::uintptr_t>(v.state.get()), v.record));
  });
}

void BindKind(py::module_& m) {
  py::class_<KindView> cls(m, "Kind", "A kind of device (EPROM, Microcontroller, ...) with its manufacturers.");
  cls.def_property_readonly(
         "name", [](const KindView& k) { return k.state->Text(k.state->A().Kinds()[k.record].kind->m_Name); },
         "The kind's name.")
      .def_property_readonly(
          "line", [](const KindView& k) { return k.state->LineOf(k.state->A().Kinds()[k.record].name.begin); },
          "The line of the file the kind stands on (1-based).")
      .def_property_readonly(
          "manufacturers",
          [](const KindView& k) {
            const KindRecord& kind = k.state->A().Kinds()[k.record];
            py::list out;
            for (std::uint32_t i = 0; i < kind.manufacturerCount; ++i) {
              out.append(ManufacturerView{k.state, kind.firstManufacturer + i});
            }
            return out;
          },
          "Its manufacturers, in file order.")
      .def_property_readonly(
          "devices",
          [](const KindView& k) {
            const Analysis& a = k.state->A();
            const KindRecord& kind = a.Kinds()[k.record];
            std::vector<std::uint32_t> records;
            for (std::uint32_t i = kind.firstManufacturer; i < kind.firstManufacturer + kind.manufacturerCount; ++i) {
              const ManufacturerRecord& man = a.Manufacturers()[i];
              for (std::uint32_t d = 0; d < man.deviceCount; ++d) records.push_back(man.firstDevice + d);
            }
            return DeviceList(k.state, records);
          },
          "The devices of all its manufacturers, in file order.")
      .def("__str__", [](const KindView& k) { return k.state->Text(k.state->A().Kinds()[k.record].kind->m_Name); })
      .def("__repr__", [](const KindView& k) {
        const KindRecord& kind = k.state->A().Kinds()[k.record];
        return "<Kind " + py::cast<std::string>(k.state->Text(kind.kind->m_Name)) + " line " +
               std::to_string(k.state->LineOf(kind.name.begin)) + ", " + std::to_string(kind.manufacturerCount) +
               (kind.manufacturerCount == 1 ? " manufacturer>" : " manufacturers>");
      });
  BindIdentity<KindView>(cls);
}

void BindManufacturer(py::module_& m) {
  py::class_<ManufacturerView> cls(m, "Manufacturer", "A manufacturer under a kind, with its devices.");
  const auto record = [](const ManufacturerView& v) -> const ManufacturerRecord& {
    return v.state->A().Manufacturers()[v.record];
  };
  cls.def_property_readonly(
         "name", [record](const ManufacturerView& v) { return v.state->Text(record(v).manufacturer->m_Name); },
         "The manufacturer's name.")
      .def_property_readonly(
          "line", [record](const ManufacturerView& v) { return v.state->LineOf(record(v).name.begin); },
          "The line of the file the manufacturer stands on (1-based).")
      .def_property_readonly(
          "kind", [record](const ManufacturerView& v) { return KindView{v.state, record(v).kind}; },
          "The kind it stands under.")
      .def_property_readonly(
          "devices",
          [record](const ManufacturerView& v) {
            std::vector<std::uint32_t> records;
            for (std::uint32_t d = 0; d < record(v).deviceCount; ++d) records.push_back(record(v).firstDevice + d);
            return DeviceList(v.state, records);
          },
          "Its devices, in file order.")
      .def("__str__", [record](const ManufacturerView& v) { return v.state->Text(record(v).manufacturer->m_Name); })
      .def("__repr__", [record](const ManufacturerView& v) {
        const std::uint32_t count = record(v).deviceCount;
        return "<Manufacturer " + PathText(v.state, v.record, nullptr) + " line " +
               std::to_string(v.state->LineOf(record(v).name.begin)) + ", " + std::to_string(count) +
               (count == 1 ? " device>" : " devices>");
      });
  BindIdentity<ManufacturerView>(cls);
}

void BindDevice(py::module_& m) {
  py::class_<DeviceView> cls(m, "Device", "A device with its definitions, under a kind and a manufacturer.");
  cls.def_property_readonly(
         "name", [](const DeviceView& d) { return d.state->Text(DeviceOf(d).device->m_DeviceName); },
         "The name as shown: a '_' of the file is a blank, a mark byte is not part of it.")
      .def_property_readonly(
          "kind",
          [](const DeviceView& d) { return KindView{d.state, d.state->A().Manufacturers()[DeviceOf(d).manufacturer].kind}; },
          "The kind it stands under.")
      .def_property_readonly(
          "manufacturer", [](const DeviceView& d) { return ManufacturerView{d.state, DeviceOf(d).manufacturer}; },
          "The manufacturer it stands under.")
      .def_property_readonly(
          "line", [](const DeviceView& d) { return d.state->LineOf(DeviceOf(d).name.begin); },
          "The line of its name (1-based).")
      .def_property_readonly(
          "definitions", [](const DeviceView& d) { return DefinitionList(d.state, d.record, false); },
          "All its definitions, hidden ones too, in file order.")
      .def_property_readonly(
          "visible", [](const DeviceView& d) { return DefinitionList(d.state, d.record, true); },
          "Its definitions of the generation in force.")
      .def_property_readonly(
          "package_name",
          [](const DeviceView& d) -> py::object {
            const DeviceRecord& device = DeviceOf(d);
            for (std::uint32_t i = 0; i < device.definitionCount; ++i) {
              if (!device.device->m_DefArray[static_cast<int>(i)].IsHidden()) {
                return PackageName(DefinitionView{d.state, device.firstDefinition + i});
              }
            }
            return py::none();
          },
          "The package name the library derives for its first visible definition; None without one.")
      .def_property_readonly(
          "marks", [](const DeviceView& d) { return Marks(DeviceOf(d).device->m_DeviceFlags); },
          "The mark bytes its name opened with: '0xB0', '0xDF'.")
      .def_property_readonly(
          "housings", [](const DeviceView& d) { return NamesOf(d.state, 0, DeviceOf(d).device->m_HousingIds); },
          "The names of its DEVICE_HOUSING_LIST entries; None where a number has no name.")
      .def_property_readonly(
          "housing_numbers", [](const DeviceView& d) { return NumbersOf(DeviceOf(d).device->m_HousingIds); },
          "The numbers of its DEVICE_HOUSING_LIST.")
      .def("__str__", [](const DeviceView& d) { return d.state->Text(DeviceOf(d).device->m_DeviceName); })
      .def("__repr__", [](const DeviceView& d) {
        const DeviceRecord& device = DeviceOf(d);
        return "<Device " + PathText(d.state, device.manufacturer, &device.device->m_DeviceName) + " line " +
               std::to_string(d.state->LineOf(device.name.begin)) + ", " + std::to_string(device.definitionCount) +
               (device.definitionCount == 1 ? " definition>" : " definitions>");
      });
  BindIdentity<DeviceView>(cls);
}

void BindDefinition(py::module_& m) {
  py::class_<DefinitionView> cls(m, "Definition", "One definition line of a device.");
  cls.def_property_readonly(
         "id", [](const DefinitionView& d) { return static_cast<unsigned>(DefinitionOf(d).m_DefID); },
         "The definition id, unsigned 32-bit.")
      .def_property_readonly(
          "generation", [](const DefinitionView& d) { return static_cast<unsigned>(DefinitionOf(d).m_KvrType); },
          "3, 4 or 5: the digit of the line's KVRnDEF keyword.")
      .def_property_readonly(
          "visible", [](const DefinitionView& d) { return !DefinitionOf(d).IsHidden(); },
          "True when it is of the generation in force.")
      .def_property_readonly(
          "visible_index",
          [](const DefinitionView& d) -> py::object {
            const int index = VisibleIndex(d);
            return index < 0 ? py::object(py::none()) : py::object(py::int_(index));
          },
          "Its index among its device's visible definitions; None when hidden.")
      .def_property_readonly(
          "package",
          [](const DefinitionView& d) -> py::object {
            const CWordArray& ids = DefinitionOf(d).m_PackageIds;
            return ids.GetSize() == 0 ? py::object(py::none()) : d.state->ListName(0, ids[0]);
          },
          "The name of its (first) package; None where the number has no name.")
      .def_property_readonly(
          "packages", [](const DefinitionView& d) { return NamesOf(d.state, 0, DefinitionOf(d).m_PackageIds); },
          "The names of all its packages (layout 7 may have several).")
      .def_property_readonly(
          "package_number",
          [](const DefinitionView& d) -> py::object {
            const CWordArray& ids = DefinitionOf(d).m_PackageIds;
            return ids.GetSize() == 0 ? py::object(py::none()) : py::object(py::int_(static_cast<unsigned>(ids[0])));
          },
          "The number of its (first) package in the housing list.")
      .def_property_readonly(
          "package_numbers", [](const DefinitionView& d) { return NumbersOf(DefinitionOf(d).m_PackageIds); },
          "The numbers of all its packages.")
      .def_property_readonly(
          "module",
          [](const DefinitionView& d) { return d.state->ListName(2, static_cast<unsigned>(DefinitionOf(d).m_ModulId)); },
          "The name of its module; None where the number has no name.")
      .def_property_readonly(
          "module_number", [](const DefinitionView& d) { return static_cast<unsigned>(DefinitionOf(d).m_ModulId); },
          "The number of its module in the module list.")
      .def_property_readonly(
          "adapters", [](const DefinitionView& d) { return NamesOf(d.state, 1, DefinitionOf(d).m_AdapterIds); },
          "The names of its adapters; None where a number has no name.")
      .def_property_readonly(
          "adapter_numbers", [](const DefinitionView& d) { return NumbersOf(DefinitionOf(d).m_AdapterIds); },
          "The numbers of its adapters in the adapter list.")
      .def_property_readonly(
          "values",
          [](const DefinitionView& d) {
            const DEVICE_KVRXDEF_ITEM& def = DefinitionOf(d);
            py::list out(11);
            for (size_t i = 0; i < 11; ++i) out[i] = py::int_(static_cast<int>(def.m_DefValues[i]));
            return out;
          },
          "The eleven numeric values of the line, as show --json gives them (layout 1 fills value 2, layout 2 "
          "values 0 to 2).")
      .def_property_readonly(
          "text", [](const DefinitionView& d) { return d.state->Text(DefinitionOf(d).m_DefLine); },
          "The text behind the ':', as read (with its leading blank).")
      .def_property_readonly(
          "marks", [](const DefinitionView& d) { return Marks(DefinitionOf(d).m_MarkFlags); },
          "The mark bytes the line or its device carries: '0xB0', '0xDF'.")
      .def_property_readonly("package_name", &PackageName,
                             "The package name the library derives for it; None when hidden or when it gives none.")
      .def_property_readonly(
          "line", [](const DefinitionView& d) { return d.state->LineOf(d.state->A().Definitions()[d.record].line.begin); },
          "The line it stands on (1-based).")
      .def_property_readonly(
          "device", [](const DefinitionView& d) { return DeviceView{d.state, d.state->A().Definitions()[d.record].device}; },
          "The device it belongs to.")
      .def("__repr__", [](const DefinitionView& d) {
        const DEVICE_KVRXDEF_ITEM& def = DefinitionOf(d);
        const DeviceRecord& device = d.state->A().Devices()[d.state->A().Definitions()[d.record].device];
        return "<Definition " + std::to_string(static_cast<unsigned>(def.m_DefID)) + " KVR" +
               std::to_string(static_cast<unsigned>(def.m_KvrType)) + (def.IsHidden() ? " hidden" : "") + " of " +
               PathText(d.state, device.manufacturer, &device.device->m_DeviceName) + " line " +
               std::to_string(d.state->LineOf(d.state->A().Definitions()[d.record].line.begin)) + ">";
      });
  BindIdentity<DefinitionView>(cls);
}

}  // namespace

py::list DeviceList(const StatePtr& state, const std::vector<std::uint32_t>& records) {
  py::list out(records.size());
  for (size_t i = 0; i < records.size(); ++i) out[i] = py::cast(DeviceView{state, records[i]});
  return out;
}

void BindViews(py::module_& m) {
  BindKind(m);
  BindManufacturer(m);
  BindDevice(m);
  BindDefinition(m);
}

}  // namespace devdef_python
