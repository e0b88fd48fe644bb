#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <vector>

/// A tick of an axis. Ticks without a label are minor ones.
struct tagXAxisTick
{
    double value;
    bool isMajor;
    XString label;
};

/// What the ticks of an axis are to be.
struct tagXAxisScale
{
    double minimum = 0.0, maximum = 1.0; ///< in any order; equal ones have the tick of that value
    bool isLog = false;                  ///< decades; ignored where a value is not above 0
    double majorStep = 0.0; ///< 0: chosen so that some `majorCount` ticks stand; not for decades
    int majorCount = 6;     ///< 2 to 100
    int minorCount = -1;    ///< between two major ones; -1: as the step asks for, 0 to 9
    int decimals = -1;      ///< of the labels; -1: as many as the step asks for
};

/// Ticks at 1, 2 or 5 times a power of ten, in rising order.
///
/// Method: the step of P. S. Heckbert, Nice numbers for graph labels (Graphics Gems, 1990). Ticks are
/// whole multiples of the step, so that 0 is a tick and none of them carries a rounding error of its
/// neighbours. On logarithmic axes decades are major (every n-th where there are many), 2 to 9 times
/// them minor; with less than a decade the ticks are those of a linear axis.
/// @return nothing for limits that are no numbers; at most kXMaxAxisTicks
constexpr int kXMaxAxisTicks = 2000;
XAPI std::vector<tagXAxisTick> XfnMakeAxisTicks(const tagXAxisScale& scale);

/// The round step (1, 2 or 5 times a power of ten) not below `value`; 0 for one that is not within
/// 1e-290 and 1e290.
XAPI double XfnGetRoundStepUp(double value);
/// The largest of these not above `value`; 0 as above.
XAPI double XfnGetRoundStepDown(double value);
