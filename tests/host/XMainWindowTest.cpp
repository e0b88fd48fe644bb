#include "foundation/raster/XTileCache.h"
#include "host/XReadOutLabel.h"
#include "tests/host/XHostFixture.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QTableView>

#include <limits>
#include <set>

namespace {

std::set<QRgb> Colours(const QImage& image)
{
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); y += 3)
        for (int x = 0; x < image.width(); x += 3)
            colours.insert(image.pixel(x, y));
    return colours;
}

class XMainWindowTest : public XHostFixture
{
protected:
    void Drop(const QStringList& paths)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls.append(QUrl::fromLocalFile(path));
        data.setUrls(urls);
        const QPoint pos(200, 200);
        QDragEnterEvent enter(pos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent drop(pos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &drop);
        Settle();
    }
};

TEST_F(XMainWindowTest, AnEmptyWindowStandsEveryCommandAndGesture)
{
    XTQSpaceView& view = window->GetView();
    QTest::mousePress(&view, Qt::LeftButton, {}, {50, 50});
    QTest::mouseMove(&view, {90, 90});
    QTest::mouseRelease(&view, Qt::LeftButton, {}, {90, 90});
    QTest::mousePress(&view, Qt::RightButton, {}, {50, 50});
    QTest::mouseMove(&view, {10, 90});
    QTest::mouseRelease(&view, Qt::RightButton, {}, {10, 90});
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_Plus, Qt::Key_Minus,
                              Qt::Key_Left, Qt::Key_Escape, Qt::Key_F5})
        QTest::keyClick(&view, key);
    Run("window.reset");
    EXPECT_EQ(Text("status.position"), "");
    EXPECT_EQ(Text("status.samples"), "");
    EXPECT_TRUE(Text("status.hint").contains("Ctrl+O"));
}

TEST_F(XMainWindowTest, TheDialogOpensSeveralFilesAndTheFirstFillsTheView)
{
    const QString first = MakeRaster("first.dat", 200, 100, 3);
    const QString second = MakeRaster("second.dat", 50, 50, 1, 310000, 9050000);
    prompts.AnswerPaths({first.toUtf8().constData(), second.toUtf8().constData()});
    QTest::keyClick(window.get(), Qt::Key_O, Qt::ControlModifier);
    Settle();
    EXPECT_EQ(window->GetLayers().GetCount(), 2);
    EXPECT_EQ(window->GetLayers().GetAt(0)->name, "second.dat") << "the last one is on top";
    EXPECT_TRUE(window->windowTitle().startsWith("second.dat"));
    EXPECT_EQ(prompts.GetMessages().size(), 0u);
    // the whole first image is seen, centred and undistorted
    double minX = 0;
    double maxX = 0;
    double minY = 0;
    double maxY = 0;
    window->GetView().GetBound(minX, maxX, minY, maxY);
    EXPECT_LE(minX, 300015);
    EXPECT_GE(maxX, 300015 + 199 * 30);
    EXPECT_EQ(Look().perX, Look().perY);
    EXPECT_NEAR(Look().x, 300015 + 99.5 * 30, 1e-6);
    EXPECT_NE(Text("status.system").indexOf("UTM zone 25S"), -1);
    EXPECT_TRUE(Text("notice.text").startsWith("second.dat lies outside all other layers"));
    EXPECT_GT(Colours(Grab()).size(), 20u) << "not a black square";
}

TEST_F(XMainWindowTest, ASecondImageDoesNotMoveTheView)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 200, 100, 1)}), 1);
    Run("view.zoomIn");
    const tagXLook before = Look();
    ASSERT_EQ(Open({MakeRaster("b.dat", 30, 30, 1, 300600, 9099000)}), 1);
    EXPECT_EQ(Look(), before);
    Run("view.fitLayer");
    EXPECT_FALSE(Look() == before);
}

TEST_F(XMainWindowTest, OneToOneIsOnePixelAndDoesNotWander)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 1)}), 1);
    window->GetView().setFocus();
    QTest::keyClick(&window->GetView(), Qt::Key_1);
    Settle();
    const tagXLook once = Look();
    EXPECT_DOUBLE_EQ(once.perX, 30);
    EXPECT_DOUBLE_EQ(once.perY, 30);
    QTest::keyClick(&window->GetView(), Qt::Key_1);
    Settle();
    EXPECT_EQ(Look(), once);
    Run("view.percent");
    EXPECT_EQ(Text("status.scale"), "100 %");
    QTest::keyClick(&window->GetView(), Qt::Key_Plus);
    Settle();
    EXPECT_EQ(Text("status.scale"), "200 %");
}

TEST_F(XMainWindowTest, FilesThatCannotBeOpenedAreToldOnceAndChangeNothing)
{
    const QString good = MakeRaster("good.dat", 40, 30, 1);
    ASSERT_EQ(Open({good}), 1);
    const tagXLook before = Look();

    QFile(Path("empty.tif")).open(QIODevice::WriteOnly);
    QFile text(Path("text.tif"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("this is no picture at all, however its name ends\n");
    text.close();
    QFile sample(Sample());
    ASSERT_TRUE(sample.open(QIODevice::ReadOnly));
    const QByteArray bytes = sample.readAll();
    QFile truncated(Path("truncated.tif"));
    ASSERT_TRUE(truncated.open(QIODevice::WriteOnly));
    truncated.write(bytes.left(100));
    truncated.close();

    struct tagXRow
    {
        QString name;
        const char* reason;
    };
    const tagXRow rows[] = {{"missing.tif", "does not exist"},
                            {".", "a folder"},
                            {"empty.tif", "empty"},
                            {"text.tif", "no readable TIFF"},
                            {"truncated.tif", "no readable TIFF"}};
    for (const tagXRow& row : rows) {
        const std::size_t messages = prompts.GetMessages().size();
        EXPECT_EQ(Open({Path(row.name)}), 0) << row.name.toStdString();
        ASSERT_EQ(prompts.GetMessages().size(), messages + 1) << row.name.toStdString();
        EXPECT_NE(prompts.GetLastMessage().find(row.reason), std::string::npos)
            << prompts.GetLastMessage();
        EXPECT_EQ(prompts.GetMessages().back().parent, window->GetHWND());
        const QString told = QString::fromStdString(prompts.GetLastMessage());
        EXPECT_EQ(told.count("\"" + Path(row.name) + "\""), 1) << "which file, and only once";
    }
    const std::size_t messages = prompts.GetMessages().size();
    EXPECT_EQ(Open({Path("missing.tif"), good, Path("text.tif")}), 1);
    ASSERT_EQ(prompts.GetMessages().size(), messages + 1) << "one box for all";
    EXPECT_EQ(prompts.GetLastMessage().find("2 files"), 0u) << prompts.GetLastMessage();
    EXPECT_EQ(window->GetLayers().GetCount(), 2);
    EXPECT_EQ(window->GetLayers().GetAt(0)->name, "good.dat (2)") << "twice is allowed, and told";
    EXPECT_EQ(Look(), before);
}

TEST_F(XMainWindowTest, AFileThatVanishesWhileShownDoesNotTakeTheWindowWithIt)
{
    const QString path = MakeRaster("gone.dat", 600, 500, 3);
    ASSERT_EQ(Open({path}), 1);
    ASSERT_TRUE(QFile::remove(path));
    Run("view.zoomIn");
    Run("view.fitAll");
    PointAt({100, 100});
    window->GetLayers().ChangeBands(0, [](XBandChoice& choice) { choice.SetGray(2); });
    Settle();
    Run("file.close");
    EXPECT_EQ(Open({path}), 0);
    EXPECT_NE(prompts.GetLastMessage().find("does not exist"), std::string::npos);
}

TEST_F(XMainWindowTest, OfALotOneWithACoordinateSystemPlacesTheViewAndCutFilesAreTold)
{
    const QString jpeg = Path("cut.jpg");
    QImage noise(400, 300, QImage::Format_RGB32);
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 400; ++x)
            noise.setPixel(x, y, static_cast<unsigned>(x * y * 2654435761u));
    ASSERT_TRUE(noise.save(jpeg, "JPG"));
    ASSERT_TRUE(QFile::resize(jpeg, QFileInfo(jpeg).size() / 2));
    const QString tiff = Path("cut.tif");
    ASSERT_TRUE(QFile::copy(Sample(), tiff));
    ASSERT_TRUE(QFile::setPermissions(tiff, QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(QFile::resize(tiff, QFileInfo(tiff).size() / 2));
    ASSERT_EQ(Open({jpeg, tiff, Sample()}), 3); // the whole one hides the cut one
    EXPECT_NE(Text("status.system").indexOf("UTM zone 25S"), -1);
    for (const char* told : {"cut.jpg has no coordinate system", "It lies outside all other layers",
                             "A part of cut.jpg", "A part of cut.tif"})
        EXPECT_TRUE(Text("notice.text").contains(told)) << told;
}

TEST_F(XMainWindowTest, AFileEmptiedWhileShownSaysSoOnce)
{
    const QString path = MakeRaster("emptied.dat", 600, 500, 3);
    ASSERT_EQ(Open({path}), 1);
    ASSERT_TRUE(QFile::resize(path, 10));
    XTileCache::Get().Clear();
    Run("view.zoomIn");
    auto* notice = Find<QFrame>("notice");
    EXPECT_TRUE(notice->isVisible());
    EXPECT_EQ(Text("notice.text").count("\n"), 0);
    EXPECT_TRUE(Text("notice.text").startsWith("A part of emptied.dat"));
    EXPECT_TRUE(prompts.GetMessages().empty()) << "nothing stands in the way of the work";
    Find<QPushButton>("notice.dismiss")->click();
    Run("view.zoomIn");
    EXPECT_FALSE(notice->isVisible());
    EXPECT_EQ(window->GetLayers().GetCount(), 1) << "what was open stays open";
}

TEST_F(XMainWindowTest, ImagesWithoutRangeOpenAndRealOnesAreNotBlack)
{
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    std::vector<float> mixed;
    for (int i = 0; i < 64 * 64; ++i)
        mixed.push_back(i % 7 == 0 ? nan : i % 11 == 0 ? inf : i % 13 == 0 ? -inf : i * 1e-3f);
    XfnWriteRawRaster(Path("mixed.dat"), {64, 64, 1}, mixed);
    XfnWriteRawRaster(Path("nan.dat"), {64, 64, 1}, std::vector<float>(64 * 64, nan));
    XfnWriteRawRaster(Path("zero.dat"), {64, 64, 1}, std::vector<unsigned char>(64 * 64, 0));
    XfnWriteRawRaster(Path("same.dat"), {64, 64, 3}, std::vector<short>(3 * 64 * 64, -7));
    XfnWriteRawRaster(Path("nodata.dat"), {64, 64, 1, "data ignore value = 9"},
                      std::vector<unsigned short>(64 * 64, 9));
    XfnWriteRawRaster(Path("one.dat"), {1, 1, 1}, std::vector<double>{3.5});
    for (const char* name :
         {"nan.dat", "zero.dat", "same.dat", "nodata.dat", "one.dat", "mixed.dat"}) {
        EXPECT_EQ(Open({Path(name)}), 1) << name << prompts.GetLastMessage();
        Run("view.fitLayer");
        PointAt({300, 200});
    }
    EXPECT_GT(Colours(Grab()).size(), 20u) << "NaN and infinities leave the rest to be seen";
    EXPECT_EQ(prompts.GetMessages().size(), 0u);
    Run("file.closeAll");
    EXPECT_EQ(window->GetLayers().GetCount(), 0);
    EXPECT_EQ(window->windowTitle(), "tqlview");
}

TEST_F(XMainWindowTest, DropsOpenFilesAndAskAboutFolders)
{
    const QString file = MakeRaster("dropped.dat", 20, 20, 1);
    QDir(dir.path()).mkpath("folder");
    QDir(dir.path()).mkpath("hollow");
    MakeRaster("folder/one.dat", 20, 20, 1);
    MakeRaster("folder/two.dat", 20, 20, 1);
    Drop({file});
    EXPECT_EQ(window->GetLayers().GetCount(), 1);
    prompts.AnswerNo();
    Drop({Path("folder")});
    EXPECT_EQ(window->GetLayers().GetCount(), 1);
    EXPECT_NE(prompts.GetQuestions().back().text.find("two.dat"), std::string::npos);
    prompts.AnswerYes();
    Drop({Path("folder"), Path("hollow")});
    EXPECT_EQ(window->GetLayers().GetCount(), 3);
    EXPECT_NE(prompts.GetLastMessage().find("hollow"), std::string::npos);

    QMimeData text;
    text.setText("no file");
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST_F(XMainWindowTest, RecentFilesComeBackAfterARestart)
{
    const QString a = MakeRaster("a.dat", 20, 20, 1);
    const QString b = MakeRaster("b.dat", 20, 20, 1);
    Open({a, b});
    Restart();
    EXPECT_EQ(window->GetLayers().GetCount(), 0);
    auto* recent = Find<QMenu>("menu.recent");
    Q_EMIT recent->aboutToShow();
    ASSERT_GE(recent->actions().size(), 3);
    EXPECT_EQ(recent->actions()[0]->objectName(), "recent.0");
    EXPECT_TRUE(recent->actions()[0]->text().contains("b.dat"));
    recent->actions()[1]->trigger();
    EXPECT_EQ(window->GetLayers().GetCount(), 1);
    EXPECT_EQ(window->GetLayers().GetAt(0)->name, "a.dat");

    // a missing one is grey from the moment it could not be opened
    QFile::remove(b);
    Q_EMIT recent->aboutToShow();
    EXPECT_TRUE(recent->actions()[1]->isEnabled());
    recent->actions()[1]->trigger();
    EXPECT_EQ(prompts.GetMessages().size(), 1u);
    Q_EMIT recent->aboutToShow();
    EXPECT_FALSE(recent->actions()[1]->isEnabled());
    EXPECT_TRUE(recent->actions()[1]->statusTip().contains("not found"));
    Action("file.clearRecent")->trigger();
    Q_EMIT recent->aboutToShow();
    EXPECT_EQ(recent->actions()[0]->objectName(), "");
}

TEST_F(XMainWindowTest, TheReadOutsTellWhatIsUnderThePointer)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 3)}), 1);
    Run("view.oneToOne");
    // the centre of the view lies in the middle of the image: column 149.5, row 99.5
    XBackBuffer& buffer = *window->GetView().GetBackBuffer();
    double x = 300015 + 120 * 30.0;
    double y = 9099985 - 50 * 30.0;
    buffer.ConvWorldToPixelCoord(x, y);
    const QPoint pos(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
    PointAt(pos);
    EXPECT_EQ(Text("status.samples"), "R 620  G 720  B 820");
    double worldX = pos.x();
    double worldY = pos.y();
    buffer.ConvPixelToWorldCoord(worldX, worldY);
    EXPECT_EQ(Text("status.position"),
              QString::number(worldX, 'f', 2) + "  " + QString::number(worldY, 'f', 2));
    EXPECT_TRUE(Text("status.geographic").contains(" S  "));
    Run("view.dms");
    EXPECT_TRUE(Text("status.geographic").contains("\"W"));
    QTest::keyClick(&window->GetView(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QString::number(worldX, 'f', 4) + " " +
                                                     QString::number(worldY, 'f', 4) +
                                                     " EPSG:32725 (WGS 84 / UTM zone 25S)");
    PointAt({1, 1});
    EXPECT_EQ(Text("status.samples"), "") << "outside the image";

    const int width = Find<QLabel>("status.position")->width();
    PointAt(pos);
    EXPECT_EQ(Find<QLabel>("status.position")->width(), width) << "nothing jumps";
    Restart();
    EXPECT_TRUE(Action("view.dms")->isChecked()) << "remembered";
}

TEST_F(XMainWindowTest, HistoryGoesBackAndForward)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 1)}), 1);
    EXPECT_FALSE(Action("view.previous")->isEnabled());
    const tagXLook fit = Look();
    Run("view.zoomIn");
    const tagXLook closer = Look();
    Run("view.zoomIn");
    Run("view.previous");
    EXPECT_EQ(Look(), closer);
    Run("view.previous");
    EXPECT_EQ(Look(), fit);
    EXPECT_FALSE(Action("view.previous")->isEnabled());
    Run("view.next");
    EXPECT_EQ(Look(), closer);
    Run("file.closeAll");
    EXPECT_FALSE(Action("view.next")->isEnabled());
}

TEST_F(XMainWindowTest, FullScreenKeepsTheKeysAndEscapeLeaves)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 30, 20, 1)}), 1);
    const auto shown = [this] {
        QStringList names;
        for (const char* name : {"dock.layers", "dock.bands", "toolbar.main", "status"})
            if (Find<QWidget>(name)->isVisible()) names.append(name);
        return names;
    };
    Find<QWidget>("dock.bands")->hide();
    const QStringList before = shown();
    ASSERT_EQ(before.size(), 3);
    Run("view.fullScreen");
    EXPECT_TRUE(window->isFullScreen());
    EXPECT_EQ(shown(), QStringList());
    EXPECT_EQ(window->GetView().size(), window->size());
    QTest::keyClick(window.get(), Qt::Key_F, Qt::AltModifier); // the menus still answer
    auto* menu = Find<QMenu>("menu.file");
    EXPECT_TRUE(menu->isVisible());
    menu->close();
    window->GetView().setFocus();
    QTest::keyClick(&window->GetView(), Qt::Key_Escape);
    Settle();
    EXPECT_FALSE(window->isFullScreen());
    EXPECT_FALSE(Action("view.fullScreen")->isChecked());
    EXPECT_EQ(shown(), before);
    Run("view.fullScreen");
    window->close();
    Restart();
    EXPECT_EQ(shown(), before) << "the full screen is not what is remembered";
}

TEST_F(XMainWindowTest, ZoomingEndsBeforeThereIsNothingToSee)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 1)}), 1);
    const auto wheel = [this](int delta) {
        const tagXLook before = Look();
        const QPoint at = window->GetView().mapToGlobal(QPoint(80, 60));
        window->GetView().OnMouseWheel(0, delta, at.x(), at.y());
        Settle();
        return !(Look() == before);
    };
    for (const int delta : {-120, 120}) {
        int steps = 0;
        while (steps < 60 && wheel(delta))
            ++steps;
        EXPECT_LT(steps, 30);
        const tagXLook end = Look();
        Run(end.perX < 30 ? "view.zoomIn" : "view.zoomOut");
        EXPECT_EQ(Look(), end);
        EXPECT_GE(end.perX, 30.0 / 256);
        EXPECT_LE(end.perX, 300 * 30.0 * 64 / window->GetView().width());
    }
}

TEST_F(XMainWindowTest, TheStatusBarCutsNoNumberAndGivesMessagesRoom)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 3, 300000, 41912345)}), 1);
    for (const int width : {700, 1000}) {
        window->resize(width, 500);
        Settle();
        PointAt({window->GetView().width() / 2, window->GetView().height() / 2});
        Settle();
        for (const char* name : {"status.position", "status.samples", "status.geographic"}) {
            const QLabel* label = Find<QLabel>(name);
            EXPECT_TRUE(label->isHidden() || label->text() == Text(name)) << name << width;
        }
        EXPECT_TRUE(Find<QLabel>("status.position")->isVisible());
        EXPECT_EQ(Find<QLabel>("status.system")->isVisible(), width == 1000);
        window->statusBar()->showMessage(QString(60, 'm'));
        Settle();
        EXPECT_FALSE(Find<QLabel>("status.system")->isVisible());
        EXPECT_TRUE(Find<QLabel>("status.position")->isVisible());
        window->statusBar()->clearMessage();
    }
}

TEST_F(XMainWindowTest, NoMnemonicStandsTwiceInAMenu)
{
    for (const QMenu* menu : window->menuBar()->findChildren<QMenu*>()) {
        std::set<int> seen;
        for (const QAction* action : menu->actions()) {
            const QKeySequence key = QKeySequence::mnemonic(action->text());
            EXPECT_TRUE(key.isEmpty() || seen.insert(key[0].toCombined()).second)
                << action->text().toStdString();
        }
    }
}

TEST_F(XMainWindowTest, ResizingKeepsScaleAndCentreAndAFittedViewStaysFitted)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 1)}), 1);
    const tagXLook fit = Look();
    Run("view.fullScreen");
    EXPECT_FALSE(Look() == fit) << "a fitted view follows the size";
    Run("view.fullScreen");
    EXPECT_EQ(Look(), fit);
    EXPECT_FALSE(Action("view.previous")->isEnabled()) << "a resize is no step";

    Run("view.zoomIn");
    QTest::keyClick(&window->GetView(), Qt::Key_Left);
    Settle();
    const tagXLook chosen = Look();
    Run("view.fullScreen");
    EXPECT_EQ(Look(), chosen);
    Run("view.fullScreen");
    EXPECT_EQ(Look(), chosen);
    for (const bool isShown : {false, true}) {
        Find<QWidget>("dock.layers")->setVisible(isShown);
        Find<QWidget>("dock.bands")->setVisible(isShown);
        Settle();
        EXPECT_EQ(Look(), chosen) << isShown;
    }
    EXPECT_FALSE(Action("view.next")->isEnabled());
    Run("view.fitLayer");
    EXPECT_EQ(Look(), fit);
    window->resize(1000, 640);
    Settle();
    window->resize(1000, 700);
    Settle();
    EXPECT_EQ(Look(), fit);
}

TEST_F(XMainWindowTest, ThePointerLeavesTheKeysToATextBoxAndAClickTakesThem)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 3)}), 1);
    window->activateWindow();
    auto* box = Find<QLineEdit>("bands.red.text");
    box->setFocus();
    QWidget* before = QApplication::focusWidget();
    ASSERT_NE(before, &window->GetView());
    PointAt({100, 100});
    EXPECT_EQ(QApplication::focusWidget(), before);
    EXPECT_EQ(window->GetView().focusPolicy(), Qt::WheelFocus);
    QTest::mouseClick(&window->GetView(), Qt::LeftButton, {}, {50, 50});
    EXPECT_EQ(QApplication::focusWidget(), &window->GetView());
}

TEST_F(XMainWindowTest, FilesOfTheCommandLineWaitForTheFirstPicture)
{
    const QString path = MakeRaster("a.dat", 30, 20, 1);
    window = std::make_unique<XMainWindow>("1.2.3");
    window->OpenAfterFirstPaint({path});
    Settle();
    EXPECT_EQ(window->GetLayers().GetCount(), 0);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    EXPECT_TRUE(QTest::qWaitFor([this] { return window->GetLayers().GetCount() == 1; }));
}

TEST_F(XMainWindowTest, ThePlaceIsRememberedAndTheBackgroundToo)
{
    window->setGeometry(120, 60, 800, 520);
    prompts.AnswerColor(0x00336699);
    Run("view.background");
    EXPECT_EQ(Grab().pixel(5, 5), qRgb(0x99, 0x66, 0x33));
    window->close();
    window = std::make_unique<XMainWindow>("1.2.3");
    window->Place(QSize(), QPoint(), false);
    window->show();
    Settle();
    EXPECT_EQ(window->geometry(), QRect(120, 60, 800, 520));
    EXPECT_EQ(Grab().pixel(5, 5), qRgb(0x99, 0x66, 0x33));
    // a screen of 1366 x 768 at one and a half times the scale, with a panel of the desktop
    EXPECT_LE(window->minimumSizeHint().width(), 910);
    EXPECT_LE(window->minimumSizeHint().height(), 460);
}

TEST_F(XMainWindowTest, EveryControlCanBeNamedAndReachedByKeyboard)
{
    ASSERT_EQ(Open({Sample()}), 1) << prompts.GetLastMessage();
    int reached = 0;
    const QList<QWidget*> widgets = window->findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus) continue;
        if (widget->objectName().startsWith("qt_") || widget->inherits("QScrollBar"))
            continue; // parts that Qt makes for itself
        ++reached;
        EXPECT_NE(widget->objectName(), "") << widget->metaObject()->className();
        QAccessibleInterface* face =
            QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
        ASSERT_NE(face, nullptr);
        EXPECT_NE(face->text(QAccessible::Name), "") << widget->objectName().toStdString();
    }
    EXPECT_GT(reached, 12);

    // Tab goes round all of them and comes back: no trap
    window->activateWindow();
    window->GetView().setFocus();
    std::set<QWidget*> visited;
    for (int i = 0; i < 80; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited.insert(QApplication::focusWidget());
    }
    EXPECT_TRUE(visited.count(&window->GetView()));
    for (const char* name : {"layers.list", "layers.opacity", "layers.properties", "bands.red"})
        EXPECT_TRUE(visited.count(Find<QWidget>(name))) << name;
}

TEST_F(XMainWindowTest, DisabledEntriesSayWhyInTheStatusLine)
{
    for (const char* id : {"view.fitAll", "image.stretch", "layer.up", "file.close"}) {
        EXPECT_FALSE(Action(id)->isEnabled()) << id;
        EXPECT_TRUE(Action(id)->statusTip().contains("pen"))
            << Action(id)->statusTip().toStdString();
    }
    auto* menu = Find<QMenu>("menu.file");
    QMenuBar* bar = window->menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(menu->menuAction()).center());
    Settle();
    ASSERT_TRUE(menu->isVisible());
    QTest::mouseMove(menu, menu->actionGeometry(Action("file.open")).center());
    Settle();
    QTest::mouseMove(menu, menu->actionGeometry(Action("file.close")).center());
    Settle();
    EXPECT_EQ(window->statusBar()->currentMessage(), "No file is open");
    menu->close();
}

} // namespace
