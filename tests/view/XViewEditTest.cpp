#include "foundation/vector/XvcBase.h"
#include "tests/view/XDrawingText.h"
#include "tests/view/XViewFixture.h"
#include "view/XViewKeys.h"

#include <memory>

namespace {

/// A view whose pixels are x and minus y of the world, with a drawing in its edit layer.
class XViewEditTest : public XViewFixture
{
protected:
    XViewEditTest()
    {
        view.SetWorldToCenter(200, -100);
        view.SetWorldPerPixel(1, 1);
        Draw(kDrawing);
        view.SetMode(0);
        host.Forget();
    }

    static constexpr const char* kDrawing =
        "Line 20,20 60,20; Point 100,50; Polypoint 90,90 120,90";

    void Draw(const char* drawing)
    {
        view.SetEditLayer(layer); // with nothing selected
        layer->DestroyAll();
        XfnDraw(*layer, drawing);
    }
    void Click(int x, int y, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        Mouse(QEvent::MouseButtonPress, x, y, Qt::LeftButton, Qt::LeftButton, keys);
        Mouse(QEvent::MouseButtonRelease, x, y, Qt::LeftButton, Qt::NoButton, keys);
    }
    void SelectAll()
    {
        Drag(Qt::LeftButton, {5, 5}, {200, 150});
        host.Forget();
    }
    void Press(int key, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        if (keys & Qt::ControlModifier) Key(QEvent::KeyPress, Qt::Key_Control, keys);
        Key(QEvent::KeyPress, key, keys);
        Key(QEvent::KeyRelease, key, keys);
        if (keys & Qt::ControlModifier) Key(QEvent::KeyRelease, Qt::Key_Control);
    }
    std::string Drawing() const { return XfnDescribeAll(*layer); }
    std::string Selected() { return XfnDescribeAll(*view.GetSelectedObj()); }

    XvcLayer* layer = view.GetEditLayer();
};

TEST_F(XViewEditTest, KeysRunTheEditsAndTheirReports)
{
    struct tagXCase
    {
        int key;
        const char* reports;
        const char* drawing;
        const char* selected;
    };
    const char* const kKept = "Polypoint 90,90 120,90";
    const char* const kBoth = "Line 20,20 60,20; Point 100,50";
    const char* const kMoved = "Line 30,30 70,30; Point 110,60";
    const char* const kPasted = "Polypoint 90,90 120,90; Line 30,30 70,30; Point 110,60";
    const tagXCase kCases[] = {
        {Qt::Key_C, "47 46", kDrawing, kDrawing},
        {Qt::Key_Delete, "59 58", kKept, kKept}, // what it could not bring back
        {Qt::Key_V, "78 77", kPasted, kMoved},
        {Qt::Key_X, "", kKept, ""}, // tells nobody
        {Qt::Key_Z, "84 83", kPasted, kMoved},
        {Qt::Key_Z, "84 83", kKept, ""},
        {Qt::Key_Z, "84 83", kDrawing, kBoth},
        {Qt::Key_Z, "", kDrawing, kBoth},
        {Qt::Key_Y, "82 81", kKept, ""},
    };
    SelectAll();
    for (const tagXCase& c : kCases) {
        SCOPED_TRACE(c.key);
        host.Forget();
        Paint();
        Press(c.key, Qt::ControlModifier);
        EXPECT_EQ(Edits(), c.reports);
        EXPECT_EQ(Drawing(), c.drawing);
        EXPECT_EQ(Selected(), c.selected);
        EXPECT_EQ(view.GetOverlay().IsRaised(XViewBuffer::MainVertex),
                  c.key == Qt::Key_X || (*c.reports && c.key != Qt::Key_C));
    }
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(layer->GetCount(), 5) << "of the copy and of the cut";
    EXPECT_TRUE(view.GetReDoStack()->IsEmpty());
    view.SetMode(0);
    view.ClearUndoRedoStack();
    host.Forget();
    for (const int key : {Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_Delete, Qt::Key_Z, Qt::Key_Y})
        Press(key, Qt::ControlModifier);
    EXPECT_EQ(Edits(), "") << "nothing selected, copied or done";
    Click(100, 50);
    Press(Qt::Key_Delete);
    view.SetModeLimit(XGVMessageManager::kLimitNoChangeProperty);
    host.Forget();
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Edits(), "") << "limit 4";
}

TEST_F(XViewEditTest, TheBalloonIsDrawnByItsHandlerAlone)
{
    view.HandleMouseBalloonMessage(view.GetHWND(), kMsgLButtonDown, 1, XfnPackPoint(9, 9));
    view.HandleMouseBalloonMessage(view.GetHWND(), kMsgLButtonUp, 0, XfnPackPoint(50, 50));
    EXPECT_EQ(Edits(), "52 96") << "no mode leads to it";
}

TEST_F(XViewEditTest, EveryPressEndsAndUndoTakesAnOpenGestureBack)
{
    view.RegisterObjBeforeModify(nullptr);
    Drag(Qt::LeftButton, {40, 20}, {50, 30});
    const std::string once = Drawing();
    host.Forget();
    const auto begin = [this] {
        Mouse(QEvent::MouseButtonPress, 50, 30, Qt::LeftButton, Qt::LeftButton);
        Mouse(QEvent::MouseMove, 150, 90, Qt::NoButton, Qt::LeftButton);
        EXPECT_EQ(Drawing().substr(0, 19), "Line 130,90 170,90;");
    };
    begin();
    Mouse(QEvent::MouseMove, 180, 20, Qt::NoButton, Qt::NoButton); // the release went elsewhere
    EXPECT_EQ(view.GetUnDoStack()->GetSize(), 2);
    EXPECT_EQ(Drawing().substr(0, 19), "Line 130,90 170,90;") << "it ended where it was seen";
    view.Undo();
    EXPECT_EQ(Drawing(), once);
    begin();
    view.SetMode(102);
    EXPECT_EQ(Drawing(), once);
    view.SetMode(0);
    begin();
    Press(Qt::Key_Escape);
    EXPECT_EQ(Drawing(), once);
    view.SetMode(0);
    begin();
    view.Undo();
    EXPECT_EQ(Drawing(), kDrawing);
    EXPECT_EQ(view.GetUnDoStack()->GetSize(), 0);
    Mouse(QEvent::MouseButtonRelease, 150, 90, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(Drawing(), kDrawing);
    EXPECT_EQ(view.GetUnDoStack()->GetSize(), 0);

    view.SetMode(103);
    Click(10, 10);
    view.Redo();
    EXPECT_EQ(XfnDescribe(view.GetObjectManager().m_currentObject), "Polyline 10,10 10,10")
        << "a shape that grows is in no layer";
    view.SetMode(-1);
    EXPECT_NE(view.GetObjectManager().m_currentObject, nullptr);
    Press(Qt::Key_Escape);
    EXPECT_EQ(view.GetObjectManager().m_currentObject, nullptr);
}

TEST_F(XViewEditTest, ALayerThatGoesTakesItsStepsAlong)
{
    for (const bool isTold : {true, false}) {
        SCOPED_TRACE(isTold);
        view.ClearUndoRedoStack();
        auto lent = std::make_unique<XvcBase>();
        auto* going = new XvcLayer;
        lent->AddTail(going);
        XfnDraw(*going, "Point 300,100; Point 310,100");
        view.GetExtBaseList()->AddTail(lent.get());
        Drag(Qt::LeftButton, {300, 100}, {300, 120});
        Drag(Qt::LeftButton, {100, 50}, {100, 60});
        Drag(Qt::LeftButton, {5, 5}, {350, 150}); // selects in both
        view.Delete();
        Drag(Qt::LeftButton, {100, 50}, {100, 60}); // nothing there
        ASSERT_EQ(view.GetUnDoStack()->GetSize(), 3);
        view.Undo();
        EXPECT_EQ(going->GetCount(), 2);
        view.SetEditLayer(going);
        if (isTold) {
            Drag(Qt::LeftButton, {300, 120}, {300, 130});
            view.ForgetLayers(*lent);
            EXPECT_EQ(view.GetEditLayer(), layer);
            EXPECT_EQ(Selected(), "");
        } else {
            view.SetEditLayer(layer);
        }
        view.GetExtBaseList()->RemoveAll();
        lent.reset();
        view.Redo();
        view.Undo();
        view.Undo();
        EXPECT_EQ(Drawing(), kDrawing);
        view.Undo();
        EXPECT_EQ(view.GetUnDoStack()->GetSize(), 0);
        Draw(kDrawing);
    }
    XvcBase others;
    auto* seen = new XvcLayer;
    for (XvcLayer* other : {new XvcLayer, new XvcLayer, seen})
        others.AddTail(other);
    static_cast<XvcLayer*>(others.GetHead())->SetHideFlag(1);
    static_cast<XvcLayer*>(others.GetAt(others.FindIndex(1)))->SetLockFlag(1);
    view.GetExtBaseList()->AddTail(&others);
    view.ForgetLayers(*view.GetInnBaseList());
    EXPECT_EQ(view.GetEditLayer(), seen) << "one that can be drawn in";
    XObList all;
    all.AddTail(view.GetInnBaseList()->GetHead());
    all.AddTail(&others);
    view.ForgetLayers(all);
    view.GetExtBaseList()->RemoveAll();
    ASSERT_NE(view.GetEditLayer(), nullptr) << "never without one";
    EXPECT_NE(view.GetEditLayer(), seen);
}

TEST_F(XViewEditTest, ALayerAtTheAddressOfAnotherHasNoneOfItsSteps)
{
    XvcBase lent;
    view.GetExtBaseList()->AddTail(&lent);
    alignas(XvcLayer) unsigned char place[sizeof(XvcLayer)];
    auto* going = new (place) XvcLayer;
    lent.AddTail(going);
    XfnDraw(*going, "Point 300,100");
    Drag(Qt::LeftButton, {300, 100}, {300, 120});
    Drag(Qt::LeftButton, {100, 50}, {100, 60});
    lent.RemoveAll(); // nobody is told
    going->~XvcLayer();
    auto* fresh = new (place) XvcLayer;
    lent.AddTail(fresh);
    XfnDraw(*fresh, "Point 310,150");
    view.Undo();
    view.Undo();
    EXPECT_EQ(XfnDescribeAll(*fresh), "Point 310,150");
    EXPECT_EQ(Drawing(), kDrawing);
    lent.RemoveAll();
    fresh->~XvcLayer();
    view.GetExtBaseList()->RemoveAll();
}

TEST_F(XViewEditTest, ATextBoxEndsItsEditingWhicheverWay)
{
    Draw("TextBox 20,20 120,80; Point 200,50");
    const auto* box = dynamic_cast<const XvcTextBox*>(layer->GetHead());
    const auto edit = [&] {
        view.SetWorldToCenter(200, -100); // the right button pans
        view.SetMode(0);
        Click(100, 60);
        Mouse(QEvent::MouseButtonDblClick, 100, 60, Qt::LeftButton, Qt::LeftButton);
        Mouse(QEvent::MouseButtonRelease, 100, 60, Qt::LeftButton, Qt::NoButton);
        ASSERT_TRUE(box->GetEditMode());
        host.Forget();
    };
    edit();
    Mouse(QEvent::MouseMove, 200, 150, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(Reports().size(), 0u) << "the pointer does not disturb typing";
    EXPECT_TRUE(box->GetEditMode());
    Press(Qt::Key_Escape);
    EXPECT_FALSE(box->GetEditMode());
    EXPECT_EQ(Selected(), "TextBox 20,20 120,80");
    EXPECT_EQ(Edits(), "");
    Press(Qt::Key_Escape);
    EXPECT_EQ(Edits(), "7") << "the second one resets the tool";
    edit();
    Click(200, 150);
    EXPECT_FALSE(box->GetEditMode());
    edit();
    Wheel(200, 100, 120);
    Wheel(200, 100, -120);
    EXPECT_FALSE(box->GetEditMode());
    edit();
    Mouse(QEvent::MouseMove, 200, 150, Qt::NoButton, Qt::RightButton);
    EXPECT_FALSE(box->GetEditMode());
    EXPECT_EQ(Edits(), "");
    edit();
    view.SetMode(101);
    Click(300, 150);
    EXPECT_FALSE(box->GetEditMode()) << "no longer selected, but still open";
    edit();
    view.Delete();
    EXPECT_EQ(view.GetUnDoStack()->GetSize(), 2) << "the point and the box: typing is no step";
    view.Undo();
    QCoreApplication::processEvents();
    EXPECT_EQ(Drawing().substr(0, 20), "TextBox 20,20 120,80");
}

TEST_F(XViewEditTest, RotationIsCountedOnly)
{
    view.SetMode(202);
    Mouse(QEvent::MouseButtonPress, 250, 50, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseMove, 150, 50, Qt::NoButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, 150, 50, Qt::LeftButton, Qt::NoButton);
    EXPECT_NEAR(view.GetRotationAngle(), 90, 1e-9);
    ExpectBox(Bound(), {0, -200, 400, 0}, 0);
    EXPECT_EQ(Edits(), "91");
}

// A host may destroy the view within any report of a gesture.
TEST(XViewEditLifeTest, TheViewMayGoInEveryReport)
{
    const auto play = [](XMessageRecorder& host, int fatal) {
        int reports = 0;
        auto view = std::make_unique<XTQSpaceView>();
        view->Create();
        view->resize(400, 200);
        view->SetWorldToCenter(200, -100);
        view->SetWorldPerPixel(1, 1);
        view->Initialize(host.GetHWND(), 41024);
        XfnDraw(*view->GetEditLayer(), "Line 20,20 60,20; Point 100,50");
        view->SetMode(0);
        host.handler = [&](const XMessageRecorder::tagMessage&) {
            if (reports++ == fatal) view.reset();
            return XLRESULT{0};
        };
        const auto mouse = [&view](unsigned message, unsigned flags, int x, int y) {
            if (!view) return;
            view->PreTranslateMessage(view->GetHWND(), message, flags,
                                      static_cast<XLPARAM>(XfnPackPoint(x, y)));
        };
        const auto drag = [&](int x, int y) {
            mouse(kMsgLButtonDown, 1, x, y);
            mouse(kMsgMouseMove, 1, x + 30, y + 20);
            mouse(kMsgLButtonUp, 0, x + 30, y + 20);
        };
        drag(40, 20);
        mouse(kMsgLButtonDblClk, 1, 70, 40);
        for (const short mode : {101, 102, 103, 105, 109, 113, 115, 202}) {
            if (view) view->SetMode(mode);
            drag(100, 100);
            mouse(kMsgLButtonDblClk, 1, 130, 120);
        }
        using Edit = void (XTQSpaceView::*)();
        for (const Edit edit :
             {Edit(&XTQSpaceView::Copy), Edit(&XTQSpaceView::Paste), Edit(&XTQSpaceView::Delete),
              Edit(&XTQSpaceView::Undo), Edit(&XTQSpaceView::Redo)})
            if (view) (view.get()->*edit)();
        host.handler = nullptr;
        return reports;
    };
    XMessageRecorder host;
    const int all = play(host, -1);
    EXPECT_GT(all, 20);
    for (int i = 0; i < all; ++i)
        EXPECT_EQ(play(host, i), i + 1);
}

} // namespace
