#pragma once

#include "foundation/base/XApi.h"

class XString;

/// The catalogue of colour tables for one band in pseudo-colour: 68 named palettes, numbered from 1.
///
/// A palette is three arrays of 256 bytes, one a colour, by display level. The catalogue is made
/// of constants: no state, no file, any thread.
///
/// Ramps from dark to light and diverging ones rise and fall evenly in CIE lightness, so that equal
/// steps of a band look equal; the stated exceptions are tables that hosts know entry by entry.

XAPI int XfnGetNumberOfPalette(); ///< 68

/// Writes a palette into three arrays of 256 bytes. Palettes 10 to 15 leave entry 255 as it is: it
/// keeps the top colour of the palette shown before. An index outside 1 to 68 writes nothing.
XAPI void XfnGetPalette(int index, unsigned char* red, unsigned char* green, unsigned char* blue);

/// "Default" for an index outside 1 to 68. A null name is not written.
XAPI void XfnGetPaletteName(int index, XString* name);
