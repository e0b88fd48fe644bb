#include "foundation/raster/XROI.h"
#include "foundation/base/XObArray.h"
#include "foundation/platform/XThread.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSSIG.h"
#include "tests/support/XArchiveBytes.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <tuple>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

/// Two-pass numbers in long doubles.
struct tagReference
{
    long long count = 0;
    std::vector<long double> means;
    std::vector<std::vector<long double>> covariance;

    explicit tagReference(const std::vector<std::vector<double>>& bands)
        : count(static_cast<long long>(bands[0].size())),
          means(bands.size()),
          covariance(bands.size(), std::vector<long double>(bands.size()))
    {
        for (std::size_t i = 0; i < bands.size(); ++i)
            means[i] = std::accumulate(bands[i].begin(), bands[i].end(), 0.0L) / count;
        for (std::size_t i = 0; i < bands.size(); ++i)
            for (std::size_t j = 0; j < bands.size(); ++j)
                for (std::size_t k = 0; k < bands[0].size(); ++k)
                    covariance[i][j] += (bands[i][k] - means[i]) * (bands[j][k] - means[j]) /
                                        (count > 1 ? count - 1 : 1);
    }
};

/// A rectangle of pixels [x0, x1) x [y0, y1) of a raster without georeference.
XROI MakeBox(double x0, double y0, double x1, double y1)
{
    XROI region;
    for (const auto& [x, y] : {std::pair{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}})
        region.Add(x - 0.5, 0.5 - y);
    return region;
}

using Bands = std::vector<std::unique_ptr<XDMBandMemory>>;

int Calc(XROI& region, const Bands& bands, XString* message = nullptr)
{
    XObArray list;
    for (const auto& band : bands)
        list.Add(band.get());
    return region.CalcStatistics(&list, nullptr, message);
}

double Sample(int band, int x, int y)
{
    return 20 + band * 3 + (x * 7 + y * 13 + (x * y) % 5 * (band + 1)) % 90;
}

void ExpectNear(double value, long double wanted, const char* what)
{
    EXPECT_NEAR(value, static_cast<double>(wanted), 1e-11 * std::fabs(static_cast<double>(wanted)))
        << what;
}

} // namespace

TEST(XROI, EveryTypeAgreesWithLongDoubles)
{
    // three bands of each type, and a mixed set, over tiles of 256 and blocks that end within rows
    const std::vector<std::vector<int>> kSets = {{1, 1, 1}, {2, 2, 2}, {3, 3, 3},
                                                 {4, 4, 4}, {5, 5, 5}, {6, 6, 6},
                                                 {7, 7, 7}, {8, 8, 8}, {8, 1, 4, 7, 2}};
    for (const auto& types : kSets) {
        SCOPED_TRACE(types[0]);
        Bands bands;
        std::vector<std::vector<double>> samples(types.size());
        for (std::size_t b = 0; b < types.size(); ++b) {
            bands.push_back(XfnMakeBand(types[b], 300, 290, [&](int x, int y) {
                return Sample(static_cast<int>(b), x, y);
            }));
            for (int y = 7; y < 281; ++y)
                for (int x = 5; x < 298; ++x)
                    samples[b].push_back(Sample(static_cast<int>(b), x, y));
        }
        const tagReference wanted(samples);
        XROI region = MakeBox(5, 7, 298, 281);
        XString message;
        ASSERT_TRUE(Calc(region, bands, &message)) << message.GetString();
        EXPECT_EQ(region.GetNumPoints(), wanted.count);
        for (int i = 0; i < region.GetNumBands(); ++i) {
            const auto [low, high] = std::minmax_element(samples[i].begin(), samples[i].end());
            EXPECT_EQ(region.GetMin(i), *low);
            EXPECT_EQ(region.GetMax(i), *high);
            ExpectNear(region.GetMean(i), wanted.means[i], "mean");
            ExpectNear(region.GetStd(i), std::sqrt(wanted.covariance[i][i]), "deviation");
            for (int j = 0; j < region.GetNumBands(); ++j) {
                ExpectNear(region.GetCovariance(i, j), wanted.covariance[i][j], "covariance");
                ExpectNear(region.GetCorrelation(i, j),
                           wanted.covariance[i][j] / std::sqrt(wanted.covariance[i][i]) /
                               std::sqrt(wanted.covariance[j][j]),
                           "correlation");
            }
            // bytes count by value, the others over the limits of the whole band
            std::vector<long long> bins(256);
            for (const double v : samples[i]) {
                const double min = bands[i]->GetBandMin(), max = bands[i]->GetBandMax();
                ++bins[static_cast<std::size_t>(
                    types[i] == kXUInt8 ? v : (v - min) * 255.0 / (max - min))];
            }
            for (int bin = 0; bin < 256; ++bin)
                ASSERT_EQ(region.GetHistogram(i, bin), bins[bin]) << bin;
        }
        EXPECT_EQ(region.GetMin(region.GetNumBands()), kXNotSet);
        EXPECT_EQ(region.GetHistogram(0, 256), 0);
    }
}

TEST(XROI, LeavesOutWhatIsNoData)
{
    Bands bands;
    bands.push_back(XfnMakeBand(kXFloat, {{1, kNaN, 3, -9, 5, kInf, 7, 8}}));
    bands.push_back(XfnMakeBand(kXInt16, {{2, 2, 0, 4, 99, 5, 1, 3}}));
    bands[0]->SetNullValue(-9);
    XROI region = MakeBox(0, 0, 8, 1);
    region.SetNullValue(99);
    ASSERT_TRUE(Calc(region, bands));
    EXPECT_EQ(region.GetNumPoints(), 8);
    EXPECT_DOUBLE_EQ(region.GetMean(0), 24.0 / 5);          // 1 3 5 7 8
    EXPECT_DOUBLE_EQ(region.GetMean(1), 17.0 / 7);          // all but 99
    const tagReference joint({{1, 3, 7, 8}, {2, 0, 1, 3}}); // a value in both
    EXPECT_EQ(region.GetStatistics()->joint.count, 4);
    ExpectNear(region.GetCovariance(0, 1), joint.covariance[0][1], "covariance");
    ExpectNear(region.GetCovariance(1, 1), joint.covariance[1][1], "variance");

    bands[1] = XfnMakeBand(kXInt16, 8, 1, [](int, int) { return 99; });
    region.DropStatistics();
    ASSERT_TRUE(Calc(region, bands)); // a band without values is no failure
    EXPECT_EQ(region.GetMean(1), kXNotSet);
    EXPECT_EQ(region.GetCovariance(0, 0), 0.0);
}

TEST(XROI, KeepsItsDigitsFarFromZero)
{
    Bands bands;
    for (int b = 0; b < 2; ++b)
        bands.push_back(XfnMakeBand(kXDouble, 600, 40,
                                    [b](int x, int y) { return 1e9 + Sample(b, x, y) / 8.0; }));
    std::vector<std::vector<double>> samples(2);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 600; ++x)
            for (int b = 0; b < 2; ++b)
                samples[b].push_back(Sample(b, x, y) / 8.0);
    const tagReference wanted(samples);
    XROI region = MakeBox(0, 0, 600, 40);
    ASSERT_TRUE(Calc(region, bands));
    // a double has steps of 1e-7 at 1e9, which is how well the means of blocks are known; a plain
    // sum of squares would be off by hundreds
    EXPECT_NEAR(region.GetCovariance(0, 1), static_cast<double>(wanted.covariance[0][1]), 1e-6);
    EXPECT_NEAR(region.GetStd(0), static_cast<double>(std::sqrt(wanted.covariance[0][0])), 1e-6);
}

TEST(XROI, EveryBandCountsOnItsOwnGrid)
{
    // the second band has pixels of twice the size over the same ground, the third other tiles
    class XOddTiles : public XDMBand
    {
    public:
        XOddTiles() { SetLevels(kXInt32, {{8, 6, 5, 2, 0}}); }
        std::shared_ptr<const XTile> ReadTile(int, int tx, int ty, const std::atomic<int>*,
                                              XString&) const override
        {
            const int width = std::min(5, 8 - 5 * tx);
            auto tile = std::make_shared<XTile>(kXInt32, width, 2);
            auto* out = reinterpret_cast<std::int32_t*>(tile->GetFillData());
            for (int i = 0; i < 2 * width; ++i)
                out[i] = -(tx * 5 + i % width) * (ty * 2 + i / width);
            return tile;
        }
    } odd;
    Bands bands;
    bands.push_back(XfnMakeBand(kXUInt16, 8, 6, [](int x, int y) { return x + 10 * y; }));
    bands.push_back(XfnMakeBand(kXUInt8, 4, 3, [](int x, int y) { return x + 10 * y; }));
    bands[1]->SetPixelSize(2, 2);
    bands[1]->SetUpperLeft(0.5, -0.5);
    XROI region = MakeBox(2, 2, 6, 6);
    XObArray list;
    for (const auto& band : bands)
        list.Add(band.get());
    list.Add(&odd);
    ASSERT_TRUE(region.CalcStatistics(&list, nullptr));
    EXPECT_EQ(region.GetStatistics()->bands[0].moments.count, 16);
    EXPECT_EQ(region.GetStatistics()->bands[1].moments.count, 4);
    EXPECT_EQ(region.GetMin(1), 11);
    EXPECT_EQ(region.GetMax(1), 22);
    std::vector<std::vector<double>> samples(3);
    for (int y = 2; y < 6; ++y)
        for (int x = 2; x < 6; ++x) {
            samples[0].push_back(x + 10 * y);
            samples[1].push_back(x / 2 + 10 * (y / 2));
            samples[2].push_back(-x * y);
        }
    const tagReference wanted(samples);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            ExpectNear(region.GetCovariance(i, j), wanted.covariance[i][j], "covariance");
}

TEST(XROI, ShapesAndFailures)
{
    Bands bands;
    bands.push_back(XfnMakeBand(kXUInt8, 9, 9, [](int x, int y) { return 10 * y + x; }));
    XObArray list;
    list.Add(bands[0].get());
    XROI line;
    ASSERT_TRUE(line.SetType(kXROIPolyline));
    EXPECT_FALSE(line.SetType(4));
    line.Add(0, 0);
    line.Add(4, -4, 12);
    double x = 0, y = 0, z = 0;
    EXPECT_TRUE(line.GetAt(1, x, y, z));
    EXPECT_EQ(z, 12.0);
    EXPECT_FALSE(line.GetAt(2, x, y, z));
    ASSERT_TRUE(line.CalcStatistics(&list, nullptr));
    EXPECT_EQ(line.GetNumPoints(), 5);
    EXPECT_DOUBLE_EQ(line.GetMean(0), 22);
    XROI tiny = MakeBox(4.6, 4.6, 4.8, 4.8); // no centre: the pixel that it lies on
    ASSERT_TRUE(tiny.CalcStatistics(&list, nullptr));
    EXPECT_EQ(tiny.GetNumPoints(), 1);
    EXPECT_EQ(tiny.GetMean(0), 44);
    EXPECT_EQ(tiny.GetStd(0), 0);

    const auto complex = XfnMakeBand(kXFloatComplex, 9, 9, [](int, int) { return 1; });
    XROI notFinite = MakeBox(0, 0, 3, 3);
    notFinite.Add(kNaN, 0);
    XObArray none, wrong;
    wrong.Add(complex.get());
    struct
    {
        const char* name;
        XROI region;
        XObArray* bands;
    } rows[] = {
        {"outside", MakeBox(20, 0, 30, 4), &list},        {"no vertex", XROI(), &list},
        {"a vertex that is no number", notFinite, &list}, {"no band", MakeBox(0, 0, 3, 3), &none},
        {"null", MakeBox(0, 0, 3, 3), nullptr},           {"complex", MakeBox(0, 0, 3, 3), &wrong}};
    for (auto& row : rows) {
        XString message;
        EXPECT_FALSE(row.region.CalcStatistics(row.bands, nullptr, &message)) << row.name;
        EXPECT_FALSE(message.IsEmpty()) << row.name;
        EXPECT_FALSE(row.region.IsCalculated()) << row.name;
    }
    XThread stopped;
    stopped.Terminate();
    XString message("old");
    const auto before = line.GetStatistics();
    EXPECT_FALSE(line.CalcStatistics(&list, &stopped, &message));
    EXPECT_TRUE(message.IsEmpty());
    EXPECT_EQ(line.GetStatistics(), before);
    line.Add(0, -8);
    EXPECT_FALSE(line.IsCalculated());
}

TEST(XRSSIG, JoinsTheRegionsPixelByPixel)
{
    Bands bands;
    for (int b = 0; b < 3; ++b)
        bands.push_back(XfnMakeBand(
            kXInt16, 120, 90, [b](int x, int y) { return Sample(b, x, y) + (x > 60) * 500; }));
    XROI left = MakeBox(3, 5, 50, 60), right = MakeBox(70, 0, 120, 90),
         both = MakeBox(3, 5, 50, 60);
    XROI raw = MakeBox(0, 0, 4, 4); // never calculated: takes no part
    XRSSIG signature;
    EXPECT_EQ(signature.GetNumBands(), 0);
    EXPECT_EQ(signature.GetMean(0), kXNotSet);
    for (XROI* region : {&raw, &left, &right})
        signature.Add(region);
    EXPECT_EQ(signature.Add(&left), 1);
    EXPECT_EQ(signature.GetSize(), 3);
    ASSERT_TRUE(Calc(left, bands) && Calc(right, bands));
    std::vector<std::vector<double>> samples(3);
    for (int b = 0; b < 3; ++b)
        for (int y = 0; y < 90; ++y)
            for (int x = 0; x < 120; ++x)
                if ((x >= 3 && x < 50 && y >= 5 && y < 60) || x >= 70)
                    samples[b].push_back(Sample(b, x, y) + (x > 60) * 500);
    const tagReference wanted(samples);
    EXPECT_EQ(signature.GetNumPoints(), wanted.count);
    for (int i = 0; i < 3; ++i) {
        ExpectNear(signature.GetMean(i), wanted.means[i], "mean");
        ExpectNear(signature.GetStd(i), std::sqrt(wanted.covariance[i][i]), "deviation");
        EXPECT_EQ(signature.GetMin(i), std::min(left.GetMin(i), right.GetMin(i)));
        for (int bin = 0; bin < 256; ++bin)
            ASSERT_EQ(signature.GetHistogram(i, bin),
                      left.GetHistogram(i, bin) + right.GetHistogram(i, bin));
        for (int j = 0; j < 3; ++j)
            ExpectNear(signature.GetCovariance(i, j), wanted.covariance[i][j], "covariance");
    }
    EXPECT_DOUBLE_EQ(signature.GetCorrelation(1, 1), 1.0);
    signature.Remove(&right); // the joined numbers follow
    EXPECT_EQ(signature.GetMean(0), left.GetMean(0));
    ASSERT_TRUE(Calc(both, bands));
    signature.Add(&both);
    EXPECT_EQ(signature.GetNumPoints(), 2 * left.GetNumPoints());
}

TEST(XRSSIG, ArchivesComeBackAndBrokenOnesAreRefused)
{
    Bands bands;
    bands.push_back(XfnMakeBand(kXFloat, {{1, 2}, {4, 9}}));
    XROI region = MakeBox(0, 0, 2, 2);
    region.SetName("field");
    region.SetComment("words");
    region.SetNullValue(-3);
    region.SetColor(0xFF102030u);
    ASSERT_TRUE(Calc(region, bands));
    XRSSIG signature;
    signature.SetComment("of one region");
    signature.Add(&region);
    const XSampleBytes bytes = StoreObject(signature);
    XRSSIG read;
    ASSERT_TRUE(LoadObject(read, bytes, bytes.size()));
    ASSERT_EQ(read.GetSize(), 1);
    EXPECT_EQ(StoreObject(*read.GetAt(0)), StoreObject(region));
    const auto fields = [](const XROI& of) {
        return std::tuple(of.GetName(), of.GetComment(), of.GetColor(), of.GetNullValue(),
                          of.GetType(), of.GetSize());
    };
    EXPECT_EQ(fields(*read.GetAt(0)), fields(region));
    EXPECT_EQ(read.GetComment(), signature.GetComment());
    EXPECT_EQ(read.GetCovariance(0, 0), signature.GetCovariance(0, 0));
    EXPECT_EQ(read.GetHistogram(0, 255), 1);
    XROI bare;
    XRSSIG least;
    least.Add(&bare);
    const XSampleBytes few = StoreObject(least);
    ASSERT_TRUE(LoadObject(read, few, few.size()));
    EXPECT_EQ(read.GetSize(), 1);
    // cut anywhere, or with every byte raised to the most a count can be: refused or harmless
    for (std::size_t at = 0; at < bytes.size(); at += at < 200 ? 1 : 37) {
        XRSSIG damaged;
        EXPECT_FALSE(LoadObject(damaged, bytes, at)) << at;
        EXPECT_EQ(damaged.GetSize(), 0);
        XSampleBytes flipped = bytes;
        flipped[at] = 0xFF;
        if (LoadObject(damaged, flipped, flipped.size()))
            EXPECT_TRUE(std::isfinite(damaged.GetCovariance(0, 0)));
        else
            EXPECT_EQ(damaged.GetSize(), 0);
    }
}

TEST(XRSFile, RegionsSignaturesAndMatrices)
{
    XRSFile file;
    for (int b = 0; b < 2; ++b)
        file.AddBand(
            XfnMakeBand(kXUInt16, 300, 5, [b](int x, int y) { return Sample(b, x, y); }).release());
    file.AddBand(XfnMakeBand(kXFloatComplex, 300, 5, [](int, int) { return 1; }).release());
    auto* region = new XROI;
    auto* signature = new XRSSIG;
    EXPECT_TRUE(file.AddROISet(region));
    EXPECT_FALSE(file.AddROISet(region));
    EXPECT_TRUE(file.AddSIGSet(signature));
    signature->Add(region);
    file.SetRadarScene(std::make_shared<XROI>());
    XString message;
    for (const int step : {1, 3}) {
        ASSERT_TRUE(file.CalcMatrices(step, nullptr, message)) << message.GetString();
        std::vector<std::vector<double>> samples(2);
        for (int b = 0; b < 2; ++b)
            for (int y = 0; y < 5; y += step)
                for (int x = 0; x < 300; x += step)
                    samples[b].push_back(Sample(b, x, y));
        const tagReference wanted(samples);
        for (int i = 0; i < 2; ++i)
            for (int j = 0; j < 2; ++j)
                ExpectNear(file.GetCovarianceMatrix()[3 * i + j], wanted.covariance[i][j], "pair");
        EXPECT_EQ(file.GetCorrelationMatrix()[4], 1.0);
        EXPECT_EQ(file.GetCorrelationMatrix()[8], kXNotSet); // complex: takes no part
        EXPECT_TRUE(file.HasValidStatistics());
    }
    XThread stopped;
    stopped.Terminate();
    EXPECT_FALSE(file.CalcMatrices(1, &stopped, message));
    EXPECT_TRUE(message.IsEmpty());
    EXPECT_TRUE(file.HasValidStatistics());

    XRSFile other;
    other.Swap(file);
    EXPECT_EQ(file.GetNumOfROI() + file.GetNumOfSIG(), 0);
    EXPECT_EQ(file.GetRadarScene(), nullptr);
    EXPECT_EQ(other.GetROISetAt(0), region);
    other.RemoveAllROISet();
    EXPECT_EQ(other.GetSIGSetAt(0)->GetSize(), 0); // no pointer to what is gone
    EXPECT_EQ(other.GetROISetAt(0), nullptr);
    other.RemoveAllSIGSet();
    EXPECT_EQ(other.GetNumOfSIG(), 0);
}
