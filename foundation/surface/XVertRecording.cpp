#include "foundation/surface/XVertRecording.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMaxCoordinate = 1e300; // keeps the "not set" number out

bool IsDrawable(double value)
{
    return std::fabs(value) <= kMaxCoordinate; // false for NaN
}

bool IsDrawable(const tagXVector3& v)
{
    return IsDrawable(v.x) && IsDrawable(v.y);
}

// Objects of one layer mostly look alike, so looking at the last few styles finds most of them.
template <class Style, class IsSame>
std::uint32_t Intern(std::vector<Style>& table, const Style& style, IsSame isSame)
{
    const std::size_t from = table.size() > 8 ? table.size() - 8 : 0;
    for (std::size_t i = table.size(); i-- > from;) {
        if (isSame(table[i], style)) return static_cast<std::uint32_t>(i);
    }
    table.push_back(style);
    return static_cast<std::uint32_t>(table.size() - 1);
}

bool IsSameLine(const tagXVertLine& a, const tagXVertLine& b)
{
    return a.colour == b.colour && a.thick == b.thick && a.style == b.style;
}

bool IsSameFill(const tagXVertFill& a, const tagXVertFill& b)
{
    return a.foreColour == b.foreColour && a.backColour == b.backColour && a.style == b.style;
}

bool IsSamePoint(const tagXVertPoint& a, const tagXVertPoint& b)
{
    return a.shape == b.shape && a.size == b.size && a.lineColour == b.lineColour &&
           a.fillColour == b.fillColour;
}

bool IsVisible(const tagXVertLine& line)
{
    return !line.style.IsNone() && XfnGetAlpha(line.colour) != 0 && std::isfinite(line.thick);
}

bool IsVisible(const tagXVertFill& fill)
{
    if (fill.style.IsNone()) return false;
    const bool hasBack = fill.style.GetStyle() != tagXFillStyle::kSolid;
    return XfnGetAlpha(fill.foreColour) != 0 || (hasBack && XfnGetAlpha(fill.backColour) != 0);
}

} // namespace

bool XVertRecording::PushVertex(double x, double y)
{
    if (!IsDrawable(x) || !IsDrawable(y)) return false;
    m_vertices.push_back(x);
    m_vertices.push_back(y);
    return true;
}

XVertRecording::tagCommand& XVertRecording::PushCommand(XKind kind, std::size_t first,
                                                        std::size_t count)
{
    m_commands.push_back({kind, false, kNoStyle, kNoStyle, 0, 0, first, count});
    return m_commands.back();
}

void XVertRecording::AddPoint(const tagXVector3& at, const tagXVertPoint& point)
{
    if (!std::isfinite(point.size)) return;
    if (XfnGetAlpha(point.lineColour) == 0 && XfnGetAlpha(point.fillColour) == 0) return;
    if (!PushVertex(at.x, at.y)) return;
    const std::uint32_t style = Intern(m_points, point, IsSamePoint);
    if (!m_commands.empty() && m_commands.back().kind == XKind::Points &&
        m_commands.back().line == style) {
        ++m_commands.back().count;
        return;
    }
    PushCommand(XKind::Points, m_vertices.size() / 2 - 1, 1).line = style;
}

void XVertRecording::AddPolyline(const tagXVector3* vertices, std::size_t count,
                                 const tagXVertLine& line)
{
    if (!vertices || !IsVisible(line)) return;
    std::size_t first = m_vertices.size() / 2;
    const auto endPart = [&] {
        const std::size_t partCount = m_vertices.size() / 2 - first;
        if (partCount >= 2) {
            PushCommand(XKind::Polyline, first, partCount).line = Intern(m_lines, line, IsSameLine);
        } else {
            m_vertices.resize(2 * first);
        }
        first = m_vertices.size() / 2;
    };
    for (std::size_t i = 0; i < count; ++i) {
        if (!PushVertex(vertices[i].x, vertices[i].y)) endPart();
    }
    endPart();
}

void XVertRecording::AddPolygon(const tagXVector3* vertices, const std::size_t* ringSizes,
                                std::size_t ringCount, const tagXVertLine* line,
                                const tagXVertFill* fill, bool isWinding)
{
    const bool hasLine = line && IsVisible(*line);
    const bool hasFill = fill && IsVisible(*fill);
    if (!vertices || !ringSizes || (!hasLine && !hasFill)) return;
    const std::size_t first = m_vertices.size() / 2;
    const std::size_t firstRing = m_rings.size();
    for (std::size_t ring = 0; ring < ringCount; vertices += ringSizes[ring], ++ring) {
        const std::size_t start = m_vertices.size();
        for (std::size_t i = 0; i < ringSizes[ring]; ++i)
            PushVertex(vertices[i].x, vertices[i].y);
        const std::size_t kept = (m_vertices.size() - start) / 2;
        if (kept >= 2) {
            m_rings.push_back(kept);
        } else {
            m_vertices.resize(start);
        }
    }
    if (m_rings.size() == firstRing) return;
    tagCommand& command = PushCommand(XKind::Polygon, first, m_vertices.size() / 2 - first);
    command.isWinding = isWinding;
    if (hasLine) command.line = Intern(m_lines, *line, IsSameLine);
    if (hasFill) command.fill = Intern(m_fills, *fill, IsSameFill);
    command.extra = static_cast<std::uint32_t>(firstRing);
    command.extraCount = static_cast<std::uint32_t>(m_rings.size() - firstRing);
}

void XVertRecording::AddText(const tagXVertText& text, bool isHeightInPixels)
{
    if (!IsDrawable(text.position) || !std::isfinite(text.angleDeg)) return;
    if (!(text.height > 0.0) || !std::isfinite(text.height) || text.text.IsEmpty()) return;
    PushCommand(XKind::Text, m_vertices.size() / 2, 0).extra =
        static_cast<std::uint32_t>(m_texts.size());
    m_texts.push_back({text, isHeightInPixels});
}

void XVertRecording::AddImage(const QImage& image, const tagXVector3& upperLeft,
                              const tagXVector3& upperRight, const tagXVector3& lowerLeft,
                              double opacity)
{
    if (image.isNull() || opacity <= 0.0) return;
    if (!IsDrawable(upperLeft) || !IsDrawable(upperRight) || !IsDrawable(lowerLeft)) return;
    tagCommand& command = PushCommand(XKind::Image, m_vertices.size() / 2, 3);
    command.extra = static_cast<std::uint32_t>(m_images.size());
    for (const tagXVector3* corner : {&upperLeft, &upperRight, &lowerLeft}) {
        PushVertex(corner->x, corner->y);
    }
    m_images.push_back({image, opacity < 1.0 ? opacity : 1.0});
}
