#include "foundation/vector/XHitGeometry.h"

#include "foundation/base/XVector3.h"
#include "foundation/vector/XVertexArray.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
// Several roundings of a coordinate: with no tolerance a place on a slanting edge is still hit.
constexpr double kRounding = 16.0 * std::numeric_limits<double>::epsilon();

double GoodTolerance(double tolerance)
{
    return tolerance > 0.0 && XfnIsSet(tolerance) ? tolerance : 0.0; // false for NaN
}

double WithRounding(double tolerance, double a, double b, double c)
{
    const double largest = std::max({std::fabs(a), std::fabs(b), std::fabs(c)});
    return std::max({tolerance, kRounding * largest, std::numeric_limits<double>::min()});
}

// Distance of the origin to the segment from a to b; all finite.
double DistanceToSegment(double ax, double ay, double bx, double by)
{
    const double scale = std::max({std::fabs(ax), std::fabs(ay), std::fabs(bx), std::fabs(by)});
    if (scale == 0.0) return 0.0;
    ax /= scale; // so that no square overflows or vanishes
    ay /= scale;
    bx /= scale;
    by /= scale;
    const double dx = bx - ax;
    const double dy = by - ay;
    const double lengthSquared = dx * dx + dy * dy;
    const double along = -(ax * dx + ay * dy);
    if (!(along > 0.0)) return std::hypot(ax, ay) * scale;
    if (along >= lengthSquared) return std::hypot(bx, by) * scale;
    return std::fabs(ax * dy - ay * dx) / std::sqrt(lengthSquared) * scale;
}

bool IsUsable(double x, double y)
{
    return XfnIsSet(x) && XfnIsSet(y);
}

// Calls visit(ax, ay, bx, by, index of a) for each edge of a ring, between its usable vertices.
template <class Visit>
void ForEachRingEdge(const double* coords, int stride, std::size_t count, Visit visit)
{
    const auto step = static_cast<std::size_t>(stride);
    std::size_t first = 0;
    while (first < count && !IsUsable(coords[first * step], coords[first * step + 1]))
        ++first;
    if (first == count) return;
    std::size_t previous = first;
    for (std::size_t i = first + 1; i <= count; ++i) {
        const double* b = coords + (i == count ? first : i) * step;
        if (!IsUsable(b[0], b[1])) continue;
        const double* a = coords + previous * step;
        visit(a[0], a[1], b[0], b[1], static_cast<int>(previous));
        previous = i;
    }
}

template <class Visit>
void ForEachRingEdge(const XVertexArray& ring, Visit visit)
{
    ForEachRingEdge(ring.GetCoords(), ring.GetStride(), static_cast<std::size_t>(ring.GetSize()),
                    visit);
}

// Where an edge that crosses the level y does so; the edge is not level.
double CrossingX(double y, double ax, double ay, double bx, double by)
{
    return ax + (y - ay) / (by - ay) * (bx - ax);
}

} // namespace

tagXHitPointer XfnMakeHitPointer(const tagXVector3& point, double toleranceX, double toleranceY)
{
    return {point.x, point.y, GoodTolerance(toleranceX), GoodTolerance(toleranceY),
            XfnIsUsable(point)};
}

double XfnHitDistanceSquared(const tagXHitPointer& pointer, double x, double y)
{
    return XfnHitDistanceSquared(pointer, x, y, x, y);
}

double XfnHitDistanceSquared(const tagXHitPointer& pointer, double ax, double ay, double bx,
                             double by)
{
    if (!pointer.isUsable || !IsUsable(ax, ay) || !IsUsable(bx, by)) return kInfinity;
    const double toleranceX = WithRounding(pointer.toleranceX, pointer.x, ax, bx);
    const double toleranceY = WithRounding(pointer.toleranceY, pointer.y, ay, by);
    const double relAx = (ax - pointer.x) / toleranceX;
    const double relAy = (ay - pointer.y) / toleranceY;
    const double relBx = (bx - pointer.x) / toleranceX;
    const double relBy = (by - pointer.y) / toleranceY;
    if (!std::isfinite(relAx) || !std::isfinite(relAy) || !std::isfinite(relBx) ||
        !std::isfinite(relBy)) {
        return kInfinity;
    }
    const double distance = DistanceToSegment(relAx, relAy, relBx, relBy);
    return distance * distance;
}

bool XfnIsInRing(double x, double y, const double* coords, int stride, std::size_t count)
{
    if (!coords || stride < 2 || !IsUsable(x, y)) return false;
    bool isInside = false;
    ForEachRingEdge(coords, stride, count, [&](double ax, double ay, double bx, double by, int) {
        if ((ay > y) != (by > y) && x < CrossingX(y, ax, ay, bx, by)) isInside = !isInside;
    });
    return isInside;
}

bool XfnIsInRing(double x, double y, const XVertexArray& ring)
{
    return XfnIsInRing(x, y, ring.GetCoords(), ring.GetStride(),
                       static_cast<std::size_t>(ring.GetSize()));
}

int XfnGetWindingNumber(double x, double y, const XVertexArray& ring)
{
    if (!IsUsable(x, y)) return 0;
    int turns = 0;
    ForEachRingEdge(ring, [&](double ax, double ay, double bx, double by, int) {
        if ((ay > y) != (by > y) && x < CrossingX(y, ax, ay, bx, by)) turns += by > ay ? 1 : -1;
    });
    return turns;
}

double XfnGetSignedArea(const XVertexArray& ring)
{
    double area = 0.0;
    bool isFirst = true;
    double originX = 0.0, originY = 0.0;
    ForEachRingEdge(ring, [&](double ax, double ay, double bx, double by, int) {
        if (isFirst) { // coordinates of maps are large next to the sides of an area
            originX = ax;
            originY = ay;
            isFirst = false;
        }
        area += (ax - originX) * (by - originY) - (bx - originX) * (ay - originY);
    });
    return area / 2.0;
}

bool XfnHitVertices(const tagXHitPointer& pointer, const XVertexArray& vertices, XHitShape shape,
                    tagXHitFlag& flag)
{
    if (!pointer.isUsable) return false;
    double nearest = 1.0;
    tagXHitFlag found{-1, 0};
    const auto take = [&](double distanceSquared, int kind, int index) {
        // the first of several as near; the very border counts
        const bool isNearer =
            found.kind < 0 ? distanceSquared <= nearest : distanceSquared < nearest;
        if (!isNearer) return;
        nearest = distanceSquared;
        found = {kind, index};
    };
    for (int i = 0; i < vertices.GetSize(); ++i) {
        take(XfnHitDistanceSquared(pointer, vertices.GetX(i), vertices.GetY(i)),
             tagXHitFlag::kVertex, i);
    }
    if (found.kind < 0 && shape == XHitShape::Line) {
        for (int i = 0; i + 1 < vertices.GetSize(); ++i) {
            take(XfnHitDistanceSquared(pointer, vertices.GetX(i), vertices.GetY(i),
                                       vertices.GetX(i + 1), vertices.GetY(i + 1)),
                 tagXHitFlag::kEdge, i);
        }
    }
    const bool isRing = shape == XHitShape::Loop || shape == XHitShape::Ring;
    if (found.kind < 0 && isRing) {
        ForEachRingEdge(vertices, [&](double ax, double ay, double bx, double by, int index) {
            take(XfnHitDistanceSquared(pointer, ax, ay, bx, by), tagXHitFlag::kEdge, index);
        });
    }
    if (found.kind < 0 && shape == XHitShape::Ring && XfnIsInRing(pointer.x, pointer.y, vertices)) {
        found = {tagXHitFlag::kBody, 0};
    }
    if (found.kind < 0) return false;
    flag = found;
    return true;
}
