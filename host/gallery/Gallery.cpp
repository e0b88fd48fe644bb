// Pictures of the windows and of the vector classes, for the documentation and for the eye: tql_gallery FOLDER

#include "foundation/surface/XBackBuffer.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "host/XAutosave.h"
#include "host/XAutosaveActions.h"
#include "host/XBusyWidget.h"
#include "host/XFileActions.h"
#include "host/XHostView.h"
#include "host/XJobRunner.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XMainWindow.h"
#include "host/XObjectPicker.h"
#include "host/gallery/XEnhanceSheet.h"
#include "host/gallery/XFileDialogSheet.h"
#include "host/gallery/XObjectDialogSheet.h"
#include "host/gallery/XPaletteSheet.h"
#include "host/gallery/XPictureFile.h"
#include "host/gallery/XVectorScene.h"
#include "host/gallery/XVectorSheet.h"

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>
#include <QProcess>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QThread>
#include <QToolButton>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr QSize kWindow(960, 620);
constexpr QSize kWindowAt150(840, 560); // in units of the toolkit

enum class Moment {
    Rest,
    ZoomRect, ///< a zoom rectangle is being pulled open
    Busy,     ///< the status bar alone, while passes run
    Offer,    ///< a pyramid is offered, and a job is at hand
    Buttons,  ///< the panel of buttons over the image, its popup open
    Table,    ///< the same with the attribute table, and a file that has no coordinate system
    Vectors,  ///< a vector file over the image, one of its objects selected
    Drawing,  ///< objects drawn over the image with the mouse
    Typing,   ///< a text box of these is being typed into
    Undo,     ///< the Edit menu after it
    Recovery, ///< edits of a run that did not end well are offered
    Keys      ///< the key map
};

struct tagXShot
{
    const char* name;
    bool isDark;
    Moment moment = Moment::Rest;
};

QPalette MakePalette(bool isDark)
{
    if (!isDark) return QApplication::style()->standardPalette();
    QPalette palette(QColor(0x35, 0x35, 0x35), QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::AlternateBase, QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xb0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText,
          QPalette::ToolTipText}) {
        palette.setColor(role, QColor(0xe6, 0xe6, 0xe6));
        palette.setColor(QPalette::Disabled, role, QColor(0x86, 0x86, 0x86));
    }
    return palette;
}

void Settle(XMainWindow& window)
{
    while (window.GetView().IsBusy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
}

// A view that is dear to draw puts off what a drag leaves to be drawn: then it would be busy anew.
void SettleForGood(XMainWindow& window)
{
    constexpr int kQuietMs = 300;
    QElapsedTimer quiet;
    quiet.start();
    while (quiet.elapsed() < kQuietMs) {
        if (window.GetView().IsBusy()) quiet.restart();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
}

void SendMouse(QWidget& to, QEvent::Type type, QPointF at, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    QMouseEvent event(type, at, to.mapToGlobal(at), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&to, &event);
}

bool PickOverVectors(XMainWindow& window)
{
    const QTemporaryDir folder;
    const QString path = XfnWriteVectorScene(folder.path());
    if (path.isEmpty() || window.GetFiles().OpenFiles({path}) != 1) return false;
    while (window.GetLoads().IsBusy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    Settle(window);
    // a layer, whose properties name no folder of this machine
    window.GetTree().SetCurrent(window.GetTree().GetNode(0, 2));
    XTQSpaceView& view = window.GetView();
    double x = kVectorScenePlace[0];
    double y = kVectorScenePlace[1];
    view.GetBackBuffer()->ConvWorldToPixelCoord(x, y);
    const QPointF at = QPointF(x, y) / view.devicePixelRatioF();
    SendMouse(view, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
    SendMouse(view, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    Settle(window);
    return window.GetPicker().GetObject() != nullptr;
}

bool ShowTable(XMainWindow& window)
{
    const QTemporaryDir folder;
    const QString sketch = XfnWriteSketch(folder.path());
    if (sketch.isEmpty() || window.GetFiles().OpenFiles({sketch}) != 1) return false;
    while (window.GetLoads().IsBusy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    window.GetActions().Get("layer.table")->trigger();
    return PickOverVectors(window);
}

void Drag(XMainWindow& window, const char* tool, QPointF from, QPointF to)
{
    XTQSpaceView& view = window.GetView();
    window.GetActions().Get(tool)->trigger();
    SendMouse(view, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    SendMouse(view, QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
    SendMouse(view, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

void ClickAlong(XMainWindow& window, const char* tool, const std::vector<QPointF>& points)
{
    XTQSpaceView& view = window.GetView();
    window.GetActions().Get(tool)->trigger();
    for (const QPointF& at : points) {
        SendMouse(view, QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton);
        SendMouse(view, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
        SendMouse(view, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
    }
    SendMouse(view, QEvent::MouseButtonDblClick, points.back(), Qt::LeftButton, Qt::LeftButton);
    SendMouse(view, QEvent::MouseButtonRelease, points.back(), Qt::LeftButton, Qt::NoButton);
}

void DrawWithMouse(XMainWindow& window)
{
    XTQSpaceView& view = window.GetView();
    Drag(window, "draw.rectangle", {30, 30}, {140, 110});
    view.SetFillStyle(tagXFillStyle(tagXFillStyle::kSolid));
    Drag(window, "draw.ellipse", {230, 75}, {290, 115});
    view.SetFillStyle(tagXFillStyle(tagXFillStyle::kNone));
    Drag(window, "draw.line", {30, 150}, {140, 210});
    Drag(window, "draw.arrow", {170, 210}, {290, 150});
    ClickAlong(window, "draw.polyline", {{30, 260}, {80, 230}, {120, 290}, {170, 250}});
    ClickAlong(window, "draw.curve", {{200, 280}, {230, 220}, {270, 300}, {310, 240}});
    view.SetXvcLineColor(0xFF00C8FFu);
    ClickAlong(window, "draw.polygon", {{340, 60}, {430, 40}, {460, 130}, {390, 190}, {330, 140}});
    for (const QPointF at : {QPointF(360, 250), QPointF(390, 270), QPointF(420, 240)})
        Drag(window, "draw.point", at, at);
    // the polygon is selected, so that its vertices show
    if (window.GetView().GetMode() != 0) window.GetActions().Get("draw.select")->trigger();
    SendMouse(view, QEvent::MouseButtonPress, {385, 50}, Qt::LeftButton, Qt::LeftButton);
    SendMouse(view, QEvent::MouseButtonRelease, {385, 50}, Qt::LeftButton, Qt::NoButton);
    Settle(window);
}

bool TypeIntoBox(XMainWindow& window)
{
    DrawWithMouse(window);
    Drag(window, "draw.textBox", {360, 290}, {500, 340});
    auto* editor = window.GetView().findChild<QTextEdit*>();
    if (!editor) return false;
    editor->setCursorWidth(0); // whether it blinks is a matter of time
    QKeyEvent keys(QEvent::KeyPress, 0, Qt::NoModifier, "Harbour basin, surveyed");
    QCoreApplication::sendEvent(editor, &keys);
    Settle(window);
    return true;
}

QWidget* OpenEditMenu(XMainWindow& window)
{
    DrawWithMouse(window);
    window.GetActions().Get("edit.undo")->trigger();
    auto* menu = window.findChild<QMenu*>("menu.edit");
    menu->popup(QPoint(0, 0));
    Settle(window);
    return menu;
}

// As a run leaves it that was killed at noon.
bool LeaveUnsavedEdits()
{
    XvcBase base;
    auto* layer = new XvcLayer;
    layer->AddTail(new XvcPoint(0, 0));
    base.AddTail(layer);
    XAutosave killed(XAutosave::GetUserFolder());
    QString message;
    if (!killed.Keep({{&base, 1, "harbour.xvc", "/surveys/harbour.xvc"}}, message)) return false;
    killed.Wait();
    QDirIterator copies(XAutosave::GetUserFolder(), {"*.xvc"}, QDir::Files,
                        QDirIterator::Subdirectories);
    while (copies.hasNext()) {
        QFile copy(copies.next());
        if (!copy.open(QIODevice::ReadWrite) ||
            !copy.setFileTime(QDateTime({2024, 5, 17}, {12, 0}), QFile::FileModificationTime))
            return false;
    }
    return true;
}

// What the window is doing when it is pictured. Answers the part of it to picture.
QWidget* Act(XMainWindow& window, Moment moment)
{
    XTQSpaceView& view = window.GetView();
    const QPointF middle(view.width() / 2.0, view.height() / 2.0);
    switch (moment) {
    case Moment::Rest:
        return &window;
    case Moment::ZoomRect:
        window.GetActions().Get("view.zoomRect")->trigger();
        SendMouse(view, QEvent::MouseButtonPress, middle * 0.5, Qt::LeftButton, Qt::LeftButton);
        SendMouse(view, QEvent::MouseMove, middle * 1.3, Qt::NoButton, Qt::LeftButton);
        Settle(window);
        return &window;
    case Moment::Busy: {
        auto* mark = static_cast<XBusyWidget*>(window.findChild<QWidget*>("status.busy"));
        mark->SetBusy(true);
        while (!mark->IsMarked())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return window.findChild<QWidget*>("status");
    }
    case Moment::Offer:
        view.ZoomOneToOne(); // an eighth: patches of one colour keep the file small
        for (int i = 0; i < 3; ++i)
            view.ZoomOut();
        window.GetJobs().Add({"Computing the statistics of scene.tif",
                              [](const tagXSaveControl& control, QString&) {
                                  control.thread->CallbackPercent(42);
                                  while (!control.thread->IsStopRequested())
                                      QThread::msleep(5);
                                  return false;
                              },
                              nullptr});
        while (window.GetJobs().GetPercent() < 42)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        Settle(window);
        return &window;
    case Moment::Buttons:
        view.RunStretchPreset(40058);
        Settle(window);
        return &view;
    case Moment::Table:
        return ShowTable(window) ? &window : nullptr;
    case Moment::Vectors:
        return PickOverVectors(window) ? &window : nullptr;
    case Moment::Drawing:
        DrawWithMouse(window);
        return &window;
    case Moment::Typing:
        return TypeIntoBox(window) ? &window : nullptr;
    case Moment::Undo:
        return OpenEditMenu(window);
    case Moment::Recovery:
        if (!LeaveUnsavedEdits()) return nullptr;
        window.GetAutosave().OfferLost();
        Settle(window);
        return &window;
    case Moment::Keys:
        window.GetActions().Get("help.keys")->trigger();
        Settle(window);
        window.findChild<QLineEdit*>("keymap.find")->clearFocus();
        return window.findChild<QDialog*>("keymap");
    }
    return &window;
}

// The popup of the panel is a window of its own: it is laid over the picture where it would open.
void LayPopup(QPixmap& picture, QWidget& view)
{
    auto* button = view.findChild<QToolButton*>("panel.17");
    QMenu* menu = button->menu();
    menu->popup(QPoint(0, 0));
    menu->setActiveAction(menu->actions()[3]);
    QCoreApplication::processEvents();
    const QPixmap popup = menu->grab();
    const QPoint below = button->mapTo(&view, QPoint(0, button->height()));
    const int left = std::min(below.x(), view.width() - menu->width());
    QPainter(&picture).drawPixmap(std::max(0, left), below.y(), popup);
    menu->close();
}

bool SaveWindow(const tagXShot& shot, QSize size, const QString& sample, const QString& folder)
{
    QApplication::setPalette(MakePalette(shot.isDark));
    XMainWindow window("");
    window.resize(size);
    window.show();
    // the program remembers it from picture to picture
    QAction* buttons = window.GetActions().Get("view.buttons");
    if (buttons->isChecked() != (shot.moment == Moment::Buttons)) buttons->trigger();
    Settle(window);
    if (window.GetFiles().OpenFiles({sample}) != 1) return false;
    // four screen pixels an image pixel: sharp, and the file stays small
    XTQSpaceView& view = window.GetView();
    view.ZoomOneToOne();
    view.ZoomIn();
    view.ZoomIn();
    Settle(window);
    // a pointer in the middle fills the read-outs
    SendMouse(view, QEvent::MouseMove, QPointF(view.width() / 2.0, view.height() / 2.0),
              Qt::NoButton, Qt::NoButton);
    Settle(window);
    QWidget* pictured = Act(window, shot.moment);
    if (!pictured) return false;
    if (shot.moment != Moment::Busy) SettleForGood(window);
    QPixmap picture = pictured->grab();
    if (shot.moment == Moment::Buttons) LayPopup(picture, *pictured);
    return XfnSavePicture(picture.toImage(), folder, shot.name);
}

const char* SaveDialogs(const QString& folder, const QString& sample, bool isLarge)
{
    const auto save = [&](const char* suffix, bool isAll) {
        const char* name = XfnSaveObjectDialogs(folder, suffix, isAll);
        if (!name) name = XfnSaveFileDialogs(folder, suffix, sample);
        return name ? name : XfnSavePaletteSheets(folder, suffix, sample);
    };
    QApplication::setPalette(MakePalette(false));
    if (isLarge) return save("-150", false);
    if (const char* name = save("", true)) return name;
    QApplication::setPalette(MakePalette(true));
    const char* name = save("-dark", false);
    QApplication::setPalette(MakePalette(false));
    return name;
}

// The scale of the controls is fixed when the application starts, so another one is another process.
int RunAtScale(const char* scale, const QStringList& arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_SCALE_FACTOR", scale);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QCoreApplication::applicationFilePath(), arguments.mid(1));
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1;
}

/// The sample enlarged, as a file that only refers to it: too large to be shown quickly.
QString WriteLarge(const QString& sample, const QString& folder)
{
    QString text = "<VRTDataset rasterXSize=\"20940\" rasterYSize=\"21120\">";
    for (int band = 1; band <= 3; ++band)
        text += QString("<VRTRasterBand dataType=\"Byte\" band=\"%1\"><SimpleSource>"
                        "<SourceFilename>%2</SourceFilename><SourceBand>%3</SourceBand>"
                        "<SrcRect xOff=\"0\" yOff=\"0\" xSize=\"349\" ySize=\"352\"/>"
                        "<DstRect xOff=\"0\" yOff=\"0\" xSize=\"20940\" ySize=\"21120\"/>"
                        "</SimpleSource></VRTRasterBand>")
                    .arg(QString::number(band), QFileInfo(sample).absoluteFilePath(),
                         QString::number(4 - band));
    QFile file(QDir(folder).filePath("mosaic.vrt"));
    if (file.open(QIODevice::WriteOnly)) file.write((text + "</VRTDataset>").toUtf8());
    return file.fileName();
}

QString FindSample(const QStringList& arguments)
{
    if (arguments.size() > 2) return arguments[2];
    return QDir::current().filePath("data/sample/L7_ETMs.tif");
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const bool isLarge = qgetenv("QT_SCALE_FACTOR") == "1.5";
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: tql_gallery FOLDER [RASTER]\n"
                   "The raster is data/sample/L7_ETMs.tif below the working folder at first.\n",
                   stderr);
        return 2;
    }
    // a fixed style, font and empty settings: the same picture on every machine with these fonts
    QTemporaryDir settings;
    qputenv("XDG_CACHE_HOME", settings.path().toUtf8());
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QCoreApplication::setOrganizationName("tql");
    QCoreApplication::setApplicationName("tql_gallery");
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QFont font("DejaVu Sans");
    font.setPixelSize(13);
    QApplication::setFont(font);

    const QString sample = FindSample(arguments);
    if (!QFile::exists(sample)) {
        std::fprintf(stderr, "tql_gallery: %s was not found\n", sample.toLocal8Bit().constData());
        return 1;
    }
    QDir().mkpath(arguments[1]);
    const std::vector<tagXShot> shots =
        isLarge ? std::vector<tagXShot>{{"mainwindow-150.png", false},
                                        {"attributetable-150.png", false, Moment::Table},
                                        {"buttons-150.png", false, Moment::Buttons}}
                : std::vector<tagXShot>{{"mainwindow.png", false},
                                        {"mainwindow-dark.png", true},
                                        {"zoomrectangle.png", false, Moment::ZoomRect},
                                        {"busy.png", false, Moment::Busy},
                                        {"buttons.png", false, Moment::Buttons},
                                        {"buttons-dark.png", true, Moment::Buttons},
                                        {"pyramid.png", false, Moment::Offer},
                                        {"attributetable.png", false, Moment::Table},
                                        {"attributetable-dark.png", true, Moment::Table},
                                        {"vectors.png", false, Moment::Vectors},
                                        {"vectors-dark.png", true, Moment::Vectors},
                                        {"drawing.png", false, Moment::Drawing},
                                        {"drawing-dark.png", true, Moment::Drawing},
                                        {"typing.png", false, Moment::Typing},
                                        {"undo.png", false, Moment::Undo},
                                        {"keymap.png", false, Moment::Keys},
                                        // the last: what it leaves is offered to all that follow
                                        {"recovery.png", false, Moment::Recovery}};
    const QString large = WriteLarge(sample, settings.path());
    for (const tagXShot& shot : shots) {
        const QString& shown = shot.moment == Moment::Offer ? large : sample;
        if (SaveWindow(shot, isLarge ? kWindowAt150 : kWindow, shown, arguments[1])) continue;
        std::fprintf(stderr, "tql_gallery: %s was not made\n", shot.name);
        return 1;
    }
    if (const char* name = SaveDialogs(arguments[1], sample, isLarge)) {
        std::fprintf(stderr, "tql_gallery: the dialog %s was not pictured\n", name);
        return 1;
    }
    if (isLarge) return 0;
    const char* sheet = XfnSaveEnhanceSheets(arguments[1], sample);
    if (!sheet) sheet = XfnSaveVectorSheets(arguments[1]);
    if (sheet) {
        std::fprintf(stderr, "tql_gallery: %s was not made\n", sheet);
        return 1;
    }
    return RunAtScale("1.5", arguments);
}
