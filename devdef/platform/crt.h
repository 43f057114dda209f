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
//
// Nearly every field of a definition line is a plain number right at the
// cursor: that case is read here, everything else by the general scanners.
DEVDEF_API int DevdefScanDecimalGeneral(const char* pszText, int* pnValue);
DEVDEF_API int DevdefScanHexGeneral(const char* pszText, unsigned int* pnValue);

inline int DevdefScanDecimal(const char* pszText, int* pnValue) {
  const char* p = pszText;
  if (static_cast<unsigned char>(*p - '0') > 9) return DevdefScanDecimalGeneral(pszText, pnValue);
  unsigned int value = 0;
  for (unsigned int digit; (digit = static_cast<unsigned char>(*p - '0')) <= 9; ++p) value = value * 10u + digit;
  *pnValue = static_cast<int>(value);
  return 1;
}

// The value of a hex digit, or -1.
inline int DevdefHexDigit(unsigned char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

inline int DevdefScanHex(const char* pszText, unsigned int* pnValue) {
  const char* p = pszText;
  int digit = DevdefHexDigit(static_cast<unsigned char>(*p));
  // No digit in front, or a "0x" prefix: the general scanner decides.
  if (digit < 0 || (p[0] == '0' && (p[1] == 'x' || p[1] == 'X'))) return DevdefScanHexGeneral(pszText, pnValue);
  unsigned int value = 0;
  for (; digit >= 0; digit = DevdefHexDigit(static_cast<unsigned char>(*++p))) {
    value = value * 16u + static_cast<unsigned int>(digit);
  }
  *pnValue = value;
  return 1;
}

#endif  // DEVDEF_PLATFORM_CRT_H_
