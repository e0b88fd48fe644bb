#include "foundation/raster/XDMBandComplex.h"
#include "foundation/raster/XDMBandImageSharpen.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace {

constexpr int kWidth = 700;
constexpr int kHeight = 520;

double ValueAt(int x, int y)
{
    return (x * 37 + y * 101 + x * y) % 211;
}

void ReadAll(XDMBand& band, int level, tagXArr2& into)
{
    tagXArr2* block = &into;
    ASSERT_TRUE(
        band.ReadSubset(block, level, 0, band.GetXSize() - 1, 0, band.GetYSize() - 1, nullptr));
}

} // namespace

// The seams of tiles and the rim do not show: tiles come out as the filter over the whole level.
TEST(XDMBandSpatialFilter, TilesAreTheFilterOverTheLevel)
{
    struct tagCase
    {
        int dataType, filter, size;
        double null;
    };
    const tagCase kCases[] = {{kXUInt8, kXFilterMean, 11, kXNotSet},
                              {kXInt16, kXFilterMedian, 5, 100},
                              {kXDouble, kXFilterGaussian, 7, 0},
                              {kXUInt32, kXFilterSobel, 3, 7},
                              {kXFloat, kXFilterNone, 9, 3}};
    for (const tagCase& c : kCases) {
        SCOPED_TRACE(c.filter);
        const auto inner = XfnMakeBand(c.dataType, kWidth, kHeight, ValueAt);
        inner->SetNullValue(c.null);
        inner->SetBandName("a");
        XDMBandSpatialFilter band;
        ASSERT_TRUE(band.Create(inner.get(), c.filter, c.size));
        EXPECT_STREQ(band.GetBandName(), "a");
        const tagXSpatialFilter filter = XfnMakeSpatialFilter(c.filter, c.size);
        const int r = XfnGetFilterRadius(filter);
        for (int level = 0; level <= inner->GetLevel(); ++level) {
            tagXArr2 source, got, apron, wanted;
            ReadAll(*inner, level, source);
            ReadAll(band, level, got);
            ASSERT_EQ(got.dataType, XfnGetFilteredType(filter, c.dataType));
            const int wide = source.width + 2 * r;
            ASSERT_TRUE(apron.Create(c.dataType, wide, source.height + 2 * r));
            ASSERT_TRUE(wanted.Create(got.dataType, source.width, source.height));
            const std::size_t size = static_cast<std::size_t>(inner->GetDataSize());
            for (int y = 0; y < source.height; ++y)
                std::memcpy(apron.base + apron.rowOffset[y + r] + size * r, source.At(0, y),
                            size * source.width);
            XfnRepeatRim(apron.base, inner->GetDataSize(), wide, source.height + 2 * r, r, r, r, r);
            ASSERT_TRUE(XfnFilterBlock(filter, c.dataType, apron.base, source.width, source.height,
                                       c.null, wanted.base, band.GetNullValue()));
            EXPECT_EQ(std::memcmp(got.base, wanted.base, wanted.GetByteSize()), 0) << level;
        }
    }
}

TEST(XDMBandSpatialFilter, WhatCannotBeFilteredIsRefused)
{
    const auto real = XfnMakeBand(kXUInt8, 20, 10, ValueAt);
    const auto complex = XfnMakeBand(kXFloatComplex, 20, 10, ValueAt);
    XDMBandSpatialFilter band;
    XDMBandMemory empty;
    ASSERT_TRUE(band.Create(real.get(), kXFilterMean, 3));
    EXPECT_FALSE(band.Create(nullptr, kXFilterMean, 3));
    EXPECT_FALSE(band.Create(&empty, kXFilterMean, 3));
    EXPECT_FALSE(band.Create(complex.get(), kXFilterMean, 3));
    EXPECT_FALSE(band.Create(real.get(), 7, 3));
    EXPECT_FALSE(band.Create(real.get(), kXFilterMean, 4));
    EXPECT_FALSE(band.Create(&band, kXFilterMean, 3)) << "a ring";
    EXPECT_EQ(band.GetInnerBand(), real.get());
    EXPECT_FALSE(band.IsWritable());
    XDMBandImageSharpen sharpen;
    EXPECT_FALSE(sharpen.Create(real.get(), 3, std::nan("")));
    ASSERT_TRUE(sharpen.Create(real.get(), 5, 0.0));
    EXPECT_STREQ(sharpen.GetRuntimeClass()->m_lpszClassName, "XDMBandImageSharpen");
    tagXArr2 a, b;
    ReadAll(*real, 0, a);
    ReadAll(sharpen, 0, b);
    EXPECT_EQ(std::memcmp(a.base, b.base, a.GetByteSize()), 0) << "amount 0";
}

// A change of the inner band reaches a filter over a filter as far as both look, and the numbers.
TEST(XDMBandDerived, FollowsTheInnerBand)
{
    const auto inner = XfnMakeBand(kXUInt8, 1100, 300, [](int, int) { return 0; });
    XDMBandSpatialFilter first, second;
    ASSERT_TRUE(first.Create(inner.get(), kXFilterMean, 3));
    ASSERT_TRUE(second.Create(&first, kXFilterMean, 5));
    XString message;
    for (int tx = 0; tx < 5; ++tx)
        ASSERT_TRUE(second.GetTile(0, tx, 0, nullptr, message));
    EXPECT_EQ(second.GetBandMax(), 0.0);
    const unsigned char white = 255;
    ASSERT_TRUE(inner->WritePixel(&white, 514, 10, false, 0.0)); // two tiles away by 3 pixels
    for (int tx = 0; tx < 5; ++tx)
        EXPECT_EQ(second.FindTile(0, tx, 0) == nullptr, tx == 1 || tx == 2) << tx;
    EXPECT_GT(second.GetBandMax(), 0.0);
    inner->SetNullValue(0.0);
    EXPECT_EQ(second.FindTile(0, 0, 0), nullptr);
    EXPECT_EQ(second.GetNullValue(), 0.0);
    EXPECT_EQ(second.GetBandMin(), 255.0);
    {
        XDMBandSpatialFilter gone;
        gone.Create(inner.get(), kXFilterMean, 3);
    }
    EXPECT_TRUE(inner->WritePixel(&white, 0, 0, false, 0.0));
}

TEST(XDMBandComplex, ShowsEachPart)
{
    struct tagCase
    {
        int part;
        double wanted; // of 3 - 4i
        double zero;
    };
    const double nan = std::nan("");
    const tagCase kCases[] = {
        {kXComplexMagnitude, 5.0, 0.0},  {kXComplexPhase, -0.9272952180016122, 0.0},
        {kXComplexReal, 3.0, 0.0},       {kXComplexImaginary, -4.0, 0.0},
        {kXComplexIntensity, 25.0, 0.0}, {kXComplexLogMagnitude, 13.979400086720377, nan}};
    for (const int type :
         {kXInt8Complex, kXInt16Complex, kXInt32Complex, kXFloatComplex, kXDoubleComplex}) {
        // 3 - 4i, 0, the null value 9, and one of which a part is broken where the type allows
        XDMBandMemory inner;
        ASSERT_TRUE(inner.Create(type, 4, 1));
        XfnDispatchRealType<int>(XfnGetPartType(type), [&](auto* of) {
            using T = std::remove_const_t<std::remove_pointer_t<decltype(of)>>;
            T* out = static_cast<T*>(inner.GetData());
            const T values[8] = {T(3), T(-4), T(0), T(0), T(9), T(0), T(9), T(1)};
            std::memcpy(out, values, sizeof values);
            if (std::is_floating_point_v<T>) out[7] = std::numeric_limits<T>::infinity();
            return 1;
        });
        inner.SetNullValue(9.0);
        const bool isReal = type >= kXFloatComplex;
        const bool isWide = type == kXInt32Complex || type == kXDoubleComplex;
        for (const tagCase& c : kCases) {
            SCOPED_TRACE(testing::Message() << "type " << type << " part " << c.part);
            XDMBandComplex band;
            ASSERT_TRUE(band.Create(&inner, c.part));
            EXPECT_EQ(band.GetDataType(), isWide ? kXDouble : kXFloat);
            EXPECT_EQ(band.GetInnerBand()->GetDataType(), type);
            tagXArr2 row;
            ReadAll(band, 0, row);
            EXPECT_NEAR(row.GetValue(0, 0), c.wanted, isWide ? 1e-14 : 1e-6);
            EXPECT_TRUE(row.GetValue(1, 0) == c.zero || std::isnan(c.zero));
            EXPECT_EQ(std::isnan(row.GetValue(1, 0)), std::isnan(c.zero));
            EXPECT_TRUE(std::isnan(row.GetValue(2, 0)));
            EXPECT_EQ(std::isnan(row.GetValue(3, 0)), isReal);
        }
    }
    const auto real = XfnMakeBand(kXFloat, 4, 4, ValueAt);
    XDMBandComplex band;
    EXPECT_FALSE(band.Create(real.get()));
    EXPECT_FALSE(band.Create(nullptr));
}
