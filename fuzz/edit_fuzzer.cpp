// Random operations on random files: the input's last four bytes choose up
// to two operations and what they name (records of the file, names and
// numbers from small pools), the rest is the file. Every accepted edit must
// read back as asked: its replacements make its bytes, and what devdef diff
// says of it is the change the operation names. A refused one leaves no
// bytes and no replacements behind.
#include <memory>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "tools/edit/byte_splice.h"
#include "tools/edit/edit_engine.h"
#include "tools/text/text_encoding.h"

namespace {

const char* const kNames[] = {"X", "New_Name", "A B", "Bad:", ";c", "", "\xC3\xA9t\xC3\xA9", "DIP8"};

std::string Name(unsigned byte) { return kNames[byte % (sizeof kNames / sizeof kNames[0])]; }

// An operation of kind chosen by a, naming what b picks in analysis.
EditOperation Operation(const Analysis& analysis, unsigned a, unsigned b) {
  EditOperation op;
  const std::uint32_t devices = static_cast<std::uint32_t>(analysis.Devices().size());
  const std::uint32_t definitions = static_cast<std::uint32_t>(analysis.Definitions().size());
  op.deviceRecord = devices > 0 ? b % devices : kNoRecord;
  op.definitionRecord = definitions > 0 ? b % definitions : kNoRecord;
  static const char* const lists[] = {"housing", "adapter", "module"};
  op.list = lists[b % 3];
  switch (a % 10) {
    case 0:
      op.kind = EditOperation::Kind::kSet;
      op.assignments = {{b & 1 ? "module" : "text", b & 1 ? std::to_string(b % 4) : Name(b)}};
      break;
    case 1:
      op.kind = EditOperation::Kind::kRename;
      op.newName = Name(b / 3);
      break;
    case 2:
      op.kind = EditOperation::Kind::kAddEntry;
      op.entry = Name(b / 3) + "Z";
      op.at = static_cast<long>(b % 5) - 1;
      break;
    case 3:
      op.kind = EditOperation::Kind::kRemove;
      break;
    case 4:
      op.kind = EditOperation::Kind::kAddDefinition;
      op.assignments = {{"text", Name(b)}};
      break;
    case 5:
      op.kind = EditOperation::Kind::kRemoveDefinition;
      break;
    case 6:
      op.kind = EditOperation::Kind::kAddDevice;
      op.kindName = Name(b);
      op.manufacturer = Name(b / 8);
      op.newName = "D" + Name(b / 64);
      break;
    case 7:
      op.kind = EditOperation::Kind::kRenumberIds;
      op.from = b * 7;
      op.step = 1 + b % 3;
      break;
    case 8:
      op.kind = EditOperation::Kind::kRemoveEntry;
      op.entry =
          analysis.ListNames(static_cast<int>(b % 3)).empty() ? "X" : analysis.ListNames(static_cast<int>(b % 3))[0];
      op.replaceWith = b & 8 ? std::string() : "DIP8";
      break;
    default:
      op.kind = EditOperation::Kind::kMove;
      op.kindName = Name(b);
      op.manufacturer = Name(b / 8);
      break;
  }
  return op;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 5) return 0;
  DevdefFuzzDir();  // message boxes answered silently
  // Names are written as given (UTF-8), whatever the file's bytes are.
  SetShownEncoding(TextEncoding::kUtf8);
  const std::string bytes(reinterpret_cast<const char*>(data), size - 4);
  const uint8_t* choice = data + size - 4;
  std::unique_ptr<Analysis> analysis = Analysis::ReadText("fuzz.def", bytes, AnalysisOptions());
  if (!analysis->Usable()) return 0;
  std::vector<EditOperation> ops = {Operation(*analysis, choice[0], choice[1])};
  if (choice[2] & 1) ops.push_back(Operation(*analysis, choice[2] >> 1, choice[3]));
  const std::vector<std::string> lists[3] = {analysis->ListNames(0), analysis->ListNames(1), analysis->ListNames(2)};
  const size_t deviceCount = analysis->Devices().size();
  const size_t definitionCount = analysis->Definitions().size();
  const EditResult result = ApplyEdits(*analysis, ops);
  DEVDEF_FUZZ_CHECK(analysis->Bytes() == bytes);
  if (result.status != EditResult::Status::kApplied) {
    DEVDEF_FUZZ_CHECK(result.bytes.empty() && result.replacements.empty() && !result.reason.empty());
    return 0;
  }
  DEVDEF_FUZZ_CHECK(ApplyReplacements(bytes, result.replacements) == result.bytes);
  if (ops.size() > 1) return 0;
  // One operation: what devdef diff says of it is what it names.
  std::unique_ptr<Analysis> edited = Analysis::ReadText("fuzz.def", result.bytes, AnalysisOptions());
  DEVDEF_FUZZ_CHECK(edited->Usable());
  const EditOperation& op = ops[0];
  for (const DiffChange& change : result.changes) {
    switch (op.kind) {
      case EditOperation::Kind::kSet:
        DEVDEF_FUZZ_CHECK(change.what == DiffChange::What::kDefinition &&
                          change.change == DiffChange::Change::kChanged);
        break;
      case EditOperation::Kind::kAddEntry:
      case EditOperation::Kind::kRemoveEntry:
        // A definition changes only where a number of no entry moved with
        // the entries (it stays without one), or took the replacement.
        if (change.what != DiffChange::What::kListEntry) {
          DEVDEF_FUZZ_CHECK(
              change.what == DiffChange::What::kDefinition ||
              (change.what == DiffChange::What::kDevice && change.change == DiffChange::Change::kChanged));
          for (const auto& field : change.fields) {
            DEVDEF_FUZZ_CHECK(op.kind == EditOperation::Kind::kRemoveEntry ||
                              field.second.first.Literal().find('#') != std::string::npos);
          }
        }
        break;
      case EditOperation::Kind::kRemoveDefinition:
      case EditOperation::Kind::kAddDefinition:
        // Definitions of repeated ids are matched by place, so the ones
        // behind may show as changed; the count is checked below.
        DEVDEF_FUZZ_CHECK(change.what == DiffChange::What::kDefinition);
        break;
      default:
        DEVDEF_FUZZ_CHECK(change.what != DiffChange::What::kListEntry);
        break;
    }
  }
  if (op.kind == EditOperation::Kind::kAddEntry) {
    const int list = op.list == "housing" ? 0 : op.list == "adapter" ? 1 : 2;
    std::vector<std::string> expected = lists[list];
    const size_t at = op.at < 0 ? expected.size() : static_cast<size_t>(op.at);
    expected.insert(expected.begin() + static_cast<long>(at), op.entry);
    DEVDEF_FUZZ_CHECK(edited->ListNames(list) == expected);
  }
  if (op.kind == EditOperation::Kind::kRemove) DEVDEF_FUZZ_CHECK(edited->Devices().size() + 1 == deviceCount);
  if (op.kind == EditOperation::Kind::kRemoveDefinition) {
    DEVDEF_FUZZ_CHECK(edited->Definitions().size() + 1 == definitionCount);
  }
  if (op.kind == EditOperation::Kind::kAddDefinition) {
    DEVDEF_FUZZ_CHECK(edited->Definitions().size() == definitionCount + 1);
  }
  if (op.kind == EditOperation::Kind::kAddDevice) DEVDEF_FUZZ_CHECK(edited->Devices().size() == deviceCount + 1);
  return 0;
}
