#include "host/XEndSignals.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kSignals[] = {SIGTERM, SIGHUP, SIGINT};
int g_pipe[2] = {-1, -1};
static_assert(std::atomic<int>::is_always_lock_free);
std::atomic<int> g_writeEnd{-1}; // a handler may do little else than read this and write

extern "C" void OnSignal(int)
{
    const int error = errno;
    const char byte = 0;
    const int end = g_writeEnd;
    if (end >= 0 && ::write(end, &byte, 1) < 0) {
        // full: it is known already
    }
    errno = error;
}

} // namespace

XEndSignals::XEndSignals(std::function<void()> run) : m_run(std::move(run))
{
    if (g_writeEnd >= 0 || ::pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    g_writeEnd = g_pipe[1];
    m_notifier = std::make_unique<QSocketNotifier>(g_pipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        char bytes[16];
        while (::read(g_pipe[0], bytes, sizeof bytes) > 0) {
        }
        m_run();
    });
    struct sigaction action = {};
    action.sa_handler = &OnSignal;
    action.sa_flags = SA_RESETHAND | SA_RESTART; // the next one is not asked again
    for (const int number : kSignals)
        ::sigaction(number, &action, nullptr);
}

XEndSignals::~XEndSignals()
{
    if (!m_notifier) return;
    for (const int number : kSignals)
        std::signal(number, SIG_DFL);
    m_notifier.reset();
    g_writeEnd = -1;
    for (int& end : g_pipe)
        ::close(std::exchange(end, -1));
}
