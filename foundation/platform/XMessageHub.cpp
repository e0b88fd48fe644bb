#include "foundation/platform/XMessageHub.h"

#include "foundation/platform/XMessageWindow.h"
#include "foundation/platform/XMessageWorker.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QThread>

#include <algorithm>
#include <chrono>

#include <sys/eventfd.h>
#include <unistd.h>

// One synchronous message of a worker. Everything in it is under the hub's lock, but for the
// message itself, which never changes.
struct XMessageHub::tagSend
{
    enum class XState {
        Pending, // in the queue
        Running, // its handler runs in the UI thread
        Done,    // the handler's result is there
        Dead     // given up: time-out, window gone, worker released, application ended
    };

    tagPost message;
    XMessageWorker* worker = nullptr;
    XState state = XState::Pending;
    XLRESULT result = 0;
    std::condition_variable answered;

    bool IsAnswered() const { return state == XState::Done || state == XState::Dead; }
};

XMessageHub& XMessageHub::Get()
{
    static XMessageHub* const hub = new XMessageHub;
    return *hub;
}

XMessageHub::XMessageHub() : m_eventFd(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

bool XMessageHub::IsUiThread() const
{
    const std::lock_guard lock(m_mutex);
    return m_uiThread == std::this_thread::get_id();
}

void XMessageHub::AttachToApplication()
{
    if (m_notifier || m_eventFd < 0) return;
    const QCoreApplication* application = QCoreApplication::instance();
    if (!application || application->thread() != QThread::currentThread()) return;
    m_notifier = new QSocketNotifier(m_eventFd, QSocketNotifier::Read);
    QObject::connect(m_notifier, &QSocketNotifier::activated, [this] { Drain(); });
    qAddPostRoutine([] { XMessageHub::Get().DetachFromApplication(); });
    const std::lock_guard lock(m_mutex);
    m_isAttached = true;
}

void XMessageHub::DetachFromApplication()
{
    delete m_notifier;
    m_notifier = nullptr;
    const std::lock_guard lock(m_mutex);
    m_isAttached = false;
    m_posts.clear();
    AbandonWhere([](const tagSend&) { return true; });
}

XHWND XMessageHub::AddWindow(XMessageWindow* window)
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (application && application->thread() != QThread::currentThread()) return 0;
    {
        const std::lock_guard lock(m_mutex);
        const bool hasOtherWindows = m_freeSlots.size() < m_slots.size();
        // with no window and no application left, the next window's thread is the UI thread
        if (!hasOtherWindows && !m_isAttached) m_uiThread = std::this_thread::get_id();
        if (m_uiThread != std::this_thread::get_id()) return 0;
    }
    AttachToApplication();
    const std::lock_guard lock(m_mutex);
    if (m_freeSlots.empty()) {
        m_freeSlots.push_back(static_cast<std::uint32_t>(m_slots.size()));
        m_slots.emplace_back();
    }
    const std::uint32_t index = m_freeSlots.back();
    m_freeSlots.pop_back();
    m_slots[index].window = window;
    return XHWND{m_slots[index].generation} << 32 | (XHWND{index} + 1);
}

void XMessageHub::RemoveWindow(XHWND window)
{
    const std::lock_guard lock(m_mutex);
    if (!Find(window)) return;
    const auto index = static_cast<std::uint32_t>(window) - 1;
    m_slots[index].window = nullptr;
    // a slot whose generations are used up is never given out again
    if (++m_slots[index].generation != 0) m_freeSlots.push_back(index);
    for (std::size_t i = m_waiting.size(); i-- > 0;) {
        if (m_waiting[i]->message.window == window) Abandon(*m_waiting[i]);
    }
}

XMessageWindow* XMessageHub::Find(XHWND window) const
{
    const std::uint64_t number = window & 0xFFFFFFFFu;
    if (number == 0 || number > m_slots.size()) return nullptr;
    const tagSlot& slot = m_slots[static_cast<std::size_t>(number - 1)];
    return slot.generation == window >> 32 ? slot.window : nullptr;
}

int XMessageHub::IsWindow(XHWND window) const
{
    const std::lock_guard lock(m_mutex);
    return Find(window) ? 1 : 0;
}

void XMessageHub::Wake()
{
    if (m_isWoken) return;
    m_isWoken = true;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_eventFd, &one, sizeof one);
}

int XMessageHub::Post(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    const std::lock_guard lock(m_mutex);
    if (!Find(window)) return 0;
    m_posts.push_back({window, message, wParam, lParam});
    Wake();
    return 1;
}

void XMessageHub::WithdrawPosts(unsigned message, XWPARAM wParam)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_posts, [&](const tagPost& post) {
        return post.message == message && post.wParam == wParam;
    });
}

int XMessageHub::Call(const tagPost& message, XLRESULT& result)
{
    XMessageWindow* target = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        target = Find(message.window);
    }
    if (!target) return 0;
    result = target->OnWindowMessage(message.message, message.wParam, message.lParam);
    return 1;
}

int XMessageHub::Send(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam,
                      unsigned timeoutMs, XLRESULT* result)
{
    const tagPost call{window, message, wParam, lParam};
    if (IsUiThread()) {
        XLRESULT answer = 0;
        const int isDelivered = Call(call, answer);
        if (isDelivered && result) *result = answer;
        return isDelivered;
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    auto send = std::make_shared<tagSend>();
    send->message = call;
    send->worker = XMessageWorker::GetCurrent();

    std::unique_lock lock(m_mutex);
    if (!m_isAttached || !Find(window) || (send->worker && send->worker->m_isReleased)) return 0;
    m_waiting.push_back(send);
    Wake();
    const auto isAnswered = [&] { return send->IsAnswered(); };
    if (timeoutMs != kXForever && !send->answered.wait_until(lock, deadline, isAnswered) &&
        send->state == tagSend::XState::Pending) {
        Abandon(*send);
    }
    send->answered.wait(lock, isAnswered); // a handler that runs is waited for
    if (send->state != tagSend::XState::Done) return 0;
    if (result) *result = send->result;
    return 1;
}

void XMessageHub::Abandon(tagSend& send)
{
    std::erase_if(m_waiting, [&](const auto& other) { return other.get() == &send; });
    send.state = tagSend::XState::Dead;
    send.answered.notify_all();
}

template <class Test>
void XMessageHub::AbandonWhere(Test test)
{
    const auto waiting = m_waiting;
    for (const auto& send : waiting) {
        if (test(*send)) Abandon(*send);
    }
    for (const auto& send : m_running) {
        if (!send->IsAnswered() && test(*send)) Abandon(*send);
    }
}

void XMessageHub::Release(XMessageWorker& worker)
{
    const std::lock_guard lock(m_mutex);
    worker.m_isReleased = true;
    AbandonWhere([&](const tagSend& send) { return send.worker == &worker; });
}

void XMessageHub::Lift(XMessageWorker& worker)
{
    const std::lock_guard lock(m_mutex);
    worker.m_isReleased = false;
}

int XMessageHub::IsReleased(const XMessageWorker& worker) const
{
    const std::lock_guard lock(m_mutex);
    return worker.m_isReleased ? 1 : 0;
}

void XMessageHub::Drain()
{
    std::size_t sendCount = 0;
    {
        const std::lock_guard lock(m_mutex);
        std::uint64_t count = 0;
        [[maybe_unused]] const auto got = ::read(m_eventFd, &count, sizeof count);
        m_isWoken = false;
        sendCount = m_waiting.size();
        // before any handler runs: an event loop inside one must find the rest
        if (sendCount > 1 || m_posts.size() > 1 || (sendCount > 0 && !m_posts.empty())) Wake();
    }
    while (sendCount-- > 0 && DeliverOneSend()) {
    }
    DeliverOnePost();
    const std::lock_guard lock(m_mutex);
    if (!m_waiting.empty() || !m_posts.empty()) Wake();
}

bool XMessageHub::DeliverOneSend()
{
    std::shared_ptr<tagSend> send;
    {
        const std::lock_guard lock(m_mutex);
        if (m_waiting.empty()) return false;
        send = m_waiting.front();
        m_waiting.pop_front();
        send->state = tagSend::XState::Running;
        m_running.push_back(send);
    }
    // the sender is answered even when the handler throws
    struct XFinish
    {
        XMessageHub& hub;
        tagSend& send;
        bool isDelivered = false;
        XLRESULT result = 0;

        ~XFinish()
        {
            const std::lock_guard lock(hub.m_mutex);
            if (!send.IsAnswered()) {
                send.result = result;
                send.state = isDelivered ? tagSend::XState::Done : tagSend::XState::Dead;
                send.answered.notify_all();
            }
            std::erase_if(hub.m_running, [&](const auto& other) { return other.get() == &send; });
        }
    } finish{*this, *send};
    finish.isDelivered = Call(send->message, finish.result) != 0;
    return true;
}

void XMessageHub::DeliverOnePost()
{
    tagPost post{};
    {
        const std::lock_guard lock(m_mutex);
        while (!m_posts.empty() && !Find(m_posts.front().window))
            m_posts.pop_front();
        if (m_posts.empty()) return;
        post = m_posts.front();
        m_posts.pop_front();
    }
    XLRESULT ignored = 0;
    Call(post, ignored);
}

XLRESULT XfnSendMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    XLRESULT result = 0;
    XMessageHub::Get().Send(window, message, wParam, lParam, kXForever, &result);
    return result;
}

int XfnPostMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    return XMessageHub::Get().Post(window, message, wParam, lParam);
}

int XfnSendMessageTimeout(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam,
                          unsigned timeoutMs, XLRESULT* result)
{
    return XMessageHub::Get().Send(window, message, wParam, lParam, timeoutMs, result);
}

int XfnIsWindow(XHWND window)
{
    return XMessageHub::Get().IsWindow(window);
}
