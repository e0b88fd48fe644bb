#pragma once

#include "foundation/base/XApi.h"

/// The part of a band's values that a stretch table spreads over the display levels.
///
/// `first` is the last index of the run of equal values that begins the table, `last` the index
/// where the run of equal values that ends it begins, raised by one unless it is 255. A table of
/// one value throughout gives 255 and 1, in that order: the range is empty and its ends stand
/// reversed.
/// @param table     256 display levels
/// @param dataType  the band's type: 1 unsigned byte, indices are values; 2 signed byte, 127 is
///                  subtracted; any other, the indices are spread over [bandMin, bandMax]
XAPI void XfnLookupRange(const unsigned char* table, int dataType, double bandMin, double bandMax,
                         double& first, double& last);
