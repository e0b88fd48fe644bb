#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>
#include <vector>

class XVertexArray;

/// An area: its outer ring and the rings that bound its holes, as indices.
struct tagXNestedRings
{
    std::size_t outer = 0;
    std::vector<std::size_t> holes;
};

/// Sorts rings that do not cross each other into areas, in the order of their outer rings.
///
/// A ring bounds a hole when the fill rule has its inner side empty: by the even-odd rule when an odd
/// number of others is around it, by the winding rule when all of them and itself cancel. A hole goes
/// to the smallest outer ring around it; one within none is an area after all, and so is each of
/// equal rings. A ring within a filled area of the same rule (winding) is an area of its own.
/// Cost: the square of the number of rings for comparing their boxes, then vertices where boxes
/// lie in each other.
/// @param rings  not null, of at least three usable vertices each
XAPI std::vector<tagXNestedRings> XfnNestRings(const std::vector<const XVertexArray*>& rings,
                                               bool isWinding);
