#include "foundation/surface/XMarkStamp.h"

#include "foundation/surface/XPointShape.h"
#include "foundation/surface/XQtColor.h"

#include <QPainter>
#include <QPolygon>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kThickMarkPx = 20; // larger marks get thicker strokes

// The painter leaves small triangles lopsided, so this one is set row by row.
void PaintSmallTriangle(QPainter& painter, const QPoint& centre, int sizePx)
{
    const QPen pen = painter.pen();
    const int half = sizePx / 2;
    for (int row = 0; row < sizePx; ++row) {
        const int reach = sizePx > 1 ? (2 * row * half + sizePx - 1) / (2 * (sizePx - 1)) : 0;
        const QRect span(centre.x() - reach, centre.y() - half + row, 2 * reach + 1, 1);
        painter.fillRect(span, painter.brush());
        if (pen.style() == Qt::NoPen) continue;
        if (row + 1 == sizePx) {
            painter.fillRect(span, pen.color());
        } else {
            painter.fillRect(QRect(span.left(), span.top(), 1, 1), pen.color());
            if (reach > 0) painter.fillRect(QRect(span.right(), span.top(), 1, 1), pen.color());
        }
    }
}

} // namespace

XMarkStamp::XMarkStamp(const tagXVertPoint& mark, int sizePx, bool isSmooth) : m_reach(sizePx + 2)
{
    const int side = 2 * m_reach + 1; // strokes reach beyond the size
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        Paint(painter, mark, QPoint(m_reach, m_reach), sizePx, isSmooth);
    }
    for (int y = 0; y < side; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(image.constScanLine(y));
        for (int x = 0; x < side;) {
            const auto kind = [](std::uint32_t word) {
                return word >> 24 == 0 ? 0 : word >> 24 == 255 ? 2 : 1;
            };
            int end = x + 1;
            while (end < side && kind(row[end]) == kind(row[x]))
                ++end;
            if (kind(row[x]) != 0) {
                m_runs.push_back(
                    {y - m_reach, x - m_reach, end - m_reach, kind(row[x]) == 2, m_words.size()});
                m_words.insert(m_words.end(), row + x, row + end);
            }
            x = end;
        }
    }
}

void XMarkStamp::Draw(const tagXPixels& pixels, int x, int y) const
{
    for (const tagRun& run : m_runs) {
        const int row = y + run.y;
        const int begin = std::max(x + run.begin, 0);
        const int end = std::min(x + run.end, pixels.width);
        if (row < 0 || row >= pixels.height || begin >= end) continue;
        const std::uint32_t* words = m_words.data() + run.first + (begin - x - run.begin);
        std::uint32_t* target = pixels.Row(row) + begin;
        if (run.isOpaque) {
            std::copy_n(words, end - begin, target);
        } else {
            for (int i = 0; i < end - begin; ++i)
                target[i] = tagXPixelPaint::Over(words[i], target[i]);
        }
    }
}

void XMarkStamp::Paint(QPainter& painter, const tagXVertPoint& mark, const QPoint& centre,
                       int sizePx, bool isSmooth)
{
    const double strokeWidth = sizePx < kThickMarkPx ? 1.0 : std::floor(sizePx / 10.0);
    painter.setRenderHint(QPainter::Antialiasing, isSmooth && mark.shape == kXPointCircle);
    const QColor colour = XfnToQColor(mark.lineColour);
    // with a flat cap a thin line would lack its last pixel
    const Qt::PenCapStyle cap = strokeWidth > 1.0 ? Qt::FlatCap : Qt::SquareCap;
    painter.setPen(colour.alpha() ? QPen(colour, strokeWidth, Qt::SolidLine, cap)
                                  : QPen(Qt::NoPen));
    const QColor inside = XfnToQColor(mark.fillColour);
    painter.setBrush(inside.alpha() ? QBrush(inside) : QBrush());

    const int before = sizePx / 2;         // pixels left of and above the centre
    const int after = sizePx - 1 - before; // and right of and below it
    const QPoint upperLeft = centre - QPoint(before, before);
    const QPoint lowerRight = centre + QPoint(after, after);
    const QRect outline(upperLeft, QSize(sizePx - 1, sizePx - 1));
    switch (mark.shape) {
    case kXPointCircle:
        if (sizePx < 3) {
            painter.drawPoint(centre);
        } else {
            painter.drawEllipse(outline);
        }
        break;
    case kXPointSquare:
        painter.drawRect(outline);
        break;
    case kXPointTriangle:
        if (sizePx < kThickMarkPx) {
            PaintSmallTriangle(painter, centre, sizePx);
        } else {
            painter.drawPolygon(QPolygon({QPoint(centre.x(), upperLeft.y()), lowerRight,
                                          QPoint(upperLeft.x(), lowerRight.y())}));
        }
        break;
    case kXPointPlus:
        painter.drawLine(upperLeft.x(), centre.y(), lowerRight.x(), centre.y());
        painter.drawLine(centre.x(), upperLeft.y(), centre.x(), lowerRight.y());
        break;
    case kXPointCross:
        painter.drawLine(upperLeft, lowerRight);
        painter.drawLine(upperLeft.x(), lowerRight.y(), lowerRight.x(), upperLeft.y());
        break;
    default:
        painter.drawPoint(centre);
        break;
    }
}
