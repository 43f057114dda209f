/// \file
/// Where a CArray keeps its elements: internal to CArray, not for hosts.
//
// A catalogue holds two number lists per definition and one array of
// definitions per device, so both forms are kept small: the array object of
// numbers is one pointer wide, that of other elements a pointer and three
// ints with int alignment.
#ifndef DEVDEF_PLATFORM_CARRAY_STORAGE_H_
#define DEVDEF_PLATFORM_CARRAY_STORAGE_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>

/// \cond internal

// Numbers and bytes: one pointer's room, which holds either nothing (all
// zero: no storage), a heap block that starts with the size and the room, or,
// while they fit, the elements themselves. Inline elements leave free the
// slot that holds the pointer's lowest byte, which is odd then: a heap block
// is always aligned, so its address has that bit clear.
template <class TYPE>
class DevdefNumberStorage {
 public:
  // Elements that fit beside the tag: 3 16-bit numbers, 7 bytes, 1 32-bit
  // number on a 64-bit machine.
  static constexpr int kInline = sizeof(void*) / sizeof(TYPE) > 1 ? static_cast<int>(sizeof(void*) / sizeof(TYPE)) - 1 : 0;

  DevdefNumberStorage() = default;
  DevdefNumberStorage(const DevdefNumberStorage&) = delete;
  DevdefNumberStorage& operator=(const DevdefNumberStorage&) = delete;

  // The elements in use, the elements there is room for, and where they
  // start (null without storage).
  int Size() const { return IsInline() ? m_bytes[kTagByte] >> 1 : (Heap() != nullptr ? Heap()->nSize : 0); }
  int Room() const { return IsInline() ? kInline : (Heap() != nullptr ? Heap()->nRoom : 0); }
  TYPE* Data() {
    if (IsInline()) return reinterpret_cast<TYPE*>(m_bytes + kInlineOffset);
    Header* heap = Heap();
    return heap != nullptr ? reinterpret_cast<TYPE*>(reinterpret_cast<unsigned char*>(heap) + kHeader) : nullptr;
  }
  // Only with storage; the room must hold nSize, and the caller sets the
  // new elements.
  void SetSizeField(int nSize) {
    if (IsInline()) {
      m_bytes[kTagByte] = static_cast<unsigned char>((nSize << 1) | 1);
    } else {
      Heap()->nSize = nSize;
    }
  }
  // Moves the elements to storage with room for nRoom (at least the size):
  // inline when they fit, else a heap block of exactly that room.
  void Reallocate(int nRoom) {
    const int size = Size();
    if (nRoom <= kInline) {
      if (IsInline()) return;
      TYPE saved[kInline > 0 ? kInline : 1];
      if (size > 0) std::memcpy(saved, Data(), sizeof(TYPE) * static_cast<size_t>(size));
      Release();
      m_bytes[kTagByte] = 1;
      if (size > 0) std::memcpy(Data(), saved, sizeof(TYPE) * static_cast<size_t>(size));
      SetSizeField(size);
      return;
    }
    Header* block = static_cast<Header*>(::operator new(kHeader + sizeof(TYPE) * static_cast<size_t>(nRoom)));
    block->nSize = size;
    block->nRoom = nRoom;
    if (size > 0) {
      std::memcpy(reinterpret_cast<unsigned char*>(block) + kHeader, Data(), sizeof(TYPE) * static_cast<size_t>(size));
    }
    Release();
    std::memcpy(m_bytes, &block, sizeof block);
  }
  // Frees the storage; the array is empty afterwards.
  void Release() {
    if (!IsInline()) ::operator delete(Heap());
    std::memset(m_bytes, 0, sizeof m_bytes);
  }
  // Takes over other's elements, leaving it empty.
  void TakeFrom(DevdefNumberStorage& other) {
    std::memcpy(m_bytes, other.m_bytes, sizeof m_bytes);
    std::memset(other.m_bytes, 0, sizeof other.m_bytes);
  }
  // Numbers grow geometrically whatever grow-by value they are given.
  void SetGrowBy(int) {}
  int GrowBy() const { return 0; }

 private:
  struct Header {
    int nSize;
    int nRoom;
  };
  // The elements start behind the header, aligned for their type.
  static constexpr size_t kHeader = (sizeof(Header) + alignof(TYPE) - 1) / alignof(TYPE) * alignof(TYPE);
  static constexpr bool kLittleEndian =
#if defined(__BYTE_ORDER__) && defined(__ORDER_BIG_ENDIAN__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
      false;
#else
      true;
#endif
  // The byte that holds the pointer's lowest bits, and where the inline
  // elements start: behind the tag's slot, or in front of it.
  static constexpr size_t kTagByte = kLittleEndian ? 0 : sizeof(void*) - 1;
  static constexpr size_t kInlineOffset = kLittleEndian ? sizeof(TYPE) : 0;

  bool IsInline() const { return (m_bytes[kTagByte] & 1) != 0; }
  Header* Heap() const {
    Header* heap;
    std::memcpy(&heap, m_bytes, sizeof heap);
    return heap;
  }

  alignas(TYPE) unsigned char m_bytes[sizeof(void*)] = {};
};

// Any other element: a heap block, its pointer kept as bytes so that the
// array needs only int alignment, with the size, the capacity and the
// grow-by value. When kRule is set the capacity follows the class library's
// rule (an eighth of the size, at least 4 and at most 1024 more); beyond
// kExactRoom elements the block under it is reserved in steps of an eighth of
// a power of two, so that a capacity raised 1024 at a time moves the
// elements only now and then and a long array costs linear time.
template <class TYPE, bool kRule>
class DevdefRecordStorage {
 public:
  DevdefRecordStorage() { SetHeap(nullptr); }
  DevdefRecordStorage(const DevdefRecordStorage&) = delete;
  DevdefRecordStorage& operator=(const DevdefRecordStorage&) = delete;

  // The elements in use, the capacity, and where the elements start (null
  // without storage).
  int Size() const { return m_nSize; }
  int Room() const { return m_nMaxSize; }
  TYPE* Data() const { return Heap(); }
  // The capacity must hold nSize; the elements are built or destroyed by
  // the caller.
  void SetSizeField(int nSize) { m_nSize = nSize; }
  // Sets the capacity to nMaxSize (at least the size), moving the elements
  // when the block under it changes.
  void Reallocate(int nMaxSize) {
    TYPE* old = Heap();
    if (old != nullptr && BlockRoom(nMaxSize) == BlockRoom(m_nMaxSize)) {
      m_nMaxSize = nMaxSize;
      return;
    }
    TYPE* data = static_cast<TYPE*>(::operator new(sizeof(TYPE) * BlockRoom(nMaxSize)));
    if constexpr (std::is_trivially_copyable<TYPE>::value) {
      if (m_nSize > 0) std::memcpy(static_cast<void*>(data), old, sizeof(TYPE) * static_cast<size_t>(m_nSize));
    } else {
      for (int i = 0; i < m_nSize; ++i) {
        if constexpr (std::is_nothrow_move_constructible<TYPE>::value) {
          ::new (static_cast<void*>(data + i)) TYPE(static_cast<TYPE&&>(old[i]));
        } else {
          ::new (static_cast<void*>(data + i)) TYPE(old[i]);
        }
        old[i].~TYPE();
      }
    }
    ::operator delete(old);
    SetHeap(data);
    m_nMaxSize = nMaxSize;
  }
  // Frees the storage, whose elements are destroyed already.
  void Release() {
    ::operator delete(Heap());
    SetHeap(nullptr);
    m_nSize = m_nMaxSize = 0;
  }
  // Takes over other's elements, leaving it empty.
  void TakeFrom(DevdefRecordStorage& other) {
    std::memcpy(m_bytes, other.m_bytes, sizeof m_bytes);
    m_nSize = other.m_nSize;
    m_nMaxSize = other.m_nMaxSize;
    m_nGrowBy = other.m_nGrowBy;
    other.SetHeap(nullptr);
    other.m_nSize = other.m_nMaxSize = 0;
  }
  // The grow-by value of SetSize; 0 is the class library's rule.
  void SetGrowBy(int nGrowBy) { m_nGrowBy = nGrowBy; }
  int GrowBy() const { return m_nGrowBy; }

 private:
  static constexpr int kExactRoom = 8192;

  // The elements that the block under a capacity holds.
  static size_t BlockRoom(int nMaxSize) {
    const size_t max = static_cast<size_t>(nMaxSize);
    if (!kRule || nMaxSize <= kExactRoom) return max;
    size_t power = kExactRoom;
    while (power * 2 <= max) power *= 2;
    const size_t step = power / 8;
    return (max + step - 1) / step * step;
  }
  TYPE* Heap() const {
    TYPE* heap;
    std::memcpy(&heap, m_bytes, sizeof heap);
    return heap;
  }
  void SetHeap(TYPE* heap) { std::memcpy(m_bytes, &heap, sizeof heap); }

  alignas(int) unsigned char m_bytes[sizeof(TYPE*)];
  int m_nSize = 0;
  int m_nMaxSize = 0;
  int m_nGrowBy = 0;
};
/// \endcond

#endif  // DEVDEF_PLATFORM_CARRAY_STORAGE_H_
