#include "dialogs/XPreviewLoader.h"

#include "dialogs/XDetachedThread.h"
#include "dialogs/XFilePreviewModel.h"
#include "dialogs/XThumbnail.h"
#include "foundation/platform/XQtText.h"
#include "foundation/platform/XThread.h"
#include "foundation/raster/XRSFile.h"

#include <QFileInfo>

#include <atomic>
#include <mutex>

namespace {

constexpr unsigned kPreviewMessage = 2025; // number of the request, what came
constexpr int kReport = 0, kPicture = 1, kThreadEnd = 2;

constexpr int kStopped = 1, kTooSlow = 2; // a job's stop word

constexpr int kMostThreads = 4; // of the process: hanging ones pile up no further
constexpr int kRetryMs = 50;

std::atomic<int> runningThreads{0};

struct tagThreadCount
{
    tagThreadCount() = default;
    tagThreadCount(const tagThreadCount&) = delete;
    tagThreadCount& operator=(const tagThreadCount&) = delete;
    ~tagThreadCount() { --runningThreads; }
};

} // namespace

struct XPreviewLoader::tagJob
{
    XHWND window;
    int number;
    XString path;
    int maxSide;
    std::atomic<int> stop{0};
    XThread opening;  // never started: its stop flag is the reader's
    std::mutex mutex; // of the preview
    tagXFilePreview preview;

    void Post(int what)
    {
        XfnPostMessage(window, kPreviewMessage, static_cast<XWPARAM>(number), what);
    }
};

XPreviewLoader::XPreviewLoader()
{
    m_timer.setSingleShot(true);
    m_retry.setSingleShot(true);
    QObject::connect(&m_retry, &QTimer::timeout, &m_retry, [this] { Start(); });
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { OnTimeout(); });
}

XPreviewLoader::~XPreviewLoader()
{
    Cancel();
    DestroyHandle();
}

void XPreviewLoader::Request(const XString& path, int maxSide)
{
    Cancel();
    m_job = std::make_shared<tagJob>();
    m_job->window = GetHWND();
    m_job->number = ++m_number;
    m_job->path = path;
    m_job->maxSide = maxSide;
    m_job->preview.path = path;
    m_isWaiting = true;
    m_timer.start(m_timeoutMs);
    Start();
}

void XPreviewLoader::Cancel()
{
    m_timer.stop();
    m_isWaiting = false;
    if (!m_job) return;
    m_job->stop = kStopped;
    m_job->opening.Terminate();
    m_job.reset();
}

void XPreviewLoader::Start()
{
    if (!m_isWaiting) return;
    if (runningThreads >= kMostThreads) return m_retry.start(kRetryMs);
    m_isWaiting = false;
    ++runningThreads;
    const int isStarted = XfnStartDetached([job = m_job] {
        {
            const tagThreadCount count;
            Run(job);
        }
        job->Post(kThreadEnd);
    });
    if (isStarted) return;
    --runningThreads;
    m_job->preview.message = "No preview: the system has no thread to read the file on.";
    m_job->Post(kPicture);
}

void XPreviewLoader::Run(const std::shared_ptr<tagJob>& job)
{
    const auto tell = [&](int what, auto&& write) {
        {
            const std::lock_guard lock(job->mutex);
            write(job->preview);
        }
        job->Post(what);
    };
    try {
        if (job->stop == kStopped) return;
        XString error;
        const auto file = XFilePreviewModel::Load(job->path, XFilePreviewModel::kEverything,
                                                  &job->opening, error);
        if (job->stop == kStopped) return;
        if (!file) {
            tell(kPicture, [&](tagXFilePreview& preview) { preview.message = error; });
            return;
        }
        const QFileInfo info(XfnToQString(job->path));
        const XString report =
            XFilePreviewModel::MakeReport(*file, info.isFile() ? info.size() : -1);
        tell(job->maxSide > 0 ? kReport : kPicture, [&](tagXFilePreview& preview) {
            preview.report = report;
            preview.isOpened = true;
            preview.isComplex = XFilePreviewModel::IsComplex(*file);
            preview.message.Empty();
        });
        if (job->maxSide <= 0) return;
        QImage picture;
        XString message;
        XfnDrawThumbnail(*file, job->maxSide, kXThumbnailBytes, &job->stop, picture, message);
        if (job->stop == kStopped) return;
        if (job->stop == kTooSlow && picture.isNull())
            message = "No quick preview: reading the file takes too long.";
        tell(kPicture, [&](tagXFilePreview& preview) {
            preview.picture = picture;
            preview.message = message;
        });
    } catch (const std::exception&) { // memory, in the end
        tell(kPicture, [](tagXFilePreview& preview) {
            preview.message = "There is not enough memory for a preview.";
        });
    }
}

XLRESULT XPreviewLoader::OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    if (message != kPreviewMessage) return XMessageWindow::OnWindowMessage(message, wParam, lParam);
    if (lParam == kThreadEnd) {
        Start();
    } else if (m_job && wParam == static_cast<XWPARAM>(m_job->number)) {
        OnReport(lParam == kPicture);
    }
    return 0;
}

void XPreviewLoader::OnReport(bool isDone)
{
    tagXFilePreview preview;
    {
        const std::lock_guard lock(m_job->mutex);
        preview = m_job->preview;
    }
    preview.isDone = isDone;
    if (isDone)
        m_timer.stop();
    else
        m_timer.start(m_timeoutMs);
    if (m_changed) m_changed(preview);
}

void XPreviewLoader::OnTimeout()
{
    if (!m_job) return;
    tagXFilePreview preview;
    {
        const std::lock_guard lock(m_job->mutex);
        preview = m_job->preview;
    }
    if (preview.isOpened) {
        m_job->stop = kTooSlow; // the thread tells
        return;
    }
    preview.message = "The file takes long to open...";
    if (m_changed) m_changed(preview);
}
