// How the tool shows the bytes of a definition file as text. The files are
// bytes with no declared encoding; one encoding per run decodes every name
// and text of the file, for the terminal and for JSON alike, and arguments
// (UTF-8, as terminals give them) are matched against the decoded names.
// By default the run takes UTF-8 when the whole file is well-formed UTF-8,
// else Windows-1252.
#ifndef DEVDEF_TOOLS_TEXT_TEXT_ENCODING_H_
#define DEVDEF_TOOLS_TEXT_TEXT_ENCODING_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "devdef/devdef.h"

enum class TextEncoding { kUtf8, kWindows1252, kLatin1 };

// The encoding named "utf-8", "cp1252" or "latin1" (ASCII case ignored);
// false for any other name.
bool ParseTextEncoding(const std::string& name, TextEncoding* encoding);
// "utf-8", "cp1252" or "latin1".
const char* TextEncodingName(TextEncoding encoding);

// The encoding a run takes for a file of these bytes when none is asked
// for: UTF-8 when they are well-formed UTF-8 but for the mark bytes 0xB0
// and 0xDF that open a device name or a definition line, which are no
// text; else Windows-1252.
TextEncoding DetectTextEncoding(std::string_view bytes);

// Appends bytes decoded as encoding to out as UTF-8. Windows-1252 maps its
// five unassigned bytes (0x81, 0x8D, 0x8F, 0x90, 0x9D) to the control
// characters of the same number, as Windows does (tools/text/windows1252.h),
// so it and Latin-1 decode every byte. With UTF-8 each ill-formed part
// becomes U+FFFD; the result is false when that happened.
bool AppendDecoded(TextEncoding encoding, const char* bytes, size_t length, std::string* out);

// How a column counts what stands in front of it on its line.
enum class ColumnUnit {
  kUtf8Bytes,   // bytes of the text as UTF-8: what Vim counts, whatever the file's encoding
  kCodePoints,  // characters, as SARIF's "unicodeCodePoints" counts them
};

// The 1-based column of the byte behind before (the bytes of its line in
// front of it) when the line is decoded as encoding. An ill-formed part of
// UTF-8 counts as one character.
long ColumnOf(TextEncoding encoding, std::string_view before, ColumnUnit unit);

// Sets the encoding of this run; Windows-1252 until it is set.
void SetShownEncoding(TextEncoding encoding);
// The encoding of this run.
TextEncoding ShownEncoding();

// Bytes of the file as this run shows them (UTF-8, U+FFFD where they cannot
// be decoded).
std::string ShownText(const char* bytes, size_t length);
std::string ShownText(const std::string& bytes);
std::string ShownText(const CString& text);

#endif  // DEVDEF_TOOLS_TEXT_TEXT_ENCODING_H_
