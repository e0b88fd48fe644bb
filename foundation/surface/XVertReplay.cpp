#include "foundation/surface/XVertReplay.h"

#include "foundation/surface/XPen.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kBlock = 8192;    // vertices from one look at the abort word to the next
constexpr double kMergeDistance = 0.25; // clipped, vertices nearer than this in pixels are one
constexpr double kNearPx = 1e6;         // whole primitives within are taken as sub-pixel places
constexpr int kFillSide = 32;

bool IsFinite(const QPointF& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

int PositiveRemainder(double value, int period)
{
    const double rest = std::fmod(value, period);
    return static_cast<int>(std::floor(rest < 0.0 ? rest + period : rest));
}

} // namespace

XVertReplay::XVertReplay(const XBufferMapping& mapping, QImage& target,
                         const std::atomic<int>* abort)
    : m_mapping(mapping),
      m_projection(mapping),
      m_abort(abort),
      m_target(target),
      m_pixels(target),
      m_fill(m_pixels),
      m_thin(m_pixels)
{}

void XVertReplay::SetSmooth(bool isSmooth)
{
    m_isSmooth = isSmooth;
    m_fill.SetSmooth(isSmooth);
}

// Only texts and pictures need one.
QPainter& XVertReplay::Painter()
{
    if (!m_painter) {
        m_painter.emplace(&m_target);
        m_painter->setRenderHint(QPainter::Antialiasing, m_isSmooth);
    }
    return *m_painter;
}

QRectF XVertReplay::GetBox(double margin) const
{
    return QRectF(-margin, -margin, m_pixels.width + 2.0 * margin, m_pixels.height + 2.0 * margin);
}

bool XVertReplay::Run(const XVertRecording& recording)
{
    const XVertRecording* const outer = m_recording;
    const auto enter = [this](const XVertRecording* next) {
        m_recording = next;
        m_lineIndex = m_fillIndex = XVertRecording::kNoStyle;
    };
    enter(&recording);
    XVertRecording::tagBox shown;
    const bool isCulling = m_projection.IsAffine();
    if (isCulling) {
        double lengthX = 1.0, lengthY = 1.0;
        m_mapping.GetWorldPerPixel(lengthX, lengthY);
        const double length = std::min(lengthX, lengthY);
        shown = m_projection.GetShownBox(recording.GetMarginPx() + 4.0 +
                                         recording.GetMarginWorld() / length);
    }
    const XVertRecording::tagBox* box = recording.GetBoxes();
    for (const tagCommand& command : recording.GetCommands()) {
        if (IsAborted()) return false;
        const XVertRecording::tagBox& at = *box++;
        if (isCulling && !(at.minX <= shown.maxX && at.maxX >= shown.minX &&
                           at.minY <= shown.maxY && at.maxY >= shown.minY)) {
            continue;
        }
        if (command.kind != XVertRecording::XKind::Part) {
            Draw(command, at);
        } else {
            if (!Run(*recording.GetPart(command.extra))) return false;
            enter(&recording);
        }
    }
    m_recording = outer;
    return !IsAborted();
}

void XVertReplay::Draw(const tagCommand& command, const XVertRecording::tagBox& box)
{
    using XKind = XVertRecording::XKind;
    if (command.kind == XKind::Points) return DrawPoints(command);
    if (command.kind == XKind::Text) return DrawText(m_recording->GetText(command.extra));
    if (command.kind == XKind::Image) return DrawImage(command);

    const bool hasLine = command.line != XVertRecording::kNoStyle;
    const bool hasFill = command.fill != XVertRecording::kNoStyle;
    if (hasLine) SetLine(command.line);
    if (hasFill) SetFill(command.fill);
    bool isInside = false;
    if (!m_projection.IsAffine()) {
        m_places.clear();
    } else {
        const tagPixelBox at = m_projection.ToPixels(box);
        const bool isNear =
            at.minX > -kNearPx && at.minY > -kNearPx && at.maxX < kNearPx && at.maxY < kNearPx;
        const double side = std::max(at.maxX - at.minX, at.maxY - at.minY);
        if (isNear && side < 1.0 && !(hasLine && !IsThin())) {
            PlotPixel(at, hasLine ? m_linePaint : m_fillPaint);
            return;
        }
        if (!Project(command, isNear)) return;
        isInside = isNear && at.minX >= 0.0 && at.minY >= 0.0 && at.maxX < m_pixels.width - 0.01 &&
                   at.maxY < m_pixels.height - 0.01;
        if (hasFill) FillPolygon(command);
        if (hasFill && !hasLine && !m_fill.HasPainted() && side < 2.0) PlotPixel(at, m_fillPaint);
        if (hasLine) DrawLines(command, isInside);
        return;
    }
    if (hasFill) FillPolygon(command);
    if (hasLine) DrawLines(command, isInside);
}

void XVertReplay::SetLine(std::uint32_t index)
{
    if (index == m_lineIndex) return;
    m_lineIndex = index;
    const tagXVertLine& line = m_recording->GetLine(index);
    m_lineWidth = std::max(m_projection.ToPixelSize(line.thick, 1.0), 1.0);
    m_linePaint = tagXPixelPaint::FromColour(line.colour);
    m_dashLengths = XfnGetDashLengths(line.style, m_dashOffset);
    m_dashPattern = line.style.GetPattern();
}

void XVertReplay::SetFill(std::uint32_t index)
{
    if (index == m_fillIndex) return;
    m_fillIndex = index;
    const tagXVertFill& fill = m_recording->GetFill(index);
    m_fillPaint = tagXPixelPaint::FromColour(fill.foreColour);
    if (fill.style.GetStyle() == tagXFillStyle::kSolid) return;
    m_fillPaint.kind = tagXPixelPaint::XKind::Pattern;
    m_fillPaint.back = tagXPixelPaint::FromColour(fill.backColour).fore;
    m_fillPaint.style = &fill.style;
    // the pattern hangs on the world, so that it moves with the picture
    const double origin[2] = {0.0, 0.0};
    const QPointF at = m_projection.ToPixel(origin);
    if (!IsFinite(at)) return;
    m_fillPaint.originX = PositiveRemainder(at.x(), kFillSide);
    m_fillPaint.originY = PositiveRemainder(at.y(), kFillSide);
}

void XVertReplay::PlotPixel(const tagPixelBox& box, const tagXPixelPaint& paint)
{
    const double x = std::floor((box.minX + box.maxX) / 2.0);
    const double y = std::floor((box.minY + box.maxY) / 2.0);
    if (!(x >= 0.0 && y >= 0.0 && x < m_pixels.width && y < m_pixels.height)) return;
    std::uint32_t& pixel = m_pixels.Row(static_cast<int>(y))[static_cast<int>(x)];
    // of a pattern the colour that shows, wherever the pixel falls in it
    const std::uint32_t word = paint.fore >> 24 ? paint.fore : paint.back;
    pixel = tagXPixelPaint::Over(word, pixel);
}

/// The vertices as sub-pixel places, or none of them when the primitive reaches too far for that.
/// @return false when it was aborted
bool XVertReplay::Project(const tagCommand& command, bool isNear)
{
    m_places.resize(isNear ? command.count : 0);
    for (std::size_t first = 0; first < m_places.size(); first += kBlock) {
        if (first > 0 && IsAborted()) return false;
        m_projection.ToSubPixels(m_recording->GetVertices(command.first + first),
                                 std::min(kBlock, m_places.size() - first),
                                 m_places.data() + first);
    }
    return true;
}

/// The vertices as pixels, without those that are not finite or come too near the one before; fewer
/// when it was aborted.
QPolygonF XVertReplay::ProjectFar(std::size_t first, std::size_t count) const
{
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(std::min(count, kBlock)));
    const double* vertices = m_recording->GetVertices(first);
    for (std::size_t i = 0; i < count; ++i) {
        if (i % kBlock == kBlock - 1 && IsAborted()) break;
        const QPointF point = m_projection.ToPixel(vertices + 2 * i);
        if (!IsFinite(point)) continue;
        const bool isLast = i + 1 == count;
        if (!points.isEmpty() && !isLast &&
            (point - points.back()).manhattanLength() < kMergeDistance) {
            continue;
        }
        points.push_back(point);
    }
    return points;
}

void XVertReplay::FillPolygon(const tagCommand& command)
{
    m_fill.Clear();
    std::size_t first = 0;
    for (std::size_t ring = 0; ring < m_recording->GetRingCount(command); ++ring) {
        const std::size_t count = m_recording->GetRingSize(command, ring);
        if (IsAborted()) return;
        if (!m_places.empty()) {
            m_fill.AddRing(m_places.data() + first, count);
        } else {
            const QPolygonF part =
                XfnClipRing(ProjectFar(command.first + first, count), GetBox(4.0));
            for (qsizetype i = 0; i < part.size(); ++i) {
                const QPointF& from = part[i > 0 ? i - 1 : part.size() - 1];
                m_fill.AddEdge(XfnToSubPixel(from), XfnToSubPixel(part[i]));
            }
        }
        first += count;
    }
    m_fill.Fill(m_fillPaint, command.isWinding, m_abort);
}

void XVertReplay::DrawLines(const tagCommand& command, bool isInside)
{
    const bool isRing = command.kind == XVertRecording::XKind::Polygon;
    const std::size_t rings = isRing ? m_recording->GetRingCount(command) : 1;
    const bool isPlain = isInside && IsThin() && !m_isSmooth && m_dashLengths.isEmpty();
    std::size_t first = 0;
    for (std::size_t ring = 0; ring < rings; ++ring) {
        const std::size_t count =
            isRing ? m_recording->GetRingSize(command, ring) : std::size_t{command.count};
        if (IsAborted()) return;
        if (isPlain) {
            m_thin.Draw(m_places.data() + first, count, isRing, m_linePaint);
        } else if (m_isSmooth && IsThin() && m_dashLengths.isEmpty() && !m_places.empty()) {
            m_thin.DrawSmooth(m_places.data() + first, count, isRing, m_linePaint);
        } else {
            Stroke(ProjectFar(command.first + first, count), isRing, isInside);
        }
        first += count;
    }
}

void XVertReplay::Stroke(QPolygonF points, bool isRing, bool isInside)
{
    if (points.size() < 2) return;
    if (isRing) points.push_back(points.front());
    const bool isThin = IsThin() && !m_isSmooth;
    // the last place on the surface for thin lines; room for the width around it for others
    constexpr double kLast = 1.0 / tagXSubPixel::kOne;
    const QRectF box = isThin ? QRectF(0.0, 0.0, m_pixels.width - kLast, m_pixels.height - kLast)
                              : GetBox(2.0 * m_lineWidth + 4.0);
    const double width = IsThin() ? 1.0 : m_lineWidth;
    const XThickLine::XCap cap = !m_dashLengths.isEmpty() ? XThickLine::XCap::Flat
                                 : width > 2.0            ? XThickLine::XCap::Round
                                                          : XThickLine::XCap::Square;
    XThickLine thick(m_fill, width, cap);
    m_fill.Clear();
    double length = 0.0; // before the block
    for (qsizetype begin = 0; begin + 1 < points.size(); begin += kBlock) {
        if (IsAborted()) return;
        const qsizetype count = std::min<qsizetype>(kBlock + 1, points.size() - begin);
        const bool isWhole = count == points.size();
        const QPolygonF block = isWhole ? points : points.mid(begin, count);
        const auto runs = isInside ? std::vector<tagXLineRun>{{block}} : XfnClipLine(block, box);
        for (const tagXLineRun& run : runs) {
            const bool isClosed = isWhole && isRing && run.points.size() == count;
            if (isThin) {
                StrokeThin(run, length, isClosed);
            } else if (m_dashLengths.isEmpty()) {
                const qsizetype ends = isClosed ? count - 1 : run.points.size();
                thick.AddLine(run.points.data(), static_cast<std::size_t>(ends), isClosed);
            } else {
                QList<qreal> lengths = m_dashLengths;
                for (qreal& dash : lengths)
                    dash *= width;
                thick.AddDashes(run.points.data(), static_cast<std::size_t>(run.points.size()),
                                lengths, GetDashStart(length + run.start, width));
            }
        }
        for (qsizetype i = 1; !isWhole && i < count; ++i)
            length += std::hypot(block[i].x() - block[i - 1].x(), block[i].y() - block[i - 1].y());
    }
    if (!isThin) m_fill.Fill(m_linePaint, true, m_abort);
}

/// Where in the dash lengths a place along the line stands, in pixels.
double XVertReplay::GetDashStart(double length, double width) const
{
    double period = 0.0;
    for (const qreal dash : m_dashLengths)
        period += dash;
    const double start = std::fmod(m_dashOffset + length / width, period);
    return (start < 0.0 ? start + period : start) * width;
}

void XVertReplay::StrokeThin(const tagXLineRun& run, double start, bool isClosed)
{
    std::vector<tagXSubPixel> places;
    places.reserve(static_cast<std::size_t>(run.points.size()));
    for (const QPointF& point : run.points)
        places.push_back(XfnToSubPixel(point));
    if (m_dashLengths.isEmpty()) {
        const std::size_t count = places.size() - (isClosed ? 1 : 0);
        m_thin.Draw(places.data(), count, isClosed, m_linePaint);
        return;
    }
    double length = start + run.start;
    for (std::size_t i = 1; i < places.size(); ++i) {
        m_thin.DrawDashes(places[i - 1], places[i], m_dashPattern, length, i == 1, m_linePaint);
        const QPointF step =
            run.points[static_cast<qsizetype>(i)] - run.points[static_cast<qsizetype>(i) - 1];
        length += std::hypot(step.x(), step.y());
    }
}
