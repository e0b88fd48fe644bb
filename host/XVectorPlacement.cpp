#include "host/XVectorPlacement.h"

#include "foundation/base/XPtrArray.h"
#include "foundation/base/XSentinels.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XvcBase.h"
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
#include "host/XVectorVisit.h"

#include <cmath>
#include <vector>

namespace {

constexpr int kMapCoordinates = 3;
constexpr int kMostDepth = 64; // of groups in groups

class XPlacer
{
public:
    XPlacer(const XSpatialReference& from, const XSpatialReference& to)
        : m_way(from, to), m_step(from.IsGeographic() ? 1e-4 : 10.0) // about ten metres
    {}

    bool IsValid() const { return m_way.IsValid() != 0; }
    long long GetVertices() const { return m_vertices; }
    long long GetLost() const { return m_lost; }

    /// How much longer a length becomes at a place, along x and y; 1 where that is not known.
    void GetScale(double x, double y, double& scaleX, double& scaleY)
    {
        double xs[3] = {x, x + m_step, x};
        double ys[3] = {y, y, y + m_step};
        int isOk[3] = {0, 0, 0};
        m_way.Transform(3, xs, ys, nullptr, isOk);
        scaleX = scaleY = 1;
        if (!isOk[0]) return;
        if (isOk[1]) scaleX = std::hypot(xs[1] - xs[0], ys[1] - ys[0]) / m_step;
        if (isOk[2]) scaleY = std::hypot(xs[2] - xs[0], ys[2] - ys[0]) / m_step;
    }
    void Place(XvcObj& object, int depth = 0)
    {
        if (depth > kMostDepth) return;
        const double scale = GetSizeScale(object);
        if (auto* polygon = dynamic_cast<XvcPolygon*>(&object)) {
            PlaceArray(polygon->GetVertexArray());
        } else if (auto* polyline = dynamic_cast<XvcPolyline*>(&object)) {
            PlaceArray(polyline->GetVertexArray());
        } else if (auto* points = dynamic_cast<XvcPolypoint*>(&object)) {
            PlaceArray(points->GetVertexArray());
        } else if (dynamic_cast<XvcPoint*>(&object) || dynamic_cast<XvcLine*>(&object)) {
            PlaceVertices(object);
        } else if (!PlaceParts(object, depth)) {
            PlaceAsWhole(object);
            return; // its sizes went with it
        }
        if (scale != 1) object.SetThick(object.GetThick() * scale);
        object.CalcRange();
    }

private:
    // Of a thickness that is a world length, in the middle of its object; others stay as they are.
    double GetSizeScale(const XvcObj& object)
    {
        const tagXVectorRange& range = object.GetRange();
        if (!(object.GetThick() > 0) || range.IsEmpty()) return 1;
        double scaleX = 1;
        double scaleY = 1;
        GetScale((range.minX + range.maxX) / 2, (range.minY + range.maxY) / 2, scaleX, scaleY);
        return scaleX;
    }

    bool PlaceParts(XvcObj& object, int depth)
    {
        if (auto* polygons = dynamic_cast<XvcMPolygon*>(&object)) {
            for (int i = 0; i < polygons->GetNumOfPolygons(); ++i)
                Place(*polygons->GetPolygonObjAt(i), depth + 1);
        } else if (auto* polylines = dynamic_cast<XvcMPolyline*>(&object)) {
            for (int i = 0; i < polylines->GetNumOfPolylines(); ++i)
                Place(*polylines->GetPolylineObjAt(i), depth + 1);
        } else if (auto* points = dynamic_cast<XvcMPoint*>(&object)) {
            for (int i = 0; i < points->GetNumOfPoints(); ++i)
                Place(*points->GetPointObjAt(i), depth + 1);
        } else if (auto* lines = dynamic_cast<XvcMLine*>(&object)) {
            for (int i = 0; i < lines->GetNumOfLines(); ++i)
                Place(*lines->GetLineObjAt(i), depth + 1);
        } else if (auto* group = dynamic_cast<XvcGroup*>(&object)) {
            for (int i = 0; i < group->GetNumOfObjs(); ++i)
                Place(*group->GetObjAt(i), depth + 1);
        } else {
            return false;
        }
        return true;
    }

    void PlaceArray(XVertexArray& array)
    {
        const int count = array.GetSize();
        m_x.resize(static_cast<std::size_t>(count));
        m_y.resize(m_x.size());
        for (int i = 0; i < count; ++i) {
            m_x[static_cast<std::size_t>(i)] = array.GetX(i);
            m_y[static_cast<std::size_t>(i)] = array.GetY(i);
        }
        Carry();
        for (int i = 0; i < count; ++i) {
            const auto at = static_cast<std::size_t>(i);
            array.SetAt(i, m_x[at], m_y[at], array.GetAt(i).z);
        }
    }

    void PlaceVertices(XvcObj& object)
    {
        XPtrArray vertices;
        object.AddCtrlPoints(vertices);
        const auto count = vertices.GetSize();
        m_x.clear();
        m_y.clear();
        for (auto i = count - count; i < count; ++i) {
            const auto* vertex = static_cast<const tagXVector3*>(vertices.GetAt(i));
            m_x.push_back(vertex->x);
            m_y.push_back(vertex->y);
        }
        Carry();
        for (auto i = count - count; i < count; ++i) {
            auto* vertex = static_cast<tagXVector3*>(vertices.GetAt(i));
            vertex->x = m_x[static_cast<std::size_t>(i)];
            vertex->y = m_y[static_cast<std::size_t>(i)];
        }
    }

    // What has a shape of its own, such as a text or a picture, keeps it: moved and sized as its
    // first vertex is.
    void PlaceAsWhole(XvcObj& object)
    {
        XPtrArray vertices;
        object.AddCtrlPoints(vertices);
        if (vertices.GetSize() == 0) return;
        const tagXVector3 anchor = *static_cast<const tagXVector3*>(vertices.GetAt(0));
        double scaleX = 1;
        double scaleY = 1;
        GetScale(anchor.x, anchor.y, scaleX, scaleY);
        m_x.assign(1, anchor.x);
        m_y.assign(1, anchor.y);
        Carry();
        if (m_x[0] == kXNotSet || !(scaleX > 0) || !(scaleY > 0)) {
            object.SetHideFlag(1);
            return;
        }
        // about the origin: far from it a scale would cost digits
        object.MoveObject(-anchor.x, -anchor.y, 0);
        object.Normalize(0, 0, 1 / scaleX, 1 / scaleY);
        object.MoveObject(m_x[0], m_y[0], 0);
        object.CalcRange();
    }

    void Carry()
    {
        const int count = static_cast<int>(m_x.size());
        if (count == 0) return;
        m_isOk.assign(m_x.size(), 0);
        m_way.Transform(count, m_x.data(), m_y.data(), nullptr, m_isOk.data());
        m_vertices += count;
        for (const int isOk : m_isOk)
            m_lost += isOk == 0;
    }

    XCoordinateTransformation m_way;
    double m_step;
    long long m_vertices = 0;
    long long m_lost = 0;
    std::vector<double> m_x;
    std::vector<double> m_y;
    std::vector<int> m_isOk;
};

} // namespace

bool XfnCanBeDegrees(const tagXVectorRange& range)
{
    constexpr double kMostLongitude = 180, kMostEastward = 360, kMostLatitude = 90;
    if (range.IsEmpty() || range.minY < -kMostLatitude || range.maxY > kMostLatitude) return false;
    if (range.minX == 0 && range.maxX == 0 && range.minY == 0 && range.maxY == 0) return false;
    return range.minX >= 0 ? range.maxX <= kMostEastward
                           : range.minX >= -kMostLongitude && range.maxX <= kMostLongitude;
}

XSpatialReference XfnGuessReference(bool canBeDegrees, const XSpatialReference& world)
{
    constexpr int kWgs84 = 4326;
    XSpatialReference guess;
    const bool isMap = !world.IsEmpty() && world.GetCoordType() == kMapCoordinates;
    if (canBeDegrees && isMap && world.IsProjected()) guess.importFromEPSG(kWgs84);
    return guess;
}

tagXPlacement XfnPlaceVector(XvcBase& base, const XSpatialReference& from,
                             const XSpatialReference& to, const tagXSaveControl& control)
{
    tagXPlacement result;
    if (from.IsEmpty() || to.IsEmpty() || to.GetCoordType() != kMapCoordinates) return result;
    base.CalcRange();
    if (from.IsSame(&to)) {
        result.isPlaced = true;
        return result;
    }
    XPlacer placer(from, to);
    if (!placer.IsValid()) return result;
    long long count = 0;
    XfnVisitObjects(base, [&count](XvcObj&) { return ++count > 0; });
    XSaveProgress progress(control, count);
    result.isStopped = !XfnVisitObjects(base, [&](XvcObj& object) {
        if (progress.IsStopped()) return false;
        placer.Place(object);
        progress.Step();
        return true;
    });
    base.CalcRange();
    result.isPlaced = !result.isStopped;
    result.vertices = placer.GetVertices();
    result.lost = placer.GetLost();
    return result;
}
