#pragma once

#include "foundation/base/XElements.h"
#include "foundation/base/XIndexException.h"
#include "foundation/base/XList.h"
#include "foundation/base/XNodePool.h"
#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <type_traits>
#include <vector>

/// Spreads keys that differ in any bits over the low bits, by a product with 2^64 over the golden
/// ratio (Knuth, The Art of Computer Programming 3, 6.4). The folds before and after bring high
/// bits down, which a product alone leaves where they are.
constexpr std::size_t XfnMixBits(std::uint64_t bits)
{
    bits = (bits ^ bits >> 32) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(bits ^ bits >> 32);
}

/// The hash of a map key. Overload it for other key types.
template <class T>
requires(std::integral<T> || std::is_enum_v<T>) std::size_t XfnHashKey(T key)
{
    return XfnMixBits(static_cast<std::uint64_t>(key));
}
inline std::size_t XfnHashKey(const void* key)
{
    return XfnMixBits(reinterpret_cast<std::uintptr_t>(key));
}
inline std::size_t XfnHashKey(const char* key)
{
    return std::hash<std::string_view>()(key ? key : "");
}
inline std::size_t XfnHashKey(const XString& key)
{
    return std::hash<std::string_view>()(key.View());
}

/// A node of XMap.
template <class K, class V>
struct XMapNode : __POSITION
{
    XMapNode* m_pNext; // in order of insertion
    XMapNode* m_pPrev;
    XMapNode* m_pChain; // with the same bucket
    std::size_t m_hash;
    K m_key;
    V m_value;
};

/// A hash table with pooled nodes that is walked in the order of insertion.
///
///     for (__POSITION* pos = map.GetStartPosition(); pos;) {
///         map.GetNextAssoc(pos, key, value);   // the pair just returned may be removed
///     }
///
/// References to values are good until their key is removed. Values that are pointers are not
/// owned. Threads: one at a time.
template <class K, class AK, class V, class AV>
class XMap : public XObject
{
    using Node = XMapNode<K, V>;

public:
    /// @param blockSize  nodes in the first block
    explicit XMap(int blockSize = 10) : m_pool(blockSize) {}
    XMap(const XMap&) = delete;
    XMap& operator=(const XMap&) = delete;
    ~XMap() override { RemoveAll(); }

    int GetCount() const { return m_count; }
    int GetSize() const { return m_count; }
    int IsEmpty() const { return m_count == 0; }

    /// The value of `key`; a key that is not there is added with a default value.
    V& operator[](AK key)
    {
        const std::size_t hash = XfnHashKey(key);
        if (Node* node = FindNode(key, hash)) return node->m_value;
        return AddNode(key, hash)->m_value;
    }
    void SetAt(AK key, AV value) { (*this)[key] = value; }

    /// @return 0 when the key is not there; `value` then stays as it was.
    int Lookup(AK key, V& value) const
    {
        const Node* node = FindNode(key, XfnHashKey(key));
        if (!node) return 0;
        value = node->m_value;
        return 1;
    }
    /// The value of `key`, the default value when the key is not there.
    V GetValueAt(AK key) const
    {
        const Node* node = FindNode(key, XfnHashKey(key));
        return node ? node->m_value : V();
    }

    /// @return 0 when the key was not there.
    int RemoveKey(AK key)
    {
        if (m_count == 0) return 0;
        const std::size_t hash = XfnHashKey(key);
        for (Node** link = &m_buckets[GetBucket(hash)]; *link; link = &(*link)->m_pChain) {
            Node* node = *link;
            if (node->m_hash != hash || !(node->m_key == key)) continue;
            *link = node->m_pChain;
            (node->m_pPrev ? node->m_pPrev->m_pNext : m_head) = node->m_pNext;
            (node->m_pNext ? node->m_pNext->m_pPrev : m_tail) = node->m_pPrev;
            --m_count;
            Destruct(node);
            m_pool.Give(node);
            return 1;
        }
        return 0;
    }

    void RemoveAll()
    {
        for (Node* node = m_head; node; node = node->m_pNext)
            Destruct(node);
        m_head = m_tail = nullptr;
        m_count = 0;
        m_buckets.clear();
        m_pool.Clear();
    }

    /// The position of the first pair, null when the map is empty.
    __POSITION* GetStartPosition() const { return m_head; }

    /// The pair at `pos`; `pos` moves on, to null behind the last one. A null `pos` throws
    /// XIndexException.
    void GetNextAssoc(__POSITION*& pos, K& key, V& value) const
    {
        if (!pos) XIndexException::Throw();
        const Node* node = static_cast<Node*>(pos);
        key = node->m_key;
        value = node->m_value;
        pos = node->m_pNext;
    }

private:
    // the bucket count is a power of two
    std::size_t GetBucket(std::size_t hash) const { return hash & (m_buckets.size() - 1); }

    Node* FindNode(AK key, std::size_t hash) const
    {
        if (m_count == 0) return nullptr;
        Node* node = m_buckets[GetBucket(hash)];
        while (node && !(node->m_hash == hash && node->m_key == key))
            node = node->m_pChain;
        return node;
    }

    Node* AddNode(AK key, std::size_t hash)
    {
        if (static_cast<std::size_t>(m_count) >= m_buckets.size()) Rehash();
        Node* node = static_cast<Node*>(m_pool.Take());
        Build(node, key);
        node->m_hash = hash;
        Node*& bucket = m_buckets[GetBucket(hash)];
        node->m_pChain = bucket;
        bucket = node;
        node->m_pNext = nullptr;
        node->m_pPrev = m_tail;
        (m_tail ? m_tail->m_pNext : m_head) = node;
        m_tail = node;
        ++m_count;
        return node;
    }

    // on an exception nothing of the node stays built and its room goes back
    void Build(Node* node, AK key)
    {
        int built = 0;
        try {
            XfnConstructElements(&node->m_key, 1);
            ++built;
            node->m_key = key;
            XfnConstructElements(&node->m_value, 1);
        } catch (...) {
            if (built) XfnDestructElements(&node->m_key, 1);
            m_pool.Give(node);
            throw;
        }
    }
    static void Destruct(Node* node)
    {
        XfnDestructElements(&node->m_key, 1);
        XfnDestructElements(&node->m_value, 1);
    }

    void Rehash()
    {
        std::vector<Node*> buckets(m_buckets.empty() ? 16 : m_buckets.size() * 2);
        m_buckets.swap(buckets);
        for (Node* node = m_head; node; node = node->m_pNext) {
            Node*& bucket = m_buckets[GetBucket(node->m_hash)];
            node->m_pChain = bucket;
            bucket = node;
        }
    }

    XNodePool<Node> m_pool;
    std::vector<Node*> m_buckets;
    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    int m_count = 0;
};
