#include "foundation/reference/XInterProjWarp.h"

#include "foundation/base/XSentinels.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XSpatialReference.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kMap = 3; // coordinate type

struct tagBox
{
    double minX, minY, maxX, maxY;
};

/// A side without length gets one that is small and still has digits.
void Widen(double& low, double& high, double other)
{
    if (low < high) return;
    const double middle = low;
    const double half = other > 0.0 ? other * 0.5 : std::max(std::fabs(middle), 1.0) * 1e-6;
    low = middle - half;
    high = middle + half;
}

struct tagPoints
{
    std::vector<double> fromX, fromY, toX, toY;
};

/// The points of a grid over the box that come through. With `isBetween` the middles of its cells.
tagPoints CarryGrid(const tagBox& box, int columns, int rows, bool isBetween,
                    XCoordinateTransformation& transformation)
{
    tagPoints points;
    const double shift = isBetween ? 0.5 : 0.0;
    const int endX = isBetween ? columns - 1 : columns;
    const int endY = isBetween ? rows - 1 : rows;
    for (int j = 0; j < endY; ++j) {
        for (int i = 0; i < endX; ++i) {
            const double partX = (i + shift) / (columns - 1);
            const double partY = (j + shift) / (rows - 1);
            points.fromX.push_back(box.minX * (1.0 - partX) + box.maxX * partX);
            points.fromY.push_back(box.minY * (1.0 - partY) + box.maxY * partY);
        }
    }
    points.toX = points.fromX;
    points.toY = points.fromY;
    std::vector<int> ok(points.toX.size());
    transformation.Transform(static_cast<int>(ok.size()), points.toX.data(), points.toY.data(),
                             nullptr, ok.data());
    std::size_t kept = 0;
    for (std::size_t i = 0; i < ok.size(); ++i) {
        if (!ok[i]) continue;
        points.fromX[kept] = points.fromX[i];
        points.fromY[kept] = points.fromY[i];
        points.toX[kept] = points.toX[i];
        points.toY[kept] = points.toY[i];
        ++kept;
    }
    for (std::vector<double>* list : {&points.fromX, &points.fromY, &points.toX, &points.toY})
        list->resize(kept);
    return points;
}

double LargestMiss(const XWarp2D& warp, const tagPoints& points)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < points.fromX.size(); ++i) {
        double x = points.fromX[i];
        double y = points.fromY[i];
        warp.Warp(x, y);
        largest = std::max(largest, std::hypot(x - points.toX[i], y - points.toY[i]));
    }
    return largest;
}

} // namespace

double XfnGetWholeTurn(const XSpatialReference& reference)
{
    constexpr double kTwoPi = 6.28318530717958648;
    const double unit = reference.IsGeographic() ? reference.GetAngularUnits() : 0.0;
    return unit > 0.0 ? kTwoPi / unit : 0.0;
}

double XfnTurnTowards(double longitude, double centre, double turn)
{
    if (!(turn > 0.0) || std::fabs(longitude - centre) <= turn * 0.5) return longitude;
    return longitude - turn * std::round((longitude - centre) / turn);
}

XWarp2D XfnCalcWarpCoeffInterProj(int order, double minX, double minY, double maxX, double maxY,
                                  const XSpatialReference* from, const XSpatialReference* to,
                                  int isInverse, int columns, int rows, double* miss)
{
    constexpr int kMostPoints = 1025;
    XWarp2D warp;
    if (miss) *miss = kXNotSet;
    if (order < 1 || order > 3 || !from || !to || from->IsEmpty() || to->IsEmpty() ||
        from->GetCoordType() != kMap || to->GetCoordType() != kMap)
        return warp;
    for (const double number : {minX, minY, maxX, maxY})
        if (!std::isfinite(number) || !XfnIsSet(number)) return warp;
    if (from->IsSame(to)) {
        warp.SetAffine(0.0, 1.0, 0.0, 0.0, 0.0, 1.0);
        if (miss) *miss = 0.0;
        return warp;
    }
    XCoordinateTransformation transformation(*from, *to);
    if (!transformation.IsValid()) return warp;
    tagBox box{std::min(minX, maxX), std::min(minY, maxY), std::max(minX, maxX),
               std::max(minY, maxY)};
    const double width = box.maxX - box.minX;
    Widen(box.minX, box.maxX, box.maxY - box.minY);
    Widen(box.minY, box.maxY, width);
    columns = std::clamp(columns, order + 1, kMostPoints);
    rows = std::clamp(rows, order + 1, kMostPoints);

    tagPoints points = CarryGrid(box, columns, rows, false, transformation);
    if (points.toX.empty()) return warp;
    const double turn = XfnGetWholeTurn(*to);
    const double centre = points.toX[points.toX.size() / 2];
    const auto arrange = [&](tagPoints& list) {
        for (double& x : list.toX)
            x = XfnTurnTowards(x, centre, turn);
        if (!isInverse) return;
        list.fromX.swap(list.toX);
        list.fromY.swap(list.toY);
    };
    arrange(points);
    const int count = static_cast<int>(points.fromX.size());
    while (order >= 1 && !warp.Fit(points.fromX.data(), points.fromY.data(), points.toX.data(),
                                   points.toY.data(), count, order))
        --order;
    if (!miss || !warp.IsValid()) return warp;
    tagPoints between = CarryGrid(box, columns, rows, true, transformation);
    arrange(between);
    *miss = std::max(LargestMiss(warp, points), LargestMiss(warp, between));
    return warp;
}
