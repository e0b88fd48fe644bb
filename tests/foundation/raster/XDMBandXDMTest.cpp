#include "foundation/raster/XDMBandXDM.h"
#include "foundation/base/XArchive.h"
#include "foundation/base/XObArray.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDMFileSaver.h"
#include "foundation/raster/XDMLevelKernels.h"
#include "foundation/raster/XROI.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/raster/XRSSIG.h"
#include "foundation/raster/XStoredObject.h"
#include "foundation/surface/XBackBuffer.h"
#include "tests/foundation/raster/TestXDMFileSamples.h"
#include "tests/support/XBandPlaces.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <thread>

/// A radar record that knows how to store itself.
class XBeamSample : public XObject
{
    X_DECLARE_CLASS(XBeamSample)
public:
    void Serialize(XArchive& archive) override { archive << 4711; }
};
X_IMPLEMENT_CLASS(XBeamSample, XObject)

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void Save(XRSFile& file, const std::string& path, XDMCompression compression = XDMCompression::Zstd)
{
    XString error;
    ASSERT_TRUE(XDMFileSaver::Save(file, path.c_str(), compression, {}, error))
        << error.GetString();
}

void Load(XRSFile& file, const std::string& path)
{
    XString error;
    ASSERT_TRUE(file.LoadFileXDM(path.c_str(), error, nullptr)) << error.GetString();
    EXPECT_STREQ(file.GetNotes(), "");
}

/// Every sample of a level, by bytes.
std::vector<unsigned char> ReadLevel(const XDMBand& band, int level)
{
    int width, height, tileWidth, tileHeight;
    band.GetLevelSize(level, width, height);
    band.GetTileSize(level, tileWidth, tileHeight);
    const std::size_t size = static_cast<std::size_t>(band.GetDataSize());
    std::vector<unsigned char> all(size * static_cast<std::size_t>(width * height));
    XString message;
    for (int ty = 0; ty * tileHeight < height; ++ty) {
        for (int tx = 0; tx * tileWidth < width; ++tx) {
            const auto tile = band.GetTile(level, tx, ty, nullptr, message);
            if (!tile) {
                ADD_FAILURE() << message.GetString();
                return {};
            }
            for (int y = 0; y < tile->GetHeight(); ++y)
                std::memcpy(all.data() + size * static_cast<std::size_t>(
                                                    (ty * tileHeight + y) * width + tx * tileWidth),
                            tile->GetRow(y), tile->GetRowBytes());
        }
    }
    return all;
}

double SampleAt(const XDMBand& band, int level, int x, int y)
{
    int width, height;
    band.GetLevelSize(level, width, height);
    const auto all = ReadLevel(band, level);
    return XfnReadSample(all.data() +
                             static_cast<std::size_t>((y * width + x) * band.GetDataSize()),
                         band.GetDataType());
}

/// One band, saved and opened again.
struct tagRoundTrip
{
    explicit tagRoundTrip(std::unique_ptr<XDMBandMemory> made) : source(made.get())
    {
        file.AddBand(made.release());
        Save(file, folder / "a.xdm");
        Load(back, folder / "a.xdm");
        band = back.GetBandAt(0);
    }
    XDMFileFolder folder;
    XRSFile file, back;
    XDMBandMemory* source;
    XDMBand* band = nullptr;
};

TEST(XDMBandXDM, EveryTypeComesBackBitByBit)
{
    XDMFileFolder folder;
    for (const XDMCompression compression :
         {XDMCompression::None, XDMCompression::Zstd, XDMCompression::PredictedZstd}) {
        XRSFile file;
        for (int type = kXUInt8; type <= kXDoubleComplex; ++type)
            file.AddBand(XfnMakeBand(type, 301, 270, [&](int x, int y) {
                             return XfnPattern(x, y) % 120 + type;
                         }).release());
        // a band of another size among them
        file.AddBand(XfnMakeBand(kXInt16, 700, 20, XfnPattern).release());
        Save(file, folder / "types.xdm", compression);
        XRSFile back;
        Load(back, folder / "types.xdm");
        ASSERT_EQ(back.GetNumOfBands(), file.GetNumOfBands());
        for (int i = 0; i < file.GetNumOfBands(); ++i) {
            SCOPED_TRACE(i);
            const XDMBand& band = *back.GetBandAt(i);
            EXPECT_EQ(band.GetDataType(), file.GetBandAt(i)->GetDataType());
            EXPECT_EQ(band.GetXSize(), file.GetBandAt(i)->GetXSize());
            EXPECT_EQ(ReadLevel(band, 0), ReadLevel(*file.GetBandAt(i), 0));
            ASSERT_EQ(band.GetNumOfLevels(), file.GetBandAt(i)->GetNumOfLevels());
            EXPECT_FALSE(band.IsVirtualLevel(band.GetLevel()));
        }
        EXPECT_TRUE(XfnIsValidXDMLevelData(&back));
    }
}

TEST(XDMBandXDM, LevelsOfContinuousDataAreMeansOfTheAreaTheyCover)
{
    // a slope: the mean over [a, b) is the value in its middle, so a level pixel has the value of
    // the place where XDMBand says it lies, at odd sides too
    tagRoundTrip trip(
        XfnMakeBand(kXDouble, 1101, 523, [](int x, int y) { return 3.0 * x - 7.0 * y; }));
    for (int level = 1; level <= trip.band->GetLevel(); ++level) {
        SCOPED_TRACE(level);
        int width, height;
        trip.band->GetLevelSize(level, width, height);
        const auto all = ReadLevel(*trip.band, level);
        double worst = 0.0;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const double wanted =
                    3.0 * ((x + 0.5) * 1101 / width - 0.5) - 7.0 * ((y + 0.5) * 523 / height - 0.5);
                double v;
                std::memcpy(&v, all.data() + sizeof v * static_cast<std::size_t>(y * width + x),
                            sizeof v);
                worst = std::max(worst, std::fabs(v - wanted));
            }
        }
        // a finer pixel that is cut in two is taken as flat, which moves it by an eighth of a
        // pixel of that level at most: 1/8 * (3 + 7) * 2^(level - 1), and all levels add up
        EXPECT_LT(worst, 1.25 * (1 << level));
    }
}

TEST(XDMBandXDM, MeansLeaveOutWhatIsNoData)
{
    const struct
    {
        const char* name;
        int type;
        double null;
        double block[4]; // a 2 x 2 block over and over
        double wanted;   // NaN: NaN
    } cases[] = {
        {"all valid", kXUInt8, kXNotSet, {10, 20, 30, 41}, 25},
        {"half to even", kXUInt8, kXNotSet, {10, 11, 10, 11}, 10},
        {"half to even, below zero", kXInt16, kXNotSet, {-11, -12, -11, -12}, -12},
        {"the largest integer",
         kXUInt32,
         kXNotSet,
         {4294967295, 4294967295, 4294967295, 4294967295},
         4294967295},
        {"null does not count", kXUInt8, 0, {0, 20, 0, 40}, 30},
        {"all null stays null", kXInt16, -9999, {-9999, -9999, -9999, -9999}, -9999},
        {"a null the type cannot hold", kXUInt8, -1, {10, 20, 30, 40}, 25},
        {"a mean that would be null", kXInt32, 0, {-5, 5, -5, 5}, 5},
        {"a float null beyond float by a digit",
         kXFloat,
         -3.40282347e38,
         {-3.4028234663852886e38, 2, 4, 6},
         4},
        {"NaN does not count", kXFloat, kXNotSet, {kNaN, 2, 4, 6}, 4},
        {"NaN as null", kXDouble, kNaN, {kNaN, 1, 1, 4}, 2},
        {"nothing but NaN", kXDouble, kXNotSet, {kNaN, kNaN, kNaN, kNaN}, kNaN},
        {"infinity does not count", kXFloat, kXNotSet, {INFINITY, 2, 4, 6}, 4},
        {"a sum beyond all bounds",
         kXDouble,
         kXNotSet,
         {1.6e308, 1.6e308, 1.6e308, 1.6e308},
         1.6e308},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto made =
            XfnMakeBand(c.type, 512, 300, [&](int x, int y) { return c.block[y % 2 * 2 + x % 2]; });
        made->SetNullValue(c.null);
        tagRoundTrip trip(std::move(made));
        const double got = SampleAt(*trip.band, 1, 77, 130);
        if (std::isnan(c.wanted))
            EXPECT_TRUE(std::isnan(got)) << got;
        else
            EXPECT_EQ(got, c.wanted);
    }
    for (const auto& [null, wanted] : {std::pair(kXNotSet, 3.0), {0.0, 6.0}}) {
        auto made = XfnMakeBand(kXFloatComplex, 512, 300, [](int x, int) { return x % 2 ? 6 : 0; });
        made->SetNullValue(null);
        EXPECT_EQ(SampleAt(*tagRoundTrip(std::move(made)).band, 1, 3, 3), wanted) << "complex";
    }
    // three samples over two: the first covers one and a half, their weighted mean is the null value
    const tagXLevelAxis across = XfnMakeLevelAxis(0, 2, 2, 3), down = XfnMakeLevelAxis(0, 1, 1, 1);
    const float finer[] = {-1, 2, -1};
    float out[2];
    XfnAverageLevel(finer, kXFloat, 0.0, across, down, out);
    EXPECT_EQ(out[0], -1.0f) << "the nearest to the middle, not the last";
    EXPECT_EQ(out[1], -1.0f);
}

TEST(XDMBandXDM, LevelsOfClassesKeepValuesThatAreThereAndTheirPlace)
{
    const struct
    {
        const char* name;
        std::function<void(XDMBand&)> make;
    } cases[] = {
        {"class map", [](XDMBand& band) { band.SetBandType(kXBandClassMap); }},
        {"palette", [](XDMBand& band) { band.SetGISTable(std::vector<tagXRSGIS>(3), 1); }},
        {"a host's own", [](XDMBand& band) { band.SetBandType(12); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        // the value tells the column
        auto made = XfnMakeBand(kXUInt16, 2051, 40, [](int x, int) { return 5 * x; });
        c.make(*made);
        tagRoundTrip trip(std::move(made));
        for (int level = 1; level <= trip.band->GetLevel(); ++level) {
            int width, height;
            trip.band->GetLevelSize(level, width, height);
            for (int x = 0; x < width; x += 19) {
                const double column = SampleAt(*trip.band, level, x, 0) / 5;
                ASSERT_EQ(column, std::floor(column));
                const double centre = (x + 0.5) * 2051 / width - 0.5;
                EXPECT_LE(std::fabs(column - centre), 0.51 * (1 << level)) << level << ' ' << x;
            }
        }
    }
}

TEST(XDMBandXDM, PlacesInTheWorldComeBackExactly)
{
    for (const tagPlace& place : kPlaces) {
        SCOPED_TRACE(place.name);
        auto made = XfnMakeBand(kXUInt8, 30, 20, XfnPattern);
        place.place(*made);
        if (made->GetGeometry().IsGeoreferenced()) {
            ASSERT_TRUE(made->GetSR()->importFromEPSG(32652));
            made->GetSR()->SetCoordType(3);
        }
        tagRoundTrip trip(std::move(made));
        const XBandGeometry& a = trip.source->GetGeometry();
        const XBandGeometry& b = trip.band->GetGeometry();
        EXPECT_EQ(a.IsGeoreferenced(), b.IsGeoreferenced());
        EXPECT_EQ(a.IsNorthUp(), b.IsNorthUp());
        EXPECT_EQ(a.GetULX(), b.GetULX());
        EXPECT_EQ(a.GetULY(), b.GetULY());
        EXPECT_EQ(a.GetXPixelSize(), b.GetXPixelSize());
        EXPECT_EQ(a.GetYPixelSize(), b.GetYPixelSize());
        EXPECT_TRUE(a.GetWorldToPixel().GetPolynomial() == b.GetWorldToPixel().GetPolynomial());
        EXPECT_TRUE(a.GetPixelToWorld().GetPolynomial() == b.GetPixelToWorld().GetPolynomial());
        EXPECT_EQ(trip.band->GetSR()->GetCoordType(), trip.source->GetSR()->GetCoordType());
        EXPECT_EQ(trip.band->GetSR()->IsEmpty(), trip.source->GetSR()->IsEmpty());
        if (!trip.source->GetSR()->IsEmpty()) {
            EXPECT_TRUE(trip.band->GetSR()->IsSame(trip.source->GetSR()));
        }
    }
}

TEST(XDMBandXDM, StatisticsKeepTheirNumbersAndTheirMark)
{
    const struct
    {
        const char* name;
        int isEstimated, isHistogramEstimated;
    } cases[] = {{"exact", 0, 0}, {"estimated", 1, 1}, {"exact with an estimated histogram", 0, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto made = XfnMakeBand(kXUInt16, 30, 20, XfnPattern);
        tagXBandStatistics s = *made->GetStatistics();
        s.mean += 0.125; // unlike any that would be computed
        s.isEstimated = c.isEstimated;
        s.isHistogramEstimated = c.isHistogramEstimated;
        s.histogram[200] += 5;
        made->SetBandStatistics(s);
        tagRoundTrip trip(std::move(made));
        ASSERT_TRUE(trip.band->HasStatistics());
        const auto back = trip.band->GetStatistics();
        EXPECT_EQ(back->min, s.min);
        EXPECT_EQ(back->max, s.max);
        EXPECT_EQ(back->mean, s.mean);
        EXPECT_EQ(back->stdDev, s.stdDev);
        EXPECT_EQ(back->count, s.count);
        EXPECT_EQ(back->isEstimated, s.isEstimated);
        EXPECT_EQ(back->isHistogramEstimated, s.isHistogramEstimated);
        EXPECT_EQ(back->histogram, s.histogram);
        // without them the pixels decide
        XRSFile plain;
        XString error;
        ASSERT_TRUE(XRSFileIO::LoadFileRaster(&plain, kXFormatXDM, (trip.folder / "a.xdm").c_str(),
                                              error, 0, 0, nullptr));
        EXPECT_EQ(plain.GetBandAt(0)->GetBandMean(), s.mean - 0.125);
    }
    auto made = XfnMakeBand(kXFloat, 30, 20, [](int, int) { return kNaN; });
    tagRoundTrip trip(std::move(made));
    EXPECT_EQ(trip.band->GetBandMin(), kXNotSet) << "a band without valid pixels";
    EXPECT_TRUE(trip.band->HasStatistics());
}

TEST(XDMBandXDM, DescriptionsComeBack)
{
    auto made = XfnMakeBand(kXUInt8, 30, 20, XfnPattern);
    made->SetBandName("near infrar\xC3\xA9"
                      "d");
    made->SetBandDescription("of the morning");
    made->SetID(17);
    made->SetBandType(kXBandClassMap);
    made->SetColorInterpretation(2);
    made->SetNullValue(3);
    made->SetGISTable({{1, 2, 3, 4, 5, "water"}, {9, 8, 7, 255, 1LL << 40, ""}}, 1);
    made->SetBandDate("2001-02-03");
    made->SetBandSensor(-4);
    made->SetBandSensorName("sensor");
    double n = 0.5;
    for (const auto set :
         {&XBandAcquisition::SetCenterX, &XBandAcquisition::SetCenterY,
          &XBandAcquisition::SetCellSize, &XBandAcquisition::SetGain, &XBandAcquisition::SetBias,
          &XBandAcquisition::SetSunAzimuth, &XBandAcquisition::SetSunElevation,
          &XBandAcquisition::SetIncidenceAngle, &XBandAcquisition::SetFocalLength,
          &XBandAcquisition::SetAltitude, &XBandAcquisition::SetSceneOrient,
          &XBandAcquisition::SetWaveLength, &XBandAcquisition::SetOffset,
          &XBandAcquisition::SetScale, &XBandAcquisition::SetBandWidth})
        ((*made).*set)(n += 1.0);
    made->SetOriginCorner(2);
    made->SetReferencePoint({1.0, 2.0, 3.0});
    made->SetSarBeam("fine");
    for (const auto set :
         {&XBandRadar::SetLambda, &XBandRadar::SetPRF, &XBandRadar::SetSamplingFrequency,
          &XBandRadar::SetCarrierFrequency, &XBandRadar::SetChirpBandWidth,
          &XBandRadar::SetChirpDuration, &XBandRadar::SetApertureTime,
          &XBandRadar::SetAntennaLength, &XBandRadar::SetSquintAngle})
        ((*made).*set)(n += 1.0);
    made->SetDownChirp();
    made->SetOrbitInterpolater(std::make_shared<XBeamSample>());

    XRSFile file;
    file.AddBand(made.release());
    file.AddBand(XfnMakeBand(kXFloat, 30, 20, XfnPattern).release()); // all defaults
    file.SetName("scene");
    file.SetDescription("words");
    file.SetVersion(3);
    file.SetThreshold1(0.25);
    file.SetCryptoVaildationInfo("check");
    file.SetHeaderBands({1, 0, 1});
    const double matrix[4] = {1.0, 0.5, 0.5, 1.0};
    file.SetCorrelationMatrix(matrix);
    auto set = std::make_unique<tagGCPSets>();
    set->name = "GCP";
    set->description = "by hand";
    ASSERT_TRUE(set->sr.importFromEPSG(4326));
    set->sr.SetCoordType(3);
    set->points = {{"p1", 1.5, 2.5, 127.25, 36.5, 100.0}, {"out of use", 1, 2, 3, 4, 5, 0}};
    const std::vector<tagXGCP> points = set->points;
    file.AddGCPSet(set.release());

    // twice, so that what was read is written as well
    XDMFileFolder folder;
    Save(file, folder / "a.xdm");
    XRSFile first, back;
    Load(first, folder / "a.xdm");
    Save(first, folder / "b.xdm");
    Load(back, folder / "b.xdm");

    // the records hold every attribute: those of the codec's own reading of the file must be those
    // of the first writing, and the model must hold what was put in
    XDMFileReader one, two;
    XString message;
    ASSERT_TRUE(one.Open((folder / "a.xdm").c_str(), message));
    ASSERT_TRUE(two.Open((folder / "b.xdm").c_str(), message));
    EXPECT_TRUE(one.GetInfo() == two.GetInfo());
    const tagXDMFileAcquisition& record = one.GetInfo().bands[0].acquisition;
    std::set<double> numbers = {record.centerX,      record.centerY,        record.cellSize,
                                record.gain,         record.bias,           record.sunAzimuth,
                                record.sunElevation, record.incidenceAngle, record.focalLength,
                                record.altitude,     record.sceneOrient,    record.waveLength,
                                record.offset,       record.scale,          record.bandWidth};
    EXPECT_EQ(numbers.size(), 15u) << "each has its own number";
    EXPECT_EQ(*numbers.begin(), 1.5);
    EXPECT_EQ(*numbers.rbegin(), 15.5);

    const XDMBand& band = *back.GetBandAt(0);
    EXPECT_STREQ(band.GetBandName(), "near infrar\xC3\xA9"
                                     "d");
    EXPECT_STREQ(band.GetBandDescription(), "of the morning");
    EXPECT_EQ(band.GetBandWidth(), 15.5);
    EXPECT_EQ(band.GetID(), 17);
    EXPECT_EQ(band.GetBandType(), kXBandClassMap);
    EXPECT_EQ(band.GetColorInterpretation(), 2);
    EXPECT_EQ(band.GetNullValue(), 3.0);
    ASSERT_EQ(band.GetNumOfGIS(), 2);
    EXPECT_STREQ(band.GetGISAt(0)->name, "water");
    EXPECT_EQ(band.GetGISAt(1)->count, 1LL << 40);
    ASSERT_TRUE(band.HasColorTable());
    EXPECT_EQ(band.GetColorTable()[0], 0x04030201u);
    EXPECT_STREQ(band.GetBandDate(), "2001-02-03");
    EXPECT_EQ(band.GetBandSensor(), -4);
    EXPECT_EQ(band.GetSunElevation(), 7.5);
    EXPECT_EQ(band.GetWaveLength(), 12.5);
    EXPECT_EQ(band.GetOriginCorner(), 2);
    EXPECT_EQ(band.GetReferencePoint().z, 3.0);
    EXPECT_EQ(band.GetLambda(), 16.5);
    EXPECT_EQ(band.GetSquintAngle(), 24.5);
    EXPECT_TRUE(band.IsDownChirp());
    const auto* orbit = dynamic_cast<const XStoredObject*>(band.GetOrbitInterpolater().get());
    ASSERT_TRUE(orbit);
    EXPECT_STREQ(orbit->GetClassName(), "XBeamSample");
    EXPECT_EQ(orbit->GetBytes(), (std::vector<unsigned char>{0x67, 0x12, 0, 0}));
    EXPECT_FALSE(back.GetBandAt(1)->HasNullValue());
    EXPECT_FALSE(back.GetBandAt(1)->GetSarParam());
    EXPECT_STREQ(back.GetName(), "scene");
    EXPECT_STREQ(back.GetDescription(), "words");
    EXPECT_EQ(back.GetThreshold1(), 0.25);
    ASSERT_TRUE(back.GetCorrelationMatrix());
    EXPECT_EQ(back.GetCorrelationMatrix()[1], 0.5);
    int rgb[3];
    ASSERT_TRUE(back.GetHeaderBands(rgb));
    EXPECT_EQ(rgb[1], 0);
    ASSERT_EQ(back.GetNumOfGCPSet(), 1);
    EXPECT_EQ(back.GetGCPSetAt(0)->points, points);
    EXPECT_STREQ(back.GetGCPSetAt(0)->description, "by hand");
    EXPECT_TRUE(back.GetGCPSetAt(0)->sr.IsSame(&file.GetGCPSetAt(0)->sr));
}

/// Equal in every bit that counts: loaded numbers go into decisions again.
void ExpectSame(const XROI& a, const XROI& b)
{
    EXPECT_STREQ(a.GetName(), b.GetName());
    EXPECT_STREQ(a.GetComment(), b.GetComment());
    EXPECT_EQ(a.GetType(), b.GetType());
    EXPECT_EQ(a.GetColor(), b.GetColor());
    EXPECT_EQ(a.GetNullValue(), b.GetNullValue());
    ASSERT_EQ(a.GetSize(), b.GetSize());
    for (int i = 0; i < a.GetSize(); ++i) {
        double p[3], q[3];
        a.GetAt(i, p[0], p[1], p[2]);
        b.GetAt(i, q[0], q[1], q[2]);
        EXPECT_EQ(std::memcmp(p, q, sizeof p), 0);
    }
    ASSERT_EQ(a.IsCalculated(), b.IsCalculated());
    if (!a.IsCalculated()) return;
    const tagXRegionStatistics& s = *a.GetStatistics();
    const tagXRegionStatistics& t = *b.GetStatistics();
    EXPECT_EQ(s.pointCount, t.pointCount);
    EXPECT_EQ(s.joint.count, t.joint.count);
    EXPECT_EQ(s.joint.means, t.joint.means);
    EXPECT_EQ(s.joint.coMoments, t.joint.coMoments);
    ASSERT_EQ(s.bands.size(), t.bands.size());
    for (std::size_t i = 0; i < s.bands.size(); ++i) {
        const tagXMoments& m = s.bands[i].moments;
        const tagXMoments& n = t.bands[i].moments;
        EXPECT_EQ(m.count, n.count);
        EXPECT_EQ(m.min, n.min);
        EXPECT_EQ(m.max, n.max);
        EXPECT_EQ(m.mean, n.mean);
        EXPECT_EQ(m.squares, n.squares);
        EXPECT_EQ(s.bands[i].histogramMin, t.bands[i].histogramMin);
        EXPECT_EQ(s.bands[i].histogramMax, t.bands[i].histogramMax);
        EXPECT_EQ(s.bands[i].histogram, t.bands[i].histogram);
    }
}

TEST(XDMBandXDM, RegionsSignaturesAndTheRadarSceneComeBack)
{
    XRSFile file;
    XObArray bands;
    for (const int type : {kXUInt8, kXFloat, kXInt16}) {
        file.AddBand(XfnMakeBand(type, 60, 50, XfnPattern).release());
        bands.Add(file.GetBandAt(file.GetNumOfBands() - 1));
    }
    // the last band has no value at all
    file.GetBandAt(2)->SetNullValue(1);
    static_cast<XDMBandMemory*>(file.GetBandAt(2))->Create(kXInt16, 60, 50);
    file.GetBandAt(2)->SetNullValue(0);
    const auto make = [&](const char* name, int type, int isCalculated) {
        auto region = std::make_unique<XROI>();
        region->SetName(name);
        region->SetComment("caf\xC3\xA9");
        region->SetType(type);
        region->SetColor(0xFF102030u);
        region->SetNullValue(isCalculated ? 7.0 : kXNotSet);
        region->Add(3.1, -4.2, 0.1);
        region->Add(50.3, -8.0);
        region->Add(20.0, -45.5, -0.0);
        EXPECT_EQ(isCalculated && !region->CalcStatistics(&bands, nullptr), 0);
        return region;
    };
    file.AddROISet(make("a", kXROIPolygon, 1).release());
    file.AddROISet(make("b", kXROIPolyline, 0).release());
    const auto lent = make("elsewhere", kXROIPolyline, 1); // in no list of the file
    auto signature = std::make_unique<XRSSIG>();
    signature->SetName("crop");
    signature->SetComment("words");
    signature->SetColor(0xFF00FF00u);
    signature->Add(file.GetROISetAt(1));
    signature->Add(lent.get());
    signature->Add(file.GetROISetAt(0));
    file.AddSIGSet(signature.release());
    file.AddSIGSet(new XRSSIG); // of nothing
    file.SetRadarScene(std::make_shared<XBeamSample>());

    XDMFileFolder folder;
    Save(file, folder / "a.xdm");
    XRSFile first, back;
    Load(first, folder / "a.xdm");
    Save(first, folder / "b.xdm");
    Load(back, folder / "b.xdm");
    ASSERT_EQ(back.GetNumOfROI(), 2);
    for (int i = 0; i < 2; ++i)
        ExpectSame(*file.GetROISetAt(i), *back.GetROISetAt(i));
    EXPECT_EQ(back.GetROISetAt(0)->GetNumBands(), 3);
    ASSERT_EQ(back.GetNumOfSIG(), 2);
    const XRSSIG& crop = *back.GetSIGSetAt(0);
    EXPECT_STREQ(crop.GetName(), "crop");
    EXPECT_STREQ(crop.GetComment(), "words");
    EXPECT_EQ(crop.GetColor(), 0xFF00FF00u);
    ASSERT_EQ(crop.GetSize(), 3);
    EXPECT_EQ(crop.GetAt(0), back.GetROISetAt(1));
    EXPECT_EQ(crop.GetAt(2), back.GetROISetAt(0));
    ExpectSame(*lent, *crop.GetAt(1));
    EXPECT_EQ(crop.GetCovariance(0, 1), file.GetSIGSetAt(0)->GetCovariance(0, 1));
    EXPECT_EQ(back.GetSIGSetAt(1)->GetSize(), 0);
    const auto* scene = dynamic_cast<const XStoredObject*>(back.GetRadarScene().get());
    ASSERT_TRUE(scene);
    EXPECT_STREQ(scene->GetClassName(), "XBeamSample");
}

TEST(XDMBandXDM, AFileCutWhileItIsOpenEndsInASentence)
{
    XDMFileFolder folder;
    XRSFile made, saved;
    made.AddBand(XfnMakeBand(kXUInt16, 1000, 900, XfnPattern).release());
    Save(made, folder / "whole.xdm", XDMCompression::None);
    const XDMFileBytes bytes = LoadBytes(folder / "whole.xdm");
    XRSFile file;
    Load(file, folder / "whole.xdm");
    XDMBand& band = *file.GetBandAt(0);
    XDMComposite composite(0);
    composite.SetBand(&band, 0);
    XBackBuffer buffer;
    buffer.Resize(nullptr, 1000, 900);
    buffer.SetWorldToCenter(499.5, -449.5);
    const auto draw = [&] {
        composite.Draw(&buffer, -0.5, -899.5, 999.5, 0.5, 1, nullptr, nullptr);
        return composite.GetDrawMessage();
    };
    EXPECT_TRUE(draw().IsEmpty()) << draw().GetString();
    XString message;
    const auto view = band.GetTile(0, 2, 3, nullptr, message);
    ASSERT_TRUE(view);

    // the bytes stand in the same place, so the map sees what it saw
    ASSERT_EQ(truncate((folder / "whole.xdm").c_str(), 4096), 0);
    const XString sentence =
        XfnFormat("The file became shorter while it was read: %s.", (folder / "whole.xdm").c_str());
    EXPECT_STREQ(draw(), sentence) << "tiles are in the cache, their bytes are gone";
    EXPECT_STREQ(draw(), sentence) << "for good";
    EXPECT_TRUE(view->IsLost());
    EXPECT_FALSE(band.GetTile(0, 0, 0, nullptr, message));
    EXPECT_STREQ(message, sentence);
    tagXArr2* block = nullptr;
    EXPECT_FALSE(band.ReadSubset(block, 0, 0, 9, 0, 9, nullptr, &message));
    delete block;
    EXPECT_FALSE(band.CalcExactStatistics(nullptr, nullptr, message));
    EXPECT_FALSE(
        XDMFileSaver::Save(file, (folder / "b.xdm").c_str(), XDMCompression::Zstd, {}, message));
    EXPECT_GE(message.Find("shorter"), 0) << message.GetString();
    EXPECT_EQ(folder.CountFiles(), 1);
}

TEST(XDMBandXDM, PlainTilesAreViewsAndOthersAreNot)
{
    XDMFileFolder folder;
    for (const XDMCompression compression : {XDMCompression::None, XDMCompression::Zstd}) {
        XRSFile file, back;
        for (int type = kXUInt8; type <= kXDoubleComplex; ++type)
            file.AddBand(XfnMakeBand(type, 300, 40, [](int x, int) {
                             return x < 256 ? x % 7 : 0; // the second tile is empty
                         }).release());
        Save(file, folder / "a.xdm", compression);
        Load(back, folder / "a.xdm");
        for (int i = 0; i < back.GetNumOfBands(); ++i) {
            XString message;
            const XDMBand& band = *back.GetBandAt(i);
            const auto first = band.GetTile(0, 0, 0, nullptr, message);
            const auto second = band.GetTile(0, 1, 0, nullptr, message);
            ASSERT_TRUE(first && second) << message.GetString();
            const bool isView = !std::const_pointer_cast<XTile>(first)->GetFillData();
            EXPECT_EQ(isView, compression == XDMCompression::None) << i;
            EXPECT_TRUE(std::const_pointer_cast<XTile>(second)->GetFillData());
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first->GetData()) % 16, 0u);
        }
        std::filesystem::remove(folder / "a.xdm"); // open files and their views stand
        EXPECT_EQ(ReadLevel(*back.GetBandAt(0), 0), ReadLevel(*file.GetBandAt(0), 0));
    }
}

TEST(XDMBandXDM, LevelsThatTheFileLacksAreVirtual)
{
    XDMFileFolder folder;
    tagXDMFileInfo info;
    info.bands.resize(1);
    info.bands[0].dataType = kXUInt16;
    info.bands[0].levels = {{1300, 700, 100, 64}}; // tiles that fit no other
    WriteSample(folder / "a.xdm", info);
    XRSFile file;
    Load(file, folder / "a.xdm");
    const XDMBand& band = *file.GetBandAt(0);
    ASSERT_EQ(band.GetNumOfLevels(), 4); // 1300, 650, 325, 163
    const auto full = ReadLevel(band, 0);
    for (int level = 1; level < 4; ++level) {
        EXPECT_TRUE(band.IsVirtualLevel(level));
        int width, height, finerWidth, finerHeight;
        band.GetLevelSize(level, width, height);
        band.GetLevelSize(level - 1, finerWidth, finerHeight);
        const auto finer = ReadLevel(band, level - 1);
        const auto all = ReadLevel(band, level);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(std::memcmp(all.data() + 2 * (y * width + x),
                                      finer.data() +
                                          2 * (XfnPickPixel(y, height, finerHeight) * finerWidth +
                                               XfnPickPixel(x, width, finerWidth)),
                                      2),
                          0)
                    << level << ' ' << x << ' ' << y;
    }
}

TEST(XDMBandXDM, ManyThreadsReadTheSameBand)
{
    tagRoundTrip trip(XfnMakeBand(kXFloat, 900, 800, XfnPattern));
    const auto wanted = ReadLevel(*trip.source, 0);
    std::vector<std::thread> threads;
    std::atomic<int> good{0};
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { good += ReadLevel(*trip.band, 0) == wanted; });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, 4);
}

TEST(XDMBandXDM, ContentDecidesAndDamageIsSaid)
{
    XDMFileFolder folder;
    XRSFile file;
    file.AddBand(XfnMakeBand(kXUInt8, 600, 500, XfnPattern).release());
    Save(file, folder / "a.xdm", XDMCompression::None);
    const XDMFileBytes bytes = LoadBytes(folder / "a.xdm");
    const auto write = [&](const char* name, XDMFileBytes changed) {
        std::ofstream(folder / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(changed.data()),
                   static_cast<std::streamsize>(changed.size()));
        return XString((folder / name).c_str());
    };
    XRSFile opened;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(write("picture.tif", bytes), &opened, error)) << error.GetString();
    EXPECT_STREQ(opened.GetFormatName(), "XDM");

    XDMFileBytes header = bytes;
    header[33] ^= 1;
    XDMFileBytes records = bytes;
    records[records.size() - 60] ^= 1;
    const struct
    {
        const char* name;
        XDMFileBytes bytes;
    } cases[] = {{"header.xdm", header},
                 {"directory.xdm", records},
                 {"half.xdm", XDMFileBytes(bytes.begin(), bytes.begin() + 20000)},
                 {"magic.xdm", XDMFileBytes(bytes.begin(), bytes.begin() + 8)},
                 {"other.xdm", {'n', 'o'}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(XRSFileIO::Open(write(c.name, c.bytes), &opened, error));
        EXPECT_EQ(error.Find(XfnFormat("\"%s\": ", (folder / c.name).c_str())), 0)
            << error.GetString();
        EXPECT_EQ(error.GetAt(error.GetLength() - 1), '.') << error.GetString();
        EXPECT_EQ(opened.GetNumOfBands(), 1) << "what was open stays open";
    }
    // a damaged pixel shows when its tile is read, and only then
    XDMFileBytes pixel = bytes;
    pixel[64 + 1000] ^= 1;
    ASSERT_TRUE(XRSFileIO::Open(write("pixel.xdm", pixel), &opened, error));
    int damaged = 0;
    for (int tx = 0; tx < 3; ++tx) {
        if (opened.GetBandAt(0)->GetTile(0, tx, 0, nullptr, error)) continue;
        ++damaged;
        EXPECT_GE(error.Find("pixel.xdm"), 0) << error.GetString();
    }
    EXPECT_LE(damaged, 1);
    XThread stopped;
    stopped.Terminate();
    EXPECT_FALSE(opened.LoadFileXDM((folder / "a.xdm").c_str(), error, &stopped));
    EXPECT_TRUE(error.IsEmpty());
}

TEST(XDMFileSaver, AStopOrAFailureLeavesNothing)
{
    XDMFileFolder folder;
    XRSFile file;
    file.AddBand(XfnMakeBand(kXUInt16, 3000, 2000, XfnPattern).release());
    XString error;
    std::atomic<int> abort{0};
    std::vector<int> percents;
    tagXSaveControl control;
    control.abort = &abort;
    control.progress = [&](int percent) {
        percents.push_back(percent);
        if (percent >= 30) abort = 1;
    };
    EXPECT_FALSE(
        XDMFileSaver::Save(file, (folder / "a.xdm").c_str(), XDMCompression::Zstd, control, error));
    EXPECT_TRUE(error.IsEmpty()) << error.GetString();
    EXPECT_LT(percents.back(), 100);
    EXPECT_EQ(folder.CountFiles(), 0);

    std::ofstream(folder / "a.xdm") << "old";
    XThread thread;
    thread.Terminate();
    control = {&thread, nullptr, nullptr};
    EXPECT_FALSE(
        XDMFileSaver::Save(file, (folder / "a.xdm").c_str(), XDMCompression::Zstd, control, error));
    EXPECT_EQ(LoadBytes(folder / "a.xdm").size(), 3u) << "an older file survives";

    // a source that cannot be read to its end
    abort = 0;
    XRSFile source;
    Save(file, folder / "source.xdm", XDMCompression::None);
    XDMFileBytes bytes = LoadBytes(folder / "source.xdm");
    bytes[bytes.size() / 3] ^= 1;
    std::ofstream(folder / "source.xdm", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    Load(source, folder / "source.xdm");
    EXPECT_FALSE(
        XDMFileSaver::Save(source, (folder / "b.xdm").c_str(), XDMCompression::Zstd, {}, error));
    EXPECT_GE(error.Find("source.xdm"), 0) << error.GetString();
    EXPECT_EQ(folder.CountFiles(), 2);
    XRSFile empty;
    EXPECT_FALSE(
        XDMFileSaver::Save(empty, (folder / "b.xdm").c_str(), XDMCompression::Zstd, {}, error));
    EXPECT_FALSE(error.IsEmpty());
    EXPECT_FALSE(
        XDMFileSaver::Save(file, (folder / "none/b.xdm").c_str(), XDMCompression::Zstd, {}, error));
    EXPECT_GE(error.Find("b.xdm"), 0) << error.GetString();
    // 0 to 100, each once
    percents.clear();
    control = {nullptr, nullptr, [&](int percent) { percents.push_back(percent); }};
    ASSERT_TRUE(
        XDMFileSaver::Save(file, (folder / "b.xdm").c_str(), XDMCompression::Zstd, control, error));
    EXPECT_EQ(percents.front(), 0);
    EXPECT_EQ(percents.back(), 100);
    EXPECT_EQ(std::set<int>(percents.begin(), percents.end()).size(), percents.size());
}

} // namespace
