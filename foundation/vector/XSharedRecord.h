#pragma once

#include <atomic>
#include <utility>

/// A handle of a record that many objects share, one pointer wide. The record never changes: who
/// wants another one makes it and drops this.
///
/// Threads: the count is atomic, so copies may be used and dropped in different threads; one handle
/// belongs to one thread at a time.
template <class Record>
class XSharedRecord
{
public:
    XSharedRecord() = default; ///< null
    explicit XSharedRecord(Record record) : m_block(new tagBlock{std::move(record)}) {}
    XSharedRecord(const XSharedRecord& other) : m_block(other.m_block)
    {
        if (m_block) m_block->users.fetch_add(1, std::memory_order_relaxed);
    }
    XSharedRecord(XSharedRecord&& other) noexcept : m_block(std::exchange(other.m_block, nullptr))
    {}
    XSharedRecord& operator=(XSharedRecord other) noexcept
    {
        std::swap(m_block, other.m_block);
        return *this;
    }
    ~XSharedRecord()
    {
        if (m_block && m_block->users.fetch_sub(1, std::memory_order_acq_rel) == 1) delete m_block;
    }

    explicit operator bool() const { return m_block != nullptr; }
    const Record& operator*() const { return m_block->record; }
    const Record* operator->() const { return &m_block->record; }
    /// Of the handles: records that are equal may be two.
    friend bool operator==(const XSharedRecord& a, const XSharedRecord& b)
    {
        return a.m_block == b.m_block;
    }

private:
    struct tagBlock
    {
        Record record;
        std::atomic<int> users{1};
    };
    tagBlock* m_block = nullptr;
};
