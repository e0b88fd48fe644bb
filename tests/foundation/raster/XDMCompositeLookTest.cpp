#include "foundation/raster/XDMComposite.h"

#include "foundation/raster/XSpatialFilter.h"
#include "tests/support/XBandSamples.h"
#include "tests/support/XPixelGrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr std::uint32_t kBelow = 0xFF204060u;

using C = XDMComposite&;

struct tagGridCase
{
    const char* name;
    std::function<void(C)> setUp;
    std::initializer_list<const char*> picture;
};

TEST(XDMCompositeLook, NoDataAndTransparencyOfColourImages)
{
    // 255 is the null value of the band for red; the picture below shows what lies beneath as '?'
    auto blue = XfnMakeBand(kXUInt8, {{255, 0, 255, 0, 255}});
    auto green = XfnMakeBand(kXUInt8, {{255, 255, 0, 0, 255}});
    auto red = XfnMakeBand(kXUInt8, {{255, 255, 0, 0, 0}});
    const tagGridCase kCases[] = {
        {"all have data", [](C) {}, {"WYB.C"}},
        {"a null in one band leaves the colour of the others",
         [&](C) { red->SetNullValue(255); },
         {"CGB.C"}},
        {"nulls in all bands draw nothing",
         [&](C) { red->SetNullValue(0), green->SetNullValue(0), blue->SetNullValue(0); },
         {"WYB?C"}},
        {"the default value stands for what is missing",
         [&](C c) { red->SetNullValue(0), c.SetDefValue(255, 2); },
         {"WYMRW"}},
        {"a hidden channel shows its default", [](C c) { c.SetHideFlag(1, 1); }, {"MRB.B"}},
        {"a channel without a band too", [](C c) { c.SetBand(nullptr, 0); }, {"YY..G"}},
        {"transparent values as one need all of them",
         [](C c) {
             c.SetTransparentFlag(1), c.SetTransparentApplyAsOne(1), c.SetTransparentValue(255, 0),
                 c.SetTransparentValue(0, 1);
         },
         {"WY?.C"}},
        {"without the flag transparent values do nothing",
         [](C c) { c.SetTransparentValue(255, 0); },
         {"WYB.C"}},
        {"no bands at all draw nothing",
         [](C c) {
             for (int ch = 0; ch < 3; ++ch)
                 c.SetBand(nullptr, ch);
         },
         {"?????"}},
        {"alpha 0 draws nothing", [](C c) { c.SetAlpha(0); }, {"?????"}},
    };
    for (const tagGridCase& row : kCases) {
        for (XDMBandMemory* band : {blue.get(), green.get(), red.get()})
            band->SetNullValue(kXNotSet);
        XDMComposite composite(1);
        composite.SetBand(blue.get(), 0);
        composite.SetBand(green.get(), 1);
        composite.SetBand(red.get(), 2);
        row.setUp(composite);
        XBackBuffer buffer = XfnMakeSurface(5, 1, kBelow);
        EXPECT_TRUE(XfnDrawAll(composite, buffer)) << row.name;
        EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows(row.picture)) << row.name;
        composite.SetInterpolatePixel(1); // at one to one the mean is the pixel itself
        XBackBuffer smooth = XfnMakeSurface(5, 1, kBelow);
        EXPECT_TRUE(XfnDrawAll(composite, smooth)) << row.name;
        EXPECT_EQ(XfnPixelGrid(smooth.GetImage()), XfnRows(row.picture))
            << row.name << ", bilinear";
    }
}

TEST(XDMCompositeLook, OneTransparentChannelLetsItsComponentShineThrough)
{
    auto blue = XfnMakeBand(kXUInt8, {{10, 200}});
    auto green = XfnMakeBand(kXUInt8, {{20, 20}});
    XDMComposite composite(1);
    composite.SetBand(blue.get(), 0);
    composite.SetBand(green.get(), 1);
    composite.SetTransparentFlag(1);
    composite.SetTransparentValue(200, 0);
    XBackBuffer buffer = XfnMakeSurface(2, 1, 0xFFAABBCCu);
    EXPECT_TRUE(XfnDrawAll(composite, buffer));
    EXPECT_EQ(buffer.GetRow(0)[0], 0xFF00140Au);
    EXPECT_EQ(buffer.GetRow(0)[1], 0xFF0014CCu);
}

TEST(XDMCompositeLook, AlphaMixesWithWhatLiesBelowOnEveryPath)
{
    for (const int type : {kXUInt8, kXUInt16, kXFloat}) {
        for (const double angle : {0.0, 180.0}) {
            auto band = XfnMakeBand(type, 2, 2, [](int, int) { return 200; });
            XDMComposite composite;
            composite.SetBand(band.get(), 0);
            composite.SetCutRange(0, 255, 0);
            composite.SetAlpha(64);
            XBackBuffer buffer = XfnMakeSurface(2, 2, 0xFF003264u);
            buffer.SetRotationAngle(angle);
            EXPECT_TRUE(XfnDrawAll(composite, buffer));
            // (200 * 64 + below * 191) / 255 for below 0, 50, 100
            EXPECT_EQ(buffer.GetRow(1)[1], 0xFF32587Du) << type << " " << angle;
        }
    }
}

TEST(XDMCompositeLook, OddNumbersOfAFloatImage)
{
    auto band = XfnMakeBand(kXFloat, {{kNaN, kInf, -kInf, 0.0, 1.0, 0.5, -9999.0}});
    band->SetNullValue(-9999.0);
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    composite.SetCutRange(0.0, 1.0, 0);
    for (int round = 0; round < 2; ++round) {
        XBackBuffer buffer = XfnMakeSurface(7, 1, kBelow);
        EXPECT_TRUE(XfnDrawAll(composite, buffer));
        EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({"?W..W#?"})) << round;
        // away to another stretch and back: nothing stays black
        composite.SetCutRange(5.0, 5.0, 0);
        XBackBuffer constant = XfnMakeSurface(7, 1, kBelow);
        EXPECT_TRUE(XfnDrawAll(composite, constant));
        EXPECT_EQ(XfnPixelGrid(constant.GetImage()), XfnRows({"?W....?"})) << round;
        composite.SetCutRange(0.0, 1.0, 0);
    }
}

TEST(XDMCompositeLook, HistogramMatchingComesBeforeTheCut)
{
    for (const int type : {kXUInt8, kXFloat}) {
        auto band = XfnMakeBand(type, {{0, 10, 20, 30}});
        XDMComposite composite;
        composite.SetBand(band.get(), 0);
        composite.SetCutRange(100.0, 610.0, 0); // two values a level
        composite.SetHistogramMatchingCoeff(17.0, 100.0, 0);
        composite.SetHistogramMatchingFlag(1);
        XBackBuffer buffer = XfnMakeSurface(4, 1);
        EXPECT_TRUE(XfnDrawAll(composite, buffer));
        const std::uint32_t wanted[] = {0xFF000000u, 0xFF555555u, 0xFFAAAAAAu, 0xFFFFFFFFu};
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(buffer.GetRow(0)[i], wanted[i]) << type << " " << i;
        composite.SetHistogramMatchingCoeff(0.0, 355.0, 0); // one value for all
        EXPECT_TRUE(XfnDrawAll(composite, buffer));
        EXPECT_EQ(buffer.GetRow(0)[3], 0xFF808080u) << type;
    }
}

TEST(XDMCompositeLook, HueSaturationAndIntensityBecomeColours)
{
    auto hue = XfnMakeBand(kXUInt8, {{0, 85, 170, 99}});
    auto saturation = XfnMakeBand(kXUInt8, {{255, 255, 255, 0}});
    auto intensity = XfnMakeBand(kXUInt8, {{85, 85, 85, 255}});
    XDMComposite composite(2);
    composite.SetBand(hue.get(), 0);
    composite.SetBand(saturation.get(), 1);
    composite.SetBand(intensity.get(), 2);
    XBackBuffer buffer = XfnMakeSurface(4, 1, kBelow);
    EXPECT_TRUE(XfnDrawAll(composite, buffer));
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({"RGBW"}));
}

TEST(XDMCompositeLook, BilinearMeansInterpolateAndStopAtNoData)
{
    for (const int type : {kXUInt8, kXInt16, kXInt32, kXFloat, kXDouble}) {
        for (const double angle : {0.0, 180.0}) {
            auto band = XfnMakeBand(type, {{0, 100, 99, 40}, {0, 100, 99, 40}});
            band->SetNullValue(99);
            XDMComposite composite;
            composite.SetBand(band.get(), 0);
            composite.SetCutRange(0, 255, 0);
            composite.SetInterpolatePixel(1);
            XBackBuffer buffer = XfnMakeSurface(16, 8, 0xFF0000FFu, 0.25);
            buffer.SetRotationAngle(angle);
            ASSERT_TRUE(XfnDrawAll(composite, buffer));
            const auto at = [&](int x) {
                return angle == 0.0 ? buffer.GetRow(3)[x] : buffer.GetRow(4)[15 - x];
            };
            // eighths of a raster pixel from the centres: 0, then a rise of 25 a screen pixel
            const unsigned wanted[] = {0, 0, 13, 38, 63, 88, 100, 100};
            for (int x = 0; x < 8; ++x)
                EXPECT_NEAR(at(x) & 0xFFu, wanted[x], 1.0) << type << " " << angle << " " << x;
            for (int x = 8; x < 12; ++x)
                EXPECT_EQ(at(x), 0xFF0000FFu) << type << " " << x;
            EXPECT_EQ(at(12) & 0xFFu, 40u)
                << "no data must not darken its neighbour, type " << type;
        }
    }
}

TEST(XDMCompositeLook, ClassMapsAreNeverInterpolated)
{
    auto band = XfnMakeBand(kXUInt8, {{0, 200}});
    band->SetBandType(kXBandClassMap);
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    composite.SetInterpolatePixel(1);
    XBackBuffer buffer = XfnMakeSurface(8, 1, 0xFF000000u, 0.25);
    buffer.SetWorldPerPixel(0.25, 1.0);
    EXPECT_TRUE(XfnDrawAll(composite, buffer));
    for (int x = 0; x < 8; ++x)
        EXPECT_EQ(buffer.GetRow(0)[x] & 0xFFu, x < 4 ? 0u : 200u) << x;
}

TEST(XDMCompositeLook, FiltersTheDrawnLevelAndNothingElse)
{
    // a single bright pixel, and one without data
    auto band = XfnMakeBand(kXUInt8, 32, 32, [](int x, int y) {
        return x == 10 && y == 10 ? 90 : x == 20 && y == 20 ? 7 : 0;
    });
    band->SetNullValue(7.0);
    XDMComposite composite(0);
    composite.SetBand(band.get(), 0);
    composite.SetKernelSize(3);
    const auto levelAt = [](XDMComposite& shown, int x, int y) {
        XBackBuffer buffer = XfnMakeSurface(32, 32, 0xFF00FF00u);
        EXPECT_TRUE(XfnDrawAll(shown, buffer));
        return buffer.GetRow(y)[x] == 0xFF00FF00u ? -1
                                                  : static_cast<int>(buffer.GetRow(y)[x] & 0xFFu);
    };
    struct tagCase
    {
        int type, centre, beside, flat;
    };
    const tagCase cases[] = {
        {kXFilterNone, 90, 0, 0}, {kXFilterMean, 10, 10, 0}, {kXFilterMedian, 0, 0, 0}};
    for (const tagCase& c : cases) {
        composite.SetFilterType(c.type);
        EXPECT_EQ(levelAt(composite, 10, 10), c.centre) << c.type;
        EXPECT_EQ(levelAt(composite, 11, 10), c.beside) << c.type;
        EXPECT_EQ(levelAt(composite, 13, 10), c.flat) << c.type;
        EXPECT_EQ(levelAt(composite, 20, 20), -1) << c.type;
        EXPECT_EQ(composite.ReadPixel(0, 10.0, -10.0), 90.0) << "readings are the band's";
    }
    composite.SetFilterType(kXFilterMean);
    XDMComposite clone;
    clone.CloneXDMComposite(&composite);
    EXPECT_EQ(levelAt(clone, 11, 10), 10);
    band->SetNullValue(0.0);
    EXPECT_EQ(levelAt(clone, 5, 5), -1) << "another value stands for no data";
    band->SetNullValue(7.0);
    band->SetBandType(kXBandClassMap);
    EXPECT_EQ(levelAt(composite, 11, 10), 0) << "classes have no mean";
}

} // namespace
