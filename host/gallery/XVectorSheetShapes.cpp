#include "foundation/base/XNumber.h"
#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcGroup2.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcMLine.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRectangle.h"
#include "host/gallery/XVectorSheet.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace {

constexpr tagXColor kLine = XfnMakeColor(24, 58, 102, 255);
constexpr tagXColor kFore = XfnMakeColor(132, 180, 224, 255);
constexpr tagXColor kBack = XfnMakeColor(255, 244, 214, 255);
constexpr double kSide = 84.0;

template <class Class>
std::unique_ptr<Class> Make()
{
    auto object = std::make_unique<Class>();
    object->SetLineColor(kLine);
    object->SetForeColor(kFore);
    object->SetBackColor(kBack);
    object->SetThick(-2.0);
    return object;
}

// The corners of a star that crosses itself.
template <class Class>
void AddStar(Class& object, const tagXSheetCell& cell)
{
    for (int i = 0; i < 5; ++i) {
        const double angle = (90.0 + 144.0 * i) * std::numbers::pi / 180.0;
        object.Add(cell.GetMiddleX() + cell.width * 0.48 * std::cos(angle),
                   cell.GetMiddleY() + cell.height * 0.48 * std::sin(angle));
    }
}

template <class Class>
void AddPath(Class& object, const tagXSheetCell& cell,
             std::initializer_list<std::pair<double, double>> shares)
{
    for (const auto& [x, y] : shares)
        object.Add(cell.GetX(x), cell.GetY(y));
}

void AddPoints(XVectorSheet& sheet)
{
    const char* const names[] = {"Dot", "Circle", "Square", "Triangle", "Plus", "Cross"};
    sheet.AddHeading("Points");
    for (int shape = 0; shape < 6; ++shape) {
        const tagXSheetCell cell = sheet.AddCell(kSide, 44, names[shape]);
        const double sizes[] = {-9.0, -15.0, -30.0};
        for (int i = 0; i < 3; ++i) {
            auto point = Make<XvcPoint>();
            point->SetVertex(cell.GetX(0.14 + 0.3 * i + (i == 2 ? 0.08 : 0.0)), cell.GetMiddleY(),
                             0);
            point->SetType(shape);
            point->SetThick(sizes[i]);
            sheet.Add(std::move(point));
        }
    }
    const tagXSheetCell many = sheet.AddCell(kSide, 44, "XvcMPoint");
    auto points = std::make_unique<XvcMPoint>();
    for (int i = 0; i < 6; ++i) {
        auto point = Make<XvcPoint>();
        point->SetVertex(many.GetX(0.1 + 0.16 * i), many.GetY(i % 2 ? 0.7 : 0.3), 0);
        point->SetType(i);
        point->SetThick(-13.0);
        points->AddPoint(std::move(point));
    }
    sheet.Add(std::move(points));
    const tagXSheetCell cloud = sheet.AddCell(kSide, 44, "XvcPolypoint");
    auto set = Make<XvcPolypoint>();
    set->SetType(1);
    set->SetThick(-7.0);
    for (int i = 0; i < 24; ++i)
        set->Add(cloud.GetX(0.04 + 0.04 * i), cloud.GetY(0.5 + 0.4 * std::sin(i * 0.7)));
    sheet.Add(std::move(set));
}

void AddLines(XVectorSheet& sheet)
{
    const auto addLine = [&](const tagXSheetCell& cell) {
        auto line = Make<XvcLine>();
        line->SetVertices({cell.GetX(0.06), cell.GetMiddleY()},
                          {cell.GetX(0.94), cell.GetMiddleY()});
        return line;
    };
    sheet.AddHeading("Line ends");
    for (int shape = 0; shape < kXLineEndCount; ++shape) {
        auto line = addLine(sheet.AddCell(100, 26, XfnGetLineEndName(shape)));
        line->SetEndShapeID(shape);
        line->SetEndSize(20.0);
        line->SetStartShapeID(shape);
        line->SetStartSize(12.0);
        sheet.Add(std::move(line));
    }
    sheet.AddHeading("Line styles");
    for (int style = 0; style < tagXLineStyle::kPredefinedCount; ++style) {
        const tagXSheetCell cell = sheet.AddCell(100, 30, tagXLineStyle::GetName(style));
        for (int i = 0; i < 3; ++i) {
            auto line = addLine({cell.left, cell.GetTop() - 10.0 * i - 10.0, cell.width, 10.0});
            line->SetLineStyle(tagXLineStyle(style));
            line->SetThick(-1.0 - i * 1.5);
            sheet.Add(std::move(line));
        }
    }
}

void AddFills(XVectorSheet& sheet)
{
    const auto addBox = [&](const XString& name, const tagXFillStyle& style) {
        const tagXSheetCell cell = sheet.AddCell(kSide, 48, name);
        auto box = Make<XvcRectangle>();
        box->Set(cell.left, cell.bottom, 0, cell.GetRight(), cell.GetTop(), 0);
        box->SetFillStyle(style);
        box->SetThick(-1.0);
        sheet.Add(std::move(box));
    };
    sheet.AddHeading("Fill styles");
    for (int style = 0; style < tagXFillStyle::kPredefinedCount; ++style) {
        if (tagXFillStyle::GetName(style))
            addBox(tagXFillStyle::GetName(style), tagXFillStyle(style));
    }
    unsigned char pattern[tagXFillStyle::kPatternBytes] = {};
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            const int distance = (x % 16 - 8) * (x % 16 - 8) + (y % 16 - 8) * (y % 16 - 8);
            if (distance < 40 && distance > 12) pattern[y * 4 + x / 8] |= 128u >> x % 8;
        }
    }
    tagXFillStyle own;
    own.SetStyle(pattern);
    addBox("Pattern of one's own", own);
}

void AddShapes(XVectorSheet& sheet)
{
    sheet.AddHeading("Shapes");
    const auto next = [&](const char* name) { return sheet.AddCell(kSide + 20, kSide, name); };

    tagXSheetCell cell = next("XvcPolyline");
    auto polyline = Make<XvcPolyline>();
    AddPath(*polyline, cell, {{0, 0.1}, {0.25, 0.9}, {0.45, 0.3}, {0.7, 1}, {1, 0.2}});
    sheet.Add(std::move(polyline));

    cell = next("XvcMPolyline");
    auto polylines = Make<XvcMPolyline>();
    for (const double y : {0.0, 0.3, 0.6}) {
        XvcPolyline part = *Make<XvcPolyline>();
        AddPath(part, cell, {{0, y}, {0.3, y + 0.4}, {0.6, y + 0.1}, {1, y + 0.35}});
        polylines->AddPolyline(part);
    }
    sheet.Add(std::move(polylines));

    cell = next("XvcMLine");
    auto lines = Make<XvcMLine>();
    for (int i = 0; i < 6; ++i) {
        XvcLine part = *Make<XvcLine>();
        part.SetVertices({cell.GetX(0.1 * i), cell.GetY(0)},
                         {cell.GetX(0.5 + 0.1 * i), cell.GetY(1)});
        lines->AddLine(part);
    }
    sheet.Add(std::move(lines));

    cell = next("XvcPolygon");
    auto polygon = Make<XvcPolygon>();
    AddPath(*polygon, cell, {{0.1, 0}, {0, 0.7}, {0.4, 1}, {0.55, 0.6}, {1, 0.8}, {0.85, 0.1}});
    sheet.Add(std::move(polygon));

    for (const int mode : {XvcMPolygon::kAlternate, XvcMPolygon::kWinding}) {
        cell = next(mode == XvcMPolygon::kAlternate ? "XvcMPolygon, alternate"
                                                    : "XvcMPolygon, winding");
        auto polygons = Make<XvcMPolygon>();
        XvcPolygon star;
        AddStar(star, cell);
        polygons->AddPolygon(star);
        polygons->SetPolyFillMode(mode);
        sheet.Add(std::move(polygons));
    }
    cell = next("XvcMPolygon, hole");
    auto holed = Make<XvcMPolygon>();
    XvcPolygon outer, inner;
    AddPath(outer, cell, {{0, 0}, {0, 1}, {1, 1}, {1, 0}});
    AddPath(inner, cell, {{0.25, 0.25}, {0.5, 0.8}, {0.75, 0.25}});
    holed->AddPolygon(outer);
    holed->AddPolygon(inner);
    sheet.Add(std::move(holed));

    const char* const splines[] = {"XvcBspline, clamped", "XvcBspline, open", "XvcBspline, closed"};
    for (int type = 0; type < 3; ++type) {
        cell = next(splines[type]);
        auto spline = Make<XvcBspline>();
        auto poles = Make<XvcPolyline>();
        poles->SetLineStyle(tagXLineStyle(tagXLineStyle::kDot));
        poles->SetThick(-1.0);
        spline->SetType(type);
        for (const auto& [x, y] :
             {std::pair{0.0, 0.1}, {0.1, 1.0}, {0.5, 0.4}, {0.8, 1.0}, {1.0, 0.0}}) {
            spline->AddPole(cell.GetX(x), cell.GetY(y));
            poles->Add(cell.GetX(x), cell.GetY(y));
        }
        sheet.Add(std::move(poles));
        sheet.Add(std::move(spline));
    }
}

void AddRounds(XVectorSheet& sheet)
{
    const auto next = [&](const char* name) { return sheet.AddCell(kSide + 20, kSide, name); };
    const auto place = [](XvcEllipseObj& object, const tagXSheetCell& cell, double rotateDeg) {
        object.SetCenter(cell.GetMiddleX(), cell.GetMiddleY());
        object.SetAxis(cell.width * 0.5, cell.height * 0.3);
        object.SetRotate(rotateDeg);
    };
    for (const double rotateDeg : {0.0, 30.0}) {
        auto ellipse = Make<XvcEllipse>();
        place(*ellipse, next(rotateDeg > 0.0 ? "XvcEllipse, turned" : "XvcEllipse"), rotateDeg);
        sheet.Add(std::move(ellipse));
    }
    auto arc = Make<XvcArc>();
    place(*arc, next("XvcArc"), 20.0);
    arc->SetAngle(-30, 200);
    sheet.Add(std::move(arc));
    for (const int type : {XvcArcClosed::kChord, XvcArcClosed::kPie}) {
        auto closed = Make<XvcArcClosed>();
        place(*closed,
              next(type == XvcArcClosed::kPie ? "XvcArcClosed, pie" : "XvcArcClosed, chord"), 20.0);
        closed->SetAngle(-30, 200);
        closed->SetCloseType(type);
        sheet.Add(std::move(closed));
    }
    for (const double angleDeg : {0.0, 25.0}) {
        const tagXSheetCell cell = next(angleDeg > 0.0 ? "XvcRectangle, turned" : "XvcRectangle");
        auto box = Make<XvcRectangle>();
        box->Set(cell.GetX(0.08), cell.GetY(0.2), 0, cell.GetX(0.92), cell.GetY(0.8), 0);
        box->CalcRange();
        box->RotateObject(angleDeg);
        sheet.Add(std::move(box));
    }
    for (const bool isSecond : {false, true}) {
        const tagXSheetCell cell = next(isSecond ? "XvcGroup2" : "XvcGroup");
        auto group = isSecond ? std::make_unique<XvcGroup2>() : std::make_unique<XvcGroup>();
        auto box = Make<XvcRectangle>();
        box->Set(cell.GetX(0.1), cell.GetY(0), 0, cell.GetX(0.7), cell.GetY(0.6), 0);
        group->AddObj(std::move(box));
        auto ellipse = Make<XvcEllipse>();
        ellipse->SetCenter(cell.GetX(0.65), cell.GetY(0.65));
        ellipse->SetAxis(cell.width * 0.3, cell.height * 0.3);
        ellipse->SetForeColor(XfnMakeColor(240, 150, 90, 160)); // see-through
        group->AddObj(std::move(ellipse));
        sheet.Add(std::move(group));
    }
    const tagXSheetCell cell = sheet.AddCell(kSide + 20, kSide, "Thickness 1 to 12 px");
    for (int i = 0; i < 6; ++i) {
        auto line = Make<XvcLine>();
        line->SetVertices({cell.left, cell.GetY(0.97 - 0.17 * i)},
                          {cell.GetRight(), cell.GetY(0.97 - 0.17 * i)});
        const double thick[] = {-1.0, -2.0, -3.0, -5.0, -8.0, -12.0};
        line->SetThick(thick[i]);
        sheet.Add(std::move(line));
    }
}

} // namespace

void XfnFillShapeSheet(XVectorSheet& sheet)
{
    AddPoints(sheet);
    AddLines(sheet);
    AddFills(sheet);
    AddShapes(sheet);
    AddRounds(sheet);
}
