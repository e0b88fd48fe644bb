#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"

#include <QPolygon>
#include <QRect>
#include <QSize>

class QImage;
class QPainter;
class XString;
struct XPen;
struct tagXTextStyle;

/// Raster operations of blits: the source, and the exclusive or of source and target.
inline constexpr unsigned kXCopy = 0x00CC0020u;
inline constexpr unsigned kXInvert = 0x00660046u;

/// A device context: drawing and blits on a 32-bit image, or on nothing.
///
/// The image is lent, not owned, and must outlive the context; formats are RGB32, ARGB32 and
/// ARGB32_Premultiplied, any other is taken as nothing. On nothing every drawing operation does
/// nothing and returns 0. Coordinates are pixels, y down; everything is clipped to the image.
/// Exclusive or touches the three colour bytes only, so drawing the same thing twice restores the
/// image. Threads: one thread at a time, any thread.
class XAPI XDC
{
public:
    enum class XMode { Copy, ExclusiveOr };

    XDC() = default;
    explicit XDC(QImage* target);

    QImage* GetImage() const { return m_image; }
    int GetWidth() const;
    int GetHeight() const;

    static bool IsRasterOp(unsigned rop) { return rop == kXCopy || rop == kXInvert; }

    /// Copies a block of `source`, which may be this image, overlapping too.
    /// @param rop  kXCopy or kXInvert; any other is refused
    int BitBlt(int x, int y, int width, int height, const XDC& source, int sourceX, int sourceY,
               unsigned rop);
    /// The same scaled, nearest pixel. `source` must be another image. The source block may reach
    /// beyond its image; target pixels without a source pixel are left alone.
    int StretchBlt(double x, double y, double width, double height, const XDC& source,
                   double sourceX, double sourceY, double sourceWidth, double sourceHeight,
                   unsigned rop);
    int FillRect(const QRect& rect, tagXColor colour);

    /// For the drawing operations below.
    void SetDrawMode(XMode mode) { m_mode = mode; }
    int DrawLine(const QPoint& from, const QPoint& to, const XPen& pen);
    int DrawPolyline(const QPolygon& points, const XPen& pen);
    int DrawPolygon(const QPolygon& points, const XPen& pen); ///< outline only
    /// Outlines within the rectangle; one without a pixel is refused.
    int DrawRectangle(const QRect& rect, const XPen& pen);
    int DrawEllipse(const QRect& rect, const XPen& pen);

    /// Text with its upper left corner at (x, y), on what is there. Line ends break it.
    /// @param heightPx  0 takes the height of the style
    int DrawText(int x, int y, const XString& text, const tagXTextStyle& style, tagXColor colour,
                 double heightPx = 0.0);
    QSize GetTextExtent(const XString& text, const tagXTextStyle& style,
                        double heightPx = 0.0) const;
    int GetAverageCharWidth(const tagXTextStyle& style, double heightPx = 0.0) const;

private:
    template <class Draw>
    int Paint(const XPen& pen, Draw draw);

    QImage* m_image = nullptr;
    XMode m_mode = XMode::Copy;
};
