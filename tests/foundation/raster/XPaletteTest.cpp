#include "foundation/raster/XPalette.h"

#include "foundation/base/XString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string>

namespace {

struct Palette
{
    std::array<unsigned char, 256> rgb[3]{};

    explicit Palette(int index)
    {
        XfnGetPalette(index, rgb[0].data(), rgb[1].data(), rgb[2].data());
    }

    std::array<int, 3> At(int entry) const
    {
        const auto i = static_cast<std::size_t>(entry);
        return {rgb[0][i], rgb[1][i], rgb[2][i]};
    }
    double GetLightness(int entry) const // CIE L* from the luminance of sRGB
    {
        constexpr double kShare[] = {0.2126, 0.7152, 0.0722};
        double luminance = 0.0;
        for (int i = 0; i < 3; ++i) {
            const double value = At(entry)[static_cast<std::size_t>(i)] / 255.0;
            luminance += kShare[i] * (value <= 0.04045 ? value / 12.92
                                                       : std::pow((value + 0.055) / 1.055, 2.4));
        }
        return luminance > 0.008856 ? 116.0 * std::cbrt(luminance) - 16.0 : 903.3 * luminance;
    }
};

std::string GetName(int index)
{
    XString name = "untouched";
    XfnGetPaletteName(index, &name);
    return std::string(name);
}

TEST(XPalette, EntriesThatHostsKnow)
{
    const struct
    {
        const char* reason;
        int palette;
        int entry;
        std::array<int, 3> rgb;
    } kCases[] = {
        {"a rule for all entries", 1, 255, {255, 255, 255}},
        {"a colour on black", 11, 200, {0, 200, 0}},
        {"a colour on white", 15, 30, {30, 30, 255}},
        {"a knot", 2, 114, {0, 153, 52}},
        {"the last knots", 2, 255, {255, 3, 85}},
        {"read backwards", 3, 0, {255, 3, 85}},
        {"a step's black entry", 26, 0, {0, 0, 0}},
        {"a step", 26, 1, {0, 84, 0}},
        {"a step that climbs", 26, 223, {223, 190, 190}},
        {"the top step", 26, 240, {255, 255, 255}},
        {"a ramp of land", 53, 192, {204, 127, 76}},
        {"a gray that is neither black nor white", 56, 0, {117, 117, 117}},
        {"a constant colour", 58, 100, {155, 0, 100}},
        {"the spectrum", 64, 127, {25, 255, 255}},
    };
    for (const auto& row : kCases) {
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(Palette(row.palette).At(row.entry)[i], row.rgb[i], 2) << row.reason;
    }
    for (int i = 0; i < 256; ++i) {
        const auto shade = Palette(62).At(i);
        EXPECT_TRUE(shade[0] == shade[1] && shade[1] == shade[2]) << i;
    }
    EXPECT_EQ(GetName(26), "16 LEVEL");
    EXPECT_EQ(GetName(68), "Yellow - Blue");
    EXPECT_EQ(GetName(0), "Default");
    EXPECT_EQ(GetName(69), "Default");
}

TEST(XPalette, WhatIsNotWrittenStays)
{
    Palette shown(2);
    const auto top = shown.At(255);
    for (const int index : {0, 69, -1, 10, 15})
        XfnGetPalette(index, shown.rgb[0].data(), shown.rgb[1].data(), shown.rgb[2].data());
    EXPECT_EQ(shown.At(255), top);
    EXPECT_EQ(shown.At(254), (std::array<int, 3>{254, 254, 255}));
}

TEST(XPalette, RampsAreEvenInLightnessAndNoneIsACopy)
{
    const struct
    {
        int palette;
        int sections; // 1 a ramp, 2 a diverging table
    } kRamps[] = {{1, 1},  {31, 1}, {32, 1}, {16, 1}, {20, 1}, {22, 1}, {23, 1}, {28, 1},
                  {36, 1}, {38, 1}, {39, 1}, {42, 1}, {43, 1}, {45, 1}, {46, 1}, {55, 1},
                  {62, 1}, {24, 2}, {25, 2}, {29, 2}, {51, 2}, {50, 2}};
    for (const auto& row : kRamps) {
        const Palette palette(row.palette);
        const int length = 256 / row.sections;
        for (int first = 0; first < 256; first += length) {
            const double span =
                palette.GetLightness(first + length - 1) - palette.GetLightness(first);
            const double mean = span / (length - 1);
            EXPECT_GT(std::fabs(span), 25.0) << GetName(row.palette);
            for (int i = first + 1; i < first + length; ++i) {
                const double step = palette.GetLightness(i) - palette.GetLightness(i - 1);
                ASSERT_GE(step / mean, -0.2) << GetName(row.palette) << " at " << i;
                ASSERT_LE(step / mean, 2.0) << GetName(row.palette) << " at " << i;
            }
        }
    }
    std::set<std::array<std::array<unsigned char, 256>, 3>> tables;
    for (int index = 1; index <= XfnGetNumberOfPalette(); ++index) {
        const Palette palette(index);
        tables.insert({palette.rgb[0], palette.rgb[1], palette.rgb[2]});
    }
    EXPECT_EQ(tables.size(), 68u);
    std::set<std::array<int, 3>> unique;
    for (int i = 0; i < 256; ++i)
        unique.insert(Palette(66).At(i));
    EXPECT_EQ(unique.size(), 256u);
}

} // namespace
