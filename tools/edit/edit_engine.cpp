// Applies operations one after another, each read back and verified before
// the next: the bytes an operation asks for are read again through the
// controller of the file's layout, and the catalogue they give must be the
// one the operation asks for (expected_catalogue.h), with no finding of
// error or warning that the file did not have before. The replacements of
// all operations are composed into replacements of the first file.
#include "tools/edit/edit_engine.h"

#include <algorithm>
#include <memory>

#include "tools/edit/byte_splice.h"
#include "tools/edit/edit_step.h"
#include "tools/edit/expected_catalogue.h"
#include "tools/text/text_encoding.h"

namespace {

bool Plan(EditStep& step, const EditOperation& op) {
  switch (op.kind) {
    case EditOperation::Kind::kSet:
      return PlanSet(step, op);
    case EditOperation::Kind::kRename:
      return PlanRename(step, op);
    case EditOperation::Kind::kRenameKind:
      return PlanRenameKind(step, op);
    case EditOperation::Kind::kRenameManufacturer:
      return PlanRenameManufacturer(step, op);
    case EditOperation::Kind::kMove:
      return PlanMove(step, op);
    case EditOperation::Kind::kAddDevice:
      return PlanAddDevice(step, op);
    case EditOperation::Kind::kAddDefinition:
      return PlanAddDefinition(step, op);
    case EditOperation::Kind::kRemove:
      return PlanRemove(step, op);
    case EditOperation::Kind::kRemoveDefinition:
      return PlanRemoveDefinition(step, op);
    case EditOperation::Kind::kAddEntry:
      return PlanAddEntry(step, op);
    case EditOperation::Kind::kRenameEntry:
      return PlanRenameEntry(step, op);
    case EditOperation::Kind::kRemoveEntry:
      return PlanRemoveEntry(step, op);
    case EditOperation::Kind::kRenumberIds:
      return PlanRenumberIds(step, op);
  }
  return false;
}

// The first finding of edited, of error or warning, that before has not:
// one of the same kind at the place it maps back to (within what was
// replaced, for a finding in new bytes). Null when there is none.
const Finding* NewFinding(const Analysis& before, const Analysis& edited, const std::vector<ByteReplacement>& edits) {
  const OffsetMap map(edits);
  const std::vector<Finding>& old = before.FindingsOf().List();
  for (const Finding& finding : edited.FindingsOf().List()) {
    if (finding.severity == Severity::kNote) continue;
    long replaced = -1;
    const std::uint32_t at = map.ToOld(finding.span.begin, &replaced);
    ByteSpan range{at, at};
    if (replaced >= 0) range = edits[static_cast<size_t>(replaced)].span;
    auto it = std::lower_bound(old.begin(), old.end(), range.begin,
                               [](const Finding& f, std::uint32_t offset) { return f.span.begin < offset; });
    bool known = false;
    for (; it != old.end() && it->span.begin <= range.end && !known; ++it) known = it->kind == finding.kind;
    if (!known) return &finding;
  }
  return nullptr;
}

}  // namespace

EditResult ApplyEdits(Analysis& analysis, const std::vector<EditOperation>& operations, bool describe) {
  EditResult result;
  AnalysisOptions options;
  options.layout = analysis.Layout();
  const std::uint32_t originalSize = static_cast<std::uint32_t>(analysis.Bytes().size());
  std::vector<ByteReplacement> total;  // from the original file to the one the operations so far made
  std::unique_ptr<Analysis> current;
  Analysis* base = &analysis;
  for (const EditOperation& op : operations) {
    std::unique_ptr<Analysis> next;
    {
      // Places of this step are in base's bytes: back to the original file.
      const OffsetMap toOriginal(total);
      ExpectedCatalogue expected(*base);
      EditStep step(*base, expected, result);
      if (!Plan(step, op)) {
        result.place = toOriginal.ToOld(result.place);
        for (ByteSpan& span : result.related) span = toOriginal.ToOld(span);
        return result;
      }
      if (!SortReplacements(&step.replacements)) {
        result.status = EditResult::Status::kRefused;
        result.reason = "the edit would change one place twice";
        return result;
      }
      next = Analysis::ReadText(analysis.Path(), ApplyReplacements(base->Bytes(), step.replacements), options);
      const OffsetMap toBase(step.replacements);
      auto refuse = [&](std::string reason, ByteSpan inEdited) {
        result.status = EditResult::Status::kRefused;
        result.reason = std::move(reason);
        result.place = toOriginal.ToOld(toBase.ToOld(inEdited));
        return result;
      };
      if (!next->Usable()) return refuse("the edited file would not be read: " + next->Error(), ByteSpan{});
      // A finding says why a line reads otherwise; the comparison says what
      // differs where no finding does.
      if (const Finding* finding = NewFinding(*base, *next, step.replacements)) {
        return refuse("the edited file would read otherwise than it looks: " + ShownText(next->MessageOf(*finding)),
                      finding->span);
      }
      Mismatch mismatch;
      if (!expected.Matches(*next, &mismatch)) return refuse(mismatch.reason, mismatch.place);
      total = ComposeReplacements(total, originalSize, step.replacements);
    }
    current = std::move(next);
    base = current.get();
  }
  result.status = EditResult::Status::kApplied;
  result.bytes = std::string(base->Bytes());
  result.replacements = std::move(total);
  if (describe) result.changes = DiffCatalogues(analysis, *base, DiffOptions());
  return result;
}
