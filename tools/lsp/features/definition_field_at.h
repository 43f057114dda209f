// The parts of a definition line under a position: its keyword, or one of
// its number fields as the reader read it, with the header list that the
// number is an entry of.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_DEFINITION_FIELD_AT_H_
#define DEVDEF_TOOLS_LSP_FEATURES_DEFINITION_FIELD_AT_H_

#include <cstddef>
#include <string_view>
#include <vector>

#include "tools/analysis/analysis.h"

// The header list a field's number is an entry of: 0 HOUSING_LIST for a
// package, 1 ADAPTER_LIST for an adapter, 2 MODUL_LIST for the module; -1
// for the id and the values.
int ListOfField(int field);

// The bytes of the keyword of the definition line at line ("KVR5DEF:" with
// the mark in front of it, if any), as it looks.
ByteSpan KeywordSpan(std::string_view bytes, ByteSpan line, int layout);

// The field whose word holds offset, or null.
const FieldRecord* FieldAt(const std::vector<FieldRecord>& fields, size_t offset);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_DEFINITION_FIELD_AT_H_
