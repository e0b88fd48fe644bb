#pragma once

#include "foundation/base/XApi.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// Threads that decode ahead of drawings, kept from one drawing to the next.
///
/// A drawing that is lent some (XDMComposite::SetDrawHelpers) does not wait for them when it ends:
/// what a helper has in hand becomes a tile of the cache, and that is all it does any more. So a
/// drawing that is stopped ends at once. Whoever lends them calls Wait before bands go.
/// Threads: any.
class XAPI XDrawHelpers
{
public:
    /// More of them than this, or than there are further cores, would starve the rest of the
    /// program.
    static int GetMostHelpers();

    XDrawHelpers() = default;
    ~XDrawHelpers(); ///< lets what was given come to its end
    XDrawHelpers(const XDrawHelpers&) = delete;
    XDrawHelpers& operator=(const XDrawHelpers&) = delete;

    /// Has a thread run `task`, now or when one has finished what it does.
    /// @return 0 when the system gives no thread; the task is dropped then
    int Give(std::function<void()> task);
    /// Returns when nothing that was given runs or waits any more. Not from within a task.
    void Wait();

private:
    void Serve();

    std::mutex m_mutex; // for all that follows
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_waiting;
    int m_unfinished = 0; // waiting or run
    bool m_isOver = false;
    std::vector<std::thread> m_threads;
};
