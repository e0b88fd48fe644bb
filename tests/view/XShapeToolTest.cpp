#include "tests/view/XToolGesture.h"

#include <QImage>
#include <QTemporaryDir>

namespace {

struct tagXShapeCase
{
    const char* name;
    int mode;
    const char* gesture;
    const char* drawing; // that results
    const char* reports;
    const char* current = ""; // still under construction
    int result = 1;           // of the dialog
    unsigned short limit = 0;
};

const char* const kDrag = "down 10,10 move 50,30 up";
const char* const kRing = "down 10,10 up move 50,10 down up move 50,60 down up dbl up";

// clang-format off
const tagXShapeCase kShapeCases[] = {
    {"a press makes a point", 101, "down 30,40", "Point 30,40", "52 53"},
    {"a refused point", 101, "down 30,40 up", "", "52 53", "", 0},
    {"a drag makes a line", 102, kDrag, "Line 10,10 50,30", "52 51"},
    {"its end is the release", 102, "down 10,10 move 50,30 up 90,40", "Line 10,10 90,40", "52 51"},
    {"Ctrl keeps it level", 102, "down 10,10 ctrl-move 90,20", "", "", "Line 10,10 90,10"},
    {"or upright", 102, "down 10,10 ctrl-move 20,90", "", "", "Line 10,10 10,90"},
    {"a diagonal goes upright", 102, "down 10,10 ctrl-move 40,40", "", "", "Line 10,10 10,40"},
    {"but not at the release", 102, "down 10,10 ctrl-move 90,20 ctrl-up", "Line 10,10 90,20", "52 51"},
    {"a refused line", 102, kDrag, "", "52 51", "", 2},
    {"limit 4 asks nothing", 102, kDrag, "Line 10,10 50,30", "52 51", "", 0, 4},
    {"a right double click drops it", 102, "down 10,10 move 20,20 rdbl up", "", ""},
    {"a move alone does nothing", 102, "move 10,10 up", "", ""},
    {"an arrow is never asked about", 115, kDrag, "Line 10,10 50,30", "52 51", "", 0},
    {"one vertex a click", 103, kRing, "Polyline 10,10 50,10 50,60", "52 55"},
    {"a press with Ctrl is where the rubber is", 103, "down 10,10 up ctrl-move 50,20 ctrl-down up move 60,60", "", "", "Polyline 10,10 50,10 60,60"},
    {"a press without a move adds none", 103, "down 10,10 up down up", "", "", "Polyline 10,10 10,10"},
    {"a double click at once", 103, "down 10,10 up dbl up", "", ""},
    {"a right press steps back", 103, "down 10,10 up move 50,10 down up move 90,90 rdown", "", "", "Polyline 10,10 90,90"},
    {"to the rubber vertex", 103, "down 10,10 up rdown rdown rdown", "", "", "Polyline 10,10"},
    {"a first press at the zeroed anchor", 103, "down 0,0", "", "", "Polyline 0,0"},
    {"a polygon", 107, kRing, "Polygon 10,10 50,10 50,60", "52 54"},
    {"a refused polygon", 107, kRing, "", "52 54", "", 0},
    {"a curve", 104, kRing, "Bspline 10,10 50,10 50,60", "52 49"},
    {"Ctrl is nothing to it", 104, "down 10,10 up ctrl-move 50,20", "", "", "Bspline 10,10 50,20"},
    {"a rectangle ends at the last move", 105, "down 50,30 move 10,60 up 99,99", "Rectangle 10,30 50,60", "52 56"},
    {"Ctrl makes a square", 105, "down 50,50 ctrl-move 40,20 up", "Rectangle 20,20 50,50", "52 56"},
    {"to the right of its anchor", 105, "down 50,50 ctrl-move 50,20 up", "Rectangle 50,20 80,50", "52 56"},
    {"a click makes none", 105, "down 50,50 up", "", "52 56"},
    {"a level one is no click", 105, "down 50,50 move 70,50 up", "Rectangle 50,50 70,50", "52 56"},
    {"an ellipse", 106, kDrag, "Ellipse 10,10 50,30", "52 50"},
    {"a click makes none", 106, "down 50,50 up", "", "52 50"},
    {"a picture without a file", 109, kDrag, "", "52 48"},
    {"a text", 108, "down 10,20 move 60,50 up", "Text 10,20", "52 57"},
    {"a text that is given up", 108, "down 10,20 move 60,50 up", "", "", "Text 10,20", 2},
    {"a text box", 113, "down 60,50 move 10,20 up", "TextBox 10,20 60,50", "52 95"},
    {"by a click", 113, "down 60,50 up", "TextBox 60,50 160,150", "52 95"},
    {"a balloon, never asked about", kXBalloonTool, "down 60,50 up", "Balloon 60,50 160,150", "52 96", "", 0},
};
// clang-format on

/// Moves of some tools have a reason of their own, and so has all that a point repaints.
std::set<int> GetReasons(const tagXShapeCase& c)
{
    constexpr int kInvalidate = 17;
    if (c.mode == 101) return {11};
    std::set<int> reasons = {kInvalidate};
    if (c.mode == 107) reasons.insert(10);
    if (c.mode == 115) reasons.insert(12);
    if (std::string(c.gesture).starts_with("move")) reasons.clear(); // nothing is building
    return reasons;
}

TEST(XShapeToolTest, EveryGestureEndsAsItShould)
{
    for (const tagXShapeCase& c : kShapeCases) {
        SCOPED_TRACE(c.name);
        XFakeObjectDialogs dialogs;
        dialogs.result = c.result;
        XToolStage stage(c.mode, "Point 300,100");
        const std::string before = stage.GetDrawing();
        stage.target.messages.SetModeLimit(c.limit);
        stage.target.selection.GetList()->AddTail(stage.target.layer->GetHead());
        stage.Play(c.gesture);
        const std::string drawing = c.drawing;
        const bool isMade = !drawing.empty();
        EXPECT_EQ(stage.GetDrawing(), isMade ? before + "; " + drawing : before);
        EXPECT_EQ(stage.GetReports(), c.reports);
        EXPECT_EQ(stage.GetReasons(), GetReasons(c));
        EXPECT_EQ(stage.GetCurrent(), c.current);
        EXPECT_EQ(stage.GetSteps(), isMade);
        const bool isDropped = std::string(c.gesture).find("rdbl") != std::string::npos;
        const bool isOver = (*c.reports && c.mode != 109) || isDropped;
        EXPECT_EQ(stage.target.messages.GetMode() == XToolStage::kPostMode, isOver);
        EXPECT_FALSE(stage.target.band.IsShown());
        const bool keepsSelection = !*c.reports || c.mode == 109 || c.mode == 106;
        EXPECT_EQ(stage.GetSelected(), isMade ? "1" : keepsSelection ? "0" : "");
        if (!*c.reports) continue;
        EXPECT_LT(stage.target.log.back(), 40000) << "what the host changed in it is shown";
        EXPECT_EQ(stage.target.created.object, isMade ? stage.target.layer->GetTail() : nullptr);
        EXPECT_EQ(stage.target.created.undo != nullptr, isMade);
        for (XViewBuffer buffer : {XViewBuffer::MainVertex, XViewBuffer::MainBack,
                                   XViewBuffer::TempVertex, XViewBuffer::TempBack})
            EXPECT_TRUE(stage.target.IsRaised(buffer));
        if (!isMade) continue;
        XObList selection;
        stage.target.commands.Undo(&selection);
        EXPECT_EQ(stage.GetDrawing(), before);
        stage.target.commands.Redo(&selection);
        EXPECT_EQ(stage.GetDrawing(), before + "; " + drawing);
    }
}

TEST(XShapeToolTest, WhatIsMadeHasTheViewsStyles)
{
    struct tagXCase
    {
        int mode;
        const char* gesture;
        int fill; // style code that results
        tagXColor back;
    };
    constexpr tagXColor kOwn = 0xFFFFFFFFu;
    for (const tagXCase& c :
         {tagXCase{101, "down 30,40", 10, 3}, tagXCase{102, kDrag, 0, 3},
          tagXCase{103, kRing, 0, 3}, tagXCase{107, kRing, 10, 3}, tagXCase{104, kRing, 0, 3},
          tagXCase{105, kDrag, 10, kOwn}, tagXCase{106, kDrag, 10, 3}}) {
        SCOPED_TRACE(c.mode);
        XToolStage stage(c.mode);
        XGVObjectManager& styles = stage.target.objects;
        styles.m_lineColor = 1;
        styles.m_foreColor = 2;
        styles.m_backColor = 3;
        styles.m_thickness = 4;
        styles.SetLineStyle(tagXLineStyle(3));
        styles.SetFillStyle(tagXFillStyle(10));
        stage.Play(c.gesture);
        ASSERT_EQ(stage.target.layer->GetCount(), 1);
        const auto* made = dynamic_cast<const XvcObj*>(stage.target.layer->GetHead());
        EXPECT_EQ(made->GetLineColor(), 1u);
        EXPECT_EQ(made->GetForeColor(), 2u);
        EXPECT_EQ(made->GetBackColor(), c.back);
        EXPECT_EQ(made->GetThick(), 4.0);
        EXPECT_EQ(made->GetLineStyle().GetStyle(), 3);
        EXPECT_EQ(made->GetFillStyle().GetStyle(), c.fill);
    }
    XToolStage stage(105);
    const unsigned char pattern[tagXFillStyle::kPatternBytes] = {1};
    stage.target.objects.GetFillStyle().SetStyle(pattern);
    stage.target.objects.m_backColor = 3;
    stage.Play(kDrag);
    EXPECT_EQ(dynamic_cast<const XvcObj*>(stage.target.layer->GetHead())->GetBackColor(), 3u)
        << "a pattern of its own has a back colour";
}

TEST(XShapeToolTest, TheDialogOfTheClassIsAskedOfANewObject)
{
    XFakeObjectDialogs dialogs;
    dialogs.endShapeID = 4;
    XToolStage stage(102);
    std::string shown;
    dialogs.onModal = [&] { shown = stage.GetCurrent(); };
    stage.Play(kDrag);
    EXPECT_EQ(dialogs.asked, std::vector{XObjectDialog::Line});
    EXPECT_EQ(shown, "Line 10,10 50,30") << "it is seen while it is asked about";
    const auto* line = dynamic_cast<const XvcLine*>(stage.target.layer->GetHead());
    EXPECT_EQ(line->GetEndShapeID(), 4);
    EXPECT_EQ(line->GetWorldPerPixel(), 1.0);
}

TEST(XShapeToolTest, WhatIsDroppedWhileItIsAskedAboutGoes)
{
    for (int other = 0; other < 2; ++other) {
        XFakeObjectDialogs dialogs;
        XToolStage stage(102);
        dialogs.onModal = [&] {
            if (other)
                stage.target.objects.SetCurrent(std::make_unique<XvcPoint>(1, 1));
            else
                stage.target.objects.DestroyCurrent();
        };
        stage.Play(kDrag);
        EXPECT_EQ(stage.GetDrawing(), "");
        EXPECT_EQ(stage.GetReports(), "");
        EXPECT_EQ(stage.GetCurrent(), other ? "Point 1,-1" : "");
    }
}

TEST(XShapeToolTest, ATextIsAsHighAsItsBox)
{
    XFakeObjectDialogs dialogs;
    XToolStage stage(108);
    stage.target.objects.m_foreColor = 9;
    stage.Play("down 60,50 move 10,20 up");
    EXPECT_EQ(dialogs.input.x, 1010) << "on the screen";
    EXPECT_EQ(dialogs.input.y, 520);
    EXPECT_EQ(dialogs.input.height, 30);
    EXPECT_EQ(dialogs.input.color, 9u);
    const auto* text = dynamic_cast<const XvcText*>(stage.target.layer->GetHead());
    EXPECT_EQ(text->GetFontSize(), 30.0);
    EXPECT_EQ(text->GetTextAlign(), 18);

    dialogs.text.clear();
    stage.Play("down 100,100 move 150,100 up");
    EXPECT_EQ(dialogs.input.width, 100) << "a flat box is a small one";
    EXPECT_EQ(dialogs.input.height, 25);
    EXPECT_EQ(stage.target.layer->GetCount(), 1) << "an empty text is refused";
    EXPECT_EQ(stage.GetReports(), "52 57 52 57");
    EXPECT_EQ(stage.GetCurrent(), "");
}

TEST(XShapeToolTest, TheFirstTextBoxSetsTheHeightOfTheNext)
{
    XToolStage stage(113);
    EXPECT_EQ(stage.target.objects.GetTextStyle().font.height, 0);
    stage.Play("down 10,20 move 60,50 up");
    const auto* box = dynamic_cast<const XvcTextBox*>(stage.target.layer->GetHead());
    EXPECT_EQ(box->GetTextStyle().font.height, 0);
    EXPECT_EQ(stage.target.objects.GetTextStyle().font.height, 200);
    EXPECT_EQ(box->GetLineColor(), 0xFF0000FFu);
    int left = 0, top = 0, right = 0, bottom = 0;
    box->GetEditBound(left, top, right, bottom);
    EXPECT_EQ(QRect(left, top, right - left, bottom - top), QRect(10, 20, 50, 30));
}

TEST(XShapeToolTest, APictureIsChosenAtTheRelease)
{
    QTemporaryDir folder;
    const std::string path = folder.filePath("a.bmp").toStdString();
    QImage image(7, 5, QImage::Format_RGB888);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(path.c_str()));
    XScriptedPrompts prompts;
    XToolStage stage(109);
    stage.Play("down 10,10");
    const auto* picture = dynamic_cast<const XvcBitmap*>(stage.target.objects.m_currentObject);
    EXPECT_EQ(picture->GetWidth(), 4) << "white, without the program's own";
    EXPECT_EQ(picture->GetColorDepth(), 24);
    EXPECT_EQ(picture->GetBits()[47], 0xFF);
    prompts.AnswerPath(path.c_str());
    stage.Play("move 50,30 up");
    EXPECT_EQ(stage.GetDrawing(), "Bitmap 10,10 50,30");
    EXPECT_EQ(dynamic_cast<const XvcBitmap*>(stage.target.layer->GetHead())->GetWidth(), 7);
    EXPECT_EQ(stage.target.messages.GetMode(), XToolStage::kPostMode);

    prompts.AnswerPath(path.c_str());
    stage.Play("down 10,10 up");
    EXPECT_EQ(stage.target.layer->GetCount(), 1) << "a click makes none, though it asks";
    prompts.AnswerPath("/nowhere/at/all.bmp");
    stage.Play(kDrag);
    EXPECT_EQ(stage.target.layer->GetCount(), 1);
    EXPECT_NE(prompts.GetLastMessage(), "");
}

TEST(XShapeToolTest, AnObjectOfAnotherToolGivesWayToAPress)
{
    XToolStage stage(103);
    stage.target.objects.SetCurrent(std::make_unique<XvcPoint>(7, -8));
    stage.Play("move 20,20 rdown up dbl");
    EXPECT_EQ(stage.GetCurrent(), "Point 7,8");
    stage.Play("down 30,30");
    EXPECT_EQ(stage.GetCurrent(), "Polyline 30,30 30,30");
}

} // namespace
