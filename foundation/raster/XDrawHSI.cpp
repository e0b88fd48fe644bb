#include "foundation/raster/XDrawHSI.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

tagXHsiTable MakeTable()
{
    // where the low, the high and the third component of a sector stand in 0x00RRGGBB
    constexpr std::uint8_t kShifts[3][3] = {{0, 16, 8}, {16, 8, 0}, {8, 0, 16}};
    constexpr double kDegree = std::numbers::pi / 180.0;
    tagXHsiTable table;
    for (int h = 0; h < 256; ++h) {
        const double degrees = h == 255 ? 0.0 : h * 360.0 / 255.0; // both ends are red
        const int sector = std::min(static_cast<int>(degrees / 120.0), 2);
        const double within = degrees - sector * 120.0;
        table.ratio[h] =
            static_cast<float>(std::cos(within * kDegree) / std::cos((60.0 - within) * kDegree));
        table.shiftLow[h] = kShifts[sector][0];
        table.shiftHigh[h] = kShifts[sector][1];
        table.shiftRest[h] = kShifts[sector][2];
    }
    return table;
}

} // namespace

const tagXHsiTable& XfnGetHsiTable()
{
    static const tagXHsiTable table = MakeTable();
    return table;
}

std::uint32_t XfnHsiToRgb(std::uint8_t hue, std::uint8_t saturation, std::uint8_t intensity)
{
    return XfnHsiWord(XfnGetHsiTable(), hue, saturation, intensity);
}

void XfnRgbToHsi(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t& hue,
                 std::uint8_t& saturation, std::uint8_t& intensity)
{
    const double r = red, g = green, b = blue;
    const double sum = r + g + b;
    intensity = static_cast<std::uint8_t>(std::lround(sum / 3.0));
    saturation = sum > 0.0 ? static_cast<std::uint8_t>(
                                 std::lround(255.0 * (1.0 - 3.0 * std::min({r, g, b}) / sum)))
                           : std::uint8_t{0};
    const double across = std::sqrt((r - g) * (r - g) + (r - b) * (g - b));
    hue = 0;
    if (!(across > 0.0)) return;
    const double angle = std::acos(std::clamp(0.5 * ((r - g) + (r - b)) / across, -1.0, 1.0));
    const double turn = b > g ? 2.0 * std::numbers::pi - angle : angle;
    hue = static_cast<std::uint8_t>(std::lround(turn / (2.0 * std::numbers::pi) * 255.0));
}
