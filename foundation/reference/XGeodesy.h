#pragma once

#include "foundation/base/XApi.h"

/// Distances, directions and areas on an ellipsoid of revolution.
///
/// Method: C. F. F. Karney, Algorithms for geodesics, Journal of Geodesy 87 (2013); distances are
/// good to 15 nanometres, areas to 0.1 square metre a vertex, for any two points, nearly antipodal
/// and polar ones included.
/// Units: degrees for angles (longitudes of any turn, latitudes within 90), metres, square metres;
/// azimuths clockwise from north in [-180, 180].
/// Failure: values that are not finite, latitudes beyond 90, a radius that is not positive or a
/// flattening not below 1 give 1.7e308; nothing is thrown. Threads: any.

/// Semi-major axis (m) and flattening of WGS 84.
constexpr double kXWgs84SemiMajor = 6378137.0;
constexpr double kXWgs84Flattening = 1.0 / 298.257223563;

/// Length of the shortest line between two points.
XAPI double XfnGeodesicDistance(double lon1, double lat1, double lon2, double lat2,
                                double semiMajor = kXWgs84SemiMajor,
                                double flattening = kXWgs84Flattening);

/// The same with latitude first.
XAPI double XfnCalcGeodeticDistance(double lat1, double lon1, double lat2, double lon2,
                                    double semiMajor, double flattening);

/// Shortest line with its azimuths, both looking forward along the line.
/// @return 0 on bad input; then all three results are 1.7e308
XAPI int XfnGeodesicInverse(double lon1, double lat1, double lon2, double lat2, double& distance,
                            double& azimuth1, double& azimuth2, double semiMajor = kXWgs84SemiMajor,
                            double flattening = kXWgs84Flattening);

/// The point `distance` metres from a point along an azimuth; a negative distance goes backwards.
/// @param lon2  in [-180, 180]
/// @return 0 on bad input; then both results are 1.7e308
XAPI int XfnGeodesicDirect(double lon1, double lat1, double azimuth1, double distance, double& lon2,
                           double& lat2, double semiMajor = kXWgs84SemiMajor,
                           double flattening = kXWgs84Flattening);

/// Area and perimeter of a polygon whose edges are shortest lines; the last vertex joins the first.
/// @param area  positive when the vertices run counter-clockwise, negative otherwise; a polygon may
///              hold a pole. Fewer than three vertices give 0.
/// @return 0 on bad input (a count below 0, a bad vertex); then both results are 1.7e308
XAPI int XfnGeodesicArea(const double* lon, const double* lat, int count, double& area,
                         double& perimeter, double semiMajor = kXWgs84SemiMajor,
                         double flattening = kXWgs84Flattening);
