#pragma once

#include "foundation/platform/XMessageWindow.h"
#include "foundation/platform/XThread.h"
#include "foundation/raster/XSaveControl.h"

#include <QString>

#include <deque>
#include <functional>

/// Long work of the window, one job after the other on a thread of its own.
///
/// User interface thread, but for the work itself. The destructor stops the job at hand and waits
/// for it; those that wait are dropped. `ended` of neither is called then.
class XJobRunner : public XMessageWindow
{
public:
    struct tagJob
    {
        QString title; ///< "Pyramid of scene.tif"
        /// Runs on the worker; polls and reports through the control.
        /// @return false with a sentence, which may stay empty after a stop
        std::function<bool(const tagXSaveControl& control, QString& message)> work;
        /// In the user interface thread, whatever became of it.
        std::function<void(bool isDone, bool isStopped, const QString& message)> ended;
    };

    XJobRunner();
    ~XJobRunner() override;

    /// Called after every change: a job started, went on or ended.
    void SetChanged(std::function<void()> changed) { m_changed = std::move(changed); }

    void Add(tagJob job); ///< behind those that wait
    void Cancel();        ///< stops the job at hand; the next one follows
    void CancelAll();     ///< stops it, drops the others, and waits until it has ended

    bool IsBusy() const { return m_isBusy; }
    int GetNumber() const { return m_number; }   ///< of the job at hand; none has it again
    int GetPercent() const { return m_percent; } ///< of the job at hand
    QString GetTitle() const { return m_isBusy ? m_jobs.front().title : QString(); }
    int GetWaiting() const { return m_isBusy ? static_cast<int>(m_jobs.size()) - 1 : 0; }

    XLRESULT OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam) override;

private:
    void Start();
    void Finish(int status);
    void Tell() const;

    std::function<void()> m_changed;
    std::deque<tagJob> m_jobs; // the first is at hand while busy
    bool m_isBusy = false;
    int m_number = 0;
    int m_percent = 0;
    XThread m_thread; // last: it ends before what its work uses
};
