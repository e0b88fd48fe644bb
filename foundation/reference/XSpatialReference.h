#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <memory>

struct XSpatialReferenceState;

/// A coordinate system together with the kind of coordinates that it stands for.
///
/// A value: copies share one immutable state, so copying costs a counter. An import builds a new
/// state and swaps it in; other copies keep theirs.
///
/// Axis order: x is always longitude or easting and y latitude or northing, whatever order the
/// authority of the system prescribes. Geographic coordinates are in the system's angular unit
/// (degrees for nearly all), projected ones in its linear unit.
///
/// The coordinate type says how coordinates are to be read: 0 none, 1 pixel (not georeferenced),
/// 2 unknown, 3 map. A successful import sets it to 3, Clear to 0; SetCoordType changes nothing
/// else. A caller that must keep the type over an import puts it back.
///
/// Errors: every import answers non-zero on success. A failed one leaves an empty reference of
/// type 0; nothing is thrown and nothing is printed.
///
/// Threads: any number of threads may read one reference; changing it needs the caller's lock.
class XAPI XSpatialReference
{
public:
    XSpatialReference();
    ~XSpatialReference();
    XSpatialReference(const XSpatialReference& other);
    XSpatialReference& operator=(const XSpatialReference& other);

    /// The system of an EPSG code. The code itself counts: a deprecated one is not replaced by its
    /// successor. Codes of vertical systems and unknown codes are refused.
    int importFromEPSG(int code);

    /// Well-known text: WKT 1 in the usual dialects (that of .prj files too) and WKT 2. Text behind
    /// the system is ignored; more than a mebibyte is refused.
    int importFromWkt(const XString& wkt);

    /// A "+proj=..." string that describes a system (pipelines are refused).
    int importFromProj4(const XString& text);

    /// "WGS84", "WGS72", "NAD27", "NAD83", "CRS84" and the like, or "EPSG:n" of a geographic system.
    int SetWellKnownGeogCS(const XString& name);

    /// A system from its parts, in a requested unit.
    ///
    /// Geographic form: `gcsCode` is the EPSG code of a geographic system and `unitCode` that of an
    /// angular unit. Unit 9108 (degrees, minutes, seconds) has coordinates in decimal degrees and
    /// differs from 9122 only in how they are shown.
    ///
    /// Projected form: `gcsCode` is 0, `unitCode` a length, `sourceGcs` the geographic system below
    /// and `method` a method of XfnFindProjectionMethod. The seven parameters stand in the order of
    /// that row: angles in decimal degrees, lengths in metres (whatever `unitCode` is), scales as
    /// plain numbers; those behind the row's last one are ignored. So one list of parameters gives
    /// the same places on the ground in any unit.
    /// @return 0 for unknown codes, a unit of the wrong kind, parameters that are not finite or that
    ///         the method does not accept
    int importFromLVC(int gcsCode, int unitCode, int sourceGcs, int method, double p1, double p2,
                      double p3, double p4, double p5, double p6, double p7);

    /// A system from five old-style codes: projection, datum, zone, a flag, unit. Only the
    /// combination without projection (0) on datum 118 is known: it is geographic WGS 84 in degrees,
    /// and the last three numbers then have no meaning. Everything else is refused.
    int importFromOldLVC(int projection, int datum, int zone, int flag, int unit);

    /// The parts of a geographic system as importFromLVC takes them, and its ellipsoid.
    /// A code that the system does not tell is 0.
    /// @return 0 when the system is not geographic
    int exportToGcsLVC(int* gcsCode, int* unitCode, int* ellipsoidCode) const;

    /// The parts of a projected system as importFromLVC takes them, and its ellipsoid.
    /// @param parameters  seven values, those that the method does not have are 0
    /// @return 0 when the system is not projected or its method is none of ours
    int exportToPcsLVC(int* unitCode, int* sourceGcs, int* method, int* ellipsoidCode,
                       double* parameters) const;

    /// WKT 1 on one line; WKT 2 where WKT 1 cannot hold the system.
    /// @return 0 when empty; then `wkt` is empty too
    int exportToWkt(XString& wkt) const;

    /// @return 0 when empty or when the system has no such form; then `text` is empty
    int exportToProj4(XString& text) const;

    /// The EPSG code, as the system states it or, when it states none, as found by comparing it
    /// with the database (about 20 ms, once for all copies).
    /// @param code  may be null; 0 on failure
    int GetRefSysCode(int* code) const;

    /// EPSG code of the unit of the coordinates, as stated or looked up by name; 0 when unknown.
    int GetUnitCode() const;

    int IsProjected() const;
    int IsGeographic() const;
    int IsEmpty() const; ///< holds no system; the coordinate type does not count

    /// Whether coordinates mean the same place in both: the same datum, ellipsoid, projection and
    /// unit; names, codes and the axis order that the authorities prescribe do not matter. The
    /// coordinate type does not count. Two empty references are the same, null is the same as none.
    int IsSame(const XSpatialReference* other) const;

    XString GetName() const;           ///< "WGS 84 / UTM zone 52N"; empty when there is none
    XString GetProjectionName() const; ///< name of a projected or geographic system, else empty
    XString GetMethodName() const;     ///< "Transverse Mercator"; empty unless projected
    XString GetDatumName() const;      ///< "World Geodetic System 1984"
    XString GetUnitName() const;       ///< unit of the coordinates, "metre", "degree"
    double GetLinearUnits() const;     ///< metres in a unit of the coordinates; 0 unless projected
    double GetAngularUnits() const;    ///< radians in the (base) geographic unit; 0 without one
    double GetSemiMajor() const;       ///< metres; 0 without an ellipsoid
    double GetFlattening() const;      ///< 0 for a sphere or without an ellipsoid

    int GetCoordType() const { return m_coordType; }
    void SetCoordType(int type) { m_coordType = type; }

    void Clear();

    /// What the sources of this folder share; not for others.
    const XSpatialReferenceState* GetState() const { return m_state.get(); }

private:
    int Take(std::shared_ptr<const XSpatialReferenceState> state);

    std::shared_ptr<const XSpatialReferenceState> m_state;
    int m_coordType = 0;
};
