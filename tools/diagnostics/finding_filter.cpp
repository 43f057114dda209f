#include "tools/diagnostics/finding_filter.h"

namespace {

// Every kind id, as "a, b, c".
std::string ValidKinds() {
  std::string list;
  for (const FindingInfo& info : AllFindingKinds()) list += (list.empty() ? "" : ", ") + std::string(info.id);
  return list;
}

// The kinds of ids (empty ids passed over); false with the message in
// *error when an id names no kind.
bool KindsOf(const std::vector<std::string>& ids, const char* option, std::vector<FindingKind>* kinds,
             std::string* error) {
  for (const std::string& id : ids) {
    if (id.empty()) continue;
    FindingKind kind;
    if (!FindingKindOf(id, &kind)) {
      *error = option + std::string(": unknown finding kind '") + id + "'; the kinds are " + ValidKinds();
      return false;
    }
    kinds->push_back(kind);
  }
  return true;
}

}  // namespace

bool FindingFilter::Configure(const std::vector<std::string>& select, const std::vector<std::string>& ignore,
                              std::string* error) {
  std::vector<FindingKind> selected;
  std::vector<FindingKind> ignored;
  if (!KindsOf(select, "--select", &selected, error) || !KindsOf(ignore, "--ignore", &ignored, error)) return false;
  std::vector<bool> admitted(AllFindingKinds().size(), selected.empty());
  for (FindingKind kind : selected) admitted[static_cast<size_t>(kind)] = true;
  for (FindingKind kind : ignored) admitted[static_cast<size_t>(kind)] = false;
  m_admitted = std::move(admitted);
  return true;
}

std::vector<const Finding*> FindingFilter::Apply(const std::vector<Finding>& findings) const {
  std::vector<const Finding*> admitted;
  admitted.reserve(findings.size());
  for (const Finding& finding : findings) {
    if (m_admitted[static_cast<size_t>(finding.kind)]) admitted.push_back(&finding);
  }
  return admitted;
}
