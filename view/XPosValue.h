#pragma once

#include "foundation/base/XApi.h"

class XDMCompManager;
class XDMComposite;

/// How a look at the values under a point ended.
enum class XPosRead {
    Nothing, ///< there is no band to look at
    Outside, ///< the point lies beside the band
    Done     ///< the values are set, to kXNoData where there is none
};

/// How bands of real samples are read.
enum class XPosWay {
    Composite, ///< as the composite reads: null values are kXNoData, so is what lies outside
    Direct     ///< from the band itself, so that nothing that draws is asked
};

/// The values of a composite under a world point, one a channel (0 is blue in RGB). They are set
/// to kXNoData first.
///
/// The first channel says what is done. A real band: each channel's value. A complex one, or an
/// XDMBandComplex: real and imaginary part of this band in values[0] and values[1]; nothing of the
/// other channels. A spatial filter, or none: each channel that has a band is read as a block of up
/// to 23 x 23 pixels around the point, whose centre is the value.
/// Threads: as the bands, any. A pixel whose tile is not in the cache is decoded here.
XAPI XPosRead XfnReadPosValue(const XDMComposite& composite, double worldX, double worldY,
                              XPosWay way, double (&values)[3]);

/// The values of the first composite that has any band, from the last of the manager, the bottom
/// one, to the first.
/// @param manager  may be null
XAPI XPosRead XfnReadPosValue(const XDMCompManager* manager, double worldX, double worldY,
                              XPosWay way, double (&values)[3]);
