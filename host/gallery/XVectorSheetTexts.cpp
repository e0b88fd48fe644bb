#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XvcAxis.h"
#include "foundation/vector/XvcBalloon.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcLeaderLine.h"
#include "foundation/vector/XvcLegend.h"
#include "foundation/vector/XvcMText.h"
#include "foundation/vector/XvcMeasureAngle.h"
#include "foundation/vector/XvcMeasureArea.h"
#include "foundation/vector/XvcMeasureDist.h"
#include "foundation/vector/XvcMeasurePoint.h"
#include "foundation/vector/XvcMeasureRange.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcRaster.h"
#include "foundation/vector/XvcText.h"
#include "foundation/vector/XvcTextBox.h"
#include "host/gallery/XVectorSheet.h"

#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr tagXColor kLine = XfnMakeColor(30, 30, 30, 255);
constexpr tagXColor kBlue = XfnMakeColor(24, 84, 148, 255);
constexpr tagXColor kFore = XfnMakeColor(214, 230, 246, 255);
constexpr tagXColor kRed = XfnMakeColor(190, 50, 40, 255);
constexpr double kHigh = 110.0;
constexpr double kLetters = 15.0;

template <class Class>
std::unique_ptr<Class> Make(tagXColor lineColor = kLine)
{
    auto object = std::make_unique<Class>();
    object->SetLineColor(lineColor);
    object->SetForeColor(kFore);
    object->SetThick(-1.0);
    return object;
}

// A picture of waves over a blue ground, or in gray.
std::vector<unsigned char> MakePixels(int width, int height, int bands)
{
    std::vector<unsigned char> pixels;
    for (int band = 0; band < bands; ++band) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const double wave = std::sin(x * 0.09 + band) * std::cos(y * 0.11 - band);
                pixels.push_back(static_cast<unsigned char>(128 + 110 * wave));
            }
        }
    }
    return pixels;
}

void FillBitmap(XvcBitmap& bitmap)
{
    constexpr int kWidth = 128, kHeight = 96;
    tagBITMAPINFO info;
    info.bmiHeader.biWidth = kWidth;
    info.bmiHeader.biHeight = -kHeight; // the upper row first
    info.bmiHeader.biBitCount = 24;
    const auto planes = MakePixels(kWidth, kHeight, 3);
    std::vector<unsigned char> bits;
    for (int i = 0; i < kWidth * kHeight; ++i) {
        const int x = i % kWidth - 90, y = i / kWidth - 30;
        const bool isKeyed = x * x + y * y < 400;
        for (int band = 0; band < 3; ++band)
            bits.push_back(isKeyed ? (band == 1 ? 255 : 0)
                                   : planes[static_cast<std::size_t>(band * kWidth * kHeight + i)]);
    }
    bitmap.SetDIB(&info, bits.data());
}

void AddPictures(XVectorSheet& sheet)
{
    sheet.AddHeading("Pictures");
    const auto next = [&](const char* name) {
        const tagXSheetCell cell = sheet.AddCell(140, kHigh, name);
        // something to be seen through them
        auto ground = Make<XvcPolygon>();
        ground->SetFillStyle(tagXFillStyle(tagXFillStyle::kChecker));
        ground->SetForeColor(XfnMakeColor(200, 200, 200, 255));
        ground->SetBackColor(XfnMakeColor(255, 255, 255, 255));
        ground->SetLineStyle(tagXLineStyle(tagXLineStyle::kNone));
        for (const auto& [x, y] : {std::pair{0.0, 0.0}, {0.0, 1.0}, {1.0, 1.0}, {1.0, 0.0}})
            ground->Add(cell.GetX(x), cell.GetY(y));
        sheet.Add(std::move(ground));
        return cell;
    };
    const auto add = [&](const char* name, auto change) {
        const tagXSheetCell cell = next(name);
        auto bitmap = Make<XvcBitmap>(kRed);
        FillBitmap(*bitmap);
        bitmap->SetBound(cell.GetX(0.05), cell.GetY(0.95), cell.GetX(0.95), cell.GetY(0.05));
        change(*bitmap);
        sheet.Add(std::move(bitmap));
    };
    add("XvcBitmap", [](XvcBitmap&) {});
    add("Border", [](XvcBitmap& bitmap) {
        bitmap.SetBorderFlag(1);
        bitmap.SetThick(-3.0);
    });
    add("Half opaque", [](XvcBitmap& bitmap) { bitmap.SetAlpha(0.5); });
    add("Green see-through", [](XvcBitmap& bitmap) {
        bitmap.SetBackColor(XfnMakeColor(0, 255, 0));
        bitmap.SetTransparent(1);
    });
    add("Index map", [](XvcBitmap& bitmap) {
        const tagXVector3 corners[] = {{2, 3}, {3, 7}, {8, 6}, {7, 2}};
        bitmap.SetMapBox(0, 0, 10, 10);
        bitmap.SetInexMap(corners);
        bitmap.SetThick(-2.0);
    });
    const auto addRaster = [&](const char* name, int bands, bool isReal) {
        const tagXSheetCell cell = next(name);
        auto raster = Make<XvcRaster>();
        const auto pixels = MakePixels(40, 30, bands);
        const std::vector<float> reals(pixels.begin(), pixels.end());
        if (isReal) {
            raster->SetData(reals.data(), 40, 30, bands, 7);
        } else {
            raster->SetData(pixels.data(), 40, 30, bands, 1);
        }
        raster->SetLeftTop(cell.GetX(0.05), cell.GetY(0.95));
        raster->SetRightBottom(cell.GetX(0.95), cell.GetY(0.05));
        sheet.Add(std::move(raster));
    };
    addRaster("XvcRaster, float", 1, true);
    addRaster("XvcRaster, 3 bands", 3, false);
}

void AddMeasures(XVectorSheet& sheet)
{
    sheet.AddHeading("Measures");
    XSpatialReference utm;
    utm.importFromEPSG(32652);
    const auto add = [&](auto object, std::initializer_list<std::pair<double, double>> shares,
                         const char* name) {
        const tagXSheetCell cell = sheet.AddCell(232, kHigh, name);
        for (const auto& [x, y] : shares)
            object->Add(cell.GetX(x), cell.GetY(y));
        object->SetSR(&utm);
        object->SetDecimals(1);
        object->SetFontSize(kLetters);
        object->SetTextStyle(XVectorSheet::GetTextStyle());
        sheet.Add(std::move(object));
    };
    auto point = Make<XvcMeasurePoint>(kBlue);
    point->SetThick(-11.0);
    add(std::move(point), {{0.05, 0.5}}, "XvcMeasurePoint");
    add(Make<XvcMeasureDist>(kBlue), {{0, 0.1}, {0.25, 0.9}, {0.6, 0.5}}, "XvcMeasureDist");
    add(Make<XvcMeasureArea>(kBlue), {{0, 0.1}, {0.1, 0.95}, {0.9, 1}, {1, 0}}, "XvcMeasureArea");
    add(Make<XvcMeasureAngle>(kBlue), {{0.75, 0.95}, {0.05, 0.05}, {0.95, 0.1}}, "XvcMeasureAngle");
    add(Make<XvcMeasureRange>(kBlue), {{0.25, 0.5}, {0.42, 0.75}}, "XvcMeasureRange");
}

void AddTexts(XVectorSheet& sheet)
{
    sheet.AddHeading("Texts");
    const auto next = [&](const char* name) { return sheet.AddCell(190, kHigh, name); };
    const auto set = [](XvcText& text, const XString& words, double x, double y, double height) {
        text.SetText(words);
        text.SetPosition(x, y);
        text.SetFontSize(height);
        text.SetTextStyle(XVectorSheet::GetTextStyle());
    };
    tagXSheetCell cell = next("XvcText, border, turned");
    auto text = Make<XvcText>();
    set(*text, "Two lines,\nupper left", cell.left, cell.GetTop(), 18.0);
    sheet.Add(std::move(text));
    text = Make<XvcText>(kRed);
    set(*text, "framed", cell.GetX(0.05), cell.GetY(0.3), 20.0);
    text->SetDrawBorder(1);
    sheet.Add(std::move(text));
    text = Make<XvcText>(kBlue);
    set(*text, "30 degrees", cell.GetX(0.5), cell.GetY(0.25), 18.0);
    text->SetAngle(30.0);
    sheet.Add(std::move(text));

    cell = next("XvcMText");
    auto texts = Make<XvcMText>();
    for (int i = 0; i < 5; ++i)
        texts->AddText(XString(std::string(1, static_cast<char>('A' + i)).c_str()),
                       cell.GetX(0.1 + 0.18 * i), cell.GetY(0.9 - 0.15 * i));
    texts->SetFontSize(22.0);
    texts->SetTextStyle(XVectorSheet::GetTextStyle(700));
    sheet.Add(std::move(texts));

    cell = next("XvcTextBox");
    auto box = Make<XvcTextBox>();
    box->SetTextStyle(XVectorSheet::GetTextStyle());
    box->SetRTF("{\\rtf1\\ansi{\\colortbl;\\red190\\green50\\blue40;}\\fs24 Plain, {\\b bold}, "
                "{\\i italic}, "
                "{\\ul underlined}, {\\cf1 coloured}, {\\fs32 larger}\\par\\qc in the "
                "middle\\par\\qr on the right}");
    box->SetBound(cell.left, cell.GetTop(), cell.GetRight(), cell.bottom);
    box->SetDrawBorder(1);
    sheet.Add(std::move(box));

    cell = next("XvcBalloon");
    auto balloon = Make<XvcBalloon>();
    balloon->SetTextStyle(XVectorSheet::GetTextStyle());
    balloon->SetText("A note that points at its place");
    balloon->SetBound(cell.GetX(0.2), cell.GetTop(), cell.GetRight(), cell.GetY(0.45));
    balloon->SetPointPosition(cell.GetX(0.02), cell.GetY(0.05));
    sheet.Add(std::move(balloon));

    const auto addLeader = [&](const tagXSheetCell& at,
                               std::initializer_list<std::pair<double, double>> shares,
                               const XString& note, int shape) {
        auto leader = Make<XvcLeaderLine>(kBlue);
        for (const auto& [x, y] : shares)
            leader->Add(at.GetX(x), at.GetY(y));
        leader->SetText(note);
        leader->SetFontSize(kLetters);
        leader->SetTextStyle(XVectorSheet::GetTextStyle());
        leader->SetStartShapeID(shape);
        leader->SetStartSize(shape == kXLineEndFilledCircle ? 7.0 : 12.0);
        leader->SetLanding(14.0);
        sheet.Add(std::move(leader));
    };
    cell = next("XvcLeaderLine");
    addLeader(cell, {{0.02, 0.1}, {0.25, 0.5}}, "to the right", kXLineEndFilledArrow);
    addLeader(cell, {{0.95, 0.95}, {0.75, 0.75}}, "to the left", kXLineEndOpenArrow);
    addLeader(cell, {{0.1, 0.0}, {0.35, 0.0}, {0.45, 0.2}}, "two\nlines", kXLineEndFilledCircle);
}

void AddLegends(XVectorSheet& sheet)
{
    sheet.AddHeading("Legends");
    for (const int columns : {1, 2, 4}) {
        const tagXSheetCell cell =
            sheet.AddCell(columns == 1   ? 170
                          : columns == 2 ? 320
                                         : 400,
                          190,
                          columns == 1   ? "XvcLegend, FitBox"
                          : columns == 2 ? "XvcLegend, two columns"
                                         : "XvcLegend, four columns in a box too narrow");
        auto legend = Make<XvcLegend>();
        legend->SetForeColor(XfnMakeColor(255, 255, 255, 255));
        legend->SetTitle(columns == 1 ? "Land cover" : "Land cover of the sample region");
        legend->SetTextStyle(XVectorSheet::GetTextStyle());
        legend->SetFontSize(kLetters);
        legend->SetNumOfColumns(columns);
        using Item = tagXLegendItem;
        Item item;
        const auto row = [&](int kind, const char* label, tagXColor fore) {
            item.kind = kind;
            item.label = label;
            item.foreColor = fore;
            item.lineColor = kind == Item::kLine ? fore : kLine;
            legend->AddItem(item);
        };
        row(Item::kPatch, "Forest", XfnMakeColor(70, 140, 70, 255));
        item.fillStyle = tagXFillStyle(tagXFillStyle::kForwardDiagonal);
        row(Item::kPatch, "Built-up", XfnMakeColor(200, 90, 60, 255));
        item.thick = -3.0;
        row(Item::kLine, "Motorway", kRed);
        item.thick = -1.0;
        item.lineStyle = tagXLineStyle(tagXLineStyle::kDashDot);
        row(Item::kLine, "Boundary", kLine);
        item.lineStyle = tagXLineStyle();
        row(Item::kPoint, "Sample", XfnMakeColor(250, 200, 60, 255));
        item.shape = 61;
        row(Item::kSymbol, "Survey mark", XfnMakeColor(250, 200, 60, 255));
        if (columns > 1) {
            row(Item::kNone, "Heading", kLine);
            item.shape = 81;
            row(Item::kSymbol, "Place", kBlue);
        }
        legend->SetBound(cell.left, cell.GetTop(), cell.GetRight(), cell.bottom);
        if (columns < 3) legend->FitBox();
        if (columns == 4)
            legend->SetBound(cell.left, cell.GetTop(), cell.left + 400, cell.bottom + 90);
        sheet.Add(std::move(legend));
    }
}

void AddAxes(XVectorSheet& sheet)
{
    sheet.AddHeading("Axes");
    const auto set = [&](XvcAxis& axis, const char* title) {
        axis.SetTitle(title);
        axis.SetFontSize(13.0);
        axis.SetTextStyle(XVectorSheet::GetTextStyle());
    };
    tagXSheetCell cell = sheet.AddCell(430, 230, "XvcAxis: grid, logarithmic, inverted");
    const tagXVector3 corner(cell.left + 60, cell.bottom + 46),
        right(cell.GetRight() - 76, corner.y), top(corner.x, cell.GetTop() - 46);
    auto bottom = std::make_unique<XvcAxis>(corner, right, 0, 250);
    set(*bottom, "Distance (km)");
    bottom->SetGridLength(top.y - corner.y);
    sheet.Add(std::move(bottom));
    auto left = std::make_unique<XvcAxis>(corner, top, -0.4, 0.6);
    set(*left, "Index");
    left->SetGridLength(right.x - corner.x);
    sheet.Add(std::move(left));
    auto above = std::make_unique<XvcAxis>(tagXVector3(corner.x, top.y),
                                           tagXVector3(right.x, top.y), 1, 10000);
    set(*above, "Counts, logarithmic");
    above->SetLogFlag(1);
    above->SetTickSide(XvcAxis::kAboveOrRight);
    sheet.Add(std::move(above));
    auto aside = std::make_unique<XvcAxis>(tagXVector3(right.x, corner.y),
                                           tagXVector3(right.x, top.y), 0, 5000);
    set(*aside, "Height (m), inverted");
    aside->SetInvertFlag(1);
    aside->SetTickSide(XvcAxis::kAboveOrRight);
    sheet.Add(std::move(aside));

    cell = sheet.AddCell(360, 230, "XvcAxis, level");
    const double limits[][2] = {{0, 1}, {1990, 2030}, {-1e-3, 2e-3}, {0, 3e7}};
    for (int i = 0; i < 4; ++i) {
        const double y = cell.GetTop() - 8 - 58 * i;
        auto axis = std::make_unique<XvcAxis>(tagXVector3(cell.left + 24, y),
                                              tagXVector3(cell.GetRight() - 40, y), limits[i][0],
                                              limits[i][1]);
        set(*axis, i == 1 ? "Year" : "");
        sheet.Add(std::move(axis));
    }
    cell =
        sheet.AddCell(400, 230, "XvcAxis, upright: letters in pixels; labels too close; no labels");
    for (int i = 0; i < 5; ++i) {
        const double x = cell.left + 60 + 80 * i;
        auto axis =
            std::make_unique<XvcAxis>(tagXVector3(x, cell.bottom + 6),
                                      tagXVector3(x, cell.GetTop() - 6), 0, i == 1 ? 1e6 : 1.0);
        set(*axis, "Title");
        if (i == 2) axis->SetFontSize(-13.0);
        if (i == 3) axis->SetMajorStep(0.02);
        if (i == 4) axis->SetLabelFlag(0);
        sheet.Add(std::move(axis));
    }
}

} // namespace

void XfnFillTextSheet(XVectorSheet& sheet)
{
    AddPictures(sheet);
    AddMeasures(sheet);
    AddTexts(sheet);
    AddLegends(sheet);
    AddAxes(sheet);
}
