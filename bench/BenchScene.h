#pragma once

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDefaultDisplay.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/surface/XBackBuffer.h"

#include <gdal_priv.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

// What the benchmarks of drawing share: clock, rows, the scene in a view, the table loop's tables.

inline constexpr int kWidth = 1920;
inline constexpr int kHeight = 1080;
inline constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;
inline constexpr int kRuns = 31;
inline constexpr int kSceneSize = 4096; // of scenes that a program writes itself

inline double TimeMs(const std::function<void()>& work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

inline double MedianOf(std::vector<double> times)
{
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    return times[times.size() / 2];
}

/// Prints the rows of a JSON list.
class XRows
{
public:
    XRows() { std::printf("[\n"); }
    ~XRows() { std::printf("\n]\n"); }

    /// @param yardstick  0 when there is none
    /// @param limit      of the ratio; 0 when there is none
    void Add(const char* name, double value, double yardstick, double limit,
             const char* unit = "ms")
    {
        std::printf("%s  {\"name\": \"%s\", \"value\": %.4f, \"unit\": \"%s\", ", m_separator, name,
                    value, unit);
        if (yardstick > 0.0)
            std::printf("\"yardstick\": %.4f, \"ratio\": %.3f, \"limit\": ", yardstick,
                        value / yardstick);
        else
            std::printf("\"yardstick\": null, \"ratio\": null, \"limit\": ");
        if (limit > 0.0)
            std::printf("%.3g}", limit);
        else
            std::printf("null}");
        std::fflush(stdout);
        m_separator = ",\n";
    }

private:
    const char* m_separator = "";
};

/// The scene to draw and what stands in the middle of it.
struct tagScene
{
    XRSFile file;
    XDMComposite composite;
    XBackBuffer buffer;
    int centreX = 0, centreY = 0; // pixel in the middle of the view

    explicit tagScene(int mode) : composite(mode) {}
};

inline std::unique_ptr<tagScene> OpenScene(const std::string& path, int mode)
{
    auto scene = std::make_unique<tagScene>(mode);
    XString error;
    if (!XRSFileIO::Open(path.c_str(), &scene->file, error)) {
        std::fprintf(stderr, "%s\n", static_cast<const char*>(error));
        return nullptr;
    }
    for (int ch = 0; ch < scene->composite.GetNumberOfChannels(); ++ch)
        scene->composite.SetBand(scene->file.GetBandAt(mode == 0 ? 0 : 2 - ch), ch);
    XfnDefaultStretch(&scene->composite);
    scene->buffer.Resize(nullptr, kWidth, kHeight);
    scene->centreX = scene->file.GetBandAt(0)->GetXSize() / 2;
    scene->centreY = scene->file.GetBandAt(0)->GetYSize() / 2;
    return scene;
}

/// Puts a pixel in the middle of the view.
inline void Centre(tagScene& scene, double perPixel, double column, double row)
{
    const XDMBand* band = scene.file.GetBandAt(0);
    double x = column - 0.5, y = row - 0.5;
    band->ConvPixelToWorldCoord(x, y);
    scene.buffer.SetWorldToCenter(x, y);
    scene.buffer.SetWorldPerPixel(perPixel * band->GetXPixelSize(),
                                  perPixel * band->GetYPixelSize());
}

/// Puts the view `step` pixels beside the middle at so many raster pixels a screen pixel.
inline void Place(tagScene& scene, double perPixel, int step)
{
    Centre(scene, perPixel, scene.centreX + step % 16 * perPixel,
           scene.centreY + step / 16 * perPixel);
}

inline void Draw(tagScene& scene)
{
    double left = 0, top = 0, right = kWidth, bottom = kHeight;
    scene.buffer.ConvPixelToWorldCoord(left, top);
    scene.buffer.ConvPixelToWorldCoord(right, bottom);
    if (!scene.composite.Draw(&scene.buffer, left, bottom, right, top, 1, nullptr, nullptr))
        std::abort();
}

inline void EmptyCaches()
{
    XTileCache::Get().Clear();
    while (GDALFlushCacheBlock()) {
    }
}

struct tagTables
{
    std::uint8_t bytes[3][256];
    std::vector<std::uint8_t> wide = std::vector<std::uint8_t>(65536);
    const std::uint8_t* rows[3];
    const std::uint8_t* wideRows[3];

    tagTables()
    {
        for (int band = 0; band < 3; ++band) {
            for (int v = 0; v < 256; ++v)
                bytes[band][v] =
                    static_cast<std::uint8_t>(std::clamp((v - 20 - band) * 255 / 200, 0, 255));
            rows[band] = bytes[band];
            wideRows[band] = wide.data();
        }
        for (int v = 0; v < 65536; ++v)
            wide[static_cast<std::size_t>(v)] =
                static_cast<std::uint8_t>(std::clamp((v - 1200) * 255 / 3000, 0, 255));
    }
};

/// A field of blobs of many sizes with the noise of a sensor on top: it deflates about two to one.
template <class T>
inline void WriteScene(const std::string& path, GDALDataType type, int bands, double scale)
{
    char** options = nullptr;
    for (const char* option :
         {"TILED=YES", "COMPRESS=DEFLATE", "PREDICTOR=2", "INTERLEAVE=PIXEL"}) {
        const bool isFloat = type == GDT_Float32 && std::string(option) == "PREDICTOR=2";
        options = CSLAddString(options, isFloat ? "PREDICTOR=3" : option);
    }
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    GDALDataset* dataset =
        driver->Create(path.c_str(), kSceneSize, kSceneSize, bands, type, options);
    CSLDestroy(options);
    if (!dataset) std::abort();
    double transform[6] = {300000.0, 1.0, 0.0, 4200000.0, 0.0, -1.0};
    dataset->SetGeoTransform(transform);
    std::mt19937 random(5);
    std::normal_distribution<double> noise(0.0, 9.0);
    std::vector<double> wobble(4096);
    for (double& value : wobble)
        value = noise(random);
    std::vector<T> row(kSceneSize);
    for (int band = 1; band <= bands; ++band) {
        for (int y = 0; y < kSceneSize; ++y) {
            for (int x = 0; x < kSceneSize; ++x) {
                double value = 120.0 + wobble[random() & 4095u];
                for (int cell = 16; cell <= 512; cell *= 2) // the blobs
                    value +=
                        wobble[static_cast<unsigned>((x / cell) * 131 + (y / cell) * 517 + cell) &
                               4095u];
                row[static_cast<std::size_t>(x)] =
                    static_cast<T>(std::clamp(value + 5 * band, 1.0, 254.0) * scale);
            }
            if (dataset->GetRasterBand(band)->RasterIO(GF_Write, 0, y, kSceneSize, 1, row.data(),
                                                       kSceneSize, 1, type, 0, 0))
                std::abort();
        }
    }
    int levels[] = {2, 4, 8, 16};
    if (dataset->BuildOverviews("AVERAGE", 4, levels, 0, nullptr, nullptr, nullptr)) std::abort();
    GDALClose(dataset);
}
