#include "foundation/raster/XStretchLUT.h"

#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMCompositeChannel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace {

struct tagTable
{
    unsigned char lut[256];
    long long out[256];
};

tagTable Stretch(int type, int low, int high, const long long* histogram,
                 std::initializer_list<tagXHistPt> points = {})
{
    tagXCompositeChannel owner;
    for (const tagXHistPt& point : points)
        owner.InsertPoint(point);
    tagTable table;
    XfnStretchLUT(type, table.lut, static_cast<unsigned char>(low),
                  static_cast<unsigned char>(high),
                  type == kXStretchPiecewise ? &owner.points : nullptr, histogram, table.out);
    return table;
}

TEST(XStretchLUT, CurvesAtKnownPlaces)
{
    const struct
    {
        const char* name;
        int type, low, high, at, wanted;
    } kCases[] = {
        {"linear is the identity", 1, 0, 255, 77, 77},
        {"linear between intensities", 1, 50, 150, 51, 70},
        {"linear falling", 1, 200, 0, 51, 160},
        {"logarithm", 3, 0, 255, 15, 128},     // ln 16 / ln 256 is a half
        {"inverse square", 4, 0, 255, 51, 10}, // 0.04 * 255
        {"square root", 7, 0, 255, 51, 114},   // sqrt 0.2
        {"an unknown type is linear", 0, 0, 255, 9, 9},
        {"and so is a negative one", -5, 0, 255, 9, 9},
        {"equalization without a histogram is linear", 5, 0, 255, 100, 100},
        {"Gaussian without a histogram is linear", 6, 0, 255, 100, 100},
    };
    for (const auto& row : kCases) {
        const tagTable table = Stretch(row.type, row.low, row.high, nullptr);
        EXPECT_EQ(table.lut[row.at], row.wanted) << row.name;
        EXPECT_EQ(table.lut[0], row.low) << row.name;
        EXPECT_EQ(table.lut[255], row.high) << row.name;
    }
}

TEST(XStretchLUT, MonotoneTypesKeepTheOrderAndEveryPixel)
{
    long long histogram[256];
    std::mt19937 random(3);
    for (long long& count : histogram)
        count = random() % 4 ? random() % 1000 : 0;
    histogram[0] = 1000000; // a border of zeros must not swallow the range
    const long long total = std::accumulate(histogram, histogram + 256, 0LL);
    for (const int type : {1, 3, 4, 5, 6, 7}) {
        const tagTable table = Stretch(type, 10, 240, histogram);
        EXPECT_EQ(table.lut[0], 10) << type;
        EXPECT_EQ(table.lut[255], 240) << type;
        for (int i = 1; i < 256; ++i)
            ASSERT_GE(table.lut[i], table.lut[i - 1]) << type << " " << i;
        EXPECT_EQ(std::accumulate(table.out, table.out + 256, 0LL), total) << type;
    }
}

TEST(XStretchLUT, EqualizationAndGaussianShapeTheHistogram)
{
    long long histogram[256] = {};
    for (int i = 100; i < 150; ++i)
        histogram[i] = 10; // 50 equal bins in a narrow band
    const tagTable flat = Stretch(5, 0, 255, histogram);
    EXPECT_EQ(flat.lut[99], 0);
    EXPECT_EQ(flat.lut[124], 128); // half of the mass: 25 of 50 bins
    EXPECT_EQ(flat.lut[149], 255);
    const tagTable bell = Stretch(6, 0, 255, histogram);
    EXPECT_EQ(bell.lut[124], 128); // the median stands in the middle
    // shares of 16 and 84 per cent stand a deviation from it: 42.5 levels
    EXPECT_NEAR(bell.lut[107], 85, 1);
    EXPECT_NEAR(bell.lut[141], 170, 1);
    long long single[256] = {};
    single[0] = 5;
    for (const int type : {5, 6})
        EXPECT_EQ(Stretch(type, 0, 255, single).lut[90], 90) << type;
    long long even[256];
    std::fill_n(even, 256, 7);
    EXPECT_NE(Stretch(6, 0, 255, even).lut[64], 64) << "an even histogram is still shaped";
    long long negative[256] = {};
    negative[10] = -5;
    negative[20] = 5;
    EXPECT_EQ(Stretch(5, 0, 255, negative).lut[15], 0);
}

TEST(XStretchLUT, PiecewiseRunsThroughItsPoints)
{
    const struct
    {
        const char* name;
        std::initializer_list<tagXHistPt> points;
        int at, wanted;
    } kCases[] = {
        {"no point is linear between the intensities", {}, 51, 67},
        {"through a point", {{100, 200}}, 100, 200},
        {"up to it from the low intensity", {{100, 200}}, 50, 110},
        {"from it to the high intensity", {{100, 200}}, 255, 255},
        {"a point at 0 replaces the low intensity", {{0, 99}}, 0, 99},
        {"a point at 255 replaces the high one", {{255, 7}}, 255, 7},
        {"a step of one", {{100, 0}, {101, 255}}, 101, 255},
        {"points given in any order", {{200, 50}, {100, 50}}, 150, 50},
        {"the last of two at one place counts", {{100, 1}, {100, 50}}, 100, 50},
    };
    for (const auto& row : kCases)
        EXPECT_EQ(Stretch(2, 20, 255, nullptr, row.points).lut[row.at], row.wanted) << row.name;
}

struct tagCutCase
{
    const char* name;
    double min, max, cutMin, cutMax;
    int result;
    int bin; // to look at
    long long wanted;
};

TEST(XApplyCut, BinsMoveAsTheEngineSays)
{
    long long source[256];
    for (int i = 0; i < 256; ++i)
        source[i] = i + 1;
    const long long below50 = 50 * 51 / 2;
    const tagCutCase kCases[] = {
        {"a cut that covers the band copies", 0, 255, 0, 255, 1, 200, 201},
        {"so does a wider one", 0, 255, -10, 300, 1, 255, 256},
        {"bins below go to the first", 0, 255, 50, 255, 1, 0, below50 + 51},
        {"bins above without the very last go to the last", 0, 255, 0, 253, 1, 255, 254 + 255},
        {"an end at bin 254 adds nothing", 0, 255, 0, 254, 1, 255, 255},
        {"a cut within one bin", 0, 255, 50.2, 50.7, 1, 0, below50 + 51},
        {"and what lies above it", 0, 255, 50.2, 50.7, 1, 255, 255 * 256 / 2 - 51 * 52 / 2},
        {"truncation, not rounding", 0, 255, 50.9, 255, 1, 0, below50 + 51},
        {"upside down", 0, 255, 200, 100, 0, 0, -1},
        {"a constant band", 7, 7, 0, 255, 0, 0, -1},
        {"a sentinel", 0, kXNotSet, 0, 255, 0, 0, -1},
        {"the other sentinel", 0, 255, kXNoData, 255, 0, 0, -1},
        {"not a number", 0, 255, std::nan(""), 255, 0, 0, -1},
        {"a band far below the cut", 0, 255, 1e300, 1.1e300, 0, 0, -1},
    };
    for (const tagCutCase& row : kCases) {
        long long applied[256];
        std::fill_n(applied, 256, -1);
        EXPECT_EQ(XfnApplyCutToHistogram(source, row.min, row.max, row.cutMin, row.cutMax, applied),
                  row.result)
            << row.name;
        EXPECT_EQ(applied[row.bin], row.wanted) << row.name;
    }
}

} // namespace
