#include "foundation/base/XSentinels.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSpatialFilterKernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The definitions of the header, one pixel at a time in long form.
class XPlainFilter
{
public:
    template <class R>
    XPlainFilter(const std::vector<R>& samples, int width)
        : m_samples(samples.begin(), samples.end()), m_width(width)
    {}
    double At(int x, int y) const
    {
        const double v = m_samples[static_cast<std::size_t>(y) * m_width + x];
        return std::isfinite(v) ? v : kNaN;
    }
    double Smooth(int x, int y, int radius, bool isMean) const
    {
        if (radius == 0 || std::isnan(At(x, y))) return At(x, y);
        const double s = (2 * radius + 1) / 5.0;
        double sum = 0.0, weights = 0.0;
        for (int dy = -radius; dy <= radius; ++dy) {
            for (int dx = -radius; dx <= radius; ++dx) {
                const double v = At(x + dx, y + dy);
                const double w = isMean ? 1.0 : std::exp(-(dx * dx + dy * dy) / (2 * s * s));
                if (std::isnan(v)) continue;
                sum += w * v;
                weights += w;
            }
        }
        return sum / weights;
    }
    double Apply(const tagXSpatialFilter& filter, int x, int y) const
    {
        const int radius = XfnGetFilterRadius(filter);
        const double centre = At(x, y);
        if (std::isnan(centre)) return kNaN;
        switch (filter.type) {
        case kXFilterNone:
            return centre;
        case kXFilterMean:
            return Smooth(x, y, radius, true);
        case kXFilterGaussian:
            return Smooth(x, y, radius, false);
        case kXFilterSharpen:
            return centre + filter.amount * (centre - Smooth(x, y, radius, false));
        case kXFilterMedian: {
            std::vector<double> values;
            for (int dy = -radius; dy <= radius; ++dy)
                for (int dx = -radius; dx <= radius; ++dx)
                    if (!std::isnan(At(x + dx, y + dy))) values.push_back(At(x + dx, y + dy));
            std::sort(values.begin(), values.end());
            return values[(values.size() - 1) / 2];
        }
        default:
            break;
        }
        const int sobel[3][3] = {{-1, 0, 1}, {-2, 0, 2}, {-1, 0, 1}};
        const int laplacian[3][3] = {{1, 2, 1}, {2, -12, 2}, {1, 2, 1}};
        const double c = Smooth(x, y, radius - 1, false);
        double across = 0.0, along = 0.0, second = 0.0;
        for (int j = 0; j < 3; ++j) {
            for (int i = 0; i < 3; ++i) {
                double v = Smooth(x + i - 1, y + j - 1, radius - 1, false);
                if (std::isnan(v)) v = c;
                across += sobel[j][i] * v;
                along += sobel[i][j] * v;
                second += laplacian[j][i] * v / 4.0;
            }
        }
        return filter.type == kXFilterSobel ? std::hypot(across, along) : second;
    }

private:
    std::vector<double> m_samples;
    int m_width;
};

template <class R>
void ExpectAgrees(int type, int size, int width, int height, double gapShare)
{
    SCOPED_TRACE(testing::Message() << "type " << type << " size " << size << " of " << width << "x"
                                    << height << " gaps " << gapShare);
    std::mt19937 random(static_cast<unsigned>(type * 100 + size + width));
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    const tagXSpatialFilter filter = XfnMakeSpatialFilter(type, size, 1.5);
    const int radius = XfnGetFilterRadius(filter);
    const int wide = width + 2 * radius;
    std::vector<R> samples(static_cast<std::size_t>(wide) * (height + 2 * radius));
    for (R& v : samples) {
        v = static_cast<R>(std::floor(uniform(random) * 300.0) - 100.0); // many are equal
        const double u = uniform(random);
        if (u < gapShare) v = u < gapShare / 2 ? std::numeric_limits<R>::infinity() : R(kNaN);
    }
    std::vector<R> out(static_cast<std::size_t>(width) * height, R(-7));
    std::vector<R> scratch;
    XfnFilterReals(filter, samples.data() + static_cast<std::size_t>(wide) * radius + radius,
                   std::ptrdiff_t(wide), width, height, out.data(), std::ptrdiff_t(width), scratch);
    const XPlainFilter plain(samples, wide);
    const double tolerance = type == kXFilterMedian ? 0.0
                             : sizeof(R) == 4       ? 2e-3
                                                    : 1e-10; // sums of up to 121 samples
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double wanted = plain.Apply(filter, x + radius, y + radius);
            const double got = out[static_cast<std::size_t>(y) * width + x];
            ASSERT_EQ(std::isnan(got), std::isnan(wanted)) << x << "," << y;
            if (!std::isnan(wanted)) {
                ASSERT_NEAR(got, wanted, tolerance) << x << "," << y;
            }
        }
    }
}

} // namespace

TEST(XSpatialFilter, KernelsAgreeWithTheirDefinitions)
{
    const int sizes[][2] = {{1, 1}, {7, 3}, {8, 2}, {9, 5}, {135, 3}, {3, 131}}; // seams of blocks
    for (int type = kXFilterNone; type <= kXFilterLaplacian; ++type) {
        for (int size = 3; size <= 11; size += 2) {
            for (const auto& [width, height] : sizes) {
                for (const double gaps : {0.0, 0.15, 0.9}) {
                    ExpectAgrees<float>(type, size, width, height, gaps);
                    ExpectAgrees<double>(type, size, width, height, gaps);
                }
            }
        }
    }
}

// The scale of the derivatives does not depend on the size.
TEST(XSpatialFilter, DerivativesKeepTheirUnits)
{
    for (int size = 3; size <= 11; size += 2) {
        const int side = 1 + size - 1;
        std::vector<double> ramp, bowl;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                ramp.push_back(3.0 * x - 4.0 * y);
                bowl.push_back(x * x + 2.0 * y * y);
            }
        }
        double got = 0.0;
        ASSERT_TRUE(XfnFilterBlock(XfnMakeSpatialFilter(kXFilterSobel, size), kXDouble, ramp.data(),
                                   1, 1, kXNotSet, &got, kXNotSet));
        EXPECT_NEAR(got, 40.0, 1e-9) << size;
        ASSERT_TRUE(XfnFilterBlock(XfnMakeSpatialFilter(kXFilterLaplacian, size), kXDouble,
                                   bowl.data(), 1, 1, kXNotSet, &got, kXNotSet));
        EXPECT_NEAR(got, 6.0, 1e-9) << size;
    }
}

TEST(XSpatialFilter, SamplesAreRoundedHeldAndKeptApartFromNull)
{
    struct tagCase
    {
        const char* name;
        int type;
        int filter;
        double null;
        double surround; // of the eight neighbours, the last but one
        double odd;      // the last
        double centre;
        double wanted;
    };
    const tagCase kCases[] = {
        {"rounded, not cut", kXUInt8, kXFilterMean, kXNotSet, 1, 6, 1, 2},
        {"below zero too", kXInt16, kXFilterMean, kXNotSet, -5, -1, -5, -5},
        {"a peak stays inside the type", kXUInt8, kXFilterSharpen, kXNotSet, 0, 0, 250, 255},
        {"a pit too", kXInt8, kXFilterSharpen, kXNotSet, 100, 100, -128, -128},
        {"the largest 32-bit integer", kXUInt32, kXFilterMean, kXNotSet, 4294967295.0, 4294967295.0,
         4294967295.0, 4294967295.0},
        {"a result that reads as null is moved", kXUInt8, kXFilterSharpen, 0, 255, 255, 1, 1},
        {"at the upper end down", kXUInt8, kXFilterSharpen, 255, 1, 1, 250, 254},
        {"null neighbours do not count", kXInt16, kXFilterMean, -9999, 10, -9999, 10, 10},
        {"a null centre stays", kXInt16, kXFilterMedian, -9999, 10, 10, -9999, -9999},
        {"float null", kXFloat, kXFilterMean, -3.4028234663852886e38, 2, 2, -3.4028234663852886e38,
         -3.4028234663852886e38},
    };
    for (const tagCase& c : kCases) {
        XfnDispatchRealType<int>(c.type, [&](auto* type) {
            using T = std::remove_cv_t<std::remove_pointer_t<decltype(type)>>;
            T block[9];
            std::fill(block, block + 9, static_cast<T>(c.surround));
            block[8] = static_cast<T>(c.odd);
            block[4] = static_cast<T>(c.centre);
            T out[1] = {};
            EXPECT_TRUE(XfnFilterBlock(XfnMakeSpatialFilter(c.filter, 3), c.type, block, 1, 1,
                                       c.null, out, c.null));
            EXPECT_EQ(static_cast<double>(out[0]), c.wanted) << c.name;
            return 1;
        });
    }
}
