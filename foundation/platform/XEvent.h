#pragma once

#include "foundation/base/XApi.h"
#include "foundation/platform/XWindowMessages.h"

#include <initializer_list>
#include <vector>

/// A flag that threads wait for.
///
/// A manual event stays set until Reset; an automatic one is cleared by the one wait that it ends.
/// Threads: every operation from any thread; nobody may wait for an event that is destroyed.
class XAPI XEvent
{
public:
    enum class XReset { Automatic, Manual };

    explicit XEvent(XReset reset = XReset::Automatic, bool isSet = false);
    ~XEvent();
    XEvent(const XEvent&) = delete;
    XEvent& operator=(const XEvent&) = delete;

    void Set();
    void Reset();

    /// @param timeoutMs  kXForever waits without limit, 0 only looks
    /// @return non-zero when the event was set, 0 on a time-out
    int Wait(unsigned timeoutMs = kXForever);

    /// Waits until one of the events is set. When several are, the lowest index wins and the others
    /// stay as they are. Null entries are skipped.
    /// @return the index of the event, or -1 on a time-out and for a list without any event
    static int WaitAny(std::initializer_list<XEvent*> events, unsigned timeoutMs = kXForever);

private:
    struct tagWaiter;
    static int TakeFirst(std::initializer_list<XEvent*> events);

    const XReset m_reset;
    bool m_isSet;                      // this and the list under the one lock of all events,
    std::vector<tagWaiter*> m_waiters; // without which a wait for several could miss one
};
