#pragma once

#include "foundation/base/XApi.h"

class XBackBuffer;

/// A box in world units. All four at 1.7e308 means "not set".
struct tagXWorldBox
{
    double minX;
    double minY;
    double maxX;
    double maxY;
};

/// One mapping between world and window for two surfaces, and the world box that a resize restores.
///
/// Every change goes to the main surface and then, with the same arguments, to the temporary one;
/// no one else may change either alone. Pixels are device pixels, (0, 0) the upper left corner of
/// the window and (width, height) its lower right; world y points up. Keeps references to both
/// surfaces, owns neither. Threads: user interface only.
///
/// What the surfaces refuse (a length that is not above 0, a step beyond the range of lengths, an
/// empty box, NaN) changes neither of them. Zoom steps are powers of two, so every step can be
/// taken back.
class XAPI XViewMapping
{
public:
    XViewMapping(XBackBuffer& main, XBackBuffer& temporary);

    /// World and pixel coordinates alike: one world unit a pixel, centre at half the size.
    void StartAlike(int width, int height);
    /// Keeps the centre. A size below 1 is ignored: a window that is folded away keeps its picture.
    void Resize(int width, int height);

    void SetWorldToCenter(double x, double y);
    void SetWorldPerPixel(double x, double y);
    void SetWorldPerPixelBase(double x, double y);
    void ZoomFit(const tagXWorldBox& box);
    void ZoomIn(double step);
    void ZoomOut(double step);
    void PanPixel(int dx, int dy);
    /// Zooms by `step` (above 0: in) about a pixel: the world point there stays, exactly.
    void ZoomAbout(double pixelX, double pixelY, double step);
    /// Zooms as the wheel does: about the pixel, but by whole pixels, so that the world point there
    /// stays within one pixel; about the centre when the point is not in the visible box.
    void ZoomWheel(int pixelX, int pixelY, double step);

    int GetWidth() const;
    int GetHeight() const;
    void GetWorldPerPixel(double& x, double& y) const;
    void PixelToWorld(double& x, double& y) const;
    void WorldToPixel(double& x, double& y) const;

    /// The world box of the four corners of the window, right under rotation too.
    tagXWorldBox GetBound() const;
    /// The box between the pixels (0, height) and (width, 0).
    tagXWorldBox GetDiagonal() const;

    const tagXWorldBox& GetVisibleBox() const { return m_visible; }
    void SetVisibleBox(const tagXWorldBox& box) { m_visible = box; }
    int HasVisibleBox() const; ///< non-zero when none of the four values is 1.7e308

private:
    template <class Change>
    void Apply(Change change);

    XBackBuffer& m_main;
    XBackBuffer& m_temporary;
    tagXWorldBox m_visible;
};
