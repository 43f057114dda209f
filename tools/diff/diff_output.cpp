#include "tools/diff/diff_output.h"

#include <map>

using nlohmann::json;

namespace {

const char* const kGreen = "\033[32m";
const char* const kRed = "\033[31m";
const char* const kYellow = "\033[33m";
const char* const kBold = "\033[1m";
const char* const kReset = "\033[m";

// A JSON value with every string passed through show.
json Shown(const json& value, const ShowBytes& show) {
  if (value.is_string()) return show(value.get<std::string>());
  if (value.is_array()) {
    json out = json::array();
    for (const json& item : value) out.push_back(Shown(item, show));
    return out;
  }
  return value;
}

// A value for a line of text: names bare, texts quoted, lists joined.
std::string Text(const json& value, bool quoted) {
  if (value.is_null()) return "none";
  if (value.is_string()) return quoted ? "\"" + value.get<std::string>() + "\"" : value.get<std::string>();
  if (value.is_array()) {
    std::string text;
    for (const json& item : value) text += (text.empty() ? "" : ", ") + Text(item, false);
    return text.empty() ? "none" : text;
  }
  return value.dump();
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

const char* Colour(DiffChange::Change change) {
  return change == DiffChange::Change::kAdded ? kGreen : change == DiffChange::Change::kRemoved ? kRed : kYellow;
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
      if (!next.empty()) std::fprintf(out, "%s%s%s\n", colour ? kBold : "", next.c_str(), colour ? kReset : "");
      header = next;
    }
    const char* on = colour ? Colour(change.change) : "";
    const char* off = colour ? kReset : "";
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
        break;
      default: {
        std::vector<std::string> path = change.path;
        path.push_back(change.name);
        what = std::string(WhatName(change.what)) + " " + Joined(path, show);
        break;
      }
    }
    if (change.change == DiffChange::Change::kMoved && change.what == DiffChange::What::kDevice) {
      what += " moved from " + Joined(change.from, show);
    }
    const bool indented = !header.empty();
    if (change.what == DiffChange::What::kListEntry && !change.fields.empty()) {
      // A list entry's number, where it has one on each side.
      const json& was = change.fields[0].second.first;
      const json& is = change.fields[0].second.second;
      what += change.change == DiffChange::Change::kMoved ? ": number " + was.dump() + " -> " + is.dump()
                                                          : " (number " + (is.is_null() ? was : is).dump() + ")";
    }
    std::string lines = Lines(change);
    if (!lines.empty() && what.back() == ')') {
      what.pop_back();
      lines = ", " + lines.substr(2);
    }
    std::fprintf(out, "%s%s%c %s%s%s\n", indented ? "  " : "", on, Sign(change.change), what.c_str(), lines.c_str(), off);
    for (const auto& field : change.fields) {
      if (change.what == DiffChange::What::kListEntry) break;
      const bool quoted = field.first == "text";
      std::fprintf(out, "%s    %s: %s -> %s\n", indented ? "  " : "", field.first.c_str(),
                   Text(Shown(field.second.first, show), quoted).c_str(),
                   Text(Shown(field.second.second, show), quoted).c_str());
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

json DiffJson(const std::string& oldName, int oldLayout, const std::string& newName, int newLayout,
              const std::vector<DiffChange>& changes, const ShowBytes& show) {
  json list = json::array();
  for (const DiffChange& change : changes) {
    json item = {{"change", ChangeName(change.change)}, {"what", WhatName(change.what)},
                 {"path", Shown(change.path, show)}};
    if (!change.name.empty()) item["name"] = show(change.name);
    if (change.hasId) item["id"] = change.id;
    if (!change.fields.empty()) {
      json fields = json::object();
      for (const auto& field : change.fields) {
        fields[field.first] = json::array({Shown(field.second.first, show), Shown(field.second.second, show)});
      }
      item["fields"] = std::move(fields);
    }
    if (change.change == DiffChange::Change::kMoved && change.what == DiffChange::What::kDevice) {
      item["from"] = Shown(change.from, show);
      item["to"] = Shown(change.path, show);
    }
    item["old_line"] = change.oldLine > 0 ? json(change.oldLine) : json(nullptr);
    item["new_line"] = change.newLine > 0 ? json(change.newLine) : json(nullptr);
    list.push_back(std::move(item));
  }
  return json{{"schema", 1},
              {"old", {{"file", show(oldName)}, {"layout", oldLayout}}},
              {"new", {{"file", show(newName)}, {"layout", newLayout}}},
              {"changes", std::move(list)}};
}
