// Which kinds of finding "devdef check" reports: every kind, or those that
// --select names, less those that --ignore names.
#ifndef DEVDEF_TOOLS_DIAGNOSTICS_FINDING_FILTER_H_
#define DEVDEF_TOOLS_DIAGNOSTICS_FINDING_FILTER_H_

#include <string>
#include <vector>

#include "tools/analysis/finding.h"

// Admits every kind until Configure narrows it.
class FindingFilter {
 public:
  // Admits the kinds with the ids of select (every kind when it names none)
  // less those of ignore; empty ids are passed over. False, with a message
  // that names the id and lists the valid ones in *error, when an id names
  // no kind; the filter is then unchanged.
  bool Configure(const std::vector<std::string>& select, const std::vector<std::string>& ignore, std::string* error);
  // The findings of admitted kinds, in their order.
  std::vector<const Finding*> Apply(const std::vector<Finding>& findings) const;

 private:
  std::vector<bool> m_admitted = std::vector<bool>(AllFindingKinds().size(), true);  // by kind
};

#endif  // DEVDEF_TOOLS_DIAGNOSTICS_FINDING_FILTER_H_
