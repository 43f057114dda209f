// Characters of UTF-8 text, as the protocol sends it: well-formed ones
// only (no overlong forms, surrogates or code points above U+10FFFF).
#ifndef DEVDEF_TOOLS_TEXT_UTF8_H_
#define DEVDEF_TOOLS_TEXT_UTF8_H_

#include <cstddef>
#include <string>

// Decodes the character at text (length > 0) into *character and gives its
// length in bytes; 0 when it is not well-formed.
size_t DecodeUtf8(const unsigned char* text, size_t length, char32_t* character);

// Appends the character (at most U+10FFFF, no surrogate) as UTF-8.
void AppendUtf8(std::string& out, char32_t character);

// The length of the run of ASCII bytes at the start of text.
size_t AsciiRun(const unsigned char* text, size_t length);

#endif  // DEVDEF_TOOLS_TEXT_UTF8_H_
