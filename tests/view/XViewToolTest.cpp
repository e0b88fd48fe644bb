#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "tests/view/XFakeToolTarget.h"
#include "view/tools/XNoneTool.h"
#include "view/tools/XZoomRectTool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

using Log = std::vector<int>;

struct tagXStep
{
    unsigned message;
    unsigned flags;
    int x;
    int y;
};

void Play(XViewTool& tool, const std::vector<tagXStep>& steps)
{
    for (const tagXStep& step : steps)
        tool.Handle(step.message, step.flags, static_cast<XLPARAM>(XfnPackPoint(step.x, step.y)));
}

TEST(XZoomRectToolTest, EveryGestureEnds)
{
    struct tagXCase
    {
        const char* name;
        std::vector<tagXStep> steps;
        tagXWorldBox box;       // that the fit must show; an empty one: nothing was fitted
        bool isDropped = false; // without a report
    };
    const tagXWorldBox kNone = {0, 0, 0, 0};
    const tagXStep kDown{kMsgLButtonDown, 1, 100, 50}, kOn{kMsgMouseMove, 1, 300, 40};
    const auto up = [](int x, int y) { return tagXStep{kMsgLButtonUp, 0, x, y}; };
    const tagXCase kCases[] = {
        {"corners in any order", {kDown, kOn, up(60, 30)}, {60, -50, 100, -30}},
        {"only the release decides", {kDown, kOn, up(120, 70)}, {100, -70, 120, -50}},
        {"a point outside the view", {kDown, up(-20, -10)}, {-20, -50, 100, 10}},
        {"a click fits nothing, but ends", {kDown, up(100, 50)}, kNone},
        {"nor does a level line", {kDown, up(180, 50)}, kNone},
        {"nor an upright one", {kDown, up(100, 90)}, kNone},
        {"a release alone ends too", {up(30, 30)}, kNone},
        {"a right double click drops it", {kDown, {kMsgRButtonDblClk, 2, 80, 80}}, kNone, true},
    };
    for (const tagXCase& c : kCases) {
        SCOPED_TRACE(c.name);
        XFakeToolTarget target;
        target.messages.SetMode(201);
        target.messages.SetPostMode(102);
        XZoomRectTool tool(target);
        Play(tool, c.steps);
        EXPECT_EQ(target.log, c.isDropped ? Log{} : (Log{9, 41090}));
        EXPECT_EQ(target.messages.GetMode(), 102);
        EXPECT_FALSE(target.band.IsShown());
        XFakeToolTarget expected;
        if (c.box.minX < c.box.maxX) expected.mapping.ZoomFit(c.box);
        EXPECT_TRUE(target.main.GetMapping() == expected.main.GetMapping());
        EXPECT_TRUE(target.temporary.GetMapping() == target.main.GetMapping());
        for (XViewBuffer buffer :
             {XViewBuffer::BookMark, XViewBuffer::MainBack, XViewBuffer::TempBack})
            EXPECT_EQ(std::ranges::count(target.raised, buffer), c.isDropped ? 0 : 1);
    }
}

TEST(XZoomRectToolTest, TheBandFollowsTheLeftButtonAlone)
{
    XFakeToolTarget target;
    XZoomRectTool tool(target);
    Play(tool, {{kMsgMouseMove, 0, 5, 5}, {kMsgLButtonDown, 1, 10, 20}});
    EXPECT_EQ(target.band.GetTo(), QPoint(10, 20));
    for (const unsigned flags : {0u, 2u, 3u, 5u, 9u})
        Play(tool, {{kMsgMouseMove, flags, 70, 80}});
    EXPECT_EQ(target.band.GetTo(), QPoint(10, 20));
    Play(tool, {{kMsgMouseMove, 1, 70, 80}});
    EXPECT_EQ(target.band.GetFrom(), QPoint(10, 20));
    EXPECT_EQ(target.band.GetTo(), QPoint(70, 80));
    const tagXWorldBox before = target.mapping.GetBound();
    tool.Cancel();
    EXPECT_FALSE(target.band.IsShown());
    Play(tool, {{kMsgLButtonUp, 0, 90, 90}});
    EXPECT_EQ(target.mapping.GetBound().minX, before.minX) << "cancelled is cancelled";
    EXPECT_EQ(target.log, (Log{9, 41090}));
}

class XNoneToolTest : public ::testing::Test
{
protected:
    XNoneToolTest()
    {
        for (XObList* list : {&target.externalBases, &target.innerBases}) {
            auto* layer = new XvcLayer;
            layer->AddTail(new XvcPoint(50, -40));
            bases.push_back(std::make_unique<XvcBase>());
            bases.back()->AddTail(layer); // owns it, and the layer its point
            bases.back()->CalcRange();
            list->AddTail(bases.back().get());
        }
    }
    XvcObj* PointOf(int base) const
    {
        const auto* layer = dynamic_cast<const XvcLayer*>(bases[base]->GetHead());
        return dynamic_cast<XvcObj*>(layer->GetHead());
    }

    std::vector<std::unique_ptr<XvcBase>> bases; // external, inner
    XFakeToolTarget target;
    XNoneTool tool{target};
};

TEST_F(XNoneToolTest, ADoubleClickReportsTheFirstHitWithinThreePixels)
{
    target.mapping.SetWorldPerPixelBase(1, 1);
    Play(tool, {{kMsgLButtonDown, 1, 50, 40}, {kMsgLButtonUp, 0, 50, 40}});
    EXPECT_EQ(target.log, Log{}) << "a click looks for nothing";
    Play(tool, {{kMsgLButtonDblClk, 1, 52, 40}});
    EXPECT_EQ(target.log, Log{41063});
    EXPECT_EQ(target.hit.object, PointOf(1)) << "the view's own bases come first";
    EXPECT_EQ(target.hit.hit, &target.state.hit) << "the view's record, not a copy";
    bases[1]->SetHideFlag(1);
    Play(tool, {{kMsgLButtonDblClk, 1, 50, 42}});
    EXPECT_EQ(target.hit.object, PointOf(0));
    Play(tool, {{kMsgLButtonDblClk, 1, 56, 40}, {kMsgRButtonDblClk, 2, 50, 40}});
    EXPECT_EQ(target.log, (Log{41063, 41063})) << "beyond the tolerance, or another button";
}

TEST_F(XNoneToolTest, EveryEventEmptiesTheSelection)
{
    for (const unsigned message : {512u, 513u, 514u, 515u, 516u, 517u, 518u, 522u}) {
        target.log.clear();
        target.raised.clear();
        target.selection.GetList()->AddTail(PointOf(0));
        Play(tool, {{message, 0, 300, 100}, {message, 0, 300, 100}});
        EXPECT_TRUE(target.selection.IsEmpty());
        EXPECT_EQ(target.log, Log{8}) << message << ": once";
        EXPECT_EQ(target.raised, (std::vector{XViewBuffer::TempVertex, XViewBuffer::TempBack}));
    }
}

} // namespace
