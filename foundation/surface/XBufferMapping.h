#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XWarp2D.h"

/// The mapping between the pixels of a surface and the world.
///
/// Pixel (0, 0) is the upper left corner of the surface and (width, height) the lower right one;
/// pixel y points down, world y up. Without rotation and warps
///
///     worldX = centreX + (pixelX - width / 2) * lengthX
///     worldY = centreY - (pixelY - height / 2) * lengthY
///
/// A rotation turns the picture about its centre, counterclockwise for positive degrees. A pair of
/// warps, used when both are valid, bends the world: the first maps world coordinates to the
/// plane in which the formula above holds, the second is its inverse. The centre stays a world
/// point, so panning and zooming work alike with and without them.
///
/// Every operation refuses what would leave the mapping useless (NaN, infinity, a length that is
/// not positive, numbers beyond those below) and then returns 0 and changes nothing. Two mappings
/// given the same calls are equal bit for bit.
/// Threads: a plain value; copies cross threads.
class XAPI XBufferMapping
{
public:
    /// Surfaces are at most this wide and high; lengths and centres lie within the other bounds,
    /// which keep squares of lengths and coordinates of far pixels finite.
    static constexpr int kMaxSide = 32767;
    static constexpr double kMinLength = 1e-150;
    static constexpr double kMaxLength = 1e150;
    static constexpr double kMaxCentre = 1e300;

    int SetSize(int widthPx, int heightPx); ///< 0 is allowed: a surface that shows nothing
    int GetWidth() const { return m_width; }
    int GetHeight() const { return m_height; }

    /// The world point under the middle of the surface.
    int SetWorldToCenter(double x, double y);
    void GetWorldToCenter(double& x, double& y) const;

    /// World length of a pixel on each axis.
    int SetWorldPerPixel(double x, double y);
    void GetWorldPerPixel(double& x, double& y) const;
    double GetWorldPerPixel() const { return m_lengthX; }

    /// The world lengths that stand for zoom factor 1. Their ratio is kept by ZoomFit.
    int SetWorldPerPixelBase(double x, double y);
    void GetWorldPerPixelBase(double& x, double& y) const;
    /// World length of a pixel divided by the base, on each axis: above 1 the picture is reduced.
    void GetZoomFactor(double& x, double& y) const;

    int SetRotationAngle(double degrees);
    double GetRotationAngle() const { return m_angle; }

    /// Invalid warps remove the pair.
    void SetWarpCoeff(const XWarp2D& worldToPixel, const XWarp2D& pixelToWorld);
    const XWarp2D& GetWarpCoeffWorldToPixel() const { return m_worldToPlane; }
    const XWarp2D& GetWarpCoeffPixelToWorld() const { return m_planeToWorld; }

    /// A flag of the owner, carried with the mapping: geographic read-outs are rounded.
    void SetLatLongRounding(int isOn) { m_isLatLongRounding = isOn != 0; }
    int IsLatLongRounding() const { return m_isLatLongRounding ? 1 : 0; }

    /// Points are converted in place. What is not finite stays not finite.
    void ConvPixelToWorldCoord(double& x, double& y) const;
    void ConvWorldToPixelCoord(double& x, double& y) const;
    /// Lengths along the axes, without rotation and warps; signs are kept.
    void ConvPixelToWorldLength(double& x, double& y) const;
    void ConvWorldToPixelLength(double& x, double& y) const;

    /// The map from the world to pixels as eight numbers, exact about the world point in the middle:
    /// with u = x - a[0] and v = y - a[1], pixelX = a[2] + a[3] u + a[4] v and
    /// pixelY = a[5] + a[6] u + a[7] v.
    /// @return 0 when warps bend the world; then there is no such map
    int GetWorldToPixel(double (&a)[8]) const;

    /// Centres on the box and takes the smallest length that shows all of it, turned and bent as
    /// the mapping is. A box without width or height is fitted by the other side; a single point is
    /// centred at the length of before. An empty box (a maximum below its minimum) or one that is
    /// not set, and a surface without pixels, change nothing.
    int ZoomFit(double minX, double minY, double maxX, double maxY);

    /// A step s divides (ZoomIn) or multiplies (ZoomOut) both world lengths by 2 to the power of s.
    int ZoomIn(double step);
    int ZoomOut(double step);

    /// Moves the content by (dx, dy) pixels, to the right and down.
    int PanPixel(int dx, int dy);

    /// Equal bit for bit, but for the warps, which are compared by whether they are in use.
    friend XAPI bool operator==(const XBufferMapping& a, const XBufferMapping& b);

private:
    void PixelToPlane(double& x, double& y) const;
    void UpdatePlaneCentre();

    int m_width = 0;
    int m_height = 0;
    double m_centreX = 0.0;
    double m_centreY = 0.0;
    double m_planeX = 0.0; // the centre in the plane; the centre itself without warps
    double m_planeY = 0.0;
    double m_lengthX = 1.0;
    double m_lengthY = 1.0;
    double m_baseX = 1.0;
    double m_baseY = 1.0;
    double m_angle = 0.0;
    double m_cos = 1.0;
    double m_sin = 0.0;
    bool m_isBent = false;
    bool m_isLatLongRounding = false;
    XWarp2D m_worldToPlane;
    XWarp2D m_planeToWorld;
};
