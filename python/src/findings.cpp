#include "python/src/findings.h"

#include <pybind11/stl.h>

#include <string>
#include <vector>

#include "python/src/catalogue.h"
#include "tools/diagnostics/finding_filter.h"
#include "tools/diagnostics/finding_text.h"
#include "tools/diagnostics/repeated_findings.h"

namespace devdef_python {

namespace {

// A place of the file: 1-based lines, columns counted in characters (as
// Python's strings count them), the end behind the last character.
struct Place {
  long line = 0;
  long column = 0;
  long endLine = 0;
  long endColumn = 0;
};

struct RelatedValue {
  Place place;
  bool cause = false;
  std::string message;
};

struct FindingValue {
  std::string kind;
  std::string severity;
  Place place;
  long lastColumn = 0;  // 0: one place
  unsigned count = 1;
  std::string message;
  std::vector<RelatedValue> related;
  std::string path;
};

Place PlaceOf(const Analysis& analysis, ByteSpan span) {
  const TextRange range = ShownRange(analysis, span, ColumnUnit::kCodePoints);
  return Place{range.start.line, range.start.column, range.stop.line, range.stop.column};
}

template <class Value, class Class>
void BindPlace(Class& cls) {
  cls.def_property_readonly("line", [](const Value& v) { return v.place.line; }, "The line it starts on (1-based).")
      .def_property_readonly(
          "column", [](const Value& v) { return v.place.column; }, "Its column on that line, in characters (1-based).")
      .def_property_readonly("end_line", [](const Value& v) { return v.place.endLine; }, "The line it ends on.")
      .def_property_readonly(
          "end_column", [](const Value& v) { return v.place.endColumn; }, "The column behind its last character.");
}

}  // namespace

py::list FindingsOf(const StatePtr& state) {
  std::vector<FindingValue> values;
  {
    CatalogueState::Use use(*state);
    const Analysis& analysis = state->A();
    const Findings& findings = analysis.FindingsOf();
    const std::string path = state->Path().is_none() ? "<bytes>" : py::cast<std::string>(py::str(state->Path()));
    for (const ShownFinding& shown : MergeRepeats(analysis, FindingFilter().Apply(findings.List()))) {
      const Finding& finding = *shown.finding;
      FindingValue value;
      value.kind = InfoOf(finding.kind).id;
      value.severity = SeverityName(finding.severity);
      value.place = PlaceOf(analysis, shown.Whole());
      if (shown.Spread()) value.lastColumn = ShownPoint(analysis, shown.last.begin, ColumnUnit::kCodePoints).column;
      value.count = shown.count;
      value.message = ShownText(analysis.MessageOf(finding, findings));
      for (const RelatedPlace* at = findings.RelatedBegin(finding); at != findings.RelatedEnd(finding); ++at) {
        value.related.push_back(
            RelatedValue{PlaceOf(analysis, at->span), at->cause, ShownText(analysis.MessageOf(at->says, findings))});
      }
      value.path = path;
      values.push_back(std::move(value));
    }
  }
  py::list out(values.size());
  for (size_t i = 0; i < values.size(); ++i) out[i] = py::cast(std::move(values[i]));
  return out;
}

void BindFindings(py::module_& m) {
  py::class_<RelatedValue> related(m, "Related", "A place a finding speaks of: its cause, or a consequence.");
  BindPlace<RelatedValue>(related);
  related.def_readonly("cause", &RelatedValue::cause, "True when this place is the finding's cause.")
      .def_readonly("message", &RelatedValue::message, "What this place says.")
      .def("__repr__", [](const RelatedValue& r) {
        return "<Related line " + std::to_string(r.place.line) + ":" + std::to_string(r.place.column) + " " +
               py::cast<std::string>(py::repr(py::str(r.message))) + ">";
      });

  py::class_<FindingValue> finding(m, "Finding",
                                   "A place where the library reads the file differently from how it looks, or "
                                   "something a write would not keep; as devdef check --json gives it.");
  BindPlace<FindingValue>(finding);
  finding.def_readonly("kind", &FindingValue::kind, "The kind's id, as devdef check --list-kinds lists them.")
      .def_readonly("severity", &FindingValue::severity, "'error', 'warning' or 'note'.")
      .def_readonly("message", &FindingValue::message, "What it says.")
      .def_readonly("count", &FindingValue::count,
                    "How many findings of this kind and message on this line it stands for (1 for one).")
      .def_property_readonly(
          "last_column",
          [](const FindingValue& f) -> py::object {
            return f.lastColumn == 0 ? py::object(py::none()) : py::object(py::int_(f.lastColumn));
          },
          "Where the last of the merged findings starts, when they stand along the line; else None.")
      .def_readonly("related", &FindingValue::related, "The places it speaks of.")
      .def("__str__",
           [](const FindingValue& f) {
             return f.path + ":" + std::to_string(f.place.line) + ":" + std::to_string(f.place.column) + ": " +
                    f.severity + ": " + f.message + " [" + f.kind + "]";
           })
      .def("__repr__", [](const FindingValue& f) {
        return "<Finding " + f.severity + " " + f.kind + " line " + std::to_string(f.place.line) + ":" +
               std::to_string(f.place.column) + ">";
      });

  m.def(
      "check",
      [](const py::object& path, const py::object& layout, int generation, bool checkIds, const py::object& encoding) {
        return FindingsOf(ReadPath(path, MakeReadOptions(layout, generation, checkIds, encoding)));
      },
      py::arg("path"), py::kw_only(), py::arg("layout") = py::none(), py::arg("generation") = 5,
      py::arg("check_ids") = false, py::arg("encoding") = py::none(),
      "Reads the file at path as read() does and gives its findings, in file order, as devdef check --json "
      "lists them.");
}

}  // namespace devdef_python
