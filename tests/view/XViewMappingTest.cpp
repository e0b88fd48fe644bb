#include "tests/view/XViewFixture.h"

#include "foundation/platform/XUserSettings.h"

#include <cmath>
#include <limits>

namespace {

/// A raster of 101 x 51 pixels of 1, whose pixel centres span x 0 to 100 and y 0 to 50, in a view
/// of 400 x 200: fitted, a device pixel is a quarter of a world unit.
class XViewMappingTest : public XViewFixture
{
public:
    XViewMappingTest() : picture(101, 51, 0, 50, 1, 1, [](int x, int y) { return x + y; })
    {
        Show(picture);
        view.ZoomFit();
        host.Forget();
    }
    using XViewFixture::Drag;
    using XViewFixture::Key;
    using XViewFixture::Mouse;
    using XViewFixture::Pinch;
    using XViewFixture::TwoFingers;
    using XViewFixture::view;
    using XViewFixture::Wheel;

    XMemoryPicture picture;
};

struct MappingCase
{
    const char* name;
    void (*act)(XViewMappingTest&);
    tagXWorldBox box;
    const char* codes;
};

using T = XViewMappingTest;
const double kFine = std::exp2(0.1);
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const tagXWorldBox kWhole{0, 0, 100, 50}, kHalf{25, 12.5, 75, 37.5}, kTwice{-50, -25, 150, 75};
const tagXWorldBox kOneToOne{-150, -75, 250, 125}, kPanned{-10, -5, 90, 45};
const tagXWorldBox kInThere{12.5, 18.75, 62.5, 43.75}, kOutThere{-25, -37.5, 175, 62.5};
const tagXWorldBox kInFine{50 - 50 / kFine, 25 - 25 / kFine, 50 + 50 / kFine, 25 + 25 / kFine};
const tagXWorldBox kQuarter{37.5, 18.75, 62.5, 31.25}, kWide{0, -2, 10, 3},
    kTall{-9.5, 0, 10.5, 10};
const tagXWorldBox kHeldInRange{-100, -100, 300, 100}, kRightward{12.5, 0, 112.5, 50};
const tagXWorldBox kPixelUp{0, 0.25, 100, 50.25}, kTwoFingers{-2, -1, 98, 49};

void DragBy(T& t, Qt::MouseButton button)
{
    t.Drag(button, {100, 100}, {140, 80});
}

const MappingCase kCases[] = {
    {"fit shows all pixel centres", [](T& t) { t.view.ZoomFit(); }, kWhole, "41086"},
    {"in halves about the centre", [](T& t) { t.view.ZoomIn(); }, kHalf, "41087"},
    {"out doubles", [](T& t) { t.view.ZoomOut(); }, kTwice, "41089"},
    {"a wide box by its width", [](T& t) { t.view.ZoomFitRect(0, 0, 10, 1); }, kWide, "41086"},
    {"a tall box by its height", [](T& t) { t.view.ZoomFitRect(0, 0, 1, 10); }, kTall, "41086"},
    {"an empty box: none", [](T& t) { t.view.ZoomFitRect(9, 9, 1, 1); }, kWhole, "41086"},
    {"no number: none", [](T& t) { t.view.ZoomFitRect(kNaN, 0, 1, 1); }, kWhole, "41086"},
    {"one to one", [](T& t) { t.view.ZoomOneToOne(); }, kOneToOne, "41088"},
    {"one to one twice does not wander", [](T& t) { t.view.ZoomOneToOne(), t.view.ZoomOneToOne(); },
     kOneToOne, "41088 41088"},
    {"one to one holds the centre in the range",
     [](T& t) { t.view.SetWorldToCenter(1000, -7), t.view.ZoomOneToOne(); }, kHeldInRange, "41088"},
    {"the zoom rectangle is a mode only", [](T& t) { t.view.ZoomRect(); }, kWhole, ""},
    {"right drag: the picture follows", [](T& t) { DragBy(t, Qt::RightButton); }, kPanned,
     "41073 41075 41074"},
    {"middle drag pans, tools and reports see a move", [](T& t) { DragBy(t, Qt::MiddleButton); },
     kPanned, "41075"},
    {"Space and left drag pan, nothing is pressed",
     [](T& t) {
         QTest::keyPress(&t.view, Qt::Key_Space);
         DragBy(t, Qt::LeftButton);
         QTest::keyRelease(&t.view, Qt::Key_Space);
     },
     kPanned, "41064 41075 41065"},
    {"left drag alone does not", [](T& t) { DragBy(t, Qt::LeftButton); }, kWhole,
     "41067 41075 41068"},
    {"arrow key looks an eighth to the right",
     [](T& t) { QTest::keyPress(&t.view, Qt::Key_Right); }, kRightward, "41064"},
    {"arrow with Ctrl a pixel up",
     [](T& t) { t.Key(QEvent::KeyPress, Qt::Key_Up, Qt::ControlModifier); }, kPixelUp, "41064"},
    {"plus key", [](T& t) { QTest::keyPress(&t.view, Qt::Key_Plus, Qt::KeypadModifier); }, kHalf,
     "41064 41087"},
    {"Ctrl and minus", [](T& t) { t.Key(QEvent::KeyPress, Qt::Key_Minus, Qt::ControlModifier); },
     kTwice, "41064 41089"},
    {"two fingers pan", [](T& t) { t.TwoFingers(8, -4); }, kTwoFingers, ""},
    {"pinch about the fingers", [](T& t) { t.Pinch(100, 50, 1.0); }, kInThere, "41087"},
    {"wheel back zooms in there", [](T& t) { t.Wheel(100, 50, -120); }, kInThere, "41076"},
    {"wheel forward zooms out there", [](T& t) { t.Wheel(100, 50, 120); }, kOutThere, "41076"},
    {"Ctrl and wheel make a fine step", [](T& t) { t.Wheel(200, 100, -120, Qt::ControlModifier); },
     kInFine, "41076"},
    {"a fast wheel is as many", [](T& t) { t.Wheel(200, 100, -240); }, kQuarter, "41076 41076"},
    {"parts of a notch are summed up",
     [](T& t) {
         for (int i = 0; i < 8; ++i)
             t.Wheel(200, 100, -15);
     },
     kHalf, "41076"},
    {"a turn of the wheel drops what was summed",
     [](T& t) {
         for (const int angle : {-110, 110, -110})
             t.Wheel(200, 100, angle);
     },
     kWhole, ""},
    {"a lost release ends the gesture",
     [](T& t) {
         t.Mouse(QEvent::MouseButtonPress, 10, 10, Qt::RightButton, Qt::RightButton);
         t.Mouse(QEvent::MouseMove, 50, 50, Qt::NoButton, Qt::NoButton);
     },
     kWhole, "41073 41074 41075"},
};

TEST_F(XViewMappingTest, EachOperationGivesItsBoxAndReports)
{
    for (const MappingCase& c : kCases) {
        SCOPED_TRACE(c.name);
        view.SetMode(-1);
        view.ZoomFitRect(0, 0, 100, 50);
        host.Forget();
        c.act(*this);
        ExpectBox(Bound(), c.box, 1e-9);
        std::string codes;
        for (const XWPARAM code : Reports())
            codes += (codes.empty() ? "" : " ") + std::to_string(code);
        EXPECT_EQ(codes, c.codes);
    }
}

TEST_F(XViewMappingTest, BothSurfacesKeepOneMapping)
{
    for (const MappingCase& c : kCases) {
        c.act(*this);
        double x[2] = {}, y[2] = {}, size[2] = {};
        XBackBuffer* buffers[] = {view.GetBackBuffer(), &view.GetOverlay().GetTempBack()};
        for (int i = 0; i < 2; ++i) {
            buffers[i]->GetWorldToCenter(x[i], y[i]);
            size[i] = buffers[i]->GetWorldPerPixel();
        }
        EXPECT_TRUE(x[0] == x[1] && y[0] == y[1] && size[0] == size[1]) << c.name;
    }
}

TEST_F(XViewMappingTest, WheelKeepsThePointUnderThePointerToThePixel)
{
    view.resize(401, 203); // odd sizes: the centre lies amid a pixel
    for (int step = 0; step < 200; ++step) {
        const int px = step * 37 % 401, py = step * 53 % 203;
        double x = px, y = py;
        view.GetBackBuffer()->ConvPixelToWorldCoord(x, y);
        Wheel(px, py, step / 10 % 2 ? 120 : -120, step % 3 ? Qt::NoModifier : Qt::ControlModifier);
        view.GetBackBuffer()->ConvWorldToPixelCoord(x, y);
        ASSERT_LT(std::abs(x - px), 1.0) << step;
        ASSERT_LT(std::abs(y - py), 1.0) << step;
    }
}

TEST_F(XViewMappingTest, WheelStepsInAndOutAboutOnePixelLeadBack)
{
    struct Case
    {
        const char* name;
        QSize size;
        double centreX;
        double centreY;
        double length;
    };
    const Case kCases[] = {
        {"even sizes", {400, 200}, 50, 25, 0.25},
        {"odd sizes", {401, 203}, 50, 25, 0.25},
        {"far from the origin", {400, 203}, 523456.7, 4123456.3, 0.3},
        {"degrees", {401, 200}, 127.123, 37.456, 1e-5},
    };
    for (const Case& c : kCases) {
        view.resize(c.size);
        for (int i = 0; i < 60; ++i) {
            const int px = i * 37 % 400, py = i * 53 % 200;
            view.SetWorldToCenter(c.centreX, c.centreY);
            view.SetWorldPerPixel(c.length, c.length);
            for (int k = 0; k < 20; ++k)
                Wheel(px, py, -120);
            for (int k = 0; k < 20; ++k)
                Wheel(px, py, 120);
            double x = 0, y = 0;
            view.GetBackBuffer()->GetWorldToCenter(x, y);
            ASSERT_EQ(view.GetBackBuffer()->GetWorldPerPixel(), c.length) << c.name;
            ASSERT_LE(std::abs(x - c.centreX), c.length) << c.name << ", " << px << " " << py;
            ASSERT_LE(std::abs(y - c.centreY), c.length) << c.name << ", " << px << " " << py;
        }
    }
}

TEST_F(XViewMappingTest, AThousandStepsInAndOutChangeNothing)
{
    view.SetWorldToCenter(1234567.25, -7654321.5);
    const tagXWorldBox before = Bound();
    for (int i = 0; i < 1000; ++i) {
        view.ZoomIn();
        view.ZoomOut();
    }
    for (int i = 0; i < 20; ++i)
        view.ZoomIn();
    for (int i = 0; i < 20; ++i)
        view.ZoomOut();
    ExpectBox(Bound(), before, 0.0);
}

TEST_F(XViewMappingTest, InvertedWheelReportsTheNegatedDelta)
{
    Wheel(30, 40, 120, Qt::ShiftModifier, Qt::LeftButton);
    EXPECT_EQ(mouse.delta, 120);
    EXPECT_EQ(mouse.flags, 1 | 4);
    EXPECT_EQ(mouse.x, 30);
    EXPECT_EQ(mouse.y, 40);
    const double out = view.GetBackBuffer()->GetWorldPerPixel();
    XfnSetInvertMouseWheelZoomDir(true);
    Wheel(30, 40, 120);
    XfnSetInvertMouseWheelZoomDir(false);
    EXPECT_EQ(mouse.delta, -120);
    EXPECT_EQ(view.GetBackBuffer()->GetWorldPerPixel(), out / 2);
}

TEST_F(XViewMappingTest, WheelOverAPointOutsideTheWindowZoomsAboutTheCentre)
{
    const QPointF at(900, 900);
    QWheelEvent event(at, view.mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &event);
    ExpectBox(Bound(), {25, 12.5, 75, 37.5}, 1e-9);
}

TEST_F(XViewMappingTest, BoundOfATurnedViewHoldsAllCorners)
{
    view.GetBackBuffer()->SetRotationAngle(90);
    ExpectBox(Bound(), {25, -25, 75, 75}, 1e-9);
}

TEST_F(XViewMappingTest, ResizeKeepsTheFittedAreaInView)
{
    for (const QSize& size : {QSize(300, 300), QSize(900, 100), QSize(37, 411)}) {
        view.ZoomFitRect(0, 0, 100, 50);
        const tagXWorldBox fitted = Bound();
        view.resize(size);
        QCoreApplication::processEvents();
        const tagXWorldBox box = Bound();
        EXPECT_LE(box.minX, fitted.minX + 1e-9);
        EXPECT_LE(box.minY, fitted.minY + 1e-9);
        EXPECT_GE(box.maxX, fitted.maxX - 1e-9);
        EXPECT_GE(box.maxY, fitted.maxY - 1e-9);
        EXPECT_NEAR((box.minX + box.maxX) / 2, (fitted.minX + fitted.maxX) / 2, 1e-9);
    }
}

TEST_F(XViewMappingTest, ASecondImageLeavesTheViewWhereItIs)
{
    view.ZoomFitRect(20, 20, 30, 30);
    const tagXWorldBox before = Bound();
    XMemoryPicture other(10, 10, 5000, 5000, 2, 2, [](int, int) { return 9; });
    XDMComposite* added = Show(other);
    view.InvalidateControl(1);
    Paint();
    ExpectBox(Bound(), before, 0.0);
    view.GetXDMCompManager()->RemoveXDMComposite(added);
    delete added;
}

TEST_F(XViewMappingTest, OneToOneOfACompositeWithoutABandChangesAndReportsNothing)
{
    view.GetXDMCompManager()->AddXDMComposite(view.GetXDMCompManager()->NewXDMComposite(1));
    view.ZoomOneToOne();
    ExpectBox(Bound(), {0, 0, 100, 50}, 0.0);
    EXPECT_TRUE(Reports().empty());
}

class XEmptyViewTest : public XViewFixture
{};

TEST_F(XEmptyViewTest, FitAndOneToOneOfNothing)
{
    view.SetWorldPerPixel(3, 3);
    view.ZoomFit();
    ExpectBox(Bound(), {0, 0, kWidth, kHeight}, 0.0);
    EXPECT_EQ(Reports().back(), 41086u);
    EXPECT_EQ(view.UpdateComposites(), 0);
    view.SetWorldPerPixel(3, 3);
    view.SetWorldToCenter(-50, 60);
    view.ZoomOneToOne();
    ExpectBox(Bound(), {-250, -40, 150, 160}, 0.0);
    EXPECT_EQ(Reports().back(), 41088u);
}

TEST(XUnshownViewTest, AResizeBeforeAnyFitKeepsCentreAndLength)
{
    XTQSpaceView view;
    ASSERT_TRUE(view.Create());
    view.SetWorldToCenter(7, 8);
    view.SetWorldPerPixel(2, 2);
    view.resize(300, 111);
    QApplication::sendPostedEvents();
    QResizeEvent event(QSize(300, 111), QSize(1, 1));
    QApplication::sendEvent(&view, &event);
    double minX = 0, maxX = 0, minY = 0, maxY = 0;
    view.GetBound(minX, maxX, minY, maxY);
    EXPECT_EQ(minX, 7 - 300);
    EXPECT_EQ(maxX, 7 + 300);
    EXPECT_EQ(minY, 8 - 111);
    EXPECT_EQ(maxY, 8 + 111);
}

} // namespace
