#pragma once

#include "foundation/base/XString.h"
#include "foundation/platform/XEvent.h"
#include "foundation/platform/XMessageWorker.h"
#include "foundation/platform/XWindowMessages.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// The message that every callback posts: first parameter the XThread, second the value.
constexpr unsigned kXThreadMessage = 2024;

/// Status codes that the callbacks store.
enum XThreadStatus : int {
    kXThreadNone = 0,
    kXThreadSuccess = 1,
    kXThreadFail = 2,
    kXThreadCancel = 3,
    kXThreadPercent = 4,
    kXThreadText = 5
};

/// Creation flag: the thread waits for Resume before it runs its function.
constexpr unsigned kXCreateSuspended = 4;

using XThreadFunction = std::function<unsigned(void* parameter)>;

/// One worker thread, and its reports to a window.
///
/// The work reports through the callbacks, which post kXThreadMessage and never wait for the
/// window; the receiver reads status and text from this object. A later callback overwrites them.
/// Stopping and suspending are cooperative: Terminate raises the stop flag, which the work polls
/// with IsStopRequested, and a suspended worker halts in its next callback.
///
/// Threads: Create, Resume, Suspend, Terminate, Wait and the destructor belong to the owner's thread and
/// never to the worker itself; the callbacks may run on any thread; the accessors may be read from
/// any thread. The destructor stops and joins; sends of the worker to the UI thread fail from then
/// on, so the join cannot lock up, and reports not yet delivered are withdrawn. An exception that
/// leaves the function is reported as a failure.
class XAPI XThread
{
public:
    XThread();
    ~XThread();
    XThread(const XThread&) = delete;
    XThread& operator=(const XThread&) = delete;

    /// Starts `function(parameter)` on a new thread. An earlier thread of this object is stopped
    /// and joined first.
    /// @param owner   kept for GetOwner, not owned
    /// @param window  receives the reports; 0 for none
    /// @param flags   0, or kXCreateSuspended
    /// @return 0 when the system gives no thread or there is no function
    int Create(void* owner, XHWND window, XThreadFunction function, void* parameter,
               unsigned flags = 0);

    void CallbackSuccess();
    void CallbackFail(const XString& text);
    void CallbackCancel();
    void CallbackPercent(int percent);
    void CallbackText(const XString& text);
    void Callback(int code, XLPARAM value);

    void Suspend();
    void Resume();
    /// Raises the stop flag and ends a suspension. Does not wait.
    void Terminate();

    int IsStopRequested() const { return m_stop.load(std::memory_order_relaxed); }
    /// The stop flag as a word that raster code polls; it lives as long as this object.
    std::atomic<int>* GetStopFlag() { return &m_stop; }

    int IsValid() const; ///< a thread was created, running or not
    /// Waits for the function to return; a time-out of 0 only looks. While the UI thread waits,
    /// sends of the worker fail at once; after a time-out they are delivered again.
    /// @return non-zero once the function has returned
    int Wait(unsigned timeoutMs = kXForever);
    void* GetOwner() const { return m_owner; }
    XHWND GetWindow() const { return m_window; }
    int GetStatus() const;
    XString GetText() const;

private:
    void Run(const XThreadFunction& function, void* parameter);
    void Report(int code, const XString* text, XLPARAM value);
    void HaltWhileSuspended();
    void StopAndJoin();

    std::atomic<int> m_stop{0};
    void* m_owner = nullptr;
    XHWND m_window = 0;
    std::thread m_thread;
    XMessageWorker m_worker;
    XEvent m_ended{XEvent::XReset::Manual};

    mutable std::mutex m_mutex;
    std::condition_variable m_resumed;
    std::thread::id m_workerId; // this and the rest under m_mutex
    bool m_isSuspended = false;
    int m_status = kXThreadNone;
    XString m_text;
};
