#include "tools/output/diff_json.h"

#include <algorithm>

#include "tools/text/text_encoding.h"
#include "tools/text/utf8.h"

namespace {

// A name or text of a file, as the run shows its bytes.
void WriteShown(JsonWriter& writer, const std::string& bytes) {
  // ASCII reads the same in every encoding.
  if (AsciiRun(bytes.data(), bytes.size()) == bytes.size()) {
    writer.String(bytes);
    return;
  }
  thread_local std::string text;
  text.clear();
  AppendDecoded(ShownEncoding(), bytes.data(), bytes.size(), &text);
  writer.String(text);
}

// A value, its names and texts as the run shows them.
void WriteValue(JsonWriter& writer, const DiffValue& value) {
  switch (value.type) {
    case DiffValue::Type::kNone:
      writer.Null();
      return;
    case DiffValue::Type::kNumber:
      writer.Signed(value.number);
      return;
    case DiffValue::Type::kText:
      WriteShown(writer, value.text);
      return;
    case DiffValue::Type::kList:
      writer.BeginArray();
      for (const DiffValue& item : value.items) WriteValue(writer, item);
      writer.EndArray();
      return;
  }
}

void WritePath(JsonWriter& writer, const char* key, const std::vector<std::string>& path) {
  writer.Key(key);
  writer.BeginArray();
  for (const std::string& name : path) WriteShown(writer, name);
  writer.EndArray();
}

// {"field": [old, new], ...} in the order of the fields' names; of a name
// given twice, the last value.
void WriteFields(JsonWriter& writer, const DiffChange& change) {
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
    WriteValue(writer, field.second.first);
    WriteValue(writer, field.second.second);
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

void WriteChange(JsonWriter& writer, const DiffChange& change) {
  writer.BeginObject();
  writer.Key("change");
  writer.String(ChangeName(change.change));
  if (!change.fields.empty()) WriteFields(writer, change);
  if (!change.from.empty()) WritePath(writer, "from", change.from);
  if (change.hasId) {
    writer.Key("id");
    writer.Unsigned(change.id);
  }
  if (!change.name.empty()) {
    writer.Key("name");
    WriteShown(writer, change.name);
  }
  WriteLineNumber(writer, "new_line", change.newLine);
  WriteLineNumber(writer, "old_line", change.oldLine);
  if (change.change == DiffChange::Change::kRenamed) {
    writer.Key("old_name");
    WriteShown(writer, change.oldName);
  }
  WritePath(writer, "path", change.path);
  if (!change.from.empty()) WritePath(writer, "to", change.path);
  writer.Key("what");
  writer.String(WhatName(change.what));
  writer.EndObject();
}

void WriteSide(JsonWriter& writer, const char* key, const std::string& name, int layout) {
  writer.Key(key);
  writer.BeginObject();
  writer.Key("file");
  WriteShown(writer, name);
  writer.Key("layout");
  writer.Signed(layout);
  writer.EndObject();
}

}  // namespace

void WriteDiffJson(JsonWriter& writer, const std::string& oldName, int oldLayout, const std::string& newName,
                   int newLayout, const std::vector<DiffChange>& changes) {
  writer.BeginObject();
  writer.Key("changes");
  writer.BeginArray();
  for (const DiffChange& change : changes) WriteChange(writer, change);
  writer.EndArray();
  WriteSide(writer, "new", newName, newLayout);
  WriteSide(writer, "old", oldName, oldLayout);
  writer.Key("schema");
  writer.Signed(2);
  writer.EndObject();
  writer.EndDocument();
}
