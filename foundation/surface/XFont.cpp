#include "foundation/surface/XFont.h"

#include "foundation/base/XTextStyle.h"
#include "foundation/platform/XQtText.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr double kDefaultHeight = 16.0;
constexpr double kMaxHeight = 2000.0;
constexpr int kProbe = 100;

double HoldHeight(double height)
{
    return std::clamp(height, 1.0, kMaxHeight);
}

} // namespace

QFont XfnGetFont(const tagXTextStyle& style, double heightPx)
{
    const tagXFontRecord& record = style.font;
    const auto length = ::strnlen(record.faceName, sizeof record.faceName);
    QFont font(XfnToQString(XString(record.faceName, static_cast<int>(length))));
    // weights of the record run from 100 to 900 like those of the toolkit; 0 is "any"
    font.setWeight(
        static_cast<QFont::Weight>(record.weight == 0 ? 400 : std::clamp(record.weight, 100, 900)));
    font.setItalic(record.italic != 0);
    font.setUnderline(record.underline != 0);
    font.setStrikeOut(record.strikeOut != 0);

    // a negative height of the record measures the letters, a positive one the line
    const bool isLineHeight = heightPx > 0.0 || record.height > 0;
    double height = heightPx > 0.0 ? heightPx : std::fabs(static_cast<double>(record.height));
    height = HoldHeight(height > 0.0 ? height : kDefaultHeight);
    if (isLineHeight) {
        font.setPixelSize(kProbe);
        height = HoldHeight(height * kProbe / std::max(QFontMetricsF(font).height(), 1.0));
    }
    font.setPixelSize(static_cast<int>(std::lround(height)));
    return font;
}
