/// \file
/// CArray, the class library's growing array.
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

/// \cond internal
// Numbers, bytes and strings grow geometrically: an array of them may hold a
// whole line of a file. Other elements (the records of a catalogue) grow by
// the class library's rule.
template <class TYPE>
struct DevdefGrowsGeometrically
    : std::integral_constant<bool, std::is_arithmetic<TYPE>::value || std::is_same<TYPE, CString>::value> {};
/// \endcond

/// The class library's growing array: elements of TYPE, contiguous and indexed from 0, passed in as ARG_TYPE. They
/// move when the array grows, so pointers and references into it hold only until the next growth; a short array of
/// numbers keeps its elements inside the array object, so for it they hold only while the object stays in place.
///
/// As in the class library, SetSize, SetAtGrow and Add grow the array, and an array of records with the grow-by value
/// 0 (the default) grows by its rule: the first allocation holds exactly the size asked for, then the capacity rises
/// by an eighth of the size, at least 4 and at most 1024. Arrays of numbers, bytes and CString grow geometrically
/// instead (by half) whatever grow-by value they are given. No index is checked: it must lie in [0, GetSize()).
///
/// Smaller than the class library's: no CObject base, Serialize, Dump or AssertValid; no InsertAt, Append or Copy;
/// not copyable, only movable. New elements are value-initialised (0 for numbers), not zero-filled before their
/// constructor runs. TYPE must be default-constructible and copy-assignable.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
 public:
  /// An empty array; it allocates nothing.
  CArray() = default;
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;
  /// Takes over the other array's elements, leaving it empty.
  CArray(CArray&& other) noexcept { m_storage.TakeFrom(other.m_storage); }
  /// Destroys the elements and frees the storage.
  ~CArray() { SetSize(0); }

  /// The number of elements.
  int GetSize() const { return m_storage.Size(); }
  /// The number of elements, as GetSize.
  int GetCount() const { return GetSize(); }
  /// GetSize() - 1: the last index, -1 when empty.
  int GetUpperBound() const { return GetSize() - 1; }
  /// Whether there are no elements.
  BOOL IsEmpty() const { return GetSize() == 0; }

  /// Sets the size (a negative one counts as 0): new elements are value-initialised (0 for numbers), elements beyond
  /// the new size are destroyed, and size 0 frees the storage. nGrowBy -1 keeps the grow-by value; 0 is the class
  /// library's rule: an eighth of the size, at least 4 and at most 1024 more. Numbers, bytes and CString ignore it:
  /// their capacity grows by half.
  void SetSize(int nNewSize, int nGrowBy = -1);
  /// SetSize(0): destroys every element and frees the storage.
  void RemoveAll() { SetSize(0); }
  /// Gives back the capacity beyond the size; the elements may move.
  void FreeExtra();

  /// The element at nIndex, which must lie in [0, GetSize()); not checked.
  TYPE& GetAt(int nIndex) { return Data()[nIndex]; }
  /// The element at nIndex, which must lie in [0, GetSize()); not checked.
  const TYPE& GetAt(int nIndex) const { return Data()[nIndex]; }
  /// The element at nIndex, which must lie in [0, GetSize()); not checked.
  TYPE& ElementAt(int nIndex) { return Data()[nIndex]; }
  /// The element at nIndex, which must lie in [0, GetSize()); not checked.
  TYPE& operator[](int nIndex) { return Data()[nIndex]; }
  /// The element at nIndex, which must lie in [0, GetSize()); not checked.
  const TYPE& operator[](int nIndex) const { return Data()[nIndex]; }
  /// Assigns newElement to the element at nIndex, which must lie in [0, GetSize()); not checked.
  void SetAt(int nIndex, ARG_TYPE newElement) { Data()[nIndex] = newElement; }
  /// The first element, contiguous with the others; null while the array has no storage.
  TYPE* GetData() { return Data(); }
  /// The first element, contiguous with the others; null while the array has no storage.
  const TYPE* GetData() const { return Data(); }

  /// Sets the element at nIndex, growing the array to nIndex + 1 when needed (the elements between are
  /// value-initialised); at the current size it appends. A negative nIndex does nothing. newElement may be an element
  /// of this array.
  void SetAtGrow(int nIndex, ARG_TYPE newElement);
  /// Appends newElement, which may be an element of this array; returns its index.
  int Add(ARG_TYPE newElement) {
    const int index = GetSize();
    SetAtGrow(index, newElement);
    return index;
  }
  /// Removes nCount elements from nIndex, moving the later ones down by assignment; the count is clamped to the end.
  /// An nIndex out of range or an nCount <= 0 does nothing (the class library asserts).
  void RemoveAt(int nIndex, int nCount = 1);

 protected:
  /// Whether p points into this array's elements, for a derived array that must copy such an element before growing.
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
