#include "tools/output/diff_json.h"

#include <algorithm>

namespace {

// A value with every name and text passed through show.
void WriteValue(JsonWriter& writer, const DiffValue& value, const ShowBytes& show) {
  switch (value.type) {
    case DiffValue::Type::kNone:
      writer.Null();
      return;
    case DiffValue::Type::kNumber:
      writer.Signed(value.number);
      return;
    case DiffValue::Type::kText:
      writer.String(show(value.text));
      return;
    case DiffValue::Type::kList:
      writer.BeginArray();
      for (const DiffValue& item : value.items) WriteValue(writer, item, show);
      writer.EndArray();
      return;
  }
}

void WritePath(JsonWriter& writer, const char* key, const std::vector<std::string>& path, const ShowBytes& show) {
  writer.Key(key);
  writer.BeginArray();
  for (const std::string& name : path) writer.String(show(name));
  writer.EndArray();
}

// {"field": [old, new], ...} in the order of the fields' names; of a name
// given twice, the last value.
void WriteFields(JsonWriter& writer, const DiffChange& change, const ShowBytes& show) {
  std::vector<size_t> order;
  for (size_t i = 0; i < change.fields.size(); ++i) order.push_back(i);
  std::stable_sort(order.begin(), order.end(),
                   [&change](size_t a, size_t b) { return change.fields[a].first < change.fields[b].first; });
  writer.Key("fields");
  writer.BeginObject();
  for (size_t i = 0; i < order.size(); ++i) {
    const auto& field = change.fields[order[i]];
    if (i + 1 < order.size() && change.fields[order[i + 1]].first == field.first) continue;
    writer.Key(field.first);
    writer.BeginArray();
    WriteValue(writer, field.second.first, show);
    WriteValue(writer, field.second.second, show);
    writer.EndArray();
  }
  writer.EndObject();
}

void WriteLineNumber(JsonWriter& writer, const char* key, long line) {
  writer.Key(key);
  if (line > 0) {
    writer.Signed(line);
  } else {
    writer.Null();
  }
}

void WriteChange(JsonWriter& writer, const DiffChange& change, const ShowBytes& show) {
  writer.BeginObject();
  writer.Key("change");
  writer.String(ChangeName(change.change));
  if (!change.fields.empty()) WriteFields(writer, change, show);
  if (!change.from.empty()) WritePath(writer, "from", change.from, show);
  if (change.hasId) {
    writer.Key("id");
    writer.Unsigned(change.id);
  }
  if (!change.name.empty()) {
    writer.Key("name");
    writer.String(show(change.name));
  }
  WriteLineNumber(writer, "new_line", change.newLine);
  WriteLineNumber(writer, "old_line", change.oldLine);
  if (change.change == DiffChange::Change::kRenamed) {
    writer.Key("old_name");
    writer.String(show(change.oldName));
  }
  WritePath(writer, "path", change.path, show);
  if (!change.from.empty()) WritePath(writer, "to", change.path, show);
  writer.Key("what");
  writer.String(WhatName(change.what));
  writer.EndObject();
}

void WriteSide(JsonWriter& writer, const char* key, const std::string& name, int layout, const ShowBytes& show) {
  writer.Key(key);
  writer.BeginObject();
  writer.Key("file");
  writer.String(show(name));
  writer.Key("layout");
  writer.Signed(layout);
  writer.EndObject();
}

}  // namespace

void WriteDiffJson(JsonWriter& writer, const std::string& oldName, int oldLayout, const std::string& newName,
                   int newLayout, const std::vector<DiffChange>& changes, const ShowBytes& show) {
  writer.BeginObject();
  writer.Key("changes");
  writer.BeginArray();
  for (const DiffChange& change : changes) WriteChange(writer, change, show);
  writer.EndArray();
  WriteSide(writer, "new", newName, newLayout, show);
  WriteSide(writer, "old", oldName, oldLayout, show);
  writer.Key("schema");
  writer.Signed(2);
  writer.EndObject();
  writer.EndDocument();
}
