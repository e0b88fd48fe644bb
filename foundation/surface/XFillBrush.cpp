#include "foundation/surface/XFillBrush.h"

#include "foundation/base/XFillStyle.h"
#include "foundation/surface/XQtColor.h"

#include <QImage>

namespace {
constexpr int kSide = 32;
}

QBrush XfnGetFillBrush(const tagXFillStyle& style, tagXColor foreColour, tagXColor backColour)
{
    const QColor fore = XfnToQColor(foreColour);
    const QColor back = XfnToQColor(backColour);
    if (style.IsNone()) return QBrush();
    if (style.GetStyle() == tagXFillStyle::kSolid) {
        return fore.alpha() ? QBrush(fore) : QBrush();
    }
    if (!fore.alpha() && !back.alpha()) return QBrush();
    QImage tile(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
    const QRgb words[2] = {qPremultiply(back.rgba()), qPremultiply(fore.rgba())};
    for (int y = 0; y < kSide; ++y) {
        auto* row = reinterpret_cast<QRgb*>(tile.scanLine(y));
        for (int x = 0; x < kSide; ++x)
            row[x] = words[style.IsSet(x, y)];
    }
    return QBrush(tile);
}
