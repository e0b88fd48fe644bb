#pragma once

#include "foundation/base/XApi.h"

#include <span>

/// A value of a stretch setting as users know it.
struct tagXStretchName
{
    int value;
    const char* label;
};

/// In the order of the lists and popups that show them, which is not that of the values.
XAPI std::span<const tagXStretchName> XfnGetStretchTypeNames();
XAPI std::span<const tagXStretchName> XfnGetCutTypeNames(); ///< without the explicit cut, 0
XAPI std::span<const tagXStretchName> XfnGetStretchCoverageNames();
/// One letter for the channel of a composite of that mode; "" where there is none.
XAPI const char* XfnGetChannelLetter(int mode, int channel);
