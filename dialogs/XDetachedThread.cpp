#include "dialogs/XDetachedThread.h"

#include <QCoreApplication>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>

namespace {

constexpr std::chrono::seconds kLongestWait(5);

/// Counts the threads that run.
class XExitGate
{
public:
    XExitGate()
    {
        std::atexit([] { Get().Wait(); }); // for a program that leaves past its application object
    }
    static XExitGate& Get()
    {
        static XExitGate* const gate = new XExitGate; // threads that are left behind still use it
        return *gate;
    }

    void Enter()
    {
        const std::lock_guard lock(m_mutex);
        ++m_count;
        if (std::exchange(m_isAwaited, true)) return;
        // with the application, ahead of all static objects
        qAddPostRoutine([] {
            Get().Wait();
            const std::lock_guard last(Get().m_mutex);
            Get().m_isAwaited = false;
        });
    }
    void Leave()
    {
        const std::lock_guard lock(m_mutex);
        --m_count;
        m_left.notify_all();
    }

private:
    void Wait()
    {
        std::unique_lock lock(m_mutex);
        if (m_isGivenUp) return;
        m_isGivenUp = !m_left.wait_for(lock, kLongestWait, [this] { return m_count == 0; });
    }

    std::mutex m_mutex;
    std::condition_variable m_left;
    int m_count = 0;
    bool m_isAwaited = false;
    bool m_isGivenUp = false; // one wait is enough
};

} // namespace

int XfnStartDetached(std::function<void()> work)
{
    XExitGate::Get().Enter();
    try {
        std::thread([work = std::move(work)]() mutable {
            try {
                work();
            } catch (...) { // nobody is left to be told
            }
            work = nullptr;
            XExitGate::Get().Leave();
        }).detach();
        return 1;
    } catch (...) {
        XExitGate::Get().Leave();
        return 0;
    }
}
