#include "foundation/raster/XSubsetStatElem.h"

#include "foundation/raster/XBandStatistics.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <array>

namespace {

/// Calls f(first sample, count) for each row of the window, as one run when rows are whole.
template <class F>
int ForEachRun(const void* data, int width, int height, int dataType, int x0, int x1, int y0,
               int y1, F&& f)
{
    const std::size_t size = XfnGetDataTypeSize(dataType);
    if (!data || width < 1 || height < 1 || size == 0) return 0;
    x0 = std::max(x0, 0);
    y0 = std::max(y0, 0);
    x1 = std::min(x1, width - 1);
    y1 = std::min(y1, height - 1);
    if (x0 > x1 || y0 > y1) return 1;
    const auto* bytes = static_cast<const unsigned char*>(data);
    const std::size_t columns = static_cast<std::size_t>(x1 - x0) + 1;
    const std::size_t rowBytes = static_cast<std::size_t>(width) * size;
    if (x0 == 0 && x1 == width - 1) {
        f(bytes + rowBytes * y0, columns * (static_cast<std::size_t>(y1 - y0) + 1));
        return 1;
    }
    for (int y = y0; y <= y1; ++y)
        f(bytes + rowBytes * y + size * x0, columns);
    return 1;
}

} // namespace

void XfnMoveHistogram(double previousMin, double previousMax, double min, double max,
                      long long* histogram)
{
    std::array<long long, 256> moved{};
    for (int i = 0; i < 256; ++i) {
        const double value = previousMin + (previousMax - previousMin) * i / 255.0;
        const double t = max > min ? (value - min) * 255.0 / (max - min) : 0.0;
        // half a thousandth of a bin: a value at a bin's start must not fall below it by rounding
        const double bin = t + 0.0005;
        // a range too wide for its difference gives NaN, which is no bin
        moved[bin > 0.0 ? static_cast<std::size_t>(std::min(bin, 255.0)) : 0] += histogram[i];
    }
    std::copy(moved.begin(), moved.end(), histogram);
}

int XfnGetSubsetStatElem1(const void* data, int width, int height, int dataType, double& sum,
                          double& sumOfSquares, double& min, double& max, long long& count, int x0,
                          int x1, int y0, int y1, double ignore)
{
    tagXMoments moments;
    if (!ForEachRun(data, width, height, dataType, x0, x1, y0, y1,
                    [&](const void* samples, std::size_t n) {
                        XfnAddMoments(samples, n, dataType, ignore, moments);
                    }))
        return 0;
    if (moments.count == 0) return 1;
    const double n = static_cast<double>(moments.count);
    sum += moments.mean * n;
    sumOfSquares += moments.squares + moments.mean * moments.mean * n;
    min = std::min(min, moments.min);
    max = std::max(max, moments.max);
    count += moments.count;
    return 1;
}

int XfnGetSubsetStatElem3(const void* data, int width, int height, int dataType, double previousMin,
                          double previousMax, double min, double max, long long* histogram, int x0,
                          int x1, int y0, int y1, double ignore)
{
    if (!histogram || !XfnIsSet(min) || !XfnIsSet(max) || min > max) return 0;
    if (!data || width < 1 || height < 1 || XfnGetDataTypeSize(dataType) == 0) return 0;
    const bool isReal =
        XfnIsSet(previousMin) && XfnIsSet(previousMax) && previousMin <= previousMax;
    if (isReal && (previousMin != min || previousMax != max))
        XfnMoveHistogram(previousMin, previousMax, min, max, histogram);
    return ForEachRun(data, width, height, dataType, x0, x1, y0, y1,
                      [&](const void* samples, std::size_t n) {
                          XfnAddHistogram(samples, n, dataType, ignore, min, max, histogram);
                      });
}
