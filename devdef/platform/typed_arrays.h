// The class library's arrays of 16-bit numbers, bytes and strings.
#ifndef DEVDEF_PLATFORM_TYPED_ARRAYS_H_
#define DEVDEF_PLATFORM_TYPED_ARRAYS_H_

#include "devdef/platform/carray.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

class CWordArray : public CArray<WORD, WORD> {
 public:
  CWordArray() = default;
  CWordArray(CWordArray&& other) noexcept = default;
};
class CByteArray : public CArray<BYTE, BYTE> {};
class CStringArray : public CArray<CString, LPCTSTR> {
 public:
  using CArray<CString, LPCTSTR>::Add;
  using CArray<CString, LPCTSTR>::SetAt;
  // The text is copied before the array grows, so it may come from an
  // element of this array.
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
  int Add(const CString& newElement) {
    const int index = GetSize();
    SetAtGrow(index, newElement);
    return index;
  }
};

#endif  // DEVDEF_PLATFORM_TYPED_ARRAYS_H_
