#pragma once

#include "foundation/platform/XWindowMessages.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class QSocketNotifier;
class XMessageWindow;
class XMessageWorker;

/// The process's table of windows and its queue of messages between threads.
///
/// Most code uses the free functions of XWindowMessages.h; this class is for those who manage
/// windows, workers and what is queued.
///
/// Workers push to the queue under one lock and write to an eventfd; a socket notifier in the UI
/// thread drains it. No thread but the UI thread touches a Qt object. A turn of the event loop
/// delivers the sends that waited at its beginning and one post, so that neither starves painting
/// and input.
class XAPI XMessageHub
{
public:
    static XMessageHub& Get();

    XHWND AddWindow(XMessageWindow* window); ///< UI thread; 0 from any other
    void RemoveWindow(XHWND window);         ///< UI thread
    int IsWindow(XHWND window) const;
    bool IsUiThread() const;

    int Send(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam, unsigned timeoutMs,
             XLRESULT* result);
    int Post(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam);

    /// Drops the posts that wait with this number and first parameter, whatever their window: for
    /// senders that post their own address and are about to die.
    void WithdrawPosts(unsigned message, XWPARAM wParam);

    void Release(XMessageWorker& worker);
    void Lift(XMessageWorker& worker);
    int IsReleased(const XMessageWorker& worker) const;

private:
    struct tagSlot
    {
        std::uint32_t generation = 1;
        XMessageWindow* window = nullptr;
    };
    struct tagPost
    {
        XHWND window;
        unsigned message;
        XWPARAM wParam;
        XLPARAM lParam;
    };
    struct tagSend;

    XMessageHub();
    ~XMessageHub() = delete; // lives as long as the process: windows may die in static destructors

    void AttachToApplication(); // UI thread, lock not held
    void DetachFromApplication();
    void Wake();                              // lock held
    XMessageWindow* Find(XHWND window) const; // lock held
    void Abandon(tagSend& send);              // lock held
    template <class Test>
    void AbandonWhere(Test test);                       // lock held
    int Call(const tagPost& message, XLRESULT& result); // UI thread, lock not held
    void Drain();
    bool DeliverOneSend();
    void DeliverOnePost();

    mutable std::mutex m_mutex;
    std::vector<tagSlot> m_slots;
    std::vector<std::uint32_t> m_freeSlots;
    std::deque<std::shared_ptr<tagSend>> m_waiting;
    std::vector<std::shared_ptr<tagSend>> m_running; // nested when a handler runs an event loop
    std::deque<tagPost> m_posts;
    std::thread::id m_uiThread;
    QSocketNotifier* m_notifier = nullptr; // UI thread only
    bool m_isAttached = false;
    bool m_isWoken = false;
    int m_eventFd = -1;
};
