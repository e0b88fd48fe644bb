#include "foundation/vector/XvcLegend.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XSymbolSet.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcMeasureArea.h"
#include "foundation/vector/XvcMeasurePoint.h"
#include "foundation/vector/XvcMeasureRange.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRectObj.h"
#include "foundation/vector/XvcSymbol.h"
#include "foundation/vector/XvcSymbolDef.h"
#include "foundation/vector/XvcSymbolTable.h"

#include <algorithm>
#include <cmath>

X_IMPLEMENT_CLASS(XvcLegend, XvcBoxObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr std::size_t kMinItemBytes = 48; // less than the attributes and two numbers take

// In heights of a line.
constexpr double kPad = 0.6;
constexpr double kTitleHeight = 1.2;
constexpr double kTitleGap = 0.4;
constexpr double kSampleWidth = 2.0;
constexpr double kSampleHeight = 0.95;
constexpr double kSampleGap = 0.5;
constexpr double kRowGap = 0.35;
constexpr double kColumnGap = 1.0;
constexpr double kMarkSize = 0.8;
constexpr double kWidthSlack = 1.08; // hinted letters are wider at some sizes
constexpr int kBold = 700;
constexpr int kOutlineText = 0; // which reserved text of a stored look is the outline

template <class... Classes>
bool IsAnyOf(const XvcObj& object)
{
    return (object.IsKindOf(Classes::GetRuntimeClassStatic()) || ...);
}

int CountLines(const XString& text)
{
    const std::string_view view = text.View();
    return 1 + static_cast<int>(std::count(view.begin(), view.end(), '\n'));
}

void GiveLook(const tagXLegendItem& item, XvcObj& object)
{
    object.SetLineColor(item.lineColor);
    object.SetForeColor(item.foreColor);
    object.SetBackColor(item.backColor);
    object.SetThick(item.thick);
    object.SetLineStyle(item.lineStyle);
    object.SetFillStyle(item.fillStyle);
}

tagXLegendItem TakeLook(const XvcObj& object)
{
    tagXLegendItem item;
    item.label = object.GetName();
    item.lineColor = object.GetLineColor();
    item.foreColor = object.GetForeColor();
    item.backColor = object.GetBackColor();
    item.thick = object.GetThick();
    item.lineStyle = object.GetLineStyle();
    item.fillStyle = object.GetFillStyle();
    return item;
}

void TakeSymbol(const XvcSymbol& symbol, tagXLegendItem& item)
{
    item.shape = symbol.GetID();
    const XvcSymbolDef* const definition = symbol.GetDefinition();
    if (definition && definition != XfnGetStandardSymbols().Find(item.shape))
        item.outline = definition->GetOutline().GetText();
}

// The sample of a row, as an object of its kind within the given box.
void RecordSample(XVertBuffer& buffer, const XWarp2D* warp, const tagXDrawAttrs* attrs,
                  const tagXLegendItem& item, const tagXVector3& leftBottom, double width,
                  double height)
{
    const tagXVector3 middle(leftBottom.x + width / 2.0, leftBottom.y + height / 2.0);
    const auto record = [&](XvcObj& sample) { sample.CreateVertexBuffer(&buffer, warp, attrs); };
    switch (item.kind) {
    case tagXLegendItem::kPatch: {
        XvcPolygon patch;
        GiveLook(item, patch);
        patch.Add(leftBottom.x, leftBottom.y);
        patch.Add(leftBottom.x, leftBottom.y + height);
        patch.Add(leftBottom.x + width, leftBottom.y + height);
        patch.Add(leftBottom.x + width, leftBottom.y);
        return record(patch);
    }
    case tagXLegendItem::kLine: {
        XvcPolyline line;
        GiveLook(item, line);
        line.Add(leftBottom.x, middle.y);
        line.Add(leftBottom.x + width, middle.y);
        return record(line);
    }
    case tagXLegendItem::kPoint: {
        XvcPoint point(middle.x, middle.y);
        GiveLook(item, point);
        point.SetType(item.shape);
        point.SetThick(kMarkSize * height);
        return record(point);
    }
    case tagXLegendItem::kSymbol: {
        XvcSymbol symbol(item.shape, middle.x, middle.y);
        GiveLook(item, symbol);
        symbol.SetScale(height);
        XSymbolOutline outline;
        XString error;
        if (item.outline.IsEmpty() || !outline.Set(item.outline, error)) return record(symbol);
        return outline.Record(&buffer, symbol.CalcWarpCoeff(0), warp, XVectorPaint(symbol, attrs));
    }
    default:
        return;
    }
}

} // namespace

// The contents, in heights of a line.
struct XvcLegend::tagMeasure
{
    int rows = 0; // of a column
    double rowHeight = 1.0;
    double titleHeight = 0.0; // the gap below included
    std::vector<double> columnWidths;
    double width = 0.0, height = 0.0;
};

XvcLegend::XvcLegend()
{
    SetLineColor(kXOpaque);
}

int XvcLegend::AddItem(const tagXLegendItem& item)
{
    if (GetNumOfItems() >= kMaxItems) return -1;
    Touch();
    m_items.push_back(item);
    return GetNumOfItems() - 1;
}

int XvcLegend::AddItem(const XvcObj& object, const XString& label)
{
    tagXLegendItem item = TakeLook(object);
    if (!label.IsEmpty()) item.label = label;
    item.kind = tagXLegendItem::kLine;
    if (IsAnyOf<XvcSymbol, XvcMSymbol>(object)) {
        item.kind = tagXLegendItem::kSymbol;
        const XvcObj* symbol = &object;
        if (object.IsKindOf(XvcMSymbol::GetRuntimeClassStatic())) {
            symbol = static_cast<const XvcMSymbol&>(object).GetSymbolObjAt(0);
        }
        if (symbol) TakeSymbol(static_cast<const XvcSymbol&>(*symbol), item);
    } else if (object.IsKindOf(XvcPoint::GetRuntimeClassStatic())) {
        item.kind = tagXLegendItem::kPoint;
        item.shape = static_cast<const XvcPoint&>(object).GetType();
    } else if (object.IsKindOf(XvcMPoint::GetRuntimeClassStatic())) {
        item.kind = tagXLegendItem::kPoint;
        const XvcPoint* const point = static_cast<const XvcMPoint&>(object).GetPointObjAt(0);
        if (point) item.shape = point->GetType();
    } else if (object.IsKindOf(XvcPolypoint::GetRuntimeClassStatic())) {
        item.kind = tagXLegendItem::kPoint;
        item.shape = static_cast<const XvcPolypoint&>(object).GetType();
    } else if (object.IsKindOf(XvcMeasurePoint::GetRuntimeClassStatic())) {
        item.kind = tagXLegendItem::kPoint;
        item.shape = static_cast<const XvcMeasurePoint&>(object).GetType();
    } else if (IsAnyOf<XvcPolygon, XvcMPolygon, XvcRectObj, XvcBoxObj, XvcEllipse, XvcArcClosed,
                       XvcMeasureArea, XvcMeasureRange>(object)) {
        item.kind = tagXLegendItem::kPatch;
    }
    return AddItem(item);
}

const tagXLegendItem* XvcLegend::GetItemAt(int index) const
{
    return index >= 0 && index < GetNumOfItems() ? &m_items[static_cast<std::size_t>(index)]
                                                 : nullptr;
}

int XvcLegend::SetItemAt(int index, const tagXLegendItem& item)
{
    if (!GetItemAt(index)) return 0;
    Touch();
    m_items[static_cast<std::size_t>(index)] = item;
    return 1;
}

int XvcLegend::RemoveItemAt(int index)
{
    if (!GetItemAt(index)) return 0;
    Touch();
    m_items.erase(m_items.begin() + index);
    return 1;
}

void XvcLegend::RemoveAllItems()
{
    Touch();
    m_items.clear();
}

void XvcLegend::SetNumOfColumns(int count)
{
    Touch();
    m_columns = std::clamp(count, 1, kMaxColumns);
}

XvcLegend::tagMeasure XvcLegend::Measure() const
{
    tagMeasure measure;
    const int count = GetNumOfItems();
    const int columns = std::clamp(m_columns, 1, std::max(count, 1));
    measure.rows = (count + columns - 1) / columns;
    measure.columnWidths.assign(static_cast<std::size_t>(columns), 0.0);
    int lines = 1;
    for (int i = 0; i < count; ++i) {
        const tagXLegendItem& item = m_items[static_cast<std::size_t>(i)];
        const double label = m_font.GetWidth(item.label) * kWidthSlack;
        const double sample = item.kind == tagXLegendItem::kNone ? 0.0 : kSampleWidth + kSampleGap;
        double& width = measure.columnWidths[static_cast<std::size_t>(i / measure.rows)];
        width = std::max(width, sample + label);
        lines = std::max(lines, CountLines(item.label));
    }
    measure.rowHeight = lines;
    double inside = kColumnGap * (columns - 1);
    for (const double width : measure.columnWidths)
        inside += width;
    if (!m_title.IsEmpty()) {
        const double title = m_font.GetWidth(m_title) * kTitleHeight * kWidthSlack * kWidthSlack;
        inside = std::max(inside, title); // bold letters are wider
        measure.titleHeight = kTitleHeight * CountLines(m_title) + (count > 0 ? kTitleGap : 0.0);
    }
    measure.width = inside + 2.0 * kPad;
    measure.height = 2.0 * kPad + measure.titleHeight + measure.rows * measure.rowHeight +
                     kRowGap * std::max(measure.rows - 1, 0);
    return measure;
}

int XvcLegend::FitBox()
{
    const double height = m_font.GetHeight(m_worldPerPixel);
    if (!IsSet() || !(height > 0.0)) return 0;
    const tagMeasure measure = Measure();
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    SetBound(left, top, left + measure.width * height, top - measure.height * height);
    return 1;
}

void XvcLegend::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                   const tagXDrawAttrs* attrs)
{
    if (!buffer || !IsSet()) return;
    const XWarp2D* const map = ChooseWarp(warp);
    const XVectorPaint paint(*this, attrs);
    tagXVector3 corners[kCornerCount];
    if (!GetCorners(map, corners)) return;
    buffer->AddPolygon(corners, kCornerCount, m_borderFlag ? paint.GetLine() : nullptr,
                       paint.GetFill());

    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const tagMeasure measure = Measure();
    double scale = std::min((right - left) / measure.width, (top - bottom) / measure.height);
    const double wanted = m_font.GetHeight(m_worldPerPixel);
    if (wanted > 0.0) scale = std::min(scale, wanted);
    if (!(scale > 0.0) || !XfnIsSet(scale)) return;

    tagXVertText text;
    double y = top - kPad * scale;
    if (!m_title.IsEmpty()) {
        XMarkFont bold = m_font;
        bold.style.font.weight = kBold;
        text.position = {left / 2.0 + right / 2.0, y};
        text.text = m_title;
        text.align = kXTextCentre | kXTextTop;
        bold.RecordInWorld(*buffer, text, kTitleHeight * scale, map, paint.line.colour);
        y -= measure.titleHeight * scale;
    }
    const double pitch = (measure.rowHeight + kRowGap) * scale;
    double x = left + kPad * scale;
    text.align = kXTextLeft | kXTextMiddle;
    for (int i = 0; i < GetNumOfItems(); ++i) {
        const tagXLegendItem& item = m_items[static_cast<std::size_t>(i)];
        const int row = i % measure.rows;
        if (row == 0 && i > 0) {
            const auto column = static_cast<std::size_t>(i / measure.rows);
            x += (measure.columnWidths[column - 1] + kColumnGap) * scale;
        }
        const double middle = y - row * pitch - measure.rowHeight * scale / 2.0;
        RecordSample(*buffer, map, attrs, item, {x, middle - kSampleHeight * scale / 2.0},
                     kSampleWidth * scale, kSampleHeight * scale);
        const double sample = item.kind == tagXLegendItem::kNone ? 0.0 : kSampleWidth + kSampleGap;
        text.position = {x + sample * scale, middle};
        text.text = item.label;
        m_font.RecordInWorld(*buffer, text, scale, map, paint.line.colour);
    }
}

void XvcLegend::Normalize(double minX, double minY, double maxX, double maxY)
{
    const tagXUnitMap map(minX, minY, maxX, maxY);
    const bool isMapped = IsSet() && map.isValid && map.height != 0.0 &&
                          map.CanApply(GetLeftTop()) && map.CanApply(GetRightBottom());
    XvcBoxObj::Normalize(minX, minY, maxX, maxY);
    if (isMapped) m_font.Scale(1.0 / std::fabs(map.height));
}

void XvcLegend::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_title << m_columns << m_borderFlag << m_worldPerPixel;
    m_font.Store(archive);
    archive << static_cast<std::uint32_t>(m_items.size());
    for (const tagXLegendItem& item : m_items) {
        XvcObj look; // stores the attributes of a row as those of any object
        GiveLook(item, look);
        look.SetName(item.label);
        look.SetReserved(kOutlineText, item.outline);
        look.Serialize(archive);
        archive << item.kind << item.shape;
    }
}

void XvcLegend::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    XString title;
    int columns = 0, borderFlag = 0;
    double worldPerPixel = 0.0;
    XMarkFont font;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    archive >> title >> columns >> borderFlag >> worldPerPixel;
    font.Load(archive);
    const std::uint32_t count = archive.ReadCount(kMinItemBytes);
    if (count > kMaxItems) throw XFileException(XFileException::kInvalidFile);
    std::vector<tagXLegendItem> items;
    for (std::uint32_t i = 0; i < count; ++i) {
        XvcObj look;
        look.Serialize(archive);
        tagXLegendItem item = TakeLook(look);
        item.outline = look.GetReserved(kOutlineText);
        archive >> item.kind >> item.shape;
        if (item.kind < 0 || item.kind >= tagXLegendItem::kKindCount) {
            throw XFileException(XFileException::kInvalidFile);
        }
        items.push_back(item);
    }
    m_title = title;
    m_items = std::move(items);
    m_font = font;
    SetNumOfColumns(columns);
    SetBorderFlag(borderFlag);
    SetWorldPerPixel(worldPerPixel);
}
