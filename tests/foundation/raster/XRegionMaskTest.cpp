#include "foundation/raster/XRegionMask.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<std::string> PictureOf(const XRegionMask& mask, int width, int height)
{
    std::vector<std::string> picture(static_cast<std::size_t>(height),
                                     std::string(static_cast<std::size_t>(width), '.'));
    for (const tagXRowSpan& span : mask.GetSpans())
        for (int x = span.x0; x < span.x1; ++x)
            picture[static_cast<std::size_t>(span.y)][static_cast<std::size_t>(x)] = '#';
    return picture;
}

struct tagShape
{
    const char* name;
    int isPolygon;
    std::vector<double> xs, ys;
    std::vector<std::string> picture;
};

// clang-format off
const tagShape kShapes[] = {
    {"a centre on the left or upper edge is in, on the right or lower one out",
     1, {0, 2, 2, 0}, {0, 0, 2, 2},             {"##....", "##....", "......", "......"}},
    {"beyond every side", 1, {-9, 90, 90, -9}, {-9, -9, 90, 90}, {"######", "######", "######", "######"}},
    {"parts that cross cancel out",
     1, {-0.5, 5.5, -0.5, 5.5}, {-0.5, 3.5, 3.5, -0.5}, {".####.", "..##..", "..##..", ".####."}},
    {"a hole is a ring joined by a bridge",
     1, {-.5, 5.5, 5.5, -.5, -.5, 1.5, 1.5, 3.5, 3.5, -.5}, {-.5, -.5, 3.5, 3.5, .5, .5, 2.5, 2.5, .5, .5},
                                                {"######", "##..##", "##..##", "######"}},
    {"smaller than a pixel", 1, {0.2, 0.8, 0.5}, {0.2, 0.2, 0.8}, {"......", "......", "......", "......"}},
    {"outside", 1, {-9, -5, -7}, {0, 0, 3},     {"......", "......", "......", "......"}},
    {"a flat line has one pixel a column", 0, {0, 5}, {0, 2}, {"##....", "..##..", "....##", "......"}},
    {"a steep one has one a row", 0, {4, 3}, {3, 0}, {"...#..", "...#..", "....#.", "....#."}},
    {"from outside to outside", 0, {-100, 100}, {1, 1}, {"......", "######", "......", "......"}},
    {"a single vertex", 0, {2.4}, {1.6},        {"......", "......", "..#...", "......"}},
    {"to and fro counts once", 0, {0, 3, 0}, {1, 1, 1}, {"......", "####..", "......", "......"}},
};
// clang-format on

} // namespace

TEST(XRegionMask, HoldsThePixelsUnderAShape)
{
    for (const tagShape& shape : kShapes) {
        SCOPED_TRACE(shape.name);
        const int n = static_cast<int>(shape.xs.size());
        XRegionMask mask;
        ASSERT_TRUE(shape.isPolygon ? mask.SetPolygon(shape.xs.data(), shape.ys.data(), n, 6, 4)
                                    : mask.SetPolyline(shape.xs.data(), shape.ys.data(), n, 6, 4));
        EXPECT_EQ(PictureOf(mask, 6, 4), shape.picture);
        long long pixels = 0;
        for (const std::string& row : shape.picture)
            pixels += std::count(row.begin(), row.end(), '#');
        EXPECT_EQ(mask.GetPixelCount(), pixels);
    }
    XRegionMask mask;
    for (const double bad : {kNaN, HUGE_VAL, 1e16}) {
        const double xs[] = {0, 5, bad}, ys[] = {0, 0, 3};
        EXPECT_FALSE(mask.SetPolygon(xs, ys, 3, 6, 4));
        EXPECT_FALSE(mask.SetPolyline(ys, xs, 3, 6, 4));
        EXPECT_TRUE(mask.IsEmpty());
    }
}

TEST(XRegionMask, NeighboursShareNoPixelAndLeaveNone)
{
    for (int width = 1; width < 100; ++width) {
        for (int height = 1; height < 100; ++height) {
            const double w = width, h = height;
            const double xs[2][3] = {{0, w, w}, {0, w, 0}}, ys[2][3] = {{0, 0, h}, {0, h, h}};
            XRegionMask halves[2];
            for (const int i : {0, 1})
                ASSERT_TRUE(halves[i].SetPolygon(xs[i], ys[i], 3, 100, 100));
            EXPECT_EQ(halves[0].GetPixelCount() + halves[1].GetPixelCount(), width * height)
                << width << " x " << height;
        }
    }
}

TEST(XRegionMask, AgreesWithAPointByPointTest)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> place(-20.0, 90.0);
    for (int round = 0; round < 40; ++round) {
        std::vector<double> xs, ys;
        for (int i = 0; i < 3 + round % 9; ++i) {
            xs.push_back(place(random));
            ys.push_back(place(random));
        }
        const int n = static_cast<int>(xs.size());
        XRegionMask mask;
        ASSERT_TRUE(mask.SetPolygon(xs.data(), ys.data(), n, 71, 53));
        const auto picture = PictureOf(mask, 71, 53);
        for (int y = 0; y < 53; ++y) {
            for (int x = 0; x < 71; ++x) {
                bool isInside = false;
                for (int i = 0, j = n - 1; i < n; j = i++) {
                    const bool crosses = (ys[i] <= y) != (ys[j] <= y);
                    if (crosses && x >= xs[i] + (y - ys[i]) / (ys[j] - ys[i]) * (xs[j] - xs[i]))
                        isInside = !isInside;
                }
                ASSERT_EQ(picture[y][x] == '#', isInside) << round << ": " << x << ", " << y;
            }
        }
        std::vector<tagXRowSpan> cut;
        mask.ListSpans(10, 20, 30, 40, cut);
        long long pixels = 0, wanted = 0;
        for (const tagXRowSpan& span : cut)
            pixels += span.x1 - span.x0;
        for (int y = 20; y < 40; ++y)
            wanted += std::count(picture[y].begin() + 10, picture[y].begin() + 30, '#');
        EXPECT_EQ(pixels, wanted);
    }
}
