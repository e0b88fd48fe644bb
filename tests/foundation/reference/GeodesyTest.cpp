#include "foundation/base/XSentinels.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XDms.h"
#include "foundation/reference/XGeodesy.h"
#include "foundation/reference/XMgrs.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();

struct GridCase
{
    double lat, lon;
    int zone, north;
    double easting, northing;
    const char* metre;
    const char* hundredMetres;
    double convergence, scale;
};

// Computed with an independent program of 1 nm accuracy; grid references cut their digits.
const GridCase kGrid[] = {
    {33.3, 44.4, 38, 1, 444140.545, 3684706.356, "38SMB4414084706", "38SMB441847", -0.32942222,
     0.9996384693},
    {40.7484, -73.9857, 18, 1, 585628.409, 4511322.447, "18TWL8562811322", "18TWL856113",
     0.66211292, 0.9996902473},
    {-33.8568, 151.2153, 56, 0, 334900.570, 6252288.753, "56HLH3490052288", "56HLH349522",
     0.99451543, 0.9999360325},
    {60.0, 5.0, 32, 1, 276979.926, 6658157.202, "32VKM7697958157", "32VKM769581", -3.46551534,
     1.0002095764},
    {78.2232, 15.6267, 33, 1, 514278.715, 8683355.469, "33XWG1427883355", "33XWG142833", 0.61350906,
     0.9996024915},
    {0, 0, 31, 1, 166021.443, 0.0, "31NAA6602100000", "31NAA660000", 0.0, 1.0009810615},
    {83.99, 10, 33, 1, 441625.147, 9329512.189, "33XVP4162529512", "33XVP416295", -4.97265639,
     0.9996416253},
    {85, 45, 0, 1, 2392767.688, 1607232.312, "ZFD9276707232", "ZFD927072", 45.0, 0.9958947917},
    {51.4778, -0.0015, 30, 1, 708213.951, 5707224.543, "30UYC0821307224", "30UYC082072", 2.34676450,
     1.0001323062},
    {56.0, 3.0, 32, 1, 126049.971, 6222336.335, "32VJH2604922336", "32VJH260223", -4.97994620,
     1.0013155606},
    {55.99999, 3.1, 31, 1, 506236.782, 6206082.986, "31UEC0623606082", "31UEC062060", 0.08290377,
     0.9996004771},
};

TEST(Mgrs, KnownPositions)
{
    for (const auto& row : kGrid) {
        SCOPED_TRACE(row.metre);
        tagXUtmPosition utm;
        ASSERT_TRUE(XfnGeoToUtm(row.lon, row.lat, utm));
        EXPECT_EQ(utm.zone, row.zone);
        EXPECT_EQ(utm.north, row.north);
        EXPECT_NEAR(utm.easting, row.easting, 0.0006); // the table has millimetres
        EXPECT_NEAR(utm.northing, row.northing, 0.0006);
        EXPECT_NEAR(utm.convergence, row.convergence, 6e-9);
        EXPECT_NEAR(utm.scale, row.scale, 6e-11);
        double lon = 0.0, lat = 0.0;
        ASSERT_TRUE(XfnUtmToGeo(utm, lon, lat));
        EXPECT_NEAR(lon, row.lon, 1e-11);
        EXPECT_NEAR(lat, row.lat, 1e-11);

        XString text;
        ASSERT_TRUE(XCoordinateTransformation::WGP_TO_MGRS(row.lon, row.lat, text));
        EXPECT_EQ(text, row.metre);
        ASSERT_TRUE(XfnGeoToMgrs(row.lon, row.lat, 3, text));
        EXPECT_EQ(text, row.hundredMetres);
        ASSERT_TRUE(XfnMgrsToGeo(row.metre, lon, lat, XMgrsPoint::Centre));
        EXPECT_LT(XfnGeodesicDistance(lon, lat, row.lon, row.lat), 0.71); // half a diagonal
    }
    // published with the program's own tests
    XString text;
    ASSERT_TRUE(XfnGeoToMgrs(44.4, 33.3, 4, text));
    EXPECT_EQ(text, "38SMB44148470");
    ASSERT_TRUE(XfnGeoToMgrs(44.4, 33.3, 2, text));
    EXPECT_EQ(text, "38SMB4484");
    double lon = 0.0, lat = 0.0;
    ASSERT_TRUE(XfnMgrsToGeo("4QFJ12345678", lon, lat));
    EXPECT_NEAR(lat, 21.309433, 6e-7);
    EXPECT_NEAR(lon, -157.916867, 6e-7);
    ASSERT_TRUE(XfnMgrsToGeo(" 4q fj 1234 5678 ", lon, lat, XMgrsPoint::Centre));
    EXPECT_NEAR(lat, 21.309478, 6e-7);
    EXPECT_NEAR(lon, -157.916819, 6e-7);
}

TEST(Mgrs, CornersNameTheirOwnSquare)
{
    // on a grid of corners everywhere, cutting digits must not slip into the square beside
    int wrong = 0;
    int tried = 0;
    for (int zone = 1; zone <= 60; zone += 7) {
        for (double easting = 200000; easting < 800000; easting += 61111) {
            for (double northing = 1000; northing < 9300000; northing += 310003) {
                tagXUtmPosition position;
                position.zone = zone;
                position.easting = easting;
                position.northing = northing;
                double lon = 0.0, lat = 0.0;
                tagXUtmPosition standard;
                if (!XfnUtmToGeo(position, lon, lat) || !XfnGeoToUtm(lon, lat, standard) ||
                    standard.zone != zone) {
                    continue;
                }
                XString text;
                ASSERT_TRUE(XfnGeoToMgrs(lon, lat, 5, text));
                tagXUtmPosition again;
                ASSERT_TRUE(XfnMgrsToUtm(text, again));
                wrong += again.easting != easting || again.northing != northing;
                ++tried;
            }
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(tried, 1000);
}

TEST(Mgrs, RefusesWhatIsNoReference)
{
    for (const char* text :
         {"", "52S", "52", "MGRS", "INV", "00SCG1234512345", "61SCG1234512345", "52ICG1234512345",
          "52SIG1234512345", "52SCG123451234", "52SCG12345-1234", "52SCG1234512345678901234567890",
          "52SCG\xEC\x84\x9C", "38SMB 4414O 84706", "ZZZ", "A", "52SAA0000000000 x"}) {
        double lon = 5.0, lat = 5.0;
        EXPECT_FALSE(XCoordinateTransformation::MGRS_TO_WGP(text, lon, lat)) << text;
        EXPECT_EQ(lon, kXNotSet) << text;
        double easting = 0.0, northing = 0.0;
        int zone = 9, north = 9;
        EXPECT_FALSE(XCoordinateTransformation::MGRS_TO_UTM(text, easting, northing, zone, north));
        EXPECT_EQ(northing, kXNotSet) << text;
        EXPECT_EQ(zone, 0);
    }
    double easting = 0.0, northing = 0.0;
    int zone = 0, north = 0;
    ASSERT_TRUE(
        XCoordinateTransformation::MGRS_TO_UTM("56HLH3490052288", easting, northing, zone, north));
    EXPECT_EQ(zone, 56);
    EXPECT_EQ(north, 0);
    EXPECT_DOUBLE_EQ(easting, 334900.0);
    EXPECT_DOUBLE_EQ(northing, 6252288.0);
}

TEST(Mgrs, UtmModesAndLimits)
{
    const struct
    {
        double lon, lat;
        int mode, zone;
    } cases[] = {
        {5.0, 60.0, 2, 32},     {5.0, 60.0, 1, 31},   {15.6267, 78.2232, 1, 33},
        {180.0, 10.0, 1, 1},    {-180.0, 10.0, 2, 1}, {179.999, 10.0, 1, 60},
        {151.2, -33.8, 2, -56}, {540.0, 10.0, 1, 1},  {0.0, 84.5, 2, 0},
        {0.0, -81.0, 2, 0},     {0.0, 91.0, 2, 0},    {kNan, 10.0, 2, 0},
        {10.0, kNan, 2, 0},     {10.0, 10.0, 0, 0},   {kXNotSet, kXNotSet, 2, 0},
    };
    for (const auto& row : cases) {
        double easting = 0.0, northing = 0.0;
        int zone = 99;
        const int done = XCoordinateTransformation::WGP_TO_UTM(row.lon, row.lat, row.mode, easting,
                                                               northing, zone);
        EXPECT_EQ(done != 0, row.zone != 0) << row.lon << ' ' << row.lat << ' ' << row.mode;
        EXPECT_EQ(zone, row.zone) << row.lon << ' ' << row.lat << ' ' << row.mode;
        if (!done) {
            EXPECT_EQ(easting, kXNotSet);
        }
    }
    XString text("left over");
    EXPECT_FALSE(XCoordinateTransformation::WGP_TO_MGRS(kXNotSet, kXNotSet, text));
    EXPECT_TRUE(text.IsEmpty());
    for (const double pole : {90.0, -90.0})
        EXPECT_TRUE(XfnGeoToMgrs(0.0, pole, 5, text));
    tagXUtmPosition position;
    position.zone = 61;
    double lon = 0.0, lat = 0.0;
    EXPECT_FALSE(XfnUtmToGeo(position, lon, lat));
    position.zone = 52;
    position.easting = 1e12;
    EXPECT_FALSE(XfnUtmToGeo(position, lon, lat));
    EXPECT_EQ(lat, kXNotSet);
}

TEST(Geodesy, Distances)
{
    // T. Vincenty, Survey Review 23(176), 1975, line (a) on the Bessel ellipsoid
    const double bessel = 6377397.155, besselFlattening = 1.0 / 299.1528128;
    double distance = 0.0, azimuth1 = 0.0, azimuth2 = 0.0;
    const double lat1 = 55.0 + 45.0 / 60, lat2 = -(33.0 + 26.0 / 60);
    const double lon2 = 108.0 + 13.0 / 60;
    ASSERT_TRUE(XfnGeodesicInverse(0, lat1, lon2, lat2, distance, azimuth1, azimuth2, bessel,
                                   besselFlattening));
    EXPECT_NEAR(distance, 14110526.170, 0.001);
    EXPECT_NEAR(azimuth1, 96.0 + 36.0 / 60 + 8.79960 / 3600, 1e-8);
    EXPECT_NEAR(azimuth2, 137.0 + 52.0 / 60 + 22.01454 / 3600, 1e-8);
    double lon = 0.0, lat = 0.0;
    ASSERT_TRUE(XfnGeodesicDirect(0, lat1, azimuth1, distance, lon, lat, bessel, besselFlattening));
    EXPECT_NEAR(lon, lon2, 1e-10);
    EXPECT_NEAR(lat, lat2, 1e-10);

    EXPECT_DOUBLE_EQ(XfnCalcGeodeticDistance(10, 20, 30, 50, kXWgs84SemiMajor, kXWgs84Flattening),
                     XfnGeodesicDistance(20, 10, 50, 30));
    EXPECT_EQ(XfnGeodesicDistance(7, 8, 7, 8), 0.0);
    EXPECT_NEAR(XfnGeodesicDistance(179.5, 0, -179.5, 0), 111319.4908, 1e-3); // over the line
    EXPECT_NEAR(XfnGeodesicDistance(0, 90, 123, 90), 0.0, 1e-6);              // one pole
    EXPECT_NEAR(XfnGeodesicDistance(0, 0, 180, 0), 20003931.4586, 1e-3);      // over a pole
    EXPECT_LT(XfnGeodesicDistance(0, 0.5, 179.5, -0.5), 20003931.5);          // nearly antipodal

    const double bad[][6] = {{kNan, 0, 0, 0, 1, 0}, {0, 91, 0, 0, 1, 0},  {0, 0, kXNotSet, 0, 1, 0},
                             {0, 0, 0, 0, 0, 0},    {0, 0, 0, 0, -5, 0},  {0, 0, 0, 0, 1, 1},
                             {0, 0, 0, 0, kNan, 0}, {0, 0, 0, 0, 1, kNan}};
    for (const auto& b : bad) {
        EXPECT_EQ(XfnGeodesicDistance(b[0], b[1], b[2], b[3], b[4], b[5]), kXNotSet);
    }
}

TEST(Geodesy, Areas)
{
    // an octant of the ellipsoid is an eighth of its surface, 510065621.724 km2
    const double lon[] = {0, 90, 0};
    const double lat[] = {0, 0, 90};
    double area = 0.0, perimeter = 0.0;
    ASSERT_TRUE(XfnGeodesicArea(lon, lat, 3, area, perimeter));
    EXPECT_NEAR(area, 510065621724089.0 / 8, 10.0);
    const double lonBack[] = {0, 0, 90};
    const double latBack[] = {0, 90, 0};
    double reversed = 0.0;
    ASSERT_TRUE(XfnGeodesicArea(lonBack, latBack, 3, reversed, perimeter));
    EXPECT_NEAR(reversed, -area, 1.0);

    const double around[] = {0, 120, -120};
    const double cap[] = {89, 89, 89};
    ASSERT_TRUE(XfnGeodesicArea(around, cap, 3, area, perimeter)); // holds the pole
    EXPECT_GT(area, 1e10);
    EXPECT_LT(area, 2e11);
    const double acrossLon[] = {179, -179, -179, 179};
    const double hereLon[] = {9, 11, 11, 9};
    const double boxLat[] = {10, 10, 12, 12};
    double here = 0.0;
    ASSERT_TRUE(XfnGeodesicArea(acrossLon, boxLat, 4, area, perimeter));
    ASSERT_TRUE(XfnGeodesicArea(hereLon, boxLat, 4, here, perimeter));
    EXPECT_NEAR(area, here, 1.0); // the date line is a line like any other

    ASSERT_TRUE(XfnGeodesicArea(lon, lat, 2, area, perimeter));
    EXPECT_EQ(area, 0.0);
    ASSERT_TRUE(XfnGeodesicArea(nullptr, nullptr, 0, area, perimeter));
    EXPECT_FALSE(XfnGeodesicArea(nullptr, nullptr, 3, area, perimeter));
    EXPECT_FALSE(XfnGeodesicArea(lon, lat, -1, area, perimeter));
    const double bad[] = {0, kNan, 0};
    EXPECT_FALSE(XfnGeodesicArea(lon, bad, 3, area, perimeter));
    EXPECT_EQ(area, kXNotSet);
}

TEST(Dms, SplitAndJoin)
{
    const struct
    {
        double value;
        int d, m;
        double s;
    } cases[] = {
        {0.0, 0, 0, 0.0},
        {37.5, 37, 30, 0.0},
        {-5.5, -5, 30, 0.0},
        {-0.5, 0, -30, 0.0},
        {-0.001, 0, 0, -3.6},
        {30.0 - 1e-13, 30, 0, 0.0}, // prints as a full degree, so it is one
        {29.0 + 59.0 / 60 + 59.99999 / 3600, 29, 59, 59.99999},
        {kNan, 0, 0, 0.0},
        {1e300, 0, 0, 0.0},
    };
    for (const auto& row : cases) {
        int d = 9, m = 9;
        double s = 9.0;
        XfnSplitDegrees(row.value, d, m, s);
        EXPECT_EQ(d, row.d) << row.value;
        EXPECT_EQ(m, row.m) << row.value;
        EXPECT_NEAR(s, row.s, 1e-9) << row.value;
        double joined = 0.0;
        XfnConvDms2Deg(d, m, s, joined);
        if (std::fabs(row.value) < 1e9) {
            EXPECT_NEAR(joined, row.value, 1e-12) << row.value;
        }
    }
    double value = 0.0;
    XfnConvDms2Deg(-5, 30, 36.0, value);
    EXPECT_NEAR(value, -5.51, 1e-12);
}

TEST(Dms, TextNeverShowsSixty)
{
    const struct
    {
        double value;
        XDmsAxis axis;
        int decimals;
        const char* text;
    } cases[] = {
        {126.97796, XDmsAxis::Longitude, 2, "126°58'40.66\"E"},
        {-0.0, XDmsAxis::Latitude, 0, "0°00'00\"N"},
        {-0.0001, XDmsAxis::Longitude, 1, "0°00'00.4\"W"},
        {-0.00001, XDmsAxis::Longitude, 0, "0°00'00\"E"}, // nothing is left of the west
        {59.9999999, XDmsAxis::Latitude, 2, "60°00'00.00\"N"},
        {-90.0, XDmsAxis::Latitude, 3, "90°00'00.000\"S"},
        {90.0000001, XDmsAxis::Latitude, 3, ""},
        {kXNotSet, XDmsAxis::Longitude, 3, ""},
        {kNan, XDmsAxis::Longitude, 3, ""},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(XfnFormatDms(row.value, row.axis, row.decimals), row.text) << row.value;
    }
}

} // namespace
