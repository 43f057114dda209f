#include "tools/commands/lookup_report.h"

#include <cstdio>

#include "tools/output/text_output.h"
#include "tools/text/control_escape.h"
#include "tools/text/text_encoding.h"

namespace {

// How many devices a report names before it says how many more there are.
constexpr size_t kShownCandidates = 10;

}  // namespace

void ReportNoDevice(const NamePattern& pattern, const Analysis& analysis, const std::vector<std::uint32_t>& closest) {
  if (pattern.HasWildcards()) {
    std::fprintf(stderr, "devdef: no device matches '%s'\n", EscapeControls(pattern.Argument()).c_str());
    return;
  }
  std::string names;
  std::vector<std::string> said;
  for (std::uint32_t device : closest) {
    const std::string name = EscapeControls(ShownText(analysis.Devices()[device].device->m_DeviceName));
    bool again = false;
    for (const std::string& before : said) again = again || before == name;
    if (again) continue;
    names += (said.empty() ? "" : ", ") + name;
    said.push_back(name);
  }
  std::fprintf(stderr, "devdef: no device named '%s'%s%s\n", EscapeControls(pattern.Argument()).c_str(),
               names.empty() ? "" : "; closest: ", names.c_str());
}

void ReportSeveralDevices(const NamePattern& pattern, const Analysis& analysis,
                          const std::vector<std::uint32_t>& devices, const std::string& hint) {
  std::fprintf(stderr, "devdef: '%s' names %zu devices; %s:\n", EscapeControls(pattern.Argument()).c_str(),
               devices.size(), hint.c_str());
  for (size_t i = 0; i < devices.size() && i < kShownCandidates; ++i) {
    const long line = analysis.Map().PointOf(analysis.Devices()[devices[i]].name.begin).line;
    std::fprintf(stderr, "  %s (line %ld)\n", DevicePathText(analysis, devices[i]).c_str(), line);
  }
  if (devices.size() > kShownCandidates) {
    std::fprintf(stderr, "  and %zu more\n", devices.size() - kShownCandidates);
  }
}

void ReportHidden(const std::string& what, const std::vector<unsigned>& generations, const std::string& command,
                  const std::string& rest) {
  std::string list;
  for (size_t i = 0; i < generations.size(); ++i) {
    list += (i == 0 ? "" : i + 1 == generations.size() ? " and " : ", ") + std::to_string(generations[i]);
  }
  std::fprintf(stderr, "devdef: %s: %s %s (devdef %s --generation %u %s)\n", what.c_str(),
               generations.size() == 1 ? "its generation is" : "their generations are", list.c_str(),
               command.c_str(), generations.front(), rest.c_str());
}

std::string ShellWord(const std::string& word) {
  bool plain = !word.empty();
  for (char c : word) {
    const bool safe = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                      c == '/' || c == '.' || c == '-' || c == '_' || c == '+' || c == ',' || c == ':';
    plain = plain && safe;
  }
  if (plain) return word;
  std::string quoted = "'";
  for (char c : word) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}
