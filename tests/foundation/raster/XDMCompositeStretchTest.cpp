#include "foundation/raster/XDMComposite.h"

#include "foundation/raster/XStretchLUT.h"
#include "tests/support/XBandSamples.h"
#include "tests/support/XPixelGrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include <limits>
#include <numeric>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using C = XDMComposite&;

/// Values 0 to 999 in the left half, 5000 in the right one.
std::unique_ptr<XDMBandMemory> MakeHalves()
{
    return XfnMakeBand(kXUInt16, 200, 100,
                       [](int x, int y) { return x < 100 ? (y * 100 + x) % 1000 : 5000; });
}

TEST(XDMCompositeStretch, WhichRuleSetsTheCutRange)
{
    auto band = MakeHalves();
    const struct
    {
        const char* name;
        std::function<void(C)> setUp;
        double min, max;
    } kCases[] = {
        {"a range nobody chose is the band's own", [](C) {}, 0, 5000},
        {"an explicit one stands", [](C c) { c.SetCutRange(3, 4, 0); }, 3, 4},
        {"a cut type set afterwards is resolved from the band",
         [](C c) { c.SetCutRange(3, 4, 0), c.SetCutType(1, 0); }, 0, 5000},
        {"a range set after the cut type stands",
         [](C c) { c.SetCutType(1, 0), c.SetCutRange(3, 4, 0); }, 3, 4},
        {"the visible region follows the drawing whenever it was set",
         [](C c) { c.SetStretchCoverage(1, 0), c.SetCutType(1, 0), c.SetCutRange(3, 4, 0); }, 0,
         989},
        {"the visible region with explicit numbers",
         [](C c) { c.SetStretchCoverage(1, 0), c.SetCutRange(3, 4, 0); }, 3, 4},
        {"a stretch by the visible region needs a range that nobody chose",
         [](C c) { c.SetStretchCoverage(1, 0), c.SetStretchType(kXStretchEqualization, 0); }, 0,
         5000},
        {"regions of interest leave their numbers",
         [](C c) { c.SetCutRange(3, 4, 0), c.SetStretchCoverage(2, 0), c.SetCutType(1, 0); }, 3, 4},
    };
    for (const auto& row : kCases) {
        XDMComposite composite;
        composite.SetBand(band.get(), 0);
        row.setUp(composite);
        XBackBuffer buffer = XfnMakeSurface(90, 90); // the left half only
        ASSERT_TRUE(XfnDrawAll(composite, buffer)) << row.name;
        EXPECT_EQ(composite.GetCutMin(0), row.min) << row.name;
        EXPECT_EQ(composite.GetCutMax(0), row.max) << row.name;
    }
}

TEST(XDMCompositeStretch, ANewBandGetsItsOwnRangeUnlessOneWasChosen)
{
    auto shorts = MakeHalves();
    auto bytes = XfnMakeBand(kXUInt8, 200, 100, [](int x, int) { return x; });
    const struct
    {
        const char* name;
        std::function<void(C)> before, after;
        double max;
    } kCases[] = {
        {"set", [](C) {}, [&](C c) { c.SetBand(bytes.get(), 0); }, 255},
        {"a visible region's", [](C c) { c.SetStretchCoverage(1, 0), c.SetCutType(1, 0); },
         [&](C c) { c.SetStretchCoverage(0, 0), c.SetCutType(0, 0), c.SetBand(bytes.get(), 0); },
         255},
        {"chosen", [](C c) { c.SetCutRange(1, 77, 0); }, [&](C c) { c.SetBand(bytes.get(), 0); },
         77},
        {"the same band", [](C) {}, [&](C c) { c.SetBand(shorts.get(), 0); }, 5000},
        {"settings of a composite of another band", [](C) {},
         [&](C c) {
             XDMComposite other;
             other.SetBand(bytes.get(), 0);
             other.CopyDisplaySettings(&c);
             c.CloneXDMComposite(&other);
         },
         255},
    };
    for (const auto& row : kCases) {
        XDMComposite composite;
        composite.SetBand(shorts.get(), 0);
        row.before(composite);
        XBackBuffer buffer = XfnMakeSurface(200, 100);
        ASSERT_TRUE(XfnDrawAll(composite, buffer)) << row.name;
        row.after(composite);
        ASSERT_TRUE(XfnDrawAll(composite, buffer)) << row.name;
        EXPECT_EQ(composite.GetCutMax(0), row.max) << row.name;
    }
}

TEST(XDMCompositeStretch, TheVisibleRegionIsMeasuredAnewOnlyWhenItMoves)
{
    auto band = MakeHalves();
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    composite.SetDrawRange(0, -99, 99, 0);
    ASSERT_TRUE(composite.CalcSubsetStatistics(0));
    EXPECT_EQ(composite.GetSubsetMin(0), 0.0);
    EXPECT_EQ(composite.GetSubsetMax(0), 999.0);
    EXPECT_EQ(composite.GetSubsetMean(0), 499.5);
    EXPECT_NEAR(composite.GetSubsetStd(0), std::sqrt((1e6 - 1) / 12.0), 1e-6);
    EXPECT_EQ(composite.GetSubsetNumPixels(0), 10000);
    band->SetNullValue(0);
    ASSERT_TRUE(composite.CalcSubsetStatistics(0));
    EXPECT_EQ(composite.GetSubsetNumPixels(0), 9990) << "a null value counts at once";
    band->SetNullValue(kXNotSet);
    static_cast<std::uint16_t*>(band->GetData())[0] = 4000;
    band->Changed();
    ASSERT_TRUE(composite.CalcSubsetStatistics(0));
    EXPECT_EQ(composite.GetSubsetMax(0), 4000.0) << "so do other pixels";
    ASSERT_TRUE(composite.CalcSubsetHistogram(0));
    const long long* bins = composite.GetSubsetHistogram(0);
    EXPECT_EQ(std::accumulate(bins, bins + 256, 0LL), 10000);
    composite.SetDrawRange(150, -50, 180, -20);
    ASSERT_TRUE(composite.CalcSubsetStatistics(0));
    EXPECT_EQ(composite.GetSubsetMin(0), 5000.0);
    EXPECT_EQ(composite.GetSubsetMax(0), 5000.0);
    composite.SetDrawRange(500, -50, 600, -20); // beside the band
    EXPECT_FALSE(composite.CalcSubsetStatistics(0));
    EXPECT_EQ(composite.GetSubsetMin(0), kXNotSet);
    EXPECT_EQ(composite.GetSubsetMax(0), kXNoData);
    EXPECT_FALSE(composite.CalcSubsetStatistics(1));
}

TEST(XDMCompositeStretch, BandsWithoutNumbersSurvive)
{
    auto empty = XfnMakeBand(kXFloat, 20, 20, [](int, int) { return kNaN; });
    auto constant = XfnMakeBand(kXInt16, 20, 20, [](int, int) { return 7; });
    for (XDMBandMemory* band : {empty.get(), constant.get()}) {
        for (int coverage = 0; coverage < 3; ++coverage) {
            for (int cutType = 0; cutType < 4; ++cutType) {
                for (int stretch = 0; stretch < 8; ++stretch) {
                    XDMComposite composite;
                    composite.SetBand(band, 0);
                    composite.SetStretchCoverage(coverage, 0);
                    composite.SetCutType(cutType, 0);
                    composite.SetStretchType(stretch, 0);
                    XBackBuffer buffer = XfnMakeSurface(20, 20, 0xFF0000FFu);
                    EXPECT_TRUE(XfnDrawAll(composite, buffer));
                    if (band != empty.get()) continue;
                    EXPECT_EQ(buffer.GetRow(9)[9], 0xFF0000FFu);
                }
            }
        }
    }
}

TEST(XDMCompositeStretch, TheTableFollowsItsSettingsAndHoldsWhatWasSet)
{
    auto band = XfnMakeBand(kXUInt8, 40, 40, [](int x, int y) { return x < 20 ? x : 100 + y; });
    const struct
    {
        const char* name;
        std::function<void(C)> change;
        int isKept;
    } kCases[] = {
        {"nothing", [](C) {}, 1},
        {"the same values again", [](C c) { c.SetCutRange(0, 200, 0); }, 1},
        {"the name", [](C c) { c.SetName("x"); }, 1},
        {"the cut range", [](C c) { c.SetCutRange(0, 199, 0); }, 0},
        {"the stretch type", [](C c) { c.SetStretchType(7, 0); }, 0},
        {"an intensity", [](C c) { c.SetIntensity255(200, 0); }, 0},
        {"a point", [](C c) { c.AddHistPt(0, 5, 6); }, 0},
    };
    for (const int type : {1, 5}) {
        for (const auto& row : kCases) {
            XDMComposite composite;
            composite.SetBand(band.get(), 0);
            composite.SetCutRange(0, 200, 0);
            composite.SetStretchType(type, 0);
            unsigned char own[256];
            std::fill_n(own, 256, static_cast<unsigned char>(77));
            composite.SetLUT(own, 0);
            row.change(composite);
            XBackBuffer buffer = XfnMakeSurface(40, 40);
            ASSERT_TRUE(XfnDrawAll(composite, buffer));
            EXPECT_EQ(composite.GetLUT(0)[100] == 77 && composite.GetLUT(0)[3] == 77, row.isKept)
                << row.name << ", type " << type;
        }
    }
    // what drawing works out by itself is no change: the range of a band that is not bytes is pending
    auto shorts = MakeHalves();
    for (const int type : {kXStretchLinear, kXStretchEqualization}) {
        for (const int coverage : {0, 1}) {
            XDMComposite composite;
            composite.SetBand(shorts.get(), 0);
            composite.SetStretchCoverage(coverage, 0);
            composite.SetCutType(coverage, 0);
            composite.SetStretchType(type, 0);
            const unsigned char own[256] = {77};
            composite.SetLUT(own, 0);
            for (const int size : {40, 90}) {
                XBackBuffer buffer = XfnMakeSurface(size, size);
                ASSERT_TRUE(XfnDrawAll(composite, buffer));
                EXPECT_EQ(composite.GetLUT(0)[0], 77) << type << " " << coverage << " " << size;
            }
            composite.SetStretchType(kXStretchSquareRoot, 0);
            composite.UpdateLUT(0);
            EXPECT_EQ(composite.GetLUT(0)[0], 0);
        }
    }
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    composite.SetStretchType(kXStretchEqualization, 0);
    XBackBuffer buffer = XfnMakeSurface(40, 40);
    ASSERT_TRUE(XfnDrawAll(composite, buffer));
    const int before = composite.GetLUT(0)[60];
    unsigned char* samples = static_cast<unsigned char*>(band->GetData());
    std::fill_n(samples, 800, static_cast<unsigned char>(130));
    samples[0] = 0;
    band->Changed();
    ASSERT_TRUE(XfnDrawAll(composite, buffer));
    EXPECT_NE(composite.GetLUT(0)[60], before) << "a newer histogram makes a new table";
}

TEST(XDMCompositeStretch, ACloneDrawsForItsOwnerAndGivesBackWhatItFound)
{
    auto band = MakeHalves();
    XDMComposite own;
    own.SetBand(band.get(), 0);
    own.SetStretchCoverage(1, 0);
    own.SetCutType(1, 0);
    own.SetStretchType(kXStretchSquareRoot, 0);
    XDMComposite clone;
    clone.CloneXDMComposite(&own);
    XBackBuffer buffer = XfnMakeSurface(90, 90);
    ASSERT_TRUE(XfnDrawAll(clone, buffer));
    own.TakeDrawResults(&clone);
    EXPECT_EQ(own.GetCutMax(0), 989.0);
    EXPECT_EQ(own.GetSubsetMax(0), 989.0);
    EXPECT_EQ(own.GetLUT(0)[51], 114);
    // what the user changed while the clone was drawn must not be overwritten
    clone.CloneXDMComposite(&own);
    own.SetCutType(0, 0);
    own.SetCutRange(1, 2, 0);
    buffer.SetWorldToCenter(150, -50);
    ASSERT_TRUE(XfnDrawAll(clone, buffer));
    own.TakeDrawResults(&clone);
    EXPECT_EQ(own.GetCutMax(0), 2.0);
    // nor what a dialog's copy brings, changed as many times as its owner was
    XDMComposite dialog;
    dialog.CloneXDMComposite(&own);
    own.SetCutRange(3, 4, 0);
    clone.CloneXDMComposite(&own);
    dialog.SetCutRange(5, 6, 0);
    own.CloneXDMComposite(&dialog);
    ASSERT_TRUE(XfnDrawAll(clone, buffer));
    own.TakeDrawResults(&clone);
    EXPECT_EQ(own.GetCutMax(0), 6.0);
    // nor points that were moved in their list
    own.SetStretchType(kXStretchPiecewise, 0);
    own.AddHistPt(0, 10, 100);
    clone.CloneXDMComposite(&own);
    ASSERT_TRUE(XfnDrawAll(clone, buffer));
    static_cast<tagXHistPt*>(own.GetHistPtsList(0)->GetHead())->value = 200;
    own.UpdateLUT(0);
    const int moved = own.GetLUT(0)[100];
    own.TakeDrawResults(&clone);
    EXPECT_EQ(own.GetLUT(0)[100], moved);
    EXPECT_NE(clone.GetLUT(0)[100], moved);
}

TEST(XDMCompositeStretch, SettingsCrossBetweenCompositesOfAnyKind)
{
    auto band = XfnMakeBand(kXUInt8, {{0, 128, 255}});
    XDMComposite rgb(1), gray(0);
    for (int ch = 0; ch < 3; ++ch) {
        rgb.SetBand(band.get(), ch);
        rgb.SetCutRange(ch * 10, 100 + ch, ch);
    }
    rgb.AddHistPt(0, 9, 8);
    rgb.SetTransparentFlag(1);
    rgb.SetAlpha(100);
    unsigned char red[256] = {};
    std::fill_n(red, 256, static_cast<unsigned char>(3));
    gray.SetCLT(red, 2);
    gray.SetBand(band.get(), 0);
    gray.CopyDisplaySettings(&rgb);
    EXPECT_EQ(gray.GetMode(), 0);
    EXPECT_EQ(gray.GetBand(0), band.get());
    EXPECT_EQ(gray.GetBand(1), nullptr);
    EXPECT_EQ(gray.GetCutMax(0), 100.0);
    EXPECT_EQ(gray.GetNumOfHistPts(0), 1);
    EXPECT_NE(gray.GetHistPtsList(0)->GetHead(), rgb.GetHistPtsList(0)->GetHead()) << "own records";
    EXPECT_EQ(gray.GetCLT(2)[9], 3) << "its colour table means nothing to the other kind";
    EXPECT_EQ(gray.GetAlpha(), 100);
    gray.SetCutRange(5, 6, 0);
    rgb.CopyDisplaySettings(&gray);
    for (int ch = 0; ch < 3; ++ch)
        EXPECT_EQ(rgb.GetCutMin(ch), 5.0) << ch;
    EXPECT_EQ(rgb.GetCLT(2)[9], 9);
}

TEST(XDMComposite, ChannelsThatAreNoneAreNeutral)
{
    XDMComposite composite(1);
    for (const int ch : {-1, 3, 1000}) {
        composite.SetBand(nullptr, ch);
        composite.SetCutRange(1, 2, ch);
        composite.AddHistPt(ch, 1, 1);
        composite.SetLUT(nullptr, ch);
        composite.SetTransparentValue(4, ch);
        EXPECT_EQ(composite.GetBand(ch), nullptr);
        EXPECT_EQ(composite.GetCutMin(ch), kXNotSet);
        EXPECT_EQ(composite.GetLUT(ch), nullptr);
        EXPECT_EQ(composite.GetNumOfHistPts(ch), 0);
        EXPECT_EQ(composite.ReadPixel(ch, 0, 0), kXNoData);
    }
    EXPECT_EQ(composite.GetNumberOfTransparentValue(), 0);
    composite.SetTransparentValue(4, 1);
    EXPECT_EQ(composite.GetNumberOfTransparentValue(), 1);
    EXPECT_EQ(composite.GetTransparentValue(0), kXNotSet);
    composite.ResetTransparentValue();
    EXPECT_EQ(composite.GetTransparentValue(1), kXNotSet);
    EXPECT_EQ(composite.GetVand(), nullptr);
    EXPECT_EQ(composite.GetHideFlagVector(), 0);
    composite.SetKernelSize(7);
    EXPECT_EQ(composite.SetKernelSize(), 7);
}

} // namespace
