/// \file
/// The library's own formatted scanner, which tells where it stopped in the text, and the readers behind its
/// conversions. They keep no state and may be called from any thread.
#ifndef DEVDEF_WRITER_FORMAT_SCANNER_H_
#define DEVDEF_WRITER_FORMAT_SCANNER_H_

#include "devdef/platform/export.h"

/// Scans pszText by pszFormat into the destinations that follow, one per conversion. Unlike sscanf it tells where
/// it stopped: the result is the position in the text, and the number of conversions comes back through pnCount.
///
/// Conversion letters behind a "%": `d` (decimal, or hexadecimal behind a leading `0x`), `D` (the same, unsigned),
/// `x` and `X` (hexadecimal), `f` (32-bit float), `s` and `S` (a word into a caller's buffer, which must be large
/// enough), `c` and `C` (one byte). Modifiers between the "%" and the letter: `b` 8-bit, `h` 16-bit, `l` 32-bit
/// destination (16-bit without one), `u` no sign taken; digits and "." are ignored. A number must fill its whole
/// token, which ends at a blank, a tab or the end of the text; a line end does not end it. Blanks (0x20 only) are
/// skipped in the text and in the format. Any other byte behind a "%" makes the "%" an ordinary character.
///
/// \return the position in the text where the scan ended, blanks skipped, with *pnCount the number of conversions
///         when the format was used up; with *pnCount 65535 when the text ran out first or an ordinary character
///         did not match; null when a number did not read, with *pnCount the conversions done before it.
DEVDEF_API const char* ScanFormatted(unsigned short* pnCount, const char* pszText, const char* pszFormat, ...);

// The readers behind the conversions. The modifier byte holds the unsigned
// flag in bit 7 and the width code (0, 1, 2 or 4) in the rest.

/// Reads the decimal token at pszPos, with a leading "-" or "+" unless nModifier has the unsigned flag (bit 7), and
/// stores its low 8, 16 or 32 bits in pDest by the width code (1; 0 or 2; 4) in the rest of nModifier.
/// \return the position behind the token, or null (nothing stored) when the token is empty or not all digits.
DEVDEF_API const char* ScanDecimal(void* pDest, const char* pszPos, unsigned char nModifier);
/// Reads the hexadecimal token at pszPos (digits, "a" to "f", "A" to "F"; no `0x` prefix) as ScanDecimal does.
/// \return the position behind the token, or null (nothing stored) when the token is empty or no hexadecimal number.
DEVDEF_API const char* ScanHex(void* pDest, const char* pszPos, unsigned char nModifier);
/// Reads the token at pszPos as a decimal fraction ("12.5", sign as in ScanDecimal) and stores it in pDest as a
/// 32-bit float, whatever the width code.
/// \return the position behind the token, or null (nothing stored) when the token is empty, not a number or 256
///         bytes or longer.
DEVDEF_API const char* ScanFloat(void* pDest, const char* pszPos, unsigned char nModifier);
/// Copies bytes up to a blank, tab, LF or the end, adds a zero byte, and
/// returns the position of the byte that stopped it. pDest must have room for them.
DEVDEF_API const char* ScanWord(char* pDest, const char* pszPos);
/// Copies one byte and returns the position behind it.
DEVDEF_API const char* ScanChar(char* pDest, const char* pszPos);

#endif  // DEVDEF_WRITER_FORMAT_SCANNER_H_
