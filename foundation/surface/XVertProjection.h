#pragma once

#include "foundation/surface/XBufferMapping.h"
#include "foundation/surface/XScanFill.h"
#include "foundation/surface/XVertRecording.h"

#include <QPointF>

#include <cstddef>

/// Where the vertices of recordings lie on a surface. Internal to this folder.
class XVertProjection
{
public:
    /// In pixels; of boxes without bounds some are not finite.
    struct tagPixelBox
    {
        double minX, minY, maxX, maxY;
    };

    explicit XVertProjection(const XBufferMapping& mapping);

    /// Without warps: the map is affine, and boxes tell where primitives lie.
    bool IsAffine() const { return m_isAffine; }

    /// Held to numbers whose squares are finite; not finite where a warp makes them so.
    QPointF ToPixel(const double* vertex) const;
    /// Of an affine map. Far places are held at the bounds of tagXSubPixel.
    void ToSubPixels(const double* vertices, std::size_t count, tagXSubPixel* places) const;
    tagPixelBox ToPixels(const XVertRecording::tagBox& box) const;
    /// The box around what the surface shows with so many pixels around it, for an affine map.
    XVertRecording::tagBox GetShownBox(double marginPx) const;

    /// A world length when positive, pixels when negative; never above 20000.
    double ToPixelSize(double size, double sizeOfZero) const;

private:
    const XBufferMapping& m_mapping;
    double m_map[8] = {};
    bool m_isAffine;
};
