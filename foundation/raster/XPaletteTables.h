#pragma once

#include "foundation/raster/XLabColor.h"

#include <cstddef>
#include <span>

constexpr int kXPaletteCount = 68;

/// A palette of the catalogue: its name and how its entries are made.
struct tagXPaletteRow
{
    const char* name;
    int written; ///< entries, from 0 on
    XRgbBytes (*at)(int palette, int entry);
};

/// @param index  1 to kXPaletteCount
XAPI const tagXPaletteRow& XfnGetPaletteRow(int index);

/// A knot of a ramp of one colour; between two the entries run on a straight line.
struct tagXByteKnot
{
    int entry;
    int value;
};

/// A knot of chroma and hue (degrees) of CIE L*a*b*.
struct tagXChromaKnot
{
    int entry;
    double chroma;
    double hue;
};

/// A ramp that is even in lightness: L* runs on straight lines through its values at the first
/// entry, at half and at the last one; a* and b* between the knots.
struct tagXLabRamp
{
    double lightness[3];
    std::span<const tagXChromaKnot> knots;
};

XAPI unsigned char XfnRampAt(std::span<const tagXByteKnot> knots, int entry);
XAPI XRgbBytes XfnLabRampAt(const tagXLabRamp& ramp, int entry);

/// Hue in degrees (any number), saturation and value 0 to 1; A. R. Smith, SIGGRAPH 1978.
XAPI XRgbBytes XfnHsvToRgb(double hue, double saturation, double value);
