#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XInterProjWarp.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace {

XSpatialReference MakeReference(int epsg)
{
    XSpatialReference reference;
    EXPECT_TRUE(reference.importFromEPSG(epsg)) << epsg;
    return reference;
}

/// Pixel (x, y) holds y * 4096 + x.
std::unique_ptr<XDMBandMemory> MakePlacedBand(int epsg, double ulX, double ulY, double pixel,
                                              int width, int height)
{
    auto band = XfnMakeBand(kXInt32, width, height, [](int x, int y) { return y * 4096 + x; });
    XBandGeometry geometry;
    geometry.SetNorthUp(ulX, ulY, pixel, pixel);
    band->SetGeometry(geometry);
    *band->GetSR() = MakeReference(epsg);
    return band;
}

struct tagScene
{
    const char* name;
    int own;
    double ulX, ulY, pixel;
    int width, height, target;
    int fewest; ///< pixels of the 21 x 21 probed that have a place in the target
};

const tagScene kScenes[] = {
    {"neighbouring zones", 32652, 2e5, 4.3e6, 30.0, 1500, 1200, 32651, 441},
    {"degrees", 32652, 3e5, 4.3e6, 10.0, 900, 900, 4326, 441},
    {"a continent", 4326, -10.0, 70.0, 0.05, 1000, 700, 3035, 441},
    {"the world with its poles", 4326, -179.75, 89.75, 0.5, 720, 360, 3857, 380},
    {"around a pole", 4326, -179.9, 89.9, 0.2, 1800, 150, 3413, 420},
    {"longitudes to 360", 4326, 0.25, 59.75, 0.5, 720, 240, 3857, 420},
    {"across the date line", 32660, 6.5e5, 7e6, 500.0, 400, 400, 4326, 441},
    {"more than a zone holds", 4326, -179.75, 89.75, 0.5, 720, 360, 32652, 100},
    {"one row", 32652, 3e5, 4.3e6, 100.0, 400, 1, 3857, 21},
};

std::unique_ptr<XDMBandMemory> MakePlacedBand(const tagScene& s)
{
    return MakePlacedBand(s.own, s.ulX, s.ulY, s.pixel, s.width, s.height);
}

TEST(XDMCompositePlace, IsTrueToTheReferencesEverywhere)
{
    for (const tagScene& scene : kScenes) {
        SCOPED_TRACE(scene.name);
        const auto band = MakePlacedBand(scene);
        const XSpatialReference target = MakeReference(scene.target);
        XDMCompManager manager;
        manager.SetSR(&target);
        XDMComposite* composite = manager.NewXDMComposite(0);
        composite->SetBand(band.get(), 0);
        ASSERT_TRUE(manager.AddXDMComposite(composite));
        EXPECT_GE(composite->GetPlacementMiss(), 0.0);
        EXPECT_LE(composite->GetPlacementMiss(), 0.1);

        const auto [left, right, bottom, top] = XfnBoundsOf(*composite);
        XCoordinateTransformation there(*band->GetSR(), target), back(target, *band->GetSR());
        std::set<std::pair<int, int>> placed;
        for (int k = 0; k < 441; ++k) {
            // beside the nodes of any grid, and on the border
            const int column = (scene.width - 1) * (k % 21) / 20;
            const int row = (scene.height - 1) * (k / 21) / 20;
            double x = column, y = row;
            band->GetPixelToWorld().Warp(x, y);
            const double ownX = x, ownY = y;
            if (!there.TransformPt(x, y)) continue;
            double againX = x, againY = y;
            if (!back.TransformPt(againX, againY)) continue;
            againX += 360.0 * (scene.own == 4326 ? std::round((ownX - againX) / 360.0) : 0.0);
            if (std::hypot(againX - ownX, againY - ownY) > scene.pixel * 0.01) continue;
            if (scene.target == 4326) x = XfnTurnTowards(x, (left + right) * 0.5, 360.0);
            placed.emplace(column, row);
            double atX = x, atY = y;
            composite->ConvWorldToPixelCoord(atX, atY, 0);
            EXPECT_NEAR(atX, column, 0.11) << row;
            EXPECT_NEAR(atY, row, 0.11) << column;
            EXPECT_EQ(composite->ReadPixel(0, x, y), row * 4096 + column);
            composite->ConvPixelToWorldCoord(atX = column, atY = row, 0);
            composite->ConvWorldToPixelCoord(atX, atY, 0);
            EXPECT_NEAR(std::hypot(atX - column, atY - row), 0.0, 0.25) << column << ' ' << row;
            // where the reference ceases to hold the extent has no clear end
            const double share = scene.target == 32652 ? 0.25 : 0.03;
            const double slackX = (right - left) * share, slackY = (top - bottom) * share;
            EXPECT_TRUE(x > left - slackX - 1e-9 && x < right + slackX + 1e-9) << x;
            EXPECT_TRUE(y > bottom - slackY - 1e-9 && y < top + slackY + 1e-9) << y;
        }
        EXPECT_GE(static_cast<int>(placed.size()), std::min(scene.fewest, scene.height * 21));
    }
}

TEST(XDMCompositePlace, DrawsWhatItReads)
{
    for (const tagScene& scene : kScenes) {
        SCOPED_TRACE(scene.name);
        const auto band = MakePlacedBand(scene);
        const XSpatialReference target = MakeReference(scene.target);
        XDMComposite composite(0);
        composite.PlaceInReference(&target);
        composite.SetBand(band.get(), 0); // placed although it comes later
        const double last = (scene.height - 1) * 4096.0 + scene.width;
        composite.SetCutRange(0.0, last, 0);
        composite.SetDrawLevel(0);
        XBackBuffer buffer;
        buffer.Resize(nullptr, 160, 120);
        buffer.GetImage().fill(0xFF00FF00u);
        // beside the middle of the band, at about one band pixel a screen pixel
        double x = (scene.width - 1) * 0.4, y = (scene.height - 1) * 0.5;
        double nextX = x + 1.0, nextY = y;
        composite.ConvPixelToWorldCoord(x, y, 0);
        composite.ConvPixelToWorldCoord(nextX, nextY, 0);
        ASSERT_TRUE(buffer.SetWorldToCenter(x, y));
        const double length = std::hypot(nextX - x, nextY - y);
        ASSERT_TRUE(buffer.SetWorldPerPixel(length, length));
        ASSERT_TRUE(XfnDrawAll(composite, buffer));
        int differences = 0, drawn = 0;
        for (int row = 0; row < 120; ++row) {
            for (int column = 0; column < 160; ++column) {
                double worldX = column + 0.5, worldY = row + 0.5;
                buffer.ConvPixelToWorldCoord(worldX, worldY);
                const double value = composite.ReadPixel(0, worldX, worldY);
                const auto word = buffer.GetRow(row)[column];
                drawn += word != 0xFF00FF00u;
                const int level = static_cast<int>(value / last * 255.0 + 0.5);
                const auto expected =
                    value == kXNoData ? 0xFF00FF00u : 0xFF000000u | level * 0x10101u;
                differences += word != expected;
            }
        }
        EXPECT_GT(drawn, 100);
        EXPECT_LE(differences, 160 * 120 / 50); // positions between exact ones are interpolated
    }
}

TEST(XDMCompositePlace, FollowsTheManagerButNotOverTheCallersWarp)
{
    const auto band = MakePlacedBand(32652, 3e5, 4.3e6, 10.0, 500, 400);
    const XSpatialReference own = MakeReference(32652), degrees = MakeReference(4326);
    XSpatialReference pixels;
    pixels.SetCoordType(1);
    const auto leftOf = [](const XDMComposite& composite) { return XfnBoundsOf(composite)[0]; };
    XDMCompManager manager;
    XDMComposite* composite = manager.NewXDMComposite(1);
    for (int ch = 0; ch < 3; ++ch)
        composite->SetBand(band.get(), ch);
    manager.AddXDMComposite(composite);
    EXPECT_EQ(leftOf(*composite), 3e5) << "no reference: the band's own";
    manager.SetSR(&degrees);
    EXPECT_NEAR(leftOf(*composite), 126.6, 0.2);
    XDMComposite clone;
    clone.CloneXDMComposite(composite);
    EXPECT_EQ(leftOf(clone), leftOf(*composite));
    manager.SetSR(&own);
    EXPECT_EQ(leftOf(*composite), 3e5);
    EXPECT_NEAR(leftOf(clone), 126.6, 0.2);
    manager.SetSR(&degrees);
    manager.SetSR(&pixels);
    EXPECT_EQ(leftOf(*composite), 3e5);

    XWarp2D mine;
    mine.SetAffine(0.0, 1.0, 0.0, 0.0, 0.0, -1.0);
    composite->SetWarpCoeff(mine, 0);
    manager.SetSR(&degrees);
    EXPECT_EQ(composite->GetWarpCoeff(0).GetPolynomial(), mine.GetPolynomial());
    EXPECT_NE(composite->GetWarpCoeff(1).GetPolynomial(), mine.GetPolynomial());
    composite->SetBand(band.get(), 0);
    EXPECT_EQ(composite->GetWarpCoeff(0).GetPolynomial(),
              composite->GetWarpCoeff(1).GetPolynomial());
    composite->SetPixelBaseMode(1);
    EXPECT_EQ(leftOf(*composite), 0.0);
    composite->SetPixelBaseMode(0);
    EXPECT_NEAR(leftOf(*composite), 126.6, 0.2);

    // nothing leads from a plane of its own to the earth
    XSpatialReference plane;
    ASSERT_TRUE(plane.importFromWkt("LOCAL_CS[\"site\",UNIT[\"metre\",1]]"));
    manager.SetSR(&plane);
    EXPECT_LT(composite->GetPlacementMiss(), 0.0);
    EXPECT_EQ(leftOf(*composite), 3e5);
}

TEST(XDMCompositePlace, ChoosesTheLevelOfASmallPictureOnALargeSurface)
{
    const auto band = MakePlacedBand(32652, 3e5, 4.3e6, 10.0, 2048, 2048);
    const XSpatialReference degrees = MakeReference(4326);
    XDMComposite composite(0);
    composite.SetBand(band.get(), 0);
    composite.PlaceInReference(&degrees);
    ASSERT_GT(composite.GetMaxLevel(), 2);
    XBackBuffer buffer;
    buffer.Resize(nullptr, 1000, 800);
    buffer.SetWorldPerPixel(0.01, 0.01); // the band takes some 24 pixels
    buffer.SetWorldToCenter(129.0, 36.0);
    EXPECT_EQ(composite.GetHighestLevelForTarget(&buffer, 124.0, 32.0, 134.0, 40.0),
              composite.GetMaxLevel());
}

TEST(XDMCompositePlace, CarriesVectorsOver)
{
    XvcBase base;
    auto* layer = new XvcLayer;
    base.AddTail(layer);
    for (const double x : {127.0, 128.0}) {
        auto* point = new XvcPoint;
        point->SetVertex(x, 37.0 + (x - 127.0) * 0.5, 0.0);
        point->CalcRange();
        layer->AddTail(point);
    }
    layer->CalcRange();
    base.CalcRange();
    XDMVand vand;
    vand.SetBase(&base);
    const XSpatialReference degrees = MakeReference(4326), zone = MakeReference(32652);
    vand.SetSR(&degrees);
    XDMCompManager manager;
    manager.SetSR(&zone);
    XDMComposite* composite = manager.NewXDMComposite(3);
    composite->SetVand(&vand);
    manager.AddXDMComposite(composite);
    EXPECT_LT(composite->GetPlacementMiss(), 1.0);
    XCoordinateTransformation there(degrees, zone);
    double x = 127.0, y = 37.0;
    ASSERT_TRUE(there.TransformPt(x, y));
    EXPECT_NEAR(XfnBoundsOf(*composite)[0], x, 2000.0); // the box bends by some hundred metres
    EXPECT_NEAR(XfnBoundsOf(*composite)[2], y, 2000.0);
}

TEST(XfnCalcWarpCoeffInterProj, FitsBoxesPointsAndLines)
{
    const XSpatialReference degrees = MakeReference(4326), zone = MakeReference(32652),
                            date = MakeReference(32660);
    struct tagCase
    {
        const char* name;
        double minX, minY, maxX, maxY;
        const XSpatialReference* from;
        const XSpatialReference* to;
        int isInverse;
        double most; // miss; below 0: no warp
    };
    const XSpatialReference none;
    const tagCase cases[] = {
        {"a scene", 127.0, 37.0, 128.0, 38.0, &degrees, &zone, 0, 1.0},
        {"back", 127.0, 37.0, 128.0, 38.0, &degrees, &zone, 1, 1e-5},
        {"a point", 127.0, 37.0, 127.0, 37.0, &degrees, &zone, 0, 1e-3},
        {"a line", 127.0, 37.0, 127.5, 37.0, &degrees, &zone, 0, 1.0},
        {"the date line", 6e5, 6e6, 8e5, 6.2e6, &date, &degrees, 0, 1e-3},
        {"the same", 0.0, 0.0, 1.0, 1.0, &zone, &zone, 0, 0.0},
        {"an empty reference", 127.0, 37.0, 128.0, 38.0, &degrees, &none, 0, -1.0},
        {"no number", NAN, 37.0, 128.0, 38.0, &degrees, &zone, 0, -1.0},
        {"beyond the pole", 127.0, 91.0, 128.0, 92.0, &degrees, &zone, 0, -1.0},
    };
    for (const tagCase& c : cases) {
        SCOPED_TRACE(c.name);
        double miss = 0.0;
        const XWarp2D warp = XfnCalcWarpCoeffInterProj(3, c.minX, c.minY, c.maxX, c.maxY, c.from,
                                                       c.to, c.isInverse, 4, 4, &miss);
        ASSERT_EQ(warp.IsValid() != 0, c.most >= 0.0);
        if (c.most < 0.0) {
            EXPECT_EQ(miss, kXNotSet);
            continue;
        }
        EXPECT_LE(miss, c.most);
        double x = (c.minX + c.maxX) / 2, y = (c.minY + c.maxY) / 2, exactX = x, exactY = y;
        XCoordinateTransformation(*c.from, *c.to).TransformPt(exactX, exactY);
        exactX += c.from == &date ? 360.0 : 0.0; // runs on beyond 180
        if (c.isInverse) {
            std::swap(x, exactX);
            std::swap(y, exactY);
        }
        warp.WarpPoint(x, y);
        EXPECT_NEAR(x, exactX, c.most + 1e-9);
        EXPECT_NEAR(y, exactY, c.most + 1e-9);
    }
}

} // namespace
