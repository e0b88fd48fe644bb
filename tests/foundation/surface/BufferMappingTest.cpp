#include "foundation/surface/XBufferMapping.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// wide, unequal lengths, far from the origin
XBufferMapping MakeMapping()
{
    XBufferMapping mapping;
    mapping.SetSize(400, 300);
    mapping.SetWorldToCenter(500000.0, 4100000.0);
    mapping.SetWorldPerPixel(30.0, 20.0);
    mapping.SetWorldPerPixelBase(15.0, 10.0);
    return mapping;
}

std::pair<double, double> ToWorld(const XBufferMapping& mapping, double x, double y)
{
    mapping.ConvPixelToWorldCoord(x, y);
    return {x, y};
}

std::pair<double, double> ToPixel(const XBufferMapping& mapping, double x, double y)
{
    mapping.ConvWorldToPixelCoord(x, y);
    return {x, y};
}

TEST(BufferMapping, CornersAndUpwardY)
{
    const XBufferMapping mapping = MakeMapping();
    EXPECT_EQ(ToWorld(mapping, 0, 0), std::make_pair(494000.0, 4103000.0));
    EXPECT_EQ(ToWorld(mapping, 400, 300), std::make_pair(506000.0, 4097000.0));
    EXPECT_EQ(ToPixel(mapping, 494000, 4097000), std::make_pair(0.0, 300.0));
    double x = 3.0, y = -3.0;
    mapping.ConvPixelToWorldLength(x, y);
    EXPECT_EQ(std::make_pair(x, y), std::make_pair(90.0, -60.0));
    mapping.ConvWorldToPixelLength(x, y);
    EXPECT_EQ(std::make_pair(x, y), std::make_pair(3.0, -3.0));
    mapping.GetZoomFactor(x, y);
    EXPECT_EQ(std::make_pair(x, y), std::make_pair(2.0, 2.0));
}

TEST(BufferMapping, RotationTurnsThePictureCounterclockwise)
{
    XBufferMapping mapping = MakeMapping();
    mapping.SetWorldPerPixel(10.0, 10.0);
    mapping.SetRotationAngle(90.0);
    // what lay to the right now lies above
    EXPECT_EQ(ToPixel(mapping, 500100.0, 4100000.0), std::make_pair(200.0, 140.0));
    EXPECT_EQ(ToWorld(mapping, 200.0, 140.0), std::make_pair(500100.0, 4100000.0));
    mapping.SetRotationAngle(450.0);
    EXPECT_EQ(ToPixel(mapping, 500100.0, 4100000.0), std::make_pair(200.0, 140.0));
    EXPECT_EQ(mapping.GetRotationAngle(), 450.0);
}

XWarp2D Affine(double a0, double a1, double a2, double b0, double b1, double b2)
{
    XWarp2D warp;
    warp.SetAffine(a0, a1, a2, b0, b1, b2);
    return warp;
}

TEST(BufferMapping, InverseUnderRotationAndWarps)
{
    const XWarp2D shear = Affine(10.0, 1.0, 0.3, -5.0, 0.1, 2.0);
    for (const double angle : {0.0, 30.0, -90.0, 200.5, 720.0}) {
        for (const bool isBent : {false, true}) {
            XBufferMapping mapping = MakeMapping();
            mapping.SetRotationAngle(angle);
            if (isBent) mapping.SetWarpCoeff(shear, shear.InverseAffine());
            for (const auto& [x, y] :
                 {std::pair{0.0, 0.0}, {400.0, 0.0}, {17.5, 299.0}, {-1e4, 1e4}}) {
                const auto world = ToWorld(mapping, x, y);
                const auto back = ToPixel(mapping, world.first, world.second);
                EXPECT_NEAR(back.first, x, 1e-7) << angle << isBent;
                EXPECT_NEAR(back.second, y, 1e-7) << angle << isBent;
            }
            const auto middle = ToPixel(mapping, 500000.0, 4100000.0);
            EXPECT_NEAR(middle.first, 200.0, 1e-9) << "the centre left the middle";
            EXPECT_NEAR(middle.second, 150.0, 1e-9);
            // the content follows the pointer
            const auto world = ToWorld(mapping, 100.0, 50.0);
            ASSERT_TRUE(mapping.PanPixel(31, -17));
            const auto moved = ToPixel(mapping, world.first, world.second);
            EXPECT_NEAR(moved.first, 131.0, 1e-6) << angle << isBent;
            EXPECT_NEAR(moved.second, 33.0, 1e-6) << angle << isBent;
        }
    }
}

TEST(BufferMapping, HalfAPairOfWarpsIsNone)
{
    XBufferMapping mapping = MakeMapping();
    mapping.SetWarpCoeff(Affine(1.0, 2.0, 0.0, 0.0, 0.0, 2.0), XWarp2D());
    EXPECT_FALSE(mapping.GetWarpCoeffWorldToPixel().IsValid());
    EXPECT_EQ(ToWorld(mapping, 0, 0), std::make_pair(494000.0, 4103000.0));
}

TEST(BufferMapping, ZoomFit)
{
    struct tagCase
    {
        const char* name;
        double minX, minY, maxX, maxY;
        int result;
        double centreX, centreY, lengthX, lengthY;
    };
    // base 15 : 10, so x stays one and a half times y; before: centre 500000, 4100000, 30 : 20
    const tagCase cases[] = {
        {"width decides", 0, 0, 12000, 300, 1, 6000, 150, 30, 20},
        {"height decides", 0, 0, 60, 3000, 1, 30, 1500, 15, 10},
        {"no width", 5, -3000, 5, 3000, 1, 5, 0, 30, 20},
        {"no height", -6000, 7, 6000, 7, 1, 0, 7, 30, 20},
        {"a point keeps the length", 3, 4, 3, 4, 1, 3, 4, 30, 20},
        {"empty", 10, 0, 5, 8, 0, 500000, 4100000, 30, 20},
        {"running range never widened", 1.7e308, 1.7e308, -1.7e308, -1.7e308, 0, 500000, 4100000,
         30, 20},
        {"not a number", 0, kNaN, 1, 1, 0, 500000, 4100000, 30, 20},
        {"infinite", -kInf, 0, kInf, 1, 0, 500000, 4100000, 30, 20},
        {"too far", -1e300, 0, 1e300, 1, 0, 500000, 4100000, 30, 20},
    };
    for (const tagCase& row : cases) {
        XBufferMapping mapping = MakeMapping();
        EXPECT_EQ(mapping.ZoomFit(row.minX, row.minY, row.maxX, row.maxY), row.result) << row.name;
        double x = 0.0, y = 0.0;
        mapping.GetWorldToCenter(x, y);
        EXPECT_EQ(std::make_pair(x, y), std::make_pair(row.centreX, row.centreY)) << row.name;
        mapping.GetWorldPerPixel(x, y);
        EXPECT_DOUBLE_EQ(x, row.lengthX) << row.name;
        EXPECT_DOUBLE_EQ(y, row.lengthY) << row.name;
    }
    XBufferMapping none;
    EXPECT_FALSE(none.ZoomFit(0, 0, 1, 1)) << "a surface without pixels";
}

TEST(BufferMapping, FittedBoxIsSeenWholeWhenTurnedOrBent)
{
    // worldX' = worldX + worldX^2 / 2e4: fitted to samples, the inverse likewise
    double x[64], y[64], bentX[64], bentY[64];
    for (int i = 0; i < 64; ++i) {
        x[i] = 1000.0 * (i % 8) / 7.0;
        y[i] = 1000.0 * (i / 8) / 7.0;
        bentX[i] = x[i] + x[i] * y[i] / 2e4;
        bentY[i] = y[i] + x[i] * x[i] / 2e4;
    }
    XWarp2D bend, unbend;
    ASSERT_TRUE(bend.Fit(x, y, bentX, bentY, 64, 3));
    ASSERT_TRUE(unbend.Fit(bentX, bentY, x, y, 64, 3));
    for (const bool isBent : {false, true}) {
        for (const double angle : {0.0, 45.0, 110.0}) {
            XBufferMapping mapping;
            mapping.SetSize(500, 200);
            mapping.SetRotationAngle(angle);
            if (isBent) mapping.SetWarpCoeff(bend, unbend);
            ASSERT_TRUE(mapping.ZoomFit(0, 0, 1000, 600));
            double slackX = 1e9, slackY = 1e9;
            for (int i = 0; i <= 100; ++i) {
                const double t = i / 100.0;
                for (const auto& [wx, wy] : {std::pair{1000.0 * t, 0.0},
                                             {1000.0 * t, 600.0},
                                             {0.0, 600.0 * t},
                                             {1000.0, 600.0 * t}}) {
                    const auto pixel = ToPixel(mapping, wx, wy);
                    slackX = std::min({slackX, pixel.first, 500.0 - pixel.first});
                    slackY = std::min({slackY, pixel.second, 200.0 - pixel.second});
                }
            }
            // nothing is cut (bent edges are sampled, the inverse is a fit), one side touches
            EXPECT_GT(std::min(slackX, slackY), -1.5) << angle << isBent;
            EXPECT_LT(std::min(slackX, slackY), 1.5) << angle << isBent;
        }
    }
}

TEST(BufferMapping, ZoomStepsArePowersOfTwo)
{
    XBufferMapping mapping = MakeMapping();
    double x = 0.0, y = 0.0;
    mapping.ZoomIn(1.0);
    mapping.GetWorldPerPixel(x, y);
    EXPECT_EQ(std::make_pair(x, y), std::make_pair(15.0, 10.0));
    mapping.ZoomOut(2.0);
    mapping.GetWorldPerPixel(x, y);
    EXPECT_EQ(std::make_pair(x, y), std::make_pair(60.0, 40.0));
    mapping.ZoomOut(0.1);
    EXPECT_DOUBLE_EQ(mapping.GetWorldPerPixel(), 60.0 * std::exp2(0.1));
    mapping.GetWorldToCenter(x, y);
    EXPECT_EQ(x, 500000.0);
}

TEST(BufferMapping, UselessNumbersAreRefused)
{
    const XBufferMapping before = MakeMapping();
    const double bad[] = {kNaN, kInf, -kInf, 1.7e308, -1.7e308};
    XBufferMapping mapping = before;
    for (const double value : bad) {
        EXPECT_FALSE(mapping.SetWorldToCenter(value, 0.0));
        EXPECT_FALSE(mapping.SetWorldToCenter(0.0, value));
        EXPECT_FALSE(mapping.SetWorldPerPixel(value, 1.0));
        EXPECT_FALSE(mapping.SetWorldPerPixel(1.0, value));
        EXPECT_FALSE(mapping.SetWorldPerPixelBase(1.0, value));
        EXPECT_FALSE(mapping.ZoomIn(value));
        EXPECT_FALSE(mapping.ZoomOut(value));
    }
    for (const double value : {0.0, -1.0, 1e-200, 1e200}) {
        EXPECT_FALSE(mapping.SetWorldPerPixel(value, 1.0)) << value;
        EXPECT_FALSE(mapping.SetWorldPerPixelBase(value, 1.0)) << value;
    }
    EXPECT_FALSE(mapping.SetRotationAngle(kNaN));
    EXPECT_FALSE(mapping.SetRotationAngle(kInf));
    EXPECT_FALSE(mapping.SetSize(-1, 5));
    EXPECT_FALSE(mapping.SetSize(5, 40000));
    EXPECT_TRUE(mapping == before);
    // a wheel that never stops turning ends at the bounds, with a mapping that still works
    for (int i = 0; i < 3000; ++i)
        mapping.ZoomIn(1.0);
    EXPECT_TRUE(std::isfinite(ToPixel(mapping, 500000.0, 4100000.0).first));
    for (int i = 0; i < 6000; ++i)
        mapping.ZoomOut(1.0);
    EXPECT_TRUE(std::isfinite(ToWorld(mapping, 32767.0, 0.0).first));
    EXPECT_GT(mapping.GetWorldPerPixel(), 1e100);
}

TEST(BufferMapping, SameCallsGiveTheSameBits)
{
    XBufferMapping a, b;
    for (XBufferMapping* mapping : {&a, &b}) {
        mapping->SetSize(333, 222);
        mapping->ZoomFit(126.1, 33.9, 129.7, 38.6);
        mapping->SetRotationAngle(33.3);
        for (int i = 0; i < 100; ++i) {
            mapping->ZoomIn(0.1);
            mapping->PanPixel(i % 7 - 3, i % 5 - 2);
            mapping->ZoomOut(0.1);
        }
    }
    EXPECT_TRUE(a == b);
    a.PanPixel(1, 0);
    EXPECT_FALSE(a == b);
}

} // namespace
