#include "devdef/platform/cstring.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>
#include <string_view>

#include "devdef/platform/crt.h"

namespace {

// The longest string: its block size must still fit an int.
const int kMaxLength = INT_MAX - 64;
// The first block made by appending has room for this many characters.
const int kMinGrowth = 15;

int Clamp(int value, int low, int high) {
  return value < low ? low : (value > high ? high : value);
}

bool InSet(TCHAR ch, LPCTSTR set) {
  return ch != '\0' && set != nullptr && std::strchr(set, ch) != nullptr;
}

// The length of a zero-terminated text as an int; longer texts are refused.
int TextLength(LPCTSTR psz) {
  const size_t length = std::strlen(psz);
  if (length > static_cast<size_t>(kMaxLength)) throw std::length_error("CString: text too long");
  return static_cast<int>(length);
}

// Whether p points into [pBegin, pEnd); an empty range holds nothing.
bool Within(const char* p, const char* pBegin, const char* pEnd) {
  const std::less<const char*> before;
  return !before(p, pBegin) && before(p, pEnd);
}

}  // namespace

void CString::Reserve(int nLength) {
  if (nLength > kMaxLength || nLength < 0) throw std::length_error("CString: text too long");
  const int length = GetLength();
  if (m_pchData != nullptr && Room() >= nLength) return;
  const bool isShort = nLength <= kShortRoom;
  const size_t head = isShort ? 4 : 8;
  char* block = static_cast<char*>(::operator new(head + static_cast<size_t>(nLength) + 1));
  if (isShort) {
    const unsigned word = kShortBlock | static_cast<unsigned>(nLength) << 16 | static_cast<unsigned>(length);
    std::memcpy(block, &word, sizeof word);
  } else {
    std::memcpy(block, &nLength, sizeof nLength);
    std::memcpy(block + 4, &length, sizeof length);
  }
  char* chars = block + head;
  if (length > 0) std::memcpy(chars, m_pchData, static_cast<size_t>(length));
  chars[length] = '\0';
  Free();
  m_pchData = chars;
}

void CString::Grow(int nLength) {
  const long long room = m_pchData != nullptr ? Room() : 0;
  const long long doubled = std::min<long long>(2 * room, kMaxLength);
  Reserve(static_cast<int>(std::max<long long>({nLength, doubled, kMinGrowth})));
}

void CString::Free() {
  if (m_pchData != nullptr) ::operator delete(m_pchData - ((Word() & kShortBlock) != 0 ? 4 : 8));
  m_pchData = nullptr;
}

void CString::Assign(LPCTSTR pch, int nLength) {
  if (nLength <= 0) {
    Empty();
    return;
  }
  if (Within(pch, m_pchData, m_pchData + GetLength())) {
    // A piece of this string: it moves to the front, the room stays.
    std::memmove(m_pchData, pch, static_cast<size_t>(nLength));
    SetLength(nLength);
    return;
  }
  if (m_pchData == nullptr || Room() < nLength) {
    Free();
    Reserve(nLength);
  }
  std::memcpy(m_pchData, pch, static_cast<size_t>(nLength));
  SetLength(nLength);
}

CString::CString(const CString& other) { Assign(other.m_pchData, other.GetLength()); }

CString::CString(LPCTSTR psz) {
  if (psz != nullptr) Assign(psz, TextLength(psz));
}

CString::CString(LPCTSTR pch, int nLength) {
  if (pch != nullptr && nLength > 0) Assign(pch, nLength);
}

CString::CString(TCHAR ch, int nRepeat) {
  if (nRepeat <= 0) return;
  Reserve(nRepeat);
  std::memset(m_pchData, ch, static_cast<size_t>(nRepeat));
  SetLength(nRepeat);
}

CString& CString::operator=(const CString& other) {
  if (this != &other) Assign(other.m_pchData, other.GetLength());
  return *this;
}

CString& CString::operator=(LPCTSTR psz) {
  if (psz == nullptr) {
    Empty();
  } else {
    Assign(psz, TextLength(psz));
  }
  return *this;
}

CString& CString::operator+=(LPCTSTR psz) {
  if (psz != nullptr) Append(psz, TextLength(psz));
  return *this;
}

CString& CString::Append(LPCTSTR pch, int nLength) {
  if (pch == nullptr || nLength <= 0) return *this;
  const int length = GetLength();
  if (nLength > kMaxLength - length) throw std::length_error("CString: text too long");
  if (m_pchData == nullptr || Room() - length < nLength) {
    // The bytes may come from this string, whose block is about to move.
    const bool own = Within(pch, m_pchData, m_pchData + length);
    const ptrdiff_t offset = own ? pch - m_pchData : 0;
    Grow(length + nLength);
    if (own) pch = m_pchData + offset;
  }
  std::memmove(m_pchData + length, pch, static_cast<size_t>(nLength));
  SetLength(length + nLength);
  return *this;
}

void CString::Preallocate(int nLength) {
  if (nLength > 0) Reserve(nLength);
}

int CString::Compare(LPCTSTR psz) const {
  return _mbscmp(reinterpret_cast<const unsigned char*>(static_cast<LPCTSTR>(*this)),
                 reinterpret_cast<const unsigned char*>(psz != nullptr ? psz : ""));
}

int CString::CompareNoCase(LPCTSTR psz) const {
  return _mbsicmp(reinterpret_cast<const unsigned char*>(static_cast<LPCTSTR>(*this)),
                  reinterpret_cast<const unsigned char*>(psz != nullptr ? psz : ""));
}

CString CString::Mid(int nFirst) const { return Mid(nFirst, GetLength()); }

CString CString::Mid(int nFirst, int nCount) const {
  const int length = GetLength();
  nFirst = Clamp(nFirst, 0, length);
  nCount = Clamp(nCount, 0, length - nFirst);
  return nCount > 0 ? CString(m_pchData + nFirst, nCount) : CString();
}

CString CString::Left(int nCount) const { return CString(m_pchData, Clamp(nCount, 0, GetLength())); }

int CString::Find(TCHAR ch, int nStart) const {
  if (nStart < 0) nStart = 0;
  if (nStart >= GetLength()) return -1;
  const void* at = std::memchr(m_pchData + nStart, ch, static_cast<size_t>(GetLength() - nStart));
  return at != nullptr ? static_cast<int>(static_cast<const char*>(at) - m_pchData) : -1;
}

int CString::Find(LPCTSTR pszSub, int nStart) const {
  if (pszSub == nullptr) return -1;
  if (nStart < 0) nStart = 0;
  if (nStart > GetLength()) return -1;
  const std::string_view text(static_cast<LPCTSTR>(*this), static_cast<size_t>(GetLength()));
  const size_t at = text.find(pszSub, static_cast<size_t>(nStart));
  return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

int CString::Replace(TCHAR chOld, TCHAR chNew) {
  if (chOld == chNew) return 0;
  int count = 0;
  const int length = GetLength();
  for (int i = 0; i < length; ++i) {
    if (m_pchData[i] == chOld) {
      m_pchData[i] = chNew;
      ++count;
    }
  }
  return count;
}

int CString::Replace(LPCTSTR pszOld, LPCTSTR pszNew) {
  if (pszOld == nullptr || *pszOld == '\0') return 0;
  const std::string_view text(static_cast<LPCTSTR>(*this), static_cast<size_t>(GetLength()));
  const std::string_view old(pszOld);
  size_t at = text.find(old);
  if (at == std::string_view::npos) return 0;
  const int newLength = pszNew != nullptr ? TextLength(pszNew) : 0;
  // One left-to-right pass over non-overlapping occurrences, into a new
  // string; pszNew may come from this one.
  CString out;
  out.Preallocate(GetLength());
  size_t from = 0;
  int count = 0;
  while (at != std::string_view::npos) {
    out.Append(m_pchData + from, static_cast<int>(at - from));
    out.Append(pszNew, newLength);
    from = at + old.size();
    ++count;
    at = text.find(old, from);
  }
  out.Append(m_pchData + from, static_cast<int>(text.size() - from));
  *this = static_cast<CString&&>(out);
  return count;
}

int CString::Insert(int nIndex, TCHAR ch) {
  nIndex = Clamp(nIndex, 0, GetLength());
  *this = Left(nIndex) + CString(ch) + Mid(nIndex);
  return GetLength();
}

int CString::Insert(int nIndex, LPCTSTR psz) {
  nIndex = Clamp(nIndex, 0, GetLength());
  if (psz != nullptr && *psz != '\0') *this = Left(nIndex) + CString(psz) + Mid(nIndex);
  return GetLength();
}

int CString::Delete(int nIndex, int nCount) {
  const int length = GetLength();
  nIndex = Clamp(nIndex, 0, length);
  nCount = Clamp(nCount, 0, length - nIndex);
  if (nCount > 0) {
    std::memmove(m_pchData + nIndex, m_pchData + nIndex + nCount, static_cast<size_t>(length - nIndex - nCount));
    SetLength(length - nCount);
  }
  return GetLength();
}

CString& CString::TrimLeft() {
  const int length = GetLength();
  int start = 0;
  while (start < length && DevdefIsSpace(static_cast<unsigned char>(m_pchData[start]))) ++start;
  if (start > 0) Delete(0, start);
  return *this;
}

CString& CString::TrimRight() {
  int end = GetLength();
  while (end > 0 && DevdefIsSpace(static_cast<unsigned char>(m_pchData[end - 1]))) --end;
  if (end < GetLength()) SetLength(end);
  return *this;
}

CString& CString::TrimRight(LPCTSTR pszTargets) {
  int end = GetLength();
  while (end > 0 && InSet(m_pchData[end - 1], pszTargets)) --end;
  if (end < GetLength()) SetLength(end);
  return *this;
}

namespace {

// Formats into out, replacing its content when bAppend is false.
void FormatV(CString& out, bool bAppend, LPCTSTR format, va_list args) {
  va_list copy;
  va_copy(copy, args);
  char small[256];
  // A format the runtime cannot carry out gives no text.
  const int needed = std::max(std::vsnprintf(small, sizeof small, format, copy), 0);
  va_end(copy);
  if (static_cast<size_t>(needed) < sizeof small) {
    if (!bAppend) out.Empty();
    out.Append(small, needed);
    return;
  }
  CString text;
  LPTSTR buffer = text.GetBuffer(needed);
  std::vsnprintf(buffer, static_cast<size_t>(needed) + 1, format, args);
  text.ReleaseBuffer(needed);
  if (bAppend) {
    out += text;
  } else {
    out = static_cast<CString&&>(text);
  }
}

}  // namespace

void CString::Format(LPCTSTR pszFormat, ...) {
  va_list args;
  va_start(args, pszFormat);
  FormatV(*this, false, pszFormat, args);
  va_end(args);
}

void CString::AppendFormat(LPCTSTR pszFormat, ...) {
  va_list args;
  va_start(args, pszFormat);
  FormatV(*this, true, pszFormat, args);
  va_end(args);
}

LPTSTR CString::GetBuffer(int nMinBufLength) {
  const int length = GetLength();
  // Even an empty string hands out a block of its own to write into.
  Reserve(nMinBufLength > length ? nMinBufLength : length);
  if (nMinBufLength > length) {
    std::memset(m_pchData + length, 0, static_cast<size_t>(nMinBufLength - length));
    SetLength(nMinBufLength);
  }
  return m_pchData;
}

void CString::ReleaseBuffer(int nNewLength) {
  if (m_pchData == nullptr) return;
  const int length = GetLength();
  if (nNewLength < 0) {
    const void* zero = std::memchr(m_pchData, '\0', static_cast<size_t>(length));
    nNewLength = zero != nullptr ? static_cast<int>(static_cast<const char*>(zero) - m_pchData) : length;
  }
  SetLength(Clamp(nNewLength, 0, length));
}

bool operator==(const CString& lhs, const CString& rhs) {
  const int length = lhs.GetLength();
  return length == rhs.GetLength() &&
         (length == 0 || std::memcmp(lhs.m_pchData, rhs.m_pchData, static_cast<size_t>(length)) == 0);
}
bool operator==(const CString& lhs, LPCTSTR rhs) { return lhs.Compare(rhs) == 0; }
bool operator==(LPCTSTR lhs, const CString& rhs) { return rhs.Compare(lhs) == 0; }
bool operator!=(const CString& lhs, const CString& rhs) { return !(lhs == rhs); }
bool operator!=(const CString& lhs, LPCTSTR rhs) { return !(lhs == rhs); }
bool operator!=(LPCTSTR lhs, const CString& rhs) { return !(lhs == rhs); }
bool operator<(const CString& lhs, const CString& rhs) {
  const std::string_view a(lhs, static_cast<size_t>(lhs.GetLength()));
  const std::string_view b(rhs, static_cast<size_t>(rhs.GetLength()));
  return a < b;
}

CString operator+(const CString& lhs, const CString& rhs) {
  CString out;
  const long long length = static_cast<long long>(lhs.GetLength()) + rhs.GetLength();
  out.Preallocate(static_cast<int>(std::min<long long>(length, kMaxLength)));
  out += lhs;
  out += rhs;
  return out;
}
CString operator+(const CString& lhs, LPCTSTR rhs) { return lhs + CString(rhs); }
CString operator+(LPCTSTR lhs, const CString& rhs) { return CString(lhs) + rhs; }
