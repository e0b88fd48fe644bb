#include "foundation/surface/XDC.h"

#include "foundation/base/XString.h"
#include "foundation/surface/XPen.h"
#include "foundation/surface/XQtColor.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/surface/XTextLayout.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr std::uint32_t kColourBits = 0x00FFFFFFu;

bool IsDrawable(const QImage* image)
{
    if (!image || image->isNull()) return false;
    const QImage::Format format = image->format();
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
           format == QImage::Format_ARGB32_Premultiplied;
}

// Cuts a block to both of its surfaces along one axis. 64-bit, since positions come from anywhere.
struct tagSpan
{
    std::int64_t target;
    std::int64_t source;
    std::int64_t count;

    bool Clip(std::int64_t targetSize, std::int64_t sourceSize)
    {
        const std::int64_t skip = std::max<std::int64_t>({0, -target, -source});
        target += skip;
        source += skip;
        count = std::min({count - skip, targetSize - target, sourceSize - source});
        return count > 0;
    }
};

void InvertRow(std::uint32_t* target, const std::uint32_t* source, std::int64_t count)
{
    for (std::int64_t i = 0; i < count; ++i)
        target[i] ^= source[i] & kColourBits;
}

// For each target pixel of one axis the source pixel that its centre falls on, -1 for none.
struct tagAxisTable
{
    int first = 0;
    std::vector<int> source;

    tagAxisTable(double target, double length, int targetSize, double sourceStart,
                 double sourceLength, int sourceSize)
    {
        const double end = std::min<double>(targetSize, std::ceil(target + length - 0.5));
        const double begin = std::max(0.0, std::ceil(target - 0.5));
        if (!(begin < end)) return;
        first = static_cast<int>(begin);
        source.resize(static_cast<std::size_t>(static_cast<int>(end) - first), -1);
        const double ratio = sourceLength / length;
        for (std::size_t i = 0; i < source.size(); ++i) {
            const double centre = static_cast<double>(first) + static_cast<double>(i) + 0.5;
            const double at = std::floor(sourceStart + (centre - target) * ratio);
            if (at >= 0.0 && at < sourceSize) source[i] = static_cast<int>(at);
        }
    }
};

} // namespace

XDC::XDC(QImage* target) : m_image(target) {}

int XDC::GetWidth() const
{
    return IsDrawable(m_image) ? m_image->width() : 0;
}

int XDC::GetHeight() const
{
    return IsDrawable(m_image) ? m_image->height() : 0;
}

int XDC::BitBlt(int x, int y, int width, int height, const XDC& source, int sourceX, int sourceY,
                unsigned rop)
{
    if (!IsDrawable(m_image) || !IsDrawable(source.m_image) || !IsRasterOp(rop)) return 0;
    tagSpan across{x, sourceX, width};
    tagSpan down{y, sourceY, height};
    if (!across.Clip(GetWidth(), source.GetWidth()) ||
        !down.Clip(GetHeight(), source.GetHeight())) {
        return 1;
    }
    m_image->bits(); // parts from other holders of the pixels before the source is looked at
    const bool isOverlapping = source.m_image == m_image;
    const bool isUpward = isOverlapping && down.target > down.source;
    std::vector<std::uint32_t> copy;
    for (std::int64_t i = 0; i < down.count; ++i) {
        const std::int64_t row = isUpward ? down.count - 1 - i : i;
        auto* to = reinterpret_cast<std::uint32_t*>(
                       m_image->scanLine(static_cast<int>(down.target + row))) +
                   across.target;
        const auto* from = reinterpret_cast<const std::uint32_t*>(
                               source.m_image->constScanLine(static_cast<int>(down.source + row))) +
                           across.source;
        if (rop == kXCopy) {
            std::memmove(to, from, static_cast<std::size_t>(across.count) * 4);
        } else if (isOverlapping) {
            copy.assign(from, from + across.count);
            InvertRow(to, copy.data(), across.count);
        } else {
            InvertRow(to, from, across.count);
        }
    }
    return 1;
}

int XDC::StretchBlt(double x, double y, double width, double height, const XDC& source,
                    double sourceX, double sourceY, double sourceWidth, double sourceHeight,
                    unsigned rop)
{
    if (!IsDrawable(m_image) || !IsDrawable(source.m_image) || source.m_image == m_image) return 0;
    if (!IsRasterOp(rop)) return 0;
    for (const double value : {x, y, sourceX, sourceY}) {
        if (!std::isfinite(value)) return 0;
    }
    for (const double length : {width, height, sourceWidth, sourceHeight}) {
        if (!(length > 0.0) || !std::isfinite(length)) return 0;
    }
    const tagAxisTable columns(x, width, GetWidth(), sourceX, sourceWidth, source.GetWidth());
    const tagAxisTable rows(y, height, GetHeight(), sourceY, sourceHeight, source.GetHeight());
    m_image->bits();
    for (std::size_t i = 0; i < rows.source.size(); ++i) {
        if (rows.source[i] < 0) continue;
        auto* to =
            reinterpret_cast<std::uint32_t*>(m_image->scanLine(rows.first + static_cast<int>(i))) +
            columns.first;
        const auto* from =
            reinterpret_cast<const std::uint32_t*>(source.m_image->constScanLine(rows.source[i]));
        for (std::size_t k = 0; k < columns.source.size(); ++k) {
            const int column = columns.source[k];
            if (column < 0) continue;
            to[k] = rop == kXCopy ? from[column] : to[k] ^ (from[column] & kColourBits);
        }
    }
    return 1;
}

int XDC::FillRect(const QRect& rect, tagXColor colour)
{
    if (!IsDrawable(m_image)) return 0;
    const QRect part = rect.intersected(m_image->rect());
    const std::uint32_t word = XfnToQRgb(colour);
    for (int y = part.top(); y <= part.bottom(); ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(m_image->scanLine(y)) + part.left();
        std::fill_n(row, part.width(), word);
    }
    return 1;
}

template <class Draw>
int XDC::Paint(const XPen& pen, Draw draw)
{
    if (!IsDrawable(m_image)) return 0;
    QPainter painter(m_image);
    if (m_mode == XMode::ExclusiveOr) {
        painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    }
    painter.setPen(pen.ToQPen());
    painter.setBrush(Qt::NoBrush);
    draw(painter);
    return 1;
}

int XDC::DrawLine(const QPoint& from, const QPoint& to, const XPen& pen)
{
    return Paint(pen, [&](QPainter& painter) { painter.drawLine(from, to); });
}

int XDC::DrawPolyline(const QPolygon& points, const XPen& pen)
{
    return Paint(pen, [&](QPainter& painter) { painter.drawPolyline(points); });
}

int XDC::DrawPolygon(const QPolygon& points, const XPen& pen)
{
    return Paint(pen, [&](QPainter& painter) { painter.drawPolygon(points); });
}

int XDC::DrawRectangle(const QRect& rect, const XPen& pen)
{
    // as one closed line: the corners, too, must be touched once only under exclusive or
    if (rect.width() < 1 || rect.height() < 1) return 0;
    if (rect.width() == 1 && rect.height() == 1) {
        return Paint(pen, [&](QPainter& painter) { painter.drawPoint(rect.topLeft()); });
    }
    if (rect.width() == 1 || rect.height() == 1) {
        return DrawLine(rect.topLeft(), rect.bottomRight(), pen);
    }
    return DrawPolygon(
        QPolygon({rect.topLeft(), rect.topRight(), rect.bottomRight(), rect.bottomLeft()}), pen);
}

int XDC::DrawEllipse(const QRect& rect, const XPen& pen)
{
    if (rect.width() < 1 || rect.height() < 1) return 0;
    return Paint(pen, [&](QPainter& painter) {
        painter.drawEllipse(QRect(rect.topLeft(), rect.size() - QSize(1, 1)));
    });
}

int XDC::DrawText(int x, int y, const XString& text, const tagXTextStyle& style, tagXColor colour,
                  double heightPx)
{
    XPen pen;
    pen.colour = colour;
    return Paint(pen, [&](QPainter& painter) {
        painter.translate(x, y);
        XTextLayout(text, style, heightPx).Paint(painter, kXTextLeft);
    });
}

QSize XDC::GetTextExtent(const XString& text, const tagXTextStyle& style, double heightPx) const
{
    const QSizeF size = XTextLayout(text, style, heightPx).GetSize();
    return QSize(static_cast<int>(std::ceil(size.width())),
                 static_cast<int>(std::ceil(size.height())));
}

int XDC::GetAverageCharWidth(const tagXTextStyle& style, double heightPx) const
{
    const XTextLayout layout(XString(), style, heightPx);
    return static_cast<int>(std::lround(layout.GetAverageCharWidth()));
}
