#include "host/gallery/XFileDialogSheet.h"

#include "dialogs/CPreviewDlg.h"
#include "dialogs/XFileDialog.h"
#include "dialogs/XThreadDlg.h"
#include "foundation/platform/XQtText.h"
#include "foundation/platform/XThread.h"
#include "host/gallery/XPictureFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QProxyStyle>
#include <QThread>
#include <QTimer>
#include <QUrl>

namespace {

// Enters no text cursor into the picture: whether it blinks is a matter of time.
bool Save(QWidget& window, const QString& path)
{
    if (QWidget* focus = window.focusWidget()) focus->clearFocus();
    const QFileInfo info(path);
    return XfnSavePicture(window.grab().toImage(), info.path(), info.fileName().toUtf8());
}

/// A folder with a name and times that are the same on every machine.
QString MakeScenes(const QString& sample)
{
    const QDir folder(QDir::tempPath() + "/tql-scenes");
    const QDateTime time(QDate(2024, 5, 17), QTime(9, 30));
    folder.mkpath("terrain");
    for (const char* name : {"L7_ETMs.tif", "L7_ETMs_north.tif", "L7_ETMs_south.tif"}) {
        const QString path = folder.filePath(name);
        QFile::remove(path);
        QFile::copy(sample, path);
        QFile file(path);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        if (!file.open(QIODevice::Append)) return {};
        file.setFileTime(time, QFileDevice::FileModificationTime);
    }
    return folder.path();
}

bool SaveFileDialog(const QString& path, const QString& sample)
{
    const QString scenes = MakeScenes(sample);
    if (scenes.isEmpty()) return false;
    XFileDialog dialog;
    dialog.setViewMode(QFileDialog::List);
    dialog.setSidebarUrls({QUrl::fromLocalFile(scenes)});
    dialog.SetFolder(XfnFromQString(scenes));
    dialog.selectFile(scenes + "/L7_ETMs.tif");
    dialog.OnFileNameChange(XfnFromQString(scenes + "/L7_ETMs.tif"));
    dialog.show();
    for (int i = 0; i < 500 && !dialog.GetPreviewDlg()->GetPreview().isDone; ++i)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    for (int i = 0; i < 20; ++i) { // the list fills by a thread of its own
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(10);
    }
    const bool isSaved = Save(dialog, path);
    dialog.close();
    QDir(scenes).removeRecursively();
    return isSaved;
}

class XRestingStyle : public QProxyStyle
{
public:
    XRestingStyle() : QProxyStyle("Fusion") {}
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        return hint == SH_Widget_Animation_Duration
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

class XSampleDlg : public XThreadDlg
{
    int ThreadProcess(void*, XString&, XThread* thread) override
    {
        thread->CallbackPercent(40);
        while (!thread->IsStopRequested())
            QThread::msleep(5);
        return 0;
    }
};

bool SaveWorkerDialog(const QString& path, int isMarquee)
{
    XRestingStyle resting; // the bar would move
    XSampleDlg dialog;
    dialog.findChild<QProgressBar*>()->setStyle(&resting);
    dialog.SetTitle("Opening Data...");
    dialog.SetMessage(isMarquee ? "L7_ETMs.tif" : "Band 3 of 7");
    dialog.SetMarquee(isMarquee);
    bool isSaved = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        if (dialog.findChild<QLabel*>("thread.percent")->text() != "40") return;
        isSaved = Save(dialog, path);
        dialog.close();
    });
    poll.start(20);
    dialog.DoModal();
    return isSaved;
}

} // namespace

const char* XfnSaveFileDialogs(const QString& folder, const char* suffix, const QString& sample)
{
    const auto path = [&](const char* name) {
        return QDir(folder).filePath(QString("%1%2.png").arg(name, suffix));
    };
    if (!SaveFileDialog(path("filedialog"), sample)) return "filedialog";
    if (!SaveWorkerDialog(path("worker"), 0)) return "worker";
    return SaveWorkerDialog(path("worker-marquee"), 1) ? nullptr : "worker-marquee";
}
