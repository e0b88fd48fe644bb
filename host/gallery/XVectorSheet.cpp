#include "host/gallery/XVectorSheet.h"

#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XMarkFont.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcText.h"

#include <QDir>
#include <QImage>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kMargin = 16.0;
constexpr double kGap = 12.0;
constexpr double kNameHeight = 14.0;
constexpr double kHeadingHeight = 20.0;
constexpr double kHeadingGap = 6.0;
constexpr tagXColor kGround = XfnMakeColor(248, 248, 244, 255);
constexpr tagXColor kNameColor = XfnMakeColor(90, 90, 90, 255);

} // namespace

XVectorSheet::XVectorSheet(int widthPx)
    : m_width(widthPx), m_left(kMargin), m_top(-kMargin), m_layer(new XvcLayer)
{
    m_base.AddTail(m_layer);
}

XVectorSheet::~XVectorSheet() = default;

tagXTextStyle XVectorSheet::GetTextStyle(int weight)
{
    tagXTextStyle style;
    style.font.SetFaceName("DejaVu Sans");
    style.font.weight = weight;
    return style;
}

void XVectorSheet::AddHeading(const char* text)
{
    if (m_rowHeight > 0.0) m_top -= m_rowHeight + kGap;
    m_rowHeight = 0.0;
    m_left = kMargin;
    AddCaption(m_left, m_top, text, kHeadingHeight, kXTextLeft | kXTextTop);
    m_top -= kHeadingHeight + kHeadingGap;
}

tagXSheetCell XVectorSheet::AddCell(double width, double height, const XString& name)
{
    XMarkFont font;
    font.style = GetTextStyle();
    const double needed = std::max(width, font.GetWidth(name) * kNameHeight);
    if (m_left + needed > m_width - kMargin) {
        m_top -= m_rowHeight + kGap;
        m_rowHeight = 0.0;
        m_left = kMargin;
    }
    const tagXSheetCell cell{m_left + (needed - width) / 2.0, m_top - height, width, height};
    AddCaption(cell.GetMiddleX(), cell.bottom - 2.0, name, kNameHeight, kXTextCentre | kXTextTop);
    m_left += needed + kGap;
    m_rowHeight = std::max(m_rowHeight, height + 2.0 + kNameHeight);
    return cell;
}

void XVectorSheet::Add(std::unique_ptr<XvcObj> object)
{
    object->CalcRange();
    m_layer->AddTail(object.release());
}

void XVectorSheet::AddCaption(double x, double y, const XString& text, double height, int align)
{
    auto caption = std::make_unique<XvcText>();
    caption->SetText(text);
    caption->SetPosition(x, y);
    caption->SetFontSize(height);
    caption->SetTextAlign(align);
    caption->SetTextStyle(GetTextStyle(height > kNameHeight ? 700 : 400));
    caption->SetLineColor(kNameColor);
    Add(std::move(caption));
}

bool XVectorSheet::Save(const QString& path)
{
    const int height = static_cast<int>(std::ceil(m_rowHeight + kMargin - m_top));
    m_base.CalcRange();
    XVertBuffer recording;
    recording.SetSmooth(1);
    recording.Start();
    m_base.CreateVertexBuffer(&recording, nullptr, nullptr);
    recording.End();
    XBackBuffer buffer;
    buffer.Create(nullptr, 2);
    buffer.Resize(nullptr, m_width, height);
    buffer.SetWorldPerPixel(1.0, 1.0);
    buffer.SetWorldToCenter(m_width / 2.0, -height / 2.0);
    buffer.Clear(kGround);
    return recording.Draw(&buffer) && buffer.GetImage().save(path, "PNG", 0);
}

const char* XfnSaveVectorSheets(const QString& folder)
{
    const struct
    {
        const char* name;
        int width;
        void (*fill)(XVectorSheet& sheet);
    } sheets[] = {{"vector-shapes.png", 1280, XfnFillShapeSheet},
                  {"vector-marks.png", 1280, XfnFillMarkSheet},
                  {"vector-texts.png", 1280, XfnFillTextSheet}};
    for (const auto& row : sheets) {
        XVectorSheet sheet(row.width);
        row.fill(sheet);
        if (!sheet.Save(QDir(folder).filePath(row.name))) return row.name;
    }
    return nullptr;
}
