#include "foundation/platform/XEvent.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

struct XEvent::tagWaiter
{
    std::condition_variable woken;
};

namespace {
// never destroyed: events of other translation units may outlive this one
std::mutex& EventLock()
{
    static std::mutex* const mutex = new std::mutex;
    return *mutex;
}
} // namespace

XEvent::XEvent(XReset reset, bool isSet) : m_reset(reset), m_isSet(isSet) {}

XEvent::~XEvent() = default;

void XEvent::Set()
{
    const std::lock_guard lock(EventLock());
    m_isSet = true;
    for (tagWaiter* waiter : m_waiters)
        waiter->woken.notify_one();
}

void XEvent::Reset()
{
    const std::lock_guard lock(EventLock());
    m_isSet = false;
}

int XEvent::Wait(unsigned timeoutMs)
{
    return WaitAny({this}, timeoutMs) == 0 ? 1 : 0;
}

int XEvent::TakeFirst(std::initializer_list<XEvent*> events)
{
    int index = 0;
    for (XEvent* event : events) {
        if (event && event->m_isSet) {
            if (event->m_reset == XReset::Automatic) event->m_isSet = false;
            return index;
        }
        ++index;
    }
    return -1;
}

int XEvent::WaitAny(std::initializer_list<XEvent*> events, unsigned timeoutMs)
{
    if (std::all_of(events.begin(), events.end(), [](XEvent* event) { return !event; })) return -1;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    std::unique_lock lock(EventLock());
    int taken = TakeFirst(events);
    if (taken >= 0 || timeoutMs == 0) return taken;

    tagWaiter self;
    for (XEvent* event : events) {
        if (event) event->m_waiters.push_back(&self);
    }
    const auto isTaken = [&] { return (taken = TakeFirst(events)) >= 0; };
    if (timeoutMs == kXForever) {
        self.woken.wait(lock, isTaken);
    } else {
        self.woken.wait_until(lock, deadline, isTaken);
    }
    for (XEvent* event : events) {
        if (event) std::erase(event->m_waiters, &self);
    }
    return taken;
}
