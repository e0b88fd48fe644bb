#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

/// UTM, its polar companion UPS, and the military grid reference system, all on WGS 84.
///
/// Method: Krueger's series to sixth order (C. F. F. Karney, Transverse Mercator with an accuracy
/// of a few nanometers, Journal of Geodesy 85 (2011)); grid letters after NGA.STND.0037.
/// Failure: refusals answer 0; nothing is thrown. Threads: any.

/// Which zone a position falls into.
enum class XUtmZones {
    Standard,    ///< six degrees, with the wider zones of Norway and Svalbard
    PlainSixDeg, ///< six degrees everywhere
};

/// Which point of its square a grid reference stands for.
enum class XMgrsPoint { SouthWestCorner, Centre };

/// A position on the grid.
struct tagXUtmPosition
{
    int zone = 0;         ///< 1 to 60; 0 for the polar grids
    int north = 1;        ///< 1 in the northern hemisphere, else 0
    double easting = 0.0; ///< metres, false origin included
    double northing = 0.0;
    double convergence = 0.0; ///< degrees from true to grid north, clockwise positive
    double scale = 1.0;
};

/// @param lon  degrees, any turn; @param lat degrees within 90
XAPI int XfnGeoToUtm(double lon, double lat, tagXUtmPosition& position,
                     XUtmZones zones = XUtmZones::Standard);

/// The inverse; takes zone, hemisphere, easting and northing, fills the rest of `position`.
XAPI int XfnUtmToGeo(tagXUtmPosition& position, double& lon, double& lat);

/// A grid reference of `digits` digits each way: 5 is a metre, 4 ten metres, up to 11. Digits are
/// cut, never rounded, but a micrometre below a grid line counts as on it, so that the corner of a
/// square reads as that square again after a trip through degrees.
XAPI int XfnGeoToMgrs(double lon, double lat, int digits, XString& mgrs);

/// Blanks are ignored and lower case is read. A reference without digits is read when it names a
/// hundred-kilometre square; a bare zone is refused.
XAPI int XfnMgrsToUtm(const XString& mgrs, tagXUtmPosition& position,
                      XMgrsPoint point = XMgrsPoint::SouthWestCorner);
XAPI int XfnMgrsToGeo(const XString& mgrs, double& lon, double& lat,
                      XMgrsPoint point = XMgrsPoint::SouthWestCorner);
