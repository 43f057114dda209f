#include "tools/analysis/finding.h"

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return "error";
    case Severity::kWarning:
      return "warning";
    case Severity::kNote:
      return "note";
  }
  return "error";
}

bool ParseSeverity(const std::string& name, Severity* severity) {
  for (Severity s : {Severity::kError, Severity::kWarning, Severity::kNote}) {
    if (name == SeverityName(s)) {
      *severity = s;
      return true;
    }
  }
  return false;
}

const std::vector<FindingKind>& AllFindingKinds() {
  static const std::vector<FindingKind> kinds = {
      {"no-version", Severity::kError,
       "The file has no version line that the reader takes, so every line of it is passed over."},
      {"refused", Severity::kError,
       "A definition line that the reader refuses: the definition is lost and the device's block ends there."},
      {"dropped", Severity::kError,
       "A line skipped unread: the line behind a failed block line is passed over up to its line end."},
      {"misread", Severity::kError,
       "A line read as something other than what it looks like, such as a definition line read as a kind or a "
       "\"}\" read as a device."},
      {"no-block", Severity::kError,
       "A device whose block does not open with \"{\": the device gets no definitions and the line read in place "
       "of the \"{\" is lost."},
      {"cut-off", Severity::kError,
       "A device block that the end of the file cuts off: the lines behind the last line end are not read."},
      {"ignored", Severity::kError,
       "A line that looks like a device, a manufacturer or a kind but makes nothing, because the kind or "
       "manufacturer it needs is not there."},
      {"lost-entry", Severity::kError,
       "A header list entry that the reader does not store, for lack of a delimiter behind it."},
      {"list", Severity::kError,
       "A header list that is not read: a list in braces needs \"{\", an entry with a separator behind it, and "
       "\"}\"."},
      {"housing", Severity::kError,
       "A DEVICE_HOUSING_LIST line whose numbers are not all taken: its list does not close on the line, or an "
       "entry is no number."},
      {"quote-kind", Severity::kWarning,
       "A line that opens with a double quote and has \": \" on it: it is no comment, it makes a kind."},
      {"no-manufacturer", Severity::kWarning,
       "A device that goes to the manufacturer of an earlier kind, because its own kind has no manufacturer "
       "line."},
      {"version", Severity::kWarning,
       "A line that opens with DEF_LAYOUT_VERSION but is not taken as the version line."},
      {"short-form", Severity::kWarning,
       "A definition line that is accepted without making a definition: it has no blank and value behind its "
       "adapters."},
      {"duplicate-id", Severity::kWarning, "A definition id used by more than one definition of the file."},
      {"bad-number", Severity::kWarning,
       "A package, adapter or module number that has no entry in its header list."},
      {"no-line-end", Severity::kWarning,
       "The last line of the file has no line end, so the reader passes over it."},
      {"write-loss", Severity::kError,
       "Something that a write of the file would not keep: the written file reads back differently. devdef write "
       "refuses to write it without --force."},
      {"name", Severity::kNote,
       "A name that holds a blank (written \"_\" in the file): the writer keeps the blank, so the name does not "
       "read back whole."},
      {"ignored-keyword", Severity::kNote,
       "A layout 7 line of a keyword that the reader accepts and passes over; a write does not keep it."},
      {"layout2-writer", Severity::kNote,
       "A layout 2 file: its writer puts out definition lines with one value, which the layout 2 reader refuses, "
       "so a written file loses its definitions."},
      {"layout7-writer", Severity::kNote,
       "Something the layout 7 writer does not bring back: header lists in braces, housings, marks, second "
       "package numbers, a last value above 9."},
  };
  return kinds;
}

const FindingKind* FindFindingKind(const std::string& id) {
  for (const FindingKind& kind : AllFindingKinds()) {
    if (id == kind.id) return &kind;
  }
  return nullptr;
}
