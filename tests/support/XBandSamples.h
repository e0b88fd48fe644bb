#pragma once

#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/surface/XBackBuffer.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

/// A band in memory whose samples come from f(x, y), converted to the data type. A complex sample
/// is (f, f / 2).
template <class F>
std::unique_ptr<XDMBandMemory> XfnMakeBand(int dataType, int width, int height, F f)
{
    auto band = std::make_unique<XDMBandMemory>();
    band->Create(dataType, width, height);
    const int parts = XfnIsComplexType(dataType) ? 2 : 1;
    XfnDispatchRealType<int>(XfnGetPartType(dataType), [&](auto* type) {
        using T = std::remove_const_t<std::remove_pointer_t<decltype(type)>>;
        T* out = static_cast<T*>(band->GetData());
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                for (int part = 0; part < parts; ++part)
                    *out++ = static_cast<T>(f(x, y) / (part + 1));
        return 1;
    });
    band->Changed();
    return band;
}

/// A band of single rows of values, as they look.
inline std::unique_ptr<XDMBandMemory>
XfnMakeBand(int dataType, std::initializer_list<std::initializer_list<double>> rows)
{
    std::vector<std::vector<double>> table(rows.begin(), rows.end());
    return XfnMakeBand(dataType, static_cast<int>(table[0].size()), static_cast<int>(table.size()),
                       [&](int x, int y) { return table[y][x]; });
}

/// A surface of this size and colour (0xAARRGGBB) that shows pixel (0, 0) of a raster without
/// georeference in its upper left corner, `perPixel` raster pixels a screen pixel.
inline XBackBuffer XfnMakeSurface(int width, int height, std::uint32_t colour = 0xFF000000u,
                                  double perPixel = 1.0)
{
    XBackBuffer buffer;
    buffer.Resize(nullptr, width, height);
    buffer.SetWorldPerPixel(perPixel, perPixel);
    buffer.SetWorldToCenter(width * 0.5 * perPixel - 0.5, 0.5 - height * 0.5 * perPixel);
    buffer.GetImage().fill(colour);
    return buffer;
}

/// Left, right, bottom and top of anything that has a box.
using XBounds = std::array<double, 4>;

template <class Source>
XBounds XfnBoundsOf(const Source& source)
{
    XBounds box{};
    source.GetBoundRect(box[0], box[1], box[2], box[3]);
    return box;
}

/// The world under a surface: the least x and y and the largest.
inline std::array<double, 4> XfnBoxOf(const XBackBuffer& buffer)
{
    std::array<double, 4> box = {1e308, 1e308, -1e308, -1e308};
    for (int corner = 0; corner < 4; ++corner) {
        double x = corner & 1 ? buffer.GetWidth() : 0;
        double y = corner & 2 ? buffer.GetHeight() : 0;
        buffer.ConvPixelToWorldCoord(x, y);
        box[0] = std::min(box[0], x);
        box[1] = std::min(box[1], y);
        box[2] = std::max(box[2], x);
        box[3] = std::max(box[3], y);
    }
    return box;
}

/// Draws the whole surface.
inline int XfnDrawAll(XDMComposite& composite, XBackBuffer& buffer,
                      std::atomic<int>* abort = nullptr)
{
    const auto box = XfnBoxOf(buffer);
    return composite.Draw(&buffer, box[0], box[1], box[2], box[3], 1, nullptr, abort);
}
