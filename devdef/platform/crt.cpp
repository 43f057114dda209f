#include "devdef/platform/crt.h"

#include "devdef/platform/number_scan.h"

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

const char* DevdefScanNumber(const char* pszText, bool bHex, unsigned int* pnValue, const char** ppFirst) {
  const char* p = pszText;
  while (DevdefIsSpace(static_cast<unsigned char>(*p))) ++p;
  if (ppFirst != nullptr) *ppFirst = p;
  bool negative = false;
  if (*p == '-' || *p == '+') {
    negative = *p == '-';
    ++p;
  }
  bool digits = false;
  unsigned int value = 0;
  if (bHex) {
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) {
      // "0x" counts as the number 0 even when no hex digit follows.
      digits = true;
      p += 2;
    }
    for (int d = DevdefHexDigit(static_cast<unsigned char>(*p)); d >= 0; d = DevdefHexDigit(static_cast<unsigned char>(*++p))) {
      value = value * 16u + static_cast<unsigned int>(d);
      digits = true;
    }
  } else {
    for (; *p >= '0' && *p <= '9'; ++p) {
      value = value * 10u + static_cast<unsigned int>(*p - '0');
      digits = true;
    }
  }
  if (!digits) return nullptr;
  *pnValue = negative ? 0u - value : value;
  return p;
}

int DevdefScanDecimalGeneral(const char* pszText, int* pnValue) {
  unsigned int value = 0;
  if (DevdefScanNumber(pszText, false, &value, nullptr) == nullptr) return 0;
  *pnValue = static_cast<int>(value);
  return 1;
}

int DevdefScanHexGeneral(const char* pszText, unsigned int* pnValue) {
  return DevdefScanNumber(pszText, true, pnValue, nullptr) != nullptr ? 1 : 0;
}
