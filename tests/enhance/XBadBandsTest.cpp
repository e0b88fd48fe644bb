#include "enhance/XStretchModel.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XStretchPreset.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr std::uint32_t kUntouched = 0xFF102030u;

struct tagBadBand
{
    const char* name;
    int dataType;
    std::function<double(int x, int y)> value; // 8 x 8 pixels, the null value is -9
    bool isFirstDrawn;                         // the pixel in the upper left corner
};

const tagBadBand kBands[] = {
    {"one value", kXUInt16, [](int, int) { return 7.0; }, true},
    {"zeros", kXUInt8, [](int, int) { return 0.0; }, true},
    {"one value of floats", kXFloat, [](int, int) { return -3.5; }, true},
    {"no data at all", kXFloat, [](int, int) { return -9.0; }, false},
    {"no number at all", kXFloat, [](int, int) { return kNaN; }, false},
    {"a number among none", kXDouble, [](int x, int y) { return x + y ? kNaN : 4.0; }, true},
    {"infinities among numbers", kXFloat,
     [](int x, int y) { return x + y == 0    ? -kInf
                               : x + y == 14 ? kInf
                                             : x; }, true},
    {"nothing but infinities", kXFloat, [](int x, int) { return x < 4 ? -kInf : kInf; }, true},
    {"a range too wide to measure", kXDouble, [](int x, int) { return x < 4 ? -1.6e308 : 1.6e308; },
     true},
    {"a range too narrow to divide", kXDouble, [](int x, int) { return x < 4 ? 0.0 : 5e-324; },
     true},
    {"the largest integers", kXInt32, [](int x, int) { return x < 4 ? -2147483648.0 : 2147483647; },
     true},
};

std::unique_ptr<XDMBandMemory> MakeBand(const tagBadBand& row)
{
    auto band = XfnMakeBand(row.dataType, 8, 8, row.value);
    if (row.dataType != kXUInt8) band->SetNullValue(-9);
    return band;
}

// A finite range the right way round, within the numbers of the band where it has any.
void ExpectSaneCut(double low, double high, const XDMBand& band, const std::string& what)
{
    EXPECT_TRUE(std::isfinite(low) && std::isfinite(high)) << what << ": " << low << " " << high;
    EXPECT_LE(low, high) << what;
    if (!XfnIsSet(band.GetBandMin()) || !XfnIsSet(band.GetBandMax())) return;
    EXPECT_GE(low, band.GetBandMin()) << what;
    EXPECT_LE(high, band.GetBandMax()) << what;
}

TEST(XBadBands, EveryPresetIsDrawn)
{
    for (const tagBadBand& row : kBands) {
        const auto band = MakeBand(row);
        XDMCompManager manager;
        XDMComposite* composite = manager.NewXDMComposite(0);
        composite->SetBand(band.get(), 0);
        manager.AddXDMComposite(composite);
        for (const tagXStretchPreset& preset : XfnGetStretchPresets()) {
            const std::string what = std::string(row.name) + ", " + preset.label;
            XfnEnhanceEx(manager, preset.coverage, preset.cutType, preset.stretchType);
            XBackBuffer surface = XfnMakeSurface(8, 8, kUntouched);
            EXPECT_TRUE(XfnDrawAll(*composite, surface)) << what;
            ExpectSaneCut(composite->GetCutMin(0), composite->GetCutMax(0), *band, what);
            const bool isDrawn = surface.GetImage().pixel(0, 0) != kUntouched;
            EXPECT_EQ(isDrawn, row.isFirstDrawn) << what;
        }
    }
}

TEST(XBadBands, TheEngineKeepsOrMakesAWholeTable)
{
    for (const tagBadBand& row : kBands) {
        const auto band = MakeBand(row);
        XDMComposite composite(0);
        composite.SetBand(band.get(), 0);
        composite.SetIntensity000(20, 0);
        composite.SetIntensity255(220, 0);
        composite.UpdateLUT(0);
        XStretchModel model;
        model.SetCurXDMComposite(&composite);
        for (int type = 1; type <= 7; ++type) {
            for (int cut = 1; cut <= 3; ++cut) {
                model.SetStretchType(type);
                model.ApplyCutType(cut);
                EXPECT_EQ(model.GetLUT(0)[0], 20) << row.name << type << cut;
                EXPECT_EQ(model.GetLUT(0)[255], 220) << row.name << type << cut;
            }
        }
        const double before = composite.GetCutMax(0);
        ASSERT_TRUE(model.Apply());
        if (!XfnIsSet(model.GetSubsetMax(0))) {
            EXPECT_EQ(composite.GetCutMax(0), before) << row.name;
        }
    }
}

} // namespace
