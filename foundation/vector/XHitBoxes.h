#pragma once

#include "foundation/vector/XVectorRange.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// The boxes of a few hundred objects, packed to eight bytes each, to find those near a point without
/// reading the objects.
///
/// Sides are rounded outward to one in 65535 of the whole, so a box may be found that the point
/// misses, but none is missed that it hits. An object without a range is found everywhere.
class XHitBoxes
{
public:
    static constexpr std::size_t kMaxCount = 512;

    XHitBoxes() = default;
    /// @param ranges  at most kMaxCount
    explicit XHitBoxes(const std::vector<tagXVectorRange>& ranges);

    /// @param found  receives the indices, in order; has room for kMaxCount
    /// @return how many there are
    std::size_t Find(double x, double y, double tolerance, std::uint16_t* found) const;

private:
    double m_minX = 0.0, m_minY = 0.0; // of the whole
    double m_stepX = 1.0, m_stepY = 1.0;
    double m_roundX = 0.0, m_roundY = 0.0; // more than digits that sums lose
    std::vector<std::int16_t> m_sides;     // all least x, least y, greatest x, greatest y
};
