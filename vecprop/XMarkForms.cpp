#include "vecprop/XMarkForms.h"

#include "vecprop/XFieldList.h"

#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XSymbolSet.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcRaster.h"
#include "foundation/vector/XvcSymbol.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "foundation/vector/XvcText.h"

#include <cstring>
#include <map>

namespace {

constexpr const char* kDegrees = "\xC2\xB0";

XvcText& Text(XvcObj& object)
{
    return static_cast<XvcText&>(object);
}

const XvcText& Text(const XvcObj& object)
{
    return static_cast<const XvcText&>(object);
}

// A property of the letters, which is a byte of the font record or its weight.
void AddFontFlag(XFieldList& list, const char* id, const char* label, const char* name,
                 int (*get)(const tagXFontRecord&), void (*set)(tagXFontRecord&, int))
{
    tagXObjectField& field = list.Add(id, label, XFieldKind::Flag, name);
    field.get = [get](const XvcObj& object) -> XFieldValue {
        return get(Text(object).GetTextStyle().font);
    };
    field.set = [set](XvcObj& object, const XFieldValue& value) {
        tagXTextStyle style = Text(object).GetTextStyle();
        set(style.font, std::get<int>(value));
        Text(object).SetTextStyle(style);
    };
}

tagXColor GetLetterColor(const XvcText& text)
{
    return text.GetTextColor() ? text.GetTextColor() : text.GetLineColor();
}

// One word says colour, opacity and whether they are the line's, and what is shown of it may be that
// of the line: it passes from object to object as a whole, in the end.
void CopyLetterColor(XvcObj& to, const XvcObj& from)
{
    Text(to).SetTextColor(Text(from).GetTextColor());
}

// The word 0 means the line colour, so black that cannot be seen is nearly black.
void SetLetterColor(XvcText& text, tagXColor color)
{
    text.SetTextColor(color ? color : XfnMakeColor(1, 0, 0));
}

int GetPlainAlign(const XvcText& text)
{
    const int align = text.GetTextAlign();
    return (align & kXTextRight    ? kXTextRight
            : align & kXTextCentre ? kXTextCentre
                                   : kXTextLeft) |
           (align & kXTextBottom   ? kXTextBottom
            : align & kXTextMiddle ? kXTextMiddle
                                   : kXTextTop);
}

XFieldList::Choices GetAligns()
{
    return {{kXTextLeft | kXTextTop, "Upper left corner"},
            {kXTextCentre | kXTextTop, "Middle of the top"},
            {kXTextRight | kXTextTop, "Upper right corner"},
            {kXTextLeft | kXTextMiddle, "Middle of the left"},
            {kXTextCentre | kXTextMiddle, "Centre"},
            {kXTextRight | kXTextMiddle, "Middle of the right"},
            {kXTextLeft | kXTextBottom, "Lower left corner"},
            {kXTextCentre | kXTextBottom, "Middle of the bottom"},
            {kXTextRight | kXTextBottom, "Lower right corner"}};
}

XFieldList::Choices GetSymbols(const XvcObj& object)
{
    std::map<int, XString> names;
    for (const XvcSymbolTable* table :
         {static_cast<const XvcSymbol&>(object).GetSymbolTable(), &XfnGetStandardSymbols()}) {
        if (!table) continue;
        for (const int id : table->GetIDs())
            names.try_emplace(id, table->Find(id)->GetName());
    }
    XFieldList::Choices choices;
    for (const auto& [id, name] : names)
        choices.push_back({id, name.IsEmpty() ? XfnFormat("Symbol %d", id) : name});
    return choices;
}

void AddFont(XFieldList& list)
{
    tagXObjectField& face = list.Add("face", "&Font:", XFieldKind::Face);
    face.get = [](const XvcObj& object) -> XFieldValue {
        const char* name = Text(object).GetTextStyle().font.faceName;
        return XString(name, static_cast<int>(strnlen(name, sizeof(tagXFontRecord::faceName))));
    };
    face.set = [](XvcObj& object, const XFieldValue& value) {
        tagXTextStyle style = Text(object).GetTextStyle();
        style.font.SetFaceName(std::get<XString>(value));
        Text(object).SetTextStyle(style);
    };
    list.AddNumber("fontSize", "Font si&ze:", &XvcText::GetFontSize, &XvcText::SetFontSize, "",
                   XFieldKind::Length)
        .whenZero = "of the font";
    AddFontFlag(
        list, "bold", "&Bold", "",
        [](const tagXFontRecord& font) { return font.weight >= 600 ? 1 : 0; },
        [](tagXFontRecord& font, int isOn) { font.weight = isOn ? 700 : 400; });
    AddFontFlag(
        list, "italic", "", "Italic",
        [](const tagXFontRecord& font) { return font.italic ? 1 : 0; },
        [](tagXFontRecord& font, int isOn) { font.italic = isOn ? 1 : 0; });
    AddFontFlag(
        list, "underline", "", "Underlined",
        [](const tagXFontRecord& font) { return font.underline ? 1 : 0; },
        [](tagXFontRecord& font, int isOn) { font.underline = isOn ? 1 : 0; });
    AddFontFlag(
        list, "strikeOut", "", "Struck out",
        [](const tagXFontRecord& font) { return font.strikeOut ? 1 : 0; },
        [](tagXFontRecord& font, int isOn) { font.strikeOut = isOn ? 1 : 0; });
}

void AddLetterColor(XFieldList& list)
{
    tagXObjectField& color =
        list.Add("textColor", "Text &colour:", XFieldKind::Color, "Letter colour");
    color.get = [](const XvcObj& object) -> XFieldValue {
        return GetLetterColor(Text(object)) & ~kXOpaque;
    };
    color.set = [](XvcObj& object, const XFieldValue& value) {
        const tagXColor rgb = std::get<tagXColor>(value) & ~kXOpaque;
        SetLetterColor(Text(object), (GetLetterColor(Text(object)) & kXOpaque) | rgb);
    };
    color.copy = &CopyLetterColor;
    tagXObjectField& opacity =
        list.Add("textOpacity", "", XFieldKind::Opacity, "Letter colour, opacity");
    opacity.get = [](const XvcObj& object) -> XFieldValue {
        return static_cast<int>(XfnGetAlpha(GetLetterColor(Text(object))) / 2.55 + 0.5);
    };
    opacity.set = [](XvcObj& object, const XFieldValue& value) {
        const auto alpha = static_cast<tagXColor>(std::get<int>(value) * 2.55 + 0.5);
        SetLetterColor(Text(object), (GetLetterColor(Text(object)) & ~kXOpaque) | alpha << 24);
    };
    opacity.copy = &CopyLetterColor;
    tagXObjectField& asLine = list.Add("textAsLine", "", XFieldKind::Flag, "Same as line");
    asLine.get = [](const XvcObj& object) -> XFieldValue {
        return Text(object).GetTextColor() == 0 ? 1 : 0;
    };
    asLine.set = [](XvcObj& object, const XFieldValue& value) {
        if (std::get<int>(value))
            Text(object).SetTextColor(0);
        else
            SetLetterColor(Text(object), GetLetterColor(Text(object)));
    };
    asLine.copy = &CopyLetterColor;
}

} // namespace

void XfnAddBitmapFields(XFieldList& list)
{
    tagXObjectField& picture = list.Add("picture", "&Picture:", XFieldKind::Picture);
    picture.get = [](const XvcObj& object) -> XFieldValue {
        return static_cast<const XvcBitmap&>(object).GetFileName();
    };
    picture.set = [](XvcObj&, const XFieldValue&) {}; // a name alone is no picture
    // pixels pass from object to object only with all the rest
    picture.copy = [](XvcObj& to, const XvcObj& from) {
        static_cast<XvcBitmap&>(to) = static_cast<const XvcBitmap&>(from);
    };
    list.AddInfo("pixels", "Pixels:", [](const XvcObj& object) {
        const auto& bitmap = static_cast<const XvcBitmap&>(object);
        return bitmap.GetWidth() == 0 ? XString("none")
                                      : XfnFormat("%d x %d, %d bits a pixel", bitmap.GetWidth(),
                                                  bitmap.GetHeight(), bitmap.GetColorDepth());
    });
    list.AddBox();
    list.AddAlpha(&XvcBitmap::GetAlpha, &XvcBitmap::SetAlpha);
    list.AddFlag("transparent", "&Back colour is transparent", &XvcBitmap::GetTransparent,
                 &XvcBitmap::SetTransparent);
    list.AddFlag("border", "Frame in line colo&ur", &XvcBitmap::GetBorderFlag,
                 &XvcBitmap::SetBorderFlag);
}

void XfnAddRasterFields(XFieldList& list)
{
    list.AddInfo("samples", "Samples:", [](const XvcObj& object) {
        static constexpr const char* kTypes[] = {
            "none",          "unsigned 8 bit",  "signed 8 bit",  "unsigned 16 bit",
            "signed 16 bit", "unsigned 32 bit", "signed 32 bit", "float",
            "double"};
        const auto& raster = static_cast<const XvcRaster&>(object);
        const int type = raster.GetDataType();
        if (type < 1 || type > 8) return XString(kTypes[0]);
        const int bands = raster.GetNumBands();
        return XfnFormat("%d x %d, %d %s, %s", raster.GetXSize(), raster.GetYSize(), bands,
                         bands == 1 ? "band" : "bands", kTypes[type]);
    });
    list.AddBox();
    list.AddAlpha(&XvcRaster::GetAlpha, &XvcRaster::SetAlpha);
}

void XfnAddTextFields(XFieldList& list)
{
    list.AddMember<XvcText, XString>("text", "&Text:", XFieldKind::Lines, &XvcText::GetText,
                                     &XvcText::SetText);
    list.AddPlace(
        "position", "&Position:", "Position",
        [](const XvcObj& object) { return Text(object).GetPosition(); },
        [](XvcObj& object, const tagXVector3& place) { Text(object).SetPosition(place); });
    tagXObjectField& align = list.Add("align", "Anc&hor:", XFieldKind::Choice);
    align.picture = XChoicePicture::TextAlign;
    align.get = [](const XvcObj& object) -> XFieldValue { return GetPlainAlign(Text(object)); };
    align.set = [](XvcObj& object, const XFieldValue& value) {
        Text(object).SetTextAlign(std::get<int>(value));
    };
    align.choices = [](const XvcObj&) { return GetAligns(); };
    list.AddNumber("angle", "&Rotation:", &XvcText::GetAngle, &XvcText::SetAngle, kDegrees);
    AddFont(list);
    AddLetterColor(list);
    list.AddFlag("border", "Bo&x around the text", &XvcText::GetDrawBorder,
                 &XvcText::SetDrawBorder);
}

void XfnAddSymbolFields(XFieldList& list)
{
    list.AddChoice("symbol", "S&ymbol:", &XvcSymbol::GetID, &XvcSymbol::SetID,
                   XChoicePicture::Symbol, {})
        .choices = &GetSymbols;
    list.AddPlace(
        "center", "C&entre:", "Centre",
        [](const XvcObj& object) { return static_cast<const XvcSymbol&>(object).GetCenter(); },
        [](XvcObj& object, const tagXVector3& place) {
            static_cast<XvcSymbol&>(object).SetCenter(place);
        });
    list.AddNumber("turn", "&Rotation:", &XvcSymbol::GetRotate, &XvcSymbol::SetRotate, kDegrees);
    tagXObjectField& scaleX =
        list.AddNumber("scaleX", "&Size x, y:", &XvcSymbol::GetScaleX, &XvcSymbol::SetScaleX);
    scaleX.name = "Size on x";
    scaleX.isNonZero = true;
    scaleX.measure = XFieldMeasure::Size;
    tagXObjectField& scaleY =
        list.AddNumber("scaleY", "", &XvcSymbol::GetScaleY, &XvcSymbol::SetScaleY);
    scaleY.name = "Size on y";
    scaleY.isNonZero = true;
    scaleY.measure = XFieldMeasure::Size;
}

void XfnAddNorthArrowFields(XFieldList& list)
{
    list.AddChoice("style", "&Style:", &XvcNorthArrow::GetStyle, &XvcNorthArrow::SetStyle,
                   XChoicePicture::NorthArrow,
                   XfnMakeChoices(kXNorthArrowCount, &XfnGetNorthArrowName));
    tagXObjectField& angle = list.AddNumber("angle", "&Angle of north:", &XvcNorthArrow::GetAngle,
                                            &XvcNorthArrow::SetAngle, kDegrees);
    angle.decimals = 3;
    angle.tip = "Counter-clockwise from the left side of the rectangle";
    list.AddRect();
    list.AddCount("resolution", "Se&gments per circle:", &XvcNorthArrow::GetResolution,
                  &XvcNorthArrow::SetResolution, XvcNorthArrow::kMinResolution,
                  XvcNorthArrow::kMaxResolution);
}
