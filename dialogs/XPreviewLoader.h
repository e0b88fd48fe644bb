#pragma once

#include "foundation/base/XString.h"
#include "foundation/platform/XMessageWindow.h"

#include <QImage>
#include <QTimer>

#include <functional>
#include <memory>

/// What the raster file dialog shows of one file.
struct tagXFilePreview
{
    XString path{};
    XString report{};      ///< empty while it is not known, and for what is no raster
    XString message{};     ///< instead of the picture: why there is none, or none yet
    QImage picture{};      ///< null while there is none
    bool isOpened = false; ///< the file was opened: the report and the next are right
    bool isComplex = false;
    bool isDone = false; ///< nothing more comes
};

/// Reads previews of files beside the user interface: the newest request wins.
///
/// Each request has a thread that knows nothing but its own record, so one that hangs in a slow file
/// is left behind and cannot touch what was freed; a few at most run at once in the process. The report comes first,
/// then the picture. A picture that takes longer than the time-out is given up with a message.
/// At the end of the program those left behind are waited for some seconds.
/// Threads: user interface only.
class XAPI XPreviewLoader : public XMessageWindow
{
public:
    XPreviewLoader();
    ~XPreviewLoader() override; ///< leaves its threads behind, stopped

    /// Called for each news of the file asked for last.
    void SetChanged(std::function<void(const tagXFilePreview&)> changed)
    {
        m_changed = std::move(changed);
    }

    /// @param maxSide  of the picture, in its pixels; 0 wants the report alone
    void Request(const XString& path, int maxSide);
    void Cancel(); ///< nothing more comes of the last request
    /// Of the picture, and until a slow file is told so; 3000 at first.
    void SetTimeout(int milliseconds) { m_timeoutMs = milliseconds; }

    XLRESULT OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam) override;

private:
    struct tagJob;

    static void Run(const std::shared_ptr<tagJob>& job);
    void Start();
    void OnReport(bool isDone);
    void OnTimeout();

    std::function<void(const tagXFilePreview&)> m_changed;
    std::shared_ptr<tagJob> m_job; // the newest; null after a cancel
    bool m_isWaiting = false;      // it has no thread yet
    int m_number = 0;
    int m_timeoutMs = 3000;
    QTimer m_timer;
    QTimer m_retry; // threads of other loaders tell nobody here that they end
};
