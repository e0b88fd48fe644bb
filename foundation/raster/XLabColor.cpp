#include "foundation/raster/XLabColor.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kWhite[3] = {0.95047, 1.0, 1.08883}; // X, Y, Z of D65
constexpr double kToXyz[3][3] = {{0.4124564, 0.3575761, 0.1804375},
                                 {0.2126729, 0.7151522, 0.0721750},
                                 {0.0193339, 0.1191920, 0.9503041}};
constexpr double kToRgb[3][3] = {{3.2404542, -1.5371385, -0.4985314},
                                 {-0.9692660, 1.8760108, 0.0415560},
                                 {0.0556434, -0.2040259, 1.0572252}};
constexpr double kEpsilon = 216.0 / 24389.0;
constexpr double kKappa = 24389.0 / 27.0;

double ToLinear(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double FromLinear(double value)
{
    return value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1.0 / 2.4) - 0.055;
}

double Curve(double ratio)
{
    return ratio > kEpsilon ? std::cbrt(ratio) : (kKappa * ratio + 16.0) / 116.0;
}

double Uncurve(double value)
{
    const double cube = value * value * value;
    return cube > kEpsilon ? cube : (116.0 * value - 16.0) / kKappa;
}

std::array<double, 3> ToLinearRgb(const tagXLab& lab)
{
    const double fy = (lab.lightness + 16.0) / 116.0;
    const double xyz[3] = {kWhite[0] * Uncurve(fy + lab.a / 500.0), kWhite[1] * Uncurve(fy),
                           kWhite[2] * Uncurve(fy - lab.b / 200.0)};
    std::array<double, 3> rgb{};
    for (int i = 0; i < 3; ++i)
        rgb[i] = kToRgb[i][0] * xyz[0] + kToRgb[i][1] * xyz[1] + kToRgb[i][2] * xyz[2];
    return rgb;
}

bool IsShown(const std::array<double, 3>& rgb)
{
    constexpr double kSlack = 1e-3; // white itself is off by the digits of the matrices
    return std::all_of(rgb.begin(), rgb.end(),
                       [](double value) { return value >= -kSlack && value <= 1.0 + kSlack; });
}

} // namespace

tagXLab XfnRgbToLab(const XRgbBytes& rgb)
{
    double linear[3];
    for (int i = 0; i < 3; ++i)
        linear[i] = ToLinear(rgb[i] / 255.0);
    double f[3];
    for (int i = 0; i < 3; ++i) {
        const double* row = kToXyz[i];
        f[i] = Curve((row[0] * linear[0] + row[1] * linear[1] + row[2] * linear[2]) / kWhite[i]);
    }
    return {116.0 * f[1] - 16.0, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
}

XRgbBytes XfnLabToRgb(const tagXLab& lab)
{
    double low = 0.0, high = 1.0;
    std::array<double, 3> linear = ToLinearRgb(lab);
    if (!IsShown(linear)) {
        for (int step = 0; step < 24; ++step) {
            const double middle = (low + high) / 2.0;
            const bool shown =
                IsShown(ToLinearRgb({lab.lightness, lab.a * middle, lab.b * middle}));
            (shown ? low : high) = middle;
        }
        linear = ToLinearRgb({lab.lightness, lab.a * low, lab.b * low});
    }
    int nearest[3];
    for (int i = 0; i < 3; ++i)
        nearest[i] = static_cast<int>(std::lround(
            255.0 * FromLinear(std::clamp(linear[static_cast<std::size_t>(i)], 0.0, 1.0))));

    // rounding each byte by itself would make the lightness of neighbours jump
    XRgbBytes best{};
    double bestError = 1e9;
    for (int near = 0; near < 27; ++near) {
        const int offset[3] = {near % 3 - 1, near / 3 % 3 - 1, near / 9 - 1};
        XRgbBytes bytes{};
        double moved = 0.0;
        for (int i = 0; i < 3; ++i) {
            bytes[static_cast<std::size_t>(i)] =
                static_cast<unsigned char>(std::clamp(nearest[i] + offset[i], 0, 255));
            moved += std::abs(offset[i]);
        }
        const double error =
            std::fabs(XfnRgbToLab(bytes).lightness - lab.lightness) + 0.005 * moved;
        if (error < bestError) {
            bestError = error;
            best = bytes;
        }
    }
    return best;
}
