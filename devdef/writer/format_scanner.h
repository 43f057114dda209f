// The library's own formatted scanner. Unlike sscanf it tells where it
// stopped: the result is the position in the text, and the number of
// conversions comes back through pnCount (65535 when the text ran out before
// the format or an ordinary character did not match).
//
// Conversions: "%d" (decimal, or hexadecimal behind a leading "0x"), "%D"
// (the same, unsigned), "%x"/"%X" (hexadecimal), "%f" (32-bit float), "%s"/"%S"
// (a word into a caller's buffer), "%c"/"%C" (one byte). Modifiers: "b" 8-bit,
// "h" 16-bit, "l" 32-bit destination (16-bit without one), "u" no sign taken;
// digits and "." are ignored. A number must fill its whole token, which ends
// at a blank, a tab or the end of the text. Blanks (0x20 only) are skipped in
// the text and in the format.
#ifndef DEVDEF_WRITER_FORMAT_SCANNER_H_
#define DEVDEF_WRITER_FORMAT_SCANNER_H_

#include "devdef/platform/export.h"

DEVDEF_API const char* ScanFormatted(unsigned short* pnCount, const char* pszText, const char* pszFormat, ...);

// The readers behind the conversions. The modifier byte holds the unsigned
// flag in bit 7 and the width code (0, 1, 2 or 4) in the rest. Each returns
// the position behind what it read, or null when the token is no number.
DEVDEF_API const char* ScanDecimal(void* pDest, const char* pszPos, unsigned char nModifier);
DEVDEF_API const char* ScanHex(void* pDest, const char* pszPos, unsigned char nModifier);
DEVDEF_API const char* ScanFloat(void* pDest, const char* pszPos, unsigned char nModifier);
// Copies bytes up to a blank, tab, LF or the end, adds a zero byte, and
// returns the position of the byte that stopped it.
DEVDEF_API const char* ScanWord(char* pDest, const char* pszPos);
// Copies one byte and returns the position behind it.
DEVDEF_API const char* ScanChar(char* pDest, const char* pszPos);

#endif  // DEVDEF_WRITER_FORMAT_SCANNER_H_
