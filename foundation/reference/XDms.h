#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

/// Degrees, minutes and seconds.

/// Splits a longitude and a latitude, degrees.
///
/// Minutes are whole and below 60, seconds below 60: what lies less than 5e-9 seconds under a full
/// minute counts as that minute, so that eight decimals never print as 60. The sign of a negative
/// value stands on the first of its three parts that is not zero, so -0.5 is 0, -30, 0.
/// Values that are not finite, or beyond the range of int, give zeros.
XAPI void XfnConvDeg2Dms(double lon, double lat, int& lonD, int& lonM, double& lonS, int& latD,
                         int& latM, double& latS);

/// One value split in the same way.
XAPI void XfnSplitDegrees(double value, int& degrees, int& minutes, double& seconds);

/// Joins three parts. The sign of the first part that is not zero counts for the whole, so that
/// -5, 30, 0 is -5.5; a "-0" has no sign any more and is its caller's.
XAPI void XfnConvDms2Deg(int degrees, int minutes, double seconds, double& value);

enum class XDmsAxis { Longitude, Latitude };

/// A position as text with its hemisphere letter, 126°58'40.68"E. Rounded to `decimals` of a second
/// (0 to 9) before it is split, so 60 never appears. Values that are not finite, a latitude beyond
/// 90 or a longitude beyond 360 give the empty text.
XAPI XString XfnFormatDms(double degrees, XDmsAxis axis, int decimals);
