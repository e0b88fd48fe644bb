#include "foundation/raster/XBandGeometry.h"
#include "foundation/base/XSentinels.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <set>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kWidth = 40;
constexpr int kHeight = 30;

void ExpectRoundTrip(const XBandGeometry& geometry, double tolerance)
{
    for (const double x : {-0.5, 0.0, 13.25, kWidth - 0.5}) {
        for (const double y : {-0.5, 0.0, 17.5, kHeight - 0.5}) {
            double u = x, v = y;
            geometry.GetPixelToWorld().Warp(u, v);
            geometry.GetWorldToPixel().Warp(u, v);
            EXPECT_NEAR(u, x, tolerance);
            EXPECT_NEAR(v, y, tolerance);
        }
    }
}

std::vector<tagXGCP> Points(int across, int down, double bend)
{
    std::vector<tagXGCP> points;
    for (int j = 0; j < down; ++j) {
        for (int i = 0; i < across; ++i) {
            const double x = kWidth * (i + 0.5) / across;
            const double y = kHeight * (j + 0.5) / down;
            points.push_back(
                {"", x, y, 5e5 + 30 * x + 2 * y + bend * x * y, 4e6 + x - 29 * y, 0.0});
        }
    }
    return points;
}

/// The points without those that are out of use.
std::vector<tagXGCP> InUse(std::vector<tagXGCP> points, std::set<std::size_t> used)
{
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i].use = used.count(i) != 0;
    return points;
}

struct tagTransform
{
    const char* name;
    double t[6];
    int isUsed;
    int isNorthUp;
    double ulX, ulY, xPixelSize, yPixelSize;
};

const tagTransform kTransforms[] = {
    {"the centre of the upper-left pixel", {100, 4, 0, 900, 0, -2}, 1, 1, 102, 899, 4, 2},
    {"south-up keeps the northern edge", {100, 4, 0, 900, 0, 2}, 1, 0, 102, 901 + 2 * 29, 4, 2},
    {"east-west mirrored", {100, -4, 0, 900, 0, -2}, 1, 0, 98 - 4 * 39, 899, 4, 2},
    {"rotated", {1000, 3, 4, 2000, 4, -3}, 1, 0, 1003.5, 2000.5, 5, 5},
    {"a pixel size of NaN", {100, kNaN, 0, 900, 0, -2}, 0, 1, 0, 0, 1, 1},
    {"an origin of infinity", {HUGE_VAL, 4, 0, 900, 0, -2}, 0, 1, 0, 0, 1, 1},
    {"pixel sizes of zero", {100, 0, 0, 900, 0, 0}, 0, 1, 0, 0, 1, 1},
    {"one pixel size of zero", {100, 4, 0, 900, 0, 0}, 0, 1, 0, 0, 1, 1},
    {"a transform without inverse", {100, 1, 2, 900, 2, 4}, 0, 1, 0, 0, 1, 1},
    {"a size too small to invert", {100, 1e-310, 0, 900, 0, -1e-310}, 0, 1, 0, 0, 1, 1},
};

} // namespace

TEST(XBandGeometry, TakesTransforms)
{
    for (const tagTransform& c : kTransforms) {
        SCOPED_TRACE(c.name);
        XBandGeometry geometry;
        XString message;
        EXPECT_EQ(geometry.SetTransform(c.t, kWidth, kHeight, message), c.isUsed);
        EXPECT_EQ(message.IsEmpty(), c.isUsed);
        EXPECT_EQ(geometry.IsGeoreferenced(), c.isUsed);
        EXPECT_EQ(geometry.IsNorthUp(), c.isNorthUp);
        EXPECT_DOUBLE_EQ(geometry.GetULX(), c.ulX);
        EXPECT_DOUBLE_EQ(geometry.GetULY(), c.ulY);
        EXPECT_DOUBLE_EQ(geometry.GetXPixelSize(), c.xPixelSize);
        EXPECT_DOUBLE_EQ(geometry.GetYPixelSize(), c.yPixelSize);
        ExpectRoundTrip(geometry, 1e-9);
        if (!c.isUsed) continue;
        double x = 3.0, y = 7.0; // the centre of a pixel half a pixel inside its corner
        geometry.GetPixelToWorld().Warp(x, y);
        EXPECT_NEAR(x, c.t[0] + 3.5 * c.t[1] + 7.5 * c.t[2], 1e-9);
        EXPECT_NEAR(y, c.t[3] + 3.5 * c.t[4] + 7.5 * c.t[5], 1e-9);
    }
}

TEST(XBandGeometry, FitsControlPoints)
{
    const struct
    {
        const char* name;
        std::vector<tagXGCP> points;
        int order; // 0: refused
    } cases[] = {
        {"none", {}, 0},
        {"two", Points(2, 1, 0), 0},
        {"three in a row", Points(3, 1, 0), 0},
        {"four corners", Points(2, 2, 0), 1},
        {"nine bend once", Points(3, 3, 0.01), 2},
        {"sixteen bend twice", Points(4, 4, 0.01), 3},
        {"three in use of many", InUse(Points(4, 4, 0), {0, 3, 12}), 1},
        {"a strong bend, whose inverse is no polynomial", Points(4, 4, 0.15), 3},
        {"sixteen on three lines determine no cubic", Points(6, 3, 0.01), 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        XBandGeometry geometry;
        XString message;
        EXPECT_EQ(geometry.SetControlPoints(c.points, kWidth, kHeight, message), c.order > 0);
        EXPECT_EQ(message.IsEmpty(), c.order > 0);
        if (c.order == 0) {
            EXPECT_FALSE(geometry.IsGeoreferenced());
            continue;
        }
        EXPECT_EQ(geometry.GetPixelToWorld().GetOrder(), c.order);
        for (const tagXGCP& p : c.points) {
            double x = p.pixelX, y = p.pixelY;
            geometry.GetPixelToWorld().Warp(x, y);
            EXPECT_NEAR(x, p.worldX, 1e-6);
            EXPECT_NEAR(y, p.worldY, 1e-6);
        }
        ExpectRoundTrip(geometry, 1e-6);
        EXPECT_NEAR(geometry.GetXPixelSize(), std::hypot(30, 1), 0.1);
    }
}

TEST(XBandGeometry, BoxesSpanCentresOrAreas)
{
    XBandGeometry geometry;
    std::array<double, 4> box{}; // left, right, bottom, top
    geometry.GetBoundRect(kWidth, kHeight, box[0], box[1], box[2], box[3]);
    EXPECT_EQ(box, (std::array{0.0, 39.0, -29.0, 0.0})) << "world y is minus the row";
    geometry.GetOuterBox(kWidth, kHeight, box[0], box[1], box[2], box[3]);
    EXPECT_EQ(box, (std::array{-0.5, 39.5, -29.5, 0.5}));
    geometry.GetBoundRect(1, kHeight, box[0], box[1], box[2], box[3]);
    EXPECT_EQ(box, (std::array{-0.5, 0.5, -29.0, 0.0})) << "a column alone still has a width";
    XString message;
    const double rotated[6] = {0, 3, 4, 0, 4, -3};
    ASSERT_TRUE(geometry.SetTransform(rotated, kWidth, kHeight, message));
    geometry.GetOuterBox(kWidth, kHeight, box[0], box[1], box[2], box[3]);
    const std::array wanted{0.0, 3.0 * 40 + 4 * 30, -3.0 * 30, 4.0 * 40};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(box[i], wanted[i], 1e-9) << i;
    EXPECT_FALSE(geometry.SetNorthUp(0, 0, -1, 1));
    EXPECT_FALSE(geometry.SetNorthUp(kXNotSet, 0, 1, 1));
    EXPECT_FALSE(geometry.IsNorthUp());
}
