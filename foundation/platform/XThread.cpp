#include "foundation/platform/XThread.h"

#include "foundation/platform/XMessageHub.h"

#include <cassert>
#include <new>
#include <system_error>
#include <utility>

XThread::XThread() = default;

XThread::~XThread()
{
    StopAndJoin();
}

void XThread::StopAndJoin()
{
    assert(m_thread.get_id() != std::this_thread::get_id());
    Terminate();
    if (m_thread.joinable()) {
        m_worker
            .Release(); // a worker that waits for this thread's event loop must not be waited for
        m_thread.join();
    }
    // reports still queued name this object, which is gone or starts anew
    XMessageHub::Get().WithdrawPosts(kXThreadMessage, reinterpret_cast<XWPARAM>(this));
}

int XThread::Create(void* owner, XHWND window, XThreadFunction function, void* parameter,
                    unsigned flags)
{
    StopAndJoin();
    if (!function) return 0;
    m_stop = 0;
    m_owner = owner;
    m_window = window;
    m_worker.Lift();
    m_ended.Reset();
    {
        const std::lock_guard lock(m_mutex);
        m_status = kXThreadNone;
        m_text = XString();
        m_isSuspended = (flags & kXCreateSuspended) != 0;
    }
    try {
        m_thread = std::thread(
            [this, function = std::move(function), parameter] { Run(function, parameter); });
    } catch (const std::system_error&) {
        m_thread = std::thread();
        return 0;
    }
    return 1;
}

void XThread::Run(const XThreadFunction& function, void* parameter)
{
    const XMessageWorker::XScope scope(m_worker);
    {
        const std::lock_guard lock(m_mutex);
        m_workerId = std::this_thread::get_id();
    }
    HaltWhileSuspended();
    try {
        function(parameter);
    } catch (const std::bad_alloc&) {
        CallbackFail("There is not enough memory for this operation.");
    } catch (...) {
        CallbackFail("The operation ended with an unexpected error.");
    }
    m_ended.Set();
}

void XThread::HaltWhileSuspended()
{
    std::unique_lock lock(m_mutex);
    if (m_workerId != std::this_thread::get_id()) return;
    m_resumed.wait(lock, [this] { return !m_isSuspended || IsStopRequested(); });
}

void XThread::Report(int code, const XString* text, XLPARAM value)
{
    {
        const std::lock_guard lock(m_mutex);
        m_status = code;
        if (text) m_text = *text;
    }
    if (m_window) {
        XfnPostMessage(m_window, kXThreadMessage, reinterpret_cast<XWPARAM>(this), value);
    }
    HaltWhileSuspended();
}

void XThread::CallbackSuccess()
{
    Report(kXThreadSuccess, nullptr, 0);
}

void XThread::CallbackFail(const XString& text)
{
    Report(kXThreadFail, &text, 0);
}

void XThread::CallbackCancel()
{
    Report(kXThreadCancel, nullptr, 0);
}

void XThread::CallbackPercent(int percent)
{
    Report(kXThreadPercent, nullptr, percent);
}

void XThread::CallbackText(const XString& text)
{
    Report(kXThreadText, &text, 0);
}

void XThread::Callback(int code, XLPARAM value)
{
    Report(code, nullptr, value);
}

void XThread::Suspend()
{
    const std::lock_guard lock(m_mutex);
    m_isSuspended = true;
}

void XThread::Resume()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isSuspended = false;
    }
    m_resumed.notify_all();
}

void XThread::Terminate()
{
    {
        const std::lock_guard lock(m_mutex); // so that a worker about to halt sees the flag
        m_stop = 1;
    }
    m_resumed.notify_all();
}

int XThread::IsValid() const
{
    return m_thread.joinable() ? 1 : 0;
}

int XThread::Wait(unsigned timeoutMs)
{
    if (!IsValid()) return 0;
    // this thread delivers the worker's sends, so a worker within one would never end
    const bool mustRelease = timeoutMs != 0 && XMessageHub::Get().IsUiThread();
    if (mustRelease) m_worker.Release();
    const int hasEnded = m_ended.Wait(timeoutMs);
    if (mustRelease && !hasEnded) m_worker.Lift();
    return hasEnded;
}

int XThread::GetStatus() const
{
    const std::lock_guard lock(m_mutex);
    return m_status;
}

XString XThread::GetText() const
{
    const std::lock_guard lock(m_mutex);
    return m_text;
}
