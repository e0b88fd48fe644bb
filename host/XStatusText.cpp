#include "host/XStatusText.h"

#include "foundation/base/XSentinels.h"
#include "foundation/platform/XQtText.h"
#include "foundation/reference/XDms.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMetresPerDegree = 6371008.8 * 3.14159265358979323846 / 180.0;

// QString::number writes the C locale, always.
QString Fixed(double value, int decimals)
{
    const QString text = QString::number(value, 'f', decimals);
    // "-0.00" reads as a place of its own beside "0.00"
    return value < 0 && text.toDouble() == 0 ? text.mid(1) : text;
}

QString Grouped(long long n)
{
    QString text = QString::number(n);
    // a thin blank groups the digits in every locale and is no decimal sign in any
    for (int i = static_cast<int>(text.size()) - 3; i > 0; i -= 3)
        text.insert(i, QChar(0x2009));
    return text;
}

QString PercentText(double percent)
{
    if (!std::isfinite(percent) || percent <= 0) return QString();
    const int decimals = percent < 1 ? 3 : percent < 10 ? 2 : percent < 100 ? 1 : 0;
    return Fixed(percent, decimals) + " %";
}

} // namespace

QString XfnSampleText(double value)
{
    if (value == kXNoData || value == kXNotSet) return "no data";
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0 ? "Inf" : "-Inf";
    if (value == std::floor(value) && std::fabs(value) < 1e15) return Fixed(value, 0);
    return QString::number(value, 'g', 7);
}

QString XfnShortName(const QString& name, int letters)
{
    if (name.size() <= letters) return name;
    return name.left(letters / 2) + QChar(0x2026) + name.right(letters - letters / 2 - 1);
}

QString XfnSamplesText(const double (&values)[3], bool isColour)
{
    if (!isColour) return XfnSampleText(values[0]);
    return QString("R %1  G %2  B %3")
        .arg(XfnSampleText(values[0]), XfnSampleText(values[1]), XfnSampleText(values[2]));
}

QString XfnComplexText(double real, double imaginary)
{
    const QString none = XfnSampleText(kXNoData);
    const QString re = XfnSampleText(real), im = XfnSampleText(imaginary);
    return re == none || im == none ? none : QString("re %1  im %2").arg(re, im);
}

QString XfnNumberText(double value, WorldUnit unit)
{
    constexpr double kFar = 1e15;
    constexpr double kMostDegrees = 360;
    const double size = std::fabs(value);
    if (!(size < kFar)) return QString::number(value, 'g', 7);
    const bool canBeDegree = unit == WorldUnit::Unknown && size <= kMostDegrees;
    return Fixed(value, unit == WorldUnit::Degree || canBeDegree ? 6 : 2);
}

QString XfnPositionText(double x, double y, WorldUnit unit)
{
    if (!std::isfinite(x) || !std::isfinite(y)) return QString();
    if (unit == WorldUnit::Pixel)
        return QString("column %1  row %2")
            .arg(Fixed(std::floor(x + 0.5), 0), Fixed(std::floor(0.5 - y), 0));
    const int decimals = unit == WorldUnit::Degree ? 6 : 2;
    return Fixed(x, decimals) + "  " + Fixed(y, decimals);
}

QString XfnGeographicText(double latDeg, double lonDeg, GeoFormat format)
{
    if (!std::isfinite(latDeg) || !std::isfinite(lonDeg) || std::fabs(latDeg) > 90.0 ||
        std::fabs(lonDeg) > 360.0)
        return QString();
    if (format == GeoFormat::Dms)
        return XfnToQString(XfnFormatDms(latDeg, XDmsAxis::Latitude, 2)) + "  " +
               XfnToQString(XfnFormatDms(lonDeg, XDmsAxis::Longitude, 2));
    return QString("%1 %2  %3 %4")
        .arg(Fixed(std::fabs(latDeg), 6), latDeg < 0 ? "S" : "N", Fixed(std::fabs(lonDeg), 6),
             lonDeg < 0 ? "W" : "E");
}

QString XfnZoomText(double worldPerPixel, double metresPerWorld, double rasterPixelSize,
                    double screenDpi, ZoomFormat format)
{
    if (!(worldPerPixel > 0) || !std::isfinite(worldPerPixel)) return QString();
    if (format == ZoomFormat::Ratio && metresPerWorld > 0 && screenDpi > 0) {
        const double ratio = worldPerPixel * metresPerWorld * screenDpi / 0.0254;
        if (!(ratio < 1e15)) return QString();
        // two digits that count, however large the image is shown
        const int decimals = ratio < 0.1 ? 1 - static_cast<int>(std::floor(std::log10(ratio))) : 2;
        if (ratio < 10) return decimals < 10 ? "1:" + Fixed(ratio, decimals) : QString();
        return "1:" + Grouped(std::llround(ratio));
    }
    return rasterPixelSize > 0 ? PercentText(100.0 * rasterPixelSize / worldPerPixel) : QString();
}

double XfnMetresPerDegree(double latDeg)
{
    if (!std::isfinite(latDeg)) return kMetresPerDegree;
    const double scale = std::cos(std::clamp(latDeg, -90.0, 90.0) * 3.14159265358979323846 / 180.0);
    return kMetresPerDegree * std::max(scale, 1e-6);
}

QString XfnCoordinateForClipboard(double x, double y, WorldUnit unit, int code, const QString& name)
{
    if (!std::isfinite(x) || !std::isfinite(y)) return QString();
    if (unit == WorldUnit::Pixel)
        return QString("column %1 row %2 (no coordinate system)").arg(Fixed(x, 1), Fixed(-y, 1));
    QString system = name.isEmpty() ? QString("unknown coordinate system") : name;
    system = code > 0 ? QString("EPSG:%1 (%2)").arg(QString::number(code), system)
                      : QString("(%1)").arg(system);
    if (unit == WorldUnit::Degree)
        return QString("lat %1 lon %2 %3").arg(Fixed(y, 8), Fixed(x, 8), system);
    return QString("%1 %2 %3").arg(Fixed(x, 4), Fixed(y, 4), system);
}
