// The number fields of a definition line where they stand in the file, for
// pointing at one of them. The fields are found as they look: the words of
// the line between its keyword and the first ":" behind it, lists split at
// their commas. A caller that needs certainty compares a field's number with
// what the reader stored.
#ifndef DEVDEF_TOOLS_ANALYSIS_DEFINITION_FIELDS_H_
#define DEVDEF_TOOLS_ANALYSIS_DEFINITION_FIELDS_H_

#include <string>
#include <vector>

#include "tools/analysis/read_replay.h"

struct DefinitionField {
  enum Kind { kId, kPackage, kModule, kAdapter, kValue };
  Kind kind;
  int index;  // a package's or adapter's place in its list; a value's index in m_DefValues; else 0
  ByteSpan span;
};

// The fields of the definition line at line (its bytes without comment and
// white space at its ends) in a file of the layout, in file order, which is
// also the order of kind and index.
std::vector<DefinitionField> SplitDefinitionFields(const std::string& bytes, ByteSpan line, int layout);

// The field of this kind and index whose number, taken as the reader takes
// it (the low 16 bits with mask 0xFFFF), is value, or with mask 0 whatever
// it holds; null when there is none.
const DefinitionField* FindField(const std::vector<DefinitionField>& fields, const std::string& bytes,
                                 DefinitionField::Kind kind, int index, unsigned long value, unsigned long mask);

#endif  // DEVDEF_TOOLS_ANALYSIS_DEFINITION_FIELDS_H_
