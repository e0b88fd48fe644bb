#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

/// Turns the signals that ask the program to end (SIGTERM, SIGHUP, SIGINT) into a call in the event
/// loop, where anything may be done. A second signal ends the program at once, as it would without
/// this.
///
/// One object at a time; the signals have their usual effect again when it goes. User interface
/// thread.
class XEndSignals
{
public:
    explicit XEndSignals(std::function<void()> run);
    ~XEndSignals();
    XEndSignals(const XEndSignals&) = delete;
    XEndSignals& operator=(const XEndSignals&) = delete;

private:
    std::function<void()> m_run;
    std::unique_ptr<QSocketNotifier> m_notifier; // null when there is no pipe to be had
};
