#include "host/XObjectSize.h"

#include "foundation/base/XSentinels.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XGeodesy.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XRingNesting.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcMLine.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcPolypoint.h"

#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int kMostDepth = 64; // of groups in groups
constexpr int kWgs84 = 4326;

/// The lines and areas that an object is made of.
struct tagParts
{
    std::vector<const XVertexArray*> lines;
    struct tagArea
    {
        std::vector<const XVertexArray*> rings;
        bool isWinding = false;
    };
    std::vector<tagArea> areas;
    int points = 0;
};

void Collect(const XvcObj& object, tagParts& parts, int depth)
{
    if (depth > kMostDepth) return;
    if (const auto* polygon = dynamic_cast<const XvcPolygon*>(&object)) {
        parts.areas.push_back({{&std::as_const(*polygon).GetVertexArray()}, false});
    } else if (const auto* polygons = dynamic_cast<const XvcMPolygon*>(&object)) {
        tagParts::tagArea area;
        area.isWinding = polygons->GetPolyFillMode() == XvcMPolygon::kWinding;
        for (int i = 0; i < polygons->GetNumOfPolygons(); ++i)
            area.rings.push_back(&std::as_const(*polygons->GetPolygonObjAt(i)).GetVertexArray());
        parts.areas.push_back(std::move(area));
    } else if (const auto* polylines = dynamic_cast<const XvcMPolyline*>(&object)) {
        for (int i = 0; i < polylines->GetNumOfPolylines(); ++i)
            Collect(*polylines->GetPolylineObjAt(i), parts, depth + 1);
    } else if (const auto* lines = dynamic_cast<const XvcMLine*>(&object)) {
        for (int i = 0; i < lines->GetNumOfLines(); ++i)
            Collect(*lines->GetLineObjAt(i), parts, depth + 1);
    } else if (const auto* group = dynamic_cast<const XvcGroup*>(&object)) {
        for (int i = 0; i < group->GetNumOfObjs(); ++i)
            Collect(*group->GetObjAt(i), parts, depth + 1);
    } else if (const auto* points = dynamic_cast<const XvcMPoint*>(&object)) {
        parts.points += points->GetNumOfPoints();
    } else if (const auto* marks = dynamic_cast<const XvcPolypoint*>(&object)) {
        parts.points += marks->GetSize();
    } else if (dynamic_cast<const XvcPoint*>(&object)) {
        ++parts.points;
    } else if (dynamic_cast<const XvcPolyline*>(&object) || dynamic_cast<const XvcLine*>(&object)) {
        parts.lines.push_back(&static_cast<const XvcVertexObj&>(object).GetVertexArray());
    }
}

/// Measures lists of vertices, on the ellipsoid where the way there is known.
class XMeasure
{
public:
    explicit XMeasure(const XSpatialReference& world)
    {
        if (world.IsEmpty()) return;
        XSpatialReference geographic;
        geographic.importFromEPSG(kWgs84);
        m_way = XfnCreateCoordTrans(&world, &geographic);
    }
    bool IsMetric() const { return m_way != nullptr; }

    double GetLength(const XVertexArray& array, bool isRing)
    {
        if (!Take(array)) return 0;
        double length = 0;
        const std::size_t count = m_x.size();
        for (std::size_t i = isRing ? 0 : 1; i < count; ++i) {
            const std::size_t before = i == 0 ? count - 1 : i - 1;
            length += m_way ? XfnGeodesicDistance(m_x[before], m_y[before], m_x[i], m_y[i])
                            : std::hypot(m_x[i] - m_x[before], m_y[i] - m_y[before]);
        }
        return length;
    }

    double GetArea(const XVertexArray& array)
    {
        if (!Take(array) || m_x.size() < 3) return 0;
        double area = 0;
        if (m_way) {
            double perimeter = 0;
            XfnGeodesicArea(m_x.data(), m_y.data(), static_cast<int>(m_x.size()), area, perimeter);
            return std::fabs(area);
        }
        // about the first vertex, so that far coordinates cost no digits
        for (std::size_t i = 1; i + 1 < m_x.size(); ++i)
            area += (m_x[i] - m_x[0]) * (m_y[i + 1] - m_y[0]) -
                    (m_x[i + 1] - m_x[0]) * (m_y[i] - m_y[0]);
        return std::fabs(area) / 2;
    }

private:
    // The usable vertices, in degrees where the measure is that of the ellipsoid.
    bool Take(const XVertexArray& array)
    {
        m_x.clear();
        m_y.clear();
        for (int i = 0; i < array.GetSize(); ++i) {
            if (!XfnIsSet(array.GetX(i)) || !XfnIsSet(array.GetY(i))) continue;
            m_x.push_back(array.GetX(i));
            m_y.push_back(array.GetY(i));
        }
        if (m_x.empty() || !m_way) return !m_x.empty();
        std::vector<int> isOk(m_x.size());
        m_way->Transform(static_cast<int>(m_x.size()), m_x.data(), m_y.data(), nullptr,
                         isOk.data());
        std::size_t kept = 0;
        for (std::size_t i = 0; i < m_x.size(); ++i) {
            if (!isOk[i]) continue;
            m_x[kept] = m_x[i];
            m_y[kept++] = m_y[i];
        }
        m_x.resize(kept);
        m_y.resize(kept);
        return kept > 0;
    }

    std::unique_ptr<XCoordinateTransformation> m_way;
    std::vector<double> m_x;
    std::vector<double> m_y;
};

} // namespace

tagXObjectSize XfnMeasureObject(const XvcObj& object, const XSpatialReference& world)
{
    tagParts parts;
    Collect(object, parts, 0);
    XMeasure measure(world);
    tagXObjectSize size;
    size.isMetric = measure.IsMetric();
    size.parts = size.vertices = parts.points;
    for (const XVertexArray* line : parts.lines) {
        size.hasLength = true;
        size.length += measure.GetLength(*line, false);
        size.vertices += line->GetSize();
        ++size.parts;
    }
    for (const tagParts::tagArea& area : parts.areas) {
        std::vector<const XVertexArray*> rings;
        for (const XVertexArray* ring : area.rings) {
            size.vertices += ring->GetSize();
            ++size.parts;
            if (measure.GetArea(*ring) > 0) rings.push_back(ring);
        }
        size.hasArea = size.hasArea || !rings.empty();
        for (const tagXNestedRings& nested : XfnNestRings(rings, area.isWinding)) {
            size.area += measure.GetArea(*rings[nested.outer]);
            size.length += measure.GetLength(*rings[nested.outer], true);
            for (const std::size_t hole : nested.holes) {
                size.area -= measure.GetArea(*rings[hole]);
                size.length += measure.GetLength(*rings[hole], true);
            }
        }
    }
    return size;
}
