#include "foundation/raster/XDMBandXDM.h"
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
#include "tests/foundation/raster/XDMBandXDMSamples.h"
#include "tests/support/XArchiveBytes.h"
#include "tests/support/XBandPlaces.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <set>
#include <thread>
#include <tuple>

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

double SampleAt(const XDMBand& band, int level, int x, int y)
{
    int width, height;
    band.GetLevelSize(level, width, height);
    const auto all = ReadLevel(band, level);
    return XfnReadSample(all.data() +
                             static_cast<std::size_t>((y * width + x) * band.GetDataSize()),
                         band.GetDataType());
}

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
    constexpr double kMax = 4294967295, kHuge = 1.6e308;
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
        {"the largest integer", kXUInt32, kXNotSet, {kMax, kMax, kMax, kMax}, kMax},
        {"null does not count", kXUInt8, 0, {0, 20, 0, 40}, 30},
        {"all null stays null", kXInt16, -9999, {-9999, -9999, -9999, -9999}, -9999},
        {"a null the type cannot hold", kXUInt8, -1, {10, 20, 30, 40}, 25},
        {"a mean that would be null", kXInt32, 0, {-5, 5, -5, 5}, 5},
        {"a null beyond float by a digit", kXFloat, -3.40282347e38, {-FLT_MAX, 2, 4, 6}, 4},
        {"NaN does not count", kXFloat, kXNotSet, {kNaN, 2, 4, 6}, 4},
        {"NaN as null", kXDouble, kNaN, {kNaN, 1, 1, 4}, 2},
        {"nothing but NaN", kXDouble, kXNotSet, {kNaN, kNaN, kNaN, kNaN}, kNaN},
        {"infinity does not count", kXFloat, kXNotSet, {INFINITY, 2, 4, 6}, 4},
        {"a sum beyond all bounds", kXDouble, kXNotSet, {kHuge, kHuge, kHuge, kHuge}, kHuge},
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
        const auto numbers = [](const XBandGeometry& of) {
            return std::tuple(of.IsGeoreferenced(), of.IsNorthUp(), of.GetULX(), of.GetULY(),
                              of.GetXPixelSize(), of.GetYPixelSize());
        };
        EXPECT_EQ(numbers(a), numbers(b));
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
        const auto numbers = [](const tagXBandStatistics& of) {
            return std::tuple(of.min, of.max, of.mean, of.stdDev, of.count, of.isEstimated,
                              of.isHistogramEstimated);
        };
        EXPECT_EQ(numbers(*back), numbers(s));
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
    made->SetBandName("near infrar\303\251d");
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
    EXPECT_STREQ(band.GetBandName(), "near infrar\303\251d");
    EXPECT_STREQ(band.GetBandDescription(), "of the morning");
    EXPECT_EQ(std::tuple(band.GetBandWidth(), band.GetID(), band.GetBandType(),
                         band.GetColorInterpretation(), band.GetNullValue(), band.GetBandSensor(),
                         band.GetSunElevation(), band.GetWaveLength(), band.GetOriginCorner(),
                         band.GetReferencePoint().z, band.GetLambda(), band.GetSquintAngle()),
              std::tuple(15.5, 17, kXBandClassMap, 2, 3.0, -4, 7.5, 12.5, 2, 3.0, 16.5, 24.5));
    ASSERT_EQ(band.GetNumOfGIS(), 2);
    EXPECT_STREQ(band.GetGISAt(0)->name, "water");
    EXPECT_EQ(band.GetGISAt(1)->count, 1LL << 40);
    ASSERT_TRUE(band.HasColorTable());
    EXPECT_EQ(band.GetColorTable()[0], 0x04030201u);
    EXPECT_STREQ(band.GetBandDate(), "2001-02-03");
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
        EXPECT_EQ(StoreObject(*back.GetROISetAt(i)), StoreObject(*file.GetROISetAt(i))) << i;
    EXPECT_EQ(back.GetROISetAt(0)->GetNumBands(), 3);
    ASSERT_EQ(back.GetNumOfSIG(), 2);
    const XRSSIG& crop = *back.GetSIGSetAt(0);
    EXPECT_STREQ(crop.GetName(), "crop");
    EXPECT_STREQ(crop.GetComment(), "words");
    EXPECT_EQ(crop.GetColor(), 0xFF00FF00u);
    ASSERT_EQ(crop.GetSize(), 3);
    EXPECT_EQ(crop.GetAt(0), back.GetROISetAt(1));
    EXPECT_EQ(crop.GetAt(2), back.GetROISetAt(0));
    EXPECT_EQ(StoreObject(*crop.GetAt(1)), StoreObject(*lent));
    EXPECT_EQ(crop.GetCovariance(0, 1), file.GetSIGSetAt(0)->GetCovariance(0, 1));
    EXPECT_EQ(back.GetSIGSetAt(1)->GetSize(), 0);
    const auto* scene = dynamic_cast<const XStoredObject*>(back.GetRadarScene().get());
    ASSERT_TRUE(scene);
    EXPECT_STREQ(scene->GetClassName(), "XBeamSample");
}

} // namespace
