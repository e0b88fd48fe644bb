#include "host/XWindowPlacement.h"

#include <algorithm>

QRect XfnPlaceWindow(const QRect& saved, const QList<QRect>& screens, const QMargins& frame)
{
    if (screens.isEmpty()) return saved;
    QRect best = screens.first();
    long long bestArea = 0;
    for (const QRect& screen : screens) {
        const QRect common = screen.intersected(saved);
        const long long area = common.isEmpty() ? 0LL : 1LL * common.width() * common.height();
        if (area > bestArea) {
            best = screen;
            bestArea = area;
        }
    }
    best = best.marginsRemoved(frame);
    const int width = std::min(saved.width(), best.width());
    const int height = std::min(saved.height(), best.height());
    const int x = std::clamp(saved.x(), best.left(), best.right() + 1 - width);
    const int y = std::clamp(saved.y(), best.top(), best.bottom() + 1 - height);
    return QRect(x, y, width, height);
}
