#pragma once

#include "foundation/base/XApi.h"
#include "foundation/raster/XChannelWarp.h"
#include "foundation/surface/XBufferMapping.h"

#include <vector>

/// Where the pixel centres of a surface lie in one level of a band.
///
/// Positions are edge based: column c of the level covers [c, c + 1), so the truncated position of
/// a screen pixel is the raster pixel that it shows. They are rounded to 2^-24 of a pixel at the
/// middle of the surface and steps to 2^-44, so that at one raster pixel a screen pixel every step
/// is exactly 1 and rounding cannot double or drop a column at the far end of the surface.
///
/// Threads: a plain value, read from any thread.
class XAPI XDrawMapping
{
public:
    enum class Kind {
        None,      ///< not in finite numbers: nothing can be drawn
        Separable, ///< a column depends on x alone and a row on y alone
        Affine,
        General, ///< through polynomials
    };

    /// @param worldToBand    valid warp to centre based pixels of full resolution
    /// @param bandToWorld    its inverse; only its extent over the band is used
    /// @param bandWidth, bandHeight    full resolution
    /// @param levelWidth, levelHeight  of the level
    void Set(const XBufferMapping& surface, const XChannelWarp& worldToBand,
             const XChannelWarp& bandToWorld, int bandWidth, int bandHeight, int levelWidth,
             int levelHeight);

    Kind GetKind() const { return m_kind; }

    /// Band pixels of full resolution from one screen pixel to the next, along the axis where they
    /// are fewer; 0 when unknown.
    double GetBandStep() const { return m_bandStep; }

    /// Separable only: position of the centre of a surface column or row.
    double GetColumnAt(int x) const;
    double GetRowAt(int y) const;

    /// Positions of surface pixels (x .. x + n - 1, y); NaN where the polynomials do not hold.
    void GetPositions(int x, int y, int n, double* levelX, double* levelY) const;

private:
    void GetExact(double x, double y, double& levelX, double& levelY) const;
    void GetGeneral(int x, int y, int n, double* levelX, double* levelY) const;
    void CalcBandStep(const XChannelWarp& bandToWorld, int bandWidth, int bandHeight);

    Kind m_kind = Kind::None;
    XBufferMapping m_surface;
    XChannelWarp m_worldToBand;
    double m_scaleX = 1.0; // level pixels a band pixel
    double m_scaleY = 1.0;
    double m_middleX = 0.0; // of the surface, in pixels
    double m_middleY = 0.0;
    // position = origin + step * (pixel centre - middle), for the first two kinds
    double m_originX = 0.0, m_stepXX = 0.0, m_stepXY = 0.0;
    double m_originY = 0.0, m_stepYX = 0.0, m_stepYY = 0.0;
    double m_worldBox[4] = {}; // left, right, bottom, top: beyond it polynomials fold back
    double m_bandStep = 0.0;
};

/// The box around what a warp makes of the rectangle from (x0, y0) to (x1, y1): left, right,
/// bottom, top. Its border is followed in 32 steps a side, enough for the polynomials of order 3.
/// A warp held to the exact way is asked over the whole rectangle, a pole may lie inside, and points
/// without a place are left out.
/// @return 0 when a point of a polynomial is not finite, or none has a place; then the box is
///         untouched
XAPI int XfnCalcWarpedBox(const XChannelWarp& warp, double x0, double y0, double x1, double y1,
                          double (&box)[4]);

/// The inverse of a warp over the pixels of a band. Affine warps are inverted exactly; others by a
/// fit of order 3 on a grid of points that are found by Newton's method.
/// The search starts from the warp itself, in whatever units its world has.
/// @param guess  a rough inverse to start from where that does not lead anywhere
/// @return not valid when a point is not found
XAPI XWarp2D XfnInvertWarp(const XWarp2D& worldToBand, const XWarp2D& guess, int width, int height);
