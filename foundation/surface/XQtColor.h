#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"

#include <QColor>

/// A colour word (red lowest) as the opaque word of a 32-bit surface, 0xFFRRGGBB. The top byte is
/// ignored: background, pen and band colours come with and without it.
constexpr QRgb XfnToQRgb(tagXColor colour)
{
    return 0xFF000000u | XfnGetRed(colour) << 16 | XfnGetGreen(colour) << 8 | XfnGetBlue(colour);
}

/// A surface word as a colour word with 0xFF in the top byte.
constexpr tagXColor XfnFromQRgb(QRgb word)
{
    return kXOpaque | (word >> 16 & 0xFFu) | (word & 0xFF00u) | (word & 0xFFu) << 16;
}

/// A colour word whose top byte is the opacity, 0 being fully transparent: the colours of objects.
XAPI QColor XfnToQColor(tagXColor colour);
