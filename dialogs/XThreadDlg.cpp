#include "dialogs/XThreadDlg.h"

#include "foundation/platform/XQtText.h"
#include "foundation/platform/XTempFolder.h"
#include "foundation/platform/XThread.h"

#include <QEventLoop>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kBarWidth = 320;

} // namespace

XThreadDlg::XThreadDlg(QWidget* parent)
    : QDialog(parent),
      m_messageLabel(new QLabel(this)),
      m_bar(new QProgressBar(this)),
      m_percentLabel(new QLabel(this)),
      m_unitLabel(new QLabel(this)),
      m_cancel(new QPushButton(tr("Cancel"), this))
{
    setObjectName("thread");
    m_messageLabel->setObjectName("thread.message");
    m_bar->setObjectName("thread.bar");
    m_percentLabel->setObjectName("thread.percent");
    m_unitLabel->setObjectName("thread.unit");
    m_cancel->setObjectName("thread.cancel");
    m_cancel->setAutoDefault(false);
    m_messageLabel->setTextFormat(Qt::PlainText);
    m_messageLabel->setMinimumWidth(kBarWidth);
    m_bar->setTextVisible(false);
    m_bar->setRange(0, 100);
    m_percentLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // room for three digits, so that the bar does not change its length on the way
    m_percentLabel->setMinimumWidth(m_percentLabel->fontMetrics().horizontalAdvance("100"));

    auto* row = new QHBoxLayout;
    row->addWidget(m_bar, 1);
    row->addWidget(m_percentLabel);
    row->addWidget(m_unitLabel);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_messageLabel);
    column->addLayout(row);
    column->addLayout(buttons);
    column->setSizeConstraint(QLayout::SetFixedSize);
    connect(m_cancel, &QPushButton::clicked, this, [this] { reject(); });
}

XThreadDlg::~XThreadDlg()
{
    DestroyHandle();
}

int XThreadDlg::DoModal()
{
    XfnMakeTempFolder();
    setModal(true);
    m_isEnded = 0;
    OnInitDialog();
    if (m_showDelayMs > 0) WaitUnseen();
    const int code = m_isEnded ? result() : exec();
    m_isReady = 0;
    m_percent = kNoPercent;
    m_thread->Terminate();
    m_thread->Wait();
    return code == QDialog::Accepted ? kOk : kCancel;
}

void XThreadDlg::WaitUnseen()
{
    QEventLoop loop;
    QObject::connect(this, &QDialog::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(m_showDelayMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void XThreadDlg::OnInitDialog()
{
    m_thread = std::make_unique<XThread>(); // ends the one before
    m_isReady = 1;
    m_bar->setRange(0, m_isMarquee ? 0 : 100);
    if (m_isMarquee) m_unit = "";
    ShowState();
    XThread* const thread = m_thread.get();
    const auto work = [this, thread](void*) -> unsigned {
        XString error;
        if (ThreadProcess(m_processOwner, error, thread)) {
            thread->CallbackSuccess();
        } else {
            thread->CallbackFail(error);
        }
        return 0;
    };
    if (thread->Create(this, GetHWND(), work, this)) return;
    OnCallbackFail(m_processOwner, "There is no thread to work on.");
    QMetaObject::invokeMethod(
        this, [this] { reject(); }, Qt::QueuedConnection);
}

XLRESULT XThreadDlg::OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    if (message != kXThreadMessage) return XMessageWindow::OnWindowMessage(message, wParam, lParam);
    // reports that were under way when the work ended show its end once more
    if (m_thread && reinterpret_cast<XWPARAM>(m_thread.get()) == wParam && !m_isEnded)
        OnThreadCallback(m_thread.get(), static_cast<int>(lParam));
    return 0;
}

void XThreadDlg::OnThreadCallback(XThread* thread, int percent)
{
    switch (thread->GetStatus()) {
    case kXThreadSuccess:
        m_isEnded = 1;
        OnCallbackSuccess(m_processOwner);
        Terminate();
        accept();
        break;
    case kXThreadFail:
        m_isEnded = 1;
        OnCallbackFail(m_processOwner, thread->GetText());
        OnTerminate();
        break;
    case kXThreadPercent:
        OnCallbackPercent(m_processOwner, percent);
        break;
    case kXThreadText:
        OnCallbackText(m_processOwner, thread->GetText());
        break;
    default:
        break;
    }
}

void XThreadDlg::OnTerminate()
{
    m_isEnded = 1;
    Terminate();
    QDialog::reject();
}

void XThreadDlg::OnCallbackFail(void*, const XString&) {}

void XThreadDlg::OnCallbackSuccess(void*) {}

void XThreadDlg::OnCallbackPercent(void*, int percent)
{
    SetPercent(percent);
}

void XThreadDlg::OnCallbackText(void*, const XString& text)
{
    SetMessage(text);
}

void XThreadDlg::ShowState()
{
    if (!m_isReady) return;
    m_messageLabel->setText(XfnToQString(m_message));
    m_percentLabel->setText(m_percent == kNoPercent ? QString() : QString::number(m_percent));
    m_unitLabel->setText(XfnToQString(m_unit));
    if (!m_isMarquee) m_bar->setValue(std::max(m_percent, 0));
}

void XThreadDlg::SetTitle(const XString& title)
{
    m_title = title;
    setWindowTitle(XfnToQString(title));
}

void XThreadDlg::SetMessage(const XString& text)
{
    m_message = text;
    ShowState();
}

void XThreadDlg::SetPercent(int percent)
{
    m_percent = percent;
    ShowState();
}

void XThreadDlg::SetUnit(const XString& unit)
{
    m_unit = unit;
    ShowState();
}

void XThreadDlg::Suspend()
{
    if (m_thread) m_thread->Suspend();
}

void XThreadDlg::Resume()
{
    if (m_thread) m_thread->Resume();
}

void XThreadDlg::Terminate()
{
    if (m_thread) m_thread->Terminate();
}
