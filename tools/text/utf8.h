// Characters of UTF-8 text as Unicode delimits them: well-formed sequences
// only (no overlong forms, surrogates or code points above U+10FFFF).
#ifndef DEVDEF_TOOLS_TEXT_UTF8_H_
#define DEVDEF_TOOLS_TEXT_UTF8_H_

#include <cstddef>
#include <string>

// What NextCodePoint gives for an ill-formed part: this plus its first byte,
// beyond every code point, so it equals no character.
constexpr char32_t kIllFormedBase = 0x110000;

// U+FFFD, which stands for bytes that cannot be decoded, as UTF-8.
constexpr char kReplacementCharacter[] = "\xEF\xBF\xBD";

// Reads the UTF-8 character at bytes (length > 0): gives its code point and
// its length in bytes. An ill-formed part (as Unicode delimits it: the
// longest start of a well-formed sequence, or one byte) gives
// kIllFormedBase + its first byte and its length.
size_t NextCodePoint(const char* bytes, size_t length, char32_t* codePoint);

// Appends the character (at most U+10FFFF, no surrogate) as UTF-8.
void AppendUtf8(std::string& out, char32_t character);

// The length of the run of ASCII bytes at the start of bytes, read eight at
// a time.
size_t AsciiRun(const char* bytes, size_t length);

#endif  // DEVDEF_TOOLS_TEXT_UTF8_H_
