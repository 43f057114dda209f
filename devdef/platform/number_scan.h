// The one scanner of "%d" and "%x" numbers behind the library's sscanf
// conversions, with where the number stands. Not part of the public API:
// the readers' observer uses it to say which bytes a number took.
#ifndef DEVDEF_PLATFORM_NUMBER_SCAN_H_
#define DEVDEF_PLATFORM_NUMBER_SCAN_H_

#include "devdef/platform/export.h"

// Reads the number at pszText as sscanf's "%d" (bHex false) or "%x" reads
// it: white space in front skipped, a sign taken, for "%x" a leading 0x or
// 0X, then digits; the value wraps modulo 2^32. Gives the end of the number
// (the first byte it did not take) and sets *pnValue, and *ppFirst (when
// not null) to its first byte behind the white space; null when there is
// no number, with *pnValue unchanged.
DEVDEF_API const char* DevdefScanNumber(const char* pszText, bool bHex, unsigned int* pnValue, const char** ppFirst);

#endif  // DEVDEF_PLATFORM_NUMBER_SCAN_H_
