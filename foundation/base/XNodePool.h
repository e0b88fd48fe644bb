#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <vector>

/// Raw memory for the nodes of a list or map, in blocks that double in size.
///
/// A node never moves. What is given back is used again first; memory returns to the system with
/// Clear (all blocks but the largest) and the destructor. Builds and destroys nothing.
template <class Node>
class XNodePool
{
public:
    /// @param blockSize  nodes in the first block, at least 1
    explicit XNodePool(int blockSize) : m_firstBlockSize(std::max(blockSize, 1)) {}
    XNodePool(const XNodePool&) = delete;
    XNodePool& operator=(const XNodePool&) = delete;
    ~XNodePool()
    {
        for (const tagBlock& block : m_blocks)
            Free(block);
    }

    /// Room for one node. Throws std::bad_alloc.
    void* Take()
    {
        if (m_free) {
            tagFree* slot = m_free;
            m_free = slot->next;
            return slot;
        }
        if (m_used == m_room) AddBlock();
        return m_blocks.back().nodes + m_used++;
    }

    void Give(void* slot) { m_free = new (slot) tagFree{m_free}; }

    /// Takes all nodes back at once.
    void Clear()
    {
        while (m_blocks.size() > 1) {
            Free(m_blocks.front());
            m_blocks.erase(m_blocks.begin());
        }
        m_free = nullptr;
        m_used = 0;
    }

private:
    struct tagFree
    {
        tagFree* next;
    };
    struct tagBlock
    {
        Node* nodes;
        std::size_t size;
    };
    static_assert(sizeof(Node) >= sizeof(tagFree) && alignof(Node) >= alignof(tagFree));

    static constexpr std::size_t kLargestBlock = 4096;

    static void Free(const tagBlock& block)
    {
        std::allocator<Node>().deallocate(block.nodes, block.size);
    }

    void AddBlock()
    {
        const std::size_t size =
            m_blocks.empty() ? m_firstBlockSize
                             : std::max(std::min(m_room * 2, kLargestBlock), m_firstBlockSize);
        m_blocks.reserve(m_blocks.size() + 1);
        m_blocks.push_back({std::allocator<Node>().allocate(size), size});
        m_room = size;
        m_used = 0;
    }

    const std::size_t m_firstBlockSize;
    std::vector<tagBlock> m_blocks; // the last one is the newest and largest
    std::size_t m_room = 0;         // of the newest block
    std::size_t m_used = 0;         // of the newest block
    tagFree* m_free = nullptr;
};
