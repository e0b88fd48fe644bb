#include "tests/view/XProgressiveFixture.h"

#include <cmath>
#include <random>

namespace {

/// Of both kinds of view: the parameter says whether it is progressive.
class XViewFuzzTest : public XViewFixture, public ::testing::WithParamInterface<bool>
{
public:
    XViewFuzzTest()
    {
        view.SetAlwaysRefine(1);
        view.SetProgressiveView(GetParam());
        onReport = [this](unsigned code) { CheckOrder(code); };
    }

    // Reports of input tell of the event in hand and come while it is. Those of painting come in
    // pairs; from a worker they come between events, and either may have timed out.
    void CheckOrder(unsigned code)
    {
        if (code == 41061 || code == 41062) {
            EXPECT_TRUE(GetParam() || code == 41061 || isVectorsDue);
            isVectorsDue = code == 41061;
            EXPECT_FALSE(GetParam() && isInEvent);
        } else {
            EXPECT_TRUE(isInEvent) << code;
        }
        if (code >= 41066 && code <= 41076) {
            // a release that was lost is where the pointer was last seen
            const bool isRelease = code == 41068 || code == 41074;
            const QPoint told(mouse.x, mouse.y);
            EXPECT_TRUE(told == sent || (isRelease && told == seen)) << code;
        }
    }

    // One event of a user who has lost patience.
    void Event(std::mt19937& random)
    {
        const auto pick = [&](int low, int high) {
            return std::uniform_int_distribution<int>(low, high)(random);
        };
        static constexpr Qt::MouseButton kButtons[] = {Qt::LeftButton, Qt::RightButton,
                                                       Qt::MiddleButton, Qt::BackButton};
        static constexpr int kKeys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                                        Qt::Key_Plus, Qt::Key_Minus, Qt::Key_Escape, Qt::Key_Space,
                                        Qt::Key_Tab,  Qt::Key_A,     Qt::Key_Delete, 0x1234567};
        static constexpr short kModes[] = {-1, 0, 101, 107, 201, 202, 9999};
        const int x = pick(-50, 450), y = pick(-50, 250);
        sent = QPoint(x, y);
        isInEvent = true;
        const int kind = pick(0, 15);
        const auto button = kButtons[pick(0, 3)];
        const auto keys = Qt::KeyboardModifiers(pick(0, 15) << 25);
        const Qt::MouseButtons held(pick(0, 7));
        switch (kind) {
        case 0:
        case 1:
            Mouse(QEvent::MouseButtonPress, x, y, button, held | button, keys);
            break;
        case 2:
        case 3:
            Mouse(QEvent::MouseButtonRelease, x, y, button, held & ~button, keys);
            break;
        case 4:
            Mouse(QEvent::MouseButtonDblClick, x, y, button, held | button, keys);
            break;
        case 5:
        case 6:
            Mouse(QEvent::MouseMove, x, y, Qt::NoButton, held, keys);
            break;
        case 7:
            Wheel(x, y, pick(-1500, 1500), keys, held);
            break;
        case 8:
            TwoFingers(pick(-300, 300), pick(-300, 300));
            break;
        case 9:
            Pinch(x, y, pick(-150, 150) / 100.0);
            break;
        case 10:
            Key(QEvent::KeyPress, kKeys[pick(0, 11)], keys);
            break;
        case 11:
            Key(QEvent::KeyRelease, kKeys[pick(0, 11)], keys);
            break;
        case 12:
            view.SetMode(kModes[pick(0, 6)]);
            break;
        case 13:
            if (pick(0, 9) == 0) view.resize(pick(0, 500), pick(0, 300));
            break;
        case 14:
            switch (pick(0, 5)) {
            case 0:
                view.ZoomFit();
                break;
            case 1:
                view.ZoomOneToOne();
                break;
            case 2:
                view.SetBookMark(x, y, 0xFF00FFFFu);
                break;
            case 3:
                view.ClearBookMark();
                break;
            case 4:
                view.ZoomFitRect(x, y, x + pick(-9, 99), y + pick(-9, 99));
                break;
            default:
                view.ZoomRect();
            }
            break;
        default:
            view.clearFocus();
            if (pick(0, 3) == 0) view.grab();
        }
        isInEvent = false;
        if (kind <= 6) seen = sent;
        if (pick(0, 4) == 0) QCoreApplication::processEvents();
    }

    void Run(unsigned seed)
    {
        std::mt19937 random(seed);
        for (int i = 0; i < XfnCountRuns(10000); ++i) {
            Event(random);
            const tagXWorldBox box = Bound();
            ASSERT_TRUE(std::isfinite(box.minX) && std::isfinite(box.maxX) &&
                        std::isfinite(box.minY) && std::isfinite(box.maxY))
                << "event " << i << ": " << box;
        }
        XfnRunUntil([this] { return !view.IsBusy(); });
        QCoreApplication::processEvents();
    }

    bool isInEvent = false;
    bool isVectorsDue = false;
    QPoint sent, seen;
};

TEST_P(XViewFuzzTest, AnEmptyViewSurvivesAnything)
{
    Run(20240);
}

TEST_P(XViewFuzzTest, AndSoDoesOneWithImages)
{
    XMemoryPicture first(300, 200, 1000, 1000, 0.5, 0.25, [](int x, int y) { return x * y; });
    XMemoryPicture large(900, 700, 900, 1100, 0.5, 0.5, [](int x, int y) { return x ^ y; });
    XMemoryPicture dot(1, 1, 1010, 990, 2, 2, [](int, int) { return 77; });
    Show(first);
    Show(dot);
    Show(large);
    isInEvent = true;
    view.ZoomFit();
    Run(777);
    // and is none the worse for it
    isInEvent = true;
    view.SetMode(-1);
    view.resize(kWidth, kHeight);
    view.ZoomFit();
    view.QueCancel();
    view.GetXDMCompManager()->RemoveXDMCompositeAll();
}

INSTANTIATE_TEST_SUITE_P(DirectAndProgressive, XViewFuzzTest, ::testing::Bool());

} // namespace
