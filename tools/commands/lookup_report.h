// What the tool says on standard error when a name or an id does not name
// what a command needs: nothing, several devices, or definitions hidden in
// the generation in force.
#ifndef DEVDEF_TOOLS_COMMANDS_LOOKUP_REPORT_H_
#define DEVDEF_TOOLS_COMMANDS_LOOKUP_REPORT_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/lookup/name_match.h"

// "no device named 'X'; closest: A, B" (the names of the devices closest,
// each once; the clause only when there are any), or "no device matches
// 'X'" for a pattern.
void ReportNoDevice(const NamePattern& pattern, const Analysis& analysis, const std::vector<std::uint32_t>& closest);
// That the name stands for several devices, and the first of them, one
// line each (kind / manufacturer / name and line); "hint" tells how to go on.
void ReportSeveralDevices(const NamePattern& pattern, const Analysis& analysis,
                          const std::vector<std::uint32_t>& devices, const std::string& hint);
// That what was asked for is hidden in the generation in force (what says
// so), which generations show it, and the command line that shows it:
// "WHAT: its generation is 3 (devdef COMMAND --generation 3 REST)";
// generations is not empty.
void ReportHidden(const std::string& what, const std::vector<unsigned>& generations, const std::string& command,
                  const std::string& rest);
// A word quoted for a POSIX shell when it needs it.
std::string ShellWord(const std::string& word);

#endif  // DEVDEF_TOOLS_COMMANDS_LOOKUP_REPORT_H_
