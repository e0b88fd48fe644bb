#pragma once

#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcAxis.h"
#include "foundation/vector/XvcBalloon.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEMF.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcGroup2.h"
#include "foundation/vector/XvcLeaderLine.h"
#include "foundation/vector/XvcLegend.h"
#include "foundation/vector/XvcMLine.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcMText.h"
#include "foundation/vector/XvcMeasureAngle.h"
#include "foundation/vector/XvcMeasureArea.h"
#include "foundation/vector/XvcMeasureDist.h"
#include "foundation/vector/XvcMeasurePoint.h"
#include "foundation/vector/XvcMeasureRange.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRaster.h"
#include "foundation/vector/XvcRectangle.h"
#include "foundation/vector/XvcScaleBar.h"
#include "foundation/vector/XvcSymbolDef.h"

#include <memory>
#include <string>
#include <vector>

/// One object of each class, none of whose own values is that of a new object.
struct tagXVectorSample
{
    std::unique_ptr<XvcObj> object;
    /// Some of the own values as tests/formats/xvc_reader.py prints them, without those that every
    /// class of the kind has.
    std::string own;
};

/// Attributes that none has by itself.
inline void SetSampleAttributes(XvcObj& object, int number)
{
    object.SetName(XfnFormat("name %d \xED\x95\x9C", number));
    object.SetLink("link");
    object.SetLineColor(0x80112233u);
    object.SetForeColor(0xFF445566u + static_cast<unsigned>(number));
    object.SetBackColor(0x00778899u);
    object.SetReserved(2.5);
    object.SetReserved(3, "third");
    object.SetThick(-1.5);
    tagXFillStyle fill(tagXFillStyle::kBrick);
    if (number % 2) {
        unsigned char pattern[tagXFillStyle::kPatternBytes] = {1, 2, 3};
        fill.SetStyle(pattern);
    }
    object.SetFillStyle(fill);
    tagXLineStyle line(tagXLineStyle::kDashDot);
    line.words[1] = 7;
    object.SetLineStyle(line);
    object.SetHideFlag(number % 3 == 0);
}

inline std::vector<tagXVectorSample> MakeVectorSamples()
{
    std::vector<tagXVectorSample> samples;
    const auto add = [&]<class Class>(Class made, const char* own) {
        samples.push_back({std::make_unique<Class>(made), own});
        SetSampleAttributes(*samples.back().object, static_cast<int>(samples.size()));
        samples.back().object->CalcRange();
    };
    const auto withVertices = []<class Class>(Class made) {
        for (const double x : {1.0, 4.5, 3.0})
            made.Add(x, 2.0 * x * x - 9.0, x == 3.0 ? 0.25 : 0.0);
        return made;
    };
    const auto withBox = []<class Class>(Class made) {
        made.SetLeftTop({10, 40, 1});
        made.SetRightBottom({30, 20, 2});
        return made;
    };
    const auto withReference = []<class Class>(Class made) {
        XSpatialReference utm;
        utm.importFromEPSG(32652);
        made.SetSR(&utm);
        made.SetFontSize(3.5);
        return made;
    };
    XvcPoint point(1e5, -2.5, 3.0);
    point.SetType(3);
    point.SetNumPieSegs(24);
    point.SetWorldPerPixel(0.5);
    XvcLine line({1, 2, 3}, {4, 5, 6});
    line.SetStartShapeID(4);
    line.SetEndShapeID(2);
    line.SetStartSize(-8.0);
    line.SetEndSize(2.0);
    line.SetWorldPerPixel(0.25);
    const XvcPolyline polyline = withVertices(XvcPolyline());
    const XvcPolygon polygon = withVertices(XvcPolygon());
    add(point, R"({"vertex":[1e5,-2.5,3],"shape":3,"sides":24,"worldPerPixel":0.5})");
    add(line, R"({"vertices":[[1,2,3],[4,5,6]],"startShape":4,"endShape":2,"startSize":-8,
                  "endSize":2,"worldPerPixel":0.25})");
    add(polyline, R"({"vertices":[[1,-7,0],[4.5,31.5,0],[3,9,0.25]]})");
    add(polygon, R"({"vertices":[[1,-7,0],[4.5,31.5,0],[3,9,0.25]]})");
    XvcPolypoint points = withVertices(XvcPolypoint());
    points.SetType(2);
    add(points, R"({"shape":2})");
    XvcMPoint pointList;
    pointList.AddPoint(point);
    add(pointList, "{}");
    XvcMLine lineList;
    lineList.AddLine(line);
    add(lineList, "{}");
    XvcMPolyline polylineList;
    polylineList.AddPolyline(polyline);
    add(polylineList, "{}");
    XvcMPolygon rings;
    rings.AddPolygon(polygon);
    rings.AddPolygon(polygon);
    rings.SetPolyFillMode(XvcMPolygon::kWinding);
    add(rings, R"({"fillRule":2})");
    XvcBspline spline;
    for (const double x : {1.0, 4.5, 3.0})
        spline.AddPole(x, -x, 0.0);
    spline.SetOrder(3);
    spline.SetResolution(7);
    spline.SetType(XvcBspline::kOpen);
    spline.AddKnot(0.0);
    spline.AddKnot(1.5);
    add(spline, R"({"order":3,"resolution":7,"type":1,"knots":[0,1.5]})");
    const auto round = []<class Class>(Class made) {
        made.SetPtStart(0, 0);
        made.SetPtEnd(8, 4);
        made.SetRotate(30);
        made.SetResolution(99);
        return made;
    };
    add(round(XvcEllipse()), R"({"center":[4,2,0],"start":[0,0,0],"end":[8,4,0],"axes":[4,2],
                                 "rotation":30,"resolution":99})");
    XvcArc arc = round(XvcArc());
    arc.SetCreateMode(2); // gives angles
    arc.SetAngle(10, 100);
    add(arc, R"({"startAngle":10,"endAngle":100,"mode":2})");
    XvcArcClosed pie = round(XvcArcClosed());
    pie.SetAngle(20, 200);
    pie.SetCloseType(1);
    add(pie, R"({"startAngle":20,"endAngle":200,"mode":1})");
    XvcRectangle rectangle;
    rectangle.Set(1, 2, 0, 5, 9, 0);
    add(rectangle, R"({"vertices":[[1,2,0],[1,9,0],[5,9,0],[5,2,0]]})");
    XvcGroup inner;
    inner.AddObj(std::make_unique<XvcPoint>(point));
    add(inner, "{}");
    XvcGroup2 outer;
    outer.AddObj(std::make_unique<XvcGroup>(inner));
    outer.AddObj(std::make_unique<XvcLine>(line));
    add(outer, "{}");
    XvcNorthArrow arrow;
    arrow.Set(0, 0, 0, 6, 8, 0);
    arrow.SetStyle(3);
    arrow.SetResolution(48);
    arrow.SetAngle(15);
    arrow.SetWorldPerPixel(0.5);
    add(arrow, R"({"style":3,"resolution":48,"angle":15,"worldPerPixel":0.5})");
    XvcScaleBar bar = withReference(XvcScaleBar());
    bar.Set(0, 0, 0, 600, 80, 0);
    bar.SetType(2);
    bar.SetTextAlign(9);
    add(bar, R"({"type":2,"align":9})");
    XvcText text;
    text.SetText("first\nsecond \xED\x95\x9C");
    text.SetPosition(7, 8, 9);
    text.SetFontSize(2.5);
    text.SetAngle(-20);
    text.SetTextAlign(44);
    text.SetDrawBorder(1);
    text.SetTextColor(0xFF010203u);
    add(text,
        R"({"text":"first\nsecond 한","position":[7,8,9],"fontSize":2.5,"angle":-20,"align":44,
                  "border":1,"textColor":4278256131})");
    XvcMText texts;
    texts.AddText(text);
    add(texts, "{}");
    XvcTextBox box = withBox(XvcTextBox());
    box.SetText("in a box");
    box.SetScale(0.1);
    box.SetXSpace(4);
    box.SetVertAlign(32);
    add(box, R"({"worldPerPixel":0.1,"xSpace":4,"vertAlign":32,"leftTop":[10,40,1]})");
    XvcBalloon balloon = withBox(XvcBalloon());
    balloon.SetText("says");
    balloon.SetPointPosition(-5, -6, 1);
    add(balloon, R"({"pointer":[-5,-6,1],"border":1})");
    XvcBitmap bitmap = withBox(XvcBitmap());
    tagBITMAPINFO info{};
    info.bmiHeader.biWidth = 3;
    info.bmiHeader.biHeight = 2;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biPlanes = 1;
    const unsigned char bits[24] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0, 11, 12};
    bitmap.SetDIB(&info, bits);
    bitmap.SetAlpha(0.75);
    bitmap.SetBorderFlag(1);
    bitmap.SetTransparent(1);
    bitmap.SetInexMap(std::vector<tagXVector3>(4, {1.5, 2.5, 0}).data());
    bitmap.SetMapBox(0, 1, 2, 3);
    add(bitmap, R"({"opacity":0.75,"border":1,"mapBox":[0,1,2,3]})");
    XvcRaster raster = withBox(XvcRaster());
    const std::uint16_t values[] = {1, 2, 3, 4, 5, 65535};
    raster.SetData(values, 3, 2, 1, 3);
    add(raster, R"({"samples":{"width":3,"height":2,"bands":1,"type":3,
                    "bytes":"01000200030004000500ffff"}})");
    XvcEMF drawing;
    drawing.SetOriginalSize(50, 40);
    drawing.SetWorldPerPixel(2);
    drawing.SetCenter(100, 100);
    drawing.SetLock(1);
    XString error;
    drawing.SetOutline("bC 0 0 45;sL -45 0 45 0", error);
    add(drawing, R"({"originalWidth":50,"originalHeight":40,"lock":1,"worldPerPixel":2})");
    XvcSymbol symbol(21, 3, 4);
    symbol.SetRotate(45);
    symbol.SetScale(2, -3);
    add(symbol, R"({"vertices":[[3,4,0]],"number":21,"rotation":45,"scaleX":2,"scaleY":-3})");
    XvcMSymbol symbols;
    symbols.AddSymbol(symbol);
    add(symbols, "{}");
    XvcSymbolDef definition;
    definition.SetID(500);
    definition.SetGroup("own");
    definition.SetOutline("fP -50 -50 0 50 50 -50", error);
    add(definition, R"({"number":500,"group":"own","outline":"fP -50 -50 0 50 50 -50"})");
    XvcMeasurePoint measured = withReference(XvcMeasurePoint(4e5, 4e6));
    measured.SetType(1);
    measured.SetDecimals(5);
    measured.SetLengthUnit(6);
    measured.SetAreaUnit(5);
    measured.SetTextColor(0xFF00FF00u);
    add(measured, R"({"shape":1,"decimals":5,"size":3.5,"textColor":4278255360,
                     "lengthUnit":6,"areaUnit":5})");
    add(withReference(withVertices(XvcMeasureDist())), R"({"decimals":2})");
    add(withReference(withVertices(XvcMeasureArea())), R"({"label":1})");
    add(withReference(withVertices(XvcMeasureAngle())), R"({"size":3.5})");
    XvcMeasureRange circle = withReference(XvcMeasureRange());
    circle.Add(1, 1);
    circle.Add(5, 1);
    add(circle, R"({"vertices":[[1,1,0],[5,1,0]]})");
    XvcLeaderLine leader({1, 1, 0}, {5, 6, 0}, "note");
    leader.SetLanding(2);
    leader.SetStartShapeID(5);
    leader.SetDrawBorder(1);
    add(leader, R"({"text":"note","landing":2,"startShape":5,"border":1})");
    XvcLegend legend = withBox(XvcLegend());
    legend.SetTitle("Legend");
    legend.AddItem(polygon, "");
    legend.AddItem(point, "a point");
    legend.SetNumOfColumns(2);
    add(legend, R"({"title":"Legend","columns":2})");
    XvcAxis axis({0, 0, 0}, {100, 0, 0}, 5, 500);
    axis.SetLogFlag(1);
    axis.SetMajorCount(4);
    axis.SetMinorCount(3);
    axis.SetDecimals(1);
    axis.SetInvertFlag(1);
    axis.SetTickSide(1);
    axis.SetGridLength(9);
    axis.SetTitle("axis");
    add(axis, R"({"minimum":5,"maximum":500,"log":1,"majorCount":4,"minorCount":3,"decimals":1,
                  "inverted":1,"tickSide":1,"gridLength":9,"title":"axis"})");
    return samples;
}
