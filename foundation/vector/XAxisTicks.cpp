#include "foundation/vector/XAxisTicks.h"

#include "foundation/base/XNumber.h"
#include "foundation/base/XSentinels.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kSlack = 1e-9; // of a step: a limit that misses its tick by rounding has it
constexpr int kMaxDecimals = 15;
constexpr int kGeneralDigits = 12;
constexpr double kPlainBelow = 1e6;  // larger numbers, and ...
constexpr double kPlainAbove = 1e-5; // ... smaller ones, are read better with an exponent
constexpr double kLeast = 1e-290;    // powers of ten stay normal numbers between these
constexpr double kGreatest = 1e290;
constexpr double kMaxMultiple = 1e15; // beyond it a double does not tell neighbours apart

bool IsWorkable(double value)
{
    return value >= kLeast && value <= kGreatest;
}

// The mantissa, 1 to below 10, and the exponent of a positive number.
std::pair<double, int> Split(double value)
{
    int exponent = static_cast<int>(std::floor(std::log10(value)));
    double mantissa = value / std::pow(10.0, exponent);
    if (mantissa >= 10.0 * (1.0 - kSlack)) {
        mantissa /= 10.0;
        ++exponent;
    } else if (mantissa < 1.0 - kSlack) {
        mantissa *= 10.0;
        --exponent;
    }
    return {mantissa, exponent};
}

// Powers below 1 are divided, so that a tenth is the tenth that text means.
double Compose(double mantissa, int exponent)
{
    return exponent >= 0 ? mantissa * std::pow(10.0, exponent)
                         : mantissa / std::pow(10.0, -exponent);
}

double Multiply(double multiple, double step)
{
    const auto [mantissa, exponent] = Split(step);
    const double whole = std::round(mantissa);
    // a round step is taken apart: 3 * 0.1 is not the 0.3 of text
    if (std::fabs(whole - mantissa) < kSlack) return Compose(multiple * whole, exponent);
    return multiple * step;
}

XString FormatTick(double value, double step, double largest, int decimals)
{
    if (value == 0.0) value = 0.0; // no sign
    if (decimals >= 0) return XfnFormatNumber(value, std::min(decimals, kMaxDecimals));
    if (largest >= kPlainBelow || largest < kPlainAbove) {
        return XfnFormatGeneral(value, kGeneralDigits);
    }
    const auto [mantissa, exponent] = Split(step);
    // as many decimals as a step that is no round one needs
    int needed = std::clamp(-exponent, 0, kMaxDecimals);
    for (int i = 0; i < 3 && needed < kMaxDecimals; ++i) {
        const double scaled = step * std::pow(10.0, needed);
        if (std::fabs(scaled - std::round(scaled)) < kSlack * std::max(1.0, scaled)) break;
        ++needed;
    }
    return XfnFormatNumber(value, needed);
}

void AddLinear(const tagXAxisScale& scale, double low, double high,
               std::vector<tagXAxisTick>& ticks)
{
    const double span = high - low;
    if (!IsWorkable(span)) return;
    double step = scale.majorStep;
    if (!IsWorkable(step) || span / step > kXMaxAxisTicks / 10.0) {
        const int count = std::clamp(scale.majorCount, 2, 100);
        // the span in so many parts, rounded to the nearest of 1, 2, 5, 10
        const auto [mantissa, exponent] = Split(span / (count - 1));
        const double round = mantissa < 1.5   ? 1.0
                             : mantissa < 3.0 ? 2.0
                             : mantissa < 7.0 ? 5.0
                                              : 10.0;
        step = Compose(round, exponent);
    }
    const double first = std::ceil(low / step - kSlack);
    const double last = std::floor(high / step + kSlack);
    if (!IsWorkable(step) || !(std::fabs(first) < kMaxMultiple) ||
        !(std::fabs(last) < kMaxMultiple)) {
        return;
    }
    const double mantissa = Split(step).first;
    int minor = scale.minorCount;
    if (minor < 0) minor = std::fabs(mantissa - 2.0) < kSlack ? 3 : 4;
    minor = std::min(minor, 9);
    const double largest = std::max(std::fabs(low), std::fabs(high));
    for (double i = first - 1.0; i <= last; i += 1.0) {
        const double value = Multiply(i, step);
        if (i >= first)
            ticks.push_back({value, true, FormatTick(value, step, largest, scale.decimals)});
        for (int j = 1; j <= minor; ++j) {
            const double between = value + step * j / (minor + 1);
            if (between >= low - kSlack * step && between <= high + kSlack * step) {
                ticks.push_back({between, false, {}});
            }
        }
    }
}

XString FormatDecade(int exponent)
{
    if (exponent < -5 || exponent > 6) return "1e" + XfnFormatNumber(exponent, 0);
    return XfnFormatNumber(Compose(1.0, exponent), std::max(0, -exponent));
}

void AddDecades(const tagXAxisScale& scale, double low, double high,
                std::vector<tagXAxisTick>& ticks)
{
    const int first = static_cast<int>(std::floor(std::log10(low) + kSlack));
    const int last = static_cast<int>(std::ceil(std::log10(high) - kSlack));
    const int count = std::clamp(scale.majorCount, 2, 100);
    const int stride = std::max(1, (last - first + count - 1) / count);
    const auto isWithin = [&](double value) {
        return value >= low * (1.0 - kSlack) && value <= high * (1.0 + kSlack);
    };
    for (int exponent = first; exponent <= last; ++exponent) {
        const double decade = Compose(1.0, exponent);
        const bool isMajor = (exponent - first) % stride == 0;
        if (isWithin(decade)) {
            const XString label =
                scale.decimals >= 0
                    ? XfnFormatNumber(decade, std::min(scale.decimals, kMaxDecimals))
                    : FormatDecade(exponent);
            ticks.push_back({decade, isMajor, isMajor ? label : XString()});
        }
        for (int i = 2; i < 10 && stride == 1 && scale.minorCount != 0; ++i) {
            if (isWithin(i * decade)) ticks.push_back({i * decade, false, {}});
        }
    }
}

} // namespace

std::vector<tagXAxisTick> XfnMakeAxisTicks(const tagXAxisScale& scale)
{
    std::vector<tagXAxisTick> ticks;
    const double low = std::min(scale.minimum, scale.maximum);
    const double high = std::max(scale.minimum, scale.maximum);
    if (!XfnIsSet(scale.minimum) || !XfnIsSet(scale.maximum) || !XfnIsSet(high - low)) return ticks;
    if (low == high) {
        ticks.push_back({low, true, XfnFormatGeneral(low, kGeneralDigits)});
    } else if (scale.isLog && IsWorkable(low) && IsWorkable(high) &&
               high / low >= 10.0 * (1.0 - kSlack)) {
        AddDecades(scale, low, high, ticks);
    } else {
        AddLinear(scale, low, high, ticks);
    }
    if (ticks.size() > static_cast<std::size_t>(kXMaxAxisTicks)) ticks.resize(kXMaxAxisTicks);
    return ticks;
}

double XfnGetRoundStepUp(double value)
{
    if (!IsWorkable(value)) return 0.0;
    const auto [mantissa, exponent] = Split(value);
    for (const double round : {1.0, 2.0, 5.0}) {
        if (mantissa <= round * (1.0 + kSlack)) return Compose(round, exponent);
    }
    return Compose(1.0, exponent + 1);
}

double XfnGetRoundStepDown(double value)
{
    if (!IsWorkable(value)) return 0.0;
    const auto [mantissa, exponent] = Split(value);
    for (const double round : {5.0, 2.0}) {
        if (mantissa >= round * (1.0 - kSlack)) return Compose(round, exponent);
    }
    return Compose(1.0, exponent);
}
