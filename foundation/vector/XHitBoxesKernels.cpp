#include "foundation/vector/XHitBoxes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kSteps = 65535.0;
constexpr double kRounding = 64.0 * std::numeric_limits<double>::epsilon();
constexpr std::int16_t kLeast = std::numeric_limits<std::int16_t>::min();
constexpr std::int16_t kGreatest = std::numeric_limits<std::int16_t>::max();

std::int16_t Pack(double steps)
{
    if (!(steps > 0.0)) return kLeast;
    return steps < kSteps ? static_cast<std::int16_t>(static_cast<int>(steps) + kLeast) : kGreatest;
}

std::size_t FindPacked(const std::int16_t* sides, std::size_t count, std::int16_t minX,
                       std::int16_t minY, std::int16_t maxX, std::int16_t maxY,
                       std::uint16_t* found)
{
    const std::int16_t* leastX = sides;
    const std::int16_t* leastY = sides + count;
    const std::int16_t* greatestX = sides + 2 * count;
    const std::int16_t* greatestY = sides + 3 * count;
    std::int16_t isNear[XHitBoxes::kMaxCount];
    std::int16_t any = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const int hit =
            static_cast<int>(leastX[i] <= maxX) & static_cast<int>(greatestX[i] >= minX) &
            static_cast<int>(leastY[i] <= maxY) & static_cast<int>(greatestY[i] >= minY);
        isNear[i] = static_cast<std::int16_t>(hit);
        any = static_cast<std::int16_t>(any | hit);
    }
    if (!any) return 0;
    std::size_t n = 0;
    for (std::size_t i = 0; i < count; ++i) {
        found[n] = static_cast<std::uint16_t>(i);
        n += isNear[i] != 0;
    }
    return n;
}

} // namespace

XHitBoxes::XHitBoxes(const std::vector<tagXVectorRange>& ranges)
{
    tagXVectorRange whole;
    for (const tagXVectorRange& range : ranges)
        whole.Add(range);
    const std::size_t count = std::min(ranges.size(), kMaxCount);
    m_sides.resize(4 * count);
    if (!whole.IsEmpty()) {
        m_minX = whole.minX;
        m_minY = whole.minY;
        // halves first: the whole may be wider than the greatest number
        m_stepX = (whole.maxX / 2.0 - whole.minX / 2.0) / (kSteps / 2.0);
        m_stepY = (whole.maxY / 2.0 - whole.minY / 2.0) / (kSteps / 2.0);
        if (!(m_stepX > 0.0)) m_stepX = 1.0;
        if (!(m_stepY > 0.0)) m_stepY = 1.0;
        m_roundX = kRounding * std::max(std::fabs(whole.minX), std::fabs(whole.maxX));
        m_roundY = kRounding * std::max(std::fabs(whole.minY), std::fabs(whole.maxY));
    }
    for (std::size_t i = 0; i < count; ++i) {
        const tagXVectorRange& range = ranges[i];
        const bool isAnywhere = range.IsEmpty();
        const auto least = [&](double value, double min, double step) {
            return isAnywhere ? kLeast : Pack(std::floor(value / step - min / step));
        };
        const auto greatest = [&](double value, double min, double step) {
            return isAnywhere ? kGreatest : Pack(std::ceil(value / step - min / step));
        };
        m_sides[i] = least(range.minX, m_minX, m_stepX);
        m_sides[i + count] = least(range.minY, m_minY, m_stepY);
        m_sides[i + 2 * count] = greatest(range.maxX, m_minX, m_stepX);
        m_sides[i + 3 * count] = greatest(range.maxY, m_minY, m_stepY);
    }
}

std::size_t XHitBoxes::Find(double x, double y, double tolerance, std::uint16_t* found) const
{
    const double reachX = tolerance + m_roundX + kRounding * std::fabs(x);
    const double reachY = tolerance + m_roundY + kRounding * std::fabs(y);
    const double fromX = m_minX / m_stepX, fromY = m_minY / m_stepY;
    // one step more than needed, for digits lost in the division
    return FindPacked(m_sides.data(), m_sides.size() / 4,
                      Pack(std::floor((x - reachX) / m_stepX - fromX) - 1.0),
                      Pack(std::floor((y - reachY) / m_stepY - fromY) - 1.0),
                      Pack(std::ceil((x + reachX) / m_stepX - fromX) + 1.0),
                      Pack(std::ceil((y + reachY) / m_stepY - fromY) + 1.0), found);
}
