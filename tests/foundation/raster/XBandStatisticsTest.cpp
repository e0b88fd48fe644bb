#include "foundation/raster/XBandStatistics.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSaveControl.h"
#include "foundation/raster/XSubsetStatElem.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <numeric>
#include <thread>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct tagCase
{
    const char* name;
    int type;
    double null;
    std::vector<double> values;
    double min, max, mean, stdDev;
    long long count;
};

// clang-format off
const tagCase kCases[] = {
    // name                              type      null        values                     min max mean std n
    {"plain bytes",                      kXUInt8,  kXNotSet,   {0, 255, 10, 11},          0, 255, 69, std::sqrt(11550.5), 4},
    {"signed bytes below zero",          kXInt8,   kXNotSet,   {-128, 127},               -128, 127, -0.5, 127.5, 2},
    {"the null value does not count",    kXInt16,  -32768,     {-32768, 5, 7},            5, 7, 6, 1, 2},
    {"a null beyond the type is none",   kXUInt8,  300,        {1, 44},                   1, 44, 22.5, 21.5, 2},
    {"a fraction is no byte",            kXUInt8,  0.5,        {0, 1},                    0, 1, 0.5, 0.5, 2},
    {"NaN and infinity never count",     kXFloat,  kXNotSet,   {kNaN, 1, kInf, 3, -kInf}, 1, 3, 2, 1, 2},
    {"NaN as null value",                kXFloat,  kNaN,       {kNaN, 4},                 4, 4, 4, 0, 1},
    {"a null of too many digits",        kXFloat,  -3.4028234663852886e38, {-3.4028234663852886e38, 9}, 9, 9, 9, 0, 1},
    {"a null rounded up in a header",    kXFloat,  -3.40282347e38, {-3.4028234663852886e38, 9}, 9, 9, 9, 0, 1},
    {"0.1 as a float null",              kXFloat,  0.1,        {0.1, 2},                  2, 2, 2, 0, 1},
    {"all no-data has no numbers",       kXFloat,  0,          {0, 0, 0},                 kXNotSet, kXNotSet, kXNotSet, kXNotSet, 0},
    {"the largest doubles are none",     kXDouble, kXNotSet,   {1.7976931348623157e308, -1.7976931348623157e308, 2}, 2, 2, 2, 0, 1},
    {"constant",                         kXDouble, kXNotSet,   {0.1, 0.1, 0.1},           0.1, 0.1, 0.1, 0, 3},
    {"all zero",                         kXUInt16, kXNotSet,   {0, 0},                    0, 0, 0, 0, 2},
    {"a range beyond the doubles",       kXDouble, kXNotSet,   {-1.6e308, 1.6e308},       -1.6e308, 1.6e308, 0, kXNotSet, 2},
    {"whole 32 bits",                    kXUInt32, kXNotSet,   {0, 4294967295.0},         0, 4294967295.0, 2147483647.5, 2147483647.5, 2},
    {"complex counts its magnitude",     kXFloatComplex, kXNotSet, {8, 0},                0, std::sqrt(80.0), std::sqrt(20.0), std::sqrt(20.0), 2},
    {"a complex null",                   kXFloatComplex, 0,    {8, 0},                    std::sqrt(80.0), std::sqrt(80.0), std::sqrt(80.0), 0, 1},
};
// clang-format on

} // namespace

TEST(XBandStatistics, CountsWhatIsData)
{
    for (const tagCase& c : kCases) {
        SCOPED_TRACE(c.name);
        auto band = XfnMakeBand(c.type, static_cast<int>(c.values.size()), 1,
                                [&](int x, int) { return c.values[static_cast<std::size_t>(x)]; });
        band->SetNullValue(c.null);
        const auto s = band->GetStatistics();
        EXPECT_EQ(s->count, c.count);
        EXPECT_EQ(s->min, c.min);
        EXPECT_EQ(s->max, c.max);
        EXPECT_DOUBLE_EQ(s->mean, c.mean);
        EXPECT_NEAR(s->stdDev, c.stdDev, 1e-12 * std::fabs(c.stdDev));
        EXPECT_EQ(std::accumulate(s->histogram.begin(), s->histogram.end(), 0ll), c.count);
        EXPECT_FALSE(band->HasEstimatedStatistics());
        XString message;
        ASSERT_TRUE(band->CalcExactStatistics(nullptr, nullptr, message)) << message.GetString();
        EXPECT_EQ(band->GetStatistics()->histogram, s->histogram);
        EXPECT_EQ(band->GetBandMax(), s->max);
    }
}

TEST(XBandStatistics, ABandThatFindsNoMemoryHasNoNumbersYet)
{
    struct XHungryBand : XDMBandMemory
    {
        bool isHungry = true;
        int GatherSample(std::vector<std::shared_ptr<const XTile>>& tiles,
                         const std::atomic<int>* abort) const override
        {
            if (isHungry) throw std::bad_alloc();
            return XDMBandMemory::GatherSample(tiles, abort);
        }
    } band;
    ASSERT_TRUE(band.Create(kXUInt8, 9, 9));
    EXPECT_EQ(band.GetBandMin(), kXNotSet);
    EXPECT_EQ(band.GetHistogram()[0], 0);
    band.isHungry = false;
    EXPECT_EQ(band.GetBandMin(), 0.0);
    EXPECT_EQ(band.GetHistogram()[0], 81);
}

TEST(XBandStatistics, NumbersOfPixelsThatChangedMeanwhileAreNotKept)
{
    const auto band = XfnMakeBand(kXUInt8, 2000, 1000, [](int x, int) { return x % 9; });
    const unsigned char white = 255;
    const std::function<void()> changes[] = {[&] { band->WritePixel(&white, 0, 0, false, 0.0); },
                                             [&] { band->SetNullValue(255.0); }};
    for (const auto& change : changes) {
        tagXSaveControl control;
        control.progress = [&](int percent) {
            if (percent == 100) change();
        };
        XString message;
        EXPECT_FALSE(band->CalcExactStatistics(control, message));
        EXPECT_FALSE(message.IsEmpty() || band->HasStatistics());
        EXPECT_TRUE(band->CalcExactStatistics({}, message));
    }
}

TEST(XBandStatistics, MeansSurviveALargeOffset)
{
    // variance of 0..9 repeated is 8.25; a plain sum of squares at 1e9 holds no digit of it
    const auto band = XfnMakeBand(kXDouble, 1000, 30, [](int x, int) { return 1e9 + x % 10; });
    EXPECT_DOUBLE_EQ(band->GetBandMean(), 1e9 + 4.5);
    EXPECT_NEAR(band->GetBandStdDev(), std::sqrt(8.25), 1e-9);
}

TEST(XBandStatistics, BinsFollowTheFormulaForEveryType)
{
    for (const int type :
         {kXUInt8, kXInt8, kXUInt16, kXInt16, kXUInt32, kXInt32, kXFloat, kXDouble}) {
        const auto band = XfnMakeBand(type, 101, 3, [](int x, int) { return x; });
        long long expected[256] = {};
        for (int v = 0; v <= 100; ++v)
            expected[v * 255 / 100] += 3;
        EXPECT_EQ(std::memcmp(band->GetHistogram(), expected, sizeof expected), 0) << type;
    }
}

TEST(XBandStatistics, KernelsAgreeWithAPlainLoopAtEachSeam)
{
    for (const std::size_t n : {0, 1, 7, 8, 9, 255, 256, 257, 4095, 4096, 4097}) {
        std::vector<float> values(n);
        double sum = 0.0;
        for (std::size_t i = 0; i < n; ++i)
            sum += values[i] = static_cast<float>((i * 37) % 101);
        tagXMoments moments;
        ASSERT_TRUE(XfnAddMoments(values.data(), n, kXFloat, kXNotSet, moments));
        EXPECT_EQ(moments.count, static_cast<long long>(n));
        EXPECT_NEAR(moments.mean * static_cast<double>(n), sum, 1e-7) << n;
        std::array<long long, 256> bins{};
        ASSERT_TRUE(XfnAddHistogram(values.data(), n, kXFloat, kXNotSet, 0, 100, bins.data()));
        EXPECT_EQ(std::accumulate(bins.begin(), bins.end(), 0ll), static_cast<long long>(n));
    }
}

TEST(XBandStatistics, SettingAndDroppingFromManyThreads)
{
    const auto band = XfnMakeBand(kXUInt16, 700, 500, [](int x, int y) { return x + y; });
    std::atomic<int> wrong{0};
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 20; ++i) {
                const long long* bins = band->GetHistogram();
                if (std::accumulate(bins, bins + 256, 0ll) != 700 * 500) ++wrong;
                if (band->GetBandMax() != 1198.0) ++wrong;
                if (t == 0) band->DropStatistics();
                if (bins[0] <= 0) ++wrong; // still readable after the numbers were dropped
            }
        });
    }
    threads.clear(); // joins
    EXPECT_EQ(wrong, 0);
}

TEST(XSubsetStatElem, AccumulatesOverBlocksAndMovesCounts)
{
    const double first[] = {1, 2, kXNoData, 3};
    const double second[] = {kNaN, 11, 7, 5};
    double sum = 0, squares = 0, min = kXNotSet, max = kXNoData;
    long long count = 0;
    long long bins[256] = {};
    const int low = std::numeric_limits<int>::min();
    const int high = std::numeric_limits<int>::max();
    ASSERT_TRUE(XfnGetSubsetStatElem1(first, 2, 2, kXDouble, sum, squares, min, max, count, low,
                                      high, low, high, kXNoData));
    ASSERT_TRUE(XfnGetSubsetStatElem3(first, 2, 2, kXDouble, kXNotSet, kXNoData, min, max, bins,
                                      low, high, low, high, kXNoData));
    EXPECT_EQ(bins[0], 1);
    EXPECT_EQ(bins[127], 1);
    EXPECT_EQ(bins[255], 1);
    ASSERT_TRUE(XfnGetSubsetStatElem1(second, 2, 2, kXDouble, sum, squares, min, max, count, low,
                                      high, low, high, kXNoData));
    ASSERT_TRUE(XfnGetSubsetStatElem3(second, 2, 2, kXDouble, 1, 3, min, max, bins, low, high, low,
                                      high, kXNoData));
    EXPECT_EQ(count, 6);
    EXPECT_DOUBLE_EQ(sum, 29);
    EXPECT_DOUBLE_EQ(squares, 1 + 4 + 9 + 121 + 49 + 25);
    EXPECT_EQ(min, 1);
    EXPECT_EQ(max, 11);
    EXPECT_EQ(bins[51], 1); // the 3 of the first block, at 2 / 10 of the new range
    EXPECT_EQ(std::accumulate(bins, bins + 256, 0ll), 6);

    count = 0; // only the second column
    ASSERT_TRUE(XfnGetSubsetStatElem1(second, 2, 2, kXDouble, sum, squares, min, max, count, 1, 1,
                                      0, 1, kXNoData));
    EXPECT_EQ(count, 2);
    EXPECT_FALSE(XfnGetSubsetStatElem1(nullptr, 2, 2, kXDouble, sum, squares, min, max, count, low,
                                       high, low, high, 0));
    EXPECT_FALSE(XfnGetSubsetStatElem1(first, 2, 2, 17, sum, squares, min, max, count, low, high,
                                       low, high, 0));
    EXPECT_FALSE(XfnGetSubsetStatElem3(first, 2, 2, kXDouble, 0, 0, kXNotSet, kXNoData, bins, low,
                                       high, low, high, 0));
}
