// CList: the class library's doubly linked list of records held by value in
// nodes. Nodes are carved from blocks of nBlockSize; a node, and the record in
// it, never moves while the list stands, so a POSITION and the address of a
// record stay good until the record is removed or the list is emptied.
#ifndef DEVDEF_PLATFORM_CLIST_H_
#define DEVDEF_PLATFORM_CLIST_H_

#include <cstddef>
#include <new>

#include "devdef/platform/types.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CList {
 public:
  explicit CList(int nBlockSize = 10) : m_nBlockSize(nBlockSize > 0 ? nBlockSize : 10) {}
  CList(const CList&) = delete;
  CList& operator=(const CList&) = delete;
  ~CList() { RemoveAll(); }

  int GetCount() const { return m_nCount; }
  int GetSize() const { return m_nCount; }
  BOOL IsEmpty() const { return m_nCount == 0; }

  POSITION GetHeadPosition() const { return ToPosition(m_pNodeHead); }
  POSITION GetTailPosition() const { return ToPosition(m_pNodeTail); }
  TYPE& GetHead() { return m_pNodeHead->Data(); }
  TYPE& GetTail() { return m_pNodeTail->Data(); }

  // Returns the record at rPosition and moves rPosition to the next node
  // (null after the tail).
  TYPE& GetNext(POSITION& rPosition) const {
    Node* node = ToNode(rPosition);
    rPosition = ToPosition(node->pNext);
    return node->Data();
  }
  TYPE& GetPrev(POSITION& rPosition) const {
    Node* node = ToNode(rPosition);
    rPosition = ToPosition(node->pPrev);
    return node->Data();
  }
  TYPE& GetAt(POSITION position) const { return ToNode(position)->Data(); }
  // Not in the class library: the record at a position of any list of this
  // type, for code that holds a position but not the list it came from.
  static TYPE& GetAtPosition(POSITION position) { return ToNode(position)->Data(); }
  void SetAt(POSITION position, ARG_TYPE newElement) { ToNode(position)->Data() = newElement; }

  POSITION AddHead(ARG_TYPE newElement);
  POSITION AddTail(ARG_TYPE newElement);
  POSITION InsertBefore(POSITION position, ARG_TYPE newElement);
  POSITION InsertAfter(POSITION position, ARG_TYPE newElement);
  void RemoveHead() { RemoveAt(GetHeadPosition()); }
  void RemoveTail() { RemoveAt(GetTailPosition()); }
  void RemoveAt(POSITION position);
  // Destroys every record and frees the node blocks.
  void RemoveAll();

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
