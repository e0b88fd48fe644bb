#include "bench/BenchScene.h"

#include "bench/BenchFilterKernels.h"
#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XDMBandSpatialFilter.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSpatialFilterKernels.h"

#include <random>
#include <string>

// The spatial filters, each against one plain pass over the same block: read a sample, scale it,
// write it.

namespace {

constexpr int kSide = 1024;
constexpr int kMaxRadius = 5;
constexpr int kWide = kSide + 2 * kMaxRadius;

double MedianTime(int runs, const std::function<void()>& work)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i)
        times.push_back(TimeMs(work));
    return MedianOf(times);
}

} // namespace

int main()
{
    std::mt19937 random(1);
    std::vector<float> samples(static_cast<std::size_t>(kWide) * kWide);
    for (float& v : samples)
        v = static_cast<float>(random() % 4096);
    std::vector<float> out(static_cast<std::size_t>(kSide) * kSide);
    std::vector<float> scratch;
    const float* origin = samples.data() + kWide * kMaxRadius + kMaxRadius;
    const char* const names[] = {"", "mean", "median", "gaussian", "sharpen", "sobel", "laplacian"};

    XRows rows;
    const auto plain = [&] { XfnPlainScale(origin, kWide, kSide, kSide, 1.5f, out.data()); };
    for (const double gaps : {0.0, 0.01}) {
        for (float& v : samples)
            if (random() < gaps * 4294967296.0) v = std::numeric_limits<float>::quiet_NaN();
        for (int type = kXFilterMean; type <= kXFilterLaplacian; ++type) {
            for (const int size : {3, 5, 11}) {
                const tagXSpatialFilter filter = XfnMakeSpatialFilter(type, size);
                const double yardstick = MedianTime(kRuns, plain);
                const double time = MedianTime(7, [&] {
                    XfnFilterReals(filter, origin, kWide, kSide, kSide, out.data(), kSide, scratch);
                });
                const std::string name = std::string("filter.") + names[type] + "." +
                                         std::to_string(size) + (gaps > 0.0 ? ".gaps" : "");
                rows.Add(name.c_str(), time, yardstick, 0.0);
            }
        }
    }

    // the band: tiles of warm pixels, apron and conversion included
    XDMBandMemory inner;
    std::vector<std::uint16_t> pixels(static_cast<std::size_t>(kSide) * kSide);
    for (std::uint16_t& v : pixels)
        v = static_cast<std::uint16_t>(random() % 4096);
    if (!inner.Create(kXUInt16, kSide, kSide, pixels.data())) return 1;
    XDMBandSpatialFilter band;
    tagXArr2 block;
    tagXArr2* into = &block;
    const auto read = [&](XDMBand& from) {
        if (!from.ReadSubset(into, 0, 0, kSide - 1, 0, kSide - 1, nullptr)) std::abort();
    };
    read(inner);
    for (const int type : {kXFilterMean, kXFilterMedian, kXFilterGaussian}) {
        const double yardstick = MedianTime(kRuns, [&] { read(inner); });
        const double time = MedianTime(7, [&] {
            if (!band.Create(&inner, type, 3)) std::abort(); // drops its tiles
            read(band);
        });
        rows.Add((std::string("filter.band.") + names[type] + ".3").c_str(), time, yardstick, 0.0);
    }
    return 0;
}
