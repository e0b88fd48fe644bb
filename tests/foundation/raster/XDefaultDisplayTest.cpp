#include "foundation/raster/XDefaultDisplay.h"

#include "foundation/raster/XRSFile.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(XDefaultStretch, FirstRangesOfAllKindsOfBands)
{
    const struct
    {
        const char* name;
        int type;
        double (*value)(int, int);
        double null;
        double low, high, slack;
        int role = 0;
    } kCases[] = {
        {"bytes of a photograph, dark as they may be", kXUInt8,
         [](int x, int) { return double(x % 9); }, kXNotSet, 0, 255, 0, 3},
        {"faint bytes from 2 to 98 per cent", kXUInt8,
         [](int x, int) { return x < 10 ? 200.0 : 40.0 + x % 41; }, kXNotSet, 40, 80, 2},
        {"bytes that fill their range", kXUInt8, [](int x, int) { return double(x % 250); },
         kXNotSet, 0, 255, 0},
        {"16 bits from 2 to 98 per cent", kXUInt16, [](int x, int) { return x * 10.0; }, kXNotSet,
         100, 4900, 40},
        {"no data does not count", kXInt16, [](int x, int) { return x < 250 ? -9999.0 : x * 10.0; },
         -9999, 2550, 4940, 40},
        {"one wild pixel does not squeeze the rest", kXFloat,
         [](int x, int y) { return x + y == 0 ? 1e9 : x / 500.0; }, kXNotSet, 0.02, 0.98, 0.01},
        {"a null that is no exact float, and a wild pixel", kXFloat,
         [](int x, int y) { return x + y == 0 ? 1e9
                                   : x < 250  ? -9999.9
                                              : x / 500.0; }, -9999.9,
         0.51, 0.99, 0.01},
        {"a constant image", kXInt32, [](int, int) { return 7.0; }, kXNotSet, 7, 7, 0},
        {"nothing but no data", kXFloat, [](int, int) { return kNaN; }, kXNotSet, 0, 255, 0},
    };
    for (const auto& row : kCases) {
        auto band = XfnMakeBand(row.type, 500, 60, row.value);
        if (row.null != kXNotSet) band->SetNullValue(row.null);
        band->SetColorInterpretation(row.role);
        XDMComposite composite;
        composite.SetBand(band.get(), 0);
        XfnDefaultStretch(&composite);
        EXPECT_NEAR(composite.GetCutMin(0), row.low, row.slack) << row.name;
        EXPECT_NEAR(composite.GetCutMax(0), row.high, row.slack) << row.name;
        XBackBuffer buffer = XfnMakeSurface(50, 50);
        EXPECT_TRUE(XfnDrawAll(composite, buffer)) << row.name;
    }
    XfnDefaultStretch(nullptr);
    XDMComposite empty(1);
    XfnDefaultStretch(&empty);
}

TEST(XDefaultStretch, AClassMapBringsItsColours)
{
    auto band = XfnMakeBand(kXUInt8, {{0, 1, 2}});
    std::vector<tagXRSGIS> classes(3);
    classes[1].red = 200, classes[1].green = 100, classes[1].blue = 50;
    band->SetGISTable(classes, 1);
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    XfnDefaultStretch(&composite);
    XBackBuffer buffer = XfnMakeSurface(3, 1);
    ASSERT_TRUE(XfnDrawAll(composite, buffer));
    EXPECT_EQ(buffer.GetRow(0)[1], 0xFFC86432u);
    auto plain = XfnMakeBand(kXUInt8, {{10}});
    composite.SetBand(plain.get(), 0);
    XfnDefaultStretch(&composite);
    ASSERT_TRUE(XfnDrawAll(composite, buffer));
    EXPECT_EQ(buffer.GetRow(0)[0], 0xFF0A0A0Au) << "the colours go with the band";
}

TEST(XDefaultBands, RolesThenHeaderThenWavelengthsThenOrder)
{
    struct tagSpec
    {
        int role;
        double wavelength;
    };
    const struct
    {
        const char* name;
        std::vector<tagSpec> bands;
        int mode;
        int rgb[3];
    } kCases[] = {
        {"no band", {}, -1, {0, 0, 0}},
        {"one", {{0, kXNotSet}}, 0, {0, 0, 0}},
        {"two", {{0, kXNotSet}, {0, kXNotSet}}, 0, {0, 0, 0}},
        {"gray and alpha", {{6, kXNotSet}, {1, kXNotSet}}, 0, {1, 1, 1}},
        {"by role in any order",
         {{5, kXNotSet}, {6, kXNotSet}, {3, kXNotSet}, {4, kXNotSet}},
         1,
         {2, 3, 0}},
        {"by wavelength", {{0, 860}, {0, 665}, {0, 490}, {0, 560}}, 1, {1, 3, 2}},
        {"too few wavelengths", {{0, 860}, {0, 665}, {0, kXNotSet}, {0, kXNotSet}}, 1, {0, 1, 2}},
        {"the first three that are colours",
         {{6, kXNotSet}, {0, kXNotSet}, {0, kXNotSet}, {0, kXNotSet}},
         1,
         {1, 2, 3}},
    };
    for (const auto& row : kCases) {
        XRSFile file;
        for (const tagSpec& spec : row.bands) {
            auto band = XfnMakeBand(kXUInt8, {{0}});
            band->SetColorInterpretation(spec.role);
            band->SetWaveLength(spec.wavelength);
            file.AddBand(band.release());
        }
        int rgb[3] = {9, 9, 9};
        EXPECT_EQ(XfnDefaultBands(&file, rgb), row.mode) << row.name;
        for (int k = 0; k < 3; ++k)
            EXPECT_EQ(rgb[k], row.rgb[k]) << row.name << " " << k;
    }
    int rgb[3];
    EXPECT_EQ(XfnDefaultBands(nullptr, rgb), -1);
}

} // namespace
