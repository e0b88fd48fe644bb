#include "host/XLayerPlacement.h"

#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XSpatialReference.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kGrid = 21;
constexpr int kMap = 3; // coordinate type

struct tagXControlPoints
{
    std::vector<double> worldX, worldY; // in the target reference
    std::vector<double> column, row;
};

tagXControlPoints MakePoints(const XDMBand& band, const XSpatialReference& from,
                             const XSpatialReference& to)
{
    tagXControlPoints points;
    XCoordinateTransformation transformation(from, to);
    if (!transformation.IsValid()) return points;
    for (int j = 0; j < kGrid; ++j) {
        for (int i = 0; i < kGrid; ++i) {
            const double column = (band.GetXSize() - 1.0) * i / (kGrid - 1);
            const double row = (band.GetYSize() - 1.0) * j / (kGrid - 1);
            double x = column;
            double y = row;
            band.GetPixelToWorld().Warp(x, y);
            if (!transformation.TransformPt(x, y) || !XfnIsSet(x) || !XfnIsSet(y)) continue;
            points.worldX.push_back(x);
            points.worldY.push_back(y);
            points.column.push_back(column);
            points.row.push_back(row);
        }
    }
    return points;
}

// The best warp that the points determine, from cubic down to affine.
bool FitWarp(const tagXControlPoints& points, XWarp2D& warp)
{
    const int count = static_cast<int>(points.column.size());
    for (int order = 3; order >= 1; --order)
        if (warp.Fit(points.worldX.data(), points.worldY.data(), points.column.data(),
                     points.row.data(), count, order))
            return true;
    return false;
}

double LargestMiss(const tagXControlPoints& points, const XWarp2D& warp)
{
    double largest = 0;
    for (std::size_t i = 0; i < points.column.size(); ++i) {
        double x = points.worldX[i];
        double y = points.worldY[i];
        warp.Warp(x, y);
        largest = std::max(largest, std::hypot(x - points.column[i], y - points.row[i]));
    }
    return largest;
}

} // namespace

double XfnPlaceInReference(XDMComposite& composite, const XSpatialReference& target)
{
    if (target.GetCoordType() != kMap || target.IsEmpty()) return 0;
    double largest = 0;
    for (int channel = 0; channel < composite.GetNumberOfChannels(); ++channel) {
        XDMBand* band = composite.GetBand(channel);
        if (!band) continue;
        const XSpatialReference& own = *band->GetSR();
        if (own.GetCoordType() != kMap || own.IsEmpty() || own.IsSame(&target)) continue;
        const tagXControlPoints points = MakePoints(*band, own, target);
        XWarp2D warp;
        if (!FitWarp(points, warp)) return -1;
        composite.SetWarpCoeff(warp, channel);
        largest = std::max(largest, LargestMiss(points, warp));
    }
    return largest;
}

QString XfnPlacementText(double miss)
{
    if (miss < 0) return "Not placed: nothing joins its coordinate system and the view's";
    if (miss <= 1) return QString();
    return QString("Placed within %1 pixels").arg(std::ceil(miss), 0, 'f', 0);
}
