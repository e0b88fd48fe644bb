#include "vecprop/XFieldList.h"

#include "vecprop/XFieldText.h"
#include "vecprop/XObjectUnit.h"
#include "vecprop/XStyleChoices.h"

#include "foundation/base/XSentinels.h"
#include "foundation/vector/XvcBoxObj.h"
#include "foundation/vector/XvcRectObj.h"

#include <cmath>
#include <numbers>

namespace {

/// An upright or turned rectangle by what a user would type.
struct Rect
{
    double x = 0.0, y = 0.0; // the corner that a turn of -angle makes the lower left one
    double width = 0.0, height = 0.0;
    double angleDeg = 0.0;
    double zLower = 0.0, zUpper = 0.0;
};

double Cross(const tagXVector3& a, const tagXVector3& b)
{
    return a.x * b.y - a.y * b.x;
}

Rect GetRect(const XvcObj& object)
{
    const auto& rect = static_cast<const XvcRectObj&>(object);
    if (!rect.IsSet()) return {kXNotSet, kXNotSet, kXNotSet, kXNotSet, 0.0, 0.0, 0.0};
    const tagXVector3 up = rect.GetAt(1) - rect.GetAt(0);
    const tagXVector3 across = rect.GetAt(3) - rect.GetAt(0);
    // a corner that was dragged past the opposite one mirrors the order of the corners
    const bool isMirrored = Cross(across, up) < 0.0;
    const tagXVector3 origin = rect.GetAt(isMirrored ? 3 : 0);
    double angleDeg = rect.GetBoxAngleDeg() + (isMirrored ? 180.0 : 0.0);
    if (angleDeg > 180.0) angleDeg -= 360.0;
    return {origin.x, origin.y,        rect.GetBoxWidth(), rect.GetBoxHeight(),
            angleDeg, rect.GetAt(0).z, rect.GetAt(2).z};
}

void SetRect(XvcObj& object, const Rect& wanted)
{
    Rect r = wanted;
    for (double* value : {&r.x, &r.y, &r.width, &r.height})
        if (!XfnIsSet(*value)) *value = 0.0; // one that was not set begins at the origin
    auto& rect = static_cast<XvcRectObj&>(object);
    rect.Set(r.x, r.y, r.zLower, r.x + r.width, r.y + r.height, r.zUpper);
    if (r.angleDeg != 0.0) rect.RotateObject(r.x, r.y, r.angleDeg);
}

struct Box
{
    double left = 0.0, top = 0.0;
    double width = 0.0, height = 0.0;
};

Box GetBox(const XvcObj& object)
{
    double left, top, right, bottom;
    static_cast<const XvcBoxObj&>(object).GetBound(left, top, right, bottom);
    if (!XfnIsSet(left)) return {kXNotSet, kXNotSet, kXNotSet, kXNotSet};
    return {left, top, right - left, top - bottom};
}

void SetBox(XvcObj& object, const Box& wanted)
{
    Box b = wanted;
    for (double* value : {&b.left, &b.top, &b.width, &b.height})
        if (!XfnIsSet(*value)) *value = 0.0;
    static_cast<XvcBoxObj&>(object).SetBound(b.left, b.top, b.left + b.width, b.top - b.height);
}

constexpr int kAngleDigits = 10; // computed from large coordinates it is no better

// Sizes that would leave nothing to see are refused.
void MakeSize(tagXObjectField& field)
{
    field.least = 0.0;
    field.isNonZero = true;
    field.measure = XFieldMeasure::Size;
}

XString NameOf(const char* label)
{
    XString name(label);
    name.Replace("&", "");
    name.TrimRight(":");
    return name;
}

constexpr tagXColor kAlphaBits = 0xFF000000u;

void AddColor(XFieldList& list, const char* id, const char* label, tagXColor (XvcObj::*get)() const,
              void (XvcObj::*put)(tagXColor))
{
    tagXObjectField& color = list.Add(id, label, XFieldKind::Color);
    const XString name = color.name;
    color.get = [get](const XvcObj& object) -> XFieldValue {
        return (object.*get)() & ~kAlphaBits;
    };
    color.set = [get, put](XvcObj& object, const XFieldValue& value) {
        (object.*put)(((object.*get)() & kAlphaBits) | (std::get<tagXColor>(value) & ~kAlphaBits));
    };
    tagXObjectField& opacity =
        list.Add(XString(id) + "Opacity", "", XFieldKind::Opacity, name + ", opacity");
    opacity.get = [get](const XvcObj& object) -> XFieldValue {
        return static_cast<int>(std::lround(XfnGetAlpha((object.*get)()) / 2.55));
    };
    opacity.set = [get, put](XvcObj& object, const XFieldValue& value) {
        const auto alpha = static_cast<tagXColor>(std::lround(std::get<int>(value) * 2.55));
        (object.*put)(((object.*get)() & ~kAlphaBits) | alpha << 24);
    };
}

XString GetExtent(const XvcObj& object)
{
    const tagXVectorRange& range = object.GetRange();
    if (range.IsEmpty()) return "none";
    const int places = XfnGetObjectUnit(object).places;
    const auto write = [places](double value) { return XfnFormatPlaces(value, places); };
    return XString("x ") + write(range.minX) + " to " + write(range.maxX) + "\ny " +
           write(range.minY) + " to " + write(range.maxY);
}

} // namespace

void tagXObjectField::Copy(XvcObj& to, const XvcObj& from) const
{
    if (copy)
        copy(to, from);
    else
        set(to, get(from));
}

tagXObjectField& XFieldList::Add(const char* id, const char* label, XFieldKind kind,
                                 const char* name)
{
    tagXObjectField& field = m_fields.emplace_back();
    field.id = id;
    field.label = label;
    field.name = *name ? XString(name) : NameOf(label);
    field.kind = kind;
    field.page = m_page;
    if (kind == XFieldKind::Length) {
        field.least = 0.0;
        field.measure = XFieldMeasure::Size;
    }
    return field;
}

void XFieldList::AddPlace(const char* id, const char* label, const char* name,
                          std::function<tagXVector3(const XvcObj&)> get,
                          std::function<void(XvcObj&, const tagXVector3&)> set)
{
    static constexpr struct
    {
        const char* axis;
        double tagXVector3::*part;
    } kAxes[] = {{"x", &tagXVector3::x}, {"y", &tagXVector3::y}, {"z", &tagXVector3::z}};
    XString row = label;
    row.Replace(":", " x, y, z:");
    for (const auto& axis : kAxes) {
        const bool isFirst = axis.part == &tagXVector3::x;
        const XString axisName = XString(name) + " " + axis.axis;
        tagXObjectField& field =
            Add(XString(id) + axis.axis, isFirst ? row : XString(), XFieldKind::Number, axisName);
        field.measure = XFieldMeasure::Coordinate;
        field.get = [get, part = axis.part](const XvcObj& object) -> XFieldValue {
            return get(object).*part;
        };
        field.set = [get, set, part = axis.part](XvcObj& object, const XFieldValue& value) {
            tagXVector3 place = get(object);
            place.*part = std::get<double>(value);
            set(object, place);
        };
    }
}

void XFieldList::AddRect()
{
    const auto addCoordinate = [this](const char* id, const char* label, const char* name,
                                      double Rect::*part) {
        AddPart(id, label, name, part, &GetRect, &SetRect).measure = XFieldMeasure::Coordinate;
    };
    addCoordinate("left", "Lower &left x, y:", "Lower left x", &Rect::x);
    addCoordinate("bottom", "", "Lower left y", &Rect::y);
    MakeSize(AddPart("width", "&Width, height:", "Width", &Rect::width, &GetRect, &SetRect));
    MakeSize(AddPart("height", "", "Height", &Rect::height, &GetRect, &SetRect));
    tagXObjectField& turn =
        AddPart("turn", "&Rotation:", "Rotation", &Rect::angleDeg, &GetRect, &SetRect);
    turn.unit = "\xC2\xB0";
    turn.digits = kAngleDigits;
    turn.tip = "Counter-clockwise about the lower left corner";
    addCoordinate("zLower", "&z bottom, top:", "z of the lower side", &Rect::zLower);
    addCoordinate("zUpper", "", "z of the upper side", &Rect::zUpper);
}

void XFieldList::AddBox()
{
    AddPart("left", "Upper &left x, y:", "Upper left x", &Box::left, &GetBox, &SetBox).measure =
        XFieldMeasure::Coordinate;
    AddPart("top", "", "Upper left y", &Box::top, &GetBox, &SetBox).measure =
        XFieldMeasure::Coordinate;
    MakeSize(AddPart("width", "&Width, height:", "Width", &Box::width, &GetBox, &SetBox));
    MakeSize(AddPart("height", "", "Height", &Box::height, &GetBox, &SetBox));
    AddNumber("z", "&z:", &XvcBoxObj::GetZ, &XvcBoxObj::SetZ).measure = XFieldMeasure::Coordinate;
}

void XFieldList::AddInfo(const char* id, const char* label,
                         std::function<XString(const XvcObj&)> get)
{
    Add(id, label, XFieldKind::Info).get = [get](const XvcObj& object) -> XFieldValue {
        return get(object);
    };
}

void XFieldList::AddCommon(unsigned style, const char* thickLabel)
{
    m_page = XFieldPage::Style;
    if (style & kLine)
        AddColor(*this, "lineColor", "&Line colour:", &XvcObj::GetLineColor, &XvcObj::SetLineColor);
    if (style & kFore)
        AddColor(*this, "foreColor", "&Fore colour:", &XvcObj::GetForeColor, &XvcObj::SetForeColor);
    if (style & kBack)
        AddColor(*this, "backColor", "&Back colour:", &XvcObj::GetBackColor, &XvcObj::SetBackColor);
    if (style & kThick)
        AddNumber("thick", thickLabel, &XvcObj::GetThick, &XvcObj::SetThick, "",
                  XFieldKind::Length);
    if (style & kLineStyle) {
        tagXObjectField& field = Add("lineStyle", "Line st&yle:", XFieldKind::Choice);
        field.picture = XChoicePicture::LineStyle;
        field.get = [](const XvcObj& object) -> XFieldValue {
            const tagXLineStyle& own = object.GetLineStyle();
            return own == tagXLineStyle(own.GetStyle()) ? own.GetStyle() : kXOwnPattern;
        };
        field.set = [](XvcObj& object, const XFieldValue& value) {
            object.SetLineStyle(tagXLineStyle(std::get<int>(value)));
        };
        field.copy = [](XvcObj& to, const XvcObj& from) { to.SetLineStyle(from.GetLineStyle()); };
        field.choices = [](const XvcObj& object) {
            return XfnGetLineStyleChoices(object.GetLineStyle().GetStyle());
        };
    }
    if (style & kFill) {
        tagXObjectField& field = Add("fillStyle", "F&ill:", XFieldKind::Choice);
        field.picture = XChoicePicture::FillStyle;
        field.get = [](const XvcObj& object) -> XFieldValue {
            const tagXFillStyle& own = object.GetFillStyle();
            return own == tagXFillStyle(own.GetStyle()) ? own.GetStyle() : kXOwnPattern;
        };
        field.set = [](XvcObj& object, const XFieldValue& value) {
            object.SetFillStyle(tagXFillStyle(std::get<int>(value)));
        };
        field.copy = [](XvcObj& to, const XvcObj& from) { to.SetFillStyle(from.GetFillStyle()); };
        field.choices = [](const XvcObj&) { return XfnGetFillStyleChoices(); };
    }
    m_page = XFieldPage::General;
    AddMember<XvcObj, XString>("name", "&Name:", XFieldKind::Text, &XvcObj::GetName,
                               &XvcObj::SetName);
    AddMember<XvcObj, XString>("link", "Lin&k:", XFieldKind::Text, &XvcObj::GetLink,
                               &XvcObj::SetLink);
    AddFlag("hide", "&Hidden", &XvcObj::GetHideFlag, &XvcObj::SetHideFlag);
    AddInfo("extent", "Extent:", &GetExtent);
}
