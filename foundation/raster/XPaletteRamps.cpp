#include "foundation/raster/XPaletteTables.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

template <class Knot>
std::size_t FindLeg(std::span<const Knot> knots, int entry)
{
    std::size_t leg = 0;
    while (leg + 2 < knots.size() && entry > knots[leg + 1].entry)
        ++leg;
    return leg;
}

} // namespace

unsigned char XfnRampAt(std::span<const tagXByteKnot> knots, int entry)
{
    if (knots.size() == 1) return static_cast<unsigned char>(knots[0].value);
    const std::size_t leg = FindLeg(knots, entry);
    const tagXByteKnot& from = knots[leg];
    const tagXByteKnot& to = knots[leg + 1];
    const double share = static_cast<double>(entry - from.entry) / (to.entry - from.entry);
    return static_cast<unsigned char>(std::lround(from.value + share * (to.value - from.value)));
}

XRgbBytes XfnLabRampAt(const tagXLabRamp& ramp, int entry)
{
    const std::size_t leg = FindLeg(ramp.knots, entry);
    const tagXChromaKnot& from = ramp.knots[leg];
    const tagXChromaKnot& to = ramp.knots[leg + 1];
    const double share = static_cast<double>(entry - from.entry) / (to.entry - from.entry);
    const double fromHue = from.hue * std::numbers::pi / 180.0;
    const double toHue = to.hue * std::numbers::pi / 180.0;
    const double place = 2.0 * entry / 255.0;
    const double lightness = place < 1.0
                                 ? std::lerp(ramp.lightness[0], ramp.lightness[1], place)
                                 : std::lerp(ramp.lightness[1], ramp.lightness[2], place - 1.0);
    return XfnLabToRgb(
        {lightness, std::lerp(from.chroma * std::cos(fromHue), to.chroma * std::cos(toHue), share),
         std::lerp(from.chroma * std::sin(fromHue), to.chroma * std::sin(toHue), share)});
}

XRgbBytes XfnHsvToRgb(double hue, double saturation, double value)
{
    const double turn = hue / 60.0 - 6.0 * std::floor(hue / 360.0);
    XRgbBytes rgb{};
    for (int i = 0; i < 3; ++i) {
        const double place = std::fmod(turn + (i == 0 ? 5.0 : i == 1 ? 3.0 : 1.0), 6.0);
        const double part = std::clamp(std::min(place, 4.0 - place), 0.0, 1.0);
        rgb[static_cast<std::size_t>(i)] =
            static_cast<unsigned char>(std::lround(255.0 * value * (1.0 - saturation * part)));
    }
    return rgb;
}
