#include "host/XBusyWidget.h"
#include "tests/host/XHostFixture.h"

#include <QLabel>
#include <QTimer>

#include <complex>

namespace {

class XLiveViewTest : public XHostFixture
{
protected:
    /// Drags with the left button over the middle of the view.
    void Drag(Qt::KeyboardModifiers keys)
    {
        const QPoint from(200, 150), to(400, 300);
        Mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton, keys);
        Mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, keys);
        Mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton, keys);
        Settle();
    }
    void PointAtPixel(double column, double row)
    {
        double x = 300015 + 30 * column;
        double y = 9099985 - 30 * row;
        window->GetView().GetBackBuffer()->ConvWorldToPixelCoord(x, y);
        PointAt(QPoint(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y))));
    }
};

TEST_F(XLiveViewTest, ARectangleIsZoomedToByCommandKeyAndShift)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 300, 200, 1)}), 1);
    struct tagXCase
    {
        const char* name;
        std::function<void()> start;
        Qt::KeyboardModifiers keys;
    };
    const tagXCase kCases[] = {
        {"command", [this] { Run("view.zoomRect"); }, Qt::NoModifier},
        {"key", [this] { QTest::keyClick(&window->GetView(), Qt::Key_Z); }, Qt::NoModifier},
        {"Shift", [] {}, Qt::ShiftModifier},
    };
    window->GetView().setFocus();
    for (const tagXCase& c : kCases) {
        SCOPED_TRACE(c.name);
        const tagXLook before = Look();
        c.start();
        EXPECT_EQ(Action("view.zoomRect")->isChecked(), c.keys == Qt::NoModifier);
        Drag(c.keys);
        EXPECT_LT(Look().perX, before.perX / 2);
        EXPECT_FALSE(Action("view.zoomRect")->isChecked());
        const tagXLook after = Look();
        Drag(Qt::NoModifier);
        EXPECT_EQ(Look(), after) << "once";
        Run("view.previous");
        EXPECT_EQ(Look(), before) << "a step of its own";
    }
    Run("view.zoomRect");
    Run("view.zoomRect");
    EXPECT_EQ(window->GetView().GetMode(), -1) << "the command takes itself back";
    Run("view.zoomRect");
    Run("file.closeAll");
    EXPECT_EQ(window->GetView().GetMode(), -1) << "there is nothing to zoom to";
    EXPECT_FALSE(Action("view.zoomRect")->isEnabled());
}

TEST_F(XLiveViewTest, EscapeIsForTheToolFirstThenForTheFullScreen)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 30, 20, 1)}), 1);
    Run("view.fullScreen");
    Run("view.zoomRect");
    window->GetView().setFocus();
    QTest::keyClick(&window->GetView(), Qt::Key_Escape);
    EXPECT_FALSE(Action("view.zoomRect")->isChecked());
    EXPECT_TRUE(window->isFullScreen());
    QTest::keyClick(&window->GetView(), Qt::Key_Escape);
    EXPECT_FALSE(window->isFullScreen());
}

TEST_F(XLiveViewTest, DrawingInStepsIsRememberedAndEndsInTheSamePicture)
{
    const QString path = MakeRaster("a.dat", 1500, 900, 3);
    ASSERT_TRUE(Action("view.progressive")->isChecked());
    QImage pictures[2];
    for (QImage& picture : pictures) {
        const bool isOn = Action("view.progressive")->isChecked();
        EXPECT_EQ(window->GetView().GetProgressiveView(), isOn);
        ASSERT_EQ(Open({path}), 1);
        PointAt({0, 0});
        picture = Grab();
        Run("view.progressive");
        Restart();
        EXPECT_NE(Action("view.progressive")->isChecked(), isOn);
    }
    EXPECT_EQ(pictures[0], pictures[1]);
}

TEST_F(XLiveViewTest, LayersCloseAndWindowsGoInMidPass)
{
    const QString path = MakeRaster("a.dat", 1500, 900, 3);
    int busy = 0;
    for (int i = 0; i < 30; ++i) {
        ASSERT_EQ(window->GetFiles().OpenFiles({path, path}), 2);
        window->GetView().ZoomOneToOne();
        for (int turn = i % 4; turn > 0; --turn)
            QCoreApplication::processEvents();
        busy += window->GetView().IsBusy();
        if (i % 3 == 0)
            Restart();
        else
            Action(i % 3 == 1 ? "file.close" : "file.closeAll")->trigger();
        Action("file.closeAll")->trigger();
        EXPECT_EQ(window->GetLayers().GetCount(), 0);
    }
    EXPECT_GT(busy, 10) << "else nothing was tried";
}

TEST_F(XLiveViewTest, EveryKindOfSampleIsRead)
{
    const auto write = [this](const char* name, auto samples, const char* more) {
        const int bands = static_cast<int>(samples.size()) / 6;
        return XfnWriteRawRaster(Path(name),
                                 {3, 2, bands,
                                  QByteArray("map info = {UTM, 1, 1, 300000, 9100000, 30, 30, 25, "
                                             "South, WGS-84, units=Meters}\n") +
                                      more},
                                 samples);
    };
    struct tagXCase
    {
        QString path;
        QString middle; // of column 1, row 0
        QString corner; // of column 2, row 1
    };
    const tagXCase kCases[] = {
        {write("c.dat", std::vector<std::complex<float>>{{1, 0}, {3, -4.5}, {}, {}, {}, {2, 0}},
               ""),
         "re 3  im -4.5", "re 2  im 0"},
        {write("n.dat", std::vector<float>{1, -3.4e38F, 0, 0, 0, 2.5F},
               "data ignore value = -3.4e38"),
         "no data", "2.5"},
        {write("s.dat", std::vector<short>{1, -32768, 0, 0, 0, 32767}, ""), "-32768", "32767"},
    };
    for (const tagXCase& c : kCases) {
        for (const bool isProgressive : {true, false}) {
            SCOPED_TRACE(c.path.toStdString() + (isProgressive ? " in steps" : ""));
            if (Action("view.progressive")->isChecked() != isProgressive) Run("view.progressive");
            ASSERT_EQ(Open({c.path}), 1);
            PointAtPixel(1, 0);
            EXPECT_EQ(Text("status.samples"), c.middle);
            PointAtPixel(2, 1);
            EXPECT_EQ(Text("status.samples"), c.corner);
            PointAtPixel(3, 0);
            EXPECT_EQ(Text("status.samples"), "");
            Run("file.closeAll");
        }
    }
    ASSERT_EQ(Open({kCases[2].path, kCases[1].path}), 2);
    PointAtPixel(2, 1);
    EXPECT_EQ(Text("status.samples"), "2.5  in n.dat") << "the current one, which is named";
    window->GetLayers().SetCurrent(1);
    EXPECT_EQ(Text("status.samples"), "32767  in s.dat");
}

TEST_F(XLiveViewTest, TheMarkShowsWhatLastsAndTakesNoRoomOfItsOwn)
{
    auto* mark = dynamic_cast<XBusyWidget*>(Find<QWidget>("status.busy"));
    const QRect place = Find<QLabel>("status.samples")->geometry();
    const QImage atRest = mark->grab().toImage();
    mark->SetBusy(true);
    EXPECT_FALSE(mark->IsMarked()) << "most passes are over in a blink";
    mark->SetBusy(false);
    bool isSeen = false;
    QTimer::singleShot(2 * XBusyWidget::kDelayMs, mark, [&] { isSeen = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isSeen; }));
    EXPECT_FALSE(mark->IsMarked());
    mark->SetBusy(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return mark->IsMarked(); }));
    EXPECT_NE(mark->grab().toImage(), atRest);
    EXPECT_EQ(Find<QLabel>("status.samples")->geometry(), place);
    mark->SetBusy(false);
    EXPECT_EQ(mark->grab().toImage(), atRest);
}

} // namespace
