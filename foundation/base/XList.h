#pragma once

#include "foundation/base/XElements.h"
#include "foundation/base/XIndexException.h"
#include "foundation/base/XNodePool.h"
#include "foundation/base/XObject.h"

/// A place in a list or map, good until its own element is removed. Opaque to callers.
struct __POSITION
{};

/// A node of XList. Elements are read through the list.
template <class T>
struct XListNode : __POSITION
{
    XListNode* m_pNext;
    XListNode* m_pPrev;
    T m_data;
};

/// A doubly linked list with stable positions and pooled nodes.
///
///     for (__POSITION* pos = list.GetHeadPosition(); pos;) {
///         T& element = list.GetNext(pos);   // pos is now the next one, null behind the tail
///         ...
///     }
///
/// The element just returned may be removed within the loop. Adding allocates nothing but a block
/// of nodes now and then. Elements that are pointers are not owned.
/// Failure: a null position where an element is asked for, or the head or tail of an empty list,
/// throws XIndexException. Threads: one at a time.
template <class T, class ARG = const T&>
class XList : public XObject
{
    using Node = XListNode<T>;

public:
    /// @param blockSize  nodes in the first block
    explicit XList(int blockSize = 10) : m_pool(blockSize) {}
    XList(const XList&) = delete;
    XList& operator=(const XList&) = delete;
    ~XList() override { RemoveAll(); }

    // the three words of the list, for reading; m_pNodeHead is the head position
    Node* m_pNodeHead = nullptr;
    Node* m_pNodeTail = nullptr;
    int m_nCount = 0;

    int GetCount() const { return m_nCount; }
    int GetSize() const { return m_nCount; }
    int IsEmpty() const { return m_nCount == 0; }
    /// Rises whenever an element is added, removed or set, but not when one is written through a
    /// reference.
    unsigned GetChangeCount() const { return m_changeCount; }
    __POSITION* GetHeadPosition() const { return m_pNodeHead; }
    __POSITION* GetTailPosition() const { return m_pNodeTail; }

    T& GetHead() { return Require(m_pNodeHead)->m_data; }
    const T& GetHead() const { return Require(m_pNodeHead)->m_data; }
    T& GetTail() { return Require(m_pNodeTail)->m_data; }
    const T& GetTail() const { return Require(m_pNodeTail)->m_data; }

    /// The element at `pos`; `pos` moves on, to null behind the last one.
    T& GetNext(__POSITION*& pos)
    {
        Node* node = Require(pos);
        pos = node->m_pNext;
        return node->m_data;
    }
    const T& GetNext(__POSITION*& pos) const { return const_cast<XList*>(this)->GetNext(pos); }
    T& GetPrev(__POSITION*& pos)
    {
        Node* node = Require(pos);
        pos = node->m_pPrev;
        return node->m_data;
    }
    const T& GetPrev(__POSITION*& pos) const { return const_cast<XList*>(this)->GetPrev(pos); }
    T& GetAt(__POSITION* pos) { return Require(pos)->m_data; }
    const T& GetAt(__POSITION* pos) const { return Require(pos)->m_data; }
    void SetAt(__POSITION* pos, ARG value)
    {
        Require(pos)->m_data = value;
        ++m_changeCount;
    }

    /// All return the position of the new element. A null position inserts before the head
    /// (InsertBefore) or behind the tail (InsertAfter).
    __POSITION* AddHead(ARG value) { return Link(nullptr, m_pNodeHead, value); }
    __POSITION* AddTail(ARG value) { return Link(m_pNodeTail, nullptr, value); }
    __POSITION* InsertBefore(__POSITION* pos, ARG value)
    {
        if (!pos) return AddHead(value);
        Node* node = static_cast<Node*>(pos);
        return Link(node->m_pPrev, node, value);
    }
    __POSITION* InsertAfter(__POSITION* pos, ARG value)
    {
        if (!pos) return AddTail(value);
        Node* node = static_cast<Node*>(pos);
        return Link(node, node->m_pNext, value);
    }

    /// The first element equal to `value` behind `startAfter`, or from the head when that is null.
    __POSITION* Find(ARG value, __POSITION* startAfter = nullptr) const
    {
        Node* node = startAfter ? static_cast<Node*>(startAfter)->m_pNext : m_pNodeHead;
        while (node && !(node->m_data == value))
            node = node->m_pNext;
        return node;
    }

    /// The position of element `index`, null when there is none. Walks from the nearer end.
    __POSITION* FindIndex(int index) const
    {
        if (index < 0 || index >= m_nCount) return nullptr;
        Node* node = nullptr;
        if (index < m_nCount / 2) {
            for (node = m_pNodeHead; index > 0; --index)
                node = node->m_pNext;
        } else {
            for (node = m_pNodeTail; index < m_nCount - 1; ++index)
                node = node->m_pPrev;
        }
        return node;
    }

    void RemoveAt(__POSITION* pos)
    {
        Node* node = Require(pos);
        (node->m_pPrev ? node->m_pPrev->m_pNext : m_pNodeHead) = node->m_pNext;
        (node->m_pNext ? node->m_pNext->m_pPrev : m_pNodeTail) = node->m_pPrev;
        --m_nCount;
        ++m_changeCount;
        XfnDestructElements(&node->m_data, 1);
        m_pool.Give(node);
    }
    T RemoveHead()
    {
        T value = GetHead();
        RemoveAt(m_pNodeHead);
        return value;
    }
    T RemoveTail()
    {
        T value = GetTail();
        RemoveAt(m_pNodeTail);
        return value;
    }

    /// Drops all nodes. What pointers point to stays.
    void RemoveAll()
    {
        for (Node* node = m_pNodeHead; node; node = node->m_pNext) {
            XfnDestructElements(&node->m_data, 1);
        }
        m_pNodeHead = m_pNodeTail = nullptr;
        m_nCount = 0;
        ++m_changeCount;
        m_pool.Clear();
    }

private:
    static Node* Require(__POSITION* pos)
    {
        if (!pos) XIndexException::Throw();
        return static_cast<Node*>(pos);
    }

    Node* Link(Node* prev, Node* next, ARG value)
    {
        Node* node = static_cast<Node*>(m_pool.Take());
        try {
            XfnConstructElements(&node->m_data, 1);
            try {
                node->m_data = value;
            } catch (...) {
                XfnDestructElements(&node->m_data, 1);
                throw;
            }
        } catch (...) {
            m_pool.Give(node);
            throw;
        }
        node->m_pPrev = prev;
        node->m_pNext = next;
        (prev ? prev->m_pNext : m_pNodeHead) = node;
        (next ? next->m_pPrev : m_pNodeTail) = node;
        ++m_nCount;
        ++m_changeCount;
        return node;
    }

    XNodePool<Node> m_pool;
    unsigned m_changeCount = 0;
};
