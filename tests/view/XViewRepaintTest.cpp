#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "tests/view/XViewFixture.h"

#include <functional>
#include <memory>

namespace {

constexpr tagXColor kGreen = 0xFF00FF00u, kBlue = 0xFFFF0000u; // red lowest
const QRgb kGreenPixel = qRgb(0, 255, 0), kBluePixel = qRgb(0, 0, 255);

class XViewRepaintTest : public XViewFixture
{
protected:
    void Start()
    {
        view.SetBackgroundColor(kGreen);
        Settle();
        host.Forget();
    }
    /// Turns of the event loop, each with one paint at most.
    void Settle(int turns = 20)
    {
        for (int i = 0; i < turns; ++i)
            QCoreApplication::processEvents();
    }
    /// At the place whose colour Shown tells.
    void AddBlueMark()
    {
        auto* point = new XvcPoint(100, 100);
        point->SetType(2);
        point->SetThick(40);
        point->SetForeColor(kBlue);
        point->SetFillStyle(tagXFillStyle(tagXFillStyle::kSolid));
        view.GetEditLayer()->AddTail(point);
    }
    long Drawings() const
    {
        const auto codes = host.GetFirstParameters();
        return std::count(codes.begin(), codes.end(), XWPARAM{41061});
    }
    /// What the window shows, without asking it to draw anew.
    QRgb Shown()
    {
        const bool wasRaised = view.GetBackBuffer()->IsUpdateNeeded();
        EXPECT_FALSE(wasRaised) << "the picture is stale";
        return view.grab().toImage().pixel(100, 100);
    }
};

TEST_F(XViewRepaintTest, WhatAPaintReportRaisesIsDrawnAnew)
{
    struct Case
    {
        const char* name;
        unsigned code;
        unsigned message; // to the view; 0 invalidates
        bool isNested;    // within an event loop that the report runs
    };
    const Case kCases[] = {
        {"invalidated before the vectors", 41061, 0, false},
        {"invalidated after them", 41062, 0, false},
        {"in an event loop", 41061, 0, true},
        {"stretch applied", 41062, 1324, true},
        {"coverage changed", 41061, 1325, false},
        {"palette applied", 41062, 1327, false},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        Start();
        int count = 0;
        onReport = [&](unsigned code) {
            if (code != c.code || count++ > 0) return;
            view.SetXvcBackColor(kBlue);
            if (c.message)
                XfnSendMessage(view.GetHWND(), c.message, 0, 0);
            else
                view.InvalidateControl(1);
            if (c.isNested) Settle(3);
        };
        view.InvalidateControl(1);
        view.repaint();
        Settle();
        EXPECT_EQ(count, 2) << "one more drawing, and no more than one";
        EXPECT_EQ(Shown(), kBluePixel);
        onReport = nullptr;
    }
}

TEST_F(XViewRepaintTest, AHostThatInvalidatesInEveryReportGetsOneDrawingATurn)
{
    Start();
    onReport = [&](unsigned code) {
        if (code == 41061 || code == 41062) view.InvalidateControl(1);
    };
    view.InvalidateControl(1);
    view.repaint();
    EXPECT_EQ(Drawings(), 1);
    Settle(10);
    EXPECT_GE(Drawings(), 2);
    EXPECT_LE(Drawings(), 11);
    onReport = nullptr;
    Settle();
    host.Forget();
    Settle();
    EXPECT_EQ(Drawings(), 0) << "and rests when the host does";
}

TEST_F(XViewRepaintTest, AnObjectAddedWithinAReportIsSeen)
{
    Start();
    view.SetWorldToCenter(200, 100);
    int count = 0;
    onReport = [&](unsigned code) {
        if (code != 41061 || count++ > 0) return;
        AddBlueMark();
        view.InvalidateControl(1);
    };
    view.InvalidateControl(1);
    view.repaint();
    Settle();
    EXPECT_EQ(Shown(), kBluePixel);
}

TEST_F(XViewRepaintTest, ADrawingOutsideAPaintShowsTheLastWholePictureMeanwhile)
{
    struct Case
    {
        const char* name;
        void (*act)(XTQSpaceView&);
    };
    const Case kCases[] = {
        {"background colour", [](XTQSpaceView& view) { view.SetBackgroundColor(kBlue); }},
        {"asked for by the host",
         [](XTQSpaceView& view) {
             view.SetXvcBackColor(kBlue);
             view.UpdateBackBuffer();
             view.update();
         }},
    };
    for (const Case& c : kCases) {
        for (unsigned deadly : {41061u, 41062u}) {
            Start();
            QImage nested;
            onReport = [&](unsigned code) {
                if (code != deadly || !nested.isNull()) return;
                view.InvalidateControl(1); // all flags up, as an event loop might leave them
                nested = view.grab().toImage();
            };
            c.act(view);
            EXPECT_EQ(nested.pixel(100, 100), kGreenPixel) << c.name << ", " << deadly;
            Settle();
            EXPECT_EQ(Shown(), kBluePixel) << c.name << ", " << deadly;
            onReport = nullptr;
        }
    }
}

TEST_F(XViewRepaintTest, ABackgroundColourDoesNotHideWhatWaitsToBeDrawn)
{
    Start();
    view.SetWorldToCenter(200, 100);
    AddBlueMark();
    view.InvalidateControl(1);
    view.SetBackgroundColor(kGreen);
    Settle();
    EXPECT_EQ(Shown(), kBluePixel);
}

TEST_F(XViewRepaintTest, ADeviceGetsWhatTheWindowShows)
{
    Start();
    auto* point = new XvcPoint(200, 100);
    point->SetThick(60);
    point->SetForeColor(kBlue);
    view.GetEditLayer()->AddTail(point);
    point->CalcRange();
    view.GetSelectedObj()->AddTail(point);
    view.SetWorldToCenter(200, 100);
    view.InvalidateControl(1);
    QImage target(kWidth + 20, kHeight - 20, QImage::Format_RGB32);
    target.fill(Qt::red);
    XDC dc(&target);
    view.OnDraw(&dc); // runs what is raised before any paint has
    EXPECT_FALSE(view.GetBackBuffer()->IsUpdateNeeded());
    EXPECT_EQ(target.pixel(kWidth, 5), qRgb(255, 0, 0)) << "beyond the window";
    const QImage shown = view.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRect common(0, 0, kWidth, kHeight - 20);
    EXPECT_EQ(target.copy(common), shown.copy(common));
    const QPoint mark(203, 98);
    EXPECT_NE(target.pixel(mark), view.GetBackBuffer()->GetImage().pixel(mark)) << "the overlay";

    view.InvalidateControl(1);
    XDC nothing;
    view.OnDraw(&nothing);
    EXPECT_FALSE(view.GetBackBuffer()->IsUpdateNeeded());
    view.OnDraw(nullptr);
}

TEST_F(XViewRepaintTest, ADeviceWithinAReportGetsTheLastWholePicture)
{
    Start();
    QImage target(kWidth, kHeight, QImage::Format_RGB32);
    onReport = [&](unsigned code) {
        if (code != 41061) return;
        XDC dc(&target);
        view.OnDraw(&dc);
    };
    view.SetBackgroundColor(kBlue);
    EXPECT_EQ(target.pixel(100, 100), kGreenPixel);
}

/// A view of a program's own, with what its overrides need.
class XDerivedView : public XTQSpaceView
{
public:
    ~XDerivedView() override
    {
        const XHWND window = GetHWND();
        OnDestroy();
        if (onDestroyed) onDestroyed(window);
        OnDestroy();
    }
    void OnDraw(XDC* dc) override
    {
        XTQSpaceView::OnDraw(dc);
        if (dc) dc->FillRect(QRect(0, 0, 10, 10), kBlue);
    }
    int PreTranslateMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam) override
    {
        return XTQSpaceView::PreTranslateMessage(window, message, wParam, lParam) || isGreedy;
    }
    int HandleMessage(XHWND, unsigned message, XWPARAM, XLPARAM) override
    {
        seen.push_back(message);
        return 1;
    }

    bool isGreedy = false;
    std::vector<unsigned> seen;
    std::function<void(XHWND)> onDestroyed;
};

TEST(XDerivedViewTest, ItsDrawingAndItsMessagesCountInTheWindowToo)
{
    XMessageRecorder host;
    XDerivedView view;
    view.resize(60, 40);
    view.Create();
    view.Initialize(host.GetHWND(), 1);
    view.SetBackgroundColor(kGreen);
    const QImage shown = view.grab().toImage();
    EXPECT_EQ(shown.pixel(5, 5), kBluePixel);
    EXPECT_EQ(shown.pixel(15, 15), kGreenPixel);

    host.Forget();
    QTest::keyClick(&view, Qt::Key_A);
    EXPECT_EQ(view.seen, (std::vector<unsigned>{256, 257}));
    EXPECT_EQ(host.GetFirstParameters(), (std::vector<XWPARAM>{41064, 41065}))
        << "what HandleMessage answers is ignored";
    view.isGreedy = true;
    QTest::keyClick(&view, Qt::Key_A);
    QTest::mouseClick(&view, Qt::LeftButton);
    EXPECT_EQ(view.seen, (std::vector<unsigned>{256, 257, 256, 257, 513, 514}));
    EXPECT_EQ(host.GetMessages().size(), 2u);
}

TEST(XDerivedViewTest, OnDestroyEndsTheHandleBeforeTheDerivedPartGoes)
{
    int isAlive = -1;
    {
        XDerivedView view;
        view.Create();
        view.onDestroyed = [&](XHWND window) { isAlive = XfnIsWindow(window); };
    }
    EXPECT_EQ(isAlive, 0);
}

TEST(XPreTranslateTest, OnlyMessagesOfTheViewAreHandled)
{
    XMessageRecorder host, other;
    auto view = std::make_unique<XTQSpaceView>();
    view->Create();
    view->Initialize(host.GetHWND(), 1);
    const XHWND window = view->GetHWND();
    EXPECT_EQ(view->PreTranslateMessage(other.GetHWND(), 256, 27, 0), 0);
    EXPECT_EQ(view->PreTranslateMessage(0, 256, 27, 0), 0);
    EXPECT_TRUE(host.GetMessages().empty());
    EXPECT_EQ(view->PreTranslateMessage(window, 256, 27, 0), 0);
    EXPECT_EQ(host.GetFirstParameters(), (std::vector<XWPARAM>{41107}));
    host.handler = [&](const XMessageRecorder::tagMessage&) {
        view.reset();
        return XLRESULT{0};
    };
    XTQSpaceView* dying = view.get();
    EXPECT_EQ(dying->PreTranslateMessage(window, 256, 27, 0), 1);
    EXPECT_EQ(view, nullptr);
}

} // namespace
