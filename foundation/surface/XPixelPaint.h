#pragma once

#include "foundation/base/XColor.h"

#include <QImage>

#include <cstddef>
#include <cstdint>

struct tagXFillStyle;

/// The pixels that are drawn on: words 0xFFRRGGBB.
struct tagXPixels
{
    std::uint32_t* bits = nullptr;
    std::size_t stride = 0; ///< words from one row to the next
    int width = 0;
    int height = 0;

    tagXPixels() = default;
    explicit tagXPixels(QImage& image); ///< 32-bit; gets pixels of its own if it shared them
    std::uint32_t* Row(int y) const { return bits + static_cast<std::size_t>(y) * stride; }
};

/// What pixels of an area or line become: one colour, or the two of a pattern, laid over what is
/// there by their opacity.
struct tagXPixelPaint
{
    enum class XKind { Opaque, Blend, Pattern };

    XKind kind = XKind::Opaque;
    std::uint32_t fore = 0xFF000000u; ///< premultiplied, as the next
    std::uint32_t back = 0;
    const tagXFillStyle* style = nullptr; ///< of a pattern
    int originX = 0;                      ///< pixel where the pattern begins
    int originY = 0;

    static tagXPixelPaint FromColour(tagXColor colour); ///< the top byte is the opacity

    /// The word laid over a pixel.
    static std::uint32_t Over(std::uint32_t word, std::uint32_t below)
    {
        // both halves at once, divided by 255 with rounding
        const std::uint32_t rest = 255u - (word >> 24);
        std::uint32_t rb = (below & 0x00FF00FFu) * rest;
        rb = (rb + (rb >> 8 & 0x00FF00FFu) + 0x00800080u) >> 8 & 0x00FF00FFu;
        std::uint32_t g = (below >> 8 & 0xFFu) * rest;
        g = (g + (g >> 8 & 0xFFu) + 0x80u) & 0xFF00u;
        return 0xFF000000u | (word + (rb | g));
    }
    /// A premultiplied word with 0 to 255 of its opacity.
    static std::uint32_t Thin(std::uint32_t word, std::uint32_t share)
    {
        std::uint32_t rb = (word & 0x00FF00FFu) * share;
        rb = (rb + (rb >> 8 & 0x00FF00FFu) + 0x00800080u) >> 8 & 0x00FF00FFu;
        std::uint32_t ag = (word >> 8 & 0x00FF00FFu) * share;
        ag = (ag + (ag >> 8 & 0x00FF00FFu) + 0x00800080u) & 0xFF00FF00u;
        return rb | ag;
    }
};

/// Paints pixels [begin, end) of a row, which lie within it.
void XfnPaintSpan(const tagXPixelPaint& paint, std::uint32_t* row, int y, int begin, int end);
/// The same with 1 to 255 of the paint's opacity.
void XfnPaintSpan(const tagXPixelPaint& paint, std::uint32_t* row, int y, int begin, int end,
                  std::uint32_t share);
