#include "vecprop/XObjectForms.h"

#include "vecprop/XFieldList.h"
#include "vecprop/XMarkForms.h"

#include "foundation/base/XNumber.h"
#include "foundation/surface/XPointShape.h"
#include "foundation/vector/XLineEnd.h"
#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRectangle.h"

namespace {

constexpr const char* kDegrees = "\xC2\xB0";
constexpr const char* kByThickness = "by thickness";

XFieldList::Choices GetPointShapes()
{
    static constexpr const char* kNames[] = {"Dot",      "Disc",          "Square",
                                             "Triangle", "Upright cross", "Diagonal cross"};
    return XfnMakeChoices(kXPointCross + 1, [](int shape) { return kNames[shape]; });
}

void AddPoint(XFieldList& list)
{
    list.AddPlace(
        "position", "&Position:", "Position",
        [](const XvcObj& object) { return static_cast<const XvcPoint&>(object).GetVertex(); },
        [](XvcObj& object, const tagXVector3& place) {
            static_cast<XvcPoint&>(object).SetVertex(place);
        });
    list.AddChoice("shape", "&Mark:", &XvcPoint::GetType, &XvcPoint::SetType,
                   XChoicePicture::PointShape, GetPointShapes());
    list.AddCount("sides", "S&ides of a disc:", &XvcPoint::GetNumPieSegs, &XvcPoint::SetNumPieSegs,
                  3, 360)
        .tip = "For renderers that draw a disc as a polygon; here discs are round.";
}

void AddLine(XFieldList& list)
{
    list.AddPlace(
        "start", "&Start:", "Start",
        [](const XvcObj& object) { return static_cast<const XvcLine&>(object).GetStartVertex(); },
        [](XvcObj& object, const tagXVector3& place) {
            static_cast<XvcLine&>(object).SetStartVertex(place);
        });
    list.AddPlace(
        "end", "&End:", "End",
        [](const XvcObj& object) { return static_cast<const XvcLine&>(object).GetEndVertex(); },
        [](XvcObj& object, const tagXVector3& place) {
            static_cast<XvcLine&>(object).SetEndVertex(place);
        });
    const auto shapes = XfnMakeChoices(kXLineEndCount, &XfnGetLineEndName);
    list.AddChoice("startShape", "S&hape at start:", &XvcLine::GetStartShapeID,
                   &XvcLine::SetStartShapeID, XChoicePicture::LineStart, shapes);
    list.AddNumber("startSize", "S&ize at start:", &XvcLine::GetStartSize, &XvcLine::SetStartSize,
                   "", XFieldKind::Length)
        .whenZero = kByThickness;
    list.AddChoice("endShape", "Shape at en&d:", &XvcLine::GetEndShapeID, &XvcLine::SetEndShapeID,
                   XChoicePicture::LineEnd, shapes);
    list.AddNumber("endSize", "Si&ze at end:", &XvcLine::GetEndSize, &XvcLine::SetEndSize, "",
                   XFieldKind::Length)
        .whenZero = kByThickness;
}

void AddEllipse(XFieldList& list)
{
    struct Axes
    {
        double x = 0.0, y = 0.0;
        static Axes Get(const XvcObj& object)
        {
            const auto& ellipse = static_cast<const XvcEllipseObj&>(object);
            return {ellipse.GetAxisX(), ellipse.GetAxisY()};
        }
        static void Set(XvcObj& object, const Axes& axes)
        {
            static_cast<XvcEllipseObj&>(object).SetAxis(axes.x, axes.y);
        }
    };
    list.AddPlace(
        "center", "C&entre:", "Centre",
        [](const XvcObj& object) { return static_cast<const XvcEllipseObj&>(object).GetCenter(); },
        [](XvcObj& object, const tagXVector3& place) {
            static_cast<XvcEllipseObj&>(object).SetCenter(place);
        });
    const auto addAxis = [&list](const char* id, const char* label, const char* name,
                                 double Axes::*part) {
        tagXObjectField& axis = list.AddPart(id, label, name, part, &Axes::Get, &Axes::Set);
        axis.isNonZero = true;
        axis.measure = XFieldMeasure::Size;
    };
    addAxis("axisX", "Half &axes:", "First half axis", &Axes::x);
    addAxis("axisY", "", "Second half axis", &Axes::y);
    list.AddNumber("turn", "&Rotation:", &XvcEllipseObj::GetRotate, &XvcEllipseObj::SetRotate,
                   kDegrees);
}

void AddChords(XFieldList& list)
{
    list.AddCount("resolution", "Se&gments per circle:", &XvcEllipseObj::GetResolution,
                  &XvcEllipseObj::SetResolution, XvcEllipseObj::kMinResolution,
                  XvcEllipseObj::kMaxResolution);
}

void AddArc(XFieldList& list)
{
    struct Angles
    {
        double start = 0.0, end = 0.0;
        static Angles Get(const XvcObj& object)
        {
            const auto& arc = static_cast<const XvcArcObj&>(object);
            return {arc.GetStartAngle(), arc.GetEndAngle()};
        }
        static void Set(XvcObj& object, const Angles& angles)
        {
            static_cast<XvcArcObj&>(object).SetAngle(angles.start, angles.end);
        }
    };
    AddEllipse(list);
    list.AddPart("startAngle", "&Start, end angle:", "Start angle", &Angles::start, &Angles::Get,
                 &Angles::Set)
        .unit = kDegrees;
    list.AddPart("endAngle", "", "End angle", &Angles::end, &Angles::Get, &Angles::Set).unit =
        kDegrees;
}

XString WriteKnots(const XvcObj& object)
{
    const auto& spline = static_cast<const XvcBspline&>(object);
    XString text;
    for (int i = 0; i < spline.GetKnotSize(); ++i) {
        if (i > 0) text += ' ';
        text += XfnFormatShortest(spline.GetKnotAt(i));
    }
    return text;
}

void ReadKnots(XvcObj& object, const XString& text)
{
    auto& spline = static_cast<XvcBspline&>(object);
    spline.RemoveAllKnots();
    double knot;
    for (const char* at = text; const int used = XfnReadNumber(at, knot); at += used)
        spline.AddKnot(knot);
}

void AddSpline(XFieldList& list)
{
    static constexpr const char* kNames[] = {"Clamped", "Open", "Closed"};
    list.AddChoice("type", "&Ends:", &XvcBspline::GetType, &XvcBspline::SetType,
                   XChoicePicture::SplineType,
                   XfnMakeChoices(3, [](int type) { return kNames[type]; }));
    list.AddCount("order", "O&rder:", &XvcBspline::GetOrder, &XvcBspline::SetOrder,
                  XvcBspline::kMinOrder, XvcBspline::kMaxOrder)
        .tip = "The degree plus one: 2 is straight lines, 4 a cubic curve.";
    list.AddCount("resolution", "&Steps per span:", &XvcBspline::GetResolution,
                  &XvcBspline::SetResolution, 1, XvcBspline::kMaxResolution);
    tagXObjectField& knots = list.Add("knots", "&Knots:", XFieldKind::Knots);
    knots.get = [](const XvcObj& object) -> XFieldValue { return WriteKnots(object); };
    knots.set = [](XvcObj& object, const XFieldValue& value) {
        ReadKnots(object, std::get<XString>(value));
    };
    knots.tip = "As many as poles plus order, in rising order; empty: made evenly";
}

template <class Class>
tagXVertexAccess GetVertexAccess(int least)
{
    tagXVertexAccess access;
    access.get = [](const XvcObj& object) {
        return static_cast<const XvcVertexObj&>(object).GetVertexArray();
    };
    access.set = [](XvcObj& object, const XVertexArray& vertices) {
        static_cast<Class&>(object).GetVertexArray() = vertices;
    };
    access.least = least;
    return access;
}

tagXVertexAccess GetPoleAccess()
{
    tagXVertexAccess access = GetVertexAccess<XvcPolyline>(2);
    access.set = [](XvcObj& object, const XVertexArray& poles) {
        auto& spline = static_cast<XvcBspline&>(object);
        spline.RemoveAllPoles();
        for (int i = 0; i < poles.GetSize(); ++i)
            spline.AddPole(poles.GetAt(i));
    };
    access.noun = "pole";
    access.plural = "poles";
    return access;
}

} // namespace

tagXObjectForm XfnGetObjectForm(XObjectDialog dialog)
{
    tagXObjectForm form;
    XFieldList list;
    const auto end = [&](const char* title, unsigned style, const char* thick = "&Thickness:") {
        form.title = XString(title) + " properties";
        form.page = title;
        list.AddCommon(style, thick);
        form.fields = list.Take();
        return form;
    };
    constexpr unsigned kMark =
        XFieldList::kLine | XFieldList::kFore | XFieldList::kThick | XFieldList::kLineStyle;
    switch (dialog) {
    case XObjectDialog::Point:
        AddPoint(list);
        return end("Point", kMark, "&Size:");
    case XObjectDialog::Line:
        AddLine(list);
        return end("Line", XFieldList::kStroke);
    case XObjectDialog::Polyline:
        form.vertices = GetVertexAccess<XvcPolyline>(2);
        return end("Polyline", XFieldList::kStroke);
    case XObjectDialog::Polygon:
        form.vertices = GetVertexAccess<XvcPolygon>(3);
        return end("Polygon", XFieldList::kAll);
    case XObjectDialog::Polypoint:
        form.vertices = GetVertexAccess<XvcPolypoint>(1);
        list.AddChoice("shape", "&Mark:", &XvcPolypoint::GetType, &XvcPolypoint::SetType,
                       XChoicePicture::PointShape, GetPointShapes());
        return end("Points", kMark, "&Size:");
    case XObjectDialog::Bspline:
        form.vertices = GetPoleAccess();
        AddSpline(list);
        return end("Curve", XFieldList::kStroke);
    case XObjectDialog::Ellipse:
        AddEllipse(list);
        AddChords(list);
        return end("Ellipse", XFieldList::kAll);
    case XObjectDialog::Arc: {
        static constexpr const char* kModes[] = {"Box", "Quarter circle", "Half circle"};
        AddArc(list);
        list.AddChoice("mode", "&Drawn as:", &XvcArc::GetCreateMode, &XvcArc::SetCreateMode,
                       XChoicePicture::None, XfnMakeChoices(3, [](int m) { return kModes[m]; }))
            .tip = "What a start and an end point mean when the arc is set by them";
        AddChords(list);
        return end("Arc", XFieldList::kStroke);
    }
    case XObjectDialog::ArcClosed: {
        static constexpr const char* kTypes[] = {"Chord", "Pie"};
        AddArc(list);
        list.AddChoice("close", "C&losed as:", &XvcArcClosed::GetCloseType,
                       &XvcArcClosed::SetCloseType, XChoicePicture::CloseType,
                       XfnMakeChoices(2, [](int type) { return kTypes[type]; }));
        AddChords(list);
        return end("Arc area", XFieldList::kAll);
    }
    case XObjectDialog::Rect:
        list.AddRect();
        return end("Rectangle", XFieldList::kAll);
    case XObjectDialog::Bitmap:
        XfnAddBitmapFields(list);
        return end("Picture", XFieldList::kStroke | XFieldList::kBack);
    case XObjectDialog::Raster:
        XfnAddRasterFields(list);
        return end("Raster patch", 0);
    case XObjectDialog::Text:
        XfnAddTextFields(list);
        return end("Text", XFieldList::kAll);
    case XObjectDialog::Symbol:
        XfnAddSymbolFields(list);
        return end("Symbol", XFieldList::kAll);
    case XObjectDialog::NorthArrow:
        XfnAddNorthArrowFields(list);
        return end("North arrow", XFieldList::kAll);
    case XObjectDialog::Object:
    case XObjectDialog::Group:
        break;
    }
    return end("Object", XFieldList::kAll);
}
