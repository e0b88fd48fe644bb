#include "view/XPosValue.h"
#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMBandComplex.h"
#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XDMBandSpatialFilter.h"
#include "foundation/raster/XRasterTypes.h"
#include "tests/view/XViewFixture.h"

#include <array>
#include <cstring>

namespace {

using Values = std::array<double, 3>;

/// A band of 40 x 30 pixels of any type. The upper-left pixel's centre is (100, 700), a pixel is
/// 2 by 5 world units; every pixel is 7 or (7, 0) but for the one that is set.
class XPosBand : public XDMBandMemory
{
public:
    static constexpr int kWidth = 40;
    static constexpr int kHeight = 30;

    explicit XPosBand(int type)
    {
        std::vector<unsigned char> pixels(static_cast<std::size_t>(kWidth) * kHeight *
                                          XfnGetDataTypeSize(type));
        Create(type, kWidth, kHeight, pixels.data());
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                Set(x, y, 7, 0);
        SetUpperLeft(100, 700);
        SetPixelSize(2, 5);
    }
    void Set(int x, int y, double real, double imaginary)
    {
        const int type = XfnGetPartType(GetDataType());
        unsigned char* at = static_cast<unsigned char*>(GetData()) +
                            (static_cast<std::size_t>(y) * kWidth + x) * GetDataSize();
        XfnDispatchRealType<void>(type, [&](auto* kind) {
            using Sample = std::remove_cv_t<std::remove_pointer_t<decltype(kind)>>;
            const Sample parts[] = {static_cast<Sample>(real), static_cast<Sample>(imaginary)};
            std::memcpy(at, parts, static_cast<std::size_t>(GetDataSize()));
        });
        Changed();
    }
};

/// A band none of whose tiles can be read.
class XBrokenBand : public XPosBand
{
public:
    using XPosBand::XPosBand;

protected:
    std::shared_ptr<const XTile> ReadTile(int, int, int, const std::atomic<int>*,
                                          XString& message) const override
    {
        message = "broken";
        return nullptr;
    }
};

class XPosValueTest : public XViewFixture
{
protected:
    static constexpr double kNone = kXNoData;

    XDMComposite* Add(int mode, std::initializer_list<XDMBand*> bands)
    {
        XDMComposite* composite = view.GetXDMCompManager()->NewXDMComposite(mode);
        int ch = 0;
        for (XDMBand* band : bands)
            composite->SetBand(band, ch++);
        view.GetXDMCompManager()->AddXDMComposite(composite);
        return composite;
    }
    /// Looks from both kinds of view at a pixel of the bands above; parts of pixels count.
    void Look(double column, double row)
    {
        view.QueCancel();
        view.ZoomFitRect(100, 555, 178, 700);
        view.SetWorldPerPixel(0.2, 0.5); // ten pixels an image pixel
        double x = 100 + 2 * column, y = 700 - 5 * row;
        view.SetWorldToCenter(x, y);
        for (const int isProgressive : {0, 1}) {
            values[isProgressive].fill(-99);
            view.SetProgressiveView(isProgressive);
            view.QueCancel();
            result[isProgressive] =
                view.ShowPosValue(kWidth / 2, kHeight / 2, values[isProgressive].data());
        }
        view.SetProgressiveView(0);
    }

    int result[2] = {-1, -1};
    Values values[2] = {};
};

TEST_F(XPosValueTest, EveryDataTypeInBothKindsOfView)
{
    struct tagXCase
    {
        int type;
        double real, imaginary;
    };
    const tagXCase kCases[] = {
        {kXUInt8, 255, 0},
        {kXInt8, -128, 0},
        {kXUInt16, 65535, 0},
        {kXInt16, -32768, 0},
        {kXUInt32, 4294967295.0, 0},
        {kXInt32, -2147483648.0, 0},
        {kXFloat, -1.25f, 0},
        {kXDouble, 0.1, 0},
        {kXUInt8Complex, 255, 1},
        {kXInt8Complex, -128, 127},
        {kXUInt16Complex, 65535, 2},
        {kXInt16Complex, -32768, 32767},
        {kXUInt32Complex, 4294967295.0, 4294967294.0},
        {kXInt32Complex, -2147483648.0, 2147483647},
        {kXFloatComplex, -1.25f, 2.5f},
        {kXDoubleComplex, 0.1, -0.3},
    };
    for (const tagXCase& c : kCases) {
        XPosBand band(c.type);
        band.Set(39, 29, c.real, c.imaginary);
        Add(0, {&band});
        const Values expected = {c.real, XfnIsComplexType(c.type) ? c.imaginary : kNone, kNone};
        Look(39, 29);
        for (const int kind : {0, 1}) {
            EXPECT_EQ(result[kind], 1) << c.type;
            EXPECT_EQ(values[kind], expected) << c.type << " progressive: " << kind;
        }
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
    }
}

TEST_F(XPosValueTest, TheEdgesOfTheImage)
{
    struct tagXCase
    {
        const char* name;
        double column, row;
        bool isInside;
    };
    const tagXCase kCases[] = {
        {"a pixel reaches half a pixel to the left", -0.4, 3, true},
        {"and no further", -0.6, 3, false},
        {"right", 39.4, 3, true},
        {"beyond", 39.6, 3, false},
        {"up", 3, -0.4, true},
        {"above", 3, -0.6, false},
        {"down", 3, 29.4, true},
        {"below", 3, 29.6, false},
        {"too far for an int", 1e13, 3, false},
    };
    for (const int type : {kXUInt8, kXFloatComplex}) {
        XPosBand band(type);
        XPosBand other(type);
        Add(0, {&band});
        for (const tagXCase& c : kCases) {
            Look(c.column, c.row);
            const bool isReal = XfnIsRealType(type);
            EXPECT_EQ(result[0], c.isInside || isReal) << c.name;
            EXPECT_EQ(result[1], c.isInside) << c.name;
            for (const int kind : {0, 1})
                EXPECT_EQ(values[kind][0], c.isInside ? 7 : kNone) << c.name;
        }
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
    }
}

TEST_F(XPosValueTest, TheBottomOfTheStackWinsAndChannelsKeepTheirOrder)
{
    XPosBand blue(kXUInt8), green(kXInt16), red(kXFloat), top(kXUInt8);
    blue.Set(3, 4, 1, 0);
    green.Set(3, 4, -2, 0);
    red.Set(3, 4, 3.5, 0);
    Look(3, 4);
    EXPECT_EQ(result[0], 1) << "no composite";
    EXPECT_EQ(values[1], (Values{kNone, kNone, kNone}));
    Add(1, {}); // the bottom, which nothing can be read of
    Add(1, {&blue, &green, &red});
    XDMComposite* composite = Add(0, {&top});
    for (int i = 0; i < 2; ++i) {
        Look(3, 4);
        for (const int kind : {0, 1})
            EXPECT_EQ(values[kind], (Values{1, -2, 3.5})) << kind;
    }
    Values one = {};
    EXPECT_EQ(view.ShowPosValue(kWidth / 2, kHeight / 2, one.data(), composite), 1);
    EXPECT_EQ(one, (Values{7, kNone, kNone})) << "the one that was asked for";
}

TEST_F(XPosValueTest, ComplexPartsGiveBothNumbersAndFiltersTheirResult)
{
    XPosBand inner(kXInt16Complex), plain(kXUInt8);
    inner.Set(3, 4, 3, -4);
    XDMBandComplex part;
    ASSERT_TRUE(part.Create(&inner, kXComplexMagnitude));
    Add(0, {&part});
    Look(3, 4);
    for (const int kind : {0, 1})
        EXPECT_EQ(values[kind], (Values{3, -4, kNone}));
    view.GetXDMCompManager()->RemoveXDMCompositeAll();

    for (const int x : {0, 20, 39}) {
        plain.Set(x, 10, 250, 0);
        XDMBandSpatialFilter median;
        ASSERT_TRUE(median.Create(&plain, kXFilterMedian, 3));
        Add(0, {&median});
        Look(x, 10);
        for (const int kind : {0, 1})
            EXPECT_EQ(values[kind], (Values{7, kNone, kNone})) << "a single peak is gone, at " << x;
        Look(x, -1);
        EXPECT_EQ(result[0], 0);
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
        plain.Set(x, 10, 7, 0);
    }
    Add(1, {nullptr, &plain}); // no first band: as a filter
    Look(5, 5);
    for (const int kind : {0, 1})
        EXPECT_EQ(values[kind], (Values{kNone, 7, kNone}));
}

TEST_F(XPosValueTest, WhatCannotBeReadHasNoData)
{
    for (const int type : {kXUInt8, kXFloatComplex}) {
        XBrokenBand band(type);
        Add(0, {&band});
        Look(3, 4);
        for (const int kind : {0, 1}) {
            EXPECT_EQ(result[kind], 1);
            EXPECT_EQ(values[kind], (Values{kNone, kNone, kNone}));
        }
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
    }
}

} // namespace
