#include "foundation/surface/XVertReplay.h"

#include "foundation/surface/XFillBrush.h"
#include "foundation/surface/XLineClip.h"
#include "foundation/surface/XPen.h"
#include "foundation/surface/XPointShape.h"
#include "foundation/surface/XQtColor.h"
#include "foundation/surface/XTextLayout.h"

#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMaxSizePx = 20000.0;
constexpr double kDefaultMarkPx = 9.0;
constexpr int kThickMarkPx = 20;        // larger marks get thicker strokes
constexpr double kMinTextPx = 2.0;      // smaller is not read by anybody
constexpr double kMergeDistance = 0.25; // vertices nearer than this in pixels are one
constexpr int kFillSide = 32;

constexpr double kMaxPixel = 1e150; // differences and squares of far pixels stay finite

bool IsFinite(const QPointF& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

double PositiveRemainder(double value, double period)
{
    const double rest = std::fmod(value, period);
    return rest < 0.0 ? rest + period : rest;
}

} // namespace

XVertReplay::XVertReplay(const XVertRecording& recording, const XBufferMapping& mapping,
                         QImage& target)
    : m_recording(recording), m_mapping(mapping), m_painter(&target)
{
    SetSmooth(false);
}

void XVertReplay::SetSmooth(bool isSmooth)
{
    m_isSmooth = isSmooth;
    m_painter.setRenderHint(QPainter::Antialiasing, isSmooth);
}

bool XVertReplay::Run(const std::atomic<int>* abort)
{
    for (const tagCommand& command : m_recording.GetCommands()) {
        if (abort && abort->load(std::memory_order_relaxed)) return false;
        switch (command.kind) {
        case XVertRecording::XKind::Points:
            DrawPoints(command);
            break;
        case XVertRecording::XKind::Polyline:
            SetLine(command.line);
            StrokeLine(Project(command.first, command.count));
            break;
        case XVertRecording::XKind::Polygon:
            DrawPolygon(command);
            break;
        case XVertRecording::XKind::Text:
            DrawText(m_recording.GetText(command.extra));
            break;
        case XVertRecording::XKind::Image:
            DrawImage(command);
            break;
        }
    }
    return true;
}

QPointF XVertReplay::ToPixel(const double* vertex) const
{
    double x = vertex[0];
    double y = vertex[1];
    m_mapping.ConvWorldToPixelCoord(x, y);
    return {std::clamp(x, -kMaxPixel, kMaxPixel), std::clamp(y, -kMaxPixel, kMaxPixel)};
}

QPolygonF XVertReplay::Project(std::size_t first, std::size_t count) const
{
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(std::min<std::size_t>(count, 4096)));
    const double* vertices = m_recording.GetVertices(first);
    for (std::size_t i = 0; i < count; ++i) {
        const QPointF point = ToPixel(vertices + 2 * i);
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

double XVertReplay::ToPixelSize(double size, double sizeOfZero) const
{
    const double pixels = size > 0.0   ? size / m_mapping.GetWorldPerPixel()
                          : size < 0.0 ? -size
                                       : sizeOfZero;
    return std::min(pixels, kMaxSizePx);
}

QRectF XVertReplay::GetBox(double margin) const
{
    return QRectF(-margin, -margin, m_mapping.GetWidth() + 2.0 * margin,
                  m_mapping.GetHeight() + 2.0 * margin);
}

void XVertReplay::SetLine(std::uint32_t index)
{
    if (index == m_lineIndex) return;
    m_lineIndex = index;
    const tagXVertLine& line = m_recording.GetLine(index);
    m_lineWidth = std::max(ToPixelSize(line.thick, 1.0), 1.0);
    m_pen = QPen(XfnToQColor(line.colour), m_lineWidth);
    m_pen.setJoinStyle(Qt::RoundJoin);
    m_pen.setCapStyle(m_lineWidth > 2.0 ? Qt::RoundCap : Qt::SquareCap);
    m_dashPeriod = 0.0;
    const QList<qreal> lengths = XfnGetDashLengths(line.style, m_dashOffset);
    if (lengths.isEmpty()) return;
    m_pen.setCapStyle(Qt::FlatCap);
    m_pen.setDashPattern(lengths);
    for (const qreal length : lengths)
        m_dashPeriod += length;
}

void XVertReplay::SetFill(std::uint32_t index)
{
    if (index == m_fillIndex) return;
    m_fillIndex = index;
    const tagXVertFill& fill = m_recording.GetFill(index);
    m_brush = XfnGetFillBrush(fill.style, fill.foreColour, fill.backColour);
    // the pattern hangs on the world, so that it moves with the picture
    const double origin[2] = {0.0, 0.0};
    const QPointF at = ToPixel(origin);
    if (!IsFinite(at)) return;
    m_painter.setBrushOrigin(QPointF(std::floor(PositiveRemainder(at.x(), kFillSide)),
                                     std::floor(PositiveRemainder(at.y(), kFillSide))));
}

void XVertReplay::StrokeLine(const QPolygonF& points)
{
    // without smoothing the painter takes whole numbers as pixel centres, the mapping takes them
    // as pixel corners
    const double shift = m_isSmooth ? 0.0 : -0.5;
    m_painter.setBrush(Qt::NoBrush);
    // where the painter clips a thin dashed line itself, it loses the place in the dash pattern
    const bool isThinDash = m_dashPeriod > 0.0 && m_lineWidth <= 1.0;
    const double margin = isThinDash ? 0.0 : 2.0 * m_lineWidth + 4.0;
    for (const tagXLineRun& run : XfnClipLine(points, GetBox(margin))) {
        QPen pen = m_pen;
        if (m_dashPeriod > 0.0) {
            const double start = m_dashOffset + run.start / m_lineWidth;
            pen.setDashOffset(PositiveRemainder(start, m_dashPeriod));
        }
        m_painter.setPen(pen);
        m_painter.drawPolyline(run.points.translated(shift, shift));
    }
}

void XVertReplay::DrawPolygon(const tagCommand& command)
{
    const bool hasFill = command.fill != XVertRecording::kNoStyle;
    const bool hasLine = command.line != XVertRecording::kNoStyle;
    std::vector<QPolygonF> rings;
    std::size_t first = command.first;
    for (std::uint32_t i = 0; i < command.extraCount; ++i) {
        const std::size_t count = m_recording.GetRingSize(command.extra + i);
        rings.push_back(Project(first, count));
        first += count;
    }
    if (hasFill) {
        SetFill(command.fill);
        QPainterPath path;
        path.setFillRule(command.isWinding ? Qt::WindingFill : Qt::OddEvenFill);
        for (const QPolygonF& ring : rings) {
            const QPolygonF part = XfnClipRing(ring, GetBox(4.0));
            if (part.size() < 3) continue;
            path.addPolygon(part);
            path.closeSubpath();
        }
        if (!path.isEmpty()) {
            m_painter.setPen(Qt::NoPen);
            m_painter.setBrush(m_brush);
            m_painter.drawPath(path);
        }
    }
    if (!hasLine) return;
    SetLine(command.line);
    for (QPolygonF& ring : rings) {
        if (ring.size() < 2) continue;
        ring.push_back(ring.front());
        StrokeLine(ring);
    }
}

void XVertReplay::DrawPoints(const tagCommand& command)
{
    const tagXVertPoint& point = m_recording.GetPoint(command.line);
    const int size =
        std::max(1, static_cast<int>(std::lround(ToPixelSize(point.size, kDefaultMarkPx))));
    const QRectF box = GetBox(size / 2.0 + 2.0);
    const double strokeWidth = size < kThickMarkPx ? 1.0 : std::floor(size / 10.0);
    m_painter.setRenderHint(QPainter::Antialiasing, m_isSmooth && point.shape == kXPointCircle);
    const QColor colour = XfnToQColor(point.lineColour);
    // with a flat cap a thin line would lack its last pixel
    const Qt::PenCapStyle cap = strokeWidth > 1.0 ? Qt::FlatCap : Qt::SquareCap;
    m_painter.setPen(colour.alpha() ? QPen(colour, strokeWidth, Qt::SolidLine, cap)
                                    : QPen(Qt::NoPen));
    const QColor inside = XfnToQColor(point.fillColour);
    m_painter.setBrush(inside.alpha() ? QBrush(inside) : QBrush());
    const double* vertices = m_recording.GetVertices(command.first);
    for (std::size_t i = 0; i < command.count; ++i) {
        const QPointF at = ToPixel(vertices + 2 * i);
        if (!IsFinite(at) || !box.contains(at)) continue;
        DrawMark(point.shape,
                 QPoint(static_cast<int>(std::floor(at.x())), static_cast<int>(std::floor(at.y()))),
                 size);
    }
    m_painter.setRenderHint(QPainter::Antialiasing, m_isSmooth);
}

void XVertReplay::DrawMark(int shape, const QPoint& centre, int sizePx)
{
    const int before = sizePx / 2;         // pixels left of and above the centre
    const int after = sizePx - 1 - before; // and right of and below it
    const QPoint upperLeft = centre - QPoint(before, before);
    const QPoint lowerRight = centre + QPoint(after, after);
    const QRect outline(upperLeft, QSize(sizePx - 1, sizePx - 1));
    switch (shape) {
    case kXPointCircle:
        if (sizePx < 3) {
            m_painter.drawPoint(centre);
        } else {
            m_painter.drawEllipse(outline);
        }
        break;
    case kXPointSquare:
        m_painter.drawRect(outline);
        break;
    case kXPointTriangle:
        if (sizePx < kThickMarkPx) {
            DrawSmallTriangle(centre, sizePx);
        } else {
            m_painter.drawPolygon(QPolygon({QPoint(centre.x(), upperLeft.y()), lowerRight,
                                            QPoint(upperLeft.x(), lowerRight.y())}));
        }
        break;
    case kXPointPlus:
        m_painter.drawLine(upperLeft.x(), centre.y(), lowerRight.x(), centre.y());
        m_painter.drawLine(centre.x(), upperLeft.y(), centre.x(), lowerRight.y());
        break;
    case kXPointCross:
        m_painter.drawLine(upperLeft, lowerRight);
        m_painter.drawLine(upperLeft.x(), lowerRight.y(), lowerRight.x(), upperLeft.y());
        break;
    default:
        m_painter.drawPoint(centre);
        break;
    }
}

// The painter leaves small triangles lopsided, so this one is set row by row.
void XVertReplay::DrawSmallTriangle(const QPoint& centre, int sizePx)
{
    const QPen pen = m_painter.pen();
    const int half = sizePx / 2;
    for (int row = 0; row < sizePx; ++row) {
        const int reach = sizePx > 1 ? (2 * row * half + sizePx - 1) / (2 * (sizePx - 1)) : 0;
        const QRect span(centre.x() - reach, centre.y() - half + row, 2 * reach + 1, 1);
        m_painter.fillRect(span, m_painter.brush());
        if (pen.style() == Qt::NoPen) continue;
        if (row + 1 == sizePx) {
            m_painter.fillRect(span, pen.color());
        } else {
            m_painter.fillRect(QRect(span.left(), span.top(), 1, 1), pen.color());
            if (reach > 0) m_painter.fillRect(QRect(span.right(), span.top(), 1, 1), pen.color());
        }
    }
}

void XVertReplay::DrawText(const XVertRecording::tagText& record)
{
    const tagXVertText& text = record.text;
    const double position[2] = {text.position.x, text.position.y};
    const QPointF at = ToPixel(position);
    double unused = 0.0;
    double height = text.height;
    if (!record.isHeightInPixels) m_mapping.ConvWorldToPixelLength(unused, height);
    if (!IsFinite(at) || !(height >= kMinTextPx) || height > kMaxSizePx) return;
    // no letter is wider than twice the line is high
    const double reach = height * 2.0 * (text.text.GetLength() + 1.0);
    if (!GetBox(reach).contains(at)) return;

    const XTextLayout layout(text.text, text.style, height);
    const QSizeF& size = layout.GetSize();
    const double left = text.align & kXTextCentre  ? -size.width() / 2.0
                        : text.align & kXTextRight ? -size.width()
                                                   : 0.0;
    const double top = text.align & kXTextMiddle   ? -size.height() / 2.0
                       : text.align & kXTextBottom ? -size.height()
                                                   : 0.0;
    const QRectF box(QPointF(left, top), size);
    m_painter.save();
    m_painter.translate(at);
    m_painter.rotate(-std::remainder(text.angleDeg + m_mapping.GetRotationAngle(), 360.0));
    if (XfnGetAlpha(text.backColour)) m_painter.fillRect(box, XfnToQColor(text.backColour));
    if (XfnGetAlpha(text.borderColour)) {
        m_painter.setBrush(Qt::NoBrush);
        m_painter.setPen(QPen(XfnToQColor(text.borderColour), 1.0));
        m_painter.drawRect(box);
    }
    if (XfnGetAlpha(text.colour)) {
        m_painter.setPen(XfnToQColor(text.colour));
        m_painter.translate(box.topLeft());
        layout.Paint(m_painter, text.align);
    }
    m_painter.restore();
}

void XVertReplay::DrawImage(const tagCommand& command)
{
    const XVertRecording::tagImage& record = m_recording.GetImage(command.extra);
    const double* corners = m_recording.GetVertices(command.first);
    const QPointF origin = ToPixel(corners);
    const QPointF right = (ToPixel(corners + 2) - origin) / record.image.width();
    const QPointF down = (ToPixel(corners + 4) - origin) / record.image.height();
    const QTransform toPixel(right.x(), right.y(), down.x(), down.y(), origin.x(), origin.y());
    bool isInvertible = false;
    const QTransform toImage = toPixel.inverted(&isInvertible);
    if (!isInvertible || !IsFinite(origin) || !IsFinite(right) || !IsFinite(down)) return;

    // only the part that is seen, so that no far away coordinate reaches the painter
    const QRectF seen = toImage.mapRect(GetBox(1.0)) & QRectF(record.image.rect());
    if (!(seen.width() > 0.0) || !(seen.height() > 0.0)) return;
    const QRect part = seen.toAlignedRect() & record.image.rect();
    m_painter.save();
    m_painter.setTransform(QTransform::fromTranslate(part.x(), part.y()) * toPixel);
    m_painter.setOpacity(record.opacity);
    const double reduction =
        std::min(std::hypot(right.x(), right.y()), std::hypot(down.x(), down.y()));
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform, reduction < 1.0);
    m_painter.drawImage(QPointF(0.0, 0.0), record.image, part);
    m_painter.restore();
}
