#pragma once

#include "foundation/base/XString.h"
#include "foundation/platform/XMessageWindow.h"

#include <QDialog>

#include <memory>

class QLabel;
class QProgressBar;
class QPushButton;
class XThread;

/// The modal progress dialog of long work: one worker thread, a bar, a text and Cancel.
///
/// A subclass supplies the work as ThreadProcess. It reports through the thread it is given, whose
/// posts become the four hooks here; it never touches a window.
///
///     XThreadDlgOpen dialog(parent);
///     dialog.SetTitle("Opening Data...");
///     if (dialog.DoModal() == XThreadDlg::kOk) ...
///
/// Cancelling: the button, Escape and closing the window raise the thread's stop flag and close
/// the window at once. DoModal returns when the work has ended, since the work runs on the object
/// of the subclass: work that looks at its stop flag now and then ends soon, work that does not
/// keeps the caller waiting, and in no case does it meet memory that was freed. No key but Escape
/// cancels: the Return that began the work may still be held down.
/// The inputs of the work are set before DoModal and stay as they are until it returns.
/// Threads: user interface only, but for ThreadProcess, which runs on the worker. Status and text
/// of a report are read when it arrives, so a later one may have overwritten them; percents travel
/// with their message.
class XAPI XThreadDlg : public QDialog, public XMessageWindow
{
public:
    static constexpr int kOk = 1;
    static constexpr int kCancel = 2;

    explicit XThreadDlg(QWidget* parent = nullptr);
    ~XThreadDlg() override;

    /// Makes sure that the directory for temporary files exists, and runs the work.
    /// @return kOk on success, else kCancel
    int DoModal();

    XThread* GetThread() const { return m_thread.get(); } ///< null before the first DoModal
    void* GetProcessOwner() const { return m_processOwner; }
    void SetProcessOwner(void* owner) { m_processOwner = owner; } ///< handed to hooks and work
    void SetTitle(const XString& title);
    const XString& GetTitle() const { return m_title; }
    void SetMessage(const XString& text); ///< before the dialog opens it is kept for its opening
    void SetPercent(int percent);
    void SetUnit(const XString& unit); ///< behind the number; "%" at first
    /// Non-zero before DoModal: the bar shows that something happens, not how far it is, and the
    /// unit is empty.
    void SetMarquee(int isOn) { m_isMarquee = isOn; }
    /// Work that ends within so many milliseconds shows no window; input of the user waits meanwhile.
    /// 0, as at first, shows it at once.
    void SetShowDelay(int milliseconds) { m_showDelayMs = milliseconds; }
    void EnableXDMOutputEncryption(int isOn) { m_isOutputEncrypted = isOn; } ///< carried for hosts
    int IsXDMOutputEncryptionEnabled() const { return m_isOutputEncrypted; }

    void Suspend(); ///< all three do nothing without a thread
    void Resume();
    void Terminate();

    XLRESULT OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam) override;

protected:
    virtual void OnCallbackFail(void* owner, const XString& text);
    virtual void OnCallbackSuccess(void* owner);
    virtual void OnCallbackPercent(void* owner, int percent);      ///< SetPercent
    virtual void OnCallbackText(void* owner, const XString& text); ///< SetMessage
    /// The work, on the worker thread.
    /// @param error  a sentence for OnCallbackFail
    /// @return non-zero on success
    virtual int ThreadProcess(void* owner, XString& error, XThread* thread) = 0;

    /// Starts the work and shows what was set before. An earlier worker is stopped and gone by then.
    virtual void OnInitDialog();
    /// A report of the worker has come.
    virtual void OnThreadCallback(XThread* thread, int percent);
    virtual void OnTerminate(); ///< stops the work and closes the dialog as cancelled
    void reject() override { OnTerminate(); }

private:
    static constexpr int kNoPercent = -1;

    void WaitUnseen();
    void ShowState();

    std::unique_ptr<XThread> m_thread;
    void* m_processOwner = nullptr;
    XString m_title;
    XString m_message;
    XString m_unit{"%"};
    int m_percent = kNoPercent;
    int m_isReady = 0; // the dialog is open
    int m_isEnded = 0; // the work ended or was cancelled: what still comes is not looked at
    int m_isMarquee = 0;
    int m_showDelayMs = 0;
    int m_isOutputEncrypted = 0;
    QLabel* m_messageLabel;
    QProgressBar* m_bar;
    QLabel* m_percentLabel;
    QLabel* m_unitLabel;
    QPushButton* m_cancel;
};
