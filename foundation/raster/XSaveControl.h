#pragma once

#include "foundation/platform/XThread.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <mutex>

/// How the writing of a large file reports and how it is stopped. Every part may be absent.
///
/// Threads: the writing calls from any of its threads, one at a time.
struct tagXSaveControl
{
    XThread* thread = nullptr;                 ///< gets percents; its stop flag is polled
    const std::atomic<int>* abort = nullptr;   ///< another stop flag, polled too
    std::function<void(int percent)> progress; ///< rising numbers from 0 to 100, each once
};

/// Counts the steps of a job and reports each percent once. Any thread.
class XSaveProgress
{
public:
    XSaveProgress(const tagXSaveControl& control, long long total)
        : m_control(control), m_total(std::max(total, 1LL))
    {}

    bool IsStopped() const
    {
        return (m_control.abort && m_control.abort->load(std::memory_order_relaxed)) ||
               (m_control.thread && m_control.thread->IsStopRequested());
    }
    void Step() { Report(m_done.fetch_add(1) + 1); }
    void Report(long long done)
    {
        const int percent = static_cast<int>(
            std::min(static_cast<double>(done) * 100.0 / static_cast<double>(m_total), 100.0));
        const std::lock_guard lock(m_mutex);
        if (percent <= m_percent) return;
        m_percent = percent;
        if (m_control.thread) m_control.thread->CallbackPercent(percent);
        if (m_control.progress) m_control.progress(percent);
    }

private:
    const tagXSaveControl& m_control;
    long long m_total;
    std::atomic<long long> m_done{0};
    std::mutex m_mutex;
    int m_percent = -1;
};
