/// \file
/// The few routines of the Windows C runtime that the library uses (byte-string comparison, the "%d" and "%x"
/// conversions of sscanf), with the character classes of the readers. All of them ignore the locale.
#ifndef DEVDEF_PLATFORM_CRT_H_
#define DEVDEF_PLATFORM_CRT_H_

#include "devdef/platform/export.h"

/// Compares two zero-terminated strings byte by byte as unsigned values, with no multibyte code page: <0, 0 or >0,
/// the difference of the first unequal bytes. Neither pointer may be null.
DEVDEF_API int _mbscmp(const unsigned char* lhs, const unsigned char* rhs);
/// As _mbscmp after folding A-Z to a-z; bytes outside ASCII are compared unchanged, whatever the locale.
DEVDEF_API int _mbsicmp(const unsigned char* lhs, const unsigned char* rhs);

/// Whether c is white space for the readers and for CString's trimming: exactly blank, tab, LF, VT, FF, CR, whatever
/// the locale.
inline bool DevdefIsSpace(unsigned char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
/// c with A-Z folded to a-z; every other byte unchanged, whatever the locale.
inline unsigned char DevdefToLower(unsigned char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

/// sscanf(pszText, "%d", pnValue) with the 32-bit result of the Windows runtime: white space in front is skipped, a
/// sign is taken, digits are read until the first byte that cannot continue the number, and the value wraps modulo
/// 2^32 instead of overflowing. Returns 1 when a number was read, else 0, and stores nothing on 0. pszText must be
/// zero-terminated and pnValue must not be null.
DEVDEF_API int DevdefScanDecimalGeneral(const char* pszText, int* pnValue);
/// sscanf(pszText, "%x", pnValue): as DevdefScanDecimalGeneral, and a leading 0x or 0X is taken ("0x" alone reads 0).
DEVDEF_API int DevdefScanHexGeneral(const char* pszText, unsigned int* pnValue);

/// The same as DevdefScanDecimalGeneral. Nearly every field of a definition line is a plain number right at the
/// cursor: that case is read here, inline, everything else by the general scanner.
inline int DevdefScanDecimal(const char* pszText, int* pnValue) {
  const char* p = pszText;
  if (static_cast<unsigned char>(*p - '0') > 9) return DevdefScanDecimalGeneral(pszText, pnValue);
  unsigned int value = 0;
  for (unsigned int digit; (digit = static_cast<unsigned char>(*p - '0')) <= 9; ++p) value = value * 10u + digit;
  *pnValue = static_cast<int>(value);
  return 1;
}

/// The value of the hex digit c (0-9, a-f, A-F), or -1.
inline int DevdefHexDigit(unsigned char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// The same as DevdefScanHexGeneral, with the plain case (a hex digit first, no 0x) read inline.
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
