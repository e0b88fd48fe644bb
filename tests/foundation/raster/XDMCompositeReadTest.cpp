#include "foundation/raster/XDMComposite.h"

#include "foundation/platform/XThread.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

/// 300 x 280 pixels of 2 x 5 world units; value x + 1000 y, pixel (7, 9) null.
std::unique_ptr<XDMBandMemory> MakeSlope()
{
    auto band = XfnMakeBand(kXInt32, 300, 280,
                            [](int x, int y) { return x == 7 && y == 9 ? -1 : x + 1000 * y; });
    band->SetNullValue(-1);
    XBandGeometry geometry;
    geometry.SetNorthUp(100.0, 900.0, 2.0, 5.0);
    band->SetGeometry(geometry);
    return band;
}

TEST(XDMCompositeRead, PixelsUnderAPosition)
{
    auto band = MakeSlope();
    auto complex = XfnMakeBand(kXFloatComplex, 2, 2, [](int, int) { return 1; });
    auto odd = XfnMakeBand(kXDouble, {{kNaN, kInf, 3.5}});
    XDMComposite composite(1);
    composite.SetBand(band.get(), 0);
    composite.SetBand(complex.get(), 1);
    composite.SetBand(odd.get(), 2);
    const struct
    {
        const char* name;
        int ch;
        double x, y, wanted;
    } kCases[] = {
        {"the centre of the first pixel", 0, 100, 900, 0},
        {"just inside its far edge", 0, 100.999, 897.501, 0},
        {"just beyond", 0, 101.001, 897.499, 1001},
        {"half a pixel outside the centre is still inside", 0, 99.001, 902.499, 0},
        {"outside on the left", 0, 98.999, 900, kXNoData},
        {"the last pixel, in another tile", 0, 698, -495, 279299},
        {"beyond it", 0, 699.001, -495, kXNoData},
        {"a null pixel", 0, 114, 855, kXNoData},
        {"not a number", 0, kNaN, 900, kXNoData},
        {"far outside", 0, 1e300, -1e300, kXNoData},
        {"a complex band", 1, 0, 0, kXNoData},
        {"a NaN sample", 2, 0, 0, kXNoData},
        {"an infinite one is a value", 2, 1, 0, kInf},
        {"a plain one", 2, 2, 0, 3.5},
    };
    for (const auto& row : kCases)
        EXPECT_EQ(composite.ReadPixel(row.ch, row.x, row.y), row.wanted) << row.name;
}

TEST(XDMCompositeRead, NullValuesAreThoseThatTheTypeHolds)
{
    for (const double null : {1e20, -9999.9, 0.1, -3.40282e38, -3.40282347e38, -kInf}) {
        SCOPED_TRACE(null);
        auto band = XfnMakeBand(kXFloat, {{null, 2}});
        band->SetNullValue(null);
        XDMComposite composite;
        composite.SetBand(band.get(), 0);
        EXPECT_EQ(composite.ReadPixel(0, 0, 0), kXNoData);
        double out[2];
        ASSERT_TRUE(composite.ReadLine(0, 0, 0, 1, 0, out, 2));
        EXPECT_EQ(out[0], kXNoData);
        EXPECT_EQ(out[1], 2.0);
        const double xs[] = {-0.4, 1.4, 1.4, -0.4}, ys[] = {0.4, 0.4, -0.4, -0.4};
        ASSERT_TRUE(composite.ReadROI(0, xs, ys, 4, out, 2, 1, nullptr));
        EXPECT_EQ(out[0], kXNoData);
        EXPECT_EQ(out[1], 2.0);
        XBackBuffer buffer = XfnMakeSurface(2, 1, 0xFF123456u);
        ASSERT_TRUE(XfnDrawAll(composite, buffer));
        EXPECT_EQ(buffer.GetRow(0)[0], 0xFF123456u);
    }
}

TEST(XDMCompositeRead, LinesRunFromFirstToLastPoint)
{
    auto band = MakeSlope();
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    EXPECT_EQ(composite.CalcLineSizeMax(0, 100, 900, 108, 880), 5); // 4 columns, 4 rows
    EXPECT_EQ(composite.CalcLineSizeMax(0, 100, 900, 100, 900), 1);
    EXPECT_EQ(composite.CalcLineSizeMax(0, 108, 880, 100, 900), 5);
    EXPECT_EQ(composite.CalcLineSizeMax(0, kNaN, 900, 108, 880), 0);
    EXPECT_EQ(composite.CalcLineSizeMax(0, 0, 0, 1e300, 0), 0);
    EXPECT_EQ(composite.CalcLineSizeMax(1, 100, 900, 108, 880), 0);
    double out[5];
    ASSERT_TRUE(composite.ReadLine(0, 100, 900, 108, 880, out, 5));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(out[i], 1001.0 * i);
    ASSERT_TRUE(composite.ReadLine(0, 112, 855, 116, 855, out, 3));
    EXPECT_EQ(out[0], 9006.0);
    EXPECT_EQ(out[1], kXNoData) << "the null pixel is a gap";
    EXPECT_EQ(out[2], 9008.0);
    ASSERT_TRUE(composite.ReadLine(0, 96, 900, 100, 900, out, 3));
    EXPECT_EQ(out[0], kXNoData) << "outside is a gap";
    EXPECT_EQ(out[2], 0.0);
    ASSERT_TRUE(composite.ReadLine(0, 104, 900, 0, 0, out, 1));
    EXPECT_EQ(out[0], 2.0);
    EXPECT_FALSE(composite.ReadLine(0, 100, 900, 108, 880, out, 0));
    EXPECT_FALSE(composite.ReadLine(0, 100, 900, 108, 880, nullptr, 5));
    EXPECT_FALSE(composite.ReadLine(0, 100, kInf, 108, 880, out, 5));
    EXPECT_FALSE(composite.ReadLine(2, 100, 900, 108, 880, out, 5));
}

TEST(XDMCompositeRead, RegionsHoldThePixelsWhoseCentresLieInside)
{
    auto band = XfnMakeBand(kXUInt8, 6, 5, [](int x, int y) { return 10 * y + x; });
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    const double no = kXNoData;
    const struct
    {
        const char* name;
        std::vector<double> xs, rows; // rows count downwards
        int width;
        std::vector<double> wanted;
    } kCases[] = {
        {"a box between centres",
         {0.6, 3.4, 3.4, 0.6},
         {0.6, 0.6, 2.4, 2.4},
         3,
         {11, 12, 13, 21, 22, 23}},
        {"a triangle",
         {0, 3, 0},
         {-0.2, -0.2, 2.9},
         4,
         {0, 1, 2, no, 10, 11, no, no, 20, no, no, no, no, no, no, no}},
        {"reaching out of the image", {4, 50, 50, 4}, {3, 3, 50, 50}, 2, {34, 35, 44, 45}},
        {"a bow tie has a hole at its crossing",
         {0, 4, 0, 4},
         {0, 0, 4, 4},
         5,
         {0,  1,  2,  3,  no, no, 11, 12, no, no, no, no, no,
          no, no, no, 31, 32, no, no, no, no, no, no, no}},
        {"between centres there is nothing", {1.1, 1.4, 1.4}, {1.1, 1.1, 1.4}, 1, {no}},
    };
    for (const auto& row : kCases) {
        std::vector<double> ys;
        for (const double y : row.rows)
            ys.push_back(-y);
        const int n = static_cast<int>(ys.size());
        int width = -1, height = -1;
        composite.CalcROISizeMax(0, row.xs.data(), ys.data(), n, width, height);
        ASSERT_EQ(width, row.width) << row.name;
        ASSERT_EQ(width * height, static_cast<int>(row.wanted.size())) << row.name;
        std::vector<double> out(row.wanted.size(), 1.0);
        ASSERT_TRUE(
            composite.ReadROI(0, row.xs.data(), ys.data(), n, out.data(), width, height, nullptr));
        EXPECT_EQ(out, row.wanted) << row.name;
        EXPECT_FALSE(composite.ReadROI(0, row.xs.data(), ys.data(), n, out.data(), width + 1,
                                       height, nullptr));
    }
    const double all[] = {-0.5, 5.5, 5.5, -0.5}, rows[] = {0.5, 0.5, -4.5, -4.5};
    std::vector<double> out(30);
    XThread thread;
    ASSERT_TRUE(composite.ReadROI(0, all, rows, 4, out.data(), 6, 5, &thread));
    EXPECT_EQ(thread.GetStatus(), kXThreadPercent);
    const double away[] = {100, 110, 110}, bad[] = {0, kNaN, 1}, ys[] = {0, 0, -3};
    int width = -1, height = -1;
    for (const double* xs : {away, bad}) {
        composite.CalcROISizeMax(0, xs, ys, 3, width, height);
        EXPECT_TRUE(width == 0 && height == 0);
    }
}

TEST(XDMCompositeGeometry, BoundsAndConversionsThroughAnyWarp)
{
    auto band = MakeSlope();
    auto turned = XfnMakeBand(kXUInt8, 40, 30, [](int, int) { return 1; });
    XBandGeometry geometry;
    XString message;
    ASSERT_TRUE(geometry.SetTransform({1000.0, 3.0, 1.0, 2000.0, 1.0, -2.0}, 40, 30, message));
    turned->SetGeometry(geometry);
    XDMComposite composite(1);
    EXPECT_EQ(XfnBoundsOf(composite)[0], 0.0);
    EXPECT_FALSE(composite.IsBoundValid());
    composite.SetBand(band.get(), 0);
    EXPECT_EQ(XfnBoundsOf(composite), (XBounds{100, 698, -495, 900}));
    composite.SetBand(turned.get(), 2);
    const XBounds both = XfnBoundsOf(composite);
    EXPECT_EQ(both[0], 100.0);
    EXPECT_NEAR(both[1], 1000 + 3 * 39.5 + 29.5, 1e-9);
    EXPECT_NEAR(both[3], 2000 + 39.5 - 1, 1e-9);

    std::array<int, 4> p{};
    XBounds w{};
    ASSERT_TRUE(composite.ConvWorldToPixelRange(104, 110, 875, 890, p[0], p[1], p[2], p[3], 0));
    EXPECT_EQ(p, (std::array{2, 5, 2, 5}));
    ASSERT_TRUE(composite.ConvPixelToWorldRange(2, 5, 2, 5, w[0], w[1], w[2], w[3], 0));
    EXPECT_EQ(w, (XBounds{104, 110, 875, 890}));
    EXPECT_FALSE(composite.ConvWorldToPixelRange(kNaN, 110, 875, 890, p[0], p[1], p[2], p[3], 0));
    EXPECT_FALSE(composite.ConvWorldToPixelRange(104, 110, 875, 890, p[0], p[1], p[2], p[3], 1));

    auto narrow = XfnMakeBand(kXUInt8, 1, 9, [](int, int) { return 1; });
    XDMComposite thin;
    thin.SetBand(narrow.get(), 0);
    EXPECT_EQ(XfnBoundsOf(thin), (XBounds{-0.5, 0.5, -8, 0}));
}

TEST(XDMCompositeGeometry, AWarpThatIsSetFindsItsInverse)
{
    auto band = XfnMakeBand(kXUInt8, 500, 400, [](int x, int y) { return (x + y) % 256; });
    XBandGeometry geometry;
    geometry.SetNorthUp(3e5, 4e6, 2.0, 2.0);
    band->SetGeometry(geometry);
    // the band's own geometry, bent by some pixels
    std::vector<double> wx, wy, px, py;
    for (int j = 0; j <= 6; ++j) {
        for (int i = 0; i <= 6; ++i) {
            const double u = i / 6.0, v = j / 6.0;
            wx.push_back(3e5 + 1000 * u);
            wy.push_back(4e6 - 800 * v);
            px.push_back(500 * u + 8 * u * v - 5 * v * v);
            py.push_back(400 * v + 6 * u * u - 4 * u * u * v);
        }
    }
    XWarp2D warp;
    ASSERT_TRUE(warp.Fit(wx.data(), wy.data(), px.data(), py.data(), 49, 3));
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    composite.SetWarpCoeff(warp, 0);
    ASSERT_TRUE(composite.GetWarpCoeffInv(0).IsValid());
    for (const double u : {0.0, 123.0, 499.0}) {
        for (const double v : {0.0, 77.0, 399.0}) {
            double x = u, y = v;
            composite.ConvPixelToWorldCoord(x, y, 0);
            composite.ConvWorldToPixelCoord(x, y, 0);
            EXPECT_NEAR(x, u, 0.01); // a cubic is not the exact inverse of a cubic
            EXPECT_NEAR(y, v, 0.01);
        }
    }
    double x = 3e5 + 500.0, y = 4e6 - 400.0;
    composite.ConvWorldToPixelCoord(x, y, 0);
    EXPECT_GT(std::fabs(x - 250.0), 0.5);
    for (const int isPixelBase : {0, 1, 0}) { // which puts the warp aside and brings it back
        composite.SetPixelBaseMode(isPixelBase);
        double u = isPixelBase ? x : 3e5 + 500.0, v = isPixelBase ? -y : 4e6 - 400.0;
        composite.ConvWorldToPixelCoord(u, v, 0);
        EXPECT_NEAR(u, x, 1e-9);
        EXPECT_NEAR(v, y, 1e-9);
    }
    XWarp2D broken;
    composite.SetWarpCoeff(broken, 0);
    XBackBuffer buffer = XfnMakeSurface(20, 20);
    XfnDrawAll(composite, buffer);
    EXPECT_EQ(composite.ReadPixel(0, 3e5, 4e6), kXNoData);
}

TEST(XDMCompositeGeometry, AWarpIntoAnotherWorldFindsItsInverse)
{
    struct tagWorld
    {
        double x, y, width, height;
    };
    // degrees, a far zone, feet: none has to do with the band's own metres
    const tagWorld worlds[] = {
        {-35.5, -8.1, 0.09, -0.08}, {9.9e6, -1.2e7, 9000.0, -7000.0}, {1e6, 1.3e7, 3280.0, 2600.0}};
    for (const tagWorld& world : worlds) {
        auto band = XfnMakeBand(kXUInt8, 500, 400, [](int x, int y) { return (x + y) % 256; });
        XBandGeometry geometry;
        geometry.SetNorthUp(3e5, 9.1e6, 20.0, 20.0);
        band->SetGeometry(geometry);
        std::vector<double> wx, wy, px, py;
        for (int k = 0; k < 49; ++k) {
            const double u = (k % 7) / 6.0, v = (k / 7) / 6.0;
            wx.push_back(world.x + world.width * (u + 0.02 * v * v));
            wy.push_back(world.y + world.height * (v - 0.02 * u * v));
            px.push_back(499 * u);
            py.push_back(399 * v);
        }
        XWarp2D warp;
        ASSERT_TRUE(warp.Fit(wx.data(), wy.data(), px.data(), py.data(), 49, 3));
        XDMComposite composite;
        composite.SetBand(band.get(), 0);
        composite.SetWarpCoeff(warp, 0);
        ASSERT_TRUE(composite.GetWarpCoeffInv(0).IsValid()) << world.x;
        ASSERT_TRUE(composite.IsBoundValid());
        const XBounds bounds = XfnBoundsOf(composite);
        EXPECT_NEAR(bounds[0], world.x, 0.001 * world.width);
        EXPECT_NEAR(bounds[1], world.x + 1.02 * world.width, 0.001 * world.width);
    }
}

} // namespace
