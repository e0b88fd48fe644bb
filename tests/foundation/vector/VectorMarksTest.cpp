#include "foundation/base/XWarp2D.h"
#include "foundation/reference/XGeodesy.h"
#include "foundation/vector/XvcAxis.h"
#include "foundation/vector/XvcLeaderLine.h"
#include "foundation/vector/XvcLegend.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMeasurePoint.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcScaleBar.h"
#include "foundation/vector/XvcSymbol.h"
#include "foundation/vector/XvcSymbolDef.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "tests/support/XVectorSamples.h"

#include <cmath>
#include <limits>
#include <set>

// North arrows, scale bars, leader lines, legends, axes.

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
using Kind = XVertRecording::XKind;

// What is recorded, texts by their measured boxes, within a box?
void ExpectWithin(XvcObj& object, double left, double bottom, double right, double top)
{
    const double slack = 1e-9 * (std::fabs(right) + std::fabs(top));
    const auto recording = RecordObject(object);
    for (const auto& command : recording->GetCommands()) {
        if (command.kind == Kind::Text) {
            const auto& record = recording->GetText(command.extra);
            const tagXVertText& text = record.text;
            XMarkFont font;
            font.style = text.style;
            const double width = font.GetWidth(text.text) * text.height;
            const double x = text.position.x - (text.align & kXTextCentre ? width / 2.0 : 0.0);
            const double lines = text.align & kXTextMiddle ? 0.5
                                 : text.align & kXTextTop  ? 1.0
                                                           : 0.0;
            EXPECT_FALSE(record.isHeightInPixels);
            EXPECT_GE(x, left - slack);
            EXPECT_LE(x + width, right + slack) << text.text.View();
            EXPECT_GE(text.position.y - lines * text.height, bottom - slack);
            EXPECT_LE(text.position.y + (1.0 - lines) * text.height, top + slack);
        }
        const double* at = recording->GetVertices(command.first);
        for (std::size_t i = 0; i < command.count && command.kind != Kind::Text; ++i) {
            EXPECT_TRUE(at[2 * i] >= left - slack && at[2 * i] <= right + slack);
            EXPECT_TRUE(at[2 * i + 1] >= bottom - slack && at[2 * i + 1] <= top + slack);
        }
    }
}

TEST(VectorMarks, NorthArrowsFillTheirRectangleAndNeverLeaveIt)
{
    XvcNorthArrow arrow;
    arrow.Set(100, 20, 0, 40, 140, 0); // twice as high as wide
    std::set<std::size_t> drawings;
    for (int style = 0; style < kXNorthArrowCount; ++style) {
        SCOPED_TRACE(XfnGetNorthArrowName(style));
        arrow.SetStyle(style);
        std::size_t count = 0;
        for (const double angleDeg : {0.0, 33.0, -90.0, 7200180.0}) {
            arrow.SetAngle(angleDeg);
            ExpectWithin(arrow, 40, 20, 100, 140);
            tagXVectorRange drawn;
            const auto recording = RecordObject(arrow);
            for (const auto& command : recording->GetCommands()) {
                const double* at = recording->GetVertices(command.first);
                for (std::size_t i = 0; i < command.count; ++i)
                    drawn.Add(at[2 * i], at[2 * i + 1], 0.0);
                count += command.count;
            }
            EXPECT_TRUE(std::fabs(drawn.maxX - drawn.minX - 60) < 1e-9 ||
                        std::fabs(drawn.maxY - drawn.minY - 120) < 1e-9);
            EXPECT_NEAR((drawn.minX + drawn.maxX) / 2, 70, 1e-9);
        }
        EXPECT_TRUE(drawings.insert(count).second); // no two styles are the same
        arrow.SetResolution(style % 2 ? 7000 : 1);
        ExpectWithin(arrow, 40, 20, 100, 140);
        arrow.SetResolution(XvcNorthArrow::kDefaultResolution);
    }
    arrow.SetStyle(kXNorthArrowCount);
    arrow.SetAngle(kNan);
    EXPECT_EQ(arrow.GetStyle(), kXNorthArrowCount - 1);
    EXPECT_EQ(arrow.GetAngle(), 7200180.0);
    for (const double side : {0.0, kNan, 1.6e308}) { // no area, none at all, more than numbers hold
        arrow.Set(-side, 0, 0, side, 10, 0);
        EXPECT_TRUE(RecordObject(arrow)->GetCommands().empty());
    }
}

TEST(VectorMarks, NorthArrowHalvesHaveTheirColours)
{
    XvcNorthArrow arrow;
    arrow.Set(0, 0, 0, 40, 40, 0);
    arrow.SetStyle(kXNorthArrowHalves);
    arrow.SetLineColor(0xFF000000u);
    arrow.SetForeColor(0xFF0000FFu);
    arrow.SetBackColor(0xFFFF0000u);
    const std::vector<std::pair<std::uint32_t, char>> key = {{0xFF0000, 'R'}, {0x0000FF, 'B'}};
    std::string row = DrawAsText(arrow, 41, 41, key).substr(42 * 30, 41);
    EXPECT_LT(row.find('R'), row.find('B')); // the fore colour on the left
    arrow.SetAngle(180.0);
    row = DrawAsText(arrow, 41, 41, key).substr(42 * 10, 41);
    EXPECT_LT(row.find('B'), row.find('R'));
    arrow.SetFillStyle(tagXFillStyle(tagXFillStyle::kNone));
    EXPECT_EQ(DrawAsText(arrow, 41, 41, key).find_first_of("RB"), std::string::npos);
}

XSpatialReference Reference(int code)
{
    XSpatialReference reference;
    if (code > 1) reference.importFromEPSG(code);
    if (code == 1) reference.SetCoordType(1);
    return reference;
}

TEST(VectorMarks, ScaleBarsHaveRoundLengthsInTheUnitOfTheReference)
{
    constexpr int kUtm = 32652, kDegrees = 4326, kUsFeet = 2225, kPixel = 1, kNone = 0;
    const struct
    {
        const char* what;
        int reference;
        double x, y, width, height;
        double length;
        const char* unit;
    } rows[] = {
        {"metres", kUtm, 5e5, 4e6, 300, 40, 200, "m"},
        {"a kilometre is no 1000 m", kUtm, 5e5, 4e6, 1500, 40, 1, "km"},
        {"kilometres", kUtm, 5e5, 4e6, 70000, 900, 50, "km"},
        {"less than a metre", kUtm, 5e5, 4e6, 0.3, 0.04, 0.2, "m"},
        {"feet", kUsFeet, 6e6, 2e6, 3000, 90, 2000, "ft"},
        {"miles", kUsFeet, 6e6, 2e6, 14000, 900, 2, "mi"},
        {"degrees at the equator: 1.1 km in 0.01", kDegrees, 127, -0.0005, 0.0125, 0.001, 1, "km"},
        {"half as long at 60 degrees", kDegrees, 127, 59.9995, 0.0125, 0.001, 500, "m"},
        {"around the globe", kDegrees, -180, 0, 360, 20, 10000, "km"},
        {"pixels", kPixel, 0, 0, 300, 40, 200, "px"},
        {"no reference", kNone, 0, 0, 300, 40, 200, "units"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const XSpatialReference reference = Reference(row.reference);
        for (int type = 0; type < kXScaleBarTypeCount; ++type) {
            XvcScaleBar bar;
            bar.Set(row.x, row.y, 0, row.x + row.width, row.y + row.height, 0);
            bar.SetSR(&reference);
            bar.SetType(type);
            const tagXScaleBarLayout layout = bar.GetLayout();
            ASSERT_GT(layout.divisions, 0);
            EXPECT_NEAR(layout.length, row.length, 1e-9 * row.length);
            EXPECT_STREQ(layout.unit, row.unit);
            EXPECT_NEAR(layout.division * layout.divisions, layout.length, 1e-9 * row.length);
            ExpectWithin(bar, row.x, row.y, row.x + row.width, row.y + row.height);
            if (row.reference != kDegrees) continue;
            const double y = row.y + (layout.bottom + layout.top) / 2;
            EXPECT_NEAR(XfnGeodesicDistance(row.x + layout.left, y, row.x + layout.right, y),
                        row.length * (layout.unit == "km" ? 1000 : 1), row.length * 1e-6);
        }
    }
}

TEST(VectorMarks, ScaleBarsKeepWithinAnyRectangle)
{
    XvcScaleBar bar;
    bar.SetFontSize(15);
    for (int type = 0; type < kXScaleBarTypeCount; ++type) {
        for (const double width : {1e-9, 3.0, 17.0, 40.0, 99.0, 250.0, 1e12}) {
            for (const double height : {0.5, 12.0, 47.0}) {
                for (const int align : {0, kXTextLeft | kXTextBottom, kXTextRight | kXTextTop}) {
                    SCOPED_TRACE(std::to_string(type) + " " + std::to_string(width));
                    bar.SetType(type);
                    bar.SetTextAlign(align);
                    bar.Set(5, 7, 0, 5 + width, 7 + height, 0);
                    ExpectWithin(bar, 5, 7, 5 + width, 7 + height);
                    EXPECT_FALSE(RecordObject(bar)->GetCommands().empty() && width >= 3.0);
                }
            }
        }
    }
    XSpatialReference degrees = Reference(4326);
    bar.SetSR(&degrees);
    for (const auto& [x, y] :
         {std::pair{0.0, 10.0}, {10.0, 0.0}, {kNan, 10.0}, {1e308, 1.0}, {1.0, 1e5}}) {
        bar.Set(0, 0, 0, x, y, 0); // flat, none, off the globe
        EXPECT_EQ(bar.GetLayout().divisions, 0);
        EXPECT_TRUE(RecordObject(bar)->GetCommands().empty());
    }
}

TEST(VectorMarks, AxisTicksAreRound)
{
    const struct
    {
        tagXAxisScale scale;
        const char* labels;
        std::size_t ticks; // minor ones too
    } rows[] = {
        {{0, 1}, "0.0 0.2 0.4 0.6 0.8 1.0", 21},
        {{1, 0}, "0.0 0.2 0.4 0.6 0.8 1.0", 21},
        {{-0.3, 0.3}, "-0.3 -0.2 -0.1 0.0 0.1 0.2 0.3", 31},
        {{0, 255, false, 0, 6, 0}, "0 50 100 150 200 250", 6},
        {{1990, 2030, false, 10, 6, 1}, "1990 2000 2010 2020 2030", 9},
        {{0, 1, false, 0.25, 6, 0}, "0.00 0.25 0.50 0.75 1.00", 5},
        {{0, 3e7, false, 0, 4, 0}, "0 10000000 20000000 30000000", 4},
        {{7, 7}, "7", 1},
        {{1, 1000, true}, "1 10 100 1000", 28},
        {{0.05, 2, true}, "0.1 1", 16},
        {{1e-6, 1e9, true, 0, 6}, "1e-6 0.001 1 1000 1000000 1e9", 16},
        {{2, 8, true, 0, 4, 0}, "2 4 6 8", 4},                  // less than a decade
        {{-5, 5, true, 0, 3, 0}, "-5 0 5", 3},                  // no logarithm
        {{0, 1, false, 1e-9, 3, 0, 3}, "0.000 0.500 1.000", 3}, // a step for a billion ticks
        {{kNan, 1}, "", 0},
        {{1, kNan}, "", 0},
        {{-1.6e308, 1.6e308}, "", 0},
        {{1e300, 1.0000000000000002e300}, "", 0},
        {{4e-320, 5e-320}, "", 0},
    };
    for (const auto& row : rows) {
        std::string labels;
        double before = -std::numeric_limits<double>::infinity();
        const auto ticks = XfnMakeAxisTicks(row.scale);
        for (const tagXAxisTick& tick : ticks) {
            if (tick.isMajor) labels += (labels.empty() ? "" : " ") + std::string(tick.label);
            EXPECT_GT(tick.value, before);
            before = tick.value;
        }
        EXPECT_EQ(labels, row.labels);
        EXPECT_EQ(ticks.size(), row.ticks) << row.labels;
    }
}

TEST(VectorMarks, AxisCarriesValuesToPlacesAndBack)
{
    for (const int mode : {0, 1, 2, 3}) { // logarithmic, inverted
        XvcAxis axis({10, 20}, {40, 60}, 100, 1);
        axis.SetLogFlag(mode & 1);
        axis.SetInvertFlag(mode & 2);
        EXPECT_NEAR(axis.GetPlaceOf(mode & 2 ? 1 : 100).y, 20, 1e-9);
        EXPECT_NEAR(axis.GetPlaceOf(mode & 1 ? 10 : 50.5).x, 25, 1e-9);
        const tagXVector3 at = axis.GetPlaceOf(37);
        EXPECT_NEAR(axis.GetValueAt(at.x + 4, at.y - 3), 37, 1e-9);
        EXPECT_EQ(XfnIsSet(axis.GetPlaceOf(-1).x), mode & 1 ? 0 : 1);
    }
    XvcAxis axis({0, 0}, {100, 0});
    axis.SetFontSize(5);
    axis.SetTitle("title");
    axis.CalcRange();
    EXPECT_LT(axis.GetRange().minY, -10); // labels and title below
    EXPECT_EQ(axis.GetRange().maxY, 0);
    axis.SetTickSide(XvcAxis::kAboveOrRight);
    axis.CalcRange();
    EXPECT_EQ(axis.GetRange().minY, 0);
    EXPECT_EQ(axis.GetValueAt(kNan, 0), kXNotSet);
}

TEST(VectorMarks, LegendKeepsWithinItsBox)
{
    XvcLegend legend;
    legend.SetTitle("A title");
    XvcPolygon area;
    area.SetName("area");
    area.SetFillStyle(tagXFillStyle(tagXFillStyle::kBrick));
    legend.AddItem(area);
    legend.AddItem(XvcSymbol(7), "symbol");
    legend.AddItem(XvcLeaderLine(), "a longer name of a line");
    legend.AddItem(XvcPoint(), "point");
    EXPECT_STREQ(legend.GetItemAt(0)->label, "area");
    const int kinds[] = {tagXLegendItem::kPatch, tagXLegendItem::kSymbol, tagXLegendItem::kLine,
                         tagXLegendItem::kPoint};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(legend.GetItemAt(i)->kind, kinds[i]);
    EXPECT_EQ(legend.GetItemAt(1)->shape, 7);
    EXPECT_TRUE(legend.GetItemAt(1)->outline.IsEmpty());
    XvcLegend likes; // a row looks as what it stands for
    XvcMPoint points;
    points.AddPoint(1, 2);
    points.GetPointObjAt(0)->SetType(3);
    XvcPolypoint set;
    set.SetType(2);
    XvcMeasurePoint measured;
    measured.SetType(4);
    likes.AddItem(points);
    likes.AddItem(set);
    likes.AddItem(measured);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(likes.GetItemAt(i)->shape, i == 0 ? 3 : i == 1 ? 2 : 4);
    XvcSymbolTable table;
    auto definition = std::make_unique<XvcSymbolDef>();
    XString error;
    ASSERT_TRUE(definition->SetOutline("sL -50 0 0 25 50 0 0 -25", error));
    table.Add(7, std::move(definition));
    XvcSymbol own(7);
    own.SetSymbolTable(&table);
    legend.AddItem(own, "own");
    XvcLegend single;
    single.AddItem(own);
    single.SetBound(0, 100, 100, 0);
    XvcLegend copy;
    const XSampleBytes stored = StoreObject(single);
    ASSERT_TRUE(LoadObject(copy, stored, stored.size()));
    EXPECT_EQ(RecordObject(copy)->GetCommands()[1].count, 4u); // behind the box
    for (const int columns : {1, 3, 99}) {
        legend.SetNumOfColumns(columns);
        legend.SetFontSize(-12);
        EXPECT_FALSE(legend.FitBox()); // pixels of no size
        for (const auto& [width, height] : {std::pair{300.0, 200.0}, {20.0, 200.0}, {300.0, 9.0}}) {
            legend.SetBound(50, 30 + height, 50 + width, 30);
            ExpectWithin(legend, 50, 30, 50 + width, 30 + height);
        }
        legend.SetFontSize(12);
        ASSERT_TRUE(legend.FitBox());
        double left, top, right, bottom;
        legend.GetBound(left, top, right, bottom);
        ExpectWithin(legend, left, bottom, right, top);
        EXPECT_NEAR(RecordObject(legend)->GetText(5).text.height, 12, 1e-9); // as asked
    }
    EXPECT_TRUE(legend.RemoveItemAt(4) && !legend.RemoveItemAt(4) && !legend.GetItemAt(-1));
}

TEST(VectorMarks, LeaderLineHasItsNoteOnTheSideItRunsTo)
{
    for (const double side : {1.0, -1.0}) {
        XvcLeaderLine leader({0, 0}, {side * 30, 40}, "note\nof two");
        leader.SetLanding(10);
        leader.SetFontSize(8);
        leader.SetStartSize(5);
        leader.CalcRange();
        const auto recording = RecordObject(leader);
        const tagXVertText& text = recording->GetText(0).text;
        EXPECT_GT(text.position.x * side, 40);
        EXPECT_EQ(text.align, kXTextMiddle | (side > 0 ? kXTextLeft : kXTextRight));
        EXPECT_NEAR(leader.GetRange().maxY, 48, 1e-9);
        tagXHitFlag flag{9, 9};
        EXPECT_EQ(leader.HitTest({side * 55, 45}, 0.1, flag), &leader); // on the note
        EXPECT_EQ(flag.kind, tagXHitFlag::kBody);
        EXPECT_EQ(leader.HitTest({side * 35, 40}, 0.1, flag), &leader); // on the landing
        EXPECT_EQ(leader.HitTest({side * -5, 45}, 0.1, flag), nullptr);
        leader.SetFontSize(-8); // of unknown size in the world: neither hit nor in the range
        leader.CalcRange();
        EXPECT_EQ(leader.HitTest({side * 55, 45}, 0.1, flag), nullptr);
        EXPECT_EQ(leader.GetRange().maxY, 40);
    }
}

} // namespace
