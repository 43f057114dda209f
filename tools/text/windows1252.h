// Windows-1252, the single-byte encoding of definition files written on
// Windows: the bytes below 0x80 are ASCII, those from 0xA0 the Latin-1
// characters of their number, and 0x80 to 0x9F mostly typographic ones.
#ifndef DEVDEF_TOOLS_TEXT_WINDOWS1252_H_
#define DEVDEF_TOOLS_TEXT_WINDOWS1252_H_

// The character of a byte. The five bytes Windows-1252 leaves unassigned
// (0x81, 0x8D, 0x8F, 0x90, 0x9D) stand for the control characters of their
// number, as Windows maps them, so every byte decodes.
char32_t Windows1252CodePoint(unsigned char byte);

#endif  // DEVDEF_TOOLS_TEXT_WINDOWS1252_H_
