// CArray: the class library's growing array of records. Elements are
// contiguous and move when the array grows, so pointers into it hold only
// until the next growth.
#ifndef DEVDEF_PLATFORM_CARRAY_H_
#define DEVDEF_PLATFORM_CARRAY_H_

#include <climits>
#include <cstddef>
#include <cstring>
#include <functional>
#include <new>
#include <type_traits>

#include "devdef/platform/carray_storage.h"
#include "devdef/platform/types.h"

class CString;

// Numbers, bytes and strings grow geometrically: an array of them may hold a
// whole line of a file. Other elements (the records of a catalogue) grow by
// the class library's rule.
template <class TYPE>
struct DevdefGrowsGeometrically
    : std::integral_constant<bool, std::is_arithmetic<TYPE>::value || std::is_same<TYPE, CString>::value> {};

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
 public:
  CArray() = default;
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;
  // Takes over the other array's elements, leaving it empty.
  CArray(CArray&& other) noexcept { m_storage.TakeFrom(other.m_storage); }
  ~CArray() { SetSize(0); }

  int GetSize() const { return m_storage.Size(); }
  int GetCount() const { return GetSize(); }
  int GetUpperBound() const { return GetSize() - 1; }
  BOOL IsEmpty() const { return GetSize() == 0; }

  // Sets the size; new elements are value-initialised (0 for numbers). Size
  // 0 frees the storage. nGrowBy -1 keeps the grow-by value; 0 is the class
  // library's rule: an eighth of the size, at least 4 and at most 1024 more.
  // Numbers, bytes and strings ignore it: their capacity grows by half.
  void SetSize(int nNewSize, int nGrowBy = -1);
  void RemoveAll() { SetSize(0); }
  // Gives back the capacity beyond the size.
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
    const int index = GetSize();
    SetAtGrow(index, newElement);
    return index;
  }
  void RemoveAt(int nIndex, int nCount = 1);

 protected:
  // Whether p points into this array's elements.
  bool IsOwnElement(const void* p) const {
    const std::less<const void*> before;
    const TYPE* data = Data();
    return data != nullptr && !before(p, data) && before(p, data + GetSize());
  }

 private:
  static constexpr bool kNumbers = std::is_arithmetic<TYPE>::value;
  using Storage = typename std::conditional<kNumbers, DevdefNumberStorage<TYPE>,
                                            DevdefRecordStorage<TYPE, !DevdefGrowsGeometrically<TYPE>::value>>::type;

  TYPE* Data() { return m_storage.Data(); }
  const TYPE* Data() const { return const_cast<Storage&>(m_storage).Data(); }
  // The capacity for nNewSize elements, more than the current one.
  int GrownCapacity(int nNewSize) const;

  Storage m_storage;
};

template <class TYPE, class ARG_TYPE>
int CArray<TYPE, ARG_TYPE>::GrownCapacity(int nNewSize) const {
  const long long room = m_storage.Room();
  if (room == 0) {
    // The first allocation holds exactly the size asked for; short number
    // lists take the whole inline room at once.
    if constexpr (kNumbers) {
      if (nNewSize <= Storage::kInline) return Storage::kInline;
    }
    return nNewSize;
  }
  long long grow = 0;
  if constexpr (DevdefGrowsGeometrically<TYPE>::value) {
    grow = room / 2;
  } else {
    grow = m_storage.GrowBy();
    if (grow == 0) {
      grow = GetSize() / 8;
      grow = grow < 4 ? 4 : (grow > 1024 ? 1024 : grow);
    }
  }
  const long long wanted = room + grow < nNewSize ? nNewSize : room + grow;
  return wanted > INT_MAX ? INT_MAX : static_cast<int>(wanted);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetSize(int nNewSize, int nGrowBy) {
  if (nGrowBy >= 0) m_storage.SetGrowBy(nGrowBy);
  if (nNewSize < 0) nNewSize = 0;
  const int size = GetSize();
  if (nNewSize == 0) {
    if constexpr (!std::is_trivially_destructible<TYPE>::value) {
      TYPE* data = Data();
      for (int i = 0; i < size; ++i) data[i].~TYPE();
    }
    m_storage.Release();
    return;
  }
  if (nNewSize > m_storage.Room()) m_storage.Reallocate(GrownCapacity(nNewSize));
  TYPE* data = Data();
  if constexpr (kNumbers) {
    // New numbers and bytes are zero, set in one go.
    if (nNewSize > size) std::memset(data + size, 0, sizeof(TYPE) * static_cast<size_t>(nNewSize - size));
  } else {
    for (int i = size; i < nNewSize; ++i) ::new (static_cast<void*>(data + i)) TYPE();
    for (int i = nNewSize; i < size; ++i) data[i].~TYPE();
  }
  m_storage.SetSizeField(nNewSize);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::FreeExtra() {
  const int size = GetSize();
  if (size > 0 && size != m_storage.Room()) m_storage.Reallocate(size);
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::SetAtGrow(int nIndex, ARG_TYPE newElement) {
  if (nIndex < 0) return;
  if (nIndex >= m_storage.Room() && IsOwnElement(&newElement)) {
    // The element lives in this array, which may be about to move: copy it
    // first.
    TYPE copy(newElement);
    SetSize(nIndex + 1, -1);
    Data()[nIndex] = copy;
    return;
  }
  if (nIndex >= GetSize()) SetSize(nIndex + 1, -1);
  Data()[nIndex] = newElement;
}

template <class TYPE, class ARG_TYPE>
void CArray<TYPE, ARG_TYPE>::RemoveAt(int nIndex, int nCount) {
  const int size = GetSize();
  if (nIndex < 0 || nCount <= 0 || nIndex >= size) return;
  if (nCount > size - nIndex) nCount = size - nIndex;
  TYPE* data = Data();
  for (int i = nIndex; i + nCount < size; ++i) data[i] = data[i + nCount];
  for (int i = size - nCount; i < size; ++i) data[i].~TYPE();
  m_storage.SetSizeField(size - nCount);
}

#endif  // DEVDEF_PLATFORM_CARRAY_H_
