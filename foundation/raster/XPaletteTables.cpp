#include "foundation/raster/XPaletteTables.h"

#include "foundation/raster/XPaletteShapes.h"

namespace {

// Tables that hosts know entry by entry, and such as are straight ramps of red, green and blue.
struct ByteRamps
{
    int palette;
    std::initializer_list<tagXByteKnot> colors[3];
};

const ByteRamps kByteRamps[] = {
    {2,
     {{{0, 229}, {59, 0}, {114, 0}, {173, 255}, {255, 255}},
      {{0, 0},
       {38, 0},
       {89, 255},
       {114, 153},
       {127, 153},
       {153, 255},
       {186, 255},
       {254, 3},
       {255, 3}},
      {{0, 255}, {63, 255}, {127, 0}, {229, 0}, {254, 85}, {255, 85}}}},
    {4, // the spectrum without violet, wide in yellow
     {{{0, 0}, {110, 0}, {150, 255}, {255, 255}},
      {{0, 0}, {50, 255}, {190, 255}, {255, 0}},
      {{0, 255}, {50, 255}, {110, 0}, {255, 0}}}},
    {5,
     {{{0, 0}, {127, 0}, {192, 255}, {255, 255}},
      {{0, 0}, {64, 255}, {192, 255}, {255, 0}},
      {{0, 255}, {63, 255}, {127, 0}, {255, 0}}}},
    {17,
     {{{0, 0}, {177, 255}, {255, 255}},
      {{0, 0}, {121, 1}, {255, 255}},
      {{0, 0}, {190, 0}, {255, 255}}}},
    {18,
     {{{0, 0}, {85, 220}, {170, 30}, {255, 255}},
      {{0, 160}, {85, 20}, {170, 60}, {255, 255}},
      {{0, 40}, {85, 30}, {170, 220}, {255, 255}}}},
    {19,
     {{{0, 20}, {85, 0}, {170, 225}, {255, 255}},
      {{0, 40}, {85, 165}, {170, 25}, {255, 240}},
      {{0, 200}, {85, 50}, {170, 25}, {255, 40}}}},
    {53,
     {{{0, 0}, {68, 1}, {128, 26}, {192, 204}, {255, 230}},
      {{0, 75}, {64, 200}, {128, 115}, {192, 127}, {255, 229}},
      {{0, 255}, {64, 255}, {128, 73}, {192, 76}, {255, 228}}}},
    {56, {{{0, 117}, {255, 214}}, {{0, 117}, {255, 214}}, {{0, 117}, {255, 214}}}},
    {57,
     {{{0, 0}, {85, 0}, {170, 255}, {255, 255}},
      {{0, 0}, {85, 255}, {170, 255}, {255, 1}},
      {{0, 255}, {85, 255}, {170, 0}, {255, 0}}}},
    {58, {{{0, 255}, {255, 0}}, {{0, 0}}, {{0, 0}, {255, 255}}}},
    {59, {{{0, 255}}, {{0, 0}, {255, 255}}, {{0, 0}}}},
    {64,
     {{{0, 255}, {42, 254}, {84, 27}, {88, 25}, {169, 25}, {171, 32}, {212, 254}, {255, 255}},
      {{0, 25}, {84, 25}, {92, 66}, {127, 255}, {212, 255}, {214, 246}, {255, 25}},
      {{0, 30}, {41, 252}, {43, 255}, {127, 255}, {169, 29}, {170, 25}, {255, 25}}}},
    {67, // depths of water up to the shore, then land
     {{{0, 5}, {110, 70}, {127, 190}, {128, 60}, {190, 205}, {255, 250}},
      {{0, 20}, {110, 160}, {127, 230}, {128, 140}, {190, 180}, {255, 248}},
      {{0, 70}, {110, 220}, {127, 250}, {128, 60}, {190, 120}, {255, 245}}}},
    {68, {{{0, 255}, {255, 0}}, {{0, 255}, {255, 0}}, {{0, 0}, {255, 255}}}},
};

XRgbBytes ByteRampsAt(int palette, int entry)
{
    for (const ByteRamps& ramps : kByteRamps) {
        if (ramps.palette != palette) continue;
        XRgbBytes rgb{};
        for (std::size_t i = 0; i < 3; ++i)
            rgb[i] = XfnRampAt({ramps.colors[i].begin(), ramps.colors[i].size()}, entry);
        return rgb;
    }
    return {};
}

// Ramps and diverging tables, even in lightness.
struct LabRamps
{
    int palette;
    double lightness[3];
    std::initializer_list<tagXChromaKnot> knots;
};

const LabRamps kLabRamps[] = {
    {16, {0, 50, 100}, {{0, 0, 285}, {100, 75, 285}, {255, 0, 260}}},
    {20, {0, 50, 100}, {{0, 0, 300}, {50, 60, 300}, {110, 80, 10}, {180, 80, 70}, {255, 0, 100}}},
    {22, {0, 50, 100}, {{0, 0, 315}, {110, 75, 315}, {255, 0, 320}}},
    {23, {0, 50, 100}, {{0, 0, 140}, {130, 70, 140}, {255, 0, 130}}},
    {24, {38, 94, 45}, {{0, 55, 145}, {127, 4, 100}, {128, 4, 20}, {255, 70, 355}}},
    {25, {32, 92, 42}, {{0, 80, 285}, {127, 3, 260}, {128, 3, 40}, {255, 80, 32}}},
    {28, {28, 61, 94}, {{0, 32, 300}, {130, 26, 350}, {255, 22, 75}}},
    {29, {62, 95, 62}, {{0, 38, 265}, {127, 14, 105}, {128, 14, 100}, {255, 42, 25}}},
    {36, {30, 62, 94}, {{0, 38, 255}, {110, 34, 215}, {150, 24, 100}, {255, 14, 90}}},
    {38, {8, 52, 97}, {{0, 35, 290}, {90, 55, 345}, {170, 62, 45}, {255, 18, 95}}},
    {39, {95, 52, 10}, {{0, 20, 220}, {80, 35, 260}, {170, 55, 320}, {255, 20, 10}}},
    {42, {20, 58, 97}, {{0, 40, 265}, {70, 42, 140}, {150, 45, 105}, {200, 30, 70}, {255, 2, 80}}},
    {43, {5, 50, 98}, {{0, 28, 285}, {90, 48, 265}, {180, 36, 205}, {255, 4, 195}}},
    {45, {10, 53, 96}, {{0, 60, 300}, {85, 75, 325}, {160, 72, 30}, {255, 70, 105}}},
    {46, {2, 46, 90}, {{0, 4, 30}, {90, 75, 35}, {170, 80, 65}, {215, 55, 85}, {255, 6, 90}}},
    {51, {35, 95, 38}, {{0, 42, 60}, {127, 8, 95}, {128, 8, 110}, {255, 46, 140}}},
    {55, {0, 50, 100}, {{0, 0, 200}, {90, 38, 205}, {180, 62, 120}, {255, 0, 110}}},
};

XRgbBytes LabRampAt(int palette, int entry)
{
    for (const LabRamps& ramp : kLabRamps) {
        if (ramp.palette != palette) continue;
        const auto& l = ramp.lightness;
        return XfnLabRampAt({{l[0], l[1], l[2]}, {ramp.knots.begin(), ramp.knots.size()}}, entry);
    }
    return {};
}

XRgbBytes ReversedRainBow(int, int entry)
{
    return ByteRampsAt(2, 255 - entry);
}

// One colour against black, or against white.
XRgbBytes PureRampAt(int palette, int entry)
{
    const auto level = static_cast<unsigned char>(entry);
    if (palette == 1) return {level, level, level};
    const bool isOnWhite = palette >= 13;
    XRgbBytes rgb = isOnWhite ? XRgbBytes{level, level, level} : XRgbBytes{0, 0, 0};
    rgb[static_cast<std::size_t>((palette - 10) % 3)] = isOnWhite ? 255 : level;
    return rgb;
}

constexpr int kAll = 256;
constexpr int kAllButTop = 255;

const tagXPaletteRow kRows[kXPaletteCount] = {
    {"Grey", kAll, PureRampAt},
    {"RainBow", kAll, ByteRampsAt},
    {"RainBow_Reversed", kAll, ReversedRainBow},
    {"RainBow1", kAll, ByteRampsAt},
    {"RainBow2", kAll, ByteRampsAt},
    {"Black + Rainbow", kAll, XfnPaletteFramedRainbow},
    {"Rainbow + Black", kAll, XfnPaletteFramedRainbow},
    {"White + Rainbow", kAll, XfnPaletteFramedRainbow},
    {"Rainbow + White", kAll, XfnPaletteFramedRainbow},
    {"Black - Red", kAllButTop, PureRampAt},
    {"Black - Green", kAllButTop, PureRampAt},
    {"Black - Blue", kAllButTop, PureRampAt},
    {"Red - White", kAllButTop, PureRampAt},
    {"Green - White", kAllButTop, PureRampAt},
    {"Blue - White", kAllButTop, PureRampAt},
    {"Dark - Blue - White", kAll, LabRampAt},
    {"Dark - Red - White", kAll, ByteRampsAt},
    {"Green - Red - Blue - White", kAll, ByteRampsAt},
    {"Blue - Green - Red - Yellow", kAll, ByteRampsAt},
    {"Standard GAMMA-II", kAll, LabRampAt},
    {"Prism", kAll, XfnPalettePrism},
    {"Dark - Purple - White", kAll, LabRampAt},
    {"Dark - Green - White", kAll, LabRampAt},
    {"Green - Pink", kAll, LabRampAt},
    {"Blue - Red", kAll, LabRampAt},
    {"16 LEVEL", kAll, XfnPaletteBandedLevels},
    {"Steps", kAll, XfnPaletteSteps},
    {"Haze", kAll, LabRampAt},
    {"Blue - Pastel - Red", kAll, LabRampAt},
    {"Pastels", kAll, XfnPalettePastels},
    {"Hue Sat Lightness 1", kAll, XfnPaletteHueSweep},
    {"Hue Sat Lightness 2", kAll, XfnPaletteHueSweep},
    {"Hue Sat Value 1", kAll, XfnPaletteHueSweep},
    {"Hue Sat Value 2", kAll, XfnPaletteHueSweep},
    {"Stripy Purple - Red", kAll, XfnPaletteStripes},
    {"Beach", kAll, LabRampAt},
    {"Mac Style", kAll, XfnPaletteHueSweep},
    {"Eos A", kAll, LabRampAt},
    {"Eos B", kAll, LabRampAt},
    {"Dark - Rainbow", kAll, XfnPaletteHueSweep},
    {"Hard Candy", kAll, XfnPaletteHardCandy},
    {"Nature", kAll, LabRampAt},
    {"Ocean", kAll, LabRampAt},
    {"Peppermint", kAll, XfnPalettePeppermint},
    {"Plasma", kAll, LabRampAt},
    {"Volcano", kAll, LabRampAt},
    {"Waves", kAll, XfnPaletteWaves},
    {"Blue Waves", kAll, XfnPaletteWaves},
    {"Amp phase", kAll, XfnPaletteCycle},
    {"Azimuth", kAll, XfnPaletteCycle},
    {"Brown - Green", kAll, LabRampAt},
    {"Contour", kAll, XfnPaletteContour},
    {"Elevation", kAll, ByteRampsAt},
    {"Hue", kAll, XfnPaletteHueSweep},
    {"Lutramp", kAll, LabRampAt},
    {"New Grey", kAll, ByteRampsAt},
    {"PseudoColor", kAll, ByteRampsAt},
    {"Red - Blue", kAll, ByteRampsAt},
    {"Red - Yellow - SAR", kAll, ByteRampsAt},
    {"RGB", kAll, XfnPaletteBlocks},
    {"RGB_Reduce", kAll, XfnPaletteCube},
    {"Rt - Shade", kAll, XfnPaletteShade},
    {"SAW", kAll, XfnPaletteSaw},
    {"Spectrum", kAll, ByteRampsAt},
    {"Step", kAll, XfnPaletteEvenSteps},
    {"Unique", kAll, XfnPaletteUnique},
    {"Waterlevel", kAll, ByteRampsAt},
    {"Yellow - Blue", kAll, ByteRampsAt},
};

} // namespace

const tagXPaletteRow& XfnGetPaletteRow(int index)
{
    return kRows[index - 1];
}
