#pragma once

#include "foundation/base/XString.h"
#include "foundation/base/XWarp2D.h"

#include <vector>

/// A ground control point: the world point seen at a place of the image.
struct tagXGCP
{
    XString id;
    double pixelX = 0.0; ///< centre based: (0, 0) is the centre of the upper-left pixel
    double pixelY = 0.0;
    double worldX = 0.0;
    double worldY = 0.0;
    double worldZ = 0.0;
    int use = 1; ///< 0 takes it out of the model

    friend bool operator==(const tagXGCP&, const tagXGCP&) = default;
};

/// Where the pixels of a band lie in the world.
///
/// Pixel (0.0, 0.0) is the centre of the upper-left pixel; pixel x grows to the right and y
/// downwards. Pixel sizes are positive.
///
/// Both warps are always valid. North-up rasters have warps without cross terms. For the others
/// the plain numbers are a summary and the warps are the truth: upper left and pixel size of a
/// south-up raster describe the same pixels from their northern edge, so that the extent
/// ulX + xPixelSize * (width - 1), ulY - yPixelSize * (height - 1) holds; those of a rotated one or
/// one on control points are the world place of pixel (0, 0) and the world lengths of one pixel step
/// there.
///
/// A raster without georeference has pixel size 1 and upper left (0, 0), so world y is -row.
/// A plain value: copies are independent. Threads: reading from any thread.
class XAPI XBandGeometry
{
public:
    XBandGeometry(); ///< without georeference

    int IsGeoreferenced() const { return m_isGeoreferenced; }
    int IsNorthUp() const { return m_isNorthUp; } ///< no rotation, x to the right, y upwards
    double GetULX() const { return m_ulX; }
    double GetULY() const { return m_ulY; }
    double GetXPixelSize() const { return m_xPixelSize; }
    double GetYPixelSize() const { return m_yPixelSize; }
    const XWarp2D& GetWorldToPixel() const { return m_worldToPixel; }
    const XWarp2D& GetPixelToWorld() const { return m_pixelToWorld; }

    /// North-up. @return 0 for numbers that are not finite or sizes that are not positive; then
    /// nothing changes.
    int SetNorthUp(double ulX, double ulY, double xPixelSize, double yPixelSize);

    /// From the six numbers of a transform of pixel corners, x = t0 + t1 column + t2 row,
    /// y = t3 + t4 column + t5 row, with (0, 0) the outer corner of the upper-left pixel.
    /// @return 0 when a number is not finite or the transform has no inverse; then the geometry is
    ///         not georeferenced and `message` says why.
    int SetTransform(const double (&t)[6], int width, int height, XString& message);

    /// From the control points in use by least squares: order 1 from 3 points, 2 from 9, 3 from 16, so that
    /// the higher orders have points to spare; a lower order when the points do not determine the
    /// higher one or it has no inverse over the image. The inverse of an order above 1 begins with a
    /// polynomial fitted to a grid of the forward map over the image and is refined from there
    /// (XWarp2D::RefineAsInverseOf); it returns to the pixel within a hundredth of a pixel, or the
    /// order is not taken.
    /// @return 0 when no order fits; then the geometry is not georeferenced and `message` says why.
    int SetControlPoints(const std::vector<tagXGCP>& points, int width, int height,
                         XString& message);

    /// From both maps and the summary that the plain numbers give, as another geometry had them;
    /// nothing is computed anew but a missing inverse of an affine map. A `worldToPixel` of higher
    /// order is refined as the inverse of `pixelToWorld`.
    /// @return 0 when a map is missing, a number is not finite or a size is not positive; then
    ///         nothing changes.
    int SetWarps(const XWarp2D& worldToPixel, const XWarp2D& pixelToWorld, double ulX, double ulY,
                 double xPixelSize, double yPixelSize);

    /// The box around all pixel areas, half a pixel outside the outer centres; for an order above 1
    /// from points along the border.
    void GetOuterBox(int width, int height, double& left, double& right, double& bottom,
                     double& top) const;
    /// The box around all pixel centres; on an axis with one pixel, half a pixel to each side.
    void GetBoundRect(int width, int height, double& left, double& right, double& bottom,
                      double& top) const;

private:
    int FitOrder(const std::vector<tagXGCP>& points, int width, int height, int order);
    void SetSummary();
    void GetBox(double x0, double y0, double x1, double y1, double& left, double& right,
                double& bottom, double& top) const;

    int m_isGeoreferenced = 0;
    int m_isNorthUp = 1;
    double m_ulX = 0.0;
    double m_ulY = 0.0;
    double m_xPixelSize = 1.0;
    double m_yPixelSize = 1.0;
    XWarp2D m_worldToPixel;
    XWarp2D m_pixelToWorld;
};
