#pragma once

#include <QWidget>

#include <functional>
#include <utility>

class QLabel;
class QProgressBar;
class QToolButton;
class XJobRunner;

/// The job at hand in the status bar: its title, how far it is, and a button that stops it. Hidden
/// while there is none. The runner outlives it.
class XJobWidget : public QWidget
{
public:
    /// @param name  of the object; its parts have it with an ending
    XJobWidget(XJobRunner& jobs, QWidget* parent, const QString& name = "status.job");
    /// What the button does instead of stopping the job at hand.
    void SetStop(std::function<void()> stop) { m_stop = std::move(stop); }
    void Follow(); ///< shows the present state of the runner

private:
    XJobRunner& m_jobs;
    std::function<void()> m_stop;
    int m_number = 0; // of the job that is shown
    QLabel* m_title;
    QProgressBar* m_bar;
    QToolButton* m_cancel;
};
