#include "foundation/surface/XPen.h"

#include "foundation/surface/XQtColor.h"

#include <algorithm>

namespace {
constexpr double kMaxWidth = 1000.0;
constexpr int kPatternBits = 16;
} // namespace

QList<qreal> XfnGetDashLengths(const tagXLineStyle& style, qreal& offset)
{
    const unsigned pattern = style.GetPattern();
    offset = 0.0;
    QList<qreal> lengths;
    if (pattern == 0 || pattern == 0xFFFFu) return lengths;
    const auto isSet = [&](int i) {
        return (pattern >> (kPatternBits - 1 - i % kPatternBits) & 1u) != 0;
    };

    int first = 0; // the first bit that begins a dash
    while (!isSet(first) || isSet(first + kPatternBits - 1))
        ++first;
    bool isDash = false;
    for (int i = first; i < first + kPatternBits; ++i) {
        if (isSet(i) == isDash) {
            lengths.back() += 1.0;
        } else {
            lengths.push_back(1.0);
            isDash = !isDash;
        }
    }
    offset = first == 0 ? 0.0 : kPatternBits - first;
    return lengths;
}

QPen XPen::ToQPen() const
{
    if (style.IsNone()) return QPen(Qt::NoPen);
    QPen pen{QColor::fromRgb(XfnToQRgb(colour))};
    pen.setWidthF(widthPx > 1.0 ? std::min(widthPx, kMaxWidth) : 1.0);
    pen.setCapStyle(Qt::SquareCap); // with a flat one a line would lack its last pixel
    pen.setJoinStyle(Qt::MiterJoin);
    qreal offset = 0.0;
    const QList<qreal> lengths = XfnGetDashLengths(style, offset);
    if (!lengths.isEmpty()) {
        pen.setCapStyle(Qt::FlatCap);
        pen.setDashPattern(lengths);
        pen.setDashOffset(offset);
    }
    return pen;
}

int XfnCreatePen(XPen& pen, const tagXLineStyle& style, int widthPx, tagXColor colour)
{
    pen.style = style;
    pen.widthPx = std::clamp<double>(widthPx, 1.0, kMaxWidth);
    pen.colour = colour;
    return 1;
}
