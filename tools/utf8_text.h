// The bytes of a definition file as UTF-8, for JSON and the terminal: the
// files are single-byte text, and bytes of 0x80 and above are taken as
// Latin-1.
#ifndef DEVDEF_TOOLS_UTF8_TEXT_H_
#define DEVDEF_TOOLS_UTF8_TEXT_H_

#include <cstddef>
#include <string>

#include "devdef/devdef.h"

// length bytes from bytes as UTF-8: ASCII stays, each byte of 0x80 and above
// becomes the two-byte form of the Latin-1 character.
std::string ToUtf8(const char* bytes, size_t length);
// A string of the file's bytes as UTF-8, as above.
std::string ToUtf8(const std::string& bytes);
// A string of the catalogue as UTF-8, as above.
std::string ToUtf8(const CString& text);

#endif  // DEVDEF_TOOLS_UTF8_TEXT_H_
