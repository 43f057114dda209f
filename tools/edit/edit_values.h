// The values an edit writes into a file: numbers in the form of the field
// they replace, and names and texts given as UTF-8 arguments in the bytes
// of the file's encoding.
#ifndef DEVDEF_TOOLS_EDIT_EDIT_VALUES_H_
#define DEVDEF_TOOLS_EDIT_EDIT_VALUES_H_

#include <string>
#include <string_view>

#include "devdef/devdef.h"

// A number as an argument gives it: decimal with an optional sign, or
// hexadecimal behind "0x"; within 32 bits, a negative number standing for
// the unsigned one of the same bits. False for anything else.
bool ParseEditNumber(const std::string& text, DWORD* value);

// value written as a number field was written (old, the bytes the number
// took): in its radix, with its "0x", the case of its hexadecimal digits
// and the width of its leading zeros.
std::string FormatLike(std::string_view old, DWORD value, bool hex);

// The bytes of an argument (UTF-8) in the encoding the file is shown in;
// with asName, each blank as "_", as the file spells a blank in a name.
// False, with the problem, for a character that encoding has no byte for,
// or a line end or other control character.
bool FileBytesOf(const std::string& argument, bool asName, std::string* bytes, std::string* problem);

// The name the reader makes of a name's bytes: each "_" a blank.
std::string ReadName(std::string bytes);

#endif  // DEVDEF_TOOLS_EDIT_EDIT_VALUES_H_
