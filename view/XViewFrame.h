#pragma once

#include "foundation/base/XApi.h"

#include <QImage>

class QPainter;
class QRect;

/// The picture that a view shows: main surface with the overlay laid over it.
///
/// It is a copy, so a paint that strikes while the surfaces are being drawn (a modal box inside a
/// report) shows the last whole picture. All coordinates are device pixels.
class XAPI XViewFrame
{
public:
    /// Takes a copy of both surfaces; they are left as they are. Sizes may differ, the main one
    /// counts.
    void Publish(const QImage& main, const QImage& overlay);

    /// Draws the frame at (0, 0), one pixel a device pixel, and `backColor` where it does not
    /// reach.
    /// @param painter  its unit must be one device pixel
    /// @param area     the part to paint
    void Paint(QPainter& painter, const QRect& area, QRgb backColor) const;

    const QImage& GetPicture() const { return m_picture; }

private:
    QImage m_picture;
};

/// Lays an overlay over a picture of the same size or larger. Black overlay pixels leave the
/// picture alone; others show in their own colour, or in black or white, whichever is farther,
/// where their own differs from the picture by less than 96 of 255 in every channel. So a mark is
/// seen on any background, which exclusive or does not give: on mid grey its result is mid grey
/// again.
XAPI void XfnLayOverlay(QImage& picture, const QImage& overlay);
