#include "foundation/raster/XDrawKernels.h"

#include "foundation/raster/XDrawHSI.h"
#include "foundation/raster/XRasterTypes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kLengths[] = {0, 1, 7, 8, 9, 255, 256, 257};
constexpr int kOffsets[] = {0, 1, 3};

tagXDrawCut MakeCut(double low, double high, double null, double transparent)
{
    tagXDrawCut cut;
    const double scale = 255.0 / (high - low);
    cut.wide = {low, scale, 0.5, null, transparent};
    cut.single = {static_cast<float>(low), static_cast<float>(scale), 0.5f,
                  static_cast<float>(null), static_cast<float>(transparent)};
    return cut;
}

/// What a state should be, said plainly.
int PlainState(double value, double low, double high, double null, double transparent)
{
    int level = 0;
    if (value >= high)
        level = 255;
    else if (value > low)
        level = static_cast<int>((value - low) * 255.0 / (high - low) + 0.5);
    return level | (!std::isnan(value) && value != null ? kXStateData : 0) |
           (value == transparent ? kXStateTransparent : 0);
}

/// Samples of one type with the odd values at the seams of vectors.
struct tagSamples
{
    std::vector<unsigned char> bytes;
    std::vector<double> values;
};

tagSamples MakeSamples(int dataType, int count)
{
    tagSamples samples;
    const bool isComplex = XfnIsComplexType(dataType);
    samples.bytes.resize(static_cast<std::size_t>(count) * XfnGetDataTypeSize(dataType));
    std::mt19937 random(dataType);
    XfnDispatchRealType<int>(XfnGetPartType(dataType), [&](auto* type) {
        using T = std::remove_const_t<std::remove_pointer_t<decltype(type)>>;
        T* out = reinterpret_cast<T*>(samples.bytes.data());
        for (int i = 0; i < count; ++i) {
            double value = static_cast<double>(random() % 120u);
            if constexpr (std::is_floating_point_v<T>) {
                constexpr double kOdd[] = {kNaN, kInf, -kInf, 1e30, -1e30, 0.25};
                if (i % 8 == 7 || i % 8 == 0) value = kOdd[(i / 4) % 6];
            }
            if (!isComplex) {
                *out++ = static_cast<T>(value);
                samples.values.push_back(value);
            } else {
                if (!std::isfinite(value) || std::fabs(value) > 1e6) value = 3.0;
                *out++ = static_cast<T>(value * 0.6);
                *out++ = static_cast<T>(value * 0.8);
                const double re = static_cast<double>(out[-2]), im = static_cast<double>(out[-1]);
                samples.values.push_back(std::sqrt(re * re + im * im));
            }
        }
        return 1;
    });
    return samples;
}

TEST(XDrawKernels, RowsOfEveryTypeAgreeWithThePlainLoop)
{
    constexpr double kLow = 10.0, kHigh = 90.0, kNull = 37.0, kTransparent = 55.0;
    for (int type = kXUInt8; type <= kXDoubleComplex; ++type) {
        tagXDrawCut cut = MakeCut(kLow, kHigh, kNull, kTransparent);
        std::vector<std::uint16_t> table(65536);
        XfnFillCutTable(type, cut.wide, table.data());
        cut.table = table.data();
        const tagSamples samples = MakeSamples(type, 300);
        const std::size_t size = static_cast<std::size_t>(XfnGetDataTypeSize(type));
        for (const int length : kLengths) {
            for (const int offset : kOffsets) {
                std::vector<int> index(static_cast<std::size_t>(length));
                for (int i = 0; i < length; ++i)
                    index[i] = (i * 7 + offset) % 300;
                std::vector<std::uint16_t> row(length + 1, 0xBEEF), picked(length + 1, 0xBEEF);
                XfnGetStateRow(type, 0)(samples.bytes.data() + size * offset, nullptr, length, cut,
                                        row.data());
                XfnGetStateRow(type, 1)(samples.bytes.data(), index.data(), length, cut,
                                        picked.data());
                for (int i = 0; i < length; ++i) {
                    const auto plain = [&](int at) {
                        return PlainState(samples.values[at], kLow, kHigh, kNull, kTransparent);
                    };
                    // a magnitude in float may round to the level beside
                    const int slack = XfnIsComplexType(type) ? 1 : 0;
                    ASSERT_NEAR(row[i] & 0xFF, plain(i + offset) & 0xFF, slack) << type << " " << i;
                    ASSERT_NEAR(picked[i] & 0xFF, plain(index[i]) & 0xFF, slack)
                        << type << " " << i;
                    if (slack) continue;
                    ASSERT_EQ(row[i] >> 8, plain(i + offset) >> 8) << type << " " << i;
                    ASSERT_EQ(picked[i] >> 8, plain(index[i]) >> 8) << type << " " << i;
                }
                ASSERT_EQ(row[length], 0xBEEF); // nothing beyond the row
                ASSERT_EQ(picked[length], 0xBEEF);
            }
        }
    }
}

TEST(XDrawKernels, TablesOfSignedTypesAndFallingCutsAgreeWithThePlainState)
{
    constexpr double kLow = -500.0, kHigh = 524.0; // 1024 apart: the slope is exact
    for (const int sign : {1, -1}) {
        for (const double null : {kNaN, -500.0, 0.5, 300.0}) {
            const tagXCut<double> cut = {sign > 0 ? kLow : kHigh, sign * 255.0 / 1024, 0.5, null,
                                         kNaN};
            std::vector<std::uint16_t> table(65536);
            EXPECT_EQ(XfnFillCutTable(kXInt16, cut, table.data()) != 0,
                      std::isnan(null) || null == 0.5);
            for (int value = -32768; value < 32768; ++value)
                ASSERT_EQ(table[value & 0xFFFF],
                          sign > 0 ? PlainState(value, kLow, kHigh, null, kNaN)
                                   : PlainState(-value, -kHigh, -kLow, -null, kNaN))
                    << sign << " " << value;
        }
    }
}

TEST(XDrawKernels, AComplexSampleIsNullByItsRealPartAlone)
{
    const float parts[] = {-5, 0, 3, 4, -5, 1}; // the magnitude 5 is not the null value
    const tagXDrawCut cut = MakeCut(0, 10, -5, kNaN);
    std::uint16_t states[3];
    float reals[3];
    XfnGetStateRow(kXFloatComplex, 0)(parts, nullptr, 3, cut, states);
    XfnGetLoadRow(kXFloatComplex)(parts, 3, cut, reals);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ((states[i] & kXStateData) != 0, i > 0) << i;
        EXPECT_EQ(std::isnan(reals[i]), i == 0) << i;
    }
}

TEST(XDrawKernels, TypesThatAreNoneHaveNoRow)
{
    for (const int type : {-1, 0, 17}) {
        EXPECT_EQ(XfnGetStateRow(type, 0), nullptr);
        EXPECT_EQ(XfnGetLoadRow(type), nullptr);
    }
}

TEST(XDrawKernels, StraightLoopsAgreeWithOneTableAfterTheOther)
{
    std::mt19937 random(7);
    std::vector<std::uint8_t> bytes[3];
    std::vector<std::uint16_t> shorts[3];
    std::vector<std::uint32_t> words[3];
    std::vector<std::uint8_t> components[3];
    for (int ch = 0; ch < 3; ++ch) {
        for (int i = 0; i < 300; ++i) {
            bytes[ch].push_back(static_cast<std::uint8_t>(random()));
            shorts[ch].push_back(static_cast<std::uint16_t>(random()));
        }
        for (int i = 0; i < 256; ++i)
            words[ch].push_back((random() & 0xFFu) << (8 * ch) | 0xFF000000u);
        for (int i = 0; i < 65536; ++i)
            components[ch].push_back(static_cast<std::uint8_t>(random()));
    }
    const std::uint32_t* const tables8[3] = {words[0].data(), words[1].data(), words[2].data()};
    const std::uint8_t* const tables16[3] = {components[0].data(), components[1].data(),
                                             components[2].data()};
    for (const int length : kLengths) {
        for (const int offset : kOffsets) {
            std::vector<int> index(static_cast<std::size_t>(length));
            for (int i = 0; i < length; ++i)
                index[i] = (i * 5 + offset) % 290;
            const std::uint8_t* src8[3];
            const std::uint16_t* src16[3];
            for (int ch = 0; ch < 3; ++ch) {
                src8[ch] = bytes[ch].data() + offset;
                src16[ch] = shorts[ch].data() + offset;
            }
            const std::size_t room = static_cast<std::size_t>(length);
            std::vector<std::uint32_t> a(room), b(room), c(room), d(room), e(room), f(room);
            XfnRgb8Row(src8, length, tables8, a.data());
            XfnRgb8IndexedRow(src8, index.data(), length, tables8, b.data());
            XfnRgb16Row(src16, nullptr, length, tables16, c.data());
            XfnRgb16Row(src16, index.data(), length, tables16, d.data());
            XfnGray8Row(src8[1], nullptr, length, tables8[1], e.data());
            XfnGray16Row(src16[2], nullptr, length, tables16[2], tables8[0], f.data());
            for (int i = 0; i < length; ++i) {
                const auto rgb16 = [&](int at) {
                    return 0xFF000000u | std::uint32_t{tables16[2][src16[2][at]]} << 16 |
                           std::uint32_t{tables16[1][src16[1][at]]} << 8 |
                           tables16[0][src16[0][at]];
                };
                const auto rgb8 = [&](int at) {
                    return tables8[0][src8[0][at]] | tables8[1][src8[1][at]] |
                           tables8[2][src8[2][at]];
                };
                ASSERT_EQ(a[i], rgb8(i));
                ASSERT_EQ(b[i], rgb8(index[i]));
                ASSERT_EQ(c[i], rgb16(i));
                ASSERT_EQ(d[i], rgb16(index[i]));
                ASSERT_EQ(e[i], tables8[1][src8[1][i]]);
                ASSERT_EQ(f[i], tables8[0][tables16[2][src16[2][i]]]);
            }
        }
    }
}

TEST(XDrawKernels, BlendingRoundsExactlyForEveryAlpha)
{
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        std::uint32_t words[256], surface[256];
        for (unsigned i = 0; i < 256; ++i) {
            words[i] = 0xFF000000u | i << 16 | (255u - i) << 8 | ((i * 7u) & 0xFFu);
            surface[i] = 0xFF000000u | ((i * 3u) & 0xFFu) << 16 | i << 8 | (255u - i);
        }
        std::uint32_t before[256];
        std::memcpy(before, surface, sizeof before);
        XfnBlendRow(words, 256, alpha, surface);
        for (int i = 0; i < 256; ++i) {
            for (const int shift : {0, 8, 16}) {
                const double a = words[i] >> shift & 0xFFu, b = before[i] >> shift & 0xFFu;
                const long wanted = std::lround((a * alpha + b * (255.0 - alpha)) / 255.0);
                ASSERT_EQ(surface[i] >> shift & 0xFFu, wanted) << alpha << " " << i << " " << shift;
            }
            ASSERT_EQ(surface[i] >> 24, 0xFFu);
        }
    }
}

/// The bilinear mean of four samples, leaving out what does not count.
double PlainMean(const double (&taps)[4], double x, double y, double skip)
{
    const double shares[4] = {(1 - x) * (1 - y), x * (1 - y), (1 - x) * y, x * y};
    double sum = 0.0, weight = 0.0;
    for (int k = 0; k < 4; ++k) {
        if (std::isnan(taps[k]) || taps[k] == skip || shares[k] == 0.0) continue;
        sum += taps[k] * shares[k];
        weight += shares[k];
    }
    return weight > 0.0 ? sum / weight : kNaN;
}

TEST(XDrawKernels, BothBilinearFormsLeaveOutWhatDoesNotCount)
{
    constexpr double kSkip = 5.0;
    const double odd[] = {1.0, kNaN, 8.0, kSkip, 100.0, kInf, -3.0};
    std::vector<double> upper, lower;
    for (int i = 0; i < 257; ++i) {
        upper.push_back(odd[i % 7]);
        lower.push_back(odd[(i * 3 + 1) % 7]);
    }
    for (const double part : {0.0, 0.25, 1.0}) {
        std::vector<double> values(257), weights(257), mixed(256), direct(256);
        XfnMixRows(upper.data(), lower.data(), part, kSkip, 257, values.data(), weights.data());
        std::vector<int> left(256), right(256);
        std::vector<double> partsX(256), partsY(256, part);
        std::vector<double> taps[4];
        for (int i = 0; i < 256; ++i) {
            left[i] = i;
            right[i] = i + 1;
            partsX[i] = (i % 5) * 0.25;
            for (int k = 0; k < 4; ++k)
                taps[k].push_back((k < 2 ? upper : lower)[i + k % 2]);
        }
        XfnMixColumns(values.data(), weights.data(), left.data(), right.data(), partsX.data(), 256,
                      mixed.data());
        const double* const rows[4] = {taps[0].data(), taps[1].data(), taps[2].data(),
                                       taps[3].data()};
        XfnMixTaps(rows, partsX.data(), partsY.data(), kSkip, 256, direct.data());
        for (int i = 0; i < 256; ++i) {
            const double wanted =
                PlainMean({taps[0][i], taps[1][i], taps[2][i], taps[3][i]}, partsX[i], part, kSkip);
            for (const double got : {mixed[i], direct[i]}) {
                ASSERT_EQ(std::isnan(got), std::isnan(wanted)) << i << " " << part;
                if (std::isfinite(wanted)) {
                    ASSERT_NEAR(got, wanted, 1e-9) << i << " " << part;
                } else if (!std::isnan(wanted)) {
                    ASSERT_EQ(got, wanted) << i;
                }
            }
        }
    }
}

TEST(XDrawHSI, PrimariesGraysAndTheWayBack)
{
    const struct
    {
        const char* name;
        int hue, saturation, intensity;
        std::uint32_t word;
    } kCases[] = {
        {"black whatever the hue", 77, 255, 0, 0x000000},
        {"gray without saturation", 130, 0, 99, 0x636363},
        {"red", 0, 255, 85, 0xFF0000},
        {"red at the other end of the circle", 255, 255, 85, 0xFF0000},
        {"green at a third", 85, 255, 85, 0x00FF00},
        {"blue at two thirds", 170, 255, 85, 0x0000FF},
        {"beyond the cube held at its face", 0, 255, 255, 0xFF0000},
    };
    for (const auto& row : kCases)
        EXPECT_EQ(XfnHsiToRgb(row.hue, row.saturation, row.intensity), row.word) << row.name;
    for (int r = 0; r < 256; r += 15) {
        for (int g = 0; g < 256; g += 15) {
            for (int b = 0; b < 256; b += 15) {
                std::uint8_t h, s, i;
                XfnRgbToHsi(r, g, b, h, s, i);
                const std::uint32_t word = XfnHsiToRgb(h, s, i);
                ASSERT_NEAR(word >> 16 & 0xFFu, r, 6); // a byte of hue is 1.4 degrees
                ASSERT_NEAR(word >> 8 & 0xFFu, g, 6);
                ASSERT_NEAR(word & 0xFFu, b, 6);
            }
        }
    }
}

} // namespace
