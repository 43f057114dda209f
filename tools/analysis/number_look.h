// How the word of a number field looks against the number the reader made
// of it. The reader reports the bytes each number took and the value it
// stored; the word is what a person reads there (up to the next blank, tab,
// ":" or, in a list, ","). A number is read as it looks when its word is
// digits of the field's radix alone (a "+" or, in a hexadecimal field, a
// "0x" in front allowed) whose value fits the field.
#ifndef DEVDEF_TOOLS_ANALYSIS_NUMBER_LOOK_H_
#define DEVDEF_TOOLS_ANALYSIS_NUMBER_LOOK_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/analysis/records.h"

// How a number's word differs from what the reader took, the first reason
// that holds in this order.
enum class NumberMisread : std::uint8_t {
  kNone = 0,         // read as it looks
  kSign = 1,         // a "-" in front: the field holds no sign
  kRadixPrefix = 2,  // "0x" in a decimal field: the reader stops at the "x"
  kDecimalPoint = 3, // a "." behind the digits: the field holds whole numbers
  kTrailing = 4,     // other characters behind the digits, passed over
  kWidth = 5,        // more than the field holds: the value wrapped
};

// The word of the number field that starts at begin of a line ending at
// lineEnd: up to a blank, tab or ":", and in a list also ",".
ByteSpan NumberWord(std::string_view bytes, std::uint32_t begin, std::uint32_t lineEnd, bool list);

// Whether the number field of this kind stands in a list of numbers joined
// by "," in a line of the layout: the adapters, and in layout 7 the
// packages too. A "," ends a list's word.
bool ListField(int layout, int field);

// Whether a field of this kind (a DevdefDefinitionField) holds 16 bits (a
// package or adapter number); the others hold 32.
bool SixteenBitField(int field);

// A field's name as every output says it: "id", "package", "module",
// "adapter", or "value N" with N the index into the definition's values
// (0 to 10, as the values of devdef show --json count them).
std::string FieldName(int field, int index);

// How field (its word, its taken bytes, its value) was read.
NumberMisread LookOfNumber(std::string_view bytes, const FieldRecord& field);

#endif  // DEVDEF_TOOLS_ANALYSIS_NUMBER_LOOK_H_
