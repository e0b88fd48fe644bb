#include "foundation/base/XSentinels.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcAxis.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcGroup2.h"
#include "foundation/vector/XvcLegend.h"
#include "foundation/vector/XvcMLine.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"
#include "foundation/vector/XvcMeasureArea.h"
#include "foundation/vector/XvcMeasureDist.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRectangle.h"
#include "foundation/vector/XvcScaleBar.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

// What each class of geometry does by itself.

namespace {

// "1 L2 ..." as bytes: b and l set the byte order, a number with u is a count or type, others reals.
std::vector<unsigned char> Wkb(const std::string& words)
{
    std::vector<unsigned char> bytes;
    bool isLittle = true;
    const auto put = [&](std::uint64_t value, int size) {
        for (int i = 0; i < size; ++i) {
            const int shift = 8 * (isLittle ? i : size - 1 - i);
            bytes.push_back(static_cast<unsigned char>(value >> shift));
        }
    };
    for (std::size_t at = 0; at < words.size();) {
        const std::size_t end = std::min(words.find(' ', at), words.size());
        const std::string word = words.substr(at, end - at);
        at = end + 1;
        if (word == "b" || word == "l") {
            isLittle = word == "l";
            bytes.push_back(isLittle);
        } else if (word.back() == 'u') {
            put(std::stoul(word), 4);
        } else {
            const double value = word == "nan" ? std::nan("") : std::stoi(word);
            put(std::bit_cast<std::uint64_t>(value), 8);
        }
    }
    return bytes;
}

TEST(VectorShapes, WellKnownBinaryToText)
{
    const std::string ring = "5u 0 0 0 8 6 8 6 0 0 0 ", hole = "4u 1 1 2 1 1 2 1 1 ";
    const struct
    {
        const char* what;
        std::shared_ptr<XvcObj> object;
        std::string wkb;
        const char* text; // null: refused
    } cases[] = {
        {"big endian line", std::make_shared<XvcPolyline>(), "b 2u 2u 1 2 3 -4",
         "LINESTRING (1 2, 3 -4)"},
        {"heights and m", std::make_shared<XvcPolyline>(), "l 3002u 2u 1 2 5 9 3 4 6 9",
         "LINESTRING Z (1 2 5, 3 4 6)"},
        {"m only", std::make_shared<XvcPolyline>(), "l 2002u 2u 1 2 9 3 4 9",
         "LINESTRING (1 2, 3 4)"},
        {"extended heights", std::make_shared<XvcPolyline>(), "l 2147483650u 2u 1 2 5 3 4 nan",
         "LINESTRING Z (1 2 5, 3 4 0)"},
        {"empty line", std::make_shared<XvcPolyline>(), "l 2u 0u", "LINESTRING EMPTY"},
        {"a count that lies", std::make_shared<XvcPolyline>(), "l 2u 4294967295u 1 2", nullptr},
        {"no number", std::make_shared<XvcPolyline>(), "l 2u 2u 1 2 nan 3", nullptr},
        {"another kind", std::make_shared<XvcPolyline>(), "l 1u 1 2", nullptr},
        {"the closing vertex goes and comes", std::make_shared<XvcPolygon>(), "l 3u 1u " + ring,
         "POLYGON ((0 0, 0 8, 6 8, 6 0, 0 0))"},
        {"no ring", std::make_shared<XvcPolygon>(), "l 3u 0u", "POLYGON EMPTY"},
        {"an area of no ring", std::make_shared<XvcMeasureArea>(), "l 3u 0u", "POLYGON EMPTY"},
        {"no room for a hole", std::make_shared<XvcPolygon>(), "l 3u 2u " + ring + hole, nullptr},
        {"a hole", std::make_shared<XvcMPolygon>(), "l 3u 2u " + ring + hole,
         "MULTIPOLYGON (((0 0, 0 8, 6 8, 6 0, 0 0), (1 1, 2 1, 1 2, 1 1)))"},
        {"mixed byte orders", std::make_shared<XvcMPolygon>(),
         "b 6u 2u l 3u 1u " + ring + "b 3u 1u 4u 9 9 9 10 10 9 9 9",
         "MULTIPOLYGON (((0 0, 0 8, 6 8, 6 0, 0 0)), ((9 9, 9 10, 10 9, 9 9)))"},
        {"a line among polygons", std::make_shared<XvcMPolygon>(), "l 6u 1u l 2u 0u", nullptr},
        {"rings that are not there", std::make_shared<XvcMPolygon>(), "l 3u 99999999u 0u", nullptr},
        {"a rectangle", std::make_shared<XvcRectangle>(), "l 3u 1u 5u 6 8 0 8 0 0 6 0 6 8",
         "POLYGON ((0 0, 0 8, 6 8, 6 0, 0 0))"},
        {"a turned rectangle", std::make_shared<XvcRectangle>(), "l 3u 1u 5u 4 2 2 4 -1 1 1 -1 4 2",
         "POLYGON ((-1 1, 2 4, 4 2, 1 -1, -1 1))"},
        {"a slanting one", std::make_shared<XvcRectangle>(), "l 3u 1u 5u 0 0 1 8 7 8 6 0 0 0",
         nullptr},
        {"a straight line", std::make_shared<XvcLine>(), "l 2u 2u 1 2 3 4",
         "LINESTRING (1 2, 3 4)"},
        {"a bent one", std::make_shared<XvcLine>(), "l 2u 3u 1 2 3 4 5 7", nullptr},
        {"lines", std::make_shared<XvcMLine>(), "l 5u 1u b 2u 3u 1 2 3 4 5 7",
         "MULTILINESTRING ((1 2, 3 4), (3 4, 5 7))"},
        {"lines with heights", std::make_shared<XvcMLine>(), "l 1005u 1u l 1002u 2u 1 2 5 3 4 6",
         "MULTILINESTRING Z ((1 2 5, 3 4 6))"},
        {"polylines", std::make_shared<XvcMPolyline>(), "l 5u 2u l 2u 2u 1 2 3 4 l 2u 2u 5 6 7 8",
         "MULTILINESTRING ((1 2, 3 4), (5 6, 7 8))"},
        {"points, one empty", std::make_shared<XvcMPoint>(),
         "l 4u 3u l 1u 1 2 l 1u nan nan l 1001u 3 4 5", "MULTIPOINT Z ((1 2 0), (3 4 5))"},
        {"a single point", std::make_shared<XvcPolypoint>(), "l 1u 1 2", "MULTIPOINT ((1 2))"},
        {"poles", std::make_shared<XvcBspline>(), "l 2u 2u 0 0 16 32", nullptr},
        {"a collection", std::make_shared<XvcGroup>(),
         "l 7u 3u l 1u 1 2 b 7u 1u l 2u 2u 1 2 3 4 l 3u 2u " + ring + hole,
         "GEOMETRYCOLLECTION (POINT (1 2), GEOMETRYCOLLECTION (LINESTRING (1 2, 3 4)), "
         "MULTIPOLYGON (((0 0, 0 8, 6 8, 6 0, 0 0), (1 1, 2 1, 1 2, 1 1))))"},
        {"members that are not there", std::make_shared<XvcGroup>(), "l 7u 2u l 1u 1 2", nullptr},
        {"no shape of its own", std::make_shared<XvcEllipse>(), "l 3u 1u " + ring, nullptr},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const bool isSpline = XfnIsExactly(row.object.get(), "XvcBspline");
        auto bytes = Wkb(row.wkb);
        const std::size_t length = bytes.size();
        const XString before = row.object->ExportToWkt();
        XString error;
        for (std::size_t cut = 0; cut < length; ++cut) { // a copy, so that reads past it are seen
            const std::vector<unsigned char> part(bytes.begin(), bytes.begin() + cut);
            std::size_t size = cut;
            EXPECT_FALSE(row.object->ImportFromWkb(part.data(), size, error)) << cut;
            EXPECT_EQ(size, cut);
            EXPECT_EQ(row.object->ExportToWkt(), before);
        }
        bytes.push_back(0xFF); // of what stands behind
        std::size_t size = bytes.size();
        error.Empty();
        const int isGood = row.object->ImportFromWkb(bytes.data(), size, error);
        EXPECT_EQ(isGood != 0, row.text || isSpline);
        EXPECT_EQ(error.IsEmpty() != 0, isGood != 0);
        EXPECT_EQ(size, isGood ? length : length + 1);
        if (row.text) {
            EXPECT_STREQ(row.object->ExportToWkt(), row.text);
        }
    }
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "l 7u 1u ";
    auto bytes = Wkb(deep + "l 1u 1 2");
    std::size_t size = bytes.size();
    XString error;
    EXPECT_FALSE(XvcGroup().ImportFromWkb(bytes.data(), size, error));
}

TEST(VectorShapes, HolesGoToTheRingAroundThem)
{
    const auto square = [](double from, double to, bool isClockwise) {
        XvcPolygon ring;
        ring.Add(from, from);
        ring.Add(isClockwise ? from : to, isClockwise ? to : from);
        ring.Add(to, to);
        ring.Add(isClockwise ? to : from, isClockwise ? from : to);
        return ring;
    };
    XvcMPolygon area;
    area.AddPolygon(square(2, 8, true)); // the hole stands before what is around it
    area.AddPolygon(square(0, 10, false));
    area.AddPolygon(square(4, 6, false));  // an island
    area.AddPolygon(square(0, 10, false)); // the same ring once more
    area.RemoveAt(3);
    const char* const island = "MULTIPOLYGON (((0 0, 10 0, 10 10, 0 10, 0 0), "
                               "(2 2, 2 8, 8 8, 8 2, 2 2)), ((4 4, 6 4, 6 6, 4 6, 4 4)))";
    EXPECT_STREQ(area.ExportToWkt(), island);
    const struct
    {
        double at;
        bool alternate, winding;
    } places[] = {{1, true, true}, {3, false, false}, {5, true, true}, {11, false, false}};
    tagXHitFlag flag;
    for (const auto& place : places) {
        area.SetPolyFillMode(XvcMPolygon::kAlternate);
        EXPECT_EQ(area.HitTest({place.at, place.at}, 0.1, flag) != nullptr, place.alternate);
        area.SetPolyFillMode(XvcMPolygon::kWinding);
        EXPECT_EQ(area.HitTest({place.at, place.at}, 0.1, flag) != nullptr, place.winding);
    }
    EXPECT_STREQ(area.ExportToWkt(), island);
    area.RemoveAt(0); // by the winding rule the inner one is no hole then
    EXPECT_TRUE(area.HitTest({5, 5}, 0.1, flag));
    EXPECT_STREQ(area.ExportToWkt(), "MULTIPOLYGON (((0 0, 10 0, 10 10, 0 10, 0 0)), "
                                     "((4 4, 6 4, 6 6, 4 6, 4 4)))");
    area.SetPolyFillMode(7);
    EXPECT_EQ(area.GetPolyFillMode(), XvcMPolygon::kWinding);
}

TEST(VectorShapes, BsplineCurves)
{
    const auto curve = [](XvcBspline& spline) {
        std::vector<tagXVector3> made;
        spline.GetCurve(made);
        return made;
    };
    XvcBspline bezier; // as many poles as its order: a Bezier curve
    for (const tagXVector3 pole : {tagXVector3(0, 0, 0), {0, 8, 0}, {8, 8, 0}, {8, 0, 4}})
        bezier.AddPole(pole);
    bezier.SetResolution(8);
    auto made = curve(bezier);
    ASSERT_EQ(made.size(), 9u);
    for (std::size_t i = 0; i < made.size(); ++i) {
        const double t = static_cast<double>(i) / 8, s = 1 - t;
        EXPECT_NEAR(made[i].x, 8 * (3 * s * t * t + t * t * t), 1e-14);
        EXPECT_NEAR(made[i].y, 24 * s * t, 1e-14);
        EXPECT_NEAR(made[i].z, 4 * t * t * t, 1e-14);
    }
    bezier.SetOrder(9); // more than there are poles
    EXPECT_EQ(curve(bezier), made);
    bezier.AddPole(kXNotSet, 0);
    EXPECT_EQ(curve(bezier), made);

    XvcBspline open; // uniform cubic: a span begins at (p0 + 4 p1 + p2) / 6
    for (int i = 0; i < 6; ++i)
        open.AddPole(i * i, i);
    open.SetType(XvcBspline::kOpen);
    open.SetResolution(1);
    made = curve(open);
    ASSERT_EQ(made.size(), 4u);
    EXPECT_NEAR(made[0].x, (0 + 4 * 1 + 4) / 6.0, 1e-14);
    EXPECT_NEAR(made[3].x, (9 + 4 * 16 + 25) / 6.0, 1e-13);

    XvcBspline closed;
    for (const tagXVector3 pole : {tagXVector3(0, 0), {6, 0}, {6, 6}, {0, 6}})
        closed.AddPole(pole);
    closed.SetType(XvcBspline::kClosed);
    closed.SetResolution(4);
    for (const int order : {2, 3, 4, 32}) {
        closed.SetOrder(order);
        made = curve(closed);
        ASSERT_EQ(made.size(), 17u);
        EXPECT_NEAR(made.front().x, made.back().x, 1e-13) << order;
        EXPECT_NEAR(made.front().y, made.back().y, 1e-13) << order;
        for (const auto& vertex : made)
            EXPECT_TRUE(vertex.x >= -1e-12 && vertex.x <= 6 + 1e-12);
    }

    // a double knot makes a corner: the curve passes through the pole
    XvcBspline cornered;
    for (const tagXVector3 pole : {tagXVector3(0, 0), {2, 0}, {4, 5}, {6, 0}, {8, 0}})
        cornered.AddPole(pole);
    cornered.SetOrder(3);
    cornered.SetResolution(2);
    for (const double knot : {0, 0, 0, 1, 1, 2, 2, 2})
        cornered.AddKnot(knot);
    made = curve(cornered);
    ASSERT_EQ(made.size(), 5u);
    EXPECT_EQ(made[2], tagXVector3(4, 5));
    cornered.SetKnotAt(3, 7); // falls afterwards: knots are made instead
    EXPECT_EQ(curve(cornered).size(), 7u);
    EXPECT_EQ(cornered.RemoveKnotAt(8), 0);
    EXPECT_EQ(cornered.GetKnotAt(-1), kXNotSet);

    for (const int order : {40, 1000}) { // even poles on a line: evenly along it
        XvcBspline high;
        for (int i = 0; i < order; ++i)
            high.AddPole(i, 2 * i);
        high.SetOrder(order);
        EXPECT_EQ(high.GetOrder(), order);
        made = curve(high);
        ASSERT_EQ(made.size(), 17u);
        for (int i = 0; i <= 16; ++i) {
            EXPECT_NEAR(made[static_cast<std::size_t>(i)].x, (order - 1) * i / 16.0, 1e-9);
        }
    }
    XvcBspline huge;
    for (int i = 0; i < 200000; ++i)
        huge.AddPole(i, i % 2);
    huge.SetResolution(1000);
    EXPECT_LE(curve(huge).size(), 1000001u);
    huge.SetOrder(2000); // more spans than there is time for
    made = curve(huge);
    EXPECT_LE(made.size(), 300u);
    EXPECT_NEAR(made.back().x, 199999, 1e-6);
}

TEST(VectorShapes, LineEnds)
{
    for (int shape = -1; shape <= kXLineEndCount; ++shape) {
        SCOPED_TRACE(shape);
        const bool isShape = shape > kXLineEndNone && shape < kXLineEndCount;
        double inset = -1;
        const auto parts = XfnMakeLineEnd(shape, {100, 50}, {100, 90}, 10, inset);
        EXPECT_EQ(!parts.empty(), isShape);
        EXPECT_EQ(XfnGetLineEndName(shape) != nullptr, isShape || shape == 0);
        double minX = 100, maxX = 100;
        for (const auto& part : parts) {
            for (const auto& vertex : part.vertices) {
                minX = std::min(minX, vertex.x);
                maxX = std::max(maxX, vertex.x);
                EXPECT_TRUE(vertex.y >= 80 - 1e-9 && vertex.y <= 95 + 1e-9);
            }
        }
        EXPECT_NEAR(minX + maxX, 200, 1e-9); // even about the line
        EXPECT_TRUE(inset >= 0 && inset <= 10);
        EXPECT_TRUE(XfnMakeLineEnd(shape, {1, 1}, {1, 1}, 10, inset).empty());
        EXPECT_TRUE(XfnMakeLineEnd(shape, {1, 1}, {2, 1}, kXNotSet, inset).empty());
    }
    const struct
    {
        const char* what;
        double size, thick, worldPerPixel, expected;
    } sizes[] = {
        {"world units", 6, -2, 0.5, 6},
        {"pixels", -8, -2, 0.5, 4},
        {"pixels, not known how large", -8, -2, 0, 10},
        {"default pixels", 0, -2, 0.5, 6},
        {"default for a thick line", 0, -5, 0.5, 10},
        {"default for a world thickness", 0, 3, 0.5, 12},
        {"never longer than the line", 900, 0, 0.5, 100},
    };
    for (const auto& row : sizes) {
        XvcLine line({0, 0, 0}, {100, 0, 0});
        line.SetEndShapeID(kXLineEndBar);
        line.SetEndSize(row.size);
        line.SetThick(row.thick);
        line.SetWorldPerPixel(row.worldPerPixel);
        line.CalcRange();
        EXPECT_NEAR(line.GetRange().maxY, row.expected / 2, 1e-9) << row.what;
        EXPECT_EQ(line.GetRange().maxX, 100) << row.what;
    }
}

TEST(VectorShapes, EllipsesAndArcsByPoints)
{
    XvcEllipse ellipse;
    ellipse.SetPtStart(14, 20);
    EXPECT_FALSE(ellipse.IsSet());
    ellipse.SetPtEnd(10, 28);
    EXPECT_EQ(ellipse.GetCenter(), tagXVector3(12, 24, 0));
    EXPECT_EQ(ellipse.GetAxisX(), 2);
    EXPECT_EQ(ellipse.GetAxisY(), 4);
    ellipse.MoveVertex(0, 3, 99, 0); // wider by 3 and higher by 5, as a size page asks for it
    ellipse.MoveVertex(1, 99, 5, 0);
    ellipse.CalcRange();
    EXPECT_DOUBLE_EQ(ellipse.GetRange().maxX - ellipse.GetRange().minX, 7);
    EXPECT_DOUBLE_EQ(ellipse.GetRange().maxY - ellipse.GetRange().minY, 13);
    ellipse.SetRotate(30);
    for (const double t : {0.0, 45.0, 200.0}) { // every point fulfils the equation
        const tagXVector3 at = ellipse.GetPointAt(t) - ellipse.GetCenter();
        const double c = std::cos(std::numbers::pi / 6), s = std::sin(std::numbers::pi / 6);
        const double u = (at.x * c + at.y * s) / 3.5, v = (at.y * c - at.x * s) / 6.5;
        EXPECT_NEAR(u * u + v * v, 1, 1e-14);
    }
    for (int mode : {XvcArc::kQuarter, XvcArc::kHalf}) {
        for (const tagXVector3 end : {tagXVector3(5, 7), {-5, 7}, {-5, -7}, {5, -7}}) {
            XvcArc arc;
            arc.SetCreateMode(mode);
            arc.SetPtEnd(1 + end.x, 2 + end.y);
            arc.SetPtStart(1, 2);
            std::vector<tagXVector3> outline;
            arc.GetOutline(outline);
            const tagXVector3 from = outline.front(), to = outline.back();
            const auto isAt = [](const tagXVector3& a, double x, double y) {
                return std::hypot(a.x - x, a.y - y) < 1e-12;
            };
            EXPECT_TRUE(isAt(from, 1, 2) || isAt(to, 1, 2));
            EXPECT_TRUE(isAt(from, 1 + end.x, 2 + end.y) || isAt(to, 1 + end.x, 2 + end.y));
            const std::size_t quarter = mode == XvcArc::kQuarter ? 1 : 2;
            EXPECT_NEAR(static_cast<double>(outline.size()),
                        64.0 * static_cast<double>(quarter) + 1, 1);
        }
    }
}

TEST(VectorShapes, RectanglesStayRectangles)
{
    XvcRectangle rectangle;
    for (const double angle : {0.0, 30.0, 90.0}) {
        for (int corner = 0; corner < 4; ++corner) {
            rectangle.Set(14, 20, 0, 10, 28, 0);
            EXPECT_EQ(rectangle.GetLL(), tagXVector3(10, 20, 0));
            EXPECT_EQ(rectangle.GetUR(), tagXVector3(14, 28, 0));
            rectangle.RotateObject(12, 24, angle);
            const tagXVector3 opposite = rectangle.GetAt((corner + 2) % 4);
            const tagXVector3 wanted = rectangle.GetAt(corner) + tagXVector3(-11, 3, 0);
            EXPECT_EQ(*rectangle.MoveVertex(4 + corner, -11, 3, 0), wanted); // past the opposite
            EXPECT_EQ(rectangle.GetAt((corner + 2) % 4), opposite);
            const tagXVector3 a = rectangle.GetAt(1) - rectangle.GetAt(0);
            const tagXVector3 b = rectangle.GetAt(3) - rectangle.GetAt(0);
            const tagXVector3 c = rectangle.GetAt(2) - rectangle.GetAt(1);
            EXPECT_NEAR(a.x * b.x + a.y * b.y, 0, 1e-12);
            EXPECT_NEAR(std::hypot(b.x - c.x, b.y - c.y), 0, 1e-12);
            if (angle == 0.0) {
                EXPECT_TRUE(a.x == 0.0 && b.y == 0.0); // exactly
            }
        }
    }
    // the size page: corner 3 by (wider, lower)
    rectangle.Set(10, 20, 0, 14, 28, 0);
    rectangle.MoveVertex(3, 6, -2, 0);
    EXPECT_EQ(rectangle.GetBoxWidth(), 10);
    EXPECT_EQ(rectangle.GetBoxHeight(), 10);
    rectangle.Set(0, 0, 0, 0, 0, 0); // no sides at all
    rectangle.MoveVertex(2, 3, 4, 0);
    EXPECT_EQ(rectangle.GetUR(), tagXVector3(3, 4, 0));
    EXPECT_EQ(rectangle.GetBoxWidth(), 3);
}

TEST(VectorShapes, GroupsScaleByACorner)
{
    const auto make = [](double originX) {
        XvcGroup2 group;
        auto line =
            std::make_unique<XvcLine>(tagXVector3(originX, 20), tagXVector3(originX + 4, 28));
        auto rectangle = std::make_unique<XvcRectangle>();
        rectangle->Set(originX + 1, 21, 0, originX + 2, 23, 0);
        group.AddObj(std::move(line));
        group.AddObj(std::move(rectangle));
        group.CalcRange();
        return group;
    };
    for (const double originX : {0.0, 10.0, 6e6}) {
        for (int corner = 4; corner <= 7; ++corner) {
            XvcGroup2 group = make(originX);
            const auto before = group.GetRange();
            ASSERT_TRUE(group.MoveVertex(corner, 1, -2, 0));
            group.CalcRange();
            const auto& after = group.GetRange();
            const bool isLeft = corner < 6, isLower = corner == 4 || corner == 7;
            EXPECT_NEAR(after.minX, before.minX + (isLeft ? 1 : 0), 1e-8);
            EXPECT_NEAR(after.maxX, before.maxX + (isLeft ? 0 : 1), 1e-8);
            EXPECT_NEAR(after.minY, before.minY - (isLower ? 2 : 0), 1e-8);
            EXPECT_NEAR(after.maxY, before.maxY - (isLower ? 0 : 2), 1e-8);
        }
    }
    XvcGroup2 group = make(0);
    group.MoveVertex(7, -4, 0, 0); // would leave no width: the other side alone is scaled
    group.CalcRange();
    EXPECT_EQ(group.GetRange().maxX, 4);
    EXPECT_EQ(group.MoveVertex(3, 1, 1, 0), nullptr);

    XvcGroup2 sizes = make(0); // 4 by 8; made twice as wide and three times as high
    const auto add = [&]<class Class>(std::unique_ptr<Class> made) {
        Class* const kept = made.get();
        sizes.AddObj(std::move(made));
        return kept;
    };
    auto* const axis = add(std::make_unique<XvcAxis>(tagXVector3(0, 20), tagXVector3(4, 20)));
    axis->SetLabelFlag(0);
    axis->SetFontSize(0.5);
    axis->SetGridLength(5);
    auto* const bar = add(std::make_unique<XvcScaleBar>());
    bar->Set(0, 20, 0, 4, 21, 0);
    auto* const dist = add(std::make_unique<XvcMeasureDist>());
    dist->Add(0, 20);
    auto* const legend = add(std::make_unique<XvcLegend>());
    legend->SetBound(0, 21, 4, 20);
    bar->SetFontSize(2);
    dist->SetFontSize(2);
    legend->SetFontSize(2);
    sizes.CalcRange();
    const double height = sizes.GetRange().maxY - sizes.GetRange().minY;
    sizes.MoveVertex(6, 4, 2 * height, 0);
    EXPECT_NEAR(axis->GetGridLength(), 15, 1e-9);
    EXPECT_NEAR(axis->GetFontSize(), 1.5, 1e-9);
    EXPECT_NEAR(bar->GetFontSize(), 6, 1e-9);
    EXPECT_NEAR(dist->GetFontSize(), 6, 1e-9);
    EXPECT_NEAR(legend->GetFontSize(), 6, 1e-9);

    tagXHitFlag flag;
    EXPECT_EQ(group.HitTest({1, 23}, 0.1, flag), group.GetObjAt(1)); // members are picked
    EXPECT_EQ(flag.kind, tagXHitFlag::kVertex);
    XvcGroup whole = group;
    EXPECT_EQ(whole.HitTest({1, 23}, 0.1, flag), &whole);
    auto released = whole.ReleaseObjAt(1);
    EXPECT_EQ(whole.HitTest({1, 23}, 0.1, flag), nullptr);
    EXPECT_EQ(whole.GetNumOfObjs(), 1);
    EXPECT_EQ(whole.AddObj(nullptr), -1);
}

TEST(VectorShapes, VertexStorage)
{
    XVertexArray flat;
    for (int i = 0; i < 100; ++i)
        flat.Add(i, -i);
    flat.Shrink();
    EXPECT_EQ(flat.GetMemoryUse(), 100u * 16u);
    XVertexArray high = flat;
    EXPECT_EQ(high.InsertAt(50, {7, 8, 9}), 1);
    EXPECT_EQ(high.GetStride(), 3);
    EXPECT_EQ(high.GetAt(50), tagXVector3(7, 8, 9));
    EXPECT_EQ(high.GetAt(51), tagXVector3(50, -50, 0));
    EXPECT_EQ(high.GetData()[100], tagXVector3(99, -99, 0));
    EXPECT_EQ(high.RemoveAt(50), 1);
    EXPECT_TRUE(high == flat);
    high.Shrink(); // no height is left
    EXPECT_EQ(high.GetMemoryUse(), 100u * 16u);
    EXPECT_EQ(high.RemoveAt(90, 1000), 1);
    EXPECT_EQ(high.GetSize(), 90);
    for (const int none : {-1, 90, 1 << 30}) {
        EXPECT_EQ(high.SetAt(none, 1, 1), 0);
        EXPECT_EQ(high.RemoveAt(none), 0);
        EXPECT_EQ(high.InsertAt(none + (none == 90), {1, 1}), 0);
        EXPECT_EQ(high.GetAt(none), tagXVector3(kXNotSet, kXNotSet, kXNotSet));
        EXPECT_EQ(high.GetDataAt(none), nullptr);
    }
    EXPECT_EQ(XVertexArray().GetData(), nullptr);
    EXPECT_LE(sizeof(XVertexArray), 16u);
}

TEST(VectorShapes, AttributesReachTheParts)
{
    XvcMPoint points;
    points.SetForeColor(0xFF010203u);
    points.AddPoint(1, 2);
    EXPECT_EQ(points.GetPointObjAt(0)->GetType(), 5); // new points are crosses
    EXPECT_EQ(XvcPolypoint().GetType(), 5);
    XvcPoint own(3, 4);
    own.SetThick(9);
    points.AddPoint(own);
    EXPECT_EQ(points.GetPointObjAt(0)->GetForeColor(), 0xFF010203u);
    EXPECT_EQ(points.GetPointObjAt(1)->GetThick(), 9);
    points.SetThick(5);
    points.SetLineColor(7);
    for (int i = 0; i < points.GetNumOfPoints(); ++i) {
        EXPECT_EQ(points.GetPointObjAt(i)->GetThick(), 5);
        EXPECT_EQ(points.GetPointObjAt(i)->GetLineColor(), 7u);
    }
    EXPECT_EQ(points.GetPointObjAt(2), nullptr);
}

} // namespace
