/// \file
/// CString, the class library's byte string, with its comparison and concatenation operators.
#ifndef DEVDEF_PLATFORM_CSTRING_H_
#define DEVDEF_PLATFORM_CSTRING_H_

#include "devdef/platform/export.h"

#include <cstring>

#include "devdef/platform/types.h"

/// The class library's byte string (no Unicode build): a length and that many bytes, any bytes, zero included. Its
/// own operations (length, Find, Replace, Mid, ==, <) work over the whole length; reading it as LPCTSTR, and every
/// operation that takes an LPCTSTR, stops at the first zero byte. Out-of-range indexes and counts of Mid, Left, Find,
/// Insert and Delete are clamped, as in the class library.
///
/// Where it differs from the class library's CString:
/// - Copies are deep (no reference counting); moving is cheap and leaves the source empty.
/// - The object is not a pointer to its characters: pass `(LPCTSTR)s`, never `s`, through `...` (Format, printf).
/// - White space is exactly blank, tab, LF, VT, FF, CR, and CompareNoCase folds ASCII letters only, whatever the
///   locale. A CString == CString compares whole lengths, zero bytes included.
/// - No resource strings (LoadString, Format by id), no BSTR or wide strings. Not provided: Right, ReverseFind,
///   FindOneOf, SpanIncluding, SpanExcluding, MakeUpper, MakeLower, MakeReverse, Remove, TrimLeft and TrimRight of a
///   character, TrimLeft of a set, GetBufferSetLength, LockBuffer, FormatV, operators >, <= and >=, and assignment
///   or + of one character; the character constructor is explicit.
/// - Allocation failure throws std::bad_alloc, not CMemoryException*; a length beyond INT_MAX - 64 throws
///   std::length_error.
class DEVDEF_API CString {
 public:
  /// An empty string; it allocates nothing.
  CString() = default;
  /// A copy of all of other's bytes.
  CString(const CString& other);
  /// Takes over other's bytes, leaving it empty.
  CString(CString&& other) noexcept : m_pchData(other.m_pchData) { other.m_pchData = nullptr; }
  /// The bytes of psz up to its zero; null gives an empty string. Implicit, as in the class library.
  CString(LPCTSTR psz);  // NOLINT: implicit, as in the class library; null is empty
  /// Exactly nLength bytes from pch, zero bytes included; null or nLength <= 0 gives an empty string.
  CString(LPCTSTR pch, int nLength);
  /// nRepeat copies of ch; empty when nRepeat <= 0. Explicit, unlike the class library.
  explicit CString(TCHAR ch, int nRepeat = 1);
  /// Frees the storage.
  ~CString() { Free(); }

  /// Copies all of other's bytes.
  CString& operator=(const CString& other);
  /// Takes over other's bytes, leaving it empty.
  CString& operator=(CString&& other) noexcept {
    if (this != &other) {
      Free();
      m_pchData = other.m_pchData;
      other.m_pchData = nullptr;
    }
    return *this;
  }
  /// The bytes of psz up to its zero; null empties the string. psz may point into this string.
  CString& operator=(LPCTSTR psz);

  /// The number of bytes, zero bytes included.
  int GetLength() const { return m_pchData != nullptr ? Length() : 0; }
  /// Whether the length is 0.
  BOOL IsEmpty() const { return GetLength() == 0; }
  /// Empties the string; the storage is kept for the next use.
  void Empty() {
    if (m_pchData != nullptr) SetLength(0);
  }

  ///@{
  /// The byte at nIndex, which must lie in [0, GetLength()); not checked. operator[] cannot be assigned to: use SetAt.
  TCHAR GetAt(int nIndex) const { return m_pchData[nIndex]; }
  TCHAR operator[](int nIndex) const { return GetAt(nIndex); }
  ///@}
  /// Sets the byte at nIndex, which must lie in [0, GetLength()); not checked.
  void SetAt(int nIndex, TCHAR ch) { m_pchData[nIndex] = ch; }
  /// The zero-terminated characters, never null ("" when empty). The pointer holds until the string is next changed
  /// or destroyed.
  operator LPCTSTR() const { return m_pchData != nullptr ? m_pchData : ""; }  // NOLINT

  /// Appends all of other's bytes; other may be this string.
  CString& operator+=(const CString& other) { return Append(other.m_pchData, other.GetLength()); }
  /// Appends the bytes of psz up to its zero; a null pointer adds nothing.
  CString& operator+=(LPCTSTR psz);  // a null pointer adds nothing
  ///@{
  /// Appends the byte ch, whatever its value (zero included).
  CString& operator+=(TCHAR ch) {
    const int length = GetLength();
    if (m_pchData == nullptr || length == Room()) Grow(length + 1);
    m_pchData[length] = ch;
    SetLength(length + 1);
    return *this;
  }
  CString& operator+=(unsigned char ch) { return *this += static_cast<TCHAR>(ch); }
  ///@}
  /// Appends nLength bytes from pch, which may point into this string; null or nLength <= 0 adds nothing.
  CString& Append(LPCTSTR pch, int nLength);

  ///@{
  /// strcmp-style result (<0, 0, >0) of this string read as LPCTSTR against psz (null counts as ""), bytes compared
  /// as unsigned; CompareNoCase folds ASCII letters only.
  int Compare(LPCTSTR psz) const;
  int CompareNoCase(LPCTSTR psz) const;
  ///@}

  ///@{
  /// The nCount bytes from nFirst, or all from nFirst to the end; both are clamped to the string, so the result may be
  /// shorter or empty.
  CString Mid(int nFirst) const;
  CString Mid(int nFirst, int nCount) const;
  ///@}
  /// The first nCount bytes, nCount clamped to [0, GetLength()].
  CString Left(int nCount) const;

  ///@{
  /// The index of the first ch, or of the text pszSub, at or after nStart (a negative nStart counts as 0), searched
  /// over the whole length; -1 when there is none, nStart is past the end, or pszSub is null.
  int Find(TCHAR ch, int nStart = 0) const;
  int Find(LPCTSTR pszSub, int nStart = 0) const;
  ///@}

  /// Replaces every chOld by chNew; returns how many were replaced (0 when they are equal).
  int Replace(TCHAR chOld, TCHAR chNew);
  /// Replaces each occurrence of pszOld, left to right and without overlap, by pszNew (null removes it); returns
  /// how many were replaced. A null or empty pszOld replaces nothing. pszNew may point into this string.
  int Replace(LPCTSTR pszOld, LPCTSTR pszNew);
  ///@{
  /// Inserts ch, or the text psz (null or "" inserts nothing), in front of nIndex, which is clamped to
  /// [0, GetLength()]: at the length it appends. Returns the new length.
  int Insert(int nIndex, TCHAR ch);
  int Insert(int nIndex, LPCTSTR psz);
  ///@}
  /// Removes nCount bytes from nIndex, both clamped to the string; returns the new length.
  int Delete(int nIndex, int nCount = 1);

  /// Removes leading white space (blank, tab, LF, VT, FF, CR); returns this string.
  CString& TrimLeft();
  /// Removes trailing white space (blank, tab, LF, VT, FF, CR); returns this string.
  CString& TrimRight();
  /// Removes trailing bytes that occur in the zero-terminated set pszTargets (null removes nothing).
  CString& TrimRight(LPCTSTR pszTargets);
  /// Removes white space at both ends, as later versions of the class library do.
  CString& Trim() { return TrimRight().TrimLeft(); }

  /// Replaces the content by printf-style output of the platform's vsnprintf (`long` is 64 bits on Linux, and there
  /// is no I64 size prefix); a format it refuses gives an empty string. Pass a CString argument as `(LPCTSTR)s`.
  void Format(LPCTSTR pszFormat, ...) __attribute__((format(printf, 2, 3)));
  /// As Format, but appends the output, as later versions of the class library do.
  void AppendFormat(LPCTSTR pszFormat, ...) __attribute__((format(printf, 2, 3)));

  /// Direct access to the bytes: the buffer holds at least nMinBufLength bytes and the current ones, plus a zero.
  /// Unlike the class library, a longer nMinBufLength lengthens the string at once, with zero bytes. The pointer
  /// holds until ReleaseBuffer or any other change of the string; call ReleaseBuffer after writing.
  LPTSTR GetBuffer(int nMinBufLength);
  /// Ends direct access: sets the length to nNewLength, clamped to the current length, or with -1 to the length up to
  /// the first zero byte.
  void ReleaseBuffer(int nNewLength = -1);

  /// Reserves room for nLength bytes, so that appending up to that length does not move the bytes; the content is
  /// kept. Not in the class library this layer follows (later versions have it).
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

  // A string is one pointer: null while it is empty and has no storage, else
  // the characters of a heap block that starts with the length and the room,
  // in 4 bytes for a short string. A catalogue holds two strings per
  // definition, most of them empty, and a short text per line.
  char* m_pchData = nullptr;
};

/// Whether both strings have the same length and bytes, zero bytes included.
DEVDEF_API bool operator==(const CString& lhs, const CString& rhs);
///@{
/// Whether Compare gives 0: the CString is read up to its first zero byte, and a null pointer counts as "".
DEVDEF_API bool operator==(const CString& lhs, LPCTSTR rhs);
DEVDEF_API bool operator==(LPCTSTR lhs, const CString& rhs);
///@}
///@{
/// The negation of the matching operator==.
DEVDEF_API bool operator!=(const CString& lhs, const CString& rhs);
DEVDEF_API bool operator!=(const CString& lhs, LPCTSTR rhs);
DEVDEF_API bool operator!=(LPCTSTR lhs, const CString& rhs);
///@}
/// Whether lhs sorts before rhs, bytes compared as unsigned over the whole lengths; the only ordering operator.
DEVDEF_API bool operator<(const CString& lhs, const CString& rhs);

///@{
/// The concatenation of both sides; a null pointer counts as "".
DEVDEF_API CString operator+(const CString& lhs, const CString& rhs);
DEVDEF_API CString operator+(const CString& lhs, LPCTSTR rhs);
DEVDEF_API CString operator+(LPCTSTR lhs, const CString& rhs);
///@}

#endif  // DEVDEF_PLATFORM_CSTRING_H_
