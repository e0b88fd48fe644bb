#include "foundation/base/XSentinels.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XSpatialReference.h"

#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

namespace {

XSpatialReference FromEpsg(int code)
{
    XSpatialReference reference;
    reference.importFromEPSG(code);
    return reference;
}

struct ProjectionCase
{
    const char* projection;
    const char* ellipsoid;
    double lat, lon, x, y;
};

// Numerical examples of J. P. Snyder, Map Projections: A Working Manual, USGS Professional Paper
// 1395 (1987), published to the decimetre.
const ProjectionCase kPublished[] = {
    {"+proj=tmerc +k=0.9996 +lat_0=0 +lon_0=-75", "clrk66", 40.5, -73.5, 127106.5, 4484124.4},
    {"+proj=lcc +lat_1=33 +lat_2=45 +lat_0=23 +lon_0=-96", "clrk66", 35, -75, 1894410.9, 1564649.5},
    {"+proj=stere +lat_0=-90 +lat_ts=-71 +lon_0=-100", "intl", -75, 150, -1540033.6, -560526.4},
    {"+proj=poly +lat_0=30 +lon_0=-96", "clrk66", 40, -75, 1776774.5, 1319657.8},
    {"+proj=laea +lat_0=40 +lon_0=-100", "clrk66", 30, -110, -965932.1, -1056814.9},
    {"+proj=sinu +lon_0=-90", "clrk66", -50, -75, 1075471.5, -5540628.0},
};

TEST(CoordinateTransformation, PublishedProjections)
{
    for (const auto& row : kPublished) {
        SCOPED_TRACE(row.projection);
        const XString ellipsoid = XString(" +ellps=") + row.ellipsoid + " +no_defs";
        XSpatialReference geographic;
        XSpatialReference projected;
        ASSERT_TRUE(geographic.importFromProj4(XString("+proj=longlat") + ellipsoid));
        ASSERT_TRUE(projected.importFromProj4(XString(row.projection) + ellipsoid + " +units=m"));
        const auto there = XfnCreateCoordTrans(&geographic, &projected);
        const auto back = XfnCreateCoordTrans(&projected, &geographic);
        ASSERT_TRUE(there && back);
        double x = row.lon, y = row.lat;
        ASSERT_TRUE(there->TransformPt(x, y));
        EXPECT_NEAR(x, row.x, 0.051); // half of the last published digit
        EXPECT_NEAR(y, row.y, 0.051);
        ASSERT_TRUE(back->TransformPt(x, y));
        EXPECT_NEAR(x, row.lon, 2e-8); // a millimetre: the way back from equal area is a series
        EXPECT_NEAR(y, row.lat, 2e-8);
    }
}

TEST(CoordinateTransformation, EastingFirstWhateverTheAuthoritySays)
{
    const XSpatialReference wgs = FromEpsg(4326);
    const struct
    {
        int code;
        double lon, lat, minX, maxX, minY, maxY;
    } cases[] = {
        {32652, 127.0, 37.5, 3.2e5, 3.3e5, 4.1e6, 4.2e6},
        {5186, 127.0, 37.5, 1.99e5, 2.01e5, 5.4e5, 5.5e5}, // northing first in the database
        {3031, 90.0, -70.0, 2.1e6, 2.3e6, -1.0, 1.0},      // axes named after directions
        {4326, 127.0, 37.5, 126.999, 127.001, 37.499, 37.501},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.code);
        const XSpatialReference target = FromEpsg(row.code);
        XCoordinateTransformation transformation(wgs, target);
        double x = row.lon, y = row.lat;
        ASSERT_TRUE(transformation.TransformPt(x, y));
        EXPECT_TRUE(x > row.minX && x < row.maxX) << x;
        EXPECT_TRUE(y > row.minY && y < row.maxY) << y;
    }
}

TEST(CoordinateTransformation, PointsFailOneByOne)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const double lon[] = {129.0, nan, 129.0, kXNotSet, 129.0, 129.0, infinity, 130.0};
    const double lat[] = {37.0, 37.0, 91.0, 37.0, kXNotSet, 1e300, 0.0, -37.0};
    const int expected[] = {1, 0, 0, 0, 0, 0, 0, 1};
    for (const int target : {32652, 4326}) { // with a computation, and with none to do
        SCOPED_TRACE(target);
        XCoordinateTransformation transformation(FromEpsg(4326), FromEpsg(target));
        std::vector<double> x(lon, lon + 8);
        std::vector<double> y(lat, lat + 8);
        int ok[8];
        EXPECT_TRUE(transformation.Transform(8, x.data(), y.data(), nullptr, ok));
        for (int i = 0; i < 8; ++i) {
            EXPECT_EQ(ok[i], expected[i]) << i;
            EXPECT_EQ(x[i] == kXNotSet && y[i] == kXNotSet, expected[i] == 0) << i;
        }
        EXPECT_FALSE(transformation.Transform(1, &x[1], &y[1]));
        EXPECT_FALSE(transformation.Transform(0, x.data(), y.data()));
    }
}

TEST(CoordinateTransformation, BlockSeamsLoseNothing)
{
    XCoordinateTransformation transformation(FromEpsg(4326), FromEpsg(32652));
    for (const int count : {4095, 4096, 4097, 8192, 8193}) {
        std::vector<double> x(count, 129.0);
        std::vector<double> y(count, 37.0);
        std::vector<int> ok(count, -1);
        y.back() = 95.0;
        x[4094] = 129.5;
        ASSERT_TRUE(transformation.Transform(count, x.data(), y.data(), nullptr, ok.data()));
        EXPECT_NEAR(x[0], 500000.0, 1e-6);
        EXPECT_EQ(ok.back(), 0);
        EXPECT_EQ(x.back(), kXNotSet);
        if (count > 4095) {
            EXPECT_GT(x[4094], 540000.0);
        }
    }
}

TEST(CoordinateTransformation, DomainAntimeridianAndPoles)
{
    const XSpatialReference wgs = FromEpsg(4326);
    XSpatialReference half; // shows one half of the earth only
    ASSERT_TRUE(half.importFromProj4("+proj=ortho +lat_0=0 +lon_0=127 +ellps=sphere +no_defs"));
    XCoordinateTransformation toHalf(wgs, half);
    double x = -53.0, y = 0.0;
    EXPECT_FALSE(toHalf.TransformPt(x, y));
    EXPECT_EQ(x, kXNotSet);
    XCoordinateTransformation fromHalf(half, wgs);
    x = 7e6; // outside the disc
    y = 0.0;
    EXPECT_FALSE(fromHalf.TransformPt(x, y));
    XCoordinateTransformation zone52(wgs, FromEpsg(32652));
    x = -141.0, y = 0.0;
    EXPECT_FALSE(zone52.TransformPt(x, y)); // a quarter turn away lies at infinity

    XCoordinateTransformation polar(wgs, FromEpsg(3031));
    x = 77.0, y = -90.0;
    ASSERT_TRUE(polar.TransformPt(x, y));
    EXPECT_NEAR(std::hypot(x, y), 0.0, 1e-6);

    XCoordinateTransformation zone1(wgs, FromEpsg(32601));
    XCoordinateTransformation zone1Back(FromEpsg(32601), wgs);
    double west = -180.0, east = 180.0, latWest = 10.0, latEast = 10.0;
    ASSERT_TRUE(zone1.TransformPt(west, latWest) && zone1.TransformPt(east, latEast));
    EXPECT_NEAR(west, east, 1e-6); // one meridian, whichever way it is written
    x = west - 50000.0;
    y = latWest;
    ASSERT_TRUE(zone1Back.TransformPt(x, y));
    EXPECT_GT(x, 179.0); // west of the line the longitude is positive
    EXPECT_LE(x, 180.0);

    XCoordinateTransformation none(wgs, XSpatialReference());
    x = 1.0, y = 2.0;
    int ok = 7;
    EXPECT_FALSE(none.IsValid());
    EXPECT_FALSE(none.Transform(1, &x, &y, nullptr, &ok));
    EXPECT_EQ(ok, 0);
    EXPECT_EQ(x, kXNotSet);
    EXPECT_EQ(XfnCreateCoordTrans(nullptr, &wgs), nullptr);
}

TEST(CoordinateTransformation, AngularUnitsOfTheSystemCount)
{
    XSpatialReference grads;
    ASSERT_TRUE(grads.importFromLVC(4326, 9105, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    XCoordinateTransformation transformation(grads, FromEpsg(4326));
    double x = 100.0;
    double y = 99.0; // 89.1 degrees: no latitude beyond the pole
    ASSERT_TRUE(transformation.TransformPt(x, y));
    EXPECT_NEAR(x, 90.0, 1e-9);
    EXPECT_NEAR(y, 89.1, 1e-9);
    x = 0.0, y = 100.5;
    EXPECT_FALSE(transformation.TransformPt(x, y));
}

TEST(CoordinateTransformation, OneObjectAThreadFromOneReference)
{
    const XSpatialReference wgs = FromEpsg(4326);
    const XSpatialReference utm = FromEpsg(32652);
    std::vector<std::jthread> threads;
    std::vector<double> results(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            XCoordinateTransformation transformation(wgs, utm);
            double x = 129.0, y = 37.0;
            if (transformation.TransformPt(x, y)) results[i] = x;
        });
    }
    threads.clear(); // joins
    for (const double easting : results)
        EXPECT_NEAR(easting, 500000.0, 1e-6);
}

TEST(CoordinateTransformation, ACleanupTakesNothingFromOtherThreads)
{
    const XSpatialReference utm = FromEpsg(32652);
    std::atomic<int> failures{0}, isOver{0};
    std::vector<std::jthread> threads;
    for (int i = 0; i < 2; ++i)
        threads.emplace_back([&] {
            while (!isOver) {
                const OGRSpatialReference* shared = OGRSpatialReference::GetWGS84SRS();
                if (!shared || !shared->IsGeographic()) ++failures;
            }
        });
    for (int i = 0; i < 200; ++i) {
        XfnCleanupCoord();
        double x = 129.0, y = 37.0;
        XCoordinateTransformation transformation(FromEpsg(4326), utm);
        if (!transformation.TransformPt(x, y)) ++failures;
    }
    isOver = 1;
    threads.clear(); // joins
    EXPECT_EQ(failures, 0);
}

} // namespace
