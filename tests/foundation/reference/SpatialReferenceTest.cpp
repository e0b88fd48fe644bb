#include "foundation/reference/XProjectionMethods.h"
#include "foundation/reference/XSpatialReference.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

// The text of a .prj file: another dialect, no codes, and easting first where the authority
// prescribes northing first.
constexpr const char* kCentralBeltPrj =
    R"(PROJCS["Korea_2000_Korea_Central_Belt_2010",GEOGCS["GCS_Korea_2000",DATUM["D_Korea_2000",)"
    R"(SPHEROID["GRS_1980",6378137.0,298.257222101]],PRIMEM["Greenwich",0.0],)"
    R"(UNIT["Degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],)"
    R"(PARAMETER["False_Easting",200000.0],PARAMETER["False_Northing",600000.0],)"
    R"(PARAMETER["Central_Meridian",127.0],PARAMETER["Scale_Factor",1.0],)"
    R"(PARAMETER["Latitude_Of_Origin",38.0],UNIT["Meter",1.0]])";

XSpatialReference FromEpsg(int code)
{
    XSpatialReference reference;
    reference.importFromEPSG(code);
    return reference;
}

XSpatialReference FromWkt(const XString& wkt)
{
    XSpatialReference reference;
    reference.importFromWkt(wkt);
    return reference;
}

XString WktOf(const XSpatialReference& reference)
{
    XString wkt;
    reference.exportToWkt(wkt);
    return wkt;
}

int CodeOf(const XSpatialReference& reference)
{
    int code = -1;
    reference.GetRefSysCode(&code);
    return code;
}

TEST(SpatialReference, EmptyAnswersEverything)
{
    XSpatialReference empty;
    XString text("left over");
    int code = 7;
    EXPECT_EQ(empty.exportToWkt(text), 0);
    EXPECT_TRUE(text.IsEmpty());
    text = "left over";
    EXPECT_EQ(empty.exportToProj4(text), 0);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(empty.GetRefSysCode(&code), 0);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(empty.GetRefSysCode(nullptr), 0);
    EXPECT_EQ(empty.GetCoordType(), 0);
    EXPECT_EQ(empty.GetUnitCode() + empty.IsProjected() + empty.IsGeographic(), 0);
    EXPECT_TRUE(empty.GetProjectionName().IsEmpty() && empty.GetDatumName().IsEmpty());
    EXPECT_TRUE(empty.IsSame(&empty));
    EXPECT_FALSE(empty.IsSame(nullptr));
    const XSpatialReference wgs = FromEpsg(4326);
    EXPECT_FALSE(empty.IsSame(&wgs) || wgs.IsSame(&empty));
}

struct CodeCase
{
    const char* what;
    int code;
    bool isKnown;
    bool isProjected;
    int unit;
    const char* name;
};

const CodeCase kCodes[] = {
    {"geographic", 4326, true, false, 9122, "WGS 84"},
    {"projected, metres", 32652, true, true, 9001, "WGS 84 / UTM zone 52N"},
    {"projected, US feet", 2263, true, true, 9003, "NAD83 / New York Long Island (ftUS)"},
    {"grads", 4807, true, false, 9105, "NTF (Paris)"},
    {"deprecated: the code itself, not its successor", 2036, true, true, 9001,
     "NAD83(CSRS98) / New Brunswick Stereo"},
    {"with a height on top", 7415, true, true, 9001, "Amersfoort / RD New + NAP height"},
    {"zero", 0, false, false, 0, ""},
    {"negative", -4326, false, false, 0, ""},
    {"beyond every table", 2147483647, false, false, 0, ""},
    {"heights only", 5773, false, false, 0, ""},
};

TEST(SpatialReference, EpsgCodes)
{
    for (const auto& row : kCodes) {
        SCOPED_TRACE(row.what);
        XSpatialReference reference = FromEpsg(32601);
        EXPECT_EQ(reference.importFromEPSG(row.code) != 0, row.isKnown);
        EXPECT_EQ(reference.IsEmpty() != 0, !row.isKnown);
        EXPECT_EQ(reference.GetCoordType(), row.isKnown ? 3 : 0);
        EXPECT_EQ(reference.IsProjected() != 0, row.isProjected);
        EXPECT_EQ(reference.IsGeographic() != 0, row.isKnown && !row.isProjected);
        EXPECT_EQ(reference.GetUnitCode(), row.unit);
        EXPECT_EQ(reference.GetName(), row.name);
        EXPECT_EQ(CodeOf(reference), row.isKnown ? row.code : 0);
    }
}

TEST(SpatialReference, WktRoundTripKeepsSystemAndCode)
{
    for (const int code : {4326, 32652, 5186, 2263, 3031, 2036, 4979}) {
        SCOPED_TRACE(code);
        const XSpatialReference original = FromEpsg(code);
        const XSpatialReference again = FromWkt(WktOf(original));
        EXPECT_TRUE(original.IsSame(&again) && again.IsSame(&original));
        EXPECT_EQ(CodeOf(again), code);
    }
}

TEST(SpatialReference, HostileTextLeavesAnEmptyReference)
{
    const XString good = WktOf(FromEpsg(32652));
    const XString nested(std::string(200000, '['));
    std::string deep;
    for (int i = 0; i < 5000; ++i)
        deep += "GEOGCS[\"a\",";
    std::vector<XString> texts = {
        "",
        " ",
        "not a system",
        "PROJCS[",
        "PROJCS[]",
        "GEOGCS[\"\",DATUM[\"\"]]",
        nested,
        XString(deep),
        XString(std::string((1 << 20) + 1, 'P')),
        XString((std::string(good.View()) + '\0').c_str(), good.GetLength() + 1),
        R"(PROJCS["a",GEOGCS["b",DATUM["c",SPHEROID["d",nan,-1]]],PROJECTION["e"]])"};
    for (int length = 0; length < good.GetLength(); length += 7)
        texts.push_back(good.Left(length));
    for (const XString& text : texts) {
        SCOPED_TRACE(text.Left(60).GetString());
        XSpatialReference reference = FromEpsg(4326);
        if (reference.importFromWkt(text)) continue; // a lenient reading is no harm
        EXPECT_TRUE(reference.IsEmpty());
        EXPECT_EQ(reference.GetCoordType(), 0);
    }
    XSpatialReference reference;
    EXPECT_FALSE(reference.importFromWkt("not a system"));
    EXPECT_FALSE(reference.importFromProj4("+proj=nonsense"));
    EXPECT_FALSE(reference.importFromProj4("+proj=pipeline +step +proj=utm +zone=52"));
    EXPECT_FALSE(reference.SetWellKnownGeogCS("nowhere"));
    EXPECT_TRUE(reference.SetWellKnownGeogCS("WGS84"));
    EXPECT_EQ(CodeOf(reference), 4326);
}

TEST(SpatialReference, SameAcrossDialectAndAxisOrder)
{
    const XSpatialReference authority = FromEpsg(5186);
    const XSpatialReference prj = FromWkt(kCentralBeltPrj);
    EXPECT_TRUE(authority.IsSame(&prj) && prj.IsSame(&authority));
    EXPECT_EQ(CodeOf(prj), 5186);
    EXPECT_EQ(prj.GetUnitCode(), 9001);

    const struct
    {
        const char* what;
        int a, b;
        bool same;
    } cases[] = {
        {"another zone", 32651, 32652, false},
        {"another datum", 4326, 4258, false},
        {"geographic against its projection", 4326, 32652, false},
        {"another unit", 2263, 32118, false},
        {"one belt against the old one with another false northing", 5181, 5186, false},
    };
    for (const auto& row : cases) {
        const XSpatialReference a = FromEpsg(row.a);
        const XSpatialReference b = FromEpsg(row.b);
        EXPECT_EQ(a.IsSame(&b) != 0, row.same) << row.what;
    }
    XSpatialReference lonLat;
    ASSERT_TRUE(lonLat.SetWellKnownGeogCS("CRS84"));
    const XSpatialReference latLon = FromEpsg(4326);
    EXPECT_TRUE(lonLat.IsSame(&latLon));
    XSpatialReference pixel = latLon;
    pixel.SetCoordType(1);
    EXPECT_TRUE(pixel.IsSame(&latLon)); // the coordinate type does not count
    EXPECT_EQ(latLon.GetCoordType(), 3);
}

TEST(SpatialReference, UnitByNameWhereNoCodeIsStated)
{
    const struct
    {
        const char* unit;
        const char* factor;
        int code;
    } cases[] = {
        {"Meter", "1.0", 9001},
        {"Foot_US", "0.3048006096012192", 9003},
        {"US survey foot", "0.304800609601219", 9003},
        {"Foot", "0.3048", 9002},
        {"kilometre", "1000", 9036},
        {"Indian foot (1937)", "0.30479841", 9081},
        {"Cold Coast foot", "0.304799710181509", 9094},
        {"cubit of the house", "0.4572", 0},
    };
    const XString text(kCentralBeltPrj);
    const int cut = text.Find("UNIT[\"Meter\"");
    for (const auto& row : cases) {
        XString wkt = text.Left(cut) + "UNIT[\"" + row.unit + "\"," + row.factor + "]]";
        EXPECT_EQ(FromWkt(wkt).GetUnitCode(), row.code) << row.unit;
    }
    double factor = 0.0;
    int isAngle = -1;
    EXPECT_TRUE(XfnGetUnitFactor(9002, factor, &isAngle));
    EXPECT_DOUBLE_EQ(factor, 0.3048);
    EXPECT_EQ(isAngle, 0);
    EXPECT_TRUE(XfnGetUnitFactor(9108, factor, &isAngle));
    EXPECT_NEAR(factor, 0.0174532925199433, 1e-15);
    EXPECT_EQ(isAngle, 1);
    for (const int none : {0, -1, 9201, 1040, 99999})
        EXPECT_FALSE(XfnGetUnitFactor(none, factor, nullptr));
}

TEST(SpatialReference, Names)
{
    const XSpatialReference utm = FromEpsg(32652);
    EXPECT_EQ(utm.GetProjectionName(), "WGS 84 / UTM zone 52N");
    EXPECT_EQ(utm.GetMethodName(), "Transverse Mercator");
    EXPECT_EQ(utm.GetDatumName(), "World Geodetic System 1984");
    EXPECT_EQ(utm.GetUnitName(), "metre");
    EXPECT_DOUBLE_EQ(FromEpsg(2263).GetLinearUnits(), 1200.0 / 3937.0);
    EXPECT_DOUBLE_EQ(utm.GetSemiMajor(), 6378137.0);
    EXPECT_NEAR(1.0 / utm.GetFlattening(), 298.257223563, 1e-9);
    EXPECT_EQ(XfnGetPcsEPSGString(32652), "WGS 84 / UTM zone 52N");
    EXPECT_EQ(XfnGetPcsEPSGString(4326), "WGS 84");
    EXPECT_TRUE(XfnGetPcsEPSGString(-5).IsEmpty());
    const XString local = R"(LOCAL_CS["plan",UNIT["metre",1]])";
    const XSpatialReference plan = FromWkt(local);
    EXPECT_FALSE(plan.IsEmpty() || plan.IsProjected() || plan.IsGeographic());
    EXPECT_TRUE(plan.GetProjectionName().IsEmpty());
}

TEST(SpatialReference, ACopyIsIndependent)
{
    XSpatialReference first = FromEpsg(32652);
    const XSpatialReference copy = first;
    EXPECT_EQ(copy.GetState(), first.GetState());
    first.importFromEPSG(4326);
    EXPECT_EQ(CodeOf(copy), 32652);
    first.Clear();
    EXPECT_EQ(copy.GetName(), "WGS 84 / UTM zone 52N");
    EXPECT_EQ(copy.GetCoordType(), 3);
}

TEST(SpatialReference, ManyThreadsReadOne)
{
    const XSpatialReference shared = FromWkt(kCentralBeltPrj);
    const XSpatialReference other = FromEpsg(5186);
    std::vector<std::jthread> threads;
    std::atomic<int> good{0};
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int n = 0; n < 5; ++n) {
                const XSpatialReference mine = shared;
                const bool same = i % 2 ? mine.IsSame(&other) : other.IsSame(&mine);
                good += same && CodeOf(mine) == 5186 && !WktOf(shared).IsEmpty() &&
                        mine.GetDatumName() == other.GetDatumName();
            }
        });
    }
    threads.clear(); // joins
    EXPECT_EQ(good, 20);
}

// One system a method; the parts of each build it anew, in its own unit and in another.
const int kOneOfEachMethod[] = {32652, 2053, 2154, 3112,  2180,  5186, 31370, 3078, 3577, 3832,
                                3395,  3857, 3375, 3079,  28992, 5041, 3031,  3035, 5880, 28191,
                                6933,  4087, 5221, 27200, 8857,  6247, 2163,  3408, 3786, 2065};

TEST(SpatialReferenceParts, BuildTheSystemTheyWereTakenFrom)
{
    int tried = 0;
    for (const int code : kOneOfEachMethod) {
        SCOPED_TRACE(code);
        const XSpatialReference original = FromEpsg(code);
        ASSERT_FALSE(original.IsEmpty());
        double p[7] = {};
        if (!XfnGetProjTRFInfo(code, p)) continue;
        int unit = 0, source = 0, method = 0, ellipsoid = 0;
        double q[7] = {};
        ASSERT_TRUE(original.exportToPcsLVC(&unit, &source, &method, &ellipsoid, q));
        // WKT carries fifteen digits
        for (int i = 0; i < 7; ++i)
            EXPECT_NEAR(p[i], q[i], 1e-14 * std::fabs(p[i])) << i;
        EXPECT_GT(ellipsoid, 0);
        XSpatialReference built;
        ASSERT_TRUE(
            built.importFromLVC(0, unit, source, method, p[0], p[1], p[2], p[3], p[4], p[5], p[6]));
        EXPECT_TRUE(built.IsSame(&original)) << WktOf(built).GetString();
        EXPECT_EQ(built.GetUnitCode(), unit);
        EXPECT_EQ(built.GetCoordType(), 3);
        ++tried;
    }
    EXPECT_GE(tried, 24);
}

TEST(SpatialReferenceParts, AnotherUnitMeansTheSamePlaces)
{
    XSpatialReference feet;
    ASSERT_TRUE(feet.importFromLVC(0, 9002, 4326, 9807, 0, 129, 0.9996, 500000, 0, 0, 0));
    EXPECT_EQ(feet.GetUnitCode(), 9002);
    EXPECT_DOUBLE_EQ(feet.GetLinearUnits(), 0.3048);
    double parameters[7] = {};
    ASSERT_TRUE(feet.exportToPcsLVC(nullptr, nullptr, nullptr, nullptr, parameters));
    EXPECT_NEAR(parameters[3], 500000.0, 1e-6); // metres still; 1e-6 covers the way through feet
    EXPECT_EQ(FromWkt(WktOf(feet)).GetUnitCode(), 9002);

    XSpatialReference dms;
    ASSERT_TRUE(dms.importFromLVC(4326, 9108, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(dms.GetUnitCode(), 9108);
    int gcs = 0, unit = 0, ellipsoid = 0;
    ASSERT_TRUE(dms.exportToGcsLVC(&gcs, &unit, &ellipsoid));
    EXPECT_EQ(unit, 9108);
    EXPECT_EQ(ellipsoid, 7030);
    XSpatialReference grad;
    ASSERT_TRUE(grad.importFromLVC(4326, 9105, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(grad.GetUnitCode(), 9105);
    const XSpatialReference degrees = FromEpsg(4326);
    EXPECT_FALSE(grad.IsSame(&degrees));
}

TEST(SpatialReferenceParts, AbsurdPartsAreRefused)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct
    {
        const char* what;
        int gcs, unit, source, method;
        double p1, p3;
    } cases[] = {
        {"unknown system", 999999, 9122, 0, 0, 0, 0},
        {"projected where geographic is wanted", 32652, 9122, 0, 0, 0, 0},
        {"a length for a geographic system", 4326, 9001, 0, 0, 0, 0},
        {"an angle for a projected one", 0, 9122, 4326, 9807, 0, 1},
        {"unknown unit", 0, 1, 4326, 9807, 0, 1},
        {"unknown method", 0, 9001, 4326, 1, 0, 1},
        {"projected source", 0, 9001, 32652, 9807, 0, 1},
        {"not a number", 0, 9001, 4326, 9807, nan, 1},
        {"scale 0", 0, 9001, 4326, 9807, 0, 0},
    };
    for (const auto& row : cases) {
        XSpatialReference reference = FromEpsg(4326);
        EXPECT_FALSE(reference.importFromLVC(row.gcs, row.unit, row.source, row.method, row.p1, 129,
                                             row.p3, 0, 0, 0, 0))
            << row.what;
        EXPECT_TRUE(reference.IsEmpty()) << row.what;
    }
    XSpatialReference old;
    EXPECT_TRUE(old.importFromOldLVC(0, 118, -1, 1, 9001));
    EXPECT_EQ(CodeOf(old), 4326);
    EXPECT_FALSE(old.importFromOldLVC(1, 118, 52, 1, 9001));
    double parameters[7] = {};
    for (const int none : {0, -1, 4326, 5773})
        EXPECT_FALSE(XfnGetProjTRFInfo(none, parameters));
}

TEST(ProjectionTable, RowsAreComplete)
{
    const tagXProjectionMethod* table = XfnGetProjectionTable();
    for (int i = 0; i + 1 < kXProjectionTableSize; ++i) {
        EXPECT_EQ(XfnFindProjectionMethod(table[i].code), &table[i]);
        for (const auto& parameter : table[i].parameters) {
            EXPECT_EQ(parameter.code == 0, parameter.label[0] == '\0') << table[i].name;
        }
    }
    EXPECT_EQ(table[kXProjectionTableSize - 1].code, 0);
    EXPECT_EQ(XfnFindProjectionMethod(0), nullptr);
}

} // namespace
