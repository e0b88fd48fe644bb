// How soon a file of 10 GB is seen: opened, its first stretch made, and its coarse picture drawn.
//
// usage: bench_open
// The files are sparse TIFFs in a folder of their own, which goes at the end: tiles of full resolution
// were never written, the overviews from 4096 pixels a side down hold an image. The yardstick is
// what gdalinfo does, in this process (open, the text of GDALInfo), 1.5 times, and a draw of the same
// picture from a file that was opened just before and whose stretch is told. Both draw for the first
// time since their file was opened, with empty caches, on a surface that stands already, as that of
// a window does. Ours and the yardstick take turns.

#include "bench/BenchScene.h"
#include "foundation/raster/XStretchLUT.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <gdal_utils.h>

#include <cmath>

namespace {

constexpr int kSide = 60000;
constexpr int kTiled = 4096; // the widest overview that is written
constexpr int kRunCount = 40;

std::string WriteSparse(const std::string& path, GDALDataType type, int bands)
{
    GDALAllRegister();
    const char* options[] = {"TILED=YES",        "SPARSE_OK=TRUE",   "BIGTIFF=YES",
                             "COMPRESS=DEFLATE", "INTERLEAVE=PIXEL", nullptr};
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    GDALDataset* dataset =
        driver->Create(path.c_str(), kSide, kSide, bands, type, const_cast<char**>(options));
    if (!dataset) std::abort();
    double transform[6] = {300000.0, 1.0, 0.0, 4200000.0, 0.0, -1.0};
    dataset->SetGeoTransform(transform);
    int factors[] = {2, 4, 8, 16, 32, 64, 128, 256};
    if (dataset->BuildOverviews("NONE", 8, factors, 0, nullptr, nullptr, nullptr)) std::abort();
    GDALClose(dataset);
    dataset = GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_UPDATE);
    if (!dataset) std::abort();
    for (int number = 1; number <= bands; ++number) {
        GDALRasterBand* band = dataset->GetRasterBand(number);
        for (int i = 0; i < band->GetOverviewCount(); ++i) {
            GDALRasterBand* overview = band->GetOverview(i);
            const int width = overview->GetXSize();
            if (width > kTiled) continue;
            std::vector<float> row(static_cast<std::size_t>(width));
            for (int y = 0; y < overview->GetYSize(); ++y) {
                for (int x = 0; x < width; ++x)
                    row[static_cast<std::size_t>(x)] = static_cast<float>(
                        128.0 + 90.0 * std::sin(40.0 * x / width) * std::cos(31.0 * y / width) +
                        (x * 7 + y * 13 + number * 5) % 17);
                if (overview->RasterIO(GF_Write, 0, y, width, 1, row.data(), width, 1, GDT_Float32,
                                       0, 0, nullptr))
                    std::abort();
            }
        }
    }
    GDALClose(dataset);
    return path;
}

void Open(tagScene& scene, const std::string& path)
{
    XString error;
    if (!XRSFileIO::Open(path.c_str(), &scene.file, error)) std::abort();
    for (int ch = 0; ch < scene.composite.GetNumberOfChannels(); ++ch)
        scene.composite.SetBand(scene.file.GetBandAt(2 - ch), ch);
}

void DrawWhole(tagScene& scene, int run)
{
    double left = 0, right = 0, bottom = 0, top = 0;
    scene.composite.GetBoundRect(left, right, bottom, top);
    scene.buffer.ZoomFit(left, bottom, right, top);
    scene.buffer.PanPixel(run % 5, 0); // never the same request twice
    Draw(scene);
}

void DescribeAsGdalInfo(const std::string& path)
{
    GDALDataset* dataset = GDALDataset::Open(path.c_str(), GDAL_OF_RASTER);
    if (!dataset) std::abort();
    CPLFree(GDALInfo(GDALDataset::ToHandle(dataset), nullptr));
    GDALClose(dataset);
}

void Measure(XRows& rows, const std::string& name, const std::string& path)
{
    std::vector<double> info, draw, opened, stretched, whole;
    double cuts[3][2] = {};
    const auto takeOurs = [&](int run) {
        tagScene scene(1);
        scene.buffer.Resize(nullptr, kWidth, kHeight);
        EmptyCaches();
        double open = 0.0, stretch = 0.0;
        whole.push_back(TimeMs([&] {
            open = TimeMs([&] { Open(scene, path); });
            stretch = TimeMs([&] { XfnDefaultStretch(&scene.composite); });
            DrawWhole(scene, run);
        }));
        opened.push_back(open);
        stretched.push_back(stretch);
        for (int ch = 0; ch < 3; ++ch) {
            cuts[ch][0] = scene.composite.GetCutMin(ch);
            cuts[ch][1] = scene.composite.GetCutMax(ch);
        }
    };
    const auto takeYardstick = [&](int run) {
        tagScene scene(1);
        scene.buffer.Resize(nullptr, kWidth, kHeight);
        info.push_back(TimeMs([&] { DescribeAsGdalInfo(path); }));
        Open(scene, path);
        for (int ch = 0; ch < 3; ++ch) {
            scene.composite.SetCutType(0, ch);
            scene.composite.SetStretchType(kXStretchLinear, ch);
            scene.composite.SetCutRange(cuts[ch][0], cuts[ch][1], ch);
        }
        EmptyCaches();
        draw.push_back(TimeMs([&] { DrawWhole(scene, run); }));
    };
    for (int run = 0; run < kRunCount; ++run) { // who comes second finds a warmer machine
        if (run % 2 == 0) takeOurs(run);
        takeYardstick(run);
        if (run % 2 == 1) takeOurs(run);
    }
    const double yardstick = 1.5 * MedianOf(info) + MedianOf(draw);
    rows.Add(("open.first." + name).c_str(), MedianOf(whole), yardstick, 1.0);
    rows.Add(("open.only." + name).c_str(), MedianOf(opened), MedianOf(info), 0.0);
    rows.Add(("open.stretch." + name).c_str(), MedianOf(stretched), 0.0, 0.0);
    rows.Add(("open.draw." + name).c_str(), MedianOf(draw), 0.0, 0.0);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    const std::string base = folder.path().toStdString();
    XRows rows;
    Measure(rows, "rgb8", WriteSparse(base + "/rgb8.tif", GDT_Byte, 3));
    Measure(rows, "ms16", WriteSparse(base + "/ms16.tif", GDT_UInt16, 3));
    return 0;
}
