#pragma once

#include "foundation/surface/XScanFill.h"

#include <cstddef>
#include <cstdint>

/// Draws lines one pixel wide: the pixels that hold the vertices, and between two of them one pixel
/// a column or row, whichever the line crosses more of. Vertices on the pixel of the one before are
/// passed over, and no pixel is painted twice where a line goes on.
/// Threads: one object a thread.
class XThinLine
{
public:
    explicit XThinLine(const tagXPixels& pixels) : m_pixels(pixels) {}

    /// Vertices lie within the surface, which the caller sees to.
    /// @param isRing  the line goes on to its first vertex
    void Draw(const tagXSubPixel* points, std::size_t count, bool isRing,
              const tagXPixelPaint& paint);

    /// The same smoothed: in each column or row the line lies on two pixels, by how near it runs to
    /// their centres. Vertices may lie anywhere.
    void DrawSmooth(const tagXSubPixel* points, std::size_t count, bool isRing,
                    const tagXPixelPaint& paint);

    /// A straight line of dashes; both ends lie within the surface.
    /// @param pattern    of 16 pixels along the line, the highest bit first
    /// @param start      length in pixels from where the pattern begins to `from`
    /// @param withFirst  the pixel that holds `from` is drawn too
    void DrawDashes(const tagXSubPixel& from, const tagXSubPixel& to, std::uint16_t pattern,
                    double start, bool withFirst, const tagXPixelPaint& paint);

private:
    void Lay(int x, int y, unsigned share, const tagXPixelPaint& paint);
    void DrawSmooth(tagXSubPixel from, tagXSubPixel to, bool isAcross, const tagXPixelPaint& paint);

    tagXPixels m_pixels;
};
