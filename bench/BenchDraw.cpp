// How fast a composite is drawn, against loops and reads that do nothing else.
//
// usage: bench_draw [SCENE.tif | SCENE_DIR]
// A folder holds S1_rgb8.tif, S2_ms16.tif and S3_f32.tif; those that are missing are left out.
// Without an argument the program writes small scenes of its own. Every run moves the view by a
// pixel; rows are medians, and yardstick and drawing take turns.

#include "bench/BenchDrawKernels.h"
#include "bench/BenchScene.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <gdal_priv.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace {

/// Median times of drawing from tiles in memory and of the yardstick, taking turns.
void MeasureWarm(XRows& rows, const char* name, tagScene& scene, double perPixel, double limit,
                 const std::function<void()>& yardstick)
{
    for (int corner : {0, 15, 240, 255}) { // all tiles that any run touches
        Place(scene, perPixel, corner);
        Draw(scene);
    }
    std::vector<double> ours, theirs;
    for (int run = 0; run < kRuns; ++run) {
        theirs.push_back(TimeMs(yardstick));
        Place(scene, perPixel, run);
        ours.push_back(TimeMs([&] { Draw(scene); }));
    }
    rows.Add(name, MedianOf(ours), MedianOf(theirs), limit);
}

/// Reads the middle of a scene by GDAL alone.
template <class T>
class XPlainRead
{
public:
    XPlainRead(const std::string& path, GDALDataType type, int bands)
        : m_dataset(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER)),
          m_type(type),
          m_bands(bands),
          m_pixels(kPixels * static_cast<std::size_t>(bands))
    {
        if (!m_dataset) std::abort();
        Read(0);
        for (int band = 0; band < 3; ++band)
            planes[band] =
                m_pixels.data() + kPixels * static_cast<std::size_t>(std::min(band, bands - 1));
    }
    ~XPlainRead() { GDALClose(m_dataset); }
    XPlainRead(const XPlainRead&) = delete;
    XPlainRead& operator=(const XPlainRead&) = delete;

    void Read(int step)
    {
        int list[3] = {1, 2, 3};
        const int x = m_dataset->GetRasterXSize() / 2 - kWidth / 2 + step % 16;
        const int y = m_dataset->GetRasterYSize() / 2 - kHeight / 2 + step / 16;
        if (m_dataset->RasterIO(GF_Read, x, y, kWidth, kHeight, m_pixels.data(), kWidth, kHeight,
                                m_type, m_bands, list, 0, 0, 0, nullptr))
            std::abort();
    }

    const T* planes[3];

private:
    GDALDataset* m_dataset;
    GDALDataType m_type;
    int m_bands;
    std::vector<T> m_pixels;
};

void BenchRgb8(XRows& rows, const std::string& path)
{
    const auto scene = OpenScene(path, 1);
    if (!scene) return;
    const tagTables tables;
    XPlainRead<std::uint8_t> plain(path, GDT_Byte, 3);
    std::vector<std::uint32_t> out(kPixels);
    const auto loop = [&] { XfnPlainRgb8(plain.planes, tables.rows, kPixels, out.data()); };
    MeasureWarm(rows, "draw.rgb8.1to1.warm", *scene, 1.0, 2.0, loop);
    MeasureWarm(rows, "draw.rgb8.1to1.7.warm", *scene, 1.7, 0.0, loop);
    MeasureWarm(rows, "draw.rgb8.1to3.warm", *scene, 3.0, 0.0, loop);
    MeasureWarm(rows, "draw.rgb8.2to1.warm", *scene, 0.5, 0.0, loop);
    scene->composite.SetAlpha(128);
    MeasureWarm(rows, "draw.rgb8.1to1.alpha.warm", *scene, 1.0, 0.0, loop);
    scene->composite.SetAlpha(255);
    scene->composite.SetTransparentFlag(1);
    scene->composite.SetTransparentApplyAsOne(1);
    for (int ch = 0; ch < 3; ++ch)
        scene->composite.SetTransparentValue(0.0, ch);
    MeasureWarm(rows, "draw.rgb8.1to1.transparent.warm", *scene, 1.0, 0.0, loop);
    scene->composite.SetTransparentFlag(0);
    scene->composite.SetInterpolatePixel(1);
    MeasureWarm(rows, "draw.rgb8.1to1.7.bilinear.warm", *scene, 1.7, 0.0, loop);
    scene->composite.SetInterpolatePixel(0);
    scene->buffer.SetRotationAngle(30.0);
    MeasureWarm(rows, "draw.rgb8.turned.warm", *scene, 1.0, 0.0, loop);
    scene->buffer.SetRotationAngle(0.0);

    std::vector<double> ours, theirs;
    for (int run = 0; run < kRuns; ++run) {
        EmptyCaches();
        theirs.push_back(TimeMs([&] {
            plain.Read(run);
            loop();
        }));
        EmptyCaches();
        Place(*scene, 1.0, run);
        ours.push_back(TimeMs([&] { Draw(*scene); }));
    }
    rows.Add("draw.rgb8.1to1.first", MedianOf(ours), MedianOf(theirs), 1.3);
}

void BenchRgb16(XRows& rows, const std::string& path)
{
    const auto scene = OpenScene(path, 1);
    if (!scene) return;
    const tagTables tables;
    XPlainRead<std::uint16_t> plain(path, GDT_UInt16, 3);
    std::vector<std::uint32_t> out(kPixels);
    const auto loop = [&] { XfnPlainRgb16(plain.planes, tables.wideRows, kPixels, out.data()); };
    MeasureWarm(rows, "draw.rgb16.1to1.warm", *scene, 1.0, 0.0, loop);
    MeasureWarm(rows, "draw.rgb16.1to1.7.warm", *scene, 1.7, 0.0, loop);
}

void BenchFloat(XRows& rows, const std::string& path)
{
    const auto scene = OpenScene(path, 0);
    if (!scene) return;
    const tagTables tables;
    XPlainRead<float> plain(path, GDT_Float32, 1);
    std::vector<std::uint32_t> out(kPixels);
    const float low = static_cast<float>(scene->composite.GetCutMin(0));
    const float scale = 255.0f / (static_cast<float>(scene->composite.GetCutMax(0)) - low);
    const auto loop = [&] {
        XfnPlainGrayFloat(plain.planes[0], low, scale, tables.bytes[0], kPixels, out.data());
    };
    MeasureWarm(rows, "draw.float.1to1.warm", *scene, 1.0, 0.0, loop);
    MeasureWarm(rows, "draw.float.1to1.7.warm", *scene, 1.7, 0.0, loop);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    GDALAllRegister();
    namespace fs = std::filesystem;
    const QTemporaryDir own;
    std::string paths[3];
    if (argc > 1 && fs::is_directory(argv[1])) {
        const char* names[] = {"S1_rgb8.tif", "S2_ms16.tif", "S3_f32.tif"};
        for (int i = 0; i < 3; ++i)
            paths[i] = (fs::path(argv[1]) / names[i]).string();
    } else if (argc > 1) {
        paths[0] = argv[1];
    } else {
        const std::string folder = own.path().toStdString();
        for (int i = 0; i < 3; ++i)
            paths[i] = folder + "/scene" + std::to_string(i) + ".tif";
        WriteScene<std::uint8_t>(paths[0], GDT_Byte, 3, 1.0);
        WriteScene<std::uint16_t>(paths[1], GDT_UInt16, 3, 16.0);
        WriteScene<float>(paths[2], GDT_Float32, 1, 0.01);
    }
    XRows rows;
    if (fs::exists(paths[0])) BenchRgb8(rows, paths[0]);
    if (fs::exists(paths[1])) BenchRgb16(rows, paths[1]);
    if (fs::exists(paths[2])) BenchFloat(rows, paths[2]);
    return 0;
}
