/// \file
/// CList, the class library's doubly linked list.
#ifndef DEVDEF_PLATFORM_CLIST_H_
#define DEVDEF_PLATFORM_CLIST_H_

#include <cstddef>
#include <new>

#include "devdef/platform/types.h"

/// The class library's doubly linked list of records of TYPE, held by value in nodes and passed in as ARG_TYPE. Nodes
/// are carved from blocks of nBlockSize; a node, and the record in it, never moves while the list stands, so a
/// POSITION and the address of a record stay good until that record is removed or the list is emptied. Removing the
/// last record frees every block, as in the class library. A new record is built with TYPE() and then assigned.
///
/// No POSITION is checked: it must be a live node of this list (GetAtPosition aside), and GetHead and GetTail need a
/// list that is not empty. Smaller than the class library's: no CObject base, Serialize or Dump; no Find, and no
/// AddHead or AddTail of a whole list; GetHead and GetTail have no const overload; RemoveHead and RemoveTail return
/// nothing, not the removed record; not copyable.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CList {
 public:
  /// An empty list that allocates nBlockSize nodes at a time (10 when nBlockSize <= 0); it allocates nothing yet.
  explicit CList(int nBlockSize = 10) : m_nBlockSize(nBlockSize > 0 ? nBlockSize : 10) {}
  CList(const CList&) = delete;
  CList& operator=(const CList&) = delete;
  /// Destroys every record and frees the node blocks.
  ~CList() { RemoveAll(); }

  /// The number of records.
  int GetCount() const { return m_nCount; }
  /// The number of records, as GetCount.
  int GetSize() const { return m_nCount; }
  /// Whether there are no records.
  BOOL IsEmpty() const { return m_nCount == 0; }

  /// The head's node; null when the list is empty.
  POSITION GetHeadPosition() const { return ToPosition(m_pNodeHead); }
  /// The tail's node; null when the list is empty.
  POSITION GetTailPosition() const { return ToPosition(m_pNodeTail); }
  /// The first record; the list must not be empty (not checked).
  TYPE& GetHead() { return m_pNodeHead->Data(); }
  /// The last record; the list must not be empty (not checked).
  TYPE& GetTail() { return m_pNodeTail->Data(); }

  /// Returns the record at rPosition, which must not be null, and moves rPosition to the next node (null after the
  /// tail).
  TYPE& GetNext(POSITION& rPosition) const {
    Node* node = ToNode(rPosition);
    rPosition = ToPosition(node->pNext);
    return node->Data();
  }
  /// Returns the record at rPosition, which must not be null, and moves rPosition to the previous node (null before
  /// the head).
  TYPE& GetPrev(POSITION& rPosition) const {
    Node* node = ToNode(rPosition);
    rPosition = ToPosition(node->pPrev);
    return node->Data();
  }
  /// The record at position, which must not be null.
  TYPE& GetAt(POSITION position) const { return ToNode(position)->Data(); }
  /// Not in the class library: the record at a position of any list of this type, for code that holds a position but
  /// not the list it came from. position must not be null.
  static TYPE& GetAtPosition(POSITION position) { return ToNode(position)->Data(); }
  /// Assigns newElement to the record at position, which must not be null.
  void SetAt(POSITION position, ARG_TYPE newElement) { ToNode(position)->Data() = newElement; }

  /// Adds a copy of newElement in front of the head; returns its node.
  POSITION AddHead(ARG_TYPE newElement);
  /// Adds a copy of newElement behind the tail; returns its node.
  POSITION AddTail(ARG_TYPE newElement);
  /// Adds a copy of newElement in front of position (at the head when position is null); returns its node.
  POSITION InsertBefore(POSITION position, ARG_TYPE newElement);
  /// Adds a copy of newElement behind position (at the tail when position is null); returns its node.
  POSITION InsertAfter(POSITION position, ARG_TYPE newElement);
  /// Removes and destroys the first record, if any; returns nothing, unlike the class library.
  void RemoveHead() { RemoveAt(GetHeadPosition()); }
  /// Removes and destroys the last record, if any; returns nothing, unlike the class library.
  void RemoveTail() { RemoveAt(GetTailPosition()); }
  /// Removes and destroys the record at position (null does nothing); its POSITION and address dangle afterwards,
  /// and the node may be reused by the next record added.
  void RemoveAt(POSITION position);
  /// Destroys every record and frees the node blocks; every POSITION of the list dangles afterwards.
  void RemoveAll();

  /// The node of the record at nIndex, counted from the head from 0 by walking the list; null when nIndex is out of
  /// range.
  POSITION FindIndex(int nIndex) const;

 private:
  struct Node {
    Node* pNext;
    Node* pPrev;
    alignas(TYPE) unsigned char storage[sizeof(TYPE)];
    TYPE& Data() { return *std::launder(reinterpret_cast<TYPE*>(storage)); }
  };
  struct Block {
    Block* pNext;
  };

  static POSITION ToPosition(Node* node) { return reinterpret_cast<POSITION>(node); }
  static Node* ToNode(POSITION position) { return reinterpret_cast<Node*>(position); }
  Node* NewNode(Node* pPrev, Node* pNext, ARG_TYPE newElement);
  void FreeNode(Node* node);

  Node* m_pNodeHead = nullptr;
  Node* m_pNodeTail = nullptr;
  Node* m_pNodeFree = nullptr;
  Block* m_pBlocks = nullptr;
  int m_nCount = 0;
  int m_nBlockSize;
};

template <class TYPE, class ARG_TYPE>
typename CList<TYPE, ARG_TYPE>::Node* CList<TYPE, ARG_TYPE>::NewNode(Node* pPrev, Node* pNext,
                                                                     ARG_TYPE newElement) {
  if (m_pNodeFree == nullptr) {
    // One allocation holds the block header and m_nBlockSize nodes.
    const size_t header = (sizeof(Block) + alignof(Node) - 1) / alignof(Node) * alignof(Node);
    unsigned char* raw = static_cast<unsigned char*>(
        ::operator new(header + sizeof(Node) * static_cast<size_t>(m_nBlockSize)));
    Block* block = reinterpret_cast<Block*>(raw);
    block->pNext = m_pBlocks;
    m_pBlocks = block;
    Node* nodes = reinterpret_cast<Node*>(raw + header);
    for (int i = m_nBlockSize - 1; i >= 0; --i) {
      nodes[i].pNext = m_pNodeFree;
      m_pNodeFree = &nodes[i];
    }
  }
  Node* node = m_pNodeFree;
  ::new (static_cast<void*>(node->storage)) TYPE();
  node->Data() = newElement;  // records are built empty, then assigned
  m_pNodeFree = node->pNext;
  node->pPrev = pPrev;
  node->pNext = pNext;
  ++m_nCount;
  return node;
}

template <class TYPE, class ARG_TYPE>
void CList<TYPE, ARG_TYPE>::FreeNode(Node* node) {
  node->Data().~TYPE();
  node->pNext = m_pNodeFree;
  m_pNodeFree = node;
  --m_nCount;
  if (m_nCount == 0) RemoveAll();
}

template <class TYPE, class ARG_TYPE>
POSITION CList<TYPE, ARG_TYPE>::AddHead(ARG_TYPE newElement) {
  Node* node = NewNode(nullptr, m_pNodeHead, newElement);
  if (m_pNodeHead != nullptr) {
    m_pNodeHead->pPrev = node;
  } else {
    m_pNodeTail = node;
  }
  m_pNodeHead = node;
  return ToPosition(node);
}

template <class TYPE, class ARG_TYPE>
POSITION CList<TYPE, ARG_TYPE>::AddTail(ARG_TYPE newElement) {
  Node* node = NewNode(m_pNodeTail, nullptr, newElement);
  if (m_pNodeTail != nullptr) {
    m_pNodeTail->pNext = node;
  } else {
    m_pNodeHead = node;
  }
  m_pNodeTail = node;
  return ToPosition(node);
}

template <class TYPE, class ARG_TYPE>
POSITION CList<TYPE, ARG_TYPE>::InsertBefore(POSITION position, ARG_TYPE newElement) {
  if (position == nullptr) return AddHead(newElement);
  Node* old = ToNode(position);
  Node* node = NewNode(old->pPrev, old, newElement);
  if (old->pPrev != nullptr) {
    old->pPrev->pNext = node;
  } else {
    m_pNodeHead = node;
  }
  old->pPrev = node;
  return ToPosition(node);
}

template <class TYPE, class ARG_TYPE>
POSITION CList<TYPE, ARG_TYPE>::InsertAfter(POSITION position, ARG_TYPE newElement) {
  if (position == nullptr) return AddTail(newElement);
  Node* old = ToNode(position);
  Node* node = NewNode(old, old->pNext, newElement);
  if (old->pNext != nullptr) {
    old->pNext->pPrev = node;
  } else {
    m_pNodeTail = node;
  }
  old->pNext = node;
  return ToPosition(node);
}

template <class TYPE, class ARG_TYPE>
void CList<TYPE, ARG_TYPE>::RemoveAt(POSITION position) {
  Node* node = ToNode(position);
  if (node == nullptr) return;
  if (node == m_pNodeHead) {
    m_pNodeHead = node->pNext;
  } else {
    node->pPrev->pNext = node->pNext;
  }
  if (node == m_pNodeTail) {
    m_pNodeTail = node->pPrev;
  } else {
    node->pNext->pPrev = node->pPrev;
  }
  FreeNode(node);
}

template <class TYPE, class ARG_TYPE>
void CList<TYPE, ARG_TYPE>::RemoveAll() {
  for (Node* node = m_pNodeHead; node != nullptr; node = node->pNext) node->Data().~TYPE();
  m_nCount = 0;
  m_pNodeHead = m_pNodeTail = m_pNodeFree = nullptr;
  while (m_pBlocks != nullptr) {
    Block* next = m_pBlocks->pNext;
    ::operator delete(m_pBlocks);
    m_pBlocks = next;
  }
}

template <class TYPE, class ARG_TYPE>
POSITION CList<TYPE, ARG_TYPE>::FindIndex(int nIndex) const {
  if (nIndex < 0 || nIndex >= m_nCount) return nullptr;
  Node* node = m_pNodeHead;
  while (nIndex-- > 0) node = node->pNext;
  return ToPosition(node);
}

#endif  // DEVDEF_PLATFORM_CLIST_H_
