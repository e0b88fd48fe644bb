#include "foundation/raster/XJointCounts.h"
#include "foundation/raster/XRasterTypes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
std::vector<T> MakeSamples(std::size_t count, int seed)
{
    std::vector<T> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = static_cast<T>((i * 7 + i / 13 + static_cast<std::size_t>(seed)) % 120);
    return samples;
}

} // namespace

TEST(XJointCounts, AgreesWithALoopForEveryType)
{
    for (int type = kXUInt8; type <= kXDouble; ++type) {
        XfnDispatchRealType<int>(type, [&]<class T>(const T*) {
            for (const std::size_t n : {0, 1, 2, 2047, 2048, 2049, 9000}) {
                SCOPED_TRACE(std::to_string(type) + ", " + std::to_string(n));
                const auto x = MakeSamples<T>(n, 3);
                const auto y = MakeSamples<float>(n, 50);
                XJointCounts counts({type, 2.0, 255.0 / 117.0, 5.0}, {kXFloat, -10.0, 1.5});
                EXPECT_TRUE(counts.Add(x.data(), y.data(), n));
                std::vector<std::uint64_t> wanted(256 * 256);
                for (std::size_t i = 0; i < n; ++i) {
                    if (x[i] == 5) continue;
                    const int column = static_cast<int>((x[i] - 2.0) * (255.0 / 117.0)) & 255;
                    const int row = static_cast<int>((y[i] + 10.0) * 1.5) & 255;
                    ++wanted[static_cast<std::size_t>(row * 256 + column)];
                }
                EXPECT_EQ(counts.GetCounts(), wanted);
            }
            return 1;
        });
    }
}

TEST(XJointCounts, WhatHasNoBinIsLeftOut)
{
    const float x[] = {1, 255, 256, kNaN, 4, 1e30f, -1, static_cast<float>(HUGE_VAL)};
    const std::int8_t y[] = {0, -128, 127, 1, 7, 1, -127, 1};
    XJointCounts counts({kXFloat}, {kXInt8, -127.0, 1.0, 7.0});
    ASSERT_TRUE(counts.Add(x, y, 8));
    const auto at = [&](int column, int row) { return counts.GetCounts()[row * 256 + column]; };
    EXPECT_EQ(at(1, 127), 1u);
    EXPECT_EQ(at(255, 255), 1u); // one below the range wraps round
    EXPECT_EQ(at(0, 254), 1u);   // and so does one above
    EXPECT_EQ(at(255, 0), 1u);
    EXPECT_EQ(std::accumulate(counts.GetCounts().begin(), counts.GetCounts().end(), 0u), 4u);
    ASSERT_TRUE(counts.Add(x, y, 1)); // more on top
    EXPECT_EQ(at(1, 127), 2u);
    counts.Clear();
    EXPECT_EQ(at(1, 127), 0u);
    EXPECT_FALSE(XJointCounts({kXFloatComplex}, {kXFloat}).Add(x, y, 1));
    EXPECT_FALSE(XJointCounts({kXFloat, kNaN}, {kXFloat}).Add(x, y, 1));
}
