#pragma once

#include "tests/support/XBandSamples.h"

#include <cstdlib>
#include <functional>
#include <vector>

/// A pattern in which no neighbour, transposition or mirror image looks the same.
inline int XfnPattern(int x, int y)
{
    return (x * 7 + y * 29 + x * y % 13) % 251 + 1;
}

/// A way of laying a band on the ground.
struct tagPlace
{
    const char* name;
    std::function<void(XDMBand&)> place;
};

/// On control points that bend the image by a second order.
inline void XfnPlaceOnPoints(XDMBand& band)
{
    std::vector<tagXGCP> points;
    for (int j = 0; j < 5; ++j) {
        for (int i = 0; i < 5; ++i) {
            tagXGCP point;
            point.pixelX = i * band.GetXSize() / 4.0;
            point.pixelY = j * band.GetYSize() / 4.0;
            point.worldX =
                3e5 + 2.0 * point.pixelX + 0.3 * point.pixelY + 1e-4 * point.pixelX * point.pixelY;
            point.worldY =
                4e6 - 1.8 * point.pixelY + 0.4 * point.pixelX - 1e-4 * point.pixelX * point.pixelX;
            points.push_back(point);
        }
    }
    XBandGeometry geometry;
    XString message;
    if (!geometry.SetControlPoints(points, band.GetXSize(), band.GetYSize(), message)) std::abort();
    band.SetGeometry(geometry);
}

inline void XfnPlaceByTransform(XDMBand& band, const double (&t)[6])
{
    XBandGeometry geometry;
    XString message;
    if (!geometry.SetTransform(t, band.GetXSize(), band.GetYSize(), message)) std::abort();
    band.SetGeometry(geometry);
}

inline const tagPlace kPlaces[] = {
    {"without georeference", [](XDMBand&) {}},
    {"metres far from the origin",
     [](XDMBand& band) {
         XBandGeometry geometry;
         geometry.SetNorthUp(300000.3, 4200000.7, 0.3, 0.7);
         band.SetGeometry(geometry);
     }},
    {"south up",
     [](XDMBand& band) {
         XfnPlaceByTransform(band, {1000.0, 2.0, 0.0, -500.0, 0.0, 3.0});
     }},
    {"turned on the ground",
     [](XDMBand& band) {
         XfnPlaceByTransform(band, {1000.0, 1.7, 0.9, 5000.0, 0.8, -1.6});
     }},
    {"on control points", XfnPlaceOnPoints},
};
