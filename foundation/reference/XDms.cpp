#include "foundation/reference/XDms.h"

#include "foundation/base/XNumber.h"
#include "foundation/base/XSentinels.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPrintedAsMinute = 5e-9; // seconds; eight decimals would round them to 60
constexpr double kMaxDegrees = 2147483646.0;

} // namespace

void XfnSplitDegrees(double value, int& degrees, int& minutes, double& seconds)
{
    degrees = minutes = 0;
    seconds = 0.0;
    if (!(std::fabs(value) <= kMaxDegrees)) return;
    const double magnitude = std::fabs(value);
    double whole = std::floor(magnitude);
    const double rest = (magnitude - whole) * 60.0;
    double wholeMinutes = std::floor(rest);
    double left = (rest - wholeMinutes) * 60.0;
    if (60.0 - left < kPrintedAsMinute) {
        left = 0.0;
        wholeMinutes += 1.0;
    }
    if (wholeMinutes >= 60.0) {
        wholeMinutes -= 60.0;
        whole += 1.0;
    }
    degrees = static_cast<int>(whole);
    minutes = static_cast<int>(wholeMinutes);
    seconds = left;
    if (value >= 0.0) return;
    if (degrees != 0) {
        degrees = -degrees;
    } else if (minutes != 0) {
        minutes = -minutes;
    } else {
        seconds = -seconds;
    }
}

void XfnConvDeg2Dms(double lon, double lat, int& lonD, int& lonM, double& lonS, int& latD,
                    int& latM, double& latS)
{
    XfnSplitDegrees(lon, lonD, lonM, lonS);
    XfnSplitDegrees(lat, latD, latM, latS);
}

void XfnConvDms2Deg(int degrees, int minutes, double seconds, double& value)
{
    double d = degrees;
    double m = minutes;
    double s = seconds;
    double sign = 1.0;
    for (double* part : {&d, &m, &s}) {
        if (*part == 0.0) continue;
        sign = *part < 0.0 ? -1.0 : 1.0;
        *part = std::fabs(*part);
        break;
    }
    value = sign * (d + m / 60.0 + s / 3600.0);
}

XString XfnFormatDms(double degrees, XDmsAxis axis, int decimals)
{
    const double limit = axis == XDmsAxis::Latitude ? 90.0 : 360.0;
    if (!(std::fabs(degrees) <= limit)) return XString();
    decimals = std::clamp(decimals, 0, 9);
    const double unit = std::pow(10.0, decimals);
    // 360 degrees in billionths of a second are below 2^53, so the count is exact
    const double count = std::round(std::fabs(degrees) * 3600.0 * unit);
    const double perMinute = 60.0 * unit;
    const double wholeMinutes = std::floor(count / perMinute);
    const double seconds = (count - wholeMinutes * perMinute) / unit;
    const int minutes = static_cast<int>(std::fmod(wholeMinutes, 60.0));
    const int whole = static_cast<int>(wholeMinutes / 60.0);

    const bool isNegative = std::signbit(degrees) && count != 0.0;
    const char hemisphere =
        axis == XDmsAxis::Latitude ? (isNegative ? 'S' : 'N') : (isNegative ? 'W' : 'E');
    XString text;
    text.Format("%d", whole);
    text += XString(L"\u00B0");
    const XString secondText = XfnFormatNumber(seconds, decimals);
    XString rest;
    rest.Format("%02d'%s%s\"%c", minutes, seconds < 10.0 ? "0" : "", secondText.GetString(),
                hemisphere);
    return text + rest;
}
