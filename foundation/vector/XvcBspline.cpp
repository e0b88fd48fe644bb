#include "foundation/vector/XvcBspline.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XSentinels.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <algorithm>
#include <cmath>
#include <utility>

X_IMPLEMENT_CLASS(XvcBspline, XvcVertexObj)

namespace {

constexpr std::size_t kMaxCurveVertices = 1000000;
constexpr std::size_t kMaxSteps = 512 * kMaxCurveVertices; // of the recurrence, in all

// The point of the curve at u within the span from knot `span` to the next. `points` is for work.
tagXVector3 Evaluate(const std::vector<tagXVector3>& poles, const std::vector<double>& knots,
                     std::size_t order, std::size_t span, double u,
                     std::vector<tagXVector3>& points)
{
    const std::size_t first = span + 1 - order;
    const auto begin = poles.begin() + static_cast<std::ptrdiff_t>(first);
    points.assign(begin, begin + static_cast<std::ptrdiff_t>(order));
    for (std::size_t level = 1; level < order; ++level) {
        for (std::size_t i = order - 1; i >= level; --i) {
            const double low = knots[first + i];
            const double width = knots[first + i + order - level] - low;
            const double part = width > 0.0 ? (u - low) / width : 0.0;
            points[i] = points[i - 1] * (1.0 - part) + points[i] * part;
        }
    }
    return points[order - 1];
}

std::vector<double> MakeKnots(std::size_t poleCount, std::size_t order, bool isClamped)
{
    std::vector<double> knots(poleCount + order);
    for (std::size_t i = 0; i < knots.size(); ++i) {
        const std::size_t held = std::clamp(i, order - 1, poleCount);
        knots[i] = static_cast<double>(isClamped ? held : i);
    }
    return knots;
}

bool AreKnots(const std::vector<double>& knots)
{
    for (std::size_t i = 0; i < knots.size(); ++i) {
        if (!XfnIsSet(knots[i]) || (i > 0 && knots[i] < knots[i - 1])) return false;
    }
    return !knots.empty() && XfnIsSet(knots.back() - knots.front());
}

} // namespace

int XvcBspline::AddKnot(double knot)
{
    Touch();
    m_knots.push_back(knot);
    return GetKnotSize() - 1;
}

double XvcBspline::GetKnotAt(int index) const
{
    return index >= 0 && index < GetKnotSize() ? m_knots[static_cast<std::size_t>(index)]
                                               : kXNotSet;
}

int XvcBspline::SetKnotAt(int index, double knot)
{
    Touch();
    if (index < 0 || index >= GetKnotSize()) return 0;
    m_knots[static_cast<std::size_t>(index)] = knot;
    return 1;
}

int XvcBspline::InsertKnotAt(int index, double knot)
{
    Touch();
    if (index < 0 || index > GetKnotSize()) return 0;
    m_knots.insert(m_knots.begin() + index, knot);
    return 1;
}

int XvcBspline::RemoveKnotAt(int index)
{
    Touch();
    if (index < 0 || index >= GetKnotSize()) return 0;
    m_knots.erase(m_knots.begin() + index);
    return 1;
}

void XvcBspline::SetOrder(int order)
{
    Touch();
    m_order = std::clamp(order, kMinOrder, kMaxOrder);
}

void XvcBspline::SetResolution(int steps)
{
    Touch();
    m_resolution = std::clamp(steps, 1, kMaxResolution);
}

void XvcBspline::SetType(int type)
{
    Touch();
    if (type >= kClamped && type <= kClosed) m_type = type;
}

void XvcBspline::GetCurve(std::vector<tagXVector3>& curve) const
{
    curve.clear();
    std::vector<tagXVector3> poles;
    m_vertices.CopyTo(poles);
    std::erase_if(poles, [](const tagXVector3& pole) { return !XfnIsUsable(pole); });
    if (poles.size() < 2) return;
    for (tagXVector3& pole : poles) {
        if (!XfnIsSet(pole.z)) pole.z = 0.0;
    }
    const std::size_t order = std::min(static_cast<std::size_t>(m_order), poles.size());
    if (m_type == kClosed) {
        for (std::size_t i = 0; i + 1 < order; ++i)
            poles.push_back(poles[i]);
    }
    std::vector<double> knots = m_knots;
    if (m_type == kClosed || knots.size() != poles.size() + order || !AreKnots(knots)) {
        knots = MakeKnots(poles.size(), order, m_type == kClamped);
    }
    const std::size_t spans = poles.size() + 1 - order;
    const std::size_t most = std::min(kMaxCurveVertices, kMaxSteps / (order * order / 2));
    const std::size_t steps =
        std::clamp<std::size_t>(most / spans, 1, static_cast<std::size_t>(m_resolution));
    const std::size_t stride = (spans + most - 1) / most;
    std::vector<tagXVector3> points;
    const auto add = [&](std::size_t span, double u) {
        curve.push_back(Evaluate(poles, knots, order, span, u, points));
    };
    curve.reserve(spans / stride * steps + 2);
    const auto hasWidth = [&](std::size_t span) { return knots[span + 1] > knots[span]; };
    for (std::size_t span = order - 1; span < poles.size(); span += stride) {
        const double width = knots[span + 1] - knots[span];
        for (std::size_t step = 0; step < steps && hasWidth(span); ++step) {
            const double part = static_cast<double>(step) / static_cast<double>(steps);
            add(span, knots[span] + width * part);
        }
    }
    std::size_t last = poles.size() - 1;
    while (last >= order && !hasWidth(last))
        --last;
    if (hasWidth(last)) add(last, knots[last + 1]);
}

void XvcBspline::CalcRange()
{
    std::vector<tagXVector3> curve;
    GetCurve(curve);
    m_range.Clear();
    for (const tagXVector3& vertex : curve)
        m_range.Add(vertex.x, vertex.y, vertex.z);
    if (curve.empty()) XvcVertexObj::CalcRange(); // a lone pole is where the object lies
}

tagXVectorRange XvcBspline::GetHitExtent() const
{
    tagXVectorRange extent = m_range;
    for (int i = 0; i < GetPoleSize() && !m_range.IsEmpty(); ++i)
        extent.Add(GetAt(i).x, GetAt(i).y, extent.minZ);
    return extent;
}

void XvcBspline::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                    const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    std::vector<tagXVector3> curve;
    GetCurve(curve);
    XfnWarpVertices(curve, ChooseWarp(warp));
    XfnRecordPolyline(buffer, curve, XVectorPaint(*this, attrs));
}

XvcObj* XvcBspline::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                            tagXHitFlag& hitFlag)
{
    if (XvcVertexObj::HitTest(point, toleranceX, toleranceY, hitFlag)) return this;
    const tagXHitPointer pointer = XfnMakeHitPointer(point, toleranceX, toleranceY);
    std::vector<tagXVector3> curve;
    GetCurve(curve);
    for (std::size_t i = 1; i < curve.size(); ++i) {
        if (XfnHitDistanceSquared(pointer, curve[i - 1].x, curve[i - 1].y, curve[i].x,
                                  curve[i].y) <= 1.0) {
            hitFlag = {tagXHitFlag::kBody, 0};
            return this;
        }
    }
    return nullptr;
}

int XvcBspline::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kLineString}, "a line string", error)) return 0;
    m_vertices = std::move(read.parts[0][0]);
    m_knots.clear();
    return 1;
}

XString XvcBspline::ExportToWkt() const
{
    std::vector<tagXVector3> curve;
    GetCurve(curve);
    XVertexArray vertices;
    vertices.Reserve(static_cast<int>(curve.size()));
    for (const tagXVector3& vertex : curve)
        vertices.Add(vertex);
    return XWktWriter::FromLine(vertices);
}

void XvcBspline::StoreOwn(XArchive& archive) const
{
    archive << m_order << m_resolution << m_type << static_cast<std::uint32_t>(m_knots.size());
    archive.Write(m_knots.data(), m_knots.size() * sizeof(double));
}

void XvcBspline::LoadOwn(XArchive& archive)
{
    int order = 0, resolution = 0, type = 0;
    archive >> order >> resolution >> type;
    if (type < kClamped || type > kClosed) throw XFileException(XFileException::kInvalidFile);
    std::vector<double> knots(archive.ReadCount(sizeof(double)));
    if (!knots.empty()) archive.ReadExactly(knots.data(), knots.size() * sizeof(double));
    SetOrder(order);
    SetResolution(resolution);
    m_type = type;
    m_knots = std::move(knots);
}
