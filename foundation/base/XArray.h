#pragma once

#include "foundation/base/XElements.h"
#include "foundation/base/XIndexException.h"
#include "foundation/base/XObject.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

/// A growable array in one block of memory.
///
/// The data pointer and references to elements are good until an operation that adds, removes or
/// frees. Elements that are pointers are not owned. Copying copies all elements.
/// Failure: an index or count out of range throws XIndexException, a size that memory cannot hold
/// std::bad_alloc; the array is then as it was. Threads: one at a time.
template <class T, class ARG = const T&>
class XArray : public XObject
{
public:
    XArray() = default;
    XArray(const XArray& other) : XObject(other) { Copy(other); }
    XArray(XArray&& other) noexcept { Swap(other); }
    XArray& operator=(const XArray& other)
    {
        if (this != &other) Copy(other);
        return *this;
    }
    XArray& operator=(XArray&& other) noexcept
    {
        Swap(other);
        return *this;
    }
    ~XArray() override { RemoveAll(); }

    // the words of the array, for reading
    T* m_pData = nullptr;
    int m_nSize = 0;
    int m_nMaxSize = 0; ///< elements that fit into the block
    int m_nGrowBy = 0;  ///< elements a full block grows by; 0 means by half its size

    int GetSize() const { return m_nSize; }
    int GetCount() const { return m_nSize; }
    int GetUpperBound() const { return m_nSize - 1; }
    int IsEmpty() const { return m_nSize == 0; }
    T* GetData() { return m_pData; }
    const T* GetData() const { return m_pData; }

    T* begin() { return m_pData; }
    T* end() { return m_pData + m_nSize; }
    const T* begin() const { return m_pData; }
    const T* end() const { return m_pData + m_nSize; }

    const T& GetAt(int index) const { return m_pData[Check(index)]; }
    T& GetAt(int index) { return m_pData[Check(index)]; }
    T& ElementAt(int index) { return m_pData[Check(index)]; }
    const T& operator[](int index) const { return m_pData[Check(index)]; }
    T& operator[](int index) { return m_pData[Check(index)]; }
    void SetAt(int index, ARG value) { m_pData[Check(index)] = value; }

    /// Cuts the array or fills it up with default elements; 0 frees the memory.
    /// @param grow  elements a full block grows by from now on, 0 for half its size, -1 to leave it
    void SetSize(int size, int grow = -1)
    {
        if (size < 0) XIndexException::Throw();
        if (grow >= 0) m_nGrowBy = grow;
        if (size == 0) {
            RemoveAll();
        } else if (size < m_nSize) {
            XfnDestructElements(m_pData + size, m_nSize - size);
            m_nSize = size;
        } else {
            Reserve(size);
            XfnConstructElements(m_pData + m_nSize, size - m_nSize);
            m_nSize = size;
        }
    }

    /// @return the index of the new element.
    int Add(ARG value)
    {
        InsertAt(m_nSize, value);
        return m_nSize - 1;
    }

    /// Sets an element; the array grows to hold it.
    void SetAtGrow(int index, ARG value)
    {
        if (index < 0 || index == std::numeric_limits<int>::max()) XIndexException::Throw();
        if (index < m_nSize) {
            m_pData[index] = value;
        } else {
            InsertAt(index, value);
        }
    }

    /// Puts `count` copies of `value` before element `index`; an index beyond the end fills the gap
    /// with default elements.
    void InsertAt(int index, ARG value, int count = 1)
    {
        if (index < 0 || count < 0) XIndexException::Throw();
        const T copy = value; // `value` may lie in this array
        const int oldSize = m_nSize;
        const int moved = std::max(oldSize - index, 0);
        const std::size_t newSize = static_cast<std::size_t>(std::max(index, oldSize)) + count;
        if (newSize > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
            throw std::bad_alloc();
        }
        SetSize(static_cast<int>(newSize));
        if (moved > 0 && count > 0) {
            std::move_backward(m_pData + index, m_pData + oldSize, m_pData + newSize);
        }
        std::fill_n(m_pData + index, count, copy);
    }

    void RemoveAt(int index, int count = 1)
    {
        if (index < 0 || count < 0 || index > m_nSize || count > m_nSize - index) {
            XIndexException::Throw();
        }
        if (count == 0) return;
        std::move(m_pData + index + count, m_pData + m_nSize, m_pData + index);
        XfnDestructElements(m_pData + m_nSize - count, count);
        m_nSize -= count;
    }

    /// Destroys all elements and frees the memory.
    void RemoveAll()
    {
        XfnDestructElements(m_pData, m_nSize);
        FreeBlock(m_pData, m_nMaxSize);
        m_pData = nullptr;
        m_nSize = m_nMaxSize = 0;
    }

    /// Gives back the memory no element uses.
    void FreeExtra()
    {
        if (m_nSize == 0) {
            RemoveAll();
        } else if (m_nSize < m_nMaxSize) {
            MoveTo(m_nSize);
        }
    }

    /// Replaces the elements by those of `other`; the growth stays.
    void Copy(const XArray& other)
    {
        if (this == &other) return;
        SetSize(other.m_nSize);
        std::copy_n(other.m_pData, other.m_nSize, m_pData);
    }
    /// @return the index of the first new element. `other` may be this array.
    int Append(const XArray& other)
    {
        const int first = m_nSize;
        const int added = other.m_nSize;
        if (added > std::numeric_limits<int>::max() - first) throw std::bad_alloc();
        if (added == 0) return first;
        SetSize(first + added);
        std::copy_n(other.m_pData, added, m_pData + first);
        return first;
    }

    void Swap(XArray& other) noexcept
    {
        std::swap(m_pData, other.m_pData);
        std::swap(m_nSize, other.m_nSize);
        std::swap(m_nMaxSize, other.m_nMaxSize);
        std::swap(m_nGrowBy, other.m_nGrowBy);
    }

private:
    int Check(int index) const
    {
        if (static_cast<unsigned>(index) >= static_cast<unsigned>(m_nSize)) {
            XIndexException::Throw();
        }
        return index;
    }

    static T* NewBlock(int size)
    {
        return std::allocator<T>().allocate(static_cast<std::size_t>(size));
    }
    static void FreeBlock(T* block, int size)
    {
        if (block) std::allocator<T>().deallocate(block, static_cast<std::size_t>(size));
    }

    void Reserve(int size)
    {
        if (size <= m_nMaxSize) return;
        const int growBy = m_nGrowBy > 0 ? m_nGrowBy : std::max(m_nMaxSize / 2, 4);
        const int limit = std::numeric_limits<int>::max() - growBy;
        MoveTo(std::max(size, m_nMaxSize == 0 || m_nMaxSize > limit ? size : m_nMaxSize + growBy));
    }

    void MoveTo(int maxSize)
    {
        T* block = NewBlock(maxSize);
        if constexpr (std::is_trivially_copyable_v<T>) {
            if (m_nSize > 0) std::memcpy(block, m_pData, sizeof(T) * m_nSize);
        } else {
            static_assert(std::is_nothrow_move_constructible_v<T>);
            std::uninitialized_move_n(m_pData, m_nSize, block);
            XfnDestructElements(m_pData, m_nSize);
        }
        FreeBlock(m_pData, m_nMaxSize);
        m_pData = block;
        m_nMaxSize = maxSize;
    }
};
