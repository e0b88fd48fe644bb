#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <memory>

class XSpatialReference;

/// Carries points from one coordinate system into another.
///
/// x is longitude or easting and y latitude or northing on both sides, in the units of the two
/// systems. The best operation that the installed database and grids allow is chosen for each
/// point; without any known datum shift the datums are taken as equal (metres to hundreds of them).
/// Longitudes come out in [-180, 180] degrees, except between systems that need no computation.
///
/// Failure: a point that is not finite, not set (1.7e308), or outside the domain of either system
/// comes out as 1.7e308 in x, y and z; the others are not touched by that. Projections that stretch
/// a pole to infinity may still give a large number there.
///
/// Cost: building one takes a millisecond, a point a microsecond in bulk: keep the object.
/// Threads: one object belongs to one thread at a time; build one for each.
class XAPI XCoordinateTransformation
{
public:
    XCoordinateTransformation(const XSpatialReference& from, const XSpatialReference& to);
    virtual ~XCoordinateTransformation();
    XCoordinateTransformation(const XCoordinateTransformation&) = delete;
    XCoordinateTransformation& operator=(const XCoordinateTransformation&) = delete;

    /// 0 when either system is empty or no operation joins them; then every point fails.
    int IsValid() const;

    /// `count` points in place.
    /// @param z   heights in metres, may be null
    /// @param ok  1 or 0 for each point, may be null
    /// @return 0 when no point came through (so also for count 0)
    virtual int Transform(int count, double* x, double* y, double* z = nullptr, int* ok = nullptr);

    int TransformPt(double& x, double& y); ///< one point; 1.7e308 twice on failure

    /// Grid references and UTM on WGS 84, degrees. Each answers 0 when it fails, with its results
    /// set to 1.7e308, 0 or the empty text. XMgrs.h has the forms with more to choose.
    ///
    /// An MGRS text names a square; the position is its south-west corner. WGP_TO_MGRS writes
    /// squares of one metre.
    static int WGP_TO_MGRS(double lon, double lat, XString& mgrs);
    static int MGRS_TO_WGP(const XString& mgrs, double& lon, double& lat);

    /// @param mode  1: plain zones of six degrees; 2: with the exceptions for Norway and Svalbard
    /// @param zone  1 to 60, negative in the southern hemisphere. Poleward of 84 N and 80 S there is
    ///              no UTM: refused.
    static int WGP_TO_UTM(double lon, double lat, int mode, double& easting, double& northing,
                          int& zone);

    /// @param zone   1 to 60, 0 for the polar grids
    /// @param north  1 in the northern hemisphere, else 0
    static int MGRS_TO_UTM(const XString& mgrs, double& easting, double& northing, int& zone,
                           int& north);

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// @return null when either reference is null or empty, or no operation joins them
XAPI std::unique_ptr<XCoordinateTransformation> XfnCreateCoordTrans(const XSpatialReference* from,
                                                                    const XSpatialReference* to);

/// Drops what the calling thread keeps for making systems: its connection to the database and what
/// was read from it. Other threads and all objects that live are not touched; making new ones is
/// slower once. For the end of work that opened many files. Threads: any.
XAPI void XfnCleanupCoord();
