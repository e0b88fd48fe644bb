#include "view/XViewFrame.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XDC.h"
#include "view/XViewFrameKernels.h"

#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

constexpr QRgb kColorBits = 0x00FFFFFFu;
constexpr int kSeenDifference = 96;
constexpr int kLightMark = 96; // pure green is light
// Marks that cover more than one pixel in so many go without a casing: side by side they are seen
// anyway, and casings would leave little of the picture between them.
constexpr std::size_t kSparseMarks = 32;

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
    if (width <= 0 || height <= 0) return;
    const auto rowStep = picture.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    const auto markStep = overlay.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    std::vector<std::size_t> counts(static_cast<std::size_t>(height));
    std::size_t total = 0;
    const auto* marks = reinterpret_cast<const QRgb*>(overlay.constBits());
    for (int y = 0; y < height; ++y) {
        const std::size_t count =
            XfnCountMarks(marks + y * markStep, static_cast<std::size_t>(width));
        counts[static_cast<std::size_t>(y)] = count;
        total += count;
    }
    if (total == 0) return;
    const bool isEncased =
        total <= static_cast<std::size_t>(width) * static_cast<std::size_t>(height) / kSparseMarks;
    auto* row = reinterpret_cast<QRgb*>(picture.bits());
    for (int y = 0; y < height; ++y, row += rowStep, marks += markStep) {
        std::size_t left = counts[static_cast<std::size_t>(y)];
        for (int x = 0; left > 0; ++x) {
            if (!(marks[x] & kColorBits)) continue;
            --left;
            row[x] = MarkOn(marks[x] | ~kColorBits, row[x]);
            if (!isEncased) continue;
            const bool isLight = qGray(row[x]) >= kLightMark;
            const QRgb casing = isLight ? 0xFF000000u : 0xFFFFFFFFu;
            const auto encase = [&](qsizetype there, qsizetype mark) {
                const bool isGround = !(marks[mark] & kColorBits);
                if (isGround && (qGray(row[there]) >= kLightMark) == isLight) row[there] = casing;
            };
            if (x > 0) encase(x - 1, x - 1);
            if (x + 1 < width) encase(x + 1, x + 1);
            if (y > 0) encase(x - rowStep, x - markStep);
            if (y + 1 < height) encase(x + rowStep, x + markStep);
        }
    }
}

void XfnSwapSurfaces(XDC* dc, const XBackBuffer& main, const XBackBuffer& overlay)
{
    if (main.Swap(dc, kXCopy)) XfnLayOverlay(*dc->GetImage(), overlay.GetImage());
}

QImage& XViewFrame::GetNext(const QSize& size)
{
    if (m_next.size() != size) m_next = QImage(size, QImage::Format_RGB32);
    return m_next;
}

QImage& XViewFrame::GetPicture(const QSize& size)
{
    if (m_picture.size() != size) m_picture = QImage(size, QImage::Format_RGB32);
    return m_picture;
}

void XViewFrame::Publish()
{
    std::swap(m_picture, m_next);
}

void XViewFrame::Paint(QPainter& painter, const QRect& area, QRgb backColor) const
{
    const QRect shown = area & m_picture.rect();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (shown != area) painter.fillRect(area, QColor::fromRgb(backColor));
    if (!shown.isEmpty()) painter.drawImage(shown.topLeft(), m_picture, shown);
}
