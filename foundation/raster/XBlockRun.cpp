#include "foundation/raster/XBlockRun.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

struct XBlockRun::tagState
{
    int pieces = 0;
    std::atomic<int> next{0};
    std::atomic<int> isOver{0};
    std::mutex mutex; // and below
    std::condition_variable turned;
    int joined = 0; // pieces that are done; with a join, those below this one
    int hasFailed = 0;
    XString message;

    void End(const XString& reason)
    {
        const std::lock_guard lock(mutex);
        if (!hasFailed) message = reason;
        hasFailed = 1;
        isOver = 1;
        turned.notify_all();
    }
};

int XBlockRun::GetNumOfWorkers(int pieces)
{
    constexpr int kMost = 4; // more would starve the rest of the program
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    return std::clamp(std::min(cores, pieces), 1, kMost);
}

int XBlockRun::IsStopped() const
{
    return (m_control.abort && m_control.abort->load(std::memory_order_relaxed)) ||
           (m_control.thread && m_control.thread->IsStopRequested());
}

const std::atomic<int>* XBlockRun::GetAbort() const
{
    return m_control.abort || !m_control.thread ? m_control.abort : m_control.thread->GetStopFlag();
}

void XBlockRun::Report(int done, int pieces)
{
    const long long span = m_lastPercent - m_firstPercent;
    const int percent = m_firstPercent + static_cast<int>(span * done / pieces);
    if (percent <= m_reported) return;
    m_reported = percent;
    if (m_control.thread) m_control.thread->CallbackPercent(percent);
    if (m_control.progress) m_control.progress(percent);
}

void XBlockRun::Work(int worker, tagState& state,
                     const std::function<int(int, int, XString&)>& work,
                     const std::function<void(int, int)>& join)
{
    try {
        while (!state.isOver) {
            const int piece = state.next.fetch_add(1);
            if (piece >= state.pieces) return;
            XString message;
            if (IsStopped() || !work(piece, worker, message)) {
                state.End(IsStopped() ? XString() : message);
                return;
            }
            int done = 0;
            {
                std::unique_lock lock(state.mutex);
                if (join) {
                    state.turned.wait(lock, [&] { return state.joined == piece || state.isOver; });
                    if (state.isOver) return;
                    join(piece, worker);
                }
                done = ++state.joined;
                state.turned.notify_all();
            }
            if (worker == 0) Report(done, state.pieces); // it may suspend: not under the lock
        }
    } catch (const std::exception&) {
        state.End("There is not enough memory.");
    }
}

int XBlockRun::Run(int pieces, const std::function<int(int, int, XString&)>& work,
                   const std::function<void(int, int)>& join, XString& message)
{
    message.Empty();
    tagState state;
    state.pieces = pieces;
    std::vector<std::thread> helpers;
    helpers.reserve(static_cast<std::size_t>(GetNumOfWorkers(pieces)));
    for (int worker = 1; worker < GetNumOfWorkers(pieces); ++worker) {
        try {
            helpers.emplace_back([&, worker] { Work(worker, state, work, join); });
        } catch (const std::system_error&) {
            break; // no thread to be had: the others do the work
        }
    }
    Work(0, state, work, join);
    for (std::thread& helper : helpers)
        helper.join();
    message = state.message;
    if (state.hasFailed || IsStopped()) return 0;
    Report(1, 1);
    return 1;
}
