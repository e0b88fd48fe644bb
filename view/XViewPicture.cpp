#include "view/XViewPicture.h"

#include "foundation/surface/XDC.h"
#include "foundation/surface/XQtColor.h"
#include "view/XPictureKernels.h"
#include "view/XViewFrame.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr double kSlight = 0.01; // of a pixel over the whole picture

QPointF Carry(double x, double y, const XBufferMapping& from, const XBufferMapping& to)
{
    from.ConvPixelToWorldCoord(x, y);
    to.ConvWorldToPixelCoord(x, y);
    return {x, y};
}

bool IsUsable(const QPointF& point)
{
    constexpr double kFar = 1e9;
    return std::fabs(point.x()) < kFar && std::fabs(point.y()) < kFar; // NaN is not
}

/// Which source pixel each target pixel shows along an axis: the one under its centre.
struct tagAxis
{
    int first = 0;           // target pixel
    std::vector<int> source; // one entry a target pixel from there on

    /// @param origin,length  where the source's `count` pixels lie among the target's `size`
    tagAxis(double origin, double length, int count, int size)
    {
        const auto hold = [size](double value) {
            return static_cast<int>(std::clamp(std::ceil(value), 0.0, static_cast<double>(size)));
        };
        first = hold(origin - 0.5);
        const int end = std::max(first, hold(origin + length - 0.5));
        for (int i = first; i < end; ++i)
            source.push_back(
                std::clamp(static_cast<int>((i + 0.5 - origin) * (count / length)), 0, count - 1));
    }
    int GetEnd() const { return first + static_cast<int>(source.size()); }
};

void FillAround(XDC& dc, const QRect& inside, tagXColor colour)
{
    const int width = dc.GetWidth(), height = dc.GetHeight();
    const int x0 = inside.x(), x1 = x0 + inside.width();
    const int y0 = inside.y(), y1 = y0 + inside.height();
    for (const QRect& side : {QRect(0, 0, width, y0), QRect(0, y1, width, height - y1),
                              QRect(0, y0, x0, y1 - y0), QRect(x1, y0, width - x1, y1 - y0)})
        if (!side.isEmpty()) dc.FillRect(side, colour);
}

std::uint32_t* RowOf(QImage& image, int y, int x)
{
    return reinterpret_cast<std::uint32_t*>(image.scanLine(y)) + x;
}

/// Straight copies where the scale is one; a row that repeats is copied whole.
void ShowScaled(XDC& dc, const QImage& picture, const tagAxis& across, const tagAxis& down,
                bool isMoved)
{
    QImage& target = *dc.GetImage();
    const std::size_t count = across.source.size();
    for (std::size_t i = 0; i < down.source.size() && count > 0; ++i) {
        const int y = down.first + static_cast<int>(i);
        std::uint32_t* const to = RowOf(target, y, across.first);
        const auto* const from =
            reinterpret_cast<const std::uint32_t*>(picture.constScanLine(down.source[i]));
        if (isMoved)
            std::memcpy(to, from + across.source[0], count * 4);
        else if (i > 0 && down.source[i] == down.source[i - 1])
            std::memcpy(to, RowOf(target, y - 1, across.first), count * 4);
        else
            XfnGatherRow(from, across.source.data(), count, to);
    }
}

} // namespace

int XfnComposePicture(tagXViewPicture& picture, std::shared_ptr<QImage> target)
{
    picture.shown = picture.main;
    if (!picture.overlay || !picture.main) return 1;
    if (!target || target->size() != picture.main->size()) return 0;
    QImage source = *picture.main;
    XDC(target.get()).BitBlt(0, 0, source.width(), source.height(), XDC(&source), 0, 0, kXCopy);
    XfnLayOverlay(*target, *picture.overlay);
    picture.shown = std::move(target);
    return 1;
}

void XfnShowPicture(XDC& dc, const QImage& picture, const XBufferMapping& drawnAt,
                    const XBufferMapping& now, tagXColor backColor)
{
    if (!dc.GetImage()) return;
    const QRect all(0, 0, dc.GetWidth(), dc.GetHeight());
    const double width = picture.width(), height = picture.height();
    QPointF origin = Carry(0, 0, drawnAt, now);
    const QPointF across = Carry(width, 0, drawnAt, now) - origin;
    const QPointF down = Carry(0, height, drawnAt, now) - origin;
    if (picture.isNull() || !IsUsable(origin) || !IsUsable(across) || !IsUsable(down)) {
        dc.FillRect(all, backColor);
        return;
    }
    if (std::fabs(across.y()) > kSlight || std::fabs(down.x()) > kSlight || across.x() <= 0.0 ||
        down.y() <= 0.0) {
        dc.FillRect(all, backColor);
        QPainter painter(dc.GetImage());
        painter.setTransform(QTransform(across.x() / width, across.y() / width, down.x() / height,
                                        down.y() / height, origin.x(), origin.y()));
        painter.drawImage(0, 0, picture);
        return;
    }
    const bool isMoved =
        std::fabs(across.x() - width) <= kSlight && std::fabs(down.y() - height) <= kSlight;
    if (isMoved) origin = QPointF(std::round(origin.x()), std::round(origin.y()));
    const tagAxis columns(origin.x(), isMoved ? width : across.x(), picture.width(), all.width());
    const tagAxis rows(origin.y(), isMoved ? height : down.y(), picture.height(), all.height());
    const QRect inside(columns.first, rows.first, columns.GetEnd() - columns.first,
                       rows.GetEnd() - rows.first);
    if (inside.isEmpty()) {
        dc.FillRect(all, backColor);
        return;
    }
    FillAround(dc, inside, backColor);
    dc.GetImage()->bits(); // parts from other holders of the pixels
    ShowScaled(dc, picture, columns, rows, isMoved);
}
