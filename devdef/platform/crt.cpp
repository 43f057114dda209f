#include "devdef/platform/crt.h"

int _mbscmp(const unsigned char* lhs, const unsigned char* rhs) {
  while (*lhs != 0 && *lhs == *rhs) {
    ++lhs;
    ++rhs;
  }
  return static_cast<int>(*lhs) - static_cast<int>(*rhs);
}

int _mbsicmp(const unsigned char* lhs, const unsigned char* rhs) {
  unsigned char a = 0;
  unsigned char b = 0;
  do {
    a = DevdefToLower(*lhs++);
    b = DevdefToLower(*rhs++);
  } while (a != 0 && a == b);
  return static_cast<int>(a) - static_cast<int>(b);
}

namespace {

const char* SkipSpaceAndSign(const char* p, bool* pNegative) {
  while (DevdefIsSpace(static_cast<unsigned char>(*p))) ++p;
  *pNegative = false;
  if (*p == '-' || *p == '+') {
    *pNegative = *p == '-';
    ++p;
  }
  return p;
}

}  // namespace

int DevdefScanDecimalGeneral(const char* pszText, int* pnValue) {
  bool negative = false;
  const char* p = SkipSpaceAndSign(pszText, &negative);
  if (*p < '0' || *p > '9') return 0;
  unsigned int value = 0;
  for (; *p >= '0' && *p <= '9'; ++p) value = value * 10u + static_cast<unsigned int>(*p - '0');
  if (negative) value = 0u - value;
  *pnValue = static_cast<int>(value);
  return 1;
}

int DevdefScanHexGeneral(const char* pszText, unsigned int* pnValue) {
  bool negative = false;
  const char* p = SkipSpaceAndSign(pszText, &negative);
  bool digits = false;
  if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) {
    // "0x" counts as the number 0 even when no hex digit follows.
    digits = true;
    p += 2;
  }
  unsigned int value = 0;
  for (int d = DevdefHexDigit(static_cast<unsigned char>(*p)); d >= 0; d = DevdefHexDigit(static_cast<unsigned char>(*++p))) {
    value = value * 16u + static_cast<unsigned int>(d);
    digits = true;
  }
  if (!digits) return 0;
  if (negative) value = 0u - value;
  *pnValue = value;
  return 1;
}
