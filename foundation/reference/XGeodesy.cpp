#include "foundation/reference/XGeodesy.h"

#include "foundation/base/XSentinels.h"

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>

#include <cmath>
#include <exception>

namespace {

bool IsPosition(double lon, double lat)
{
    return std::isfinite(lon) && XfnIsSet(lon) && std::fabs(lat) <= 90.0;
}

// The constructor refuses bad shapes by an exception, which ends in `run`'s place here.
template <class Run>
int OnEllipsoid(double semiMajor, double flattening, const Run& run)
{
    if (!(semiMajor > 0.0) || !std::isfinite(semiMajor) || !(flattening < 1.0) ||
        !std::isfinite(flattening)) {
        return 0;
    }
    try {
        return run(GeographicLib::Geodesic(semiMajor, flattening));
    } catch (const std::exception&) {
        return 0;
    }
}

} // namespace

int XfnGeodesicInverse(double lon1, double lat1, double lon2, double lat2, double& distance,
                       double& azimuth1, double& azimuth2, double semiMajor, double flattening)
{
    const bool usable = IsPosition(lon1, lat1) && IsPosition(lon2, lat2);
    const int done = usable && OnEllipsoid(semiMajor, flattening, [&](const auto& geodesic) {
                         geodesic.Inverse(lat1, lon1, lat2, lon2, distance, azimuth1, azimuth2);
                         return std::isfinite(distance) ? 1 : 0;
                     });
    if (!done) distance = azimuth1 = azimuth2 = kXNotSet;
    return done;
}

double XfnGeodesicDistance(double lon1, double lat1, double lon2, double lat2, double semiMajor,
                           double flattening)
{
    double distance = 0.0;
    double azimuth1 = 0.0;
    double azimuth2 = 0.0;
    XfnGeodesicInverse(lon1, lat1, lon2, lat2, distance, azimuth1, azimuth2, semiMajor, flattening);
    return distance;
}

double XfnCalcGeodeticDistance(double lat1, double lon1, double lat2, double lon2, double semiMajor,
                               double flattening)
{
    return XfnGeodesicDistance(lon1, lat1, lon2, lat2, semiMajor, flattening);
}

int XfnGeodesicDirect(double lon1, double lat1, double azimuth1, double distance, double& lon2,
                      double& lat2, double semiMajor, double flattening)
{
    const bool usable = IsPosition(lon1, lat1) && std::isfinite(azimuth1) && XfnIsSet(distance);
    const int done = usable && OnEllipsoid(semiMajor, flattening, [&](const auto& geodesic) {
                         geodesic.Direct(lat1, lon1, azimuth1, distance, lat2, lon2);
                         return std::isfinite(lat2) && std::isfinite(lon2) ? 1 : 0;
                     });
    if (!done) lon2 = lat2 = kXNotSet;
    return done;
}

int XfnGeodesicArea(const double* lon, const double* lat, int count, double& area,
                    double& perimeter, double semiMajor, double flattening)
{
    bool usable = count == 0 || (count > 0 && lon && lat);
    for (int i = 0; usable && i < count; ++i)
        usable = IsPosition(lon[i], lat[i]);
    const int done = usable && OnEllipsoid(semiMajor, flattening, [&](const auto& geodesic) {
                         GeographicLib::PolygonArea polygon(geodesic);
                         for (int i = 0; i < count; ++i)
                             polygon.AddPoint(lat[i], lon[i]);
                         constexpr bool kClockwiseIsPositive = false;
                         constexpr bool kSigned = true;
                         polygon.Compute(kClockwiseIsPositive, kSigned, perimeter, area);
                         if (count < 3) area = 0.0;
                         return 1;
                     });
    if (!done) area = perimeter = kXNotSet;
    return done;
}
