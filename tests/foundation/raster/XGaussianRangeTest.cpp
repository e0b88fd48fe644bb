#include "foundation/raster/XGaussianRange.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

TEST(XGaussianRange, CentralPartOfTheMass)
{
    long long even[256], single[256] = {}, ends[256] = {}, empty[256] = {}, negative[256] = {};
    std::fill_n(even, 256, 100);
    single[100] = 1000;
    ends[0] = ends[255] = 500;
    negative[9] = -50;
    negative[10] = 50;
    const struct
    {
        const char* name;
        const long long* histogram;
        double min, max, low95, high95, low98, high98;
    } kCases[] = {
        // 25,600 counts: 2.5 % are 640, of which bins 0 to 5 hold 600, so 0.4 of bin 6
        {"an even histogram", even, 0, 255, 5.9, 249.1, 2.06, 252.94},
        {"in other units", even, -10, 500, 1.8, 488.2, -5.88, 495.88},
        {"all in one bin, spread half a bin to either side", single, 0, 255, 99.525, 100.475, 99.51,
         100.49},
        {"the outer bins spread inward only", ends, 0, 255, 0.025, 254.975, 0.01, 254.99},
        {"empty: deviations about the mean, beyond the band if need be", empty, 0, 255, 30.4, 69.6,
         26.74, 73.26},
        {"none: likewise", nullptr, 0, 255, 30.4, 69.6, 26.74, 73.26},
        {"negative counts are none", negative, 0, 255, 9.525, 10.475, 9.51, 10.49},
        {"a constant band", even, 5, 5, 5, 5, 5, 5},
    };
    for (const auto& row : kCases) {
        double low = -1, high = -1;
        XfnCalcGaussianRange95(row.min, row.max, 50.0, 10.0, row.histogram, low, high);
        EXPECT_NEAR(low, row.low95, 1e-9) << row.name;
        EXPECT_NEAR(high, row.high95, 1e-9) << row.name;
        XfnCalcGaussianRange98(row.min, row.max, 50.0, 10.0, row.histogram, low, high);
        EXPECT_NEAR(low, row.low98, 1e-9) << row.name;
        EXPECT_NEAR(high, row.high98, 1e-9) << row.name;
    }
    double low = 1, high = 2;
    XfnCalcGaussianRange95(0, 255, std::nan(""), 10, nullptr, low, high);
    EXPECT_EQ(low, 0.0);
    EXPECT_EQ(high, 255.0);
    EXPECT_TRUE(XfnCalcHistogramRange(-1.6e308, 1.6e308, even, 0.25, 0.75, low, high));
    EXPECT_TRUE(std::isfinite(low) && std::isfinite(high) && low < high);
    EXPECT_FALSE(XfnCalcHistogramRange(0, INFINITY, even, 0.25, 0.75, low, high));
}

} // namespace
