#include "foundation/vector/XvcLayer.h"
#include "tests/view/XDrawingText.h"
#include "tests/view/XProgressiveFixture.h"
#include "tests/view/XToolGesture.h"

#include <QTextEdit>

namespace {

struct tagXGestureCase
{
    const char* name;
    short mode;
    const char* before;
    const char* gesture;
    const char* drawing; // that results
    const char* edits;   // reports
    short postMode = 0;
    const char* text = ""; // of a text box
};

const char* const kTwo = "Line 20,20 60,20; Polygon 100,50 160,50 160,90";
const char* const kWay = "Polyline 20,20 160,20 160,160";

// clang-format off
const tagXGestureCase kCases[] = {
    {"a point", 101, "", "down 30,40 up", "Point 30,40", "52 53"},
    {"a line", 102, "", "down 30,40 move 80,60 up", "Line 30,40 80,60", "52 51"},
    {"a rectangle", 105, "", "down 30,40 move 80,60 up", "Rectangle 30,40 80,60", "52 56"},
    {"a polyline", 103, "", "down 30,40 up move 80,60 down up move 90,99 down up dbl up", "Polyline 30,40 80,60 90,99", "52 55"},
    {"a picture that is given up", 109, "", "down 30,40 move 80,60 up", "", "52 48", 109},
    {"a drag", 0, kTwo, "down 40,20 move 45,25 move 50,30 up", "Line 30,30 70,30; Polygon 100,50 160,50 160,90", "63 80 79 85"},
    {"a drag of a vertex", 0, kTwo, "down 160,90 move 170,120 up", "Line 20,20 60,20; Polygon 100,50 160,50 170,120", "63 80 79 85"},
    {"a drag that is cancelled", 0, kTwo, "down 40,20 move 50,30 escape up", kTwo, "63 7"},
    {"a band", 0, kTwo, "down 5,5 move 200,150 up", kTwo, "85"},
    {"Ctrl and a double click takes a vertex", 0, kWay, "down 160,20 up ctrl-dbl up", "Polyline 20,20 160,160", "63 85"},
    {"or adds one", 0, kWay, "down 90,20 up ctrl-dbl 90,18 up down 90,18 move 90,70 up", "Polyline 20,20 90,70 160,20 160,160", "63 85 63 80 79 85"},
    {"a deletion", 0, kTwo, "down 40,20 up delete", "Polygon 100,50 160,50 160,90", "63 85 59 58"},
    {"taken back", 0, kTwo, "down 40,20 up delete undo", kTwo, "63 85 59 58 84 83"},
    {"a text, then beside it", 113, "", "down 30,30 move 190,130 up type down 250,170 up", "TextBox 30,30 190,130", "52 95", 0, "HELLO"},
    {"then the wheel", 113, "", "down 30,30 move 190,130 up type wheel", "TextBox 30,30 190,130", "52 95", 0, "HELLO"},
    {"then Escape", 113, "", "down 30,30 move 190,130 up type escape", "TextBox 30,30 190,130", "52 95", 0, "HELLO"},
    {"unselected, then beside it", 113, "", "down 30,30 move 190,130 up move 250,170 type down up", "TextBox 30,30 190,130", "52 95", -1, "HELLO"},
    {"unselected, then the wheel", 113, "", "down 30,30 move 190,130 up move 250,170 type wheel", "TextBox 30,30 190,130", "52 95", -1, "HELLO"},
    {"unselected, then Escape", 113, "", "down 30,30 move 190,130 up move 250,170 type escape", "TextBox 30,30 190,130", "52 95 7", -1, "HELLO"},
    {"typed, taken back and done again", 113, "", "down 30,30 move 190,130 up type escape undo redo", "TextBox 30,30 190,130", "52 95 84 83 82 81", 0, "HELLO"},
    {"taken back while it is typed", 113, "", "down 30,30 move 190,130 up type undo redo", "TextBox 30,30 190,130", "52 95 84 83 82 81", 0, "HELLO"},
};
// clang-format on

/// A progressive view whose pixels are x and minus y of the world.
class XViewGestureTest : public XProgressiveFixture
{
protected:
    void Start(const tagXGestureCase& c)
    {
        view.SetMode(0);
        view.SetEditLayer(layer);
        view.ClearUndoRedoStack();
        layer->DestroyAll();
        XfnDraw(*layer, c.before);
        view.SetWorldToCenter(200, -100);
        view.SetWorldPerPixel(1, 1);
        view.SetMode(c.mode);
        view.SetPostMode(c.postMode);
        view.InvalidateControl(1);
        Settle();
        host.Forget();
    }
    void Play(const std::string& words)
    {
        gesture.Play(
            words,
            [this](unsigned message, unsigned flags, int x, int y) {
                static constexpr std::pair<QEvent::Type, Qt::MouseButton> kEvents[] = {
                    {QEvent::MouseMove, Qt::NoButton},
                    {QEvent::MouseButtonPress, Qt::LeftButton},
                    {QEvent::MouseButtonRelease, Qt::LeftButton},
                    {QEvent::MouseButtonDblClick, Qt::LeftButton}};
                const auto& [type, button] = kEvents[message - kMsgMouseMove];
                Mouse(type, x, y, button, flags & kFlagLeft ? Qt::LeftButton : Qt::NoButton,
                      flags & kFlagCtrl ? Qt::ControlModifier : Qt::NoModifier);
                Settle(); // as it were, the picture follows every move
            },
            [this](const std::string& word) { return Act(word); });
    }
    bool Act(const std::string& word)
    {
        QTextEdit* const editor = GetEditor();
        if (word == "type" && editor)
            QTest::keyClicks(editor, "HELLO");
        else if (word == "escape")
            QTest::keyClick(editor ? static_cast<QWidget*>(editor) : &view, Qt::Key_Escape);
        else if (word == "delete")
            QTest::keyClick(&view, Qt::Key_Delete);
        else if (word == "undo")
            view.Undo();
        else if (word == "redo")
            view.Redo();
        else if (word == "wheel")
            Wheel(300, 150, 120);
        else
            return false;
        return true;
    }
    QTextEdit* GetEditor() const
    {
        for (auto* editor : view.findChildren<QTextEdit*>())
            if (editor->isVisible()) return editor;
        return nullptr;
    }

    XvcLayer* layer = view.GetEditLayer();
    XGesture gesture;
};

TEST_F(XViewGestureTest, WhatIsShownInTheEndIsWhatThereIs)
{
    for (const tagXGestureCase& c : kCases) {
        SCOPED_TRACE(c.name);
        Start(c);
        const QImage before = Shown();
        Play(c.gesture);
        Settle();
        const QImage shown = Shown();
        EXPECT_EQ(XfnDescribeAll(*layer), c.drawing);
        EXPECT_EQ(view.GetMode(), c.postMode);
        EXPECT_EQ(Edits(), c.edits);
        EXPECT_EQ(GetEditor(), nullptr);
        const auto* box =
            layer->IsEmpty() ? nullptr : dynamic_cast<const XvcTextBox*>(layer->GetTail());
        EXPECT_STREQ(box ? box->GetText().GetString() : "", c.text);
        view.InvalidateControl(1);
        Settle();
        EXPECT_EQ(shown, Shown());
        EXPECT_TRUE(shown != before || !*c.drawing);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(XViewGestureTest, AnEditorStaysOnItsBox)
{
    for (const int isProgressive : {0, 1}) {
        for (const short postMode : {0, -1}) { // selected, and not
            SCOPED_TRACE(testing::Message() << isProgressive << ' ' << postMode);
            view.SetProgressiveView(isProgressive);
            Start({"", 113, "", "", "", "", postMode});
            Play("down 30,30 move 190,130 up move 250,170");
            const auto expectOnBox = [this](const char* after) {
                Settle();
                view.repaint();
                ASSERT_NE(GetEditor(), nullptr) << after;
                const tagXVectorRange& range =
                    dynamic_cast<const XvcObj*>(layer->GetTail())->GetRange();
                double x = range.minX, y = range.maxY;
                view.GetBackBuffer()->ConvWorldToPixelCoord(x, y);
                EXPECT_NEAR(GetEditor()->x(), x, 1) << after;
                EXPECT_NEAR(GetEditor()->y(), y, 1) << after;
            };
            expectOnBox("the release");
            TwoFingers(40, 30);
            expectOnBox("a pan");
            Pinch(200, 100, 0.5);
            expectOnBox("a pinch");
            view.ZoomIn();
            expectOnBox("a zoom");
            Wheel(300, 150, 120);
            EXPECT_EQ(GetEditor(), nullptr);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
}

} // namespace
