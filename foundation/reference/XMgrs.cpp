#include "foundation/reference/XMgrs.h"

#include "foundation/base/XSentinels.h"

#include <GeographicLib/MGRS.hpp>
#include <GeographicLib/UTMUPS.hpp>

#include <cmath>
#include <exception>
#include <string>

namespace {

using GeographicLib::MGRS;
using GeographicLib::UTMUPS;

constexpr int kMaxDigits = 11;
constexpr int kMaxTextLength = 2 + 1 + 2 + 2 * kMaxDigits;

bool IsPosition(double lon, double lat)
{
    return std::isfinite(lon) && XfnIsSet(lon) && std::fabs(lat) <= 90.0;
}

// A corner of a square comes back from degrees some nanometres off; cutting its digits would name
// the square beside it.
double OntoGridLine(double metres, int digits)
{
    constexpr double kNoise = 1e-6;
    constexpr int kDigitsOfMetre = 5;
    const double square = std::pow(10.0, kDigitsOfMetre - digits);
    if (square <= kNoise) return metres;
    const double line = std::ceil(metres / square) * square;
    return line - metres < kNoise ? line : metres;
}

// Blanks out; empty when the text can be no reference.
std::string Squeeze(const XString& text)
{
    std::string squeezed;
    for (const char ch : text.View()) {
        if (ch == ' ' || ch == '\t') continue;
        const bool isLetterOrDigit =
            (ch >= '0' && ch <= '9') || (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z');
        if (!isLetterOrDigit || squeezed.size() >= kMaxTextLength) return {};
        squeezed += ch;
    }
    return squeezed;
}

} // namespace

int XfnGeoToUtm(double lon, double lat, tagXUtmPosition& position, XUtmZones zones)
{
    if (!IsPosition(lon, lat)) return 0;
    try {
        int zone = UTMUPS::StandardZone(lat, lon);
        if (zones == XUtmZones::PlainSixDeg && zone != UTMUPS::UPS) {
            const double turned = lon - 360.0 * std::floor((lon + 180.0) / 360.0);
            zone = static_cast<int>(std::floor((turned + 180.0) / 6.0)) % 60 + 1;
        }
        tagXUtmPosition found;
        bool north = false;
        UTMUPS::Forward(lat, lon, found.zone, north, found.easting, found.northing,
                        found.convergence, found.scale, zone);
        found.north = north ? 1 : 0;
        position = found;
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

int XfnUtmToGeo(tagXUtmPosition& position, double& lon, double& lat)
{
    lon = lat = kXNotSet;
    if (position.zone < UTMUPS::UPS || position.zone > UTMUPS::MAXUTMZONE ||
        !std::isfinite(position.easting) || !std::isfinite(position.northing)) {
        return 0;
    }
    try {
        double foundLon = 0.0;
        double foundLat = 0.0;
        UTMUPS::Reverse(position.zone, position.north != 0, position.easting, position.northing,
                        foundLat, foundLon, position.convergence, position.scale);
        lon = foundLon;
        lat = foundLat;
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

int XfnGeoToMgrs(double lon, double lat, int digits, XString& mgrs)
{
    mgrs = XString();
    tagXUtmPosition position;
    if (digits < 0 || digits > kMaxDigits || !XfnGeoToUtm(lon, lat, position)) return 0;
    const double easting = OntoGridLine(position.easting, digits);
    const double northing = OntoGridLine(position.northing, digits);
    try {
        std::string text;
        MGRS::Forward(position.zone, position.north != 0, easting, northing, lat, digits, text);
        mgrs = XString(text);
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

int XfnMgrsToUtm(const XString& mgrs, tagXUtmPosition& position, XMgrsPoint point)
{
    const std::string text = Squeeze(mgrs);
    if (text.empty()) return 0;
    try {
        tagXUtmPosition found;
        bool north = false;
        int digits = 0;
        MGRS::Reverse(text, found.zone, north, found.easting, found.northing, digits,
                      point == XMgrsPoint::Centre);
        found.north = north ? 1 : 0;
        constexpr int kZoneOnly = -1;
        if (digits <= kZoneOnly || found.zone < UTMUPS::UPS) return 0;
        double lon = 0.0;
        double lat = 0.0;
        if (!XfnUtmToGeo(found, lon, lat)) return 0;
        position = found;
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

int XfnMgrsToGeo(const XString& mgrs, double& lon, double& lat, XMgrsPoint point)
{
    lon = lat = kXNotSet;
    tagXUtmPosition position;
    return XfnMgrsToUtm(mgrs, position, point) && XfnUtmToGeo(position, lon, lat);
}
