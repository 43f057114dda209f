#include "devdef/writer/format_scanner.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

const unsigned char kUnsignedFlag = 0x80;
const unsigned short kCountError = 65535;

bool EndsToken(char c) { return c == ' ' || c == '\t' || c == '\0'; }

// Steps over a sign unless the unsigned flag is set; returns the position of
// the token and whether the sign was "-".
const char* TakeSign(const char* pos, unsigned char modifier, bool* negative) {
  *negative = false;
  if (!(modifier & kUnsignedFlag) && (*pos == '-' || *pos == '+')) {
    *negative = *pos == '-';
    ++pos;
  }
  return pos;
}

size_t TokenLength(const char* pos) {
  size_t length = 0;
  while (!EndsToken(pos[length])) ++length;
  return length;
}

void StoreInteger(void* dest, std::uint32_t value, unsigned char modifier) {
  switch (modifier & ~kUnsignedFlag) {
    case 1: {
      const std::uint8_t narrow = static_cast<std::uint8_t>(value);
      std::memcpy(dest, &narrow, sizeof narrow);
      break;
    }
    case 4:
      std::memcpy(dest, &value, sizeof value);
      break;
    default: {
      const std::uint16_t narrow = static_cast<std::uint16_t>(value);
      std::memcpy(dest, &narrow, sizeof narrow);
      break;
    }
  }
}

int DigitValue(char c, unsigned base) {
  int digit = -1;
  if (c >= '0' && c <= '9') {
    digit = c - '0';
  } else if (c >= 'a' && c <= 'f') {
    digit = c - 'a' + 10;
  } else if (c >= 'A' && c <= 'F') {
    digit = c - 'A' + 10;
  }
  return digit >= 0 && static_cast<unsigned>(digit) < base ? digit : -1;
}

// Tokens are measured with size_t, so a token of any length is read whole;
// the value wraps modulo 2^32.
const char* ScanInteger(void* dest, const char* pos, unsigned char modifier, unsigned base) {
  bool negative = false;
  pos = TakeSign(pos, modifier, &negative);
  const size_t length = TokenLength(pos);
  if (length == 0) return nullptr;
  std::uint32_t value = 0;
  for (size_t i = 0; i < length; ++i) {
    const int digit = DigitValue(pos[i], base);
    if (digit < 0) return nullptr;
    value = value * base + static_cast<std::uint32_t>(digit);
  }
  if (negative) value = 0u - value;
  StoreInteger(dest, value, modifier);
  return pos + length;
}

}  // namespace

const char* ScanDecimal(void* pDest, const char* pszPos, unsigned char nModifier) {
  return ScanInteger(pDest, pszPos, nModifier, 10);
}

const char* ScanHex(void* pDest, const char* pszPos, unsigned char nModifier) {
  return ScanInteger(pDest, pszPos, nModifier, 16);
}

const char* ScanFloat(void* pDest, const char* pszPos, unsigned char nModifier) {
  bool negative = false;
  const char* pos = TakeSign(pszPos, nModifier, &negative);
  const size_t length = TokenLength(pos);
  // The token's length is counted in 8 bits: 256 bytes or more fail.
  if (length == 0 || length >= 256) return nullptr;
  double value = 0.0;
  double scale = 0.0;
  bool pointSeen = false;
  for (size_t i = 0; i < length; ++i) {
    const char c = pos[i];
    if (c >= '0' && c <= '9') {
      if (pointSeen) {
        value += (c - '0') * scale;
        scale *= 0.1f;
      } else {
        value = value * 10.0f + (c - '0');
      }
    } else if (c == '.' && !pointSeen) {
      pointSeen = true;
      scale = 0.1f;
    } else {
      return nullptr;
    }
  }
  if (negative) value *= -1.0;
  const float stored = static_cast<float>(value);
  std::memcpy(pDest, &stored, sizeof stored);
  return pos + length;
}

const char* ScanWord(char* pDest, const char* pszPos) {
  while (*pszPos != ' ' && *pszPos != '\t' && *pszPos != '\n' && *pszPos != '\0') *pDest++ = *pszPos++;
  *pDest = '\0';
  return pszPos;
}

const char* ScanChar(char* pDest, const char* pszPos) {
  *pDest = *pszPos;
  return pszPos + 1;
}

const char* ScanFormatted(unsigned short* pnCount, const char* pszText, const char* pszFormat, ...) {
  va_list args;
  va_start(args, pszFormat);
  const char* text = pszText;
  const char* format = pszFormat;
  *pnCount = 0;
  const char* result = nullptr;
  for (;;) {
    while (*text == ' ') ++text;
    while (*format == ' ') ++format;
    if (*text == '\0' || *format == '\0') {
      if (*format != '\0') *pnCount = kCountError;  // the text ended first
      result = text;
      break;
    }
    if (*format != '%') {
      if (*format != *text) {
        *pnCount = kCountError;
        result = text;
        break;
      }
      ++text;
      ++format;
      continue;
    }
    // Modifiers behind the "%"; digits and "." have no effect.
    const char* conversion = format + 1;
    unsigned char modifier = 0;
    for (;; ++conversion) {
      const char c = *conversion;
      if (c == 'b') {
        modifier = static_cast<unsigned char>((modifier & kUnsignedFlag) | 1);
      } else if (c == 'h') {
        modifier = static_cast<unsigned char>((modifier & kUnsignedFlag) | 2);
      } else if (c == 'l') {
        modifier = static_cast<unsigned char>((modifier & kUnsignedFlag) | 4);
      } else if (c == 'u') {
        modifier |= kUnsignedFlag;
      } else if (!((c >= '0' && c <= '9') || c == '.')) {
        break;
      }
    }
    const char* after = nullptr;
    bool isConversion = true;
    switch (*conversion) {
      case 'D':
        modifier |= kUnsignedFlag;
        // fall through
      case 'd':
        if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
          after = ScanHex(va_arg(args, void*), text + 2, modifier);
        } else {
          after = ScanDecimal(va_arg(args, void*), text, modifier);
        }
        break;
      case 'x':
      case 'X':
        after = ScanHex(va_arg(args, void*), text, modifier);
        break;
      case 'f':
        after = ScanFloat(va_arg(args, void*), text, modifier);
        break;
      case 's':
      case 'S':
        after = ScanWord(va_arg(args, char*), text);
        break;
      case 'c':
      case 'C':
        after = ScanChar(va_arg(args, char*), text);
        break;
      default:
        isConversion = false;
        break;
    }
    if (isConversion) {
      if (after == nullptr) break;  // result stays null; the count stands
      ++*pnCount;
      text = after;
      format = conversion + 1;
      continue;
    }
    // No conversion: the "%" is an ordinary character, and what followed it
    // is read again as ordinary format text.
    if (*text != '%') {
      *pnCount = kCountError;
      result = text;
      break;
    }
    ++text;
    ++format;
  }
  va_end(args);
  return result;
}
