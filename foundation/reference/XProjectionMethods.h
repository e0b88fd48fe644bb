#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

enum class XProjectionQuantity { None, Angle, Length, Scale };

/// One of the up to seven parameters of a projection method.
struct tagXProjectionParameter
{
    int code = 0; ///< EPSG parameter code; 0 when the method has no such parameter
    const char* label = "";
    XProjectionQuantity quantity = XProjectionQuantity::None;
};

/// A projection method and its parameters in their order.
struct tagXProjectionMethod
{
    int code = 0; ///< EPSG method code; 0 in the row that stands for a geographic system
    const char* name = "";
    tagXProjectionParameter parameters[7];
};

/// Rows in the public table; the last stands for a geographic system.
constexpr int kXProjectionTableSize = 25;

/// The methods a user chooses from: kXProjectionTableSize rows that live as long as the program.
XAPI const tagXProjectionMethod* XfnGetProjectionTable();

/// A method by its code, among those of the table and the rarer ones behind it; null when unknown.
XAPI const tagXProjectionMethod* XfnFindProjectionMethod(int code);

/// The seven parameters of a projected EPSG system as XSpatialReference::importFromLVC takes them:
/// decimal degrees, metres, plain numbers; 0 behind the last.
/// @return 0 when the code is no projected system or its method is none of ours
XAPI int XfnGetProjTRFInfo(int code, double* parameters);

/// The name of an EPSG system, geographic or projected; empty for an unknown code.
XAPI XString XfnGetPcsEPSGString(int code);

/// Code of a unit of length from its name: the names of the EPSG database and those of common WKT
/// dialects, in any case; 0 when unknown.
XAPI int XfnGetLengthUnitCode(const XString& name);

/// Factor of an EPSG unit to metres or radians. The sexagesimal units (9107 to 9111, 9115 to 9121)
/// count as degrees.
/// @param isAngle  may be null
/// @return 0 when the code is no unit of length or angle
XAPI int XfnGetUnitFactor(int code, double& factor, int* isAngle);
