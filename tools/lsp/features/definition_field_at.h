// The parts of a definition line under a position: its keyword, or one of
// its number fields with the number the reader stored for it and the header
// list that number is an entry of.
#ifndef DEVDEF_TOOLS_LSP_FEATURES_DEFINITION_FIELD_AT_H_
#define DEVDEF_TOOLS_LSP_FEATURES_DEFINITION_FIELD_AT_H_

#include <cstddef>
#include <string>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/definition_fields.h"

// A number field of a definition as the reader stored it.
struct StoredField {
  DefinitionField field;
  bool stored = false;      // the reader stored a number for this field
  unsigned long value = 0;  // the number it stored
  bool asWritten = false;   // the field's text reads as that number
  int list = -1;            // 0 HOUSING_LIST, 1 ADAPTER_LIST, 2 MODUL_LIST; -1: no list
};

// The layout whose definition lines the analysis read (1, 2 or 7).
int DefinitionLayout(int analysisLayout);

// The bytes of the keyword of the definition line at line ("KVR5DEF:" with
// the mark in front of it, if any).
ByteSpan KeywordSpan(const std::string& bytes, ByteSpan line, int layout);

// Every number field of the definition def, read from the line at line,
// with what the reader stored for it.
std::vector<StoredField> StoredFields(const std::string& bytes, ByteSpan line, int layout,
                                      const DEVICE_KVRXDEF_ITEM& def);

// The field whose bytes hold offset, or null.
const StoredField* FieldAt(const std::vector<StoredField>& fields, size_t offset);

#endif  // DEVDEF_TOOLS_LSP_FEATURES_DEFINITION_FIELD_AT_H_
