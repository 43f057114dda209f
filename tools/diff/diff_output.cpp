#include "tools/diff/diff_output.h"

#include <map>

#include "tools/text/terminal_style.h"

namespace {

// A value for a line of text, its bytes passed through show: names bare,
// texts quoted, lists joined.
std::string Text(const DiffValue& value, bool quoted, const ShowBytes& show) {
  switch (value.type) {
    case DiffValue::Type::kNone:
      return "none";
    case DiffValue::Type::kText:
      return quoted ? "\"" + show(value.text) + "\"" : show(value.text);
    case DiffValue::Type::kList: {
      std::string text;
      for (const DiffValue& item : value.items) text += (text.empty() ? "" : ", ") + Text(item, false, show);
      return text.empty() ? "none" : text;
    }
    case DiffValue::Type::kNumber:
      break;
  }
  return std::to_string(value.number);
}

std::string Joined(const std::vector<std::string>& path, const ShowBytes& show) {
  std::string text;
  for (const std::string& name : path) text += (text.empty() ? "" : " / ") + show(name);
  return text;
}

std::string Lines(const DiffChange& change) {
  std::string text;
  if (change.oldLine > 0) text += "old line " + std::to_string(change.oldLine);
  if (change.newLine > 0) text += (text.empty() ? "" : ", ") + std::string("new line ") + std::to_string(change.newLine);
  return text.empty() ? text : " (" + text + ")";
}

char Sign(DiffChange::Change change) {
  return change == DiffChange::Change::kAdded ? '+' : change == DiffChange::Change::kRemoved ? '-' : '~';
}

TerminalStyle StyleOf(DiffChange::Change change) {
  return change == DiffChange::Change::kAdded     ? TerminalStyle::kGreen
         : change == DiffChange::Change::kRemoved ? TerminalStyle::kRed
                                                  : TerminalStyle::kYellow;
}

// The header a change is listed under: a list, or a device path; none for
// changes that name their whole path themselves.
std::string HeaderOf(const DiffChange& change, const ShowBytes& show) {
  if (change.what == DiffChange::What::kListEntry) return Joined(change.path, show);
  if (change.what == DiffChange::What::kDefinition) return Joined(change.path, show);
  if (change.what == DiffChange::What::kDevice && change.change == DiffChange::Change::kChanged) {
    std::vector<std::string> path = change.path;
    path.push_back(change.name);
    return Joined(path, show);
  }
  return std::string();
}

}  // namespace

void PrintDiffText(std::FILE* out, const std::vector<DiffChange>& changes, bool colour, const ShowBytes& show) {
  std::string header = "\n";  // none printed yet
  for (const DiffChange& change : changes) {
    const std::string next = HeaderOf(change, show);
    if (next != header) {
      if (header != "\n") std::fprintf(out, "\n");
      if (!next.empty()) {
        std::fprintf(out, "%s%s%s\n", colour ? StyleStart(TerminalStyle::kBold) : "", next.c_str(),
                     colour ? kStyleEnd : "");
      }
      header = next;
    }
    const char* on = colour ? StyleStart(StyleOf(change.change)) : "";
    const char* off = colour ? kStyleEnd : "";
    std::string what;
    switch (change.what) {
      case DiffChange::What::kListEntry:
        what = show(change.name);
        break;
      case DiffChange::What::kDefinition:
        what = "definition " + std::to_string(change.id);
        break;
      case DiffChange::What::kDevice:
        what = change.change == DiffChange::Change::kChanged
                   ? std::string("device")
                   : "device " + Joined(change.path, show) + " / " + show(change.name);
        if (change.change == DiffChange::Change::kMoved) what += " moved from " + Joined(change.from, show);
        if (change.change == DiffChange::Change::kRenamed) {
          what += " renamed from " + (change.from == change.path ? std::string() : Joined(change.from, show) + " / ") +
                  show(change.oldName);
        }
        break;
      default: {
        std::vector<std::string> path = change.path;
        path.push_back(change.name);
        what = std::string(WhatName(change.what)) + " " + Joined(path, show);
        break;
      }
    }
    const bool indented = !header.empty();
    if (change.what == DiffChange::What::kListEntry && !change.fields.empty()) {
      // A list entry's number, where it has one on each side.
      const DiffValue& was = change.fields[0].second.first;
      const DiffValue& is = change.fields[0].second.second;
      what += change.change == DiffChange::Change::kMoved
                  ? ": number " + was.Literal() + " -> " + is.Literal()
                  : " (number " + (is.type == DiffValue::Type::kNone ? was : is).Literal() + ")";
    }
    std::string lines = Lines(change);
    if (!lines.empty() && what.back() == ')') {
      what.pop_back();
      lines = ", " + lines.substr(2);
    }
    std::fprintf(out, "%s%s%c %s%s%s\n", indented ? "  " : "", on, Sign(change.change), what.c_str(), lines.c_str(), off);
    // Each field, as old -> new, or as the value of the side that has it.
    for (const auto& field : change.fields) {
      if (change.what == DiffChange::What::kListEntry) break;
      const bool quoted = field.first == "text";
      const DiffValue& was = field.second.first;
      const DiffValue& is = field.second.second;
      std::string value = was.type == DiffValue::Type::kNone ? Text(is, quoted, show) : Text(was, quoted, show);
      if (was.type != DiffValue::Type::kNone && is.type != DiffValue::Type::kNone) {
        value += " -> " + Text(is, quoted, show);
      }
      std::fprintf(out, "%s    %s: %s\n", indented ? "  " : "", field.first.c_str(), value.c_str());
    }
  }
}

void PrintDiffStat(std::FILE* out, const std::vector<DiffChange>& changes, const ShowBytes& show) {
  static const char* const kPlural[] = {"kinds", "manufacturers", "devices", "definitions", "list entries"};
  std::map<int, std::map<int, size_t>> counts;  // what -> change -> count
  std::map<std::string, size_t> perKind;
  for (const DiffChange& change : changes) {
    ++counts[static_cast<int>(change.what)][static_cast<int>(change.change)];
    if (change.what != DiffChange::What::kListEntry) {
      perKind[change.path.empty() ? change.name : change.path.front()] += 1;
    }
  }
  for (const auto& what : counts) {
    std::string line;
    for (const auto& change : what.second) {
      line += (line.empty() ? "" : ", ") + std::to_string(change.second) + " " +
              ChangeName(static_cast<DiffChange::Change>(change.first));
    }
    std::fprintf(out, " %s: %s\n", kPlural[what.first], line.c_str());
  }
  if (perKind.empty()) return;
  std::fprintf(out, "per kind of device:\n");
  for (const auto& kind : perKind) {
    std::fprintf(out, " %s: %zu change%s\n", show(kind.first).c_str(), kind.second, kind.second == 1 ? "" : "s");
  }
}
