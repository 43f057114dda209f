// FIELD=VALUE assignments of set and add-definition: read into the changes
// they ask for, applied to a definition's fields, and written into the
// bytes of a definition line at the places its reader reported for each
// field.
#ifndef DEVDEF_TOOLS_EDIT_DEFINITION_CHANGES_H_
#define DEVDEF_TOOLS_EDIT_DEFINITION_CHANGES_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tools/edit/edit_step.h"

struct DefinitionChanges {
  bool id = false, generation = false, packages = false, module = false, adapters = false, text = false;
  bool values[11] = {};
  DefinitionFields to;  // the new values of the fields marked above
  DWORD newId = 0;
  std::string textBytes;  // the text as the file is to hold it, without the blank in front
};

// Reads assignments (FIELD=VALUE: id, generation, package(s), module,
// adapter(s), text, "value N") into changes; numbers of lists by name or
// number.
bool ReadAssignments(EditStep& step, const std::vector<std::pair<std::string, std::string>>& assignments,
                     DefinitionChanges* changes);

// A definition line as its reader reported it: the line, where its keyword
// stands, its number fields, and its text.
struct LinePieces {
  ByteSpan line;
  std::uint32_t keyword = 0;
  std::vector<FieldRecord> fields;
  ByteSpan text;
};
LinePieces PiecesOf(Analysis& a, std::uint32_t definition);

// Applies changes to fields (and id); text keeps the white space its old
// text opens with (a blank where it had none), as the reader keeps it.
void ApplyChanges(const DefinitionChanges& changes, const std::string& oldText, DefinitionFields* fields, DWORD* id);

// The replacements that write changes into the line of pieces; false
// (refused) for a field that the line does not hold.
bool WriteChanges(EditStep& step, const LinePieces& pieces, const DefinitionChanges& changes,
                  std::vector<ByteReplacement>* out);

// A definition line of the file's layout in the form its writer gives it,
// for a file that has none to copy the form of.
std::string DefinitionLineOf(int layout, DWORD id, const DefinitionFields& fields);

#endif  // DEVDEF_TOOLS_EDIT_DEFINITION_CHANGES_H_
