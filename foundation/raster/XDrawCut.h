#pragma once

#include "foundation/raster/XDrawKernels.h"

/// What a channel's cut depends on.
struct tagXCutSettings
{
    double cutMin = 0.0; ///< both are finite
    double cutMax = 255.0;
    double matchA = 1.0; ///< the cut sees matchA * value + matchB
    double matchB = 0.0;
    double null;        ///< NaN: none
    double transparent; ///< NaN: none
};

/// The cut as the loops compute it. A range without width sends values up to it to 0 and those
/// above to 255; one that stands upside down gives falling levels. The table is left null.
tagXDrawCut XfnMakeCut(const tagXCutSettings& settings);
