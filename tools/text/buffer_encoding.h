// The text of an editor's buffer (UTF-8, as the protocol sends it) as the
// bytes a host reads from the file. Definition files are single-byte text:
// the marks of layout 7 are the bytes 0xB0 and 0xDF, which an editor shows
// as "°" and "ß". A buffer whose every character has a byte in
// Windows-1252 is taken as such a file and analysed in those bytes; any
// other buffer can only come from a UTF-8 file and is analysed as it is.
#ifndef DEVDEF_TOOLS_TEXT_BUFFER_ENCODING_H_
#define DEVDEF_TOOLS_TEXT_BUFFER_ENCODING_H_

#include <string>

enum class BufferEncoding {
  kUtf8,         // the bytes are the buffer's UTF-8
  kWindows1252,  // one byte per character
};

// Turns text (UTF-8) into the bytes of its file, in place: Windows-1252
// when every character has a byte there (characters U+0080 to U+00FF give
// the byte of the same number, as Latin-1 does), else unchanged. Gives the
// encoding the bytes are in.
BufferEncoding EncodeBuffer(std::string& text);

// Bytes of a document in encoding as UTF-8.
std::string DecodeBuffer(BufferEncoding encoding, std::string_view bytes);

#endif  // DEVDEF_TOOLS_TEXT_BUFFER_ENCODING_H_
