// CString: the class library's byte string. It holds any bytes, NUL included,
// and its own operations work over its whole length; reading it as LPCTSTR
// gives the zero-terminated characters.
//
// A string is one pointer: null while it is empty and has no storage, else
// the characters of a heap block that starts with the length and the room,
// in 4 bytes for a short string. A catalogue holds two strings per
// definition, most of them empty, and a short text per line.
#ifndef DEVDEF_PLATFORM_CSTRING_H_
#define DEVDEF_PLATFORM_CSTRING_H_

#include "devdef/platform/export.h"

#include <cstring>

#include "devdef/platform/types.h"

class DEVDEF_API CString {
 public:
  CString() = default;
  CString(const CString& other);
  CString(CString&& other) noexcept : m_pchData(other.m_pchData) { other.m_pchData = nullptr; }
  CString(LPCTSTR psz);  // NOLINT: implicit, as in the class library; null is empty
  CString(LPCTSTR pch, int nLength);
  explicit CString(TCHAR ch, int nRepeat = 1);
  ~CString() { Free(); }

  CString& operator=(const CString& other);
  CString& operator=(CString&& other) noexcept {
    if (this != &other) {
      Free();
      m_pchData = other.m_pchData;
      other.m_pchData = nullptr;
    }
    return *this;
  }
  CString& operator=(LPCTSTR psz);

  int GetLength() const { return m_pchData != nullptr ? Length() : 0; }
  BOOL IsEmpty() const { return GetLength() == 0; }
  // Empties the string; the storage is kept for the next use.
  void Empty() {
    if (m_pchData != nullptr) SetLength(0);
  }

  TCHAR GetAt(int nIndex) const { return m_pchData[nIndex]; }
  TCHAR operator[](int nIndex) const { return GetAt(nIndex); }
  void SetAt(int nIndex, TCHAR ch) { m_pchData[nIndex] = ch; }
  operator LPCTSTR() const { return m_pchData != nullptr ? m_pchData : ""; }  // NOLINT

  CString& operator+=(const CString& other) { return Append(other.m_pchData, other.GetLength()); }
  CString& operator+=(LPCTSTR psz);  // a null pointer adds nothing
  CString& operator+=(TCHAR ch) {
    const int length = GetLength();
    if (m_pchData == nullptr || length == Room()) Grow(length + 1);
    m_pchData[length] = ch;
    SetLength(length + 1);
    return *this;
  }
  CString& operator+=(unsigned char ch) { return *this += static_cast<TCHAR>(ch); }
  // Appends nLength bytes from pch.
  CString& Append(LPCTSTR pch, int nLength);

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
  void Preallocate(int nLength);

 private:
  // What a heap block holds in front of the characters, in the 32-bit word
  // right in front of them. A short block (room for at most 32767
  // characters) has only that word: the top bit set, the room in the next 15
  // bits and the length in the low 16. A long block has the room as an int in
  // front of the word, and the length in it, whose top bit is clear.
  static const unsigned kShortBlock = 0x80000000u;
  static const int kShortRoom = 0x7FFF;

  unsigned Word() const {
    unsigned word;
    std::memcpy(&word, m_pchData - 4, sizeof word);
    return word;
  }
  // Only with storage: the length, the room, and the length set with the
  // zero behind it.
  int Length() const {
    const unsigned word = Word();
    return static_cast<int>((word & kShortBlock) != 0 ? word & 0xFFFFu : word);
  }
  int Room() const {
    const unsigned word = Word();
    if ((word & kShortBlock) != 0) return static_cast<int>((word >> 16) & 0x7FFFu);
    int room;
    std::memcpy(&room, m_pchData - 8, sizeof room);
    return room;
  }
  void SetLength(int nLength) {
    const unsigned word = Word();
    const unsigned newWord =
        (word & kShortBlock) != 0 ? (word & 0xFFFF0000u) | static_cast<unsigned>(nLength) : static_cast<unsigned>(nLength);
    std::memcpy(m_pchData - 4, &newWord, sizeof newWord);
    m_pchData[nLength] = '\0';
  }
  // Room for at least nLength characters, the content kept; the room at
  // least doubles, so appending byte by byte stays linear.
  void Grow(int nLength);
  // Room for exactly nLength characters when there is less, content kept.
  void Reserve(int nLength);
  void Free();
  // Replaces the content by nLength bytes from pch, which may lie inside it.
  void Assign(LPCTSTR pch, int nLength);

  friend DEVDEF_API bool operator==(const CString& lhs, const CString& rhs);
  friend DEVDEF_API bool operator<(const CString& lhs, const CString& rhs);
  friend DEVDEF_API CString operator+(const CString& lhs, const CString& rhs);

  char* m_pchData = nullptr;
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
