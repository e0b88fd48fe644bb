#pragma once

#include "foundation/base/XApi.h"

#include <span>

class XDMCompManager;

/// A stretch that a user picks by name: where its numbers come from, its cut and its curve.
struct tagXStretchPreset
{
    int command; ///< number of the menu entry
    const char* label;
    int coverage; ///< 0 whole band, 1 visible region
    int cutType;
    int stretchType;
};

/// The entries of the menu in their order, those of the whole region first. Labels are as users
/// know them. Two of the visible region cut from minimum to maximum though they say Gaussian:
/// pictures made with them must look the same tomorrow.
XAPI std::span<const tagXStretchPreset> XfnGetStretchPresets();
XAPI const tagXStretchPreset* XfnFindStretchPreset(int command); ///< null: no such entry
constexpr int kXFirstVisiblePreset = 40055; ///< from here on they are of the visible region

/// Both change the composites with a first band that is no class map (band type 8), but vector
/// composites (mode 3), in all three channels; and mark every composite for update.

/// Whether there is a composite that they would change.
XAPI int XfnCanEnhance(const XDMCompManager& manager);
/// Sets cut and stretch type; coverage and cut range stay.
XAPI void XfnEnhance(XDMCompManager& manager, int cutType, int stretchType);
/// Sets coverage and types. For the whole band it also writes the cut range that the cut type
/// gives, unless the band has no numbers; for the visible region the composite works it out when it is drawn.
XAPI void XfnEnhanceEx(XDMCompManager& manager, int coverage, int cutType, int stretchType);
