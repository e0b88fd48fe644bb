#include "foundation/vector/XRingNesting.h"

#include "foundation/vector/XHitGeometry.h"
#include "foundation/vector/XVectorRange.h"
#include "foundation/vector/XVertexArray.h"
#include "foundation/vector/XVertexMath.h"

#include <cmath>

namespace {

struct Ring
{
    const XVertexArray* vertices;
    tagXVectorRange range;
    double area; // positive for counter-clockwise
};

bool IsWithin(const tagXVectorRange& inner, const tagXVectorRange& outer)
{
    return inner.minX >= outer.minX && inner.maxX <= outer.maxX && inner.minY >= outer.minY &&
           inner.maxY <= outer.maxY;
}

// Whether `inner` lies in `outer`, told by the first vertex that is not on the outer ring itself.
bool IsWithin(const Ring& inner, const Ring& outer)
{
    if (!IsWithin(inner.range, outer.range)) return false;
    for (int i = 0; i < inner.vertices->GetSize(); ++i) {
        const tagXVector3 vertex = inner.vertices->GetAt(i);
        if (!XfnIsUsable(vertex)) continue;
        tagXHitFlag flag;
        const bool isOnRing = XfnHitVertices(XfnMakeHitPointer(vertex, 0.0, 0.0), *outer.vertices,
                                             XHitShape::Loop, flag);
        if (!isOnRing) return XfnIsInRing(vertex.x, vertex.y, *outer.vertices);
    }
    return false;
}

int Turn(const Ring& ring)
{
    return ring.area > 0.0 ? 1 : -1;
}

} // namespace

std::vector<tagXNestedRings> XfnNestRings(const std::vector<const XVertexArray*>& rings,
                                          bool isWinding)
{
    const std::size_t count = rings.size();
    std::vector<Ring> known(count);
    for (std::size_t i = 0; i < count; ++i) {
        known[i] = {rings[i], {}, XfnGetSignedArea(*rings[i])};
        for (int k = 0; k < rings[i]->GetSize(); ++k) {
            known[i].range.Add(rings[i]->GetX(k), rings[i]->GetY(k), 0.0);
        }
    }
    std::vector<std::vector<std::size_t>> around(count);
    std::vector<bool> isHole(count);
    for (std::size_t i = 0; i < count; ++i) {
        int turns = Turn(known[i]);
        for (std::size_t k = 0; k < count; ++k) {
            if (k == i || !IsWithin(known[i], known[k])) continue;
            around[i].push_back(k);
            turns += Turn(known[k]);
        }
        isHole[i] = isWinding ? turns == 0 : around[i].size() % 2 == 1;
    }
    std::vector<tagXNestedRings> areas;
    std::vector<std::size_t> areaOf(count);
    const auto findOuter = [&](std::size_t hole) {
        std::size_t best = count;
        for (const std::size_t k : around[hole]) {
            const bool isSmaller =
                best == count || std::fabs(known[k].area) < std::fabs(known[best].area);
            if (!isHole[k] && isSmaller) best = k;
        }
        return best;
    };
    for (std::size_t i = 0; i < count; ++i) {
        if (isHole[i] && findOuter(i) != count) continue;
        areaOf[i] = areas.size();
        areas.push_back({i, {}});
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (!isHole[i]) continue;
        const std::size_t outer = findOuter(i);
        if (outer != count) areas[areaOf[outer]].holes.push_back(i);
    }
    return areas;
}
