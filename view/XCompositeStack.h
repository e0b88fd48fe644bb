#pragma once

#include "foundation/base/XApi.h"
#include "view/XViewMapping.h"

#include <atomic>
#include <cstdint>
#include <vector>

class XBackBuffer;
class XDMCompManager;
class XDMComposite;

/// The composites of a manager, index 0 (the top one) first; null entries are left out.
XAPI std::vector<XDMComposite*> XfnListComposites(XDMCompManager* manager);

/// Paints composites into a surface from the last to index 0, so that index 0 lies on top.
///
/// Each is told whether it is the top one, and which was painted first (none when it is alone).
/// @param box        world box of the surface
/// @param backColor  0xFFBBGGRR, given to every composite
/// @param levels     one draw level per composite for this drawing; null takes their own
/// @param abort      polled inside each composite; may be null
XAPI void XfnDrawCompositeStack(const std::vector<XDMComposite*>& stack, XBackBuffer* target,
                                const tagXWorldBox& box, std::uint32_t backColor, const int* levels,
                                std::atomic<int>* abort);
