#pragma once

#include "foundation/base/XApi.h"

#include <array>

/// A colour of the CIE 1976 L*a*b* space under D65: lightness 0 to 100, a and b about -128 to 128.
struct tagXLab
{
    double lightness = 0.0;
    double a = 0.0;
    double b = 0.0;
};

using XRgbBytes = std::array<unsigned char, 3>; ///< red, green, blue

/// sRGB as of IEC 61966-2-1, L*a*b* as of CIE 15:2004; the white is that of D65.
XAPI tagXLab XfnRgbToLab(const XRgbBytes& rgb);

/// The bytes whose lightness is nearest to the colour's among those next to it. A colour that no
/// display shows keeps its lightness and hue and gives up saturation until one does.
XAPI XRgbBytes XfnLabToRgb(const tagXLab& lab);
