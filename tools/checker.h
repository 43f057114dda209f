// "devdef check": reads a definition file through a controller subclass that
// watches the library's own readers, and reports what they refused, dropped
// or read differently from what the file seems to mean, and what will not
// survive a write.
#ifndef DEVDEF_TOOLS_CHECKER_H_
#define DEVDEF_TOOLS_CHECKER_H_

#include <string>
#include <vector>

#include "tools/catalogue_file.h"

struct Finding {
  long line;          // 1-based line of the file
  std::string kind;   // a short class: "refused", "duplicate-id", ...
  std::string message;
};

struct CheckResult {
  bool read = false;  // the file could be read as a definition file
  int layout = -1;
  std::vector<Finding> findings;  // in line order
};

CheckResult CheckDefinitionFile(const std::string& path, const CatalogueOptions& options);

#endif  // DEVDEF_TOOLS_CHECKER_H_
