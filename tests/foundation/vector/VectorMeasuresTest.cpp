#include "foundation/vector/XMeasureUnits.h"
#include "foundation/vector/XvcMeasureAngle.h"
#include "foundation/vector/XvcMeasureArea.h"
#include "foundation/vector/XvcMeasureDist.h"
#include "foundation/vector/XvcMeasurePoint.h"
#include "foundation/vector/XvcMeasureRange.h"
#include "tests/support/XVectorSamples.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
const double kNan = std::numeric_limits<double>::quiet_NaN();

// "" none, "pixel", otherwise an EPSG code.
XSpatialReference Reference(const std::string& name)
{
    XSpatialReference reference;
    if (name == "pixel") {
        reference.SetCoordType(1);
    } else if (!name.empty()) {
        EXPECT_TRUE(reference.importFromEPSG(std::stoi(name)));
    }
    return reference;
}

template <class Measure>
Measure Make(const std::string& reference, const std::vector<tagXVector3>& vertices)
{
    Measure made;
    const XSpatialReference sr = Reference(reference);
    made.SetSR(&sr);
    for (const tagXVector3& vertex : vertices)
        made.Add(vertex);
    made.CalcRange();
    return made;
}

TEST(VectorMeasures, Units)
{
    const struct
    {
        const char* text;
        int length; // -1: not asked for
        int area;
        double ofThousand; // of metres or square metres
    } cases[] = {
        {"Meter", 0, -1, 1000},
        {"kilometer", 1, -1, 1},
        {"Mile", 2, -1, 1000 / 1609.3},
        {"YARD", 3, -1, 1093.6},
        {"Feet", 4, -1, 3280.8},
        {"anything", 4, -1, 3280.8},
        {"NM", 6, -1, 1000 / 1852.3},
        {"Square Meter", -1, 0, 1000},
        {"Square KiloMeter", -1, 1, 0.001},
        {"Square Mile", -1, 2, 1000 / 2589846.49},
        {"Square Yard", -1, 3, 1195.8},
        {"Square Feet", -1, 4, 10763.64864},
        {"Acre", -1, 5, 1000 / 4046.8},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.text);
        if (row.length >= 0) {
            EXPECT_EQ(XfnFindLengthUnit(row.text), row.length);
            EXPECT_EQ(XfnFindLengthUnit(XfnGetLengthUnitName(row.length)), row.length);
            EXPECT_DOUBLE_EQ(XfnConvertLength(1000, row.length), row.ofThousand);
        } else {
            EXPECT_EQ(XfnFindAreaUnit(row.text), row.area);
            EXPECT_EQ(XfnFindAreaUnit(XfnGetAreaUnitName(row.area)), row.area);
            EXPECT_DOUBLE_EQ(XfnConvertArea(1000, row.area), row.ofThousand);
        }
    }
    EXPECT_EQ(XfnConvertLength(12, -1), 12);
    EXPECT_EQ(XfnConvertArea(12, 99), 12);
    XvcMeasureDist dist;
    dist.SetLengthUnit(kXNoLengthUnit);
    dist.SetAreaUnit(6);
    EXPECT_EQ(dist.GetLengthUnit(), 0);
    EXPECT_EQ(dist.GetAreaUnit(), 0);
}

// Geodesic figures are those of the ellipsoid: a degree of the equator is a pi / 180, the quarter
// meridian 10,001,965.729 m, a cell of a degree by a degree 12,308,778,361.469 m2 on WGS 84.
TEST(VectorMeasures, Figures)
{
    const double equatorDegree = 6378137.0 * kPi / 180.0;
    const auto near = [](double value, double expected, double tolerance) {
        EXPECT_NEAR(value, expected, tolerance);
    };
    near(Make<XvcMeasureDist>("", {{0, 0}, {3, 4}, {3, 10}}).GetLength(), 11, 0);
    near(Make<XvcMeasureDist>("pixel", {{0, 0}, {3, 4}}).GetLength(), 5, 0);
    near(Make<XvcMeasureDist>("32652", {{0, 0}, {3, 4}}).GetLength(), 5, 0);
    near(Make<XvcMeasureDist>("2263", {{0, 0}, {3, 4}}).GetLength(), 5 * 1200.0 / 3937.0, 1e-9);
    near(Make<XvcMeasureDist>("4326", {{0, 0}, {1, 0}}).GetLength(), equatorDegree, 1e-6);
    near(Make<XvcMeasureDist>("4326", {{179.5, 0}, {-179.5, 0}}).GetLength(), equatorDegree, 1e-6);
    near(Make<XvcMeasureDist>("4326", {{10, 0}, {77, 90}}).GetLength(), 10001965.729, 1e-3);
    near(Make<XvcMeasureDist>("4326", {{10, 0}, {77, 91}}).GetLength(), kXNotSet, 0);
    near(Make<XvcMeasureDist>("", {{0, 0}, {kNan, 0}, {3, 4}}).GetLength(), 5, 0);
    near(Make<XvcMeasureDist>("", {{-1e308, 0}, {1e308, 0}}).GetLength(), kXNotSet, 0);
    near(Make<XvcMeasureDist>("", {{1, 2}}).GetLength(), 0, 0);

    const std::vector<tagXVector3> bowl = {
        {1e7, 4e6}, {1e7 + 4, 4e6}, {1e7 + 4, 4e6 + 2}, {1e7 + 2, 4e6 + 1}, {1e7, 4e6 + 2}};
    near(Make<XvcMeasureArea>("32652", bowl).GetArea(), 6, 1e-9);
    near(Make<XvcMeasureArea>("32652", {bowl.rbegin(), bowl.rend()}).GetArea(), 6, 1e-9);
    near(Make<XvcMeasureArea>("", {{0, 0}, {3, 4}}).GetArea(), 0, 0);
    near(Make<XvcMeasureArea>("", {{0, 0}, {3, 4}}).GetPerimeter(), 10, 0);
    near(Make<XvcMeasureArea>("2263", {{0, 0}, {3, 0}, {3, 4}}).GetArea(),
         6 * std::pow(1200.0 / 3937.0, 2), 1e-9);
    near(Make<XvcMeasureArea>("4326", {{0, 0}, {1, 0}, {1, 1}, {0, 1}}).GetArea(), 12308778361.469,
         0.01);

    near(Make<XvcMeasureRange>("", {{5, 5}, {8, 9}}).GetArea(), 25 * kPi, 1e-12);
    near(Make<XvcMeasureRange>("4326", {{127, 37}, {127.01, 37}}).GetRadius(), 890.1, 0.1);
    const auto circle = Make<XvcMeasureRange>("4326", {{127, 37}, {127.01, 37}});
    const double flat = kPi * circle.GetRadius() * circle.GetRadius();
    near(circle.GetArea() / flat, 1.0, 1e-7); // curvature takes r^2 / 12 R^2 of it
    const auto wide = Make<XvcMeasureRange>("4047", {{0, 90}, {0, 60}}); // on a sphere
    const double radius = wide.GetSR().GetSemiMajor();
    near(wide.GetArea() / (2 * kPi * radius * radius * (1 - std::cos(kPi / 6))), 1.0, 2e-4);

    near(Make<XvcMeasureAngle>("", {{2, 0}, {0, 0}, {0, 3}}).GetAngle(), 90, 1e-12);
    near(Make<XvcMeasureAngle>("", {{1, 0}, {0, 0}, {-1, -1e-9}}).GetAngle(), 180, 1e-6);
    near(Make<XvcMeasureAngle>("", {{1e300, 0}, {0, 0}, {1e300, 1e300}}).GetAngle(), 45, 1e-12);
    near(Make<XvcMeasureAngle>("", {{1, 0}, {1, 0}, {0, 3}}).GetAngle(), kXNotSet, 0);
    near(Make<XvcMeasureAngle>("", {{1, 0}, {1, 2}}).GetAngle(), kXNotSet, 0);
    near(Make<XvcMeasureAngle>("4326", {{10, 50}, {20, 90}, {130, 60}}).GetAngle(), 120, 1e-9);
    near(Make<XvcMeasureAngle>("4326", {{-179, 0}, {179, 0}, {179, 5}}).GetAngle(), 90, 1e-9);
}

TEST(VectorMeasures, Labels)
{
    const auto inUnits = [](auto measure, int length, int area, int decimals) {
        measure.SetLengthUnit(length);
        measure.SetAreaUnit(area);
        measure.SetDecimals(decimals);
        return std::string(measure.GetLabel().GetString());
    };
    const std::vector<tagXVector3> line = {{0, 0}, {3000, 4000}};
    const std::vector<tagXVector3> ring = {{0, 0}, {3000, 0}, {3000, 4000}};
    const std::pair<std::string, const char*> cases[] = {
        {inUnits(Make<XvcMeasureDist>("32652", line), 0, 0, 2), "5000.00 m"},
        {inUnits(Make<XvcMeasureDist>("32652", line), 2, 0, 3), "3.107 mi"},
        {inUnits(Make<XvcMeasureDist>("", line), 2, 0, 0), "5000"},
        {inUnits(Make<XvcMeasureDist>("pixel", line), 2, 0, 1), "5000.0 px"},
        {inUnits(Make<XvcMeasureDist>("32652", {{1, 2}}), 0, 0, 2), ""},
        {inUnits(Make<XvcMeasureArea>("32652", ring), 1, 1, 1), "6.0 km\u00B2\n12.0 km"},
        {inUnits(Make<XvcMeasureArea>("pixel", ring), 0, 5, 0), "6000000 px\u00B2\n12000 px"},
        {inUnits(Make<XvcMeasureRange>("32652", line), 1, 5, 2), "5.00 km\n19407.88 acre"},
        {inUnits(Make<XvcMeasureAngle>("", ring), 0, 0, 1), "90.0\u00B0"},
        {inUnits(Make<XvcMeasurePoint>("32652", {{3, -4}}), 0, 0, 2), "3.00, -4.00"},
        {inUnits(Make<XvcMeasurePoint>("4326", {{127.5, -37.25}}), 0, 0, 2),
         "37.25000S 127.50000E"},
        {inUnits(Make<XvcMeasurePoint>("4326", {{kNan, 1}}), 0, 0, 2), ""},
    };
    for (const auto& [label, expected] : cases)
        EXPECT_EQ(label, expected);
}

template <class Measure>
int CountCommands(const Measure& measure, XVertRecording::XKind kind, bool isLabelled)
{
    Measure copy = measure;
    copy.SetLabelFlag(isLabelled);
    const auto recording = RecordObject(copy);
    int count = 0;
    for (const auto& command : recording->GetCommands())
        count += command.kind == kind;
    return count;
}

TEST(VectorMeasures, Drawings)
{
    using Kind = XVertRecording::XKind;
    const auto dist = Make<XvcMeasureDist>("32652", {{0, 0}, {3, 4}});
    EXPECT_EQ(CountCommands(dist, Kind::Polyline, true), 1);
    EXPECT_EQ(CountCommands(dist, Kind::Text, true), 1);
    EXPECT_EQ(CountCommands(dist, Kind::Text, false), 0);
    const auto angle = Make<XvcMeasureAngle>("", {{2, 0}, {0, 0}, {0, 3}});
    EXPECT_EQ(CountCommands(angle, Kind::Polyline, true), 2); // the legs and the arc
    EXPECT_EQ(CountCommands(Make<XvcMeasureArea>("", {{1, 1}}), Kind::Polygon, true), 0);
    EXPECT_EQ(CountCommands(Make<XvcMeasurePoint>("", {{1, 1}}), Kind::Points, true), 1);
    EXPECT_EQ(Make<XvcMeasurePoint>("", {{1, 1}, {2, 2}}).GetSize(), 1);

    XvcMeasureDist labelled = dist;
    labelled.SetFontSize(-20);
    const auto pixels = RecordObject(labelled);
    EXPECT_TRUE(pixels->GetText(0).isHeightInPixels);
    EXPECT_EQ(pixels->GetText(0).text.height, 20);
    labelled.SetFontSize(2);
    EXPECT_FALSE(RecordObject(labelled)->GetText(0).isHeightInPixels);

    // a long line is drawn along the shortest way, and on both sides of the date line
    auto ocean = Make<XvcMeasureDist>("4326", {{140, 35}, {-122, 37}});
    const auto recording = RecordObject(ocean);
    int lines = 0;
    double north = 0.0, west = 0.0;
    for (const auto& command : recording->GetCommands()) {
        if (command.kind != Kind::Polyline) continue;
        ++lines;
        const double* at = recording->GetVertices(command.first);
        for (std::size_t i = 0; i < command.count; ++i) {
            north = std::max(north, at[2 * i + 1]);
            tagXHitFlag hit;
            EXPECT_TRUE(ocean.HitTest({at[2 * i], at[2 * i + 1]}, 1e-6, hit));
            west = std::min(west, at[2 * i]);
            if (i == 0) continue;
            EXPECT_LT(std::fabs(at[2 * i] - at[2 * i - 2]), 10.0); // no jump
        }
    }
    EXPECT_EQ(lines, 2);
    EXPECT_GT(north, 47.0);
    EXPECT_EQ(ocean.GetRange().maxY, north);
    EXPECT_EQ(ocean.GetRange().minX, west);
    tagXHitFlag edge;
    EXPECT_FALSE(ocean.HitTest({9, 36}, 2.0, edge)) << "the chord, which is not drawn";
    ocean.Add(-122, 20);
    EXPECT_TRUE(ocean.HitTest({-122, 30}, 0.1, edge));
    EXPECT_TRUE(edge.kind == tagXHitFlag::kEdge && edge.index == 1);
    auto area = Make<XvcMeasureArea>("4326", {{0, 60}, {90, 60}, {45, 40}});
    EXPECT_TRUE(area.HitTest({45, 65}, 0.1, edge) && edge.kind == tagXHitFlag::kBody);

    // the label of a point keeps off the mark
    auto mark = Make<XvcMeasurePoint>("", {{1, 1}});
    EXPECT_EQ(RecordObject(mark)->GetText(0).text.text.View().substr(0, 2), "  ");
    mark.SetThick(6);
    EXPECT_EQ(RecordObject(mark)->GetText(0).text.position.x, 4.0);

    // around the pole the circle spans all longitudes, twice as it passes 180, and reaches the pole
    auto cap = Make<XvcMeasureRange>("4326", {{20, 85}, {20, 75}});
    EXPECT_NEAR(cap.GetRange().minX, -520.0, 5.0);
    EXPECT_NEAR(cap.GetRange().maxX, 200.0, 5.0);
    EXPECT_EQ(cap.GetRange().maxY, 90.0);

    auto range = Make<XvcMeasureRange>("", {{5, 5}, {8, 9}});
    EXPECT_NEAR(range.GetRange().minX, 0.0, 1e-12);
    EXPECT_NEAR(range.GetRange().maxY, 10.0, 1e-12);
    tagXHitFlag flag{77, 0};
    EXPECT_FALSE(range.HitTest({5, 8}, 0.1, flag));
    EXPECT_EQ(flag.kind, 77);
    EXPECT_TRUE(range.HitTest({0.02, 5}, 0.1, flag) && flag.kind == tagXHitFlag::kBody);
    EXPECT_TRUE(range.HitTest({8, 9}, 0.1, flag) && flag.kind == tagXHitFlag::kVertex);
    EXPECT_EQ(flag.index, 1);
}

} // namespace
