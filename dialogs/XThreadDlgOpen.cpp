#include "dialogs/XThreadDlgOpen.h"

#include "dialogs/XDetachedThread.h"
#include "dialogs/XFileDialog.h"
#include "dialogs/XFilePreviewModel.h"
#include "foundation/base/XPath.h"
#include "foundation/platform/XThread.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/reference/XCoordinateTransformation.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kStopPoll(10);

/// An opening that may be left behind.
struct tagLoad
{
    XString path;
    XThread opening;  // never started: its stop flag is the reader's
    std::mutex mutex; // of the rest
    std::condition_variable ended;
    bool isEnded = false;
    std::unique_ptr<XRSFile> file;
    XString error;
};

void Run(tagLoad& load)
{
    std::unique_ptr<XRSFile> file;
    XString error;
    try {
        file.reset(XFileDialog::GetXRSFile(load.path, XFilePreviewModel::kEverything, &load.opening,
                                           &error));
        XfnCleanupCoord();
    } catch (const std::exception&) { // memory, in the end
        error = "There is not enough memory for this operation.";
    }
    const std::lock_guard lock(load.mutex);
    load.file = std::move(file);
    load.error = error;
    load.isEnded = true;
    load.ended.notify_all();
}

} // namespace

XThreadDlgOpen::XThreadDlgOpen(QWidget* parent) : XThreadDlg(parent)
{
    SetTitle("Opening Data...");
    SetMarquee(1); // a reader does not tell how far it is
}

XThreadDlgOpen::~XThreadDlgOpen() = default;

std::unique_ptr<XRSFile> XThreadDlgOpen::TakeXRSFile()
{
    return std::move(m_file);
}

std::unique_ptr<XRSFile> XThreadDlgOpen::Open(const XString& path)
{
    SetFilePath(path);
    SetMessage(XfnGetFileName(path));
    m_error.Empty();
    if (DoModal() != kOk) m_file.reset();
    return TakeXRSFile();
}

int XThreadDlgOpen::ThreadProcess(void*, XString& error, XThread* thread)
{
    m_file.reset();
    const auto load = std::make_shared<tagLoad>();
    load->path = m_path;
    if (!XfnStartDetached([load] { Run(*load); })) {
        error = XfnFormat("\"%s\": the system has no thread to read it on.", m_path);
        return 0;
    }
    std::unique_lock lock(load->mutex);
    while (!load->ended.wait_for(lock, kStopPoll, [&] { return load->isEnded; }))
        if (thread->IsStopRequested()) {
            load->opening.Terminate();
            return 0;
        }
    m_file = std::move(load->file);
    error = load->error;
    return m_file != nullptr;
}

void XThreadDlgOpen::OnCallbackSuccess(void*)
{
    if (GetThread()->IsStopRequested()) m_file.reset();
}

void XThreadDlgOpen::OnCallbackFail(void*, const XString& text)
{
    m_file.reset();
    m_error = text;
}
