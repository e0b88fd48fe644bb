#include "host/XAutosaveWriter.h"

#include <utility>

namespace {

constexpr unsigned kFailed = 1;

} // namespace

XAutosaveWriter::~XAutosaveWriter()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) m_thread.join();
    DestroyHandle();
}

void XAutosaveWriter::Add(int number, Work work)
{
    {
        const std::lock_guard lock(m_mutex);
        m_pieces.push_back({number, std::move(work)});
    }
    m_changed.notify_all();
    if (!m_thread.joinable()) m_thread = std::thread([this] { Run(); });
}

bool XAutosaveWriter::IsBusy()
{
    const std::lock_guard lock(m_mutex);
    return !m_pieces.empty();
}

void XAutosaveWriter::Wait()
{
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_pieces.empty(); });
    }
    TellFailures();
}

void XAutosaveWriter::Run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isEnding || !m_pieces.empty(); });
        if (m_pieces.empty()) return;
        const tagPiece piece = m_pieces.front(); // in the list until it is done: Wait looks there
        lock.unlock();
        QString message;
        const bool isDone = piece.work(message);
        lock.lock();
        if (!isDone) m_failures.push_back({piece.number, message});
        m_pieces.pop_front();
        lock.unlock();
        m_changed.notify_all();
        if (!isDone) XfnPostMessage(GetHWND(), kFailed, 0, 0);
        lock.lock();
    }
}

XLRESULT XAutosaveWriter::OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    if (message != kFailed) return XMessageWindow::OnWindowMessage(message, wParam, lParam);
    TellFailures();
    return 0;
}

void XAutosaveWriter::TellFailures()
{
    std::deque<tagFailure> failures;
    {
        const std::lock_guard lock(m_mutex);
        failures.swap(m_failures);
    }
    for (const tagFailure& failure : failures)
        if (m_failed) m_failed(failure.number, failure.message);
}
