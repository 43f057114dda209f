#include "tools/analysis/finding.h"

#include <algorithm>
#include <numeric>

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return "error";
    case Severity::kWarning:
      return "warning";
    case Severity::kNote:
      return "note";
  }
  return "error";
}

bool ParseSeverity(const std::string& name, Severity* severity) {
  for (Severity s : {Severity::kError, Severity::kWarning, Severity::kNote}) {
    if (name == SeverityName(s)) {
      *severity = s;
      return true;
    }
  }
  return false;
}

const std::vector<FindingInfo>& AllFindingKinds() {
  static const std::vector<FindingInfo> kinds = {
#define DEVDEF_FINDING(name, id, severity, title, explanation) \
  {FindingKind::name, id, Severity::severity, title, explanation},
#include "tools/analysis/finding_kinds.def"
#undef DEVDEF_FINDING
  };
  return kinds;
}

const FindingInfo& InfoOf(FindingKind kind) { return AllFindingKinds()[static_cast<size_t>(kind)]; }

bool FindingKindOf(const std::string& id, FindingKind* kind) {
  for (const FindingInfo& info : AllFindingKinds()) {
    if (id == info.id) {
      *kind = info.kind;
      return true;
    }
  }
  return false;
}

std::uint32_t Findings::Add(FindingKind kind, ByteSpan span, MessageArgs says) {
  Finding finding;
  finding.kind = kind;
  finding.severity = InfoOf(kind).severity;
  finding.span = span;
  finding.says = says;
  m_list.push_back(finding);
  return static_cast<std::uint32_t>(m_list.size() - 1);
}

std::uint32_t Findings::AddText(FindingKind kind, ByteSpan span, std::string text) {
  m_texts.push_back(std::move(text));
  MessageArgs says;
  says.form = MessageForm::kText;
  says.a = static_cast<std::uint32_t>(m_texts.size() - 1);
  return Add(kind, span, says);
}

void Findings::Relate(std::uint32_t number, ByteSpan span, MessageArgs says, bool cause) {
  m_relations.push_back(Relation{number, RelatedPlace{span, says, cause}});
}

namespace {

bool SamePlaceAndMessage(const Finding& a, const Finding& b) {
  return a.span == b.span && a.kind == b.kind && a.says == b.says && a.after == b.after;
}

}  // namespace

void Findings::Finish() {
  auto byPlace = [](const Finding& x, const Finding& y) {
    return x.span.begin != y.span.begin ? x.span.begin < y.span.begin : x.span.end < y.span.end;
  };
  // Each finding's new number, where it changes.
  std::vector<std::uint32_t> renumbered;
  if (std::is_sorted(m_list.begin(), m_list.end(), byPlace)) {
    // Found in the order of the file, as most are: merged where they stand.
    if (!m_relations.empty()) renumbered.resize(m_list.size());
    size_t kept = 0;
    for (size_t i = 0; i < m_list.size(); ++i) {
      if (kept > 0 && SamePlaceAndMessage(m_list[kept - 1], m_list[i])) {
        ++m_list[kept - 1].count;
        if (!renumbered.empty()) renumbered[i] = kNoRecord;
        continue;
      }
      if (!renumbered.empty()) renumbered[i] = static_cast<std::uint32_t>(kept);
      if (kept != i) m_list[kept] = m_list[i];
      ++kept;
    }
    m_list.resize(kept);
  } else {
    // The order of the file, stably; then each finding's new number.
    std::vector<std::uint32_t> order(m_list.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(),
                     [this, &byPlace](std::uint32_t x, std::uint32_t y) { return byPlace(m_list[x], m_list[y]); });
    std::vector<Finding> sorted;
    sorted.reserve(m_list.size());
    renumbered.assign(m_list.size(), kNoRecord);
    for (std::uint32_t old : order) {
      const Finding& finding = m_list[old];
      if (!sorted.empty() && SamePlaceAndMessage(sorted.back(), finding)) {
        // Merged into the one before: its related places go with it.
        ++sorted.back().count;
        continue;
      }
      renumbered[old] = static_cast<std::uint32_t>(sorted.size());
      sorted.push_back(finding);
    }
    m_list = std::move(sorted);
  }

  // Each finding's related places together, in the order they were added.
  for (Relation& relation : m_relations) relation.owner = renumbered[relation.owner];
  std::stable_sort(m_relations.begin(), m_relations.end(),
                   [](const Relation& x, const Relation& y) { return x.owner < y.owner; });
  m_related.clear();
  for (const Relation& relation : m_relations) {
    if (relation.owner == kNoRecord) continue;
    Finding& owner = m_list[relation.owner];
    if (owner.relatedCount == 0) owner.firstRelated = static_cast<std::uint32_t>(m_related.size());
    ++owner.relatedCount;
    m_related.push_back(relation.place);
  }
  m_relations.clear();
  m_relations.shrink_to_fit();
}
