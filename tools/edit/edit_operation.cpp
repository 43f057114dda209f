// The words of an operation, as the command line and a script give them.
#include <cstdlib>

#include "tools/edit/edit_engine.h"
#include "tools/edit/edit_values.h"

namespace {

struct OperationForm {
  const char* name;
  EditOperation::Kind kind;
  const char* usage;  // its words behind the name
  size_t least;       // how many words it takes, at least and at most
  size_t most;
};

const OperationForm kForms[] = {
    {"set", EditOperation::Kind::kSet, "ID FIELD=VALUE...", 2, 1000},
    {"rename", EditOperation::Kind::kRename, "DEVICE NEW", 2, 2},
    {"rename-kind", EditOperation::Kind::kRenameKind, "KIND NEW", 2, 2},
    {"rename-manufacturer", EditOperation::Kind::kRenameManufacturer, "KIND MANUFACTURER NEW", 3, 3},
    {"move", EditOperation::Kind::kMove, "DEVICE KIND MANUFACTURER", 3, 3},
    {"add-device", EditOperation::Kind::kAddDevice, "KIND MANUFACTURER NAME", 3, 3},
    {"add-definition", EditOperation::Kind::kAddDefinition, "DEVICE [FIELD=VALUE...]", 1, 1000},
    {"remove", EditOperation::Kind::kRemove, "DEVICE", 1, 1},
    {"remove-definition", EditOperation::Kind::kRemoveDefinition, "ID", 1, 1},
    {"add-entry", EditOperation::Kind::kAddEntry, "LIST NAME [--at N]", 2, 2},
    {"rename-entry", EditOperation::Kind::kRenameEntry, "LIST OLD NEW", 3, 3},
    {"remove-entry", EditOperation::Kind::kRemoveEntry, "LIST NAME [--replace-with NAME]", 2, 2},
    {"renumber-ids", EditOperation::Kind::kRenumberIds, "[DEVICE | KIND MANUFACTURER] --from N [--step S]", 0, 2},
};

bool ReadLong(const std::string& option, const std::string& text, long* value, std::string* error) {
  DWORD number = 0;
  if (text.empty() || text[0] == '-' || !ParseEditNumber(text, &number)) {
    *error = option + ": '" + text + "' is not a number from 0";
    return false;
  }
  *value = static_cast<long>(number);
  return true;
}

// FIELD=VALUE into assignments; false when a word has no "=".
bool ReadAssignments(const std::vector<std::string>& words, size_t from, EditOperation* op, std::string* error) {
  for (size_t i = from; i < words.size(); ++i) {
    const size_t equals = words[i].find('=');
    if (equals == std::string::npos || equals == 0) {
      *error = "'" + words[i] + "' is no FIELD=VALUE";
      return false;
    }
    op->assignments.emplace_back(words[i].substr(0, equals), words[i].substr(equals + 1));
  }
  return true;
}

}  // namespace

const std::vector<std::string>& EditOperationNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> out;
    for (const OperationForm& form : kForms) out.push_back(form.name);
    return out;
  }();
  return names;
}

bool ParseEditOperation(const std::vector<std::string>& words, EditOperation* operation, std::string* error) {
  if (words.empty()) {
    *error = "no operation";
    return false;
  }
  const OperationForm* form = nullptr;
  for (const OperationForm& f : kForms) {
    if (words[0] == f.name) form = &f;
  }
  if (form == nullptr) {
    *error = "'" + words[0] + "' is no operation";
    return false;
  }
  EditOperation op;
  op.kind = form->kind;
  // The options, wherever they stand; the rest are the operation's words.
  std::vector<std::string> rest;
  for (size_t i = 1; i < words.size(); ++i) {
    std::string word = words[i];
    std::string value;
    const bool option = word.size() > 2 && word[0] == '-' && word[1] == '-';
    if (!option) {
      rest.push_back(word);
      continue;
    }
    const size_t equals = word.find('=');
    if (equals != std::string::npos) {
      value = word.substr(equals + 1);
      word = word.substr(0, equals);
    } else if (i + 1 < words.size()) {
      value = words[++i];
    } else {
      *error = word + " needs a value";
      return false;
    }
    const EditOperation::Kind k = op.kind;
    if (word == "--at" && k == EditOperation::Kind::kAddEntry) {
      if (!ReadLong(word, value, &op.at, error)) return false;
    } else if (word == "--replace-with" && k == EditOperation::Kind::kRemoveEntry) {
      op.replaceWith = value;
    } else if (word == "--from" && k == EditOperation::Kind::kRenumberIds) {
      if (!ReadLong(word, value, &op.from, error)) return false;
    } else if (word == "--step" && k == EditOperation::Kind::kRenumberIds) {
      if (!ReadLong(word, value, &op.step, error)) return false;
    } else {
      *error = std::string(form->name) + " takes no option " + word;
      return false;
    }
  }
  const size_t fixed = op.kind == EditOperation::Kind::kSet             ? 1
                       : op.kind == EditOperation::Kind::kAddDefinition ? 1
                                                                        : rest.size();
  if (rest.size() < form->least || (fixed == rest.size() && rest.size() > form->most)) {
    *error = std::string(form->name) + " takes " + form->usage;
    return false;
  }
  switch (op.kind) {
    case EditOperation::Kind::kSet:
      op.definition = rest[0];
      if (!ReadAssignments(rest, 1, &op, error)) return false;
      break;
    case EditOperation::Kind::kRename:
      op.device = rest[0];
      op.newName = rest[1];
      break;
    case EditOperation::Kind::kRenameKind:
      op.kindName = rest[0];
      op.newName = rest[1];
      break;
    case EditOperation::Kind::kRenameManufacturer:
      op.kindName = rest[0];
      op.manufacturer = rest[1];
      op.newName = rest[2];
      break;
    case EditOperation::Kind::kMove:
      op.device = rest[0];
      op.kindName = rest[1];
      op.manufacturer = rest[2];
      break;
    case EditOperation::Kind::kAddDevice:
      op.kindName = rest[0];
      op.manufacturer = rest[1];
      op.newName = rest[2];
      break;
    case EditOperation::Kind::kAddDefinition:
      op.device = rest[0];
      if (!ReadAssignments(rest, 1, &op, error)) return false;
      break;
    case EditOperation::Kind::kRemove:
      op.device = rest[0];
      break;
    case EditOperation::Kind::kRemoveDefinition:
      op.definition = rest[0];
      break;
    case EditOperation::Kind::kAddEntry:
    case EditOperation::Kind::kRemoveEntry:
      op.list = rest[0];
      op.entry = rest[1];
      break;
    case EditOperation::Kind::kRenameEntry:
      op.list = rest[0];
      op.entry = rest[1];
      op.newName = rest[2];
      break;
    case EditOperation::Kind::kRenumberIds:
      if (rest.size() == 1) op.device = rest[0];
      if (rest.size() == 2) {
        op.kindName = rest[0];
        op.manufacturer = rest[1];
      }
      if (op.from < 0) {
        *error = "renumber-ids needs --from N";
        return false;
      }
      break;
  }
  *operation = op;
  return true;
}
