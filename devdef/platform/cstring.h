// CString: the class library's byte string. It holds any bytes, NUL included,
// and its own operations work over its whole length; reading it as LPCTSTR
// gives the zero-terminated characters.
#ifndef DEVDEF_PLATFORM_CSTRING_H_
#define DEVDEF_PLATFORM_CSTRING_H_

#include "devdef/platform/export.h"

#include <string>

#include "devdef/platform/types.h"

class DEVDEF_API CString {
 public:
  CString() = default;
  CString(const CString& other) = default;
  CString(CString&& other) noexcept = default;
  CString(LPCTSTR psz);  // NOLINT: implicit, as in the class library; null is empty
  CString(LPCTSTR pch, int nLength);
  explicit CString(TCHAR ch, int nRepeat = 1);
  ~CString() = default;

  CString& operator=(const CString& other) = default;
  CString& operator=(CString&& other) noexcept = default;
  CString& operator=(LPCTSTR psz);

  int GetLength() const { return static_cast<int>(m_str.size()); }
  BOOL IsEmpty() const { return m_str.empty(); }
  // Empties the string; the storage is kept for the next use.
  void Empty() { m_str.clear(); }

  TCHAR GetAt(int nIndex) const { return m_str[static_cast<size_t>(nIndex)]; }
  TCHAR operator[](int nIndex) const { return GetAt(nIndex); }
  void SetAt(int nIndex, TCHAR ch) { m_str[static_cast<size_t>(nIndex)] = ch; }
  operator LPCTSTR() const { return m_str.c_str(); }  // NOLINT

  CString& operator+=(const CString& other);
  CString& operator+=(LPCTSTR psz);  // a null pointer adds nothing
  CString& operator+=(TCHAR ch) {
    m_str.push_back(ch);
    return *this;
  }
  CString& operator+=(unsigned char ch) { return *this += static_cast<TCHAR>(ch); }
  // Appends nLength bytes from pch.
  CString& Append(LPCTSTR pch, int nLength) {
    if (pch != nullptr && nLength > 0) m_str.append(pch, static_cast<size_t>(nLength));
    return *this;
  }

  // strcmp-style results: <0, 0, >0; the second folds ASCII case.
  int Compare(LPCTSTR psz) const;
  int CompareNoCase(LPCTSTR psz) const;

  CString Mid(int nFirst) const;
  CString Mid(int nFirst, int nCount) const;
  CString Left(int nCount) const;

  int Find(TCHAR ch, int nStart = 0) const;
  int Find(LPCTSTR pszSub, int nStart = 0) const;

  int Replace(TCHAR chOld, TCHAR chNew);
  int Replace(LPCTSTR pszOld, LPCTSTR pszNew);
  int Insert(int nIndex, TCHAR ch);
  int Insert(int nIndex, LPCTSTR psz);
  int Delete(int nIndex, int nCount = 1);

  // White space is blank, tab, LF, VT, FF and CR.
  CString& TrimLeft();
  CString& TrimRight();
  CString& TrimRight(LPCTSTR pszTargets);
  CString& Trim() { return TrimRight().TrimLeft(); }


  void Format(LPCTSTR pszFormat, ...) __attribute__((format(printf, 2, 3)));
  void AppendFormat(LPCTSTR pszFormat, ...) __attribute__((format(printf, 2, 3)));

  // Direct access to the bytes: the buffer holds at least nMinBufLength bytes
  // plus a terminating zero. ReleaseBuffer(-1) takes the length up to the
  // first zero byte.
  LPTSTR GetBuffer(int nMinBufLength);
  void ReleaseBuffer(int nNewLength = -1);

  // Not in the class library: reserves room for appending without moving.
  void Preallocate(int nLength) { m_str.reserve(static_cast<size_t>(nLength)); }

 private:
  friend DEVDEF_API bool operator==(const CString& lhs, const CString& rhs);
  friend DEVDEF_API bool operator<(const CString& lhs, const CString& rhs);
  friend DEVDEF_API CString operator+(const CString& lhs, const CString& rhs);

  std::string m_str;
};

DEVDEF_API bool operator==(const CString& lhs, const CString& rhs);
DEVDEF_API bool operator==(const CString& lhs, LPCTSTR rhs);
DEVDEF_API bool operator==(LPCTSTR lhs, const CString& rhs);
DEVDEF_API bool operator!=(const CString& lhs, const CString& rhs);
DEVDEF_API bool operator!=(const CString& lhs, LPCTSTR rhs);
DEVDEF_API bool operator!=(LPCTSTR lhs, const CString& rhs);
DEVDEF_API bool operator<(const CString& lhs, const CString& rhs);

DEVDEF_API CString operator+(const CString& lhs, const CString& rhs);
DEVDEF_API CString operator+(const CString& lhs, LPCTSTR rhs);
DEVDEF_API CString operator+(LPCTSTR lhs, const CString& rhs);

#endif  // DEVDEF_PLATFORM_CSTRING_H_
