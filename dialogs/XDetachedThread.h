#pragma once

#include "foundation/base/XApi.h"

#include <functional>

/// Runs `work` on a thread that nobody joins: for calls that may never come back, as of a reader on a
/// network that is gone. `work` owns all that it uses and meets no object of the user interface; what
/// it throws is swallowed.
///
/// The end of the program waits some seconds for such threads, before anything is destroyed that
/// libraries keep for them. Threads: any.
/// @return 0 when the system gives no thread; `work` then does not run
XAPI int XfnStartDetached(std::function<void()> work);
