#include "foundation/surface/XVertRecording.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kMaxCoordinate = 1e300; // keeps the "not set" number out
constexpr std::uint32_t kMaxRun = 1024;  // points of one command: a box over more tells little
constexpr double kMarkReachPx = 9.0;     // a mark of no size

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

constexpr float kMaxFloat = std::numeric_limits<float>::max();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

float RoundDown(double value)
{
    if (!(value > -kMaxFloat)) return -kInfinity;
    if (value >= kMaxFloat) return kMaxFloat;
    const float rounded = static_cast<float>(value);
    return rounded > value ? std::nextafter(rounded, -kInfinity) : rounded;
}

template <class T>
std::size_t BytesOf(const std::vector<T>& list)
{
    return list.capacity() * sizeof(T);
}

} // namespace

void XVertRecording::tagBox::Add(double x, double y)
{
    minX = std::min(minX, RoundDown(x));
    minY = std::min(minY, RoundDown(y));
    maxX = std::max(maxX, -RoundDown(-x));
    maxY = std::max(maxY, -RoundDown(-y));
}

void XVertRecording::tagBox::Add(const tagBox& box)
{
    minX = std::min(minX, box.minX);
    minY = std::min(minY, box.minY);
    maxX = std::max(maxX, box.maxX);
    maxY = std::max(maxY, box.maxY);
}

bool XVertRecording::PushVertex(double x, double y)
{
    if (!IsDrawable(x) || !IsDrawable(y) || GetVertexCount() >= kMaxVertices) return false;
    m_vertices.push_back(x);
    m_vertices.push_back(y);
    return true;
}

XVertRecording::tagCommand& XVertRecording::PushCommand(XKind kind, std::size_t first,
                                                        std::size_t count)
{
    m_boxes.emplace_back();
    m_commands.push_back({kind, false, kNoStyle, kNoStyle, 0, 0, static_cast<std::uint32_t>(first),
                          static_cast<std::uint32_t>(count)});
    Cover(m_commands.back());
    return m_commands.back();
}

void XVertRecording::Cover(tagCommand& command)
{
    const double* at = GetVertices(command.first);
    if (command.count == 0) return;
    double minX = at[0], minY = at[1], maxX = minX, maxY = minY;
    for (const double* end = at + 2 * std::size_t{command.count}; at != end; at += 2) {
        minX = std::min(minX, at[0]);
        minY = std::min(minY, at[1]);
        maxX = std::max(maxX, at[0]);
        maxY = std::max(maxY, at[1]);
    }
    m_boxes.back().Add(minX, minY);
    m_boxes.back().Add(maxX, maxY);
}

// A world length when positive, pixels when negative.
void XVertRecording::Reach(double size, double sizeOfZeroPx, double times)
{
    if (size > 0.0) {
        m_marginWorld = std::max(m_marginWorld, size * times);
    } else {
        m_marginPx = std::max(m_marginPx, (size < 0.0 ? -size : sizeOfZeroPx) * times);
    }
}

void XVertRecording::AddPoint(const tagXVector3& at, const tagXVertPoint& point)
{
    if (!std::isfinite(point.size)) return;
    if (XfnGetAlpha(point.lineColour) == 0 && XfnGetAlpha(point.fillColour) == 0) return;
    if (!PushVertex(at.x, at.y)) return;
    const std::uint32_t style = Intern(m_points, point, IsSamePoint);
    if (!m_commands.empty() && m_commands.back().kind == XKind::Points &&
        m_commands.back().line == style && m_commands.back().count < kMaxRun) {
        ++m_commands.back().count;
        m_boxes.back().Add(at.x, at.y);
        return;
    }
    PushCommand(XKind::Points, GetVertexCount() - 1, 1).line = style;
    Reach(point.size, kMarkReachPx, 1.0);
}

void XVertRecording::AddPolyline(const tagXVector3* vertices, std::size_t count,
                                 const tagXVertLine& line)
{
    if (!vertices || !IsVisible(line)) return;
    std::size_t first = GetVertexCount();
    const auto endPart = [&] {
        const std::size_t partCount = GetVertexCount() - first;
        if (partCount >= 2) {
            PushCommand(XKind::Polyline, first, partCount).line = Intern(m_lines, line, IsSameLine);
        } else {
            m_vertices.resize(2 * first);
        }
        first = GetVertexCount();
    };
    for (std::size_t i = 0; i < count; ++i) {
        if (!PushVertex(vertices[i].x, vertices[i].y)) endPart();
    }
    endPart();
    Reach(line.thick, 1.0, 1.0);
}

void XVertRecording::AddPolygon(const tagXVector3* vertices, const std::size_t* ringSizes,
                                std::size_t ringCount, const tagXVertLine* line,
                                const tagXVertFill* fill, bool isWinding)
{
    const bool hasLine = line && IsVisible(*line);
    const bool hasFill = fill && IsVisible(*fill);
    if (!vertices || !ringSizes || (!hasLine && !hasFill)) return;
    const std::size_t first = GetVertexCount();
    const std::size_t firstRing = m_rings.size();
    for (std::size_t ring = 0; ring < ringCount; vertices += ringSizes[ring], ++ring) {
        const std::size_t start = m_vertices.size();
        for (std::size_t i = 0; i < ringSizes[ring]; ++i)
            PushVertex(vertices[i].x, vertices[i].y);
        const std::size_t kept = (m_vertices.size() - start) / 2;
        if (kept >= 2) {
            m_rings.push_back(static_cast<std::uint32_t>(kept));
        } else {
            m_vertices.resize(start);
        }
    }
    const std::size_t kept = m_rings.size() - firstRing;
    if (kept == 0) return;
    tagCommand& command = PushCommand(XKind::Polygon, first, GetVertexCount() - first);
    command.isWinding = isWinding;
    if (hasLine) command.line = Intern(m_lines, *line, IsSameLine);
    if (hasFill) command.fill = Intern(m_fills, *fill, IsSameFill);
    if (hasLine) Reach(line->thick, 1.0, 1.0);
    if (kept == 1) {
        m_rings.pop_back(); // it is the whole command
    } else {
        command.extra = static_cast<std::uint32_t>(firstRing);
        command.extraCount = static_cast<std::uint32_t>(kept);
    }
}

void XVertRecording::AddText(const tagXVertText& text, bool isHeightInPixels)
{
    if (!IsDrawable(text.position) || !std::isfinite(text.angleDeg)) return;
    if (!(text.height > 0.0) || !std::isfinite(text.height) || text.text.IsEmpty()) return;
    PushCommand(XKind::Text, GetVertexCount(), 0).extra =
        static_cast<std::uint32_t>(m_texts.size());
    m_boxes.back().Add(text.position.x, text.position.y);
    m_texts.push_back({text, isHeightInPixels});
    Reach(isHeightInPixels ? -text.height : text.height, 0.0, GetTextReach(text));
}

double XVertRecording::GetTextReach(const tagXVertText& text)
{
    // a line is no wider than twice its height for each letter
    return 2.0 * (text.text.GetLength() + 1.0);
}

void XVertRecording::AddImage(const QImage& image, const tagXVector3& upperLeft,
                              const tagXVector3& upperRight, const tagXVector3& lowerLeft,
                              double opacity)
{
    if (image.isNull() || opacity <= 0.0 || GetVertexCount() + 3 > kMaxVertices) return;
    if (!IsDrawable(upperLeft) || !IsDrawable(upperRight) || !IsDrawable(lowerLeft)) return;
    for (const tagXVector3* corner : {&upperLeft, &upperRight, &lowerLeft})
        PushVertex(corner->x, corner->y);
    PushCommand(XKind::Image, GetVertexCount() - 3, 3).extra =
        static_cast<std::uint32_t>(m_images.size());
    m_boxes.back().Add(upperRight.x + (lowerLeft.x - upperLeft.x),
                       upperRight.y + (lowerLeft.y - upperLeft.y));
    m_images.push_back({image, opacity < 1.0 ? opacity : 1.0});
}

void XVertRecording::AddPart(Part part)
{
    if (!part || part->m_commands.empty()) return;
    PushCommand(XKind::Part, GetVertexCount(), 0).extra =
        static_cast<std::uint32_t>(m_parts.size());
    m_boxes.back() = part->m_cover;
    m_marginWorld = std::max(m_marginWorld, part->m_marginWorld);
    m_marginPx = std::max(m_marginPx, part->m_marginPx);
    m_parts.push_back(std::move(part));
}

void XVertRecording::Seal()
{
    m_cover = tagBox();
    for (const tagBox& box : m_boxes)
        m_cover.Add(box);
    m_commands.shrink_to_fit();
    m_boxes.shrink_to_fit();
    m_vertices.shrink_to_fit();
    m_rings.shrink_to_fit();
    m_parts.shrink_to_fit();
}

std::size_t XVertRecording::GetMemoryUse() const
{
    std::size_t bytes = sizeof *this + BytesOf(m_commands) + BytesOf(m_boxes) +
                        BytesOf(m_vertices) + BytesOf(m_rings) + BytesOf(m_lines) +
                        BytesOf(m_fills) + BytesOf(m_points) + BytesOf(m_texts) +
                        BytesOf(m_images) + BytesOf(m_parts);
    for (const Part& part : m_parts)
        bytes += part->GetMemoryUse();
    return bytes;
}
