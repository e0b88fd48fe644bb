#include "foundation/base/XPtrArray.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/vector/XDrawAttrs.h"
#include "foundation/vector/XvcPoint.h"
#include "tests/support/XVectorSamples.h"

#include <cmath>
#include <limits>

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

std::vector<unsigned char> Bytes(const std::string& hex)
{
    std::vector<unsigned char> bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes.push_back(static_cast<unsigned char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

// Pixels of a colour (0xRRGGBB), or of any but black.
int CountDrawn(const XBackBuffer& buffer, std::uint32_t colour = 0)
{
    int count = 0;
    for (int y = 0; y < buffer.GetHeight(); ++y) {
        const std::uint32_t* row = buffer.GetRow(y);
        for (int x = 0; x < buffer.GetWidth(); ++x)
            count += colour ? (row[x] & 0xFFFFFFu) == colour : (row[x] & 0xFFFFFFu) != 0;
    }
    return count;
}

TEST(VectorPoint, SetOrNot)
{
    const struct
    {
        const char* what;
        double x, y;
        bool isSet;
    } cases[] = {
        {"a place", 3, -4, true},           {"the origin", 0, 0, true},
        {"x not set", kXNotSet, 0, false},  {"y not set", 0, kXNotSet, false},
        {"no data", kXNoData, 0, false},    {"not a number", kNan, 0, false},
        {"infinite", 0, -kInfinity, false},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        XvcPoint point(row.x, row.y);
        point.SetType(1);
        point.SetThick(4.0);
        point.CalcRange();
        EXPECT_EQ(point.IsSet() != 0, row.isSet);
        EXPECT_EQ(point.GetRange().IsEmpty() != 0, !row.isSet);
        tagXHitFlag flag{77, 78};
        EXPECT_EQ(point.HitTest({row.x, row.y}, 5.0, flag) != nullptr, row.isSet);
        if (!row.isSet) {
            EXPECT_EQ(flag.kind, 77); // written on a hit only
        }
        EXPECT_EQ(RecordObject(point)->GetCommands().empty(), !row.isSet);
        EXPECT_EQ(point.ExportToWkt() == "POINT EMPTY", !row.isSet);
        point.MoveObject(1.0, 1.0, 0.0);
        point.RotateObject(0.0, 0.0, 90.0);
        point.Normalize(0, 0, 2, 2);
        EXPECT_EQ(point.IsSet() != 0, row.isSet);
    }
}

TEST(VectorPoint, RangeIsTheMarksBox)
{
    XvcPoint point(100.0, 50.0, 7.0);
    const struct
    {
        const char* what;
        double thick, worldPerPixel, half;
    } cases[] = {
        {"world size", 6.0, 0.0, 3.0},
        {"pixels at a known scale", -10.0, 0.5, 2.5},
        {"default pixels at a known scale", 0.0, 2.0, 9.0},
        {"pixels at no known scale", -10.0, 0.0, 0.0},
        {"not a number", kNan, 2.0, 0.0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        point.SetThick(row.thick);
        point.SetWorldPerPixel(row.worldPerPixel);
        point.CalcRange();
        double range[6];
        point.GetRange(range[0], range[1], range[2], range[3], range[4], range[5]);
        const double expected[6] = {100.0 - row.half, 50.0 - row.half, 7.0,
                                    100.0 + row.half, 50.0 + row.half, 7.0};
        for (int i = 0; i < 6; ++i)
            EXPECT_DOUBLE_EQ(range[i], expected[i]) << i;
    }
    point.SetWorldPerPixel(-1.0);
    EXPECT_EQ(point.GetWorldPerPixel(), 2.0);
    point.SetNumPieSegs(1000000000);
    EXPECT_EQ(point.GetNumPieSegs(), 360);
}

TEST(VectorPoint, HitTest)
{
    XvcPoint point(10.0, 20.0);
    point.SetThick(8.0);
    const struct
    {
        const char* what;
        double x, y, tolX, tolY;
        int kind;
    } cases[] = {
        {"on the vertex", 10, 20, 0, 0, tagXHitFlag::kVertex},
        {"within the larger tolerance, along the other axis", 12, 20, 0.5, 3, tagXHitFlag::kVertex},
        {"within the mark", 13.5, 23.5, 1, 1, tagXHitFlag::kBody},
        {"beside the mark", 14.5, 20, 1, 2, -1},
        {"a tolerance that is no number", 10, 20, kNan, kNan, tagXHitFlag::kVertex},
        {"a negative tolerance", 16, 20, -9, -9, -1},
        {"nowhere", kNan, 20, 100, 100, -1},
    };
    for (const auto& row : cases) {
        tagXHitFlag flag{-1, -1};
        XvcObj* hit = point.HitTest({row.x, row.y}, row.tolX, row.tolY, flag);
        EXPECT_EQ(hit, row.kind < 0 ? nullptr : &point) << row.what;
        EXPECT_EQ(flag.kind, row.kind) << row.what;
        EXPECT_EQ(flag.index, row.kind < 0 ? -1 : 0) << row.what;
    }
}

TEST(VectorPoint, MovesTurnsAndNormalizes)
{
    XvcPoint point(3.0, 0.0, 1.0);
    point.MoveObject(1.0, 2.0, 3.0);
    EXPECT_EQ(point.GetVertex(), tagXVector3(4.0, 2.0, 4.0));
    for (const double bad : {kNan, kInfinity, 1.7e308}) {
        point.MoveObject(bad, 0.0, 0.0);
        point.MoveObject(0.0, bad, 0.0);
        point.RotateObject(0.0, bad, 90.0);
    }
    point.RotateObject(0.0, 0.0, kInfinity);
    EXPECT_EQ(point.GetVertex(), tagXVector3(4.0, 2.0, 4.0));
    EXPECT_EQ(point.MoveVertex(1, 5.0, 5.0, 5.0), nullptr);
    EXPECT_EQ(point.MoveVertex(0, -1.0, 0.0, 0.0), &point.GetVertex());
    point.RotateObject(1.0, 2.0, 90.0); // counter-clockwise with y upwards
    EXPECT_NEAR(point.GetX(), 1.0, 1e-12);
    EXPECT_NEAR(point.GetY(), 4.0, 1e-12);
    point.CalcRange();
    point.RotateObject(45.0);
    EXPECT_NEAR(point.GetX(), 1.0, 1e-12);

    XvcPoint corner(30.0, 5.0);
    corner.SetThick(4.0);
    corner.Normalize(10.0, 5.0, 50.0, 25.0);
    EXPECT_EQ(corner.GetVertex(), tagXVector3(0.5, 0.0, 0.0));
    EXPECT_DOUBLE_EQ(corner.GetThick(), 0.1);
    corner.Normalize(0.0, 0.0, 0.0, 1.0); // no width
    EXPECT_EQ(corner.GetX(), 0.0);
    corner.Normalize(0.0, kNan, 1.0, 1.0);
    EXPECT_EQ(corner.GetVertex(), tagXVector3(0.0, 0.0, 0.0));

    XPtrArray array;
    point.AddCtrlPoints(array);
    ASSERT_EQ(array.GetSize(), 1);
    static_cast<tagXVector3*>(array[0])->x = 42.0;
    EXPECT_EQ(point.GetX(), 42.0);
}

TEST(VectorPoint, WellKnownBinary)
{
    const std::string one = "000000000000F03F", two = "0000000000000040";
    const std::string nan = "000000000000F87F", infinity = "000000000000F07F";
    const struct
    {
        const char* what;
        std::string hex;
        bool isGood;
        double x, y, z;
    } cases[] = {
        {"little endian", "0101000000" + one + two, true, 1, 2, 0},
        {"big endian",
         "0000000001"
         "3FF0000000000000"
         "4000000000000000",
         true, 1, 2, 0},
        {"with z", "01E9030000" + one + two + two, true, 1, 2, 2},
        {"with m, which is skipped", "01D1070000" + one + two + one, true, 1, 2, 0},
        {"with z and m", "01B90B0000" + one + two + two + one, true, 1, 2, 2},
        {"extended z", "0101000080" + one + two + one, true, 1, 2, 1},
        {"extended with a reference number",
         "0101000020"
         "E6100000" +
             one + two,
         true, 1, 2, 0},
        {"empty", "0101000000" + nan + nan, true, kXNotSet, kXNotSet, 0},
        {"height not a number", "0101000080" + one + two + nan, true, 1, 2, 0},
        {"half empty", "0101000000" + nan + one, false, 0, 0, 0},
        {"infinite", "0101000000" + one + infinity, false, 0, 0, 0},
        {"byte order 2", "0201000000" + one + two, false, 0, 0, 0},
        {"a line",
         "0102000000"
         "02000000" +
             one + two + one + two,
         false, 0, 0, 0},
        {"type 0", "0100000000" + one + two, false, 0, 0, 0},
        {"type 4001", "01A10F0000" + one + two, false, 0, 0, 0},
        {"z promised, not there", "01E9030000" + one + two, false, 0, 0, 0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const auto bytes = Bytes(row.hex);
        XvcPoint point(-5.0, -6.0, -7.0);
        std::size_t size = bytes.size();
        XString error;
        EXPECT_EQ(point.ImportFromWkb(bytes.data(), size, error) != 0, row.isGood);
        EXPECT_EQ(error.IsEmpty() != 0, row.isGood);
        EXPECT_EQ(size, bytes.size());
        EXPECT_EQ(point.GetVertex(),
                  row.isGood ? tagXVector3(row.x, row.y, row.z) : tagXVector3(-5, -6, -7));
        for (std::size_t cut = 0; row.isGood && cut < bytes.size(); ++cut) {
            const std::vector<unsigned char> shorter(bytes.begin(), bytes.begin() + cut);
            std::size_t left = cut;
            XvcPoint kept(-5.0, -6.0, -7.0);
            EXPECT_FALSE(kept.ImportFromWkb(shorter.data(), left, error)) << cut;
            EXPECT_EQ(kept.GetX(), -5.0);
        }
    }
    XvcPoint point;
    std::size_t none = 0;
    XString error;
    EXPECT_FALSE(point.ImportFromWkb(nullptr, none, error));
    auto trailing = Bytes("0101000000" + one + two + "FFFF");
    std::size_t size = trailing.size();
    EXPECT_TRUE(point.ImportFromWkb(trailing.data(), size, error));
    EXPECT_EQ(size, 21u); // the next geometry begins here
}

TEST(VectorPoint, WellKnownText)
{
    EXPECT_EQ(XvcPoint(1.5, -2.0).ExportToWkt(), "POINT (1.5 -2)");
    EXPECT_EQ(XvcPoint(0.1, 1e-7, 3.0).ExportToWkt(), "POINT Z (0.1 1e-07 3)");
    EXPECT_EQ(XvcPoint(1.0, 2.0, kXNotSet).ExportToWkt(), "POINT (1 2)");
}

TEST(VectorPoint, DrawsItsMarkWhereItLies)
{
    for (int shape = 0; shape <= 5; ++shape) {
        SCOPED_TRACE(shape);
        XBackBuffer buffer = MakeSurface(31, 21);
        XvcPoint point(20.5, 6.5);
        point.SetType(shape);
        point.SetThick(9.0);
        point.SetFillStyle(tagXFillStyle(tagXFillStyle::kSolid));
        point.DrawToBackBuffer(&buffer, 0, nullptr, nullptr);
        EXPECT_GT(CountDrawn(buffer), 0);
        for (int y = 0; y < 21; ++y) {
            for (int x = 0; x < 31; ++x) {
                if ((buffer.GetRow(y)[x] & 0xFFFFFFu) == 0) continue;
                EXPECT_LE(std::abs(x - 20), 5); // half of nine and a pixel of outline
                EXPECT_LE(std::abs(y - 14), 5); // y points up in the world
            }
        }
    }
    XBackBuffer buffer = MakeSurface(31, 21);
    XvcPoint nowhere(kXNotSet, kXNotSet);
    nowhere.SetType(2);
    nowhere.DrawToBackBuffer(&buffer, 0, nullptr, nullptr);
    nowhere.DrawToBackBuffer(nullptr, 0, nullptr, nullptr);
    EXPECT_EQ(CountDrawn(buffer), 0);
}

TEST(VectorPoint, WarpAndStandInAttributes)
{
    XvcPoint point(2.0, 1.0);
    point.SetType(2);
    point.SetThick(4.0);
    point.SetForeColor(0xFF00FF00u);
    XWarp2D warp;
    warp.SetAffine(5.0, 3.0, 0.0, 4.0, 0.0, 3.0); // to (11, 7), three times as large
    XBackBuffer buffer = MakeSurface(31, 21);
    point.DrawToBackBuffer(&buffer, 0, &warp, nullptr);
    EXPECT_EQ(CountDrawn(buffer), 12 * 12);
    EXPECT_EQ(CountDrawn(buffer, 0xFFFFFF), 44); // the outline of a square of 12

    // inside stands the fore colour with every fill style, also with that of "no fill"
    for (const int code : {1, 2, 9, 15}) {
        point.SetFillStyle(tagXFillStyle(code));
        XBackBuffer other = MakeSurface(31, 21);
        point.DrawToBackBuffer(&other, 0, &warp, nullptr);
        EXPECT_TRUE(other.GetImage() == buffer.GetImage()) << code;
    }

    tagXDrawAttrs attrs;
    attrs.lineColor = 0xFF0000FFu; // red
    XBackBuffer outlined = MakeSurface(31, 21);
    point.DrawToBackBuffer(&outlined, 0, &warp, &attrs);
    EXPECT_EQ(CountDrawn(outlined, 0xFF0000), 44);
    EXPECT_EQ(point.GetLineColor(), 0xFFFFFFFFu); // the object itself is as it was
    attrs.lineStyle = tagXLineStyle(5);           // no line
    XBackBuffer plain = MakeSurface(31, 21);
    point.DrawToBackBuffer(&plain, 0, &warp, &attrs);
    EXPECT_EQ(CountDrawn(plain, 0xFF0000), 0);
    EXPECT_GE(CountDrawn(plain, 0x00FF00), 100);
    attrs.foreColor = 0x00FFFFFFu; // and no colour chosen
    XBackBuffer nothing = MakeSurface(31, 21);
    point.DrawToBackBuffer(&nothing, 0, &warp, &attrs);
    EXPECT_EQ(CountDrawn(nothing), 0);

    point.SetWarpCoeff(&warp); // its own warp serves when none is given
    XBackBuffer own = MakeSurface(31, 21);
    point.DrawToBackBuffer(&own, 0, nullptr, nullptr);
    EXPECT_TRUE(own.GetImage() == buffer.GetImage());
    EXPECT_EQ(point.GetWarpCeoff(), &warp);
}

} // namespace
