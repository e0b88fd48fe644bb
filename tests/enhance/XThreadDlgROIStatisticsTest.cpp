#include "enhance/XThreadDlgROIStatistics.h"

#include "foundation/raster/XDMCompManager.h"
#include "tests/support/XBandSamples.h"
#include "tests/support/XScriptedPrompts.h"

#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

/// A gray stack of 256 values, a model that works on it, and the polygon of its rows 1 and 2.
struct tagRegionRun
{
    std::unique_ptr<XDMBandMemory> band =
        XfnMakeBand(kXDouble, 16, 16, [](int x, int y) { return y * 16 + x; });
    XDMCompManager manager;
    XStretchModel model;
    std::vector<tagXROIPolygon> polygons{{{-1, 20, 20, -1}, {-0.5, -0.5, -2.5, -2.5}}};

    tagRegionRun()
    {
        XDMComposite* composite = manager.NewXDMComposite(0);
        composite->SetBand(band.get(), 0);
        manager.AddXDMComposite(composite);
        model.SetCurXDMComposite(composite);
    }
};

TEST(XThreadDlgROIStatistics, HandsOverOnSuccessOnly)
{
    const XScriptedPrompts prompts;
    tagRegionRun run;
    XThreadDlgROIStatistics dialog;
    dialog.SetInput(&run.manager, run.polygons);
    EXPECT_EQ(dialog.DoModal(), XThreadDlg::kCancel);
    EXPECT_EQ(prompts.GetLastMessage(),
              "Error In Calculate ROI Statistics...\nThere is nothing to compute for.");
    EXPECT_EQ(prompts.GetMessages().back().icon, XPrompts::XIcon::Error);

    dialog.SetProcessOwner(&run.model);
    EXPECT_EQ(dialog.DoModal(), XThreadDlg::kOk);
    EXPECT_EQ(run.model.GetSubsetMin(0), 16);
    EXPECT_EQ(run.model.GetSubsetMax(0), 47);
    EXPECT_EQ(run.model.GetChannel(0).cutMax, 47);
    EXPECT_TRUE(run.model.IsApplyNeeded());
    EXPECT_EQ(prompts.GetMessages().size(), 1u);
}

TEST(XThreadDlgROIStatistics, CancelLeavesTheModel)
{
    const XScriptedPrompts prompts;
    tagRegionRun run;
    run.polygons.resize(200000, run.polygons.front()); // more than a click takes
    XThreadDlgROIStatistics dialog;
    dialog.SetProcessOwner(&run.model);
    dialog.SetInput(&run.manager, run.polygons);
    auto* cancel = dialog.findChild<QPushButton*>("thread.cancel");
    QTimer::singleShot(0, cancel, [cancel] { cancel->click(); });
    EXPECT_EQ(dialog.DoModal(), XThreadDlg::kCancel);
    EXPECT_EQ(run.model.GetSubsetMin(0), 0);
    EXPECT_FALSE(run.model.IsApplyNeeded());
    EXPECT_TRUE(prompts.GetMessages().empty()) << "a cancel is no error";
}

} // namespace
