// The settings of the language server: the read options of the commands
// (layout, generation in force, id check), given on its command line and
// changed by the client under "devdef" in its initialization options or
// its configuration.
#ifndef DEVDEF_TOOLS_LSP_SERVER_SETTINGS_H_
#define DEVDEF_TOOLS_LSP_SERVER_SETTINGS_H_

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"

struct ServerSettings {
  int layout = 0;  // 0: the layout the document's version line names
  int generation = 5;
  bool checkIds = false;

  // The options of an analysis under these settings.
  AnalysisOptions Options() const;
};

// Takes the settings found in settings["devdef"] ("layout": 1, 2, 7 or
// null; "generation": 3, 4 or 5; "checkIds": true or false) into *into and
// leaves the others as they are. Gives one line for each value it passed
// over because it is not one of these.
std::vector<std::string> ApplySettings(const nlohmann::json& settings, ServerSettings* into);

#endif  // DEVDEF_TOOLS_LSP_SERVER_SETTINGS_H_
