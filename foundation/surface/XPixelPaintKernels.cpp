#include "foundation/base/XFillStyle.h"
#include "foundation/surface/XPixelPaint.h"
#include "foundation/surface/XQtColor.h"

#include <algorithm>

namespace {

void BlendRow(std::uint32_t word, std::uint32_t* pixels, int count)
{
    for (int i = 0; i < count; ++i)
        pixels[i] = tagXPixelPaint::Over(word, pixels[i]);
}

void PatternRow(const tagXPixelPaint& paint, std::uint32_t* row, int y, int begin, int end,
                std::uint32_t share)
{
    const unsigned char* pattern =
        paint.style->pattern + 4 * (static_cast<unsigned>(y - paint.originY) & 31u);
    const std::uint32_t words[2] = {tagXPixelPaint::Thin(paint.back, share),
                                    tagXPixelPaint::Thin(paint.fore, share)};
    for (int x = begin; x < end; ++x) {
        const unsigned column = static_cast<unsigned>(x - paint.originX) & 31u;
        const std::uint32_t word = words[pattern[column / 8] >> (7u - column % 8) & 1u];
        if (word >> 24) row[x] = tagXPixelPaint::Over(word, row[x]);
    }
}

} // namespace

tagXPixels::tagXPixels(QImage& image)
    : bits(reinterpret_cast<std::uint32_t*>(image.bits())),
      stride(static_cast<std::size_t>(image.bytesPerLine()) / sizeof(std::uint32_t)),
      width(image.width()),
      height(image.height())
{}

tagXPixelPaint tagXPixelPaint::FromColour(tagXColor colour)
{
    tagXPixelPaint paint;
    paint.fore = Thin(XfnToQRgb(colour), XfnGetAlpha(colour));
    paint.kind = paint.fore >> 24 == 0xFFu ? XKind::Opaque : XKind::Blend;
    return paint;
}

void XfnPaintSpan(const tagXPixelPaint& paint, std::uint32_t* row, int y, int begin, int end)
{
    switch (paint.kind) {
    case tagXPixelPaint::XKind::Opaque:
        std::fill(row + begin, row + end, paint.fore);
        break;
    case tagXPixelPaint::XKind::Blend:
        BlendRow(paint.fore, row + begin, end - begin);
        break;
    case tagXPixelPaint::XKind::Pattern:
        PatternRow(paint, row, y, begin, end, 255);
        break;
    }
}

void XfnPaintSpan(const tagXPixelPaint& paint, std::uint32_t* row, int y, int begin, int end,
                  std::uint32_t share)
{
    if (share == 255) {
        XfnPaintSpan(paint, row, y, begin, end);
    } else if (paint.kind == tagXPixelPaint::XKind::Pattern) {
        PatternRow(paint, row, y, begin, end, share);
    } else {
        BlendRow(tagXPixelPaint::Thin(paint.fore, share), row + begin, end - begin);
    }
}
