#include "view/XSelectionMarks.h"

#include "foundation/base/XObList.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XDrawAttrs.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XvcBalloon.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEllipseObj.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcMLine.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"
#include "foundation/vector/XvcMText.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcRectObj.h"
#include "foundation/vector/XvcSymbol.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <unordered_set>
#include <utility>

namespace {

constexpr double kHalfStampPixels = 3.0;
constexpr double kCellPixels = 4.0;

using Mark = std::function<void(const tagXVector3&)>;

void MarkBox(double minX, double minY, double maxX, double maxY, const Mark& mark)
{
    mark({minX, minY, 0.0});
    mark({maxX, minY, 0.0});
    mark({maxX, maxY, 0.0});
    mark({minX, maxY, 0.0});
}

void MarkRange(const XvcObj& object, const Mark& mark)
{
    const tagXVectorRange& range = object.GetRange();
    if (!range.IsEmpty()) MarkBox(range.minX, range.minY, range.maxX, range.maxY, mark);
}

void MarkVertices(const XvcObj& object, const Mark& mark)
{
    const auto& vertices = static_cast<const XvcVertexObj&>(object);
    for (int i = 0; i < vertices.GetSize(); ++i)
        mark(vertices.GetAt(i));
}

/// The same for each part of an object that is made of some.
template <class Whole, auto GetCount, auto GetPartAt, auto MarkPart>
void MarkParts(const XvcObj& object, const Mark& mark)
{
    const auto& whole = static_cast<const Whole&>(object);
    for (int i = 0; i < (whole.*GetCount)(); ++i)
        if (const XvcObj* part = (whole.*GetPartAt)(i)) MarkPart(*part, mark);
}

void MarkPoint(const XvcObj& object, const Mark& mark)
{
    mark(static_cast<const XvcPoint&>(object).GetVertex());
}

void MarkEllipse(const XvcObj& object, const Mark& mark)
{
    const auto& ellipse = static_cast<const XvcEllipseObj&>(object);
    const tagXVector3 center = ellipse.GetCenter();
    if (!XfnIsUsable(center)) return; // the sum of "not set" and an axis would be a coordinate
    mark(center);
    mark({center.x + ellipse.GetAxisX(), center.y, center.z});
    mark({center.x, center.y + ellipse.GetAxisY(), center.z});
}

void MarkRectangle(const XvcObj& object, const Mark& mark)
{
    const auto& box = static_cast<const XvcRectObj&>(object);
    const tagXVector3 lower = box.GetLL(), upper = box.GetUR();
    MarkBox(lower.x, lower.y, upper.x, upper.y, mark);
}

void MarkBalloon(const XvcObj& object, const Mark& mark)
{
    MarkRange(object, mark);
    mark(static_cast<const XvcBalloon&>(object).GetPointPosition());
}

struct tagCtrlRow
{
    const char* className;
    void (*markAll)(const XvcObj&, const Mark&);
};

constexpr tagCtrlRow kCtrlRows[] = {
    {"XvcPoint", MarkPoint},
    {"XvcSymbol", MarkVertices},
    {"XvcMPoint",
     MarkParts<XvcMPoint, &XvcMPoint::GetNumOfPoints, &XvcMPoint::GetPointObjAt, MarkPoint>},
    {"XvcPolygon", MarkVertices},
    {"XvcPolyline", MarkVertices},
    {"XvcMPolygon", MarkParts<XvcMPolygon, &XvcMPolygon::GetNumOfPolygons,
                              &XvcMPolygon::GetPolygonObjAt, MarkVertices>},
    {"XvcMPolyline", MarkParts<XvcMPolyline, &XvcMPolyline::GetNumOfPolylines,
                               &XvcMPolyline::GetPolylineObjAt, MarkVertices>},
    {"XvcLine", MarkVertices},
    {"XvcMLine",
     MarkParts<XvcMLine, &XvcMLine::GetNumOfLines, &XvcMLine::GetLineObjAt, MarkVertices>},
    {"XvcEllipse", MarkEllipse},
    {"XvcArc", MarkEllipse},
    {"XvcBspline", MarkVertices},
    {"XvcText", MarkRange},
    {"XvcBitmap", MarkRange},
    {"XvcRaster", MarkRange},
    {"XvcGroup", MarkRange},
    {"XvcMText", MarkParts<XvcMText, &XvcMText::GetNumOfTexts, &XvcMText::GetTextObjAt, MarkRange>},
    {"XvcRectangle", MarkRectangle},
    {"XvcNorthArrow", MarkRectangle},
    {"XvcScaleBar", MarkRectangle},
    {"XvcTextBox", MarkRange},
    {"XvcBalloon", MarkBalloon},
};

bool IsBlack(tagXColor color)
{
    return (color | kXOpaque) == kXOpaque && color != 0;
}

tagXColor MarkColor(tagXColor color)
{
    constexpr tagXColor kNearBlack = XfnMakeColor(1, 1, 1);
    return IsBlack(color) ? color | kNearBlack : color;
}

/// Records outlines and squares of objects.
class SelectionRecorder
{
public:
    SelectionRecorder(XVertBuffer& buffer, const XBackBuffer& target, tagXColor color)
        : m_buffer(buffer), m_target(target)
    {
        m_outline.lineStyle.emplace(tagXLineStyle::kSelection);
        m_outline.lineColor = MarkColor(color);
        m_outline.thick = 0.0;
        // the object is seen already: laid over itself, its inside would hide what lies there
        m_outline.fillStyle.emplace(tagXFillStyle::kNone);
        m_outline.backColor = 0;
        m_outline.foreColor = 0; // points are filled without a style
        m_stampLine.colour = MarkColor(color);
        target.ConvPixelToWorldLength(m_stampX, m_stampY);
    }

    void Add(XvcObj& object)
    {
        AddOutline(object, nullptr);
        for (const char* name : {"XvcTextBox", "XvcBalloon"})
            if (XfnIsExactly(&object, name))
                XfnPlaceTextEditor(static_cast<XvcTextBox&>(object), m_target);
        for (const tagCtrlRow& row : kCtrlRows) {
            if (!XfnIsExactly(&object, row.className)) continue;
            row.markAll(object, [this](const tagXVector3& at) { AddStamp(at); });
            return;
        }
    }

    void AddCoarse(XvcObj& object)
    {
        const tagXVectorRange& range = object.GetRange();
        if (range.IsEmpty()) return;
        const double cellX = m_stampX * (kCellPixels / kHalfStampPixels);
        const double cellY = m_stampY * (kCellPixels / kHalfStampPixels);
        const double x = std::floor((range.minX / 2 + range.maxX / 2) / cellX);
        const double y = std::floor((range.minY / 2 + range.maxY / 2) / cellY);
        if (!std::isfinite(x) || !std::isfinite(y) || !m_marked.insert({x, y}).second) return;
        if (range.maxX - range.minX < cellX && range.maxY - range.minY < cellY)
            AddStamp({range.minX / 2 + range.maxX / 2, range.minY / 2 + range.maxY / 2, 0.0});
        else
            AddRange(object);
    }

private:
    void AddOutline(XvcObj& object, const XWarp2D* warp)
    {
        for (const char* name : {"XvcBitmap", "XvcRaster", "XvcTextBox", "XvcText"})
            if (XfnIsExactly(&object, name)) return AddRange(object);
        if (XfnIsExactly(&object, "XvcMText")) {
            const auto& texts = static_cast<const XvcMText&>(object);
            for (int i = 0; i < texts.GetNumOfTexts(); ++i)
                AddRange(*texts.GetTextObjAt(i));
            return;
        }
        if (auto* group = dynamic_cast<XvcGroup*>(&object)) { // may hold pictures
            if (!warp) warp = group->GetWarpCeoff();
            for (int i = 0; i < group->GetNumOfObjs(); ++i)
                if (!group->GetObjAt(i)->IsHidden()) AddOutline(*group->GetObjAt(i), warp);
            return;
        }
        object.CreateVertexBuffer(&m_buffer, warp, &m_outline);
    }

    void AddRange(const XvcObj& object)
    {
        const tagXVectorRange& range = object.GetRange();
        if (range.IsEmpty()) return;
        const tagXVector3 corners[] = {{range.minX, range.minY, 0.0},
                                       {range.maxX, range.minY, 0.0},
                                       {range.maxX, range.maxY, 0.0},
                                       {range.minX, range.maxY, 0.0}};
        const tagXVertLine line{*m_outline.lineColor, 0.0, *m_outline.lineStyle};
        m_buffer.AddPolygon(corners, std::size(corners), &line, nullptr);
    }

    void AddStamp(const tagXVector3& at)
    {
        if (!XfnIsUsable(at)) return;
        // there are thousands in a drag: recorded straight, and without a fill, so that what lies
        // below stays in sight
        const tagXVector3 corners[] = {{at.x - m_stampX, at.y - m_stampY, 0.0},
                                       {at.x + m_stampX, at.y - m_stampY, 0.0},
                                       {at.x + m_stampX, at.y + m_stampY, 0.0},
                                       {at.x - m_stampX, at.y + m_stampY, 0.0}};
        m_buffer.AddPolygon(corners, std::size(corners), &m_stampLine, nullptr);
    }

    XVertBuffer& m_buffer;
    const XBackBuffer& m_target;
    tagXDrawAttrs m_outline;
    tagXVertLine m_stampLine;
    double m_stampX = kHalfStampPixels;
    double m_stampY = kHalfStampPixels;
    struct tagCellHash
    {
        std::size_t operator()(const std::pair<double, double>& cell) const
        {
            const std::hash<double> hash;
            return hash(cell.first) * 31 + hash(cell.second);
        }
    };
    std::unordered_set<std::pair<double, double>, tagCellHash> m_marked;
};

} // namespace

void XfnMakeCtrlPoint(const tagXVector3& at, const XBackBuffer& target, XvcPolygon& polygon)
{
    double dx = kHalfStampPixels, dy = kHalfStampPixels;
    target.ConvPixelToWorldLength(dx, dy);
    polygon.RemoveAll();
    polygon.Add(at.x - dx, at.y - dy, 0.0);
    polygon.Add(at.x + dx, at.y - dy, 0.0);
    polygon.Add(at.x + dx, at.y + dy, 0.0);
    polygon.Add(at.x - dx, at.y + dy, 0.0);
    polygon.CalcRange();
}

void XfnPlaceTextEditor(XvcTextBox& box, const XBackBuffer& target)
{
    const tagXVectorRange& range = box.GetRange();
    if (range.IsEmpty()) return;
    double left = range.minX, top = range.maxY, right = range.maxX, bottom = range.minY;
    target.ConvWorldToPixelCoord(left, top);
    target.ConvWorldToPixelCoord(right, bottom);
    const auto hold = [](double pixel) { // far beyond any screen it does not matter how far
        constexpr double kFar = 1 << 24;
        return static_cast<int>(std::lround(std::clamp(pixel, -kFar, kFar)));
    };
    if (std::isnan(left + top + right + bottom)) return;
    box.SetEditBound(hold(left), hold(top), hold(right), hold(bottom));
}

void XfnRecordCurrent(XVertBuffer& buffer, XvcObj& object)
{
    tagXDrawAttrs attrs;
    if (IsBlack(object.GetLineColor())) attrs.lineColor = MarkColor(object.GetLineColor());
    if (IsBlack(object.GetForeColor())) attrs.foreColor = MarkColor(object.GetForeColor());
    if (IsBlack(object.GetBackColor())) attrs.backColor = MarkColor(object.GetBackColor());
    object.CreateVertexBuffer(&buffer, nullptr, &attrs);
}

void XfnRecordSelection(XVertBuffer& buffer, const XObList& selection, const XBackBuffer& target,
                        tagXColor color)
{
    SelectionRecorder recorder(buffer, target, color);
    for (__POSITION* pos = selection.GetHeadPosition(); pos;)
        if (auto* object = dynamic_cast<XvcObj*>(selection.GetNext(pos))) recorder.Add(*object);
}

void XfnRecordManySelected(XVertBuffer& buffer, const XObList& selection, const XBackBuffer& target,
                           tagXColor color)
{
    SelectionRecorder recorder(buffer, target, color);
    for (__POSITION* pos = selection.GetHeadPosition(); pos;)
        if (auto* object = dynamic_cast<XvcObj*>(selection.GetNext(pos)))
            recorder.AddCoarse(*object);
}
