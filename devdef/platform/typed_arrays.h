/// \file
/// The class library's arrays of 16-bit numbers, bytes and strings.
#ifndef DEVDEF_PLATFORM_TYPED_ARRAYS_H_
#define DEVDEF_PLATFORM_TYPED_ARRAYS_H_

#include "devdef/platform/carray.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

/// The class library's array of WORD (unsigned 16-bit numbers), with the members of CArray<WORD, WORD> (unlike the
/// class library's, it is derived from CArray). It grows geometrically; up to three numbers on a 64-bit machine are
/// kept inside the object itself, so GetData() holds only while the object stays in place.
class CWordArray : public CArray<WORD, WORD> {
 public:
  /// An empty array; it allocates nothing.
  CWordArray() = default;
  /// Takes over other's elements, leaving it empty.
  CWordArray(CWordArray&& other) noexcept = default;
};
/// The class library's array of BYTE, with the members of CArray<BYTE, BYTE>; it grows geometrically, and up to seven
/// bytes on a 64-bit machine are kept inside the object itself.
class CByteArray : public CArray<BYTE, BYTE> {};
/// The class library's array of CString, with the members of CArray<CString, LPCTSTR>: Add and SetAtGrow take a
/// CString, kept whole (zero bytes included), or an LPCTSTR, read up to its zero; SetAt takes an LPCTSTR only, so a
/// CString passed to it is read up to its first zero byte. It grows geometrically.
class CStringArray : public CArray<CString, LPCTSTR> {
 public:
  using CArray<CString, LPCTSTR>::Add;
  using CArray<CString, LPCTSTR>::SetAt;
  ///@{
  /// Sets the element at nIndex to the text, growing the array to nIndex + 1 when needed (the strings between are
  /// empty); at the current size it appends, and a negative nIndex does nothing. The text is copied before the array
  /// grows, so it may come from an element of this array.
  void SetAtGrow(int nIndex, LPCTSTR newElement) { SetAtGrow(nIndex, CString(newElement)); }
  void SetAtGrow(int nIndex, const CString& newElement) {
    if (nIndex < 0) return;
    if (nIndex >= GetSize()) {
      CString copy(newElement);
      SetSize(nIndex + 1, -1);
      ElementAt(nIndex) = static_cast<CString&&>(copy);
      return;
    }
    ElementAt(nIndex) = newElement;
  }
  ///@}
  /// Appends all of newElement's bytes, which may be an element of this array; returns its index.
  int Add(const CString& newElement) {
    const int index = GetSize();
    SetAtGrow(index, newElement);
    return index;
  }
};

#endif  // DEVDEF_PLATFORM_TYPED_ARRAYS_H_
