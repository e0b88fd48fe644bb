#include "foundation/raster/XDrawHelpers.h"

#include <algorithm>
#include <system_error>
#include <utility>

int XDrawHelpers::GetMostHelpers()
{
    constexpr int kMost = 3;
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()) - 1, 0, kMost);
}

XDrawHelpers::~XDrawHelpers()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

int XDrawHelpers::Give(std::function<void()> task)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_unfinished >= static_cast<int>(m_threads.size()) &&
            static_cast<int>(m_threads.size()) < GetMostHelpers()) {
            try {
                m_threads.emplace_back([this] { Serve(); });
            } catch (const std::system_error&) { // those that there are must do
            }
        }
        if (m_threads.empty()) return 0;
        m_waiting.push_back(std::move(task));
        ++m_unfinished;
    }
    m_changed.notify_all();
    return 1;
}

void XDrawHelpers::Wait()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_unfinished == 0; });
}

void XDrawHelpers::Serve()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isOver || !m_waiting.empty(); });
        if (m_waiting.empty()) return;
        std::function<void()> task = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        task();
        task = nullptr; // what it holds goes before anybody is told
        lock.lock();
        if (--m_unfinished == 0) m_changed.notify_all();
    }
}
