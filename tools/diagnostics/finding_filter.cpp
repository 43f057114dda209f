#include "tools/diagnostics/finding_filter.h"

namespace {

// Every kind id, as "a, b, c".
std::string ValidKinds() {
  std::string list;
  for (const FindingKind& kind : AllFindingKinds()) list += (list.empty() ? "" : ", ") + std::string(kind.id);
  return list;
}

// False with the message in *error when an id of ids names no kind.
bool AllKnown(const std::vector<std::string>& ids, const char* option, std::string* error) {
  for (const std::string& id : ids) {
    if (id.empty() || FindFindingKind(id) != nullptr) continue;
    *error = option + std::string(": unknown finding kind '") + id + "'; the kinds are " + ValidKinds();
    return false;
  }
  return true;
}

}  // namespace

bool FindingFilter::Configure(const std::vector<std::string>& select, const std::vector<std::string>& ignore,
                              std::string* error) {
  if (!AllKnown(select, "--select", error) || !AllKnown(ignore, "--ignore", error)) return false;
  std::unordered_set<std::string> admitted;
  for (const std::string& id : select) {
    if (!id.empty()) admitted.insert(id);
  }
  if (admitted.empty()) {
    for (const FindingKind& kind : AllFindingKinds()) admitted.insert(kind.id);
  }
  for (const std::string& id : ignore) admitted.erase(id);
  m_all = admitted.size() == AllFindingKinds().size();
  m_admitted = std::move(admitted);
  return true;
}

std::vector<const Finding*> FindingFilter::Apply(const std::vector<Finding>& findings) const {
  std::vector<const Finding*> admitted;
  admitted.reserve(findings.size());
  for (const Finding& finding : findings) {
    if (finding.kind == nullptr) continue;
    if (m_all || m_admitted.count(finding.kind->id) != 0) admitted.push_back(&finding);
  }
  return admitted;
}
