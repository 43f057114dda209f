// Byte-string comparisons of the Windows C runtime. Strings are compared byte
// by byte; the case-insensitive one folds ASCII letters only, whatever the
// locale.
#ifndef DEVDEF_PLATFORM_CRT_H_
#define DEVDEF_PLATFORM_CRT_H_

#include "devdef/platform/export.h"

DEVDEF_API int _mbscmp(const unsigned char* lhs, const unsigned char* rhs);
DEVDEF_API int _mbsicmp(const unsigned char* lhs, const unsigned char* rhs);

// Character classes used by the readers: exactly blank, tab, LF, VT, FF, CR.
inline bool DevdefIsSpace(unsigned char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
inline unsigned char DevdefToLower(unsigned char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

// The two conversions the readers make with sscanf, "%d" and "%x", with the
// 32-bit results of the Windows runtime: white space in front is skipped, a
// sign is taken, digits are read until the first byte that cannot continue the
// number, and the value wraps modulo 2^32 instead of overflowing. "%x" also
// takes a leading 0x or 0X. Each returns 1 when a number was read, else 0,
// and stores nothing on 0.
DEVDEF_API int DevdefScanDecimal(const char* pszText, int* pnValue);
DEVDEF_API int DevdefScanHex(const char* pszText, unsigned int* pnValue);

#endif  // DEVDEF_PLATFORM_CRT_H_
