#include "enhance/XStretchModel.h"
#include "enhance/XROIStretchStatistics.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XStretchPreset.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace {

constexpr int kDouble = 8;

long long Sum(const std::array<long long, 256>& bins)
{
    return std::accumulate(bins.begin(), bins.end(), 0LL);
}

// A band whose bins are one pixel each: values 0 to 255, so that a cut is a bin.
struct XStretchRun
{
    std::unique_ptr<XDMBandMemory> band =
        XfnMakeBand(kDouble, 16, 16, [](int x, int y) { return y * 16 + x; });
    XDMComposite composite{0};
    XStretchModel model;

    XStretchRun()
    {
        composite.SetBand(band.get(), 0);
        model.SetCurXDMComposite(&composite);
    }
    const tagXStretchChannel& Get() const { return model.GetChannel(0); }
};

TEST(XStretchModel, HistogramsFollowTheCut)
{
    const struct
    {
        const char* reason;
        double low;
        double high;
        long long bottom;
        long long top;
        long long total;
    } kCases[] = {
        {"the whole band is copied", 0, 255, 1, 1, 256},
        {"wider than the band is held", -1e6, 1e6, 1, 1, 256},
        {"what lies below and above piles up, the last bin is lost", 10, 250, 11, 5, 255},
        {"above bin 254 there is nothing to add", 0, 254, 1, 1, 255},
        {"a single bin, and all below it, go to the bottom", 100, 100, 101, 154, 255},
    };
    for (const auto& row : kCases) {
        XStretchRun run;
        run.model.SetCutMin(row.low, 0);
        run.model.SetCutMax(row.high, 0);
        EXPECT_EQ(run.Get().applied[0], row.bottom) << row.reason;
        EXPECT_EQ(run.Get().applied[255], row.top) << row.reason;
        EXPECT_EQ(Sum(run.Get().applied), row.total) << row.reason;
        EXPECT_EQ(Sum(run.Get().output), row.total) << row.reason;
    }
}

TEST(XStretchModel, WhatMakesNoSenseLeavesTheTable)
{
    for (const auto& [low, high] : std::initializer_list<std::pair<double, double>>{
             {200, 100}, {kXNotSet, 100}, {10, kXNotSet}, {std::nan(""), 100}, {10, INFINITY}}) {
        XStretchRun run;
        run.model.SetIntensities(20, 220, 0);
        const auto before = run.Get();
        run.model.SetCutMin(low, 0);
        const auto between = run.Get();
        run.model.SetCutMax(high, 0);
        EXPECT_EQ(run.Get().lut, before.lut);
        EXPECT_TRUE(run.Get().applied == before.applied || run.Get().applied == between.applied);
    }
    const auto flat = XfnMakeBand(kDouble, 4, 4, [](int, int) { return 7; });
    XDMComposite composite(0);
    composite.SetBand(flat.get(), 0);
    XStretchModel model;
    model.SetCurXDMComposite(&composite);
    const auto lut = model.GetChannel(0).lut;
    model.ApplyCutType(1);
    model.SetStretchType(5);
    EXPECT_EQ(model.GetChannel(0).lut, lut) << "a band of one value";
    EXPECT_EQ(model.GetChannel(1).hasNoBand, 1);
    EXPECT_EQ(Sum(model.GetChannel(1).source.histogram), 256);
    model.SetCutMin(3, 7);
    EXPECT_EQ(model.GetSubsetMin(-1), kXNotSet) << "a channel that is none";
    model.SetCurXDMComposite(nullptr);
    model.CalculateHistogram();
    EXPECT_EQ(model.GetCompositeBandIndex(), -1);
}

TEST(XStretchModel, TheSelectionOutlastsTheList)
{
    XStretchRun run;
    const auto green = XfnMakeBand(kDouble, 4, 4, [](int x, int) { return x; });
    XDMComposite colour(1);
    colour.SetBand(run.band.get(), 1);
    colour.SetBand(green.get(), 2);
    run.model.SetCurXDMComposite(&colour);
    EXPECT_EQ(run.model.GetCompositeBandIndex(), 0);
    EXPECT_TRUE(run.model.IsApplyAllBand());
    run.model.SelectNothing();
    EXPECT_EQ(run.model.GetCompositeBandIndex(), 1) << "the first band";
    run.model.SelectChannel(2);
    run.model.SelectNothing();
    EXPECT_EQ(run.model.GetCompositeBandIndex(), 2) << "the band selected last";
    colour.SetBand(nullptr, 2);
    run.model.SelectNothing();
    EXPECT_EQ(run.model.GetCompositeBandIndex(), -1);
}

TEST(XStretchModel, SourcesOfNumbersAndApply)
{
    const auto band = XfnMakeBand(kDouble, 16, 16, [](int x, int y) { return y * 16 + x; });
    XDMComposite composite(1);
    for (int ch = 0; ch < 3; ++ch)
        composite.SetBand(band.get(), ch);
    XStretchModel model;
    model.SetCurXDMComposite(&composite);
    EXPECT_TRUE(model.IsApplyAllBand());
    EXPECT_FALSE(model.IsApplyNeeded());

    composite.SetDrawRange(0.0, -3.0, 15.0, 0.0); // the upper four rows: values 0 to 63
    model.SelectChannel(1);
    model.SetCoverage(1);
    EXPECT_EQ(composite.GetStretchCoverage(1), 1) << "the composite learns of it at once";
    EXPECT_EQ(composite.GetStretchCoverage(0), 0) << "only the selected channel";
    EXPECT_DOUBLE_EQ(model.GetChannel(1).source.max, 63.0);
    const auto visible = model.GetChannel(1).source.histogram;
    model.ApplyCutType(1);
    EXPECT_DOUBLE_EQ(model.GetChannel(1).cutMax, 63.0);
    model.SetCoverage(0);
    EXPECT_DOUBLE_EQ(model.GetChannel(1).source.max, 255.0);
    EXPECT_EQ(model.GetChannel(1).source.histogram, visible)
        << "the bins stay until it is set anew";

    model.SelectComposite();
    model.ApplyCutType(3);
    EXPECT_NEAR(model.GetChannel(0).cutMin, 255 * 0.025, 1.0);
    EXPECT_NEAR(model.GetChannel(2).cutMax, 255 * 0.975, 1.0);
    model.SetStretchType(2);
    model.SetPoints({{100, 210}, {50, 20}, {50, 200}}, 2);
    EXPECT_EQ(model.GetChannel(2).lut[50], 200);
    ASSERT_TRUE(model.Apply());
    EXPECT_EQ(composite.GetNumOfHistPts(2), 2);
    EXPECT_EQ(composite.GetNumOfHistPts(0), 0);
    EXPECT_EQ(composite.GetStretchCoverage(1), 0);
    EXPECT_EQ(composite.GetCutType(1), 0);
    EXPECT_FALSE(model.IsApplyNeeded());

    std::array<tagXStretchSource, 3> sources;
    sources[1].min = 5.0;
    sources[1].max = 9.0;
    model.SelectChannel(1);
    model.SetROIStatistics(sources);
    EXPECT_DOUBLE_EQ(model.GetChannel(1).cutMax, 9.0);
    EXPECT_NE(model.GetChannel(2).cutMax, 9.0);
}

TEST(XROIStretchStatistics, AreThoseOfThePixelsUnderThePolygons)
{
    const auto band = XfnMakeBand(kDouble, 16, 16, [](int x, int y) { return y * 16 + x; });
    XDMCompManager manager;
    XDMComposite* composite = manager.NewXDMComposite(0);
    composite->SetBand(band.get(), 0);
    manager.AddXDMComposite(composite);
    // rows 1 and 2 of columns 2 to 5
    const tagXROIPolygon box = {{1.5, 5.5, 5.5, 1.5}, {-0.5, -0.5, -2.5, -2.5}};
    const tagXROIPolygon away = {{100, 110, 110}, {100, 100, 90}};
    std::array<tagXStretchSource, 3> sources;
    ASSERT_TRUE(XfnCalcROIStretchStatistics(manager, {box, away}, nullptr, sources));
    EXPECT_DOUBLE_EQ(sources[0].min, 18.0);
    EXPECT_DOUBLE_EQ(sources[0].max, 37.0);
    EXPECT_DOUBLE_EQ(sources[0].mean, 27.5);
    EXPECT_NEAR(sources[0].stdDev, 8.6355, 1e-4); // of 18 19 20 21 34 35 36 37
    EXPECT_EQ(Sum(sources[0].histogram), 8);
    EXPECT_EQ(sources[1].min, kXNotSet) << "a gray stack has one channel";
    ASSERT_TRUE(XfnCalcROIStretchStatistics(manager, {away}, nullptr, sources));
    EXPECT_EQ(sources[0].stdDev, 0.0);
    EXPECT_EQ(sources[0].min, kXNotSet);
}

TEST(XStretchPreset, ChangesWhatItSays)
{
    const auto band = XfnMakeBand(kDouble, 16, 16, [](int x, int y) { return y * 16 + x; });
    const auto classes = XfnMakeBand(1, 4, 4, [](int x, int) { return x; });
    classes->SetBandType(8);
    XDMCompManager manager;
    XDMComposite* composites[3];
    for (int i = 0; i < 3; ++i) {
        composites[i] = manager.NewXDMComposite(i == 2 ? 3 : 0);
        if (i < 2) composites[i]->SetBand(i == 0 ? band.get() : classes.get(), 0);
        manager.AddXDMComposite(composites[i]);
    }
    const auto* quirk = XfnFindStretchPreset(40060);
    ASSERT_NE(quirk, nullptr);
    EXPECT_EQ(quirk->cutType, 1) << "it cuts from minimum to maximum whatever it is called";
    EXPECT_EQ(XfnFindStretchPreset(40045), nullptr);
    const int former = composites[1]->GetStretchType(0);
    XfnEnhanceEx(manager, 0, 3, 5);
    EXPECT_NEAR(composites[0]->GetCutMin(0), 255 * 0.025, 1.0);
    EXPECT_EQ(composites[0]->GetStretchType(0), 5);
    EXPECT_EQ(composites[1]->GetStretchType(0), former) << "a class map is left alone";
    XfnEnhanceEx(manager, 1, 2, 7);
    EXPECT_NEAR(composites[0]->GetCutMin(0), 255 * 0.025, 1.0) << "drawing works it out";
    EXPECT_EQ(composites[0]->GetStretchCoverage(2), 1);
    XfnEnhance(manager, 1, 4);
    EXPECT_EQ(composites[0]->GetStretchCoverage(0), 1) << "coverage stays";
    EXPECT_EQ(composites[0]->GetCutType(0), 1);
}

} // namespace
