#pragma once

#include "foundation/base/XApi.h"

#include <QImage>

class QPainter;
class QRect;
class XBackBuffer;
class XDC;

/// The picture that a view shows, kept apart from the surfaces that it was made of.
///
/// So a paint that strikes while those are being drawn (a modal box inside a report) shows the last
/// whole picture. All coordinates are device pixels.
class XAPI XViewFrame
{
public:
    /// An image to draw the next picture on, as large as told; what it holds is of no meaning. The
    /// picture shown is another one until Publish.
    QImage& GetNext(const QSize& size);
    void Publish(); ///< the image of GetNext becomes the picture
    /// The picture itself, as large as told, to be drawn on where nobody shows it meanwhile.
    QImage& GetPicture(const QSize& size);

    /// Draws the picture at (0, 0), one pixel a device pixel, and `backColor` where it does not
    /// reach.
    /// @param painter  its unit must be one device pixel
    /// @param area     the part to paint
    void Paint(QPainter& painter, const QRect& area, QRgb backColor) const;

    const QImage& GetPicture() const { return m_picture; }

private:
    QImage m_picture;
    QImage m_next;
};

/// Copies the main surface to a device, upper left corners together, and lays the overlay over it.
/// Nothing happens on a device without an image.
XAPI void XfnSwapSurfaces(XDC* dc, const XBackBuffer& main, const XBackBuffer& overlay);

/// Lays an overlay over a picture, upper left corners together. Black overlay pixels leave the
/// picture alone; others show in their own colour, or in black or white, whichever is farther,
/// where their own differs from the picture by less than 96 of 255 in every channel. The pixels to
/// the four sides of a mark that bear none are black where both are light and white where both are
/// dark: a casing that keeps a thin line in sight on busy ground, left out where marks cover more
/// than one pixel in 32. So a mark is seen on any background, which exclusive or does not give: on mid
/// grey its result is mid grey again.
XAPI void XfnLayOverlay(QImage& picture, const QImage& overlay);
