#pragma once

#include "foundation/surface/XPixelPaint.h"
#include "foundation/surface/XVertStyles.h"

#include <QPoint>

#include <vector>

class QPainter;

/// A point mark as pixels, painted once and then stamped wherever a point lies.
class XMarkStamp
{
public:
    static constexpr int kMaxSizePx = 512; ///< larger ones are painted one by one

    /// @param sizePx  1 to kMaxSizePx
    XMarkStamp(const tagXVertPoint& mark, int sizePx, bool isSmooth);

    /// Stamps it with its centre on a pixel, as far as it lies on the surface.
    void Draw(const tagXPixels& pixels, int x, int y) const;

    /// Paints a mark of any size.
    static void Paint(QPainter& painter, const tagXVertPoint& mark, const QPoint& centre,
                      int sizePx, bool isSmooth);

private:
    struct tagRun // of pixels all opaque or all translucent; places from the centre
    {
        int y, begin, end;
        bool isOpaque;
        std::size_t first; // in the words
    };
    std::vector<tagRun> m_runs;
    std::vector<std::uint32_t> m_words;
    int m_reach = 0;
};
