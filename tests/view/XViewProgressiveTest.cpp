#include "foundation/raster/XDMVand.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcRectangle.h"
#include "tests/view/XProgressiveFixture.h"
#include "view/XViewKeys.h"

#include <QPainter>

#include <thread>

namespace {

class XViewProgressiveTest : public XProgressiveFixture
{
protected:
    void AddMark(double x, double y)
    {
        auto* point = new XvcPoint(x, y);
        point->SetThick(20);
        view.GetEditLayer()->AddTail(point);
        point->CalcRange();
        view.GetSelectedObj()->AddTail(point);
    }
};

TEST_F(XViewProgressiveTest, ASweepEndsWithThePictureOfADirectView)
{
    XSlowBand band(2048, 1024); // levels 0 to 3
    XDMComposite* composite = ShowBand(&band);
    composite->SetStretchCoverage(1, 0); // the cut range is worked out by the drawing
    view.SetBookMark(500, -400, 0xFF00FFFFu);
    AddMark(900, -500);
    for (const double length : {4.0, 1.0, 0.3}) {
        SCOPED_TRACE(length);
        view.SetWorldPerPixel(length, length);
        view.SetWorldToCenter(900, -500);
        view.InvalidateControl(1);
        Settle();
        const QImage live = Shown();
        const double cut = composite->GetCutMax(0);
        view.SetProgressiveView(0);
        const QImage direct = Paint();
        EXPECT_EQ(live, direct);
        EXPECT_EQ(composite->GetCutMax(0), cut) << "what the worker found out came back";
        view.SetProgressiveView(1);
        EXPECT_EQ(Shown(), direct) << "shown until the first pass is done";
        Settle();
    }
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

TEST_F(XViewProgressiveTest, HostsPaintOnTheSurfaceThatIsDrawn)
{
    std::atomic<int> painted{0};
    host.handler = [&](const XMessageRecorder::tagMessage& message) {
        if (message.wParam != 41061 && message.wParam != 41062) return XLRESULT{0};
        auto* surface = reinterpret_cast<XBackBuffer*>(message.lParam);
        EXPECT_NE(surface, view.GetBackBuffer());
        EXPECT_EQ(surface->GetWidth(), kWidth);
        double x = 40, y = 20;
        view.GetBackBuffer()->ConvPixelToWorldCoord(x, y);
        surface->ConvWorldToPixelCoord(x, y);
        QPainter painter(&surface->GetImage());
        painter.fillRect(QRectF(x, y, 30, 30), message.wParam == 41061 ? Qt::blue : Qt::red);
        ++painted;
        return XLRESULT{0};
    };
    for (int i = 0; i < 50 && painted < 2; ++i) { // a report may time out on a busy machine
        painted = 0;
        view.InvalidateControl(1);
        Settle();
    }
    ASSERT_EQ(painted, 2);
    EXPECT_EQ(Shown().pixel(50, 30), qRgb(255, 0, 0));
    EXPECT_EQ(view.GetBackBuffer()->GetImage().pixel(50, 30), qRgb(255, 0, 0));
    host.handler = nullptr;
}

TEST_F(XViewProgressiveTest, PanAndWheelShowTheLastPictureWhereItLiesNow)
{
    XSlowBand band(400, 200);
    ShowBand(&band);
    view.SetWorldToCenter(199.5, -99.5); // pixel on pixel
    view.SetWorldPerPixel(1, 1);
    view.InvalidateControl(1);
    Settle();
    const QImage before = Shown();
    view.QueDisable(); // nothing newer comes

    Mouse(QEvent::MouseButtonPress, 50, 50, Qt::RightButton, Qt::RightButton);
    Mouse(QEvent::MouseMove, 67, 39, Qt::NoButton, Qt::RightButton);
    QImage moved = Shown();
    EXPECT_EQ(before.copy(0, 11, 383, 189), moved.copy(17, 0, 383, 189));
    EXPECT_EQ(moved.pixel(5, 100), 0xFF000000u) << "uncovered";
    Mouse(QEvent::MouseMove, 50, 50, Qt::NoButton, Qt::RightButton);
    Mouse(QEvent::MouseButtonRelease, 50, 50, Qt::RightButton, Qt::NoButton);
    EXPECT_EQ(Shown(), before);

    Wheel(200, 100, -120); // in
    moved = Shown();
    int differences = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            differences += moved.pixel(x, y) != before.pixel(100 + x / 2, 50 + y / 2);
    EXPECT_EQ(differences, 0);
    view.SetMode(0);
    EXPECT_TRUE(view.GetBackBuffer()->IsUpdateNeeded()) << "a disabled queue leaves the flags up";
    view.QueEnable();
    view.Que(17);
    EXPECT_FALSE(view.GetBackBuffer()->IsUpdateNeeded());
    Settle();
    EXPECT_EQ(Shown(), moved) << "nearest pixels at two to one are what the scaling showed";
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

TEST_F(XViewProgressiveTest, ABackgroundColourIsSeenAtOnce)
{
    XSlowBand band(2048, 1024);
    band.delayUs = 200;
    ShowBand(&band);
    view.ZoomFitRect(-3000, -2000, 5000, 1000);
    onReport = [this](unsigned code) {
        if (code == 41061) view.InvalidateControl(1); // starts the worker while the view draws
    };
    view.SetBackgroundColor(0xFF00FF00u); // in mid-sweep
    onReport = nullptr;
    EXPECT_EQ(Shown().pixel(3, 3), qRgb(0, 255, 0));
    Settle();
    EXPECT_EQ(Shown().pixel(3, 3), qRgb(0, 255, 0));
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

TEST_F(XViewProgressiveTest, ASelectionIsSeenWithoutDrawingTheRastersAnew)
{
    XSlowBand band(300, 150);
    ShowBand(&band);
    view.SetWorldToCenter(150, -75);
    view.InvalidateControl(1);
    Settle();
    const QImage before = Shown();
    host.Forget();
    AddMark(150, -75);
    view.GetOverlay().Raise({XViewBuffer::TempVertex, XViewBuffer::TempBack});
    view.InvalidateControl(0);
    Settle();
    EXPECT_EQ(Count(41061), 0);
    const QImage marked = Shown();
    EXPECT_NE(marked, before);
    EXPECT_EQ(marked.copy(0, 0, 190, 200), before.copy(0, 0, 190, 200));
    view.SetMode(0);
    Settle();
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

// Also in a direct view: what is drawn here is the same in both.
TEST_F(XViewProgressiveTest, ADragMovesTheObjectsAndLeavesTheRasters)
{
    XSlowBand band(2048, 1024);
    ShowBand(&band);
    auto* box = new XvcRectangle;
    box->Set(600, -520, 0, 640, -480, 0);
    box->SetFillStyle(tagXFillStyle(tagXFillStyle::kSolid));
    box->SetForeColor(0xFF0000FFu);
    box->CalcRange();
    view.GetEditLayer()->AddTail(box);
    view.SetMode(0);
    const auto send = [this](unsigned message, int x) {
        view.HandleMouseSelectMessage(view.GetHWND(), message, message == 514 ? 0 : 1,
                                      static_cast<XLPARAM>(XfnPackPoint(x, 100)));
    };
    const QRgb red = qRgb(255, 0, 0);
    for (const bool isProgressive : {true, false}) {
        SCOPED_TRACE(isProgressive);
        view.SetProgressiveView(isProgressive);
        view.SetWorldPerPixel(1, 1);
        view.SetWorldToCenter(700, -500); // the box lies from 100 to 140
        view.InvalidateControl(1);
        Paint();
        Settle();
        const QImage before = Shown();
        ASSERT_EQ(before.pixel(120, 92), red);
        send(513, 120);
        Paint();
        Settle();
        XTileCache::Get().Clear();
        for (const int x : {140, 220}) {
            const int read = band.readCount;
            host.Forget();
            send(512, x);
            Paint();
            XfnRunUntil([this] { return Count(41062) > 0; }); // later where all is slow
            Settle();
            EXPECT_EQ(Count(41061), 1) << x;
            EXPECT_EQ(Count(41062), 1) << x;
            const bool isKept = isProgressive || x > 140; // a direct view keeps them from then on
            EXPECT_EQ(band.readCount == read, isKept) << x;
        }
        const QImage moved = Shown();
        EXPECT_EQ(moved.pixel(220, 92), red);
        EXPECT_NE(moved.pixel(120, 92), red) << "nothing of it stays behind";
        EXPECT_EQ(moved.copy(300, 0, 100, 200), before.copy(300, 0, 100, 200));
        send(514, 220);
        view.Undo();
        Paint();
        Settle();
        view.GetSelectedObj()->RemoveAll();
    }
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

TEST_F(XViewProgressiveTest, ADirectDrawingIsRefinedAndLeavesNoLevelBehind)
{
    XSlowBand band(2048, 2048), other(2048, 2048);
    XDMComposite* composite = ShowBand(&band);
    const auto expectDirect = [this](const char* when) {
        SCOPED_TRACE(when);
        Settle();
        const QImage live = Shown();
        view.SetProgressiveView(0);
        EXPECT_EQ(Paint(), live);
        view.SetProgressiveView(1);
        Settle();
    };
    view.ZoomOneToOne();
    view.SetBackgroundColor(0xFF203040u); // in mid-sweep, so coarse
    EXPECT_EQ(composite->GetDrawLevel(), -1);
    view.SetProgressiveView(0);
    const QImage direct = Paint();
    view.SetProgressiveView(1);
    Settle();
    EXPECT_EQ(direct, Shown());

    host.Forget();
    view.SetBackgroundColor(0xFF304050u);
    Settle();
    EXPECT_EQ(Count(41061), 1) << "what was drawn fine needs no sweep";
    ShowBand(&other); // at the place of the levels of the first
    view.SetBackgroundColor(0xFF405060u);
    expectDirect("another stack");
    view.SetWorldPerPixel(6, 6); // nobody asked for a picture
    view.SetBackgroundColor(0xFF506070u);
    expectDirect("another zoom");
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

TEST(XSceneCompositeTest, ACloneOfAPreparedCompositeDoesNotLookAtItsVectors)
{
    auto* layer = new XvcLayer;
    auto* point = new XvcPoint(0, 0);
    point->SetThick(20);
    layer->AddTail(point);
    XvcBase base;
    base.AddTail(layer);
    base.CalcRange();
    XDMVand vand;
    vand.SetBase(&base);
    XDMComposite own, clone, clonesClone;
    own.SetMode(3);
    own.SetVand(&vand);
    const auto isDrawn = [](XDMComposite& composite) {
        XBackBuffer surface;
        surface.Resize(nullptr, 40, 40);
        surface.SetWorldToCenter(0, 0);
        surface.Clear(0xFF112233u);
        const QImage before = surface.GetImage().copy();
        composite.Draw(&surface, -20, -20, 20, 20, 1, nullptr, nullptr);
        return surface.GetImage() != before;
    };
    own.PrepareVector();
    clone.CloneXDMComposite(&own);
    base.SetHideFlag(1);
    clonesClone.CloneXDMComposite(&clone);
    EXPECT_TRUE(isDrawn(clone));
    EXPECT_TRUE(isDrawn(clonesClone));
    EXPECT_FALSE(isDrawn(own));
    clone.UpdateVector();
    EXPECT_FALSE(isDrawn(clone)) << "on its own again";
}

/// A view whose passes can be counted, halted and broken, and that tells when it is busy.
class XWatchedView : public XTQSpaceView
{
public:
    ~XWatchedView() override { OnDestroy(); }
    void OnPreDraw() override
    {
        ++begun;
        if (inPass) inPass();
        XTQSpaceView::OnPreDraw();
        ++passes;
        passed.Set();
    }
    void OnBusyChanged(int isBusy) override { busy.push_back(isBusy); }

    std::function<void()> inPass; // changed at rest only
    std::atomic<int> begun{0}, passes{0};
    XEvent passed;
    std::vector<int> busy;
};

/// It shows a band of levels 0 to 3 pixel on pixel, and its worker is at rest.
class XWatchedViewTest : public ::testing::Test
{
protected:
    XWatchedViewTest()
    {
        view.SetAlwaysRefine(1);
        view.SetProgressiveView(1);
        view.resize(400, 200);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
        composite = view.GetXDMCompManager()->NewXDMComposite(0);
        composite->SetBand(&band, 0);
        composite->SetCutRange(0, 255, 0);
        view.GetXDMCompManager()->AddXDMComposite(composite);
        view.SetWorldPerPixel(1, 1);
        view.SetWorldToCenter(500, -500);
        view.InvalidateControl(1);
        Settle();
        view.begun = view.passes = 0;
    }
    ~XWatchedViewTest() override
    {
        view.QueCancel();
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
    }
    void Settle()
    {
        XfnRunUntil([this] { return !view.IsBusy(); });
        XfnRunPending();
    }
    QImage Shown() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    void RightButton(QEvent::Type type, int x, int y)
    {
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::RightButton;
        QMouseEvent event(type, QPointF(x, y), QPointF(x, y), button, Qt::RightButton,
                          Qt::NoModifier);
        QApplication::sendEvent(&view, &event);
    }

    XMessageRecorder host;
    XSlowBand band{2048, 1024};
    XWatchedView view;
    XDMComposite* composite = nullptr;
};

TEST_F(XWatchedViewTest, AHostThatNeverAnswersDelaysThePassesOnly)
{
    view.Initialize(host.GetHWND(), 1);
    view.busy.clear();
    view.InvalidateControl(1);
    while (view.passes < 4) // no event loop runs: nobody answers
        ASSERT_TRUE(view.passed.Wait(60000));
    host.Forget();
    Settle();
    EXPECT_TRUE(host.GetMessages().empty()) << "what timed out is never delivered";
    EXPECT_EQ(view.busy, (std::vector<int>{1, 0}));
}

TEST_F(XWatchedViewTest, AReadOutDuringAPassAnswersNoAndWritesNothing)
{
    XEvent entered, gate{XEvent::XReset::Manual};
    view.inPass = [&] {
        entered.Set();
        gate.Wait(60000);
    };
    view.InvalidateControl(1);
    ASSERT_TRUE(entered.Wait(60000));
    double values[3] = {1, 2, 3};
    EXPECT_EQ(view.ShowPosValue(10, 10, values), 0);
    EXPECT_EQ(std::vector<double>(values, values + 3), (std::vector<double>{1, 2, 3}));
    gate.Set();
    Settle();
    EXPECT_EQ(view.ShowPosValue(200, 100, values), 1);
    EXPECT_EQ(values[0], ((500 * 2048 + 500) * 7 + (500 * 2048 + 500) / 97) & 255);
}

TEST_F(XWatchedViewTest, AnOverlayAfterPassesThatThrewLiesOnAPictureOfTheSameMapping)
{
    view.inPass = [] { throw std::bad_alloc(); };
    view.SetWorldToCenter(900, -400);
    view.InvalidateControl(1);
    Settle();
    EXPECT_EQ(view.passes, 0);
    view.inPass = nullptr;
    view.GetOverlay().Raise({XViewBuffer::TempVertex, XViewBuffer::TempBack});
    view.InvalidateControl(0);
    Settle();
    const QImage live = Shown();
    view.SetProgressiveView(0);
    EXPECT_EQ(live, Shown());
}

TEST_F(XWatchedViewTest, APanMovesTheNewestPictureThatWasDrawn)
{
    view.inPass = [this] {
        if (view.begun > 1) throw std::bad_alloc();
    };
    const QImage stale = Shown();
    composite->SetCutRange(0, 100, 0);
    view.InvalidateControl(1);
    for (int i = 0; i < 60000 && view.begun < 2; ++i) // the first pass waits to be shown
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(Shown(), stale);
    RightButton(QEvent::MouseButtonPress, 50, 50);
    const QImage newest = Shown();
    EXPECT_NE(newest, stale);
    RightButton(QEvent::MouseMove, 67, 39);
    EXPECT_EQ(newest.copy(0, 11, 383, 189), Shown().copy(17, 0, 383, 189));
    view.QueCancel();
}

TEST_F(XViewProgressiveTest, AModalBoxWithinAReportSeesALiveView)
{
    XSlowBand band(2048, 1024);
    ShowBand(&band);
    struct Case
    {
        const char* name;
        std::function<void()> act;
    };
    const Case kCases[] = {
        {"looks on", [] {}},
        {"invalidates", [this] { view.InvalidateControl(1); }},
        {"resizes", [this] { view.resize(kWidth + 1, kHeight); }},
        {"cancels", [this] { view.QueCancel(); }},
        {"cancels and asks anew",
         [this] {
             view.QueCancel();
             view.ZoomIn();
         }},
        {"changes the background", [this] { view.SetBackgroundColor(0xFF101010u); }},
        {"is not progressive any more", [this] { view.SetProgressiveView(0); }},
    };
    view.ZoomFit();
    Settle();
    const QImage expected = Shown();
    for (const Case& c : kCases) {
        for (const unsigned code : {41061u, 41062u}) {
            SCOPED_TRACE(c.name);
            int count = 0;
            QImage nested;
            onReport = [&](unsigned reported) {
                if (reported != code || count++ > 0) return;
                XfnRunPending();
                c.act();
                XfnRunPending();
                nested = Shown();
            };
            for (int i = 0; i < 50 && count == 0; ++i) {
                view.InvalidateControl(1);
                Settle();
            }
            onReport = nullptr;
            EXPECT_GE(count, 1);
            EXPECT_FALSE(nested.isNull());
            view.SetProgressiveView(1);
            view.resize(kWidth, kHeight);
            view.SetBackgroundColor(0xFF000000u);
            view.ZoomFit();
            Settle();
            EXPECT_EQ(Shown(), expected);
        }
    }
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

TEST_F(XViewProgressiveTest, CompositesGoWhileAPassRuns)
{
    int running = 0;
    for (int i = 0; i < 30; ++i) {
        auto band = std::make_unique<XSlowBand>(1024, 1024);
        band->delayUs = 500;
        ShowBand(band.get());
        view.ZoomFit();
        view.ZoomOneToOne();
        if (i % 2) XfnRunUntil([&] { return view.IsDrawing() || !view.IsBusy(); });
        if (i % 3 == 0) XfnRunPending();
        running += view.IsDrawing();
        view.QueCancel();
        EXPECT_FALSE(view.IsDrawing());
        EXPECT_EQ(band->inHand, 0) << "helpers are waited for too";
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
        band.reset();
        view.InvalidateControl(1);
        if (i % 2) Settle();
    }
    Settle();
    EXPECT_EQ(Shown().pixel(200, 100), 0xFF000000u);
    EXPECT_GE(running, 5);
}

} // namespace
