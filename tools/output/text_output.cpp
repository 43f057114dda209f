#include "tools/output/text_output.h"

#include <string>

#include "tools/text/control_escape.h"

using nlohmann::json;

namespace {

// A name or text of the file, its control characters escaped.
std::string Shown(const json& text) { return EscapeControls(text.get<std::string>()); }

// "3 (DIP8)", or "3" when the list has no name for the number.
std::string Named(const json& item) {
  std::string text = std::to_string(item["number"].get<unsigned>());
  if (!item["name"].is_null()) text += " (" + Shown(item["name"]) + ")";
  return text;
}

std::string NamedList(const json& items) {
  std::string text;
  for (const json& item : items) text += (text.empty() ? "" : ", ") + Named(item);
  return text.empty() ? "none" : text;
}

std::string Values(const json& values) {
  std::string text;
  for (const json& value : values) text += (text.empty() ? "" : " ") + std::to_string(value.get<int>());
  return text;
}

std::string Marks(const json& marks) {
  std::string text;
  for (const json& mark : marks) text += (text.empty() ? "" : " ") + Shown(mark);
  return text;
}

// "line N" for a known line, empty for null.
std::string LineText(const json& line) {
  return line.is_number() ? "line " + std::to_string(line.get<long>()) : std::string();
}

// " (line N)" behind a name for a known line, empty for null.
std::string LineInParens(const json& line) {
  return line.is_number() ? " (" + LineText(line) + ")" : std::string();
}

void PrintDefinitionLine(std::FILE* out, const char* indent, const json& def, bool withLine) {
  std::fprintf(out, "%sid %u  KVR%u%s  package %s  module %s  adapters %s%s\n", indent, def["id"].get<unsigned>(),
               def["generation"].get<unsigned>(), def["hidden"].get<bool>() ? "  (hidden)" : "",
               NamedList(def["packages"]).c_str(), Named(def["module"]).c_str(), NamedList(def["adapters"]).c_str(),
               withLine && def["line"].is_number() ? ("  " + LineText(def["line"])).c_str() : "");
}

}  // namespace

void PrintTreeDeviceText(std::FILE* out, const json& device) {
  std::fprintf(out, "    %s  (%d visible of %zu definitions)\n", Shown(device["name"]).c_str(),
               device["visible_definitions"].get<int>(), device["definitions"].size());
  for (const json& def : device["definitions"]) {
    if (def["hidden"].get<bool>()) continue;
    PrintDefinitionLine(out, "      ", def, false);
    std::fprintf(out, "        text:%s\n", Shown(def["text"]).c_str());
  }
}

std::string DevicePathText(const json& device) {
  return Shown(device["kind"]["name"]) + " / " + Shown(device["manufacturer"]["name"]) +
         " / " + Shown(device["name"]);
}

void PrintListLine(std::FILE* out, const json& device) {
  std::fprintf(out, "%s (%d visible)\n", DevicePathText(device).c_str(), device["visible_definitions"].get<int>());
}

void PrintDeviceText(std::FILE* out, const json& device) {
  std::fprintf(out, "device: %s%s\n", Shown(device["name"]).c_str(), LineInParens(device["line"]).c_str());
  std::fprintf(out, "kind: %s\n", Shown(device["kind"]["name"]).c_str());
  std::fprintf(out, "manufacturer: %s\n", Shown(device["manufacturer"]["name"]).c_str());
  if (!device["marks"].empty()) std::fprintf(out, "marks: %s\n", Marks(device["marks"]).c_str());
  std::fprintf(out, "housings: %s\n", NamedList(device["housings"]).c_str());
  std::fprintf(out, "definitions: %zu, %d visible\n", device["definitions"].size(),
               device["visible_definitions"].get<int>());
  for (const json& def : device["definitions"]) {
    PrintDefinitionLine(out, "  ", def, true);
    if (!def["package_name"].is_null()) {
      std::fprintf(out, "    package name: %s\n", Shown(def["package_name"]).c_str());
    }
    std::fprintf(out, "    values: %s\n", Values(def["values"]).c_str());
    if (!def["marks"].empty()) std::fprintf(out, "    marks: %s\n", Marks(def["marks"]).c_str());
    std::fprintf(out, "    text:%s\n", Shown(def["text"]).c_str());
  }
}

void PrintFoundText(std::FILE* out, const json& device, const json& def) {
  std::fprintf(out, "kind: %s\n", Shown(device["kind"]["name"]).c_str());
  std::fprintf(out, "manufacturer: %s\n", Shown(device["manufacturer"]["name"]).c_str());
  std::fprintf(out, "device: %s%s\n", Shown(device["name"]).c_str(), LineInParens(device["line"]).c_str());
  std::fprintf(out, "visible index: %d\n", def["visible_index"].get<int>());
  std::fprintf(out, "id: %u%s\n", def["id"].get<unsigned>(), LineInParens(def["line"]).c_str());
  std::fprintf(out, "generation: %u\n", def["generation"].get<unsigned>());
  std::fprintf(out, "package: %s\n", def["package_name"].is_null() ? "" : Shown(def["package_name"]).c_str());
  std::fprintf(out, "package numbers: %s\n", NamedList(def["packages"]).c_str());
  std::fprintf(out, "module: %s\n", Named(def["module"]).c_str());
  std::fprintf(out, "adapters: %s\n", NamedList(def["adapters"]).c_str());
  std::fprintf(out, "values: %s\n", Values(def["values"]).c_str());
  std::fprintf(out, "text:%s\n", Shown(def["text"]).c_str());
}
