// The bytes that end lines of definition files (LF, CR, or both as CR LF),
// and finding the next line end at a cost bounded by the distance to it
// whatever the file's line-end style.
#ifndef DEVDEF_TOOLS_TEXT_LINE_END_H_
#define DEVDEF_TOOLS_TEXT_LINE_END_H_

#include <cstddef>
#include <cstring>

// True for LF and CR, the bytes a line ends with.
inline bool IsLineEnd(unsigned char c) { return c == '\n' || c == '\r'; }

// The offset of the first LF or CR at or behind from, or size. Looks in
// windows that double, so that a file of CR ends does not make each search
// run to the file's end in search of an LF.
inline size_t FindLineEnd(const unsigned char* bytes, size_t from, size_t size) {
  size_t window = 64;
  while (from < size) {
    const size_t count = size - from < window ? size - from : window;
    const void* lf = std::memchr(bytes + from, '\n', count);
    const size_t untilLf = lf != nullptr ? static_cast<size_t>(static_cast<const unsigned char*>(lf) - bytes - from) : count;
    const void* cr = std::memchr(bytes + from, '\r', untilLf);
    if (cr != nullptr) return static_cast<size_t>(static_cast<const unsigned char*>(cr) - bytes);
    if (lf != nullptr) return from + untilLf;
    from += count;
    window *= 2;
  }
  return size;
}

#endif  // DEVDEF_TOOLS_TEXT_LINE_END_H_
