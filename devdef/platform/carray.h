// CArray: the class library's growing array of records. Elements are
// contiguous and move when the array grows, so pointers into it hold only
// until the next growth.
#ifndef DEVDEF_PLATFORM_CARRAY_H_
#define DEVDEF_PLATFORM_CARRAY_H_

#include <cstddef>
#include <cstring>
#include <functional>
#include <new>
#include <type_traits>

#include "devdef/platform/types.h"

// Where an array keeps its elements: on the heap, or, for numbers and
// bytes, while they fit, in the room of the pointer itself. That pointer is
// kept as bytes, so an array of 16-bit numbers needs only 4-byte alignment
// and the records that hold two of them pack tighter.
template <class TYPE, int kInline>
struct DevdefArrayStorage {
  DevdefArrayStorage() { SetHeap(nullptr); }
  TYPE* Heap() const {
    TYPE* heap;
    std::memcpy(&heap, bytes, sizeof heap);
    return heap;
  }
  void SetHeap(TYPE* heap) { std::memcpy(bytes, &heap, sizeof heap); }
  TYPE* Inline() { return reinterpret_cast<TYPE*>(bytes); }

  alignas(TYPE) unsigned char bytes[sizeof(TYPE*)];
};
template <class TYPE>
struct DevdefArrayStorage<TYPE, 0> {
  TYPE* Heap() const { return heap; }
  void SetHeap(TYPE* p) { heap = p; }

  TYPE* heap = nullptr;
};

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
 public:
  CArray() = default;
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;
  // Takes over the other array's elements, leaving it empty.
  CArray(CArray&& other) noexcept
      : m_storage(other.m_storage), m_nSize(other.m_nSize), m_nMaxSize(other.m_nMaxSize), m_nGrowBy(other.m_nGrowBy) {
    other.m_storage.SetHeap(nullptr);
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

  TYPE& GetAt(int nIndex) { return Data()[nIndex]; }
  const TYPE& GetAt(int nIndex) const { return Data()[nIndex]; }
  TYPE& ElementAt(int nIndex) { return Data()[nIndex]; }
  TYPE& operator[](int nIndex) { return Data()[nIndex]; }
  const TYPE& operator[](int nIndex) const { return Data()[nIndex]; }
  void SetAt(int nIndex, ARG_TYPE newElement) { Data()[nIndex] = newElement; }
  // Null while the array has no storage.
  TYPE* GetData() { return Data(); }
  const TYPE* GetData() const { return Data(); }

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
    const TYPE* data = Data();
    return data != nullptr && !before(p, data) && before(p, data + m_nMaxSize);
  }

 private:
  // Numbers and bytes up to the size of a pointer need no heap block: a
  // catalogue holds two short number lists per definition.
  static constexpr int kInline = std::is_arithmetic<TYPE>::value ? static_cast<int>(sizeof(TYPE*) / sizeof(TYPE)) : 0;

  bool IsInline() const { return kInline > 0 && m_nMaxSize > 0 && m_nMaxSize <= kInline; }
  TYPE* Data() {
    if constexpr (kInline > 0) {
      if (IsInline()) return m_storage.Inline();
    }
    return m_storage.Heap();
  }
  const TYPE* Data() const { return const_cast<CArray*>(this)->Data(); }
  void Reallocate(int nNewMax);

  DevdefArrayStorage<TYPE, kInline> m_storage;
  int m_nSize = 0;
  int m_nMaxSize = 0;
  int m_nGrowBy = 0;
};

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::Reallocate(int nNewMax) {
  // nNewMax is never below the size.
  if constexpr (std::is_trivially_copyable<TYPE>::value) {
    const bool onHeap = !IsInline() && m_storage.Heap() != nullptr;
    const size_t bytes = sizeof(TYPE) * static_cast<size_t>(m_nSize);
    if constexpr (kInline > 0) {
      if (nNewMax <= kInline) {
        TYPE saved[kInline > 0 ? kInline : 1];
        if (bytes > 0) std::memcpy(saved, Data(), bytes);
        if (onHeap) ::operator delete(m_storage.Heap());
        m_nMaxSize = nNewMax;
        if (bytes > 0) std::memcpy(m_storage.Inline(), saved, bytes);
        return;
      }
    }
    // Numbers and bytes move as one block.
    TYPE* data = static_cast<TYPE*>(::operator new(sizeof(TYPE) * static_cast<size_t>(nNewMax)));
    if (bytes > 0) std::memcpy(data, Data(), bytes);
    if (onHeap) ::operator delete(m_storage.Heap());
    m_storage.SetHeap(data);
    m_nMaxSize = nNewMax;
    return;
  }
  TYPE* data = static_cast<TYPE*>(::operator new(sizeof(TYPE) * static_cast<size_t>(nNewMax)));
  TYPE* old = m_storage.Heap();
  for (int i = 0; i < m_nSize; ++i) {
    if constexpr (std::is_nothrow_move_constructible<TYPE>::value) {
      ::new (static_cast<void*>(data + i)) TYPE(static_cast<TYPE&&>(old[i]));
    } else {
      ::new (static_cast<void*>(data + i)) TYPE(old[i]);
    }
    old[i].~TYPE();
  }
  ::operator delete(old);
  m_storage.SetHeap(data);
  m_nMaxSize = nNewMax;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetSize(int nNewSize, int nGrowBy) {
  if (nGrowBy >= 0) m_nGrowBy = nGrowBy;
  if (nNewSize < 0) nNewSize = 0;
  if (nNewSize == 0) {
    if constexpr (!std::is_trivially_destructible<TYPE>::value) {
      for (int i = 0; i < m_nSize; ++i) m_storage.Heap()[i].~TYPE();
    }
    if (!IsInline()) ::operator delete(m_storage.Heap());
    m_storage.SetHeap(nullptr);
    m_nSize = m_nMaxSize = 0;
    return;
  }
  if (nNewSize <= kInline) {
    // Short number lists take the whole inline room at once.
    if (m_nMaxSize < kInline) Reallocate(kInline);
  } else if (m_nMaxSize == 0) {
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
  if constexpr (std::is_arithmetic<TYPE>::value) {
    // New numbers and bytes are zero, set in one go.
    if (nNewSize > m_nSize) std::memset(Data() + m_nSize, 0, sizeof(TYPE) * static_cast<size_t>(nNewSize - m_nSize));
  } else {
    TYPE* data = Data();
    for (int i = m_nSize; i < nNewSize; ++i) ::new (static_cast<void*>(data + i)) TYPE();
    for (int i = nNewSize; i < m_nSize; ++i) data[i].~TYPE();
  }
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
    Data()[nIndex] = copy;
    return;
  }
  if (nIndex >= m_nSize) SetSize(nIndex + 1, -1);
  Data()[nIndex] = newElement;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::RemoveAt(int nIndex, int nCount) {
  if (nIndex < 0 || nCount <= 0 || nIndex >= m_nSize) return;
  if (nCount > m_nSize - nIndex) nCount = m_nSize - nIndex;
  TYPE* data = Data();
  for (int i = nIndex; i + nCount < m_nSize; ++i) data[i] = data[i + nCount];
  for (int i = m_nSize - nCount; i < m_nSize; ++i) data[i].~TYPE();
  m_nSize -= nCount;
}

#endif  // DEVDEF_PLATFORM_CARRAY_H_
