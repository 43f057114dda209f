#include "tools/lsp/server_settings.h"

using nlohmann::json;

AnalysisOptions ServerSettings::Options() const {
  AnalysisOptions options;
  options.layout = layout;
  options.generation = generation;
  options.checkIds = checkIds;
  return options;
}

namespace {

// The value as one of the numbers allowed, or false.
bool OneOf(const json& value, std::initializer_list<int> allowed, int* out) {
  if (!value.is_number_integer()) return false;
  const auto number = value.get<std::int64_t>();
  for (int candidate : allowed) {
    if (number == candidate) {
      *out = candidate;
      return true;
    }
  }
  return false;
}

// A value for a message: numbers and short strings as they are, anything
// else by its type (it may be nested to any depth).
std::string Shown(const json& value) {
  if (value.is_number() || value.is_boolean()) return value.dump();
  if (value.is_string() && value.get_ref<const std::string&>().size() <= 40) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
  }
  return std::string("a value of type ") + value.type_name();
}

}  // namespace

std::vector<std::string> ApplySettings(const json& settings, ServerSettings* into) {
  std::vector<std::string> problems;
  if (!settings.is_object()) return problems;
  auto found = settings.find("devdef");
  if (found == settings.end() || found->is_null()) return problems;
  if (!found->is_object()) {
    problems.push_back("the setting devdef is no object: passed over");
    return problems;
  }
  const json& devdef = *found;
  auto layout = devdef.find("layout");
  if (layout != devdef.end()) {
    if (layout->is_null() || (layout->is_number_integer() && layout->get<std::int64_t>() == 0)) {
      into->layout = 0;
    } else if (!OneOf(*layout, {1, 2, 7}, &into->layout)) {
      problems.push_back("devdef.layout must be 1, 2, 7 or null, not " + Shown(*layout) + ": passed over");
    }
  }
  auto generation = devdef.find("generation");
  if (generation != devdef.end() && !OneOf(*generation, {3, 4, 5}, &into->generation)) {
    problems.push_back("devdef.generation must be 3, 4 or 5, not " + Shown(*generation) + ": passed over");
  }
  auto checkIds = devdef.find("checkIds");
  if (checkIds != devdef.end()) {
    if (checkIds->is_boolean()) {
      into->checkIds = checkIds->get<bool>();
    } else {
      problems.push_back("devdef.checkIds must be true or false, not " + Shown(*checkIds) + ": passed over");
    }
  }
  return problems;
}
