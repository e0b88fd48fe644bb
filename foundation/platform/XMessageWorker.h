#pragma once

#include "foundation/base/XApi.h"

/// A thread that sends messages to the UI thread, as the hub knows it.
///
/// The UI thread must never wait for a worker that waits for the UI thread. So before it waits it
/// calls Release: sends of this worker that wait, and all further ones, fail at once. Lift allows
/// sends again. A send whose handler runs at that moment returns early too; such a handler must not
/// use pointers into the sender's stack after it released its own sender.
///
///     XMessageWorker worker;
///     std::thread thread([&] { XMessageWorker::XScope scope(worker); ... XfnSendMessage(...); });
///     ...
///     worker.Release();
///     thread.join();
///
/// Workers are told apart by this object, not by thread ids, which the system uses again.
/// Threads: every operation from any thread; the object outlives the scopes opened on it.
class XAPI XMessageWorker
{
public:
    XMessageWorker() = default;
    ~XMessageWorker();
    XMessageWorker(const XMessageWorker&) = delete;
    XMessageWorker& operator=(const XMessageWorker&) = delete;

    void Release();
    void Lift();
    int IsReleased() const;

    /// Marks the current thread as this worker while it lives. Scopes nest.
    class XAPI XScope
    {
    public:
        explicit XScope(XMessageWorker& worker);
        ~XScope();
        XScope(const XScope&) = delete;
        XScope& operator=(const XScope&) = delete;

    private:
        XMessageWorker* m_outer;
    };

    /// The worker that the current thread is marked as; null for none.
    static XMessageWorker* GetCurrent();

private:
    friend class XMessageHub;
    bool m_isReleased = false; // under the hub's lock
};
