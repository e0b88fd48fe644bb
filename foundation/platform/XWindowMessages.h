#pragma once

#include "foundation/base/XApi.h"

#include <cstdint>

/// Handle of a window of the message hub: an index and a generation, so that the handle of a
/// window that has gone is never mistaken for a later one. 0 is no window.
using XHWND = std::uint64_t;
using XWPARAM = std::uintptr_t;
using XLPARAM = std::intptr_t;
using XLRESULT = std::intptr_t;

/// As a time-out: wait until there is an answer.
constexpr unsigned kXForever = 0xFFFFFFFFu;

/// Runs the window's OnWindowMessage and returns its result.
///
/// From the UI thread the handler is called directly. From another thread the message is delivered
/// by the UI thread's event loop, nested loops included, and the caller waits. The wait ends with 0
/// when the window goes away, when the sending worker is released (XMessageWorker) or when the
/// application ends. A dead handle answers 0.
XAPI XLRESULT XfnSendMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam);

/// Queues the message for the window; never waits, any thread. Posts are delivered in their order,
/// one for each turn of the event loop, after the sends that wait. A post to a window that is gone
/// by then is dropped.
/// @return 0 when the handle is dead already
XAPI int XfnPostMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam);

/// As XfnSendMessage, but gives up when delivery has not begun after `timeoutMs` milliseconds. A
/// message given up is never delivered later. When the handler runs already, the caller waits for
/// its end, since lParam may point at the caller's stack.
/// @param result  receives the handler's result; untouched on failure; may be null
/// @return non-zero when the handler ran to its end
XAPI int XfnSendMessageTimeout(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam,
                               unsigned timeoutMs, XLRESULT* result = nullptr);

/// Non-zero while the window lives. Any thread; the answer is safe to act on in the UI thread only.
XAPI int XfnIsWindow(XHWND window);
