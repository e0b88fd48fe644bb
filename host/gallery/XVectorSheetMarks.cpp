#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XSymbolSet.h"
#include "foundation/vector/XvcEMF.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcScaleBar.h"
#include "foundation/vector/XvcSymbolDef.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "host/gallery/XVectorSheet.h"

#include <utility>

namespace {

constexpr tagXColor kLine = XfnMakeColor(30, 30, 30, 255);
constexpr tagXColor kFore = XfnMakeColor(40, 70, 120, 255);
constexpr tagXColor kBack = XfnMakeColor(255, 255, 255, 255);

template <class Class>
std::unique_ptr<Class> Make()
{
    auto object = std::make_unique<Class>();
    object->SetLineColor(kLine);
    object->SetForeColor(kFore);
    object->SetBackColor(kBack);
    object->SetThick(-1.0);
    return object;
}

void AddSymbols(XVectorSheet& sheet)
{
    sheet.AddHeading("Symbols");
    const XvcSymbolTable& table = XfnGetStandardSymbols();
    constexpr int kLast = 100;
    for (int id = 1; id <= kLast; ++id) {
        const auto* definition = static_cast<const XvcSymbolDef*>(table.Find(id));
        if (!definition) continue;
        const tagXSheetCell cell = sheet.AddCell(92, 46, definition->GetName());
        auto symbol = Make<XvcSymbol>();
        symbol->SetID(id);
        symbol->SetCenter(cell.GetMiddleX(), cell.GetMiddleY());
        symbol->SetScale(44.0);
        symbol->SetForeColor(XfnMakeColor(210, 150, 60, 255));
        sheet.Add(std::move(symbol));
    }
    const tagXSheetCell many = sheet.AddCell(92, 46, "XvcMSymbol");
    auto symbols = Make<XvcMSymbol>();
    for (int i = 0; i < 4; ++i) {
        XvcSymbol symbol = *Make<XvcSymbol>();
        symbol.SetID(7);
        symbol.SetCenter(many.GetX(0.15 + 0.23 * i), many.GetY(i % 2 ? 0.65 : 0.35));
        symbol.SetScale(24.0);
        symbol.SetRotate(15.0 * i);
        symbols->AddSymbol(symbol);
    }
    sheet.Add(std::move(symbols));
    const tagXSheetCell defined = sheet.AddCell(92, 46, "XvcSymbolDef");
    static XWarp2D place; // a definition is of size 1: the sheet shows it through a warp
    place.SetAffine(defined.GetMiddleX(), 44.0, 0.0, defined.GetMiddleY(), 0.0, 44.0);
    auto definition =
        std::make_unique<XvcSymbolDef>(*static_cast<const XvcSymbolDef*>(table.Find(3)));
    definition->SetLineColor(kLine);
    definition->SetForeColor(kFore);
    definition->SetWarpCoeff(&place);
    sheet.Add(std::move(definition));
    const tagXSheetCell metafile = sheet.AddCell(92, 46, "XvcEMF");
    auto drawing = Make<XvcEMF>();
    drawing->SetBound(metafile.GetX(0.15), metafile.GetTop(), metafile.GetX(0.85), metafile.bottom);
    sheet.Add(std::move(drawing));
}

void AddNorthArrows(XVectorSheet& sheet)
{
    sheet.AddHeading("North arrows");
    const auto add = [&](int style, double width, double height, double angleDeg,
                         const XString& name) {
        const tagXSheetCell cell = sheet.AddCell(width, height, name);
        auto arrow = Make<XvcNorthArrow>();
        arrow->Set(cell.left, cell.bottom, 0, cell.GetRight(), cell.GetTop(), 0);
        arrow->SetStyle(style);
        arrow->SetAngle(angleDeg);
        sheet.Add(std::move(arrow));
    };
    for (int style = 0; style < kXNorthArrowCount; ++style)
        add(style, 150, 150, 0.0, XfnGetNorthArrowName(style));
    add(kXNorthArrowHalves, 150, 150, 35.0, "Rotated by 35 degrees");
    add(kXNorthArrowRose16, 150, 150, -20.0, "Rotated by -20 degrees");
    for (const int style : {kXNorthArrowPlain, kXNorthArrowRose4, kXNorthArrowNeedle}) // small ones
        add(style, 48, 48, 0.0, "48 px");
}

void AddScaleBars(XVectorSheet& sheet)
{
    XSpatialReference utm, geographic, feet, pixels;
    utm.importFromEPSG(32652);
    geographic.importFromEPSG(4326);
    feet.importFromEPSG(2225);
    pixels.SetCoordType(1);
    sheet.AddHeading("Scale bars");
    const auto add = [&](int type, const XSpatialReference& reference, double width, int align,
                         const XString& name) {
        const tagXSheetCell cell = sheet.AddCell(width, 44, name);
        auto bar = Make<XvcScaleBar>();
        bar->Set(cell.left, cell.bottom, 0, cell.GetRight(), cell.GetTop(), 0);
        bar->SetType(type);
        bar->SetSR(reference);
        bar->SetFontSize(15.0);
        bar->SetTextStyle(XVectorSheet::GetTextStyle());
        bar->SetTextAlign(align);
        sheet.Add(std::move(bar));
    };
    constexpr int kAbove = kXTextCentre | kXTextTop, kBelow = kXTextCentre | kXTextBottom;
    for (int type = 0; type < kXScaleBarTypeCount; ++type)
        add(type, utm, 300, kAbove, XfnGetScaleBarName(type));
    add(kXScaleBarAlternating, utm, 300, kBelow, "Labels below");
    add(kXScaleBarTicks, utm, 300, kBelow, "Labels below");
    add(kXScaleBarDouble, feet, 300, kAbove, "Feet");
    add(kXScaleBarHollow, pixels, 300, kAbove, "Pixel coordinates");
    add(kXScaleBarRuler, XSpatialReference(), 300, kXTextLeft, "No reference, on the left");
    add(kXScaleBarAlternating, utm, 120, kAbove, "120 px wide");
    add(kXScaleBarStepped, utm, 60, kAbove, "60 px wide");
}

} // namespace

void XfnFillMarkSheet(XVectorSheet& sheet)
{
    AddSymbols(sheet);
    AddNorthArrows(sheet);
    AddScaleBars(sheet);
}
