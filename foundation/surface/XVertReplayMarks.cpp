#include "foundation/surface/XQtColor.h"
#include "foundation/surface/XTextLayout.h"
#include "foundation/surface/XVertReplay.h"

#include <algorithm>
#include <cmath>

// What is painted at a place: marks, texts, pictures.

namespace {

constexpr double kDefaultMarkPx = 9.0;
constexpr std::size_t kKeptStamps = 8;
constexpr double kMaxStretch = 2.0; // of a text to the width that is given for it
constexpr double kMinTextPx = 2.0;  // smaller is not read by anybody
constexpr double kMaxTextPx = 20000.0;
constexpr int kImageBandPx = 32; // rows from one look at the abort word to the next

bool IsFinite(const QPointF& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

bool IsSameMark(const tagXVertPoint& a, const tagXVertPoint& b)
{
    return a.shape == b.shape && a.lineColour == b.lineColour && a.fillColour == b.fillColour;
}

} // namespace

const XMarkStamp& XVertReplay::GetStamp(const tagXVertPoint& mark, int sizePx)
{
    const auto known = std::find_if(m_stamps.begin(), m_stamps.end(), [&](const tagStamp& stamp) {
        return stamp.sizePx == sizePx && IsSameMark(stamp.mark, mark);
    });
    if (known != m_stamps.end()) {
        m_stamps.splice(m_stamps.begin(), m_stamps, known);
    } else {
        if (m_stamps.size() == kKeptStamps) m_stamps.pop_back();
        m_stamps.push_front({mark, sizePx, XMarkStamp(mark, sizePx, m_isSmooth)});
    }
    return m_stamps.front().stamp;
}

void XVertReplay::DrawPoints(const tagCommand& command)
{
    const tagXVertPoint& mark = m_recording->GetPoint(command.line);
    const int sizePx = std::max(
        1, static_cast<int>(std::lround(m_projection.ToPixelSize(mark.size, kDefaultMarkPx))));
    const double* vertices = m_recording->GetVertices(command.first);
    const int reach = sizePx + 2;
    const XMarkStamp* stamp = sizePx <= XMarkStamp::kMaxSizePx ? &GetStamp(mark, sizePx) : nullptr;
    const auto draw = [&](double px, double py) {
        if (!(px >= -reach && py >= -reach && px < m_pixels.width + reach &&
              py < m_pixels.height + reach)) {
            return;
        }
        const int x = static_cast<int>(std::floor(px));
        const int y = static_cast<int>(std::floor(py));
        if (stamp) {
            stamp->Draw(m_pixels, x, y);
        } else if (!IsAborted()) {
            XMarkStamp::Paint(Painter(), mark, QPoint(x, y), sizePx, m_isSmooth);
            Painter().setRenderHint(QPainter::Antialiasing, m_isSmooth);
        }
    };
    if (!m_projection.IsAffine()) {
        for (std::size_t i = 0; i < command.count; ++i) {
            const QPointF at = m_projection.ToPixel(vertices + 2 * i);
            if (IsFinite(at)) draw(at.x(), at.y());
        }
        return;
    }
    m_places.resize(command.count);
    m_projection.ToSubPixels(vertices, command.count, m_places.data());
    for (const tagXSubPixel& place : m_places)
        draw(place.x >> 8, place.y >> 8);
}

void XVertReplay::DrawText(const XVertRecording::tagText& record)
{
    const tagXVertText& text = record.text;
    const double position[2] = {text.position.x, text.position.y};
    const QPointF at = m_projection.ToPixel(position);
    double unused = 0.0;
    double height = text.height;
    if (!record.isHeightInPixels) m_mapping.ConvWorldToPixelLength(unused, height);
    if (!IsFinite(at) || !(height >= kMinTextPx) || height > kMaxTextPx) return;
    if (!GetBox(height * XVertRecording::GetTextReach(text)).contains(at)) return;

    const XTextLayout layout(text.text, text.style, height);
    QSizeF size = layout.GetSize();
    double stretch = 1.0;
    if (text.width > 0.0 && size.width() > 0.0) {
        double width = text.width;
        if (!record.isHeightInPixels) m_mapping.ConvWorldToPixelLength(width, unused);
        stretch = std::clamp(width / size.width(), 1.0 / kMaxStretch, kMaxStretch);
        size.setWidth(size.width() * stretch);
    }
    const double left = text.align & kXTextCentre  ? -size.width() / 2.0
                        : text.align & kXTextRight ? -size.width()
                                                   : 0.0;
    const double top = text.align & kXTextMiddle   ? -size.height() / 2.0
                       : text.align & kXTextBottom ? -size.height()
                                                   : 0.0;
    const QRectF box(QPointF(left, top), size);
    QPainter& painter = Painter();
    painter.save();
    painter.translate(at);
    painter.rotate(-std::remainder(text.angleDeg + m_mapping.GetRotationAngle(), 360.0));
    if (XfnGetAlpha(text.backColour)) painter.fillRect(box, XfnToQColor(text.backColour));
    if (XfnGetAlpha(text.borderColour)) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(XfnToQColor(text.borderColour), 1.0));
        painter.drawRect(box);
    }
    if (XfnGetAlpha(text.colour)) {
        painter.setPen(XfnToQColor(text.colour));
        painter.translate(box.topLeft());
        if (stretch != 1.0) painter.scale(stretch, 1.0);
        layout.Paint(painter, text.align);
    }
    painter.restore();
}

void XVertReplay::DrawImage(const tagCommand& command)
{
    const XVertRecording::tagImage& record = m_recording->GetImage(command.extra);
    const double* corners = m_recording->GetVertices(command.first);
    const QPointF origin = m_projection.ToPixel(corners);
    const QPointF right = (m_projection.ToPixel(corners + 2) - origin) / record.image.width();
    const QPointF down = (m_projection.ToPixel(corners + 4) - origin) / record.image.height();
    const QTransform toPixel(right.x(), right.y(), down.x(), down.y(), origin.x(), origin.y());
    bool isInvertible = false;
    const QTransform toImage = toPixel.inverted(&isInvertible);
    if (!isInvertible || !IsFinite(origin) || !IsFinite(right) || !IsFinite(down)) return;

    // only the part that is seen, so that no far away coordinate reaches the painter
    const QRectF seen = toImage.mapRect(GetBox(1.0)) & QRectF(record.image.rect());
    if (!(seen.width() > 0.0) || !(seen.height() > 0.0)) return;
    const QRect part = seen.toAlignedRect() & record.image.rect();
    const QRectF shown = toPixel.mapRect(QRectF(part)) & GetBox(0.0);
    QPainter& painter = Painter();
    painter.save();
    painter.setOpacity(record.opacity);
    const double reduction =
        std::min(std::hypot(right.x(), right.y()), std::hypot(down.x(), down.y()));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, reduction < 1.0);
    const int bottom = static_cast<int>(std::ceil(shown.bottom()));
    for (int top = static_cast<int>(std::floor(shown.top())); top <= bottom && !IsAborted();
         top += kImageBandPx) {
        painter.resetTransform();
        painter.setClipRect(QRect(0, top, m_pixels.width, kImageBandPx));
        painter.setTransform(QTransform::fromTranslate(part.x(), part.y()) * toPixel);
        painter.drawImage(QPointF(0.0, 0.0), record.image, part);
    }
    painter.restore();
}
