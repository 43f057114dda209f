// One operation being turned into replacements of the bytes of the file it
// edits, with the catalogue it asks for; and the ways it can fail. Each
// operation of the engine is a function of this step (edit_devices.cpp,
// edit_definitions.cpp, edit_entries.cpp).
#ifndef DEVDEF_TOOLS_EDIT_EDIT_STEP_H_
#define DEVDEF_TOOLS_EDIT_EDIT_STEP_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/edit/edit_engine.h"
#include "tools/edit/expected_catalogue.h"
#include "tools/edit/file_lines.h"

struct EditStep {
  EditStep(Analysis& analysis, ExpectedCatalogue& expected, EditResult& result)
      : a(analysis), expect(expected), lines(analysis.Bytes()), out(result) {}

  Analysis& a;
  ExpectedCatalogue& expect;
  FileLines lines;
  std::vector<ByteReplacement> replacements;
  EditResult& out;

  std::string_view Bytes() const { return a.Bytes(); }
  std::string Text(ByteSpan span) const { return std::string(a.Bytes().substr(span.begin, span.end - span.begin)); }
  void Replace(ByteSpan span, std::string bytes) { replacements.push_back(ByteReplacement{span, std::move(bytes)}); }
  void Insert(std::uint32_t at, std::string bytes) { Replace(ByteSpan{at, at}, std::move(bytes)); }

  // The edit cannot be made: why, and where in the file. Gives false.
  bool Refuse(std::string reason, ByteSpan place, std::vector<ByteSpan> related = {}) {
    out.status = EditResult::Status::kRefused;
    out.reason = std::move(reason);
    out.place = place;
    out.related = std::move(related);
    return false;
  }
  // A name that names nothing, or more than one thing (ambiguous). Gives
  // false.
  bool Unknown(std::string reason, std::vector<std::string> candidates, bool ambiguous = false) {
    out.status = EditResult::Status::kUnknown;
    out.reason = std::move(reason);
    out.candidates = std::move(candidates);
    out.ambiguous = ambiguous;
    return false;
  }
};

// The operations, each turning op into replacements and the catalogue it
// asks for; false when refused or a name names nothing (step.out says).
bool PlanSet(EditStep& step, const EditOperation& op);
bool PlanAddDefinition(EditStep& step, const EditOperation& op);
bool PlanRemoveDefinition(EditStep& step, const EditOperation& op);
bool PlanRenumberIds(EditStep& step, const EditOperation& op);
bool PlanRename(EditStep& step, const EditOperation& op);
bool PlanRenameKind(EditStep& step, const EditOperation& op);
bool PlanRenameManufacturer(EditStep& step, const EditOperation& op);
bool PlanMove(EditStep& step, const EditOperation& op);
bool PlanAddDevice(EditStep& step, const EditOperation& op);
bool PlanRemove(EditStep& step, const EditOperation& op);
bool PlanAddEntry(EditStep& step, const EditOperation& op);
bool PlanRenameEntry(EditStep& step, const EditOperation& op);
bool PlanRemoveEntry(EditStep& step, const EditOperation& op);

#endif  // DEVDEF_TOOLS_EDIT_EDIT_STEP_H_
