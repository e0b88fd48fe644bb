#pragma once

#include "foundation/vector/XSharedRecord.h"

#include <cstddef>
#include <mutex>
#include <utility>

/// Gives equal records the same handle: one record for each value in use, however many objects have
/// it. Values come in runs, so a short list of those asked for last finds nearly all of them.
/// Threads: any.
template <class Record>
class XRecordPool
{
public:
    XSharedRecord<Record> Find(const Record& record)
    {
        const std::lock_guard lock(m_lock);
        std::size_t at = 0;
        while (at + 1 < kRemembered && m_known[at] && !(*m_known[at] == record))
            ++at;
        if (!m_known[at] || !(*m_known[at] == record)) m_known[at] = XSharedRecord<Record>(record);
        // what is asked for often moves ahead
        std::swap(m_known[at], m_known[at / 2]);
        return m_known[at / 2];
    }

private:
    static constexpr std::size_t kRemembered = 64;
    std::mutex m_lock;
    XSharedRecord<Record> m_known[kRemembered];
};
