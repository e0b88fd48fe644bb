#include "foundation/surface/XToolCursor.h"
#include "foundation/vector/XvcPoint.h"
#include "tests/view/XViewFixture.h"
#include "view/XViewKeys.h"

#include <utility>

namespace {

using Codes = std::vector<XWPARAM>;

class XViewInputTest : public XViewFixture
{
protected:
    XViewInputTest() { host.Forget(); }

    void RepeatKey(QEvent::Type type, int code)
    {
        QKeyEvent event(type, code, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(&view, &event);
    }
    void LoseFocus()
    {
        QFocusEvent away(QEvent::FocusOut);
        QApplication::sendEvent(&view, &away);
    }
    static QImage Image(const QCursor& cursor) { return cursor.pixmap().toImage(); }
    /// The codes reported since the last call.
    Codes Take()
    {
        Codes codes = Reports();
        host.Forget();
        return codes;
    }
};

TEST_F(XViewInputTest, EveryKeyHasItsNumberWhateverShiftMakesOfIt)
{
    struct Case
    {
        const char* name;
        int key;
        Qt::KeyboardModifiers modifiers;
        int number;
    };
    const Case kCases[] = {
        {"letter", Qt::Key_Q, Qt::NoModifier, 81},
        {"shifted digits are their digit", Qt::Key_Exclam, Qt::ShiftModifier, 49},
        {"2", Qt::Key_At, Qt::ShiftModifier, 50},
        {"6", Qt::Key_AsciiCircum, Qt::ShiftModifier, 54},
        {"8", Qt::Key_Asterisk, Qt::ShiftModifier, 56},
        {"9", Qt::Key_ParenLeft, Qt::ShiftModifier, 57},
        {"0", Qt::Key_ParenRight, Qt::ShiftModifier, 48},
        {"semicolon", Qt::Key_Semicolon, Qt::NoModifier, 186},
        {"colon", Qt::Key_Colon, Qt::ShiftModifier, 186},
        {"equal", Qt::Key_Equal, Qt::NoModifier, 187},
        {"plus", Qt::Key_Plus, Qt::ShiftModifier, 187},
        {"comma", Qt::Key_Comma, Qt::NoModifier, 188},
        {"less", Qt::Key_Less, Qt::ShiftModifier, 188},
        {"minus", Qt::Key_Minus, Qt::NoModifier, 189},
        {"period", Qt::Key_Period, Qt::NoModifier, 190},
        {"greater", Qt::Key_Greater, Qt::ShiftModifier, 190},
        {"slash", Qt::Key_Slash, Qt::NoModifier, 191},
        {"question", Qt::Key_Question, Qt::ShiftModifier, 191},
        {"tilde", Qt::Key_AsciiTilde, Qt::ShiftModifier, 192},
        {"bracket", Qt::Key_BracketLeft, Qt::NoModifier, 219},
        {"bar", Qt::Key_Bar, Qt::ShiftModifier, 220},
        {"brace", Qt::Key_BraceRight, Qt::ShiftModifier, 221},
        {"quote", Qt::Key_QuoteDbl, Qt::ShiftModifier, 222},
        {"keypad digits are keys of their own", Qt::Key_7, Qt::KeypadModifier, 103},
        {"keypad times", Qt::Key_Asterisk, Qt::KeypadModifier, 106},
        {"keypad plus", Qt::Key_Plus, Qt::KeypadModifier, 107},
        {"keypad separator", Qt::Key_Comma, Qt::KeypadModifier, 108},
        {"keypad minus", Qt::Key_Minus, Qt::KeypadModifier, 109},
        {"keypad point", Qt::Key_Period, Qt::KeypadModifier, 110},
        {"keypad by", Qt::Key_Slash, Qt::KeypadModifier, 111},
        {"keypad without Num Lock", Qt::Key_Delete, Qt::KeypadModifier, 46},
        {"Pause", Qt::Key_Pause, Qt::NoModifier, 19},
        {"Caps Lock", Qt::Key_CapsLock, Qt::NoModifier, 20},
        {"Hangul", Qt::Key_Hangul, Qt::NoModifier, 21},
        {"Menu", Qt::Key_Menu, Qt::NoModifier, 93},
    };
    for (const Case& c : kCases) {
        key = {};
        Key(QEvent::KeyPress, c.key, c.modifiers);
        EXPECT_EQ(key.character, c.number) << c.name;
        key = {};
        Key(QEvent::KeyRelease, c.key, c.modifiers);
        EXPECT_EQ(key.character, c.number) << c.name << ", released";
    }
}

TEST_F(XViewInputTest, AHeldKeyRepeatsItsPressButIsReleasedOnce)
{
    Key(QEvent::KeyPress, Qt::Key_G);
    RepeatKey(QEvent::KeyRelease, Qt::Key_G);
    RepeatKey(QEvent::KeyPress, Qt::Key_G);
    EXPECT_EQ(key.flags, 0x4000) << "it was down before";
    RepeatKey(QEvent::KeyRelease, Qt::Key_G);
    Key(QEvent::KeyRelease, Qt::Key_G);
    EXPECT_EQ(Take(), (Codes{41064, 41064, 41065}));
}

class XCountedPoint : public XvcPoint
{
public:
    explicit XCountedPoint(int& living) : m_living(living) { ++m_living; }
    ~XCountedPoint() override { --m_living; }

private:
    int& m_living;
};

TEST_F(XViewInputTest, EscapeDropsTheObjectUnderConstruction)
{
    int living = 0;
    XvcPoint selected(1, 1);
    view.SetMode(102);
    view.SetPostMode(110);
    view.GetSelectedObj()->AddTail(&selected);
    view.GetObjectManager().m_currentObject = new XCountedPoint(living);
    Paint();
    Take();
    QTest::keyPress(&view, Qt::Key_Escape);
    EXPECT_EQ(living, 0);
    EXPECT_EQ(view.GetObjectManager().m_currentObject, nullptr);
    EXPECT_EQ(view.GetMode(), 110);
    EXPECT_EQ(view.GetSelectedObj()->GetCount(), 1) << "the mode field alone changes";
    for (XViewBuffer buffer : {XViewBuffer::MainVertex, XViewBuffer::TempVertex,
                               XViewBuffer::MainBack, XViewBuffer::TempBack})
        EXPECT_TRUE(view.GetOverlay().IsRaised(buffer)) << static_cast<int>(buffer);
    EXPECT_EQ(Image(view.cursor()), Image(XfnGetToolCursor(110)));
    EXPECT_EQ(Take(), (Codes{41107, 41064})) << "the tool first, then the key";
}

TEST_F(XViewInputTest, EscapeCountsAsLongAsItIsDown)
{
    Key(QEvent::KeyPress, Qt::Key_Escape);
    Take();
    Key(QEvent::KeyPress, Qt::Key_A);
    EXPECT_EQ(Take(), (Codes{41107, 41064})) << "with any key";
    Key(QEvent::KeyRelease, Qt::Key_Escape);
    Key(QEvent::KeyPress, Qt::Key_A);
    EXPECT_EQ(Take(), (Codes{41065, 41064}));
    Key(QEvent::KeyPress, Qt::Key_Escape);
    LoseFocus();
    Take();
    Key(QEvent::KeyPress, Qt::Key_A);
    EXPECT_EQ(Take(), (Codes{41064})) << "its release went to another window";
    view.HandleMessage(view.GetHWND(), kMsgKeyDown, kKeyEscape, 0);
    EXPECT_EQ(Take(), (Codes{41107})) << "a message of a host's own";
    view.SetModeLimit(1);
    Key(QEvent::KeyPress, Qt::Key_Escape, Qt::ControlModifier);
    EXPECT_EQ(Take(), (Codes{41064})) << "swallowed";
}

TEST_F(XViewInputTest, APanThatLosesTheFocusStaysAPanUntilItsButtonIsUp)
{
    for (const bool isMiddle : {false, true}) {
        const Qt::MouseButton button = isMiddle ? Qt::MiddleButton : Qt::LeftButton;
        if (!isMiddle) Key(QEvent::KeyPress, Qt::Key_Space);
        Mouse(QEvent::MouseButtonPress, 100, 100, button, button);
        Mouse(QEvent::MouseMove, 110, 100, Qt::NoButton, button);
        LoseFocus();
        const tagXWorldBox box = Bound();
        Take();
        Mouse(QEvent::MouseMove, 150, 120, Qt::NoButton, button);
        Mouse(QEvent::MouseButtonRelease, 150, 120, button, Qt::NoButton);
        EXPECT_EQ(Take(), Codes{}) << "nothing of it reaches tools or hosts";
        ExpectBox(Bound(), box, 0.0);
        Mouse(QEvent::MouseMove, 151, 120, Qt::NoButton, Qt::NoButton);
        Drag(Qt::LeftButton, {1, 1}, {2, 2});
        EXPECT_EQ(Take(), (Codes{41075, 41067, 41075, 41068})) << "the next gesture is whole";
    }
}

TEST_F(XViewInputTest, APanWhoseReleaseIsLostEndsWithTheNextEvent)
{
    const auto lose = [this] {
        Key(QEvent::KeyPress, Qt::Key_Space);
        Mouse(QEvent::MouseButtonPress, 100, 100, Qt::LeftButton, Qt::LeftButton);
        LoseFocus();
        Take();
    };
    lose();
    Mouse(QEvent::MouseMove, 150, 120, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(Take(), (Codes{41075}));
    lose();
    Drag(Qt::LeftButton, {1, 1}, {2, 2});
    EXPECT_EQ(Take(), (Codes{41067, 41075, 41068}));
}

TEST_F(XViewInputTest, TheCursorMessageGoesToTheViewItself)
{
    XMessageRecorder other;
    view.SetMode(102);
    for (XHWND window : {view.GetHWND(), other.GetHWND(), XHWND{0}}) {
        view.unsetCursor();
        view.HandleMessage(window, kMsgMouseMove, 0, 0);
        EXPECT_EQ(Image(view.cursor()), Image(XfnGetToolCursor(102)));
    }
    EXPECT_TRUE(other.GetMessages().empty());
}

TEST_F(XViewInputTest, TheCursorMessagePutsBackAForeignCursorAndSaysWhetherItChose)
{
    const auto tell = [this] { return XfnSendMessage(view.GetHWND(), kMsgSetCursor, 0, 0); };
    view.SetMode(102);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(tell(), 1);
        EXPECT_EQ(Image(view.cursor()), Image(XfnGetToolCursor(102)));
        view.setCursor(Qt::WaitCursor);
    }
    view.SetMode(0);
    EXPECT_EQ(tell(), 1);
    EXPECT_EQ(view.cursor().shape(), XfnGetCursor(XCursorImage::Arrow).shape());
    view.SetMode(-1);
    view.setCursor(Qt::WaitCursor);
    EXPECT_EQ(tell(), 0) << "the default handling chooses";
    EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
    view.HandleMessage(view.GetHWND(), kMsgRButtonDown, 2, 0);
    EXPECT_EQ(tell(), 1) << "the pan cursor";
}

TEST_F(XViewInputTest, TheZoomRectangleIsSeenFitsAndReportsBeforeTheRelease)
{
    XMemoryPicture gray(400, 200, 0.5, -0.5, 1, 1, [](int, int) { return 128; });
    Show(gray);
    view.ZoomFitRect(0, -200, 400, 0);
    const QImage before = Paint();
    view.ZoomRect();
    Take();
    Mouse(QEvent::MouseButtonPress, 100, 50, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseMove, 300, 50, Qt::NoButton, Qt::LeftButton);
    Paint();
    Mouse(QEvent::MouseMove, 200, 150, Qt::NoButton, Qt::LeftButton);
    const QImage during = Paint();
    int changed = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            if (during.pixel(x, y) == before.pixel(x, y)) continue;
            ++changed;
            EXPECT_TRUE(x == 100 || x == 200 || y == 50 || y == 150) << x << ' ' << y;
        }
    EXPECT_GT(changed, 100) << "a dashed frame is seen on gray";
    EXPECT_EQ(Take(), (Codes{41067, 41075, 41075}));
    Mouse(QEvent::MouseButtonRelease, 200, 150, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(Take(), (Codes{41090, 41068})) << "the tool before the handler";
    EXPECT_EQ(view.GetMode(), -1);
    ExpectBox(Bound(), {50, -150, 250, -50}, 1e-9);
    EXPECT_EQ(Paint().pixel(100, 50), before.pixel(100, 50)) << "the band is gone";
}

TEST_F(XViewInputTest, EscapeAModeAndAnEndedViewDropTheBand)
{
    const tagXWorldBox box = Bound();
    for (const bool isEscape : {true, false}) {
        view.SetPostMode(201); // the same tool again: its release ends it, but must not zoom
        view.SetMode(201);
        Take();
        Mouse(QEvent::MouseButtonPress, 100, 50, Qt::LeftButton, Qt::LeftButton);
        if (isEscape)
            QTest::keyClick(&view, Qt::Key_Escape);
        else
            view.SetMode(201);
        Mouse(QEvent::MouseButtonRelease, 200, 150, Qt::LeftButton, Qt::NoButton);
        EXPECT_EQ(Take(), isEscape ? (Codes{41067, 41107, 41064, 41065, 41090, 41068})
                                   : (Codes{41067, 41090, 41068}));
        ExpectBox(Bound(), box, 0);
    }
    auto* mortal = new XTQSpaceView;
    mortal->Create();
    mortal->Initialize(host.GetHWND(), kHostMessage);
    mortal->ZoomRect();
    onReport = [&](unsigned code) {
        if (code == 41090) delete std::exchange(mortal, nullptr);
    };
    mortal->HandleMessage(mortal->GetHWND(), kMsgLButtonDown, 1, XfnPackPoint(1, 1));
    mortal->HandleMessage(mortal->GetHWND(), kMsgLButtonUp, 0, XfnPackPoint(50, 60));
    EXPECT_EQ(mortal, nullptr) << "within the report of the tool";
}

TEST_F(XViewInputTest, EveryModeHasItsCursorWithAndWithoutItsTool)
{
    for (int mode = -5; mode < 220; ++mode) {
        view.SetMode(static_cast<short>(mode));
        const bool isOwn = (mode >= 101 && mode <= 113) || mode == 120 || mode == 121 ||
                           mode == 131 || mode == 202;
        const int chosen = view.OnSetCursor();
        EXPECT_EQ(chosen, mode == -1 ? 0 : 1) << mode;
        if (isOwn) {
            EXPECT_EQ(Image(view.cursor()), Image(XfnGetToolCursor(mode))) << mode;
            EXPECT_EQ(view.cursor().shape(), Qt::BitmapCursor) << mode;
        } else if (mode != 201) {
            EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor) << mode;
        }
        view.HandleMessage(view.GetHWND(), kMsgRButtonDown, 2, 0);
        const auto held = mode == 201 ? XCursorImage::ZoomRect : XCursorImage::Pan;
        EXPECT_EQ(Image(view.cursor()), Image(XfnGetCursor(held))) << mode;
        view.HandleMessage(view.GetHWND(), kMsgRButtonUp, 0, 0);
    }
}

} // namespace
