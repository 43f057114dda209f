// CArray: the class library's growing array of records. Elements are
// contiguous and move when the array grows, so pointers into it hold only
// until the next growth.
#ifndef DEVDEF_PLATFORM_CARRAY_H_
#define DEVDEF_PLATFORM_CARRAY_H_

#include <cstddef>
#include <functional>
#include <new>
#include <type_traits>

#include "devdef/platform/types.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
 public:
  CArray() = default;
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;
  // Takes over the other array's elements, leaving it empty.
  CArray(CArray&& other) noexcept
      : m_pData(other.m_pData), m_nSize(other.m_nSize), m_nMaxSize(other.m_nMaxSize), m_nGrowBy(other.m_nGrowBy) {
    other.m_pData = nullptr;
    other.m_nSize = other.m_nMaxSize = 0;
  }
  ~CArray() { SetSize(0); }

  int GetSize() const { return m_nSize; }
  int GetCount() const { return m_nSize; }
  int GetUpperBound() const { return m_nSize - 1; }
  BOOL IsEmpty() const { return m_nSize == 0; }

  // Sets the size; new elements are value-initialised (0 for numbers).
  // nGrowBy -1 keeps the grow-by value; 0 is the class library's rule: an
  // eighth of the size, at least 4 and at most 1024. Size 0 frees the storage.
  void SetSize(int nNewSize, int nGrowBy = -1);
  void RemoveAll() { SetSize(0); }
  void FreeExtra();

  TYPE& GetAt(int nIndex) { return m_pData[nIndex]; }
  const TYPE& GetAt(int nIndex) const { return m_pData[nIndex]; }
  TYPE& ElementAt(int nIndex) { return m_pData[nIndex]; }
  TYPE& operator[](int nIndex) { return m_pData[nIndex]; }
  const TYPE& operator[](int nIndex) const { return m_pData[nIndex]; }
  void SetAt(int nIndex, ARG_TYPE newElement) { m_pData[nIndex] = newElement; }
  TYPE* GetData() { return m_pData; }
  const TYPE* GetData() const { return m_pData; }

  // Sets the element at nIndex, growing the array when needed; at the
  // current size it appends.
  void SetAtGrow(int nIndex, ARG_TYPE newElement);
  int Add(ARG_TYPE newElement) {
    const int index = m_nSize;
    SetAtGrow(index, newElement);
    return index;
  }
  void RemoveAt(int nIndex, int nCount = 1);

 protected:
  // Whether p points into this array's storage.
  bool IsOwnElement(const void* p) const {
    const std::less<const void*> before;
    return m_pData != nullptr && !before(p, m_pData) && before(p, m_pData + m_nMaxSize);
  }

 private:
  void Reallocate(int nNewMax);

  TYPE* m_pData = nullptr;
  int m_nSize = 0;
  int m_nMaxSize = 0;
  int m_nGrowBy = 0;
};

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Reallocate(int nNewMax) {
  TYPE* data = static_cast<TYPE*>(::operator new(sizeof(TYPE) * static_cast<size_t>(nNewMax)));
  for (int i = 0; i < m_nSize; ++i) {
    if constexpr (std::is_nothrow_move_constructible<TYPE>::value) {
      ::new (static_cast<void*>(data + i)) TYPE(static_cast<TYPE&&>(m_pData[i]));
    } else {
      ::new (static_cast<void*>(data + i)) TYPE(m_pData[i]);
    }
    m_pData[i].~TYPE();
  }
  ::operator delete(m_pData);
  m_pData = data;
  m_nMaxSize = nNewMax;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetSize(int nNewSize, int nGrowBy) {
  if (nGrowBy >= 0) m_nGrowBy = nGrowBy;
  if (nNewSize < 0) nNewSize = 0;
  if (nNewSize == 0) {
    for (int i = 0; i < m_nSize; ++i) m_pData[i].~TYPE();
    ::operator delete(m_pData);
    m_pData = nullptr;
    m_nSize = m_nMaxSize = 0;
    return;
  }
  if (m_pData == nullptr) {
    // The first allocation holds exactly the size asked for.
    Reallocate(nNewSize);
  } else if (nNewSize > m_nMaxSize) {
    int grow = m_nGrowBy;
    if (grow == 0) {
      grow = m_nSize / 8;
      grow = grow < 4 ? 4 : (grow > 1024 ? 1024 : grow);
    }
    const int newMax = nNewSize < m_nMaxSize + grow ? m_nMaxSize + grow : nNewSize;
    Reallocate(newMax);
  }
  for (int i = m_nSize; i < nNewSize; ++i) ::new (static_cast<void*>(m_pData + i)) TYPE();
  for (int i = nNewSize; i < m_nSize; ++i) m_pData[i].~TYPE();
  m_nSize = nNewSize;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::FreeExtra() {
  if (m_nSize != m_nMaxSize && m_nSize > 0) Reallocate(m_nSize);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetAtGrow(int nIndex, ARG_TYPE newElement) {
  if (nIndex < 0) return;
  if (nIndex >= m_nMaxSize && IsOwnElement(&newElement)) {
    // The element lives in this array, which is about to move: copy it first.
    TYPE copy(newElement);
    SetSize(nIndex + 1, -1);
    m_pData[nIndex] = copy;
    return;
  }
  if (nIndex >= m_nSize) SetSize(nIndex + 1, -1);
  m_pData[nIndex] = newElement;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::RemoveAt(int nIndex, int nCount) {
  if (nIndex < 0 || nCount <= 0 || nIndex >= m_nSize) return;
  if (nCount > m_nSize - nIndex) nCount = m_nSize - nIndex;
  for (int i = nIndex; i + nCount < m_nSize; ++i) m_pData[i] = m_pData[i + nCount];
  for (int i = m_nSize - nCount; i < m_nSize; ++i) m_pData[i].~TYPE();
  m_nSize -= nCount;
}

#endif  // DEVDEF_PLATFORM_CARRAY_H_
