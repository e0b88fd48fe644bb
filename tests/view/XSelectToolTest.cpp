#include "tests/view/XToolGesture.h"

namespace {

struct tagXSelectCase
{
    const char* name;
    const char* gesture;
    const char* drawing; // that results; null: as it was
    const char* selected;
    const char* reports;
    int steps = 0;
    unsigned short limit = 0;
    const char* before = nullptr; // null: kDrawing
    const char* undone = nullptr; // null: as it was
};

const char* const kDrawing = "Line 20,20 60,20; Point 100,50";
const char* const kTwo = "Line 20,20 60,20; Line 20,40 60,40";
const char* const kLines = "Polyline 20,20 60,20 60,60";
const char* const kBox = "Bitmap 20,20 60,60";

// clang-format off
const tagXSelectCase kCases[] = {
    {"a click selects one", "down 40,20 up", nullptr, "0", "63 85"},
    {"within three pixels", "down 40,23 up", nullptr, "0", "63 85"},
    {"not beyond", "down 40,24 up", nullptr, "", ""},
    {"the upper one", "down 40,20 up", nullptr, "1", "63 85", 0, 0, "Line 20,20 60,20; Line 20,20 60,20"},
    {"a click beside it selects nothing", "down 40,20 up down 90,90 up", nullptr, "", "63 85"},
    {"with Ctrl too", "down 40,20 up ctrl-down 90,90 up", nullptr, "", "63 85"},
    {"another click, another object", "down 40,20 up down 100,50 up", nullptr, "1", "63 85 63 85"},
    {"Ctrl adds in z-order", "down 100,50 up ctrl-down 40,20 up", nullptr, "0 1", "63 85 85"},
    {"Ctrl takes none away", "down 40,20 up ctrl-down 40,20 up", nullptr, "0", "63 85 63 85"},
    {"a drag moves what it hits", "down 40,20 move 45,25 move 50,30 up", "Line 30,30 70,30; Point 100,50", "0", "63 80 79 85", 1},
    {"several are one step", "down 40,20 up ctrl-down 100,50 up down move 110,60 up", "Line 30,30 70,30; Point 110,60", "0 1", "63 85 85 80 79 85", 1},
    {"a vertex moves alone", "down 20,20 move 25,35 up", "Line 25,35 60,20; Point 100,50", "0", "63 80 79 85", 1},
    {"not among several", "down 40,20 up ctrl-down 100,50 up down 20,20 move 30,20 up", "Line 30,20 70,20; Point 110,50", "0 1", "63 85 85 80 79 85", 1},
    {"a point has no other", "down 100,50 move 101,52 up", "Line 20,20 60,20; Point 101,52", "1", "63 80 79 85", 1},
    {"a release away from the last move", "down 40,20 move 50,30 up 90,90", "Line 30,30 70,30; Point 100,50", "0", "63 80 79 85", 1, 0, nullptr, "Line -20,-40 20,-40; Point 100,50"},
    {"there and back is no step", "down 40,20 move 50,30 move 40,20 up", nullptr, "0", "63 85"},
    {"nor is a press on an axis", "down 40,0 move 40,10 up", "Line 20,10 60,10", "0", "63 85", 0, 0, "Line 20,0 60,0"},
    {"a corner moves alone", "down 40,20 up down 60,60 move 70,65 up", "Bitmap 20,20 70,65", "0", "63 85 63 80 79 85", 1, 0, kBox, "Bitmap 10,15 60,60"},
    {"what has no clone moves", "down 40,20 move 50,30 up", "Polypoint 50,30", "0", "63 80 79 85", 1, 0, "Polypoint 40,20", "Polypoint 50,30"},
    {"limit 2 moves nothing", "down 40,20 move 45,22 up", nullptr, "", "63", 0, 2},
    {"its band selects", "down 40,20 move 200,100 up", nullptr, "1", "63 85", 0, 2},
    {"a band selects", "down 10,10 move 120,70 up", nullptr, "0 1", "85"},
    {"but not what it touches", "down 30,10 move 60,60 up", nullptr, "", ""},
    {"nor a point on its side", "down 90,50 move 110,80 up", nullptr, "", ""},
    {"limit 8", "down 10,10 move 120,70 up", nullptr, "", "", 0, 8},
    {"a cancelled drag", "down 40,20 move 50,30 cancel up", nullptr, "0", "63"},
    {"a cancelled vertex", "down 20,20 move 25,35 cancel up", nullptr, "0", "63"},
    {"a cancelled band", "down 90,90 move 10,10 cancel up", nullptr, "", ""},
    {"a release alone", "move 40,20 up", nullptr, "", ""},
    {"an edge gets a vertex", "down 40,20 up ctrl-dbl up", "Polyline 20,20 40,20 60,20 60,60", "0", "63 85", 1, 0, kLines},
    {"the closing edge too", "down 40,40 up ctrl-dbl up", "Polygon 20,20 60,20 60,60 40,40", "0", "63 85", 1, 0, "Polygon 20,20 60,20 60,60"},
    {"a vertex goes", "down 60,20 up ctrl-dbl up", "Polyline 20,20 60,60", "0", "63 85", 1, 0, kLines},
    {"but not of a line", "down 20,20 up ctrl-dbl up", nullptr, "0", "63 85"},
    {"nor with limit 4", "down 60,20 up ctrl-dbl up", nullptr, "0", "63 85", 0, 4, kLines},
    {"a double click edits", "down 40,20 up dbl up", nullptr, "0", "63 85 80 79", 1},
    {"not with limit 4", "down 40,20 up dbl up", nullptr, "0", "63 85", 0, 4},
};
// clang-format on

TEST(XSelectToolTest, EveryGestureEndsAsItShould)
{
    for (const tagXSelectCase& c : kCases) {
        SCOPED_TRACE(c.name);
        const std::string before = c.before ? c.before : kDrawing;
        XFakeObjectDialogs dialogs;
        XToolStage stage(0, before);
        stage.target.messages.SetModeLimit(c.limit);
        stage.Play(c.gesture);
        const std::string after = stage.GetDrawing();
        EXPECT_EQ(after, c.drawing ? c.drawing : before);
        EXPECT_EQ(stage.GetSelected(), c.selected);
        EXPECT_EQ(stage.GetReports(), c.reports);
        EXPECT_EQ(stage.GetSteps(), c.steps);
        const std::string reports = c.reports;
        if (reports.ends_with("85") || reports.ends_with("79")) {
            EXPECT_LT(stage.target.log.back(), 40000) << "what the host changed in it is shown";
            EXPECT_TRUE(stage.target.IsRaised(XViewBuffer::MainVertex));
        }
        EXPECT_FALSE(stage.target.band.IsShown());
        EXPECT_FALSE(stage.target.state.isButtonDrag);
        EXPECT_FALSE(stage.target.commands.IsModifying());
        EXPECT_EQ(stage.target.messages.GetMode(), 0) << "the tool stays";
        if (c.steps == 0) continue;
        XObList selection;
        stage.target.commands.Undo(&selection);
        EXPECT_EQ(stage.GetDrawing(), c.undone ? c.undone : before);
        stage.target.commands.Redo(&selection);
        EXPECT_EQ(stage.GetDrawing(), after);
    }
}

TEST(XSelectToolTest, LayersAndThicknessDecideWhatIsHit)
{
    XToolStage stage(0, kDrawing);
    auto* other = new XvcLayer;
    XvcBase lent;
    lent.AddTail(other);
    XfnDraw(*other, "Line 20,90 60,90");
    stage.target.externalBases.AddTail(&lent);
    for (const char* gesture : {"down 40,90 up", "down 10,80 move 80,95 up"}) {
        stage.target.editLayer = stage.target.layer;
        stage.Play(gesture);
        EXPECT_EQ(stage.target.editLayer, other) << gesture;
    }
    lent.SetHideFlag(1);
    stage.Play("down 100,50 up down 10,80 move 80,95 up");
    EXPECT_EQ(stage.target.editLayer, stage.target.layer) << "what is hidden is not there";
    EXPECT_EQ(stage.GetSelected(), "");

    auto* line = dynamic_cast<XvcObj*>(stage.target.layer->GetHead());
    line->SetThick(12);
    stage.Play("down 40,20 up down 40,30 up");
    EXPECT_EQ(stage.target.hit.object, nullptr) << "it was selected already";
    EXPECT_EQ(stage.GetSelected(), "0");
    line->SetThick(0.5);
    stage.Play("ctrl-down 40,22 up");
    EXPECT_EQ(stage.GetSelected(), "0") << "missed as selected, hit as any: once";
}

TEST(XSelectToolTest, ADoubleClickOpensTheDialogOfTheClass)
{
    struct tagXCase
    {
        const char* drawing;
        const char* at;
        std::vector<XObjectDialog> asked;
    };
    using enum XObjectDialog;
    const tagXCase kDialogs[] = {
        {"Point 40,20", "40,20", {Point}},
        {"Line 20,20 60,20", "40,20", {Line}},
        {kLines, "40,20", {Polyline}},
        {"Polypoint 40,20", "40,20", {Polypoint}},
        {kBox, "40,40", {Bitmap}},
        {"Rectangle 20,20 60,60", "40,40", {Rect}},
        {"TextBox 20,20 60,60", "40,40", {}},
        {kTwo, "", {Group}},
        {"NorthArrow 20,20 60,60", "40,40", {NorthArrow}},
        {"ScaleBar 20,20 60,60", "40,40", {}},
        {"Point 40,20", "90,90", {}},
    };
    for (const int result : {1, 2}) {
        for (const tagXCase& c : kDialogs) {
            SCOPED_TRACE(c.drawing);
            XFakeObjectDialogs dialogs;
            dialogs.result = result;
            dialogs.endShapeID = 3;
            XToolStage stage(0, c.drawing);
            const std::string at = c.at;
            stage.Play(at.empty() ? "down 10,10 move 90,90 up dbl up"
                                  : "down " + at + " up dbl up");
            EXPECT_EQ(dialogs.asked, c.asked);
            const bool isEdited = result == 1 && !c.asked.empty();
            EXPECT_EQ(stage.GetSteps(), isEdited);
            EXPECT_EQ(std::ranges::count(stage.target.GetReports(), 41079), isEdited);
            EXPECT_EQ(std::ranges::count(stage.target.GetReports(), 41080), at != "90,90");
            const auto* line = dynamic_cast<XvcLine*>(stage.target.layer->GetHead());
            EXPECT_TRUE(!line || at.empty() || line->GetEndShapeID() == (result == 1 ? 3 : 0));
        }
    }
}

// Whatever the host does in a report or while a dialog is open, objects that are gone are left alone.
TEST(XSelectToolTest, AnUndoInBetweenEndsTheGesture)
{
    for (const char* gesture :
         {"down 45,25 move 60,40 up", "down 45,25 up dbl up", "down 10,10 move 90,90 up dbl up"}) {
        for (const bool isInDialog : {false, true}) {
            SCOPED_TRACE(gesture);
            XFakeObjectDialogs dialogs;
            XToolStage stage(0, kTwo);
            stage.Play("down 40,20 move 45,25 up");
            ASSERT_EQ(stage.GetSteps(), 1);
            const auto undo = [&] { stage.target.commands.Undo(stage.target.selection.GetList()); };
            if (isInDialog) {
                dialogs.onModal = undo;
            } else {
                stage.target.onReport = [&](XViewReport code) {
                    if (code == XViewReport::BeforeModify) undo();
                };
            }
            stage.Play(gesture);
            EXPECT_FALSE(stage.target.commands.IsModifying());
            if (isInDialog && dialogs.asked.empty()) continue;
            EXPECT_EQ(stage.GetSteps(), 0);
        }
    }
}

TEST(XSelectToolTest, WhatAReportLeavesOfADragIsAStep)
{
    XToolStage stage(0, kTwo);
    stage.Play("down 40,20 move 45,25 up down 10,10 move 90,90 up down 45,25 move 55,35");
    stage.target.onReport = [&](XViewReport code) {
        if (code == XViewReport::BeforeModify)
            stage.target.commands.Undo(stage.target.selection.GetList());
    };
    stage.Play("up");
    const char* const after = "Line 20,20 60,20; Line 30,50 70,50";
    EXPECT_EQ(stage.GetDrawing(), after) << "the first is another one, at its place of old";
    ASSERT_EQ(stage.GetSteps(), 1);
    XObList selection;
    stage.target.commands.Undo(&selection);
    EXPECT_EQ(stage.GetDrawing(), kTwo);
    stage.target.commands.Redo(&selection);
    EXPECT_EQ(stage.GetDrawing(), after);
}

TEST(XRotateToolTest, TurnsAboutTheMiddleOfTheView)
{
    struct tagXCase
    {
        const char* gesture;
        double angle;
    };
    // the middle is 200,100
    for (const tagXCase& c : {tagXCase{"down 300,50 move 250,0 up", 36.869897645844},
                              tagXCase{"down 250,50 move 200,50 move 150,50 up", 90.0},
                              tagXCase{"down 250,100 move 250,50 up", -315.0}, // 360 to 45
                              tagXCase{"down 250,50 move 200,100 move 250,50 up", 0.0},
                              tagXCase{"move 20,30 up", 0.0}}) {
        SCOPED_TRACE(c.gesture);
        XToolStage stage(202);
        stage.Play(c.gesture);
        EXPECT_NEAR(stage.target.rotation, c.angle, 1e-9);
        EXPECT_EQ(stage.GetReports(), "91");
        EXPECT_EQ(stage.target.messages.GetMode(), XToolStage::kPostMode);
    }
}

} // namespace
