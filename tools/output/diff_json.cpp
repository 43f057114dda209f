#include "tools/output/diff_json.h"

using nlohmann::json;

namespace {

// A value with every name and text passed through show.
json Shown(const DiffValue& value, const ShowBytes& show) {
  switch (value.type) {
    case DiffValue::Type::kNone:
      return nullptr;
    case DiffValue::Type::kNumber:
      return value.number;
    case DiffValue::Type::kText:
      return show(value.text);
    case DiffValue::Type::kList: {
      json items = json::array();
      for (const DiffValue& item : value.items) items.push_back(Shown(item, show));
      return items;
    }
  }
  return nullptr;
}

json Shown(const std::vector<std::string>& path, const ShowBytes& show) {
  json names = json::array();
  for (const std::string& name : path) names.push_back(show(name));
  return names;
}

}  // namespace

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
    if (!change.from.empty()) {
      item["from"] = Shown(change.from, show);
      item["to"] = Shown(change.path, show);
    }
    if (change.change == DiffChange::Change::kRenamed) item["old_name"] = show(change.oldName);
    item["old_line"] = change.oldLine > 0 ? json(change.oldLine) : json(nullptr);
    item["new_line"] = change.newLine > 0 ? json(change.newLine) : json(nullptr);
    list.push_back(std::move(item));
  }
  return json{{"schema", 2},
              {"old", {{"file", show(oldName)}, {"layout", oldLayout}}},
              {"new", {{"file", show(newName)}, {"layout", newLayout}}},
              {"changes", std::move(list)}};
}
