// Edits of a definition file that keep every byte they do not name: an
// operation (rename a device, set a field, insert a list entry, ...) is
// turned into replacements of byte spans of the file, taken from the
// analysis's records, and the result is verified before anyone may write
// it: it is read again through the controller of the file's layout, and its
// catalogue must equal the old one with exactly the asked change applied,
// compared by meaning (names, and numbers through the names of their
// lists), with no finding that the old file did not have. The command line,
// the language server and the Python module share this engine.
#ifndef DEVDEF_TOOLS_EDIT_EDIT_ENGINE_H_
#define DEVDEF_TOOLS_EDIT_EDIT_ENGINE_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/diff/catalogue_diff.h"

// One operation, as a word of the command line names it ("set", "rename",
// "rename-kind", "rename-manufacturer", "move", "add-device",
// "add-definition", "remove", "remove-definition", "add-entry",
// "rename-entry", "remove-entry", "renumber-ids").
struct EditOperation {
  enum class Kind {
    kSet,
    kRename,
    kRenameKind,
    kRenameManufacturer,
    kMove,
    kAddDevice,
    kAddDefinition,
    kRemove,
    kRemoveDefinition,
    kAddEntry,
    kRenameEntry,
    kRemoveEntry,
    kRenumberIds,
  };
  Kind kind = Kind::kSet;
  // A device: a name or pattern for the shared name matcher, which must
  // match exactly one; or, where deviceRecord is set, that record of the
  // analysis (how an editor names the device under the cursor).
  std::string device;
  std::uint32_t deviceRecord = kNoRecord;
  // A definition: its id, or DEVICE#N for the N-th (from 1) definition of a
  // device; or, where definitionRecord is set, that record.
  std::string definition;
  std::uint32_t definitionRecord = kNoRecord;
  std::string kindName;      // rename-kind, move, add-device, rename-manufacturer
  std::string manufacturer;  // move, add-device, rename-manufacturer
  // For rename-kind and rename-manufacturer, where set: the record of the
  // kind or manufacturer in place of its name (an editor's way, which two
  // of one name do not confuse).
  std::uint32_t kindRecord = kNoRecord;
  std::uint32_t manufacturerRecord = kNoRecord;
  std::string newName;       // the renames, add-device
  std::string list;          // "housing", "adapter" or "module"
  std::string entry;         // the list entry the operation names
  long entryNumber = -1;     // rename-entry, where set: the entry's number in place of its name
  // FIELD=VALUE of set and add-definition, in the order given.
  std::vector<std::pair<std::string, std::string>> assignments;
  long at = -1;             // add-entry --at N: its number; -1: at the end
  std::string replaceWith;  // remove-entry --replace-with NAME
  long from = -1;           // renumber-ids --from N
  long step = 1;            // renumber-ids --step S
  // renumber-ids: its scope is device when set, else the manufacturer of
  // kindName when both are set, else the whole file.
};

// The operation words of the command line, in the order of EditOperation::Kind.
const std::vector<std::string>& EditOperationNames();

// Reads an operation from its words ("rename", "AT89C51", "AT89C52"; the
// options --at, --replace-with, --from, --step among them). False, with
// the problem in one line in *error, when the words make no operation.
bool ParseEditOperation(const std::vector<std::string>& words, EditOperation* operation, std::string* error);

// A replacement of the bytes [span.begin, span.end) of the old file.
struct ByteReplacement {
  ByteSpan span;
  std::string bytes;
};

struct EditResult {
  enum class Status {
    kApplied,  // bytes holds the verified file
    kRefused,  // the edit would change more (or other) than asked: reason and place
    kUnknown,  // a name that names nothing, or more than one thing: candidates
  };
  Status status = Status::kRefused;
  // The edited file, when applied.
  std::string bytes;
  // The replacements that turn the old file into bytes, in file order and
  // not overlapping (what an editor applies as text edits).
  std::vector<ByteReplacement> replacements;
  // What the verified read says changed, as devdef diff says it.
  std::vector<DiffChange> changes;
  // Why the edit was refused or could not be made, in one line of text
  // (names in it decoded as the run's encoding decodes them); and where:
  // a place in the old file, or in the edited one when inEdited.
  std::string reason;
  ByteSpan place;
  bool inEdited = false;
  // Further places in the old file that the reason speaks of: the
  // references to a list entry that remove-entry would leave without one,
  // the definition whose id a renumbering would repeat.
  std::vector<ByteSpan> related;
  // For kUnknown: the names that match (ambiguous) or come closest.
  std::vector<std::string> candidates;
  bool ambiguous = false;
};

// Applies operations to the file of analysis, all or nothing, in the order
// given (each on the result of the ones before), and verifies the result.
// The analysis is left as it was; the process-wide name lists may hold
// those of the edited file afterwards. With describe false, changes is
// left empty: the comparison of the two catalogues that devdef diff makes
// is spared where no one shows it.
EditResult ApplyEdits(Analysis& analysis, const std::vector<EditOperation>& operations, bool describe = true);

#endif  // DEVDEF_TOOLS_EDIT_EDIT_ENGINE_H_
