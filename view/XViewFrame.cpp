#include "view/XViewFrame.h"

#include <QPainter>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr QRgb kColorBits = 0x00FFFFFFu;
constexpr int kSeenDifference = 96;

bool IsSeen(QRgb mark, QRgb below)
{
    return std::abs(qRed(mark) - qRed(below)) >= kSeenDifference ||
           std::abs(qGreen(mark) - qGreen(below)) >= kSeenDifference ||
           std::abs(qBlue(mark) - qBlue(below)) >= kSeenDifference;
}

QRgb MarkOn(QRgb mark, QRgb below)
{
    if (IsSeen(mark, below)) return mark;
    return qGray(below) < 128 ? 0xFFFFFFFFu : 0xFF000000u;
}

} // namespace

void XfnLayOverlay(QImage& picture, const QImage& overlay)
{
    const int width = std::min(picture.width(), overlay.width());
    const int height = std::min(picture.height(), overlay.height());
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(picture.scanLine(y));
        const auto* marks = reinterpret_cast<const QRgb*>(overlay.constScanLine(y));
        for (int x = 0; x < width; ++x)
            if (marks[x] & kColorBits) row[x] = MarkOn(marks[x] | ~kColorBits, row[x]);
    }
}

void XViewFrame::Publish(const QImage& main, const QImage& overlay)
{
    if (m_picture.size() != main.size() || m_picture.format() != main.format()) {
        m_picture = main.copy();
    } else {
        for (int y = 0; y < main.height(); ++y)
            std::copy_n(main.constScanLine(y), main.bytesPerLine(), m_picture.scanLine(y));
    }
    XfnLayOverlay(m_picture, overlay);
}

void XViewFrame::Paint(QPainter& painter, const QRect& area, QRgb backColor) const
{
    const QRect shown = area & m_picture.rect();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (shown != area) painter.fillRect(area, QColor::fromRgb(backColor));
    if (!shown.isEmpty()) painter.drawImage(shown.topLeft(), m_picture, shown);
}
