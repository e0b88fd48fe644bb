#include "dialogs/XQtPromptsDialog.h"
#include "foundation/platform/XUserSettings.h"
#include "foundation/raster/XTileCache.h"
#include "host/XCommandLine.h"
#include "host/XConvertJob.h"
#include "host/XEndSignals.h"
#include "host/XMainWindow.h"
#include "host/XRenderJob.h"
#include "vecprop/XvcObjectDialogs.h"
#include "wnd/XViewDialogBinding.h"

#include <QApplication>
#include <QSessionManager>

#include <atomic>
#include <clocale>
#include <csignal>
#include <cstdio>

#include <unistd.h>

namespace {

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

void Say(std::FILE* stream, const QString& text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
}

int Render(int argc, char** argv, const tagXRenderRequest& request)
{
    // no display is needed, so none is asked for, whatever the session offers
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // the error stream is for what became of the picture, not for remarks of the toolkit
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg) Say(stderr, text + "\n");
    });
    QGuiApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QString message;
    const RenderResult result = XfnRenderToFile(request, message);
    if (result == RenderResult::Done) return 0;
    Say(stderr, QString("tqlview: %1\n").arg(message));
    return result == RenderResult::Misused ? kExitUsage : kExitFailed;
}

std::atomic<int> g_isStopped{0}; // a signal handler may touch nothing else
static_assert(std::atomic<int>::is_always_lock_free);

int Convert(int argc, char** argv, const tagXConvertRequest& request)
{
    QCoreApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    // a stop is a failure like any other: the unfinished file must go
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, [](int) { g_isStopped = 1; });
    // every tile is needed once; a share of the memory as for looking around would be taken in vain
    XTileCache::Get().SetBudget(std::size_t(256) << 20);
    // one line that counts up where somebody watches, a line for every ten percent in a log
    const bool isWatched = isatty(STDERR_FILENO);
    const auto show = [&](int percent) {
        if (isWatched)
            Say(stderr, QString("\r%1 %").arg(percent, 3));
        else if (percent % 10 == 0)
            Say(stderr, QString("%1 %\n").arg(percent));
    };
    QString message;
    const bool isDone = XfnConvertFile(request, show, &g_isStopped, message);
    if (isWatched) Say(stderr, "\n");
    if (isDone) return 0;
    Say(stderr, QString("tqlview: %1\n").arg(message));
    return kExitFailed;
}

int RunWindow(int argc, char** argv, const tagXCommandLine& line)
{
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QCoreApplication::setOrganizationName("tql");
    QCoreApplication::setApplicationName("tqlview");
    QCoreApplication::setApplicationVersion(TQL_VERSION);
    QGuiApplication::setApplicationDisplayName("tqlview");
    QGuiApplication::setDesktopFileName("org.tql.tqlview");
    // elsewhere on the desktop forward means nearer; the View menu turns it round
    if (XSessionSettings().TakeFirstRun()) XfnSetInvertMouseWheelZoomDir(true);

    XQtPromptsDialog prompts;
    XPrompts::Set(&prompts);
    XfnBindObjectDialogs(XNewObjects::Keep);
    XfnBindViewDialogs();
    XMainWindow window(TQL_VERSION);
    window.Place(line.windowSize, line.windowPos, line.hasWindowPos);
    if (!line.files.isEmpty()) window.OpenAfterFirstPaint(line.files);
    window.show();
    // the desktop ends the session: it may still be called off
    QObject::connect(
        &app, &QGuiApplication::commitDataRequest, &window,
        [&window](QSessionManager&) { window.KeepSession(); }, Qt::DirectConnection);
    const XEndSignals signals([&window] {
        window.KeepSession();
        QCoreApplication::exit(0); // quit() would ask each window, and that one its user
    });
    return app.exec();
}

} // namespace

int main(int argc, char** argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words.append(QString::fromLocal8Bit(argv[i]));
    const tagXCommandLine line = XfnParseCommandLine(words);
    switch (line.mode) {
    case CommandMode::Help:
        Say(stdout, XfnHelpText());
        return 0;
    case CommandMode::Version:
        Say(stdout, QString("tqlview %1\n").arg(TQL_VERSION));
        return 0;
    case CommandMode::Wrong:
        Say(stderr, QString("tqlview: %1\nTry 'tqlview --help'.\n").arg(line.message));
        return kExitUsage;
    case CommandMode::Render:
        return Render(argc, argv, line.render);
    case CommandMode::Convert:
        return Convert(argc, argv, line.convert);
    case CommandMode::Window:
        break;
    }
    return RunWindow(argc, argv, line);
}
