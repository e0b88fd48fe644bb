#include "host/XJobWidget.h"

#include "host/XJobRunner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

namespace {

constexpr int kTitleLetters = 30;
constexpr int kBarLetters = 14;

} // namespace

XJobWidget::XJobWidget(XJobRunner& jobs, QWidget* parent, const QString& name)
    : QWidget(parent),
      m_jobs(jobs),
      m_title(new QLabel(this)),
      m_bar(new QProgressBar(this)),
      m_cancel(new QToolButton(this))
{
    setObjectName(name);
    const int letter = fontMetrics().averageCharWidth();
    m_title->setObjectName(name + ".title");
    m_title->setMaximumWidth(kTitleLetters * letter);
    m_bar->setObjectName(name + ".progress");
    m_bar->setAccessibleName("Progress of the job");
    m_bar->setFixedWidth(kBarLetters * letter);
    m_bar->setMaximumHeight(fontMetrics().height() + 4);
    m_cancel->setObjectName(name + ".cancel");
    m_cancel->setText("Cancel");
    m_cancel->setToolTip("Cancel (Esc)");
    m_cancel->setAccessibleName("Cancel the job");
    QObject::connect(m_cancel, &QToolButton::clicked, this, [this] {
        m_cancel->setEnabled(false); // it takes a moment
        if (m_stop)
            m_stop();
        else
            m_jobs.Cancel();
    });
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_title);
    row->addWidget(m_bar);
    row->addWidget(m_cancel);
    Follow();
}

void XJobWidget::Follow()
{
    const bool isBusy = m_jobs.IsBusy();
    setVisible(isBusy);
    if (!isBusy) return;
    QString title = m_jobs.GetTitle();
    if (m_number != m_jobs.GetNumber()) m_cancel->setEnabled(true);
    m_number = m_jobs.GetNumber();
    m_title->setToolTip(title);
    if (const int waiting = m_jobs.GetWaiting()) title += QString(" (%1 more)").arg(waiting);
    m_title->setText(fontMetrics().elidedText(title, Qt::ElideMiddle, m_title->maximumWidth()));
    m_bar->setValue(m_jobs.GetPercent());
}
