// How fast statistics, regions and joint counts are, against plain loops and array arithmetic.
//
// usage: bench_statistics [MULTIBAND_UINT16.tif]
// Without an argument, or without the file, eight bands in memory of 8000 x 8000 pixels take its
// place. The array arithmetic runs in a child process, /usr/bin/python3 with numpy, on the same
// samples; its rows are absent where that does not run. Rows are medians.

#include "bench/BenchScene.h"
#include "bench/BenchStatisticsKernels.h"
#include "foundation/base/XObArray.h"
#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XJointCounts.h"
#include "foundation/raster/XJointWalk.h"
#include "foundation/raster/XROI.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XRegionMask.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <optional>
#include <random>

namespace {

constexpr int kTimes = 9;
constexpr int kBands = 8;
// a quadrilateral of four megapixels, in pixels; no edge runs through the centre of a pixel, where
// the rounding of world coordinates would decide
constexpr double kRegion[4][2] = {
    {2600.31, 1900.17}, {4700.29, 2500.13}, {4300.37, 4500.19}, {2300.23, 3900.11}};
constexpr int kLeft = 2300, kTop = 1900, kBoxWidth = 2401, kBoxHeight = 2601;

/// A wobbling ground with the noise of a sensor.
XDMBandMemory* MakeBand(int size, int seed)
{
    auto band = std::make_unique<XDMBandMemory>();
    if (!band->Create(kXUInt16, size, size)) std::abort();
    auto* pixels = static_cast<std::uint16_t*>(band->GetData());
    std::mt19937 random(static_cast<unsigned>(seed));
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            *pixels++ = static_cast<std::uint16_t>(
                1500 + 700 * std::sin(x * 0.003 + seed) * std::cos(y * 0.002) + random() % 256);
    band->Changed();
    return band.release();
}

void MakeScene(XRSFile& file, const char* path)
{
    XString error;
    if (path && XRSFileIO::Open(path, &file, error) && file.GetNumOfBands() >= kBands) return;
    if (path) std::fprintf(stderr, "%s\nBands in memory take its place.\n", error.GetString());
    file.Clear();
    for (int i = 0; i < kBands; ++i)
        file.AddBand(MakeBand(8000, i));
}

/// The tiles of a band at full resolution, decoded.
std::vector<std::shared_ptr<const XTile>> WarmTiles(const XDMBand& band)
{
    int width = 0, height = 0;
    band.GetTileSize(0, width, height);
    std::vector<std::shared_ptr<const XTile>> tiles;
    XString message;
    for (int ty = 0; ty * height < band.GetYSize(); ++ty)
        for (int tx = 0; tx * width < band.GetXSize(); ++tx) {
            tiles.push_back(band.GetTile(0, tx, ty, nullptr, message));
            if (!tiles.back()) std::abort();
        }
    return tiles;
}

void BenchBand(XRows& rows, XDMBand& band)
{
    const auto tiles = WarmTiles(band);
    std::vector<double> plain, exact;
    long long table[256] = {};
    for (int i = 0; i < kTimes; ++i) {
        plain.push_back(TimeMs([&] {
            for (const auto& tile : tiles)
                XfnPlainTablePass(static_cast<const std::uint16_t*>(tile->GetData()),
                                  tile->GetByteSize() / 2, table);
        }));
        exact.push_back(TimeMs([&] {
            XString message;
            if (!band.CalcExactStatistics(nullptr, nullptr, message)) std::abort();
        }));
    }
    if (table[0] < 0) std::abort();
    rows.Add("statistics.uint16.8000.exact", MedianOf(exact), MedianOf(plain), 1.5);
}

/// What the child process measured and computed.
struct tagPeer
{
    double arithmeticMs = 0.0;
    double jointMs = 0.0;
    std::vector<double> covariance;
};

const char* const kPeerProgram = R"(
import sys, time
import numpy as np
d, w, h, nb, n = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4]), int(sys.argv[5])
a = np.fromfile(d + '/box', np.uint16).reshape(nb, h, w)
mask = np.fromfile(d + '/mask', np.uint8).reshape(h, w).astype(bool)
def arithmetic():
    x = a[:, mask].astype(np.float64)
    m = x.mean(1)
    x -= m[:, None]
    return x @ x.T / (x.shape[1] - 1)
p, q = (np.fromfile(d + '/' + k, np.uint16).reshape(n, n) for k in ('x', 'y'))
rng = [[int(v.min()), int(v.max()) + 1] for v in (p, q)]
def joint():
    z = [((v - r[0]).astype(np.uint32) * 256 // (r[1] - r[0])) for v, r in ((p, rng[0]), (q, rng[1]))]
    return np.bincount((z[0] * 256 + z[1]).ravel(), minlength=65536)
def median(f, k):
    f()
    t = []
    for _ in range(k):
        b = time.perf_counter(); f(); t.append((time.perf_counter() - b) * 1e3)
    return sorted(t)[k // 2]
print(median(arithmetic, 5))
print(median(joint, 3))
for v in arithmetic().ravel(): print(repr(float(v)))
)";

bool WriteAll(const QString& path, const void* data, std::size_t bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(static_cast<const char*>(data), static_cast<qint64>(bytes)) ==
               static_cast<qint64>(bytes);
}

std::optional<tagPeer> RunPeer(const QString& folder, int jointSize)
{
    QProcess process;
    process.start("/usr/bin/python3", {"-c", kPeerProgram, folder, QString::number(kBoxWidth),
                                       QString::number(kBoxHeight), QString::number(kBands),
                                       QString::number(jointSize)});
    if (!process.waitForFinished(600000) || process.exitCode() != 0) {
        std::fprintf(stderr, "%s", process.readAllStandardError().constData());
        return std::nullopt;
    }
    std::vector<double> numbers;
    for (const QByteArray& line : process.readAllStandardOutput().split('\n'))
        if (!line.isEmpty()) numbers.push_back(line.toDouble());
    if (numbers.size() != 2 + kBands * kBands) return std::nullopt;
    return tagPeer{numbers[0], numbers[1], {numbers.begin() + 2, numbers.end()}};
}

struct tagRegionRun
{
    double allTime = 0.0;     // as XROI counts: with extremes and histograms
    double momentsTime = 0.0; // means and covariances alone, as the array arithmetic
    std::vector<double> covariance;
};

double TimeAgain(const std::function<void()>& work)
{
    std::vector<double> times;
    work(); // the first one decodes
    for (int i = 0; i < kTimes; ++i)
        times.push_back(TimeMs(work));
    return MedianOf(times);
}

tagRegionRun RunRegion(XRSFile& file)
{
    XROI region;
    XRegionMask mask;
    double xs[4], ys[4];
    for (int i = 0; i < 4; ++i) {
        double x = xs[i] = kRegion[i][0], y = ys[i] = kRegion[i][1];
        file.GetBandAt(0)->ConvPixelToWorldCoord(x, y);
        region.Add(x, y);
    }
    XObArray list;
    std::vector<XDMBand*> bands;
    for (int i = 0; i < kBands; ++i) {
        bands.push_back(file.GetBandAt(i));
        list.Add(bands.back());
    }
    tagRegionRun run;
    run.allTime = TimeAgain([&] {
        if (!region.CalcStatistics(&list, nullptr)) std::abort();
    });
    run.momentsTime = TimeAgain([&] {
        XBlockRun blocks;
        XJointWalk walk(bands);
        tagXRegionStatistics numbers;
        XString message;
        mask.SetPolygon(xs, ys, 4, bands[0]->GetXSize(), bands[0]->GetYSize());
        walk.SetMask(&mask);
        if (!walk.Run(blocks, numbers, message)) std::abort();
    });
    for (int i = 0; i < kBands; ++i)
        for (int j = 0; j < kBands; ++j)
            run.covariance.push_back(region.GetCovariance(i, j));
    return run;
}

bool WriteRegion(XRSFile& file, const QString& folder)
{
    std::vector<std::uint16_t> box;
    for (int i = 0; i < kBands; ++i) {
        tagXArr2* block = nullptr;
        if (!file.GetBandAt(i)->ReadSubset(block, 0, kLeft, kLeft + kBoxWidth - 1, kTop,
                                           kTop + kBoxHeight - 1, nullptr))
            return false;
        const auto* samples = reinterpret_cast<const std::uint16_t*>(block->base);
        box.insert(box.end(), samples, samples + std::size_t{kBoxWidth} * kBoxHeight);
        delete block;
    }
    double xs[4], ys[4];
    for (int i = 0; i < 4; ++i) {
        xs[i] = kRegion[i][0] - kLeft;
        ys[i] = kRegion[i][1] - kTop;
    }
    XRegionMask mask;
    mask.SetPolygon(xs, ys, 4, kBoxWidth, kBoxHeight);
    std::vector<std::uint8_t> bytes(std::size_t{kBoxWidth} * kBoxHeight);
    for (const tagXRowSpan& span : mask.GetSpans())
        for (int x = span.x0; x < span.x1; ++x)
            bytes[static_cast<std::size_t>(span.y) * kBoxWidth + static_cast<std::size_t>(x)] = 1;
    return WriteAll(folder + "/box", box.data(), box.size() * 2) &&
           WriteAll(folder + "/mask", bytes.data(), bytes.size());
}

double RunJoint(const std::vector<std::uint16_t>& x, const std::vector<std::uint16_t>& y)
{
    const auto axisOf = [](const std::vector<std::uint16_t>& samples) {
        const auto [low, high] = std::minmax_element(samples.begin(), samples.end());
        return tagXJointAxis{kXUInt16, static_cast<double>(*low), 256.0 / (*high + 1.0 - *low)};
    };
    const tagXJointAxis axisX = axisOf(x), axisY = axisOf(y);
    std::vector<double> times;
    for (int i = 0; i < kTimes; ++i) {
        times.push_back(TimeMs([&] {
            XJointCounts counts(axisX, axisY);
            if (!counts.Add(x.data(), y.data(), x.size())) std::abort();
        }));
    }
    return MedianOf(times);
}

std::vector<std::uint16_t> ReadWhole(XDMBand& band, int size)
{
    tagXArr2* block = nullptr;
    if (!band.ReadSubset(block, 0, 0, size - 1, 0, size - 1, nullptr)) std::abort();
    const auto* samples = reinterpret_cast<const std::uint16_t*>(block->base);
    std::vector<std::uint16_t> all(samples, samples + std::size_t(size) * std::size_t(size));
    delete block;
    return all;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    GDALAllRegister();
    XRSFile file;
    MakeScene(file, argc > 1 ? argv[1] : nullptr);
    XRows rows;
    BenchBand(rows, *file.GetBandAt(0));

    const int size = std::min(file.GetBandAt(0)->GetXSize(), file.GetBandAt(0)->GetYSize());
    const auto x = ReadWhole(*file.GetBandAt(0), size);
    const auto y = ReadWhole(*file.GetBandAt(1), size);
    const tagRegionRun region = RunRegion(file);
    const double joint = RunJoint(x, y);
    QTemporaryDir folder;
    if (!WriteRegion(file, folder.path()) ||
        !WriteAll(folder.filePath("x"), x.data(), x.size() * 2) ||
        !WriteAll(folder.filePath("y"), y.data(), y.size() * 2))
        return 1;
    const auto peer = RunPeer(folder.path(), size);
    if (!peer) return 0;
    rows.Add("region.uint16.8bands.mean_covariance", region.momentsTime, peer->arithmeticMs,
             1.0 / 8.0);
    rows.Add("region.uint16.8bands.all_statistics", region.allTime, peer->arithmeticMs, 0.0);
    rows.Add("joint.uint16.256x256", joint, peer->jointMs, 1.0 / 5.0);
    for (std::size_t i = 0; i < region.covariance.size(); ++i) {
        const double theirs = peer->covariance[i];
        if (!(std::fabs(region.covariance[i] - theirs) <= 1e-9 * std::fabs(theirs) + 1e-9)) {
            std::fprintf(stderr, "covariance %zu: %.17g, array arithmetic %.17g\n", i,
                         region.covariance[i], theirs);
            return 1;
        }
    }
    return 0;
}
