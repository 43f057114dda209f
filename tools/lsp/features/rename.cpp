#include "tools/lsp/features/rename.h"

#include <vector>

#include "tools/edit/edit_engine.h"
#include "tools/lsp/features/workspace_edit.h"
#include "tools/lsp/protocol/json_rpc.h"

using nlohmann::json;

namespace {

// A name of the catalogue as its bytes.
std::string Raw(const CString& name) {
  return std::string(static_cast<LPCTSTR>(name), static_cast<size_t>(name.GetLength()));
}

// The list as the edit engine's operations name it.
const char* ListWord(int list) {
  static const char* const words[] = {"housing", "adapter", "module"};
  return words[list];
}

// What can be renamed at offset: its place, its bytes without a mark, and
// its name as the catalogue has it.
bool RenamableAt(const DocumentView& view, size_t offset, IndexedPlace* place, ByteSpan* span, std::string* name) {
  if (!view.index.At(offset, place)) return false;
  const Analysis& analysis = view.analysis;
  *span = place->span;
  switch (place->kind) {
    case IndexedPlace::kKind:
      *name = Raw(analysis.Kinds()[place->record].kind->m_Name);
      return true;
    case IndexedPlace::kManufacturer:
      *name = Raw(analysis.Manufacturers()[place->record].manufacturer->m_Name);
      return true;
    case IndexedPlace::kDevice: {
      const DEVICE_ITEM& device = *analysis.Devices()[place->record].device;
      // The mark in front of the name stays.
      if (device.m_DeviceFlags != 0 && span->end > span->begin) ++span->begin;
      *name = Raw(device.m_DeviceName);
      return true;
    }
    case IndexedPlace::kListEntry:
      if (place->record >= analysis.ListNames(place->list).size()) return false;
      *name = analysis.ListNames(place->list)[place->record];
      return true;
    case IndexedPlace::kDefinition:
      return false;
  }
  return false;
}

// The operation that renames what stands at place to newName (the editor's
// text), naming what it renames by its record.
EditOperation RenameOf(const IndexedPlace& place, const std::string& newName) {
  EditOperation operation;
  operation.newName = newName;
  switch (place.kind) {
    case IndexedPlace::kKind:
      operation.kind = EditOperation::Kind::kRenameKind;
      operation.kindRecord = place.record;
      break;
    case IndexedPlace::kManufacturer:
      operation.kind = EditOperation::Kind::kRenameManufacturer;
      operation.manufacturerRecord = place.record;
      break;
    case IndexedPlace::kDevice:
      operation.kind = EditOperation::Kind::kRename;
      operation.deviceRecord = place.record;
      break;
    default:
      operation.kind = EditOperation::Kind::kRenameEntry;
      operation.list = ListWord(place.list);
      operation.entryNumber = static_cast<long>(place.record);
      break;
  }
  return operation;
}

}  // namespace

json PrepareRenameAt(const DocumentView& view, size_t offset) {
  IndexedPlace place;
  ByteSpan span;
  std::string name;
  if (!RenamableAt(view, offset, &place, &span, &name)) return nullptr;
  return json{{"range", view.positions.RangeJson(view.RangeOf(span))}, {"placeholder", view.Shown(name)}};
}

json RenameAt(const DocumentView& view, size_t offset, const std::string& newName) {
  IndexedPlace place;
  ByteSpan span;
  std::string name;
  if (!RenamableAt(view, offset, &place, &span, &name)) return nullptr;
  const EditResult result = ApplyToDocument(view, {RenameOf(place, newName)});
  if (result.status == EditResult::Status::kApplied) return WorkspaceEditOf(view, result.replacements);
  std::string reason = result.reason;
  if (!result.candidates.empty()) {
    reason += " (";
    for (size_t i = 0; i < result.candidates.size(); ++i) reason += (i > 0 ? ", " : "") + result.candidates[i];
    reason += ")";
  }
  throw RpcError(kRequestFailed, reason.empty() ? std::string("the rename was refused") : reason);
}
