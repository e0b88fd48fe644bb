#include "host/XJobRunner.h"

#include "foundation/platform/XQtText.h"

XJobRunner::XJobRunner() = default;

XJobRunner::~XJobRunner()
{
    DestroyHandle();
}

void XJobRunner::Tell() const
{
    if (m_changed) m_changed();
}

void XJobRunner::Add(tagJob job)
{
    m_jobs.push_back(std::move(job));
    if (!m_isBusy) Start();
    Tell();
}

void XJobRunner::Start()
{
    m_percent = 0;
    ++m_number;
    m_isBusy = !m_jobs.empty();
    if (!m_isBusy) return;
    const auto run = [this, work = m_jobs.front().work](void*) -> unsigned {
        tagXSaveControl control;
        control.thread = &m_thread;
        QString message;
        if (work(control, message))
            m_thread.CallbackSuccess();
        else if (m_thread.IsStopRequested())
            m_thread.CallbackCancel();
        else
            m_thread.CallbackFail(XfnFromQString(message));
        return 0;
    };
    if (m_thread.Create(this, GetHWND(), run, nullptr)) return;
    const tagJob job = std::move(m_jobs.front());
    m_jobs.clear();
    m_isBusy = false;
    if (job.ended) job.ended(false, false, "The system gives no thread for it.");
}

void XJobRunner::Cancel()
{
    if (m_isBusy) m_thread.Terminate();
}

void XJobRunner::CancelAll()
{
    if (!m_isBusy) return;
    m_jobs.erase(m_jobs.begin() + 1, m_jobs.end());
    m_thread.Terminate();
    m_thread.Wait();
    Finish(m_thread.GetStatus());
}

XLRESULT XJobRunner::OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    if (message != kXThreadMessage || wParam != reinterpret_cast<XWPARAM>(&m_thread) || !m_isBusy)
        return XMessageWindow::OnWindowMessage(message, wParam, lParam);
    const int status = m_thread.GetStatus();
    if (status == kXThreadPercent) {
        m_percent = static_cast<int>(lParam);
        Tell();
    } else if (status != kXThreadNone && status != kXThreadText) {
        Finish(status);
    }
    return 0;
}

void XJobRunner::Finish(int status)
{
    m_thread.Wait(); // its last words were said
    const QString why = XfnToQString(m_thread.GetText()).trimmed();
    const tagJob job = std::move(m_jobs.front());
    m_jobs.pop_front();
    m_isBusy = false;
    if (job.ended) job.ended(status == kXThreadSuccess, status == kXThreadCancel, why);
    if (!m_isBusy) Start(); // the end of one may have begun another
    Tell();
}
