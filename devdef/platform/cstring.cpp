#include "devdef/platform/cstring.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "devdef/platform/crt.h"

namespace {

int Clamp(int value, int low, int high) {
  return value < low ? low : (value > high ? high : value);
}

bool InSet(TCHAR ch, LPCTSTR set) {
  return ch != '\0' && set != nullptr && std::strchr(set, ch) != nullptr;
}

void AppendV(std::string& out, LPCTSTR format, va_list args) {
  va_list copy;
  va_copy(copy, args);
  char small[256];
  const int needed = std::vsnprintf(small, sizeof small, format, copy);
  va_end(copy);
  if (needed < 0) return;
  if (static_cast<size_t>(needed) < sizeof small) {
    out.append(small, static_cast<size_t>(needed));
    return;
  }
  const size_t start = out.size();
  out.resize(start + static_cast<size_t>(needed) + 1);
  std::vsnprintf(&out[start], static_cast<size_t>(needed) + 1, format, args);
  out.resize(start + static_cast<size_t>(needed));
}

}  // namespace

CString::CString(LPCTSTR psz) : m_str(psz != nullptr ? psz : "") {}

CString::CString(LPCTSTR pch, int nLength) {
  if (pch != nullptr && nLength > 0) m_str.assign(pch, static_cast<size_t>(nLength));
}

CString::CString(TCHAR ch, int nRepeat) {
  if (nRepeat > 0) m_str.assign(static_cast<size_t>(nRepeat), ch);
}

CString& CString::operator=(LPCTSTR psz) {
  if (psz == nullptr) {
    m_str.clear();
  } else {
    m_str.assign(psz);
  }
  return *this;
}

CString& CString::operator+=(const CString& other) {
  m_str += other.m_str;
  return *this;
}

CString& CString::operator+=(LPCTSTR psz) {
  if (psz != nullptr) m_str += psz;
  return *this;
}

int CString::Compare(LPCTSTR psz) const {
  return _mbscmp(reinterpret_cast<const unsigned char*>(m_str.c_str()),
                 reinterpret_cast<const unsigned char*>(psz != nullptr ? psz : ""));
}

int CString::CompareNoCase(LPCTSTR psz) const {
  return _mbsicmp(reinterpret_cast<const unsigned char*>(m_str.c_str()),
                  reinterpret_cast<const unsigned char*>(psz != nullptr ? psz : ""));
}

CString CString::Mid(int nFirst) const { return Mid(nFirst, GetLength()); }

CString CString::Mid(int nFirst, int nCount) const {
  const int length = GetLength();
  nFirst = Clamp(nFirst, 0, length);
  nCount = Clamp(nCount, 0, length - nFirst);
  return CString(m_str.data() + nFirst, nCount);
}

CString CString::Left(int nCount) const {
  return CString(m_str.data(), Clamp(nCount, 0, GetLength()));
}

int CString::Find(TCHAR ch, int nStart) const {
  if (nStart < 0) nStart = 0;
  if (nStart >= GetLength()) return -1;
  const size_t at = m_str.find(ch, static_cast<size_t>(nStart));
  return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::Find(LPCTSTR pszSub, int nStart) const {
  if (pszSub == nullptr) return -1;
  if (nStart < 0) nStart = 0;
  if (nStart > GetLength()) return -1;
  const size_t at = m_str.find(pszSub, static_cast<size_t>(nStart));
  return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::Replace(TCHAR chOld, TCHAR chNew) {
  int count = 0;
  if (chOld == chNew) return 0;
  for (char& ch : m_str) {
    if (ch == chOld) {
      ch = chNew;
      ++count;
    }
  }
  return count;
}

int CString::Replace(LPCTSTR pszOld, LPCTSTR pszNew) {
  if (pszOld == nullptr || *pszOld == '\0') return 0;
  const size_t oldLength = std::strlen(pszOld);
  const std::string replacement(pszNew != nullptr ? pszNew : "");
  size_t at = m_str.find(pszOld, 0, oldLength);
  if (at == std::string::npos) return 0;
  // One left-to-right pass over non-overlapping occurrences.
  std::string out;
  out.reserve(m_str.size());
  size_t from = 0;
  int count = 0;
  while (at != std::string::npos) {
    out.append(m_str, from, at - from);
    out += replacement;
    from = at + oldLength;
    ++count;
    at = m_str.find(pszOld, from, oldLength);
  }
  out.append(m_str, from, std::string::npos);
  m_str.swap(out);
  return count;
}

int CString::Insert(int nIndex, TCHAR ch) {
  nIndex = Clamp(nIndex, 0, GetLength());
  m_str.insert(static_cast<size_t>(nIndex), 1, ch);
  return GetLength();
}

int CString::Insert(int nIndex, LPCTSTR psz) {
  nIndex = Clamp(nIndex, 0, GetLength());
  if (psz != nullptr) m_str.insert(static_cast<size_t>(nIndex), psz);
  return GetLength();
}

int CString::Delete(int nIndex, int nCount) {
  nIndex = Clamp(nIndex, 0, GetLength());
  nCount = Clamp(nCount, 0, GetLength() - nIndex);
  m_str.erase(static_cast<size_t>(nIndex), static_cast<size_t>(nCount));
  return GetLength();
}

CString& CString::TrimLeft() {
  size_t start = 0;
  while (start < m_str.size() && DevdefIsSpace(static_cast<unsigned char>(m_str[start]))) ++start;
  m_str.erase(0, start);
  return *this;
}

CString& CString::TrimRight() {
  size_t end = m_str.size();
  while (end > 0 && DevdefIsSpace(static_cast<unsigned char>(m_str[end - 1]))) --end;
  m_str.resize(end);
  return *this;
}

CString& CString::TrimRight(LPCTSTR pszTargets) {
  size_t end = m_str.size();
  while (end > 0 && InSet(m_str[end - 1], pszTargets)) --end;
  m_str.resize(end);
  return *this;
}

void CString::Format(LPCTSTR pszFormat, ...) {
  std::string out;
  va_list args;
  va_start(args, pszFormat);
  AppendV(out, pszFormat, args);
  va_end(args);
  m_str.swap(out);
}

void CString::AppendFormat(LPCTSTR pszFormat, ...) {
  va_list args;
  va_start(args, pszFormat);
  AppendV(m_str, pszFormat, args);
  va_end(args);
}

LPTSTR CString::GetBuffer(int nMinBufLength) {
  if (nMinBufLength > GetLength()) m_str.resize(static_cast<size_t>(nMinBufLength));
  return &m_str[0];
}

void CString::ReleaseBuffer(int nNewLength) {
  if (nNewLength < 0) nNewLength = static_cast<int>(std::strlen(m_str.c_str()));
  m_str.resize(static_cast<size_t>(Clamp(nNewLength, 0, GetLength())));
}

bool operator==(const CString& lhs, const CString& rhs) { return lhs.m_str == rhs.m_str; }
bool operator==(const CString& lhs, LPCTSTR rhs) { return lhs.Compare(rhs) == 0; }
bool operator==(LPCTSTR lhs, const CString& rhs) { return rhs.Compare(lhs) == 0; }
bool operator!=(const CString& lhs, const CString& rhs) { return !(lhs == rhs); }
bool operator!=(const CString& lhs, LPCTSTR rhs) { return !(lhs == rhs); }
bool operator!=(LPCTSTR lhs, const CString& rhs) { return !(lhs == rhs); }
bool operator<(const CString& lhs, const CString& rhs) { return lhs.m_str < rhs.m_str; }

CString operator+(const CString& lhs, const CString& rhs) {
  CString out;
  out.m_str.reserve(lhs.m_str.size() + rhs.m_str.size());
  out.m_str = lhs.m_str;
  out.m_str += rhs.m_str;
  return out;
}
CString operator+(const CString& lhs, LPCTSTR rhs) { return lhs + CString(rhs); }
CString operator+(LPCTSTR lhs, const CString& rhs) { return CString(lhs) + rhs; }
