#include "foundation/surface/XToolCursor.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "tests/view/XViewFixture.h"
#include "view/XViewKeys.h"

#include <QLineEdit>
#include <QMainWindow>

#include <memory>
#include <utility>

namespace {

class XTQSpaceViewTest : public XViewFixture
{};

TEST_F(XTQSpaceViewTest, ANewViewHasWhatToolsNeed)
{
    EXPECT_EQ(view.GetInnBaseList()->GetCount(), 1);
    EXPECT_EQ(view.GetExtBaseList()->GetCount(), 0);
    EXPECT_EQ(view.GetSymbolTableList()->GetCount(), 1);
    ASSERT_NE(view.GetEditLayer(), nullptr);
    EXPECT_EQ(view.GetEditLayer()->GetParentBase(), view.GetInnBaseList()->GetHead());
    EXPECT_TRUE(view.GetUnDoStack()->IsEmpty());
    EXPECT_EQ(view.GetMode(), -1);
    EXPECT_EQ(view.GetPostMode(), -1);
    EXPECT_EQ(view.GetLineStyle().GetStyle(), 0);
    EXPECT_EQ(view.GetFillStyle().GetStyle(), 1);
    EXPECT_STREQ(view.GetTextStyle().font.faceName, "Courier New");
    EXPECT_EQ(view.GetXvcForeColor(), 0xFF0000FFu);
    EXPECT_EQ(view.GetXvcLineColor(), 0xFF00FFFFu);
    EXPECT_EQ(view.GetObjectManager().m_thickness, 0.0);
    EXPECT_EQ(view.GetHitFlag().kind, 0);
    EXPECT_EQ(view.GetHitFlag().index, -1);
    EXPECT_EQ(view.GetVertexBuffer()->GetType(), 3);
    EXPECT_EQ(view.GetBackBuffer()->GetType(), 2);
    EXPECT_TRUE(view.Create()) << "a second call";
    EXPECT_EQ(view.GetInnBaseList()->GetCount(), 1);
}

TEST(XViewLifeTest, ViewsAreCountedAndShowMakesThem)
{
    class XCountingBase : public XvcBase // the view's own, so it goes with it
    {
    public:
        explicit XCountingBase(int& count) : m_count(count) {}
        ~XCountingBase() override { m_count = XTQSpaceView::GetViewCount(); }

    private:
        int& m_count;
    };
    int within = -1;
    const int before = XTQSpaceView::GetViewCount();
    {
        XTQSpaceView view;
        EXPECT_EQ(XTQSpaceView::GetViewCount(), before + 1);
        EXPECT_EQ(view.GetXDMCompManager(), nullptr);
        view.ZoomFit();
        view.ZoomOneToOne();
        EXPECT_EQ(view.UpdateComposites(), 0);
        view.show();
        EXPECT_NE(view.GetXDMCompManager(), nullptr);
        view.GetInnBaseList()->AddTail(new XCountingBase(within));
    }
    EXPECT_EQ(within, before) << "a view that goes is none while its parts go";
    EXPECT_EQ(XTQSpaceView::GetViewCount(), before);
}

TEST(XViewLifeTest, LentBasesSurviveTheView)
{
    XvcBase lent;
    {
        XTQSpaceView view;
        view.Create();
        view.GetExtBaseList()->AddTail(&lent);
    }
    EXPECT_EQ(lent.GetCount(), 0);
}

TEST(XViewLifeTest, AHostMayEndTheViewWithinAReport)
{
    for (unsigned deadly : {41086u, 41087u, 41076u, 41075u, 41064u}) {
        XMessageRecorder host;
        auto view = std::make_unique<XTQSpaceView>();
        view->Create();
        view->Initialize(host.GetHWND(), 1);
        host.handler = [&](const XMessageRecorder::tagMessage& message) {
            if (message.wParam == deadly) view.reset();
            return XLRESULT{0};
        };
        switch (deadly) {
        case 41086:
            view->ZoomFitRect(0, 0, 1, 1);
            break;
        case 41087:
            view->ZoomIn();
            break;
        case 41076:
            view->OnMouseWheel(0, 120, 5, 5);
            break;
        case 41075:
            view->OnMouseMove(0, 5, 5);
            break;
        default:
            view->OnKeyDown(65, 1, 0);
        }
        EXPECT_EQ(view, nullptr) << deadly;
    }
}

TEST_F(XTQSpaceViewTest, VectorExtentIsOfInnerAndLentBases)
{
    double minX = 0, minY = 0, maxX = 0, maxY = 0;
    EXPECT_EQ(view.CalcTotalRange(minX, minY, maxX, maxY), 1);
    EXPECT_EQ(minX, 1.7e308);
    EXPECT_EQ(maxY, -1.7e308);
    XvcBase lent;
    auto* layer = new XvcLayer;
    lent.AddTail(layer);
    for (XvcLayer* target : {view.GetEditLayer(), layer}) {
        auto* point = target == layer ? new XvcPoint(-5, 70) : new XvcPoint(10, 20);
        point->SetThick(2);
        target->AddTail(point);
    }
    view.GetExtBaseList()->AddTail(&lent);
    view.CalcTotalRange(minX, minY, maxX, maxY);
    EXPECT_EQ(minX, -6);
    EXPECT_EQ(minY, 19);
    EXPECT_EQ(maxX, 11);
    EXPECT_EQ(maxY, 71);
    view.GetExtBaseList()->RemoveAll();
}

TEST_F(XTQSpaceViewTest, AModeEmptiesTheSelectionButThePostModeDoesNot)
{
    XvcPoint point(1, 1);
    view.GetSelectedObj()->AddTail(&point);
    Paint();
    view.SetPostMode(102);
    EXPECT_EQ(view.GetSelectedObj()->GetCount(), 1);
    EXPECT_EQ(view.GetMode(), -1);
    view.SetMode(102);
    EXPECT_EQ(view.GetSelectedObj()->GetCount(), 0);
    EXPECT_TRUE(view.GetOverlay().IsRaised(XViewBuffer::TempVertex));
    EXPECT_TRUE(view.GetOverlay().IsRaised(XViewBuffer::TempBack));
    EXPECT_TRUE(view.GetBackBuffer()->IsUpdateNeeded());
    EXPECT_FALSE(view.GetOverlay().IsRaised(XViewBuffer::MainVertex));

    XvcLayer other;
    view.GetSelectedObj()->AddTail(&point);
    XvcLayer* before = view.GetEditLayer();
    view.SetEditLayer(nullptr);
    EXPECT_EQ(view.GetEditLayer(), before);
    EXPECT_EQ(view.GetSelectedObj()->GetCount(), 0);
    view.SetEditLayer(&other);
    EXPECT_EQ(view.GetEditLayer(), &other);
}

TEST_F(XTQSpaceViewTest, MessagesAreAnsweredAsTheDispatchSays)
{
    struct Case
    {
        const char* name;
        unsigned short limit;
        unsigned message;
        XWPARAM wParam;
        int answer;
    };
    const Case kCases[] = {
        {"move", 0, 512, 0, 1},
        {"key", 0, 256, 65, 1},
        {"left down goes on", 0, 513, 1, 0},
        {"left up", 0, 514, 0, 0},
        {"double click", 0, 515, 1, 1},
        {"right down", 0, 516, 2, 0},
        {"right up", 0, 517, 0, 0},
        {"right double click", 0, 518, 2, 1},
        {"wheel", 0, 522, 0, 1},
        {"unknown", 0, 4711, 0, 0},
        {"Delete is swallowed", 1, 256, 46, 1},
        {"and so is whatever carries 46", 1, 513, 46, 1},
        {"other limits swallow nothing", 14, 513, 46, 0},
    };
    for (const Case& c : kCases) {
        view.SetModeLimit(c.limit);
        EXPECT_EQ(view.HandleMessage(view.GetHWND(), c.message, c.wParam, 0), c.answer) << c.name;
    }
    view.SetModeLimit(1);
    Mouse(QEvent::MouseMove, 1, 1, Qt::NoButton, Qt::NoButton, Qt::ControlModifier);
    EXPECT_EQ(view.HandleMessage(view.GetHWND(), 513, 1, 0), 1) << "Ctrl is down";
    Mouse(QEvent::MouseMove, 1, 1, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(view.HandleMessage(view.GetHWND(), 513, 1, 0), 0) << "and up again";
}

TEST_F(XTQSpaceViewTest, TheCursorFollowsModeAndRightButton)
{
    const auto describe = [](const QCursor& cursor) {
        return std::pair(cursor.shape(), cursor.pixmap().toImage());
    };
    const auto shown = [&] {
        view.HandleMessage(view.GetHWND(), kMsgMouseMove, 0, 0);
        return describe(view.cursor());
    };
    const auto zoom = describe(XfnGetCursor(XCursorImage::ZoomRect));
    const auto pan = describe(XfnGetCursor(XCursorImage::Pan));
    const auto line = describe(XfnGetToolCursor(102));
    view.ZoomRect();
    EXPECT_TRUE(shown() == zoom);
    view.HandleMessage(view.GetHWND(), kMsgRButtonDown, 2, 0);
    EXPECT_TRUE(shown() == zoom) << "the zoom rectangle keeps its cursor";
    view.SetMode(-1);
    EXPECT_TRUE(shown() == pan) << "without a mode too";
    view.HandleMessage(view.GetHWND(), kMsgRButtonUp, 0, 0);
    EXPECT_TRUE(shown() == describe(QCursor())) << "the default";
    view.SetMode(102);
    EXPECT_TRUE(shown() == line);
    Key(QEvent::KeyPress, Qt::Key_Space);
    EXPECT_TRUE(describe(view.cursor()) == pan) << "at once";
    QFocusEvent away(QEvent::FocusOut);
    QApplication::sendEvent(&view, &away);
    EXPECT_TRUE(describe(view.cursor()) == line) << "a key held when the focus went is forgotten";
}

TEST_F(XTQSpaceViewTest, KeyReportsCarryVirtualKeys)
{
    QTest::keyPress(&view, Qt::Key_A, Qt::ShiftModifier);
    EXPECT_EQ(key.character, 65);
    EXPECT_EQ(key.flags, 0);
    QTest::keyRelease(&view, Qt::Key_Delete);
    EXPECT_EQ(key.character, 46);
    EXPECT_EQ(key.flags, 0xC000);
    EXPECT_EQ(host.GetMessages().front().message, kHostMessage);
}

TEST_F(XTQSpaceViewTest, DoubleClicksAndButtonsAreReported)
{
    host.Forget();
    Mouse(QEvent::MouseButtonDblClick, 12, 34, Qt::RightButton, Qt::RightButton);
    Mouse(QEvent::MouseButtonDblClick, 12, 34, Qt::LeftButton, Qt::LeftButton, Qt::ControlModifier);
    Mouse(QEvent::MouseButtonRelease, 12, 34, Qt::LeftButton, Qt::NoButton, Qt::ControlModifier);
    EXPECT_EQ(Reports(), (std::vector<XWPARAM>{41072, 41074, 41066, 41068}));
    EXPECT_EQ(mouse.x, 12);
    EXPECT_EQ(mouse.y, 34);
    EXPECT_EQ(mouse.flags, 8);
}

TEST(XViewFocusTest, ThePointerTakesTheFocusOnlyWhenAsked)
{
    QMainWindow window;
    auto* view = new XTQSpaceView;
    auto* edit = new QLineEdit(&window);
    view->Create(&window);
    window.setCentralWidget(view);
    window.resize(300, 300);
    window.move(500, 500);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    edit->setFocus();
    view->SetAutoFocus(0);
    view->OnMouseMove(0, 10, 10);
    EXPECT_FALSE(view->hasFocus());
    view->SetAutoFocus(1);
    view->OnMouseMove(0, -10, 10);
    EXPECT_FALSE(view->hasFocus()) << "outside the client area";
    view->OnMouseWheel(0, 120, 510, 510);
    EXPECT_FALSE(view->hasFocus()) << "the wheel tests the point of the screen";
    view->OnMouseWheel(0, 120, 10, 10);
    EXPECT_TRUE(view->hasFocus());
    edit->setFocus();
    view->OnMouseMove(0, 10, 10);
    EXPECT_TRUE(view->hasFocus());
}

TEST_F(XTQSpaceViewTest, StylesAreCopiedWhole)
{
    tagXLineStyle line(tagXLineStyle::kDash);
    line.words[0] = 7;
    view.SetLineStyle(line);
    EXPECT_EQ(view.GetLineStyle().GetPattern(), line.GetPattern());
    EXPECT_EQ(view.GetLineStyle().GetStyle(), line.GetStyle());
    tagXFillStyle fill;
    unsigned char pattern[128] = {1, 2, 3};
    fill.SetStyle(pattern);
    view.SetFillStyle(fill);
    EXPECT_EQ(view.GetFillStyle(), fill);
    tagXTextStyle text;
    text.font.weight = 700;
    std::fill(std::begin(text.font.faceName), std::end(text.font.faceName), 'x'); // no end
    view.SetTextStyle(text);
    EXPECT_EQ(view.GetTextStyle().font.weight, 700);
    EXPECT_EQ(std::strlen(view.GetTextStyle().font.faceName), 31u);
}

TEST(XInputMessageTest, PackedPointsKeepTheirSigns)
{
    for (int x : {0, 1, -1, 32767, -32768})
        for (int y : {0, 7, -7, 32767, -32768}) {
            EXPECT_EQ(XfnPackedX(XfnPackPoint(x, y)), x);
            EXPECT_EQ(XfnPackedY(XfnPackPoint(x, y)), y);
        }
}

} // namespace
