#include "foundation/vector/XvcTextBox.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XCodePage.h"
#include "foundation/base/XFileException.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XMarkFont.h"
#include "foundation/vector/XRichTextFlow.h"
#include "foundation/vector/XRtfReader.h"
#include "foundation/vector/XRtfWriter.h"
#include "foundation/vector/XTextBoxEditing.h"
#include "foundation/vector/XTextFrame.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

X_IMPLEMENT_CLASS(XvcTextBox, XvcBoxObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr double kYSpace = 2.0;        // above and below the text, in pixels of the scale
constexpr double kTwipsPerHalf = 10.0; // twentieths of a point in half a point
constexpr double kMinColumnPx = 1.0;
constexpr double kMaxColumnPx = 1e5;

std::string ToUtf8(const XString& text)
{
    return std::string(XfnTextToUtf8(text).View());
}

XString ToText(const std::string& utf8)
{
    return XfnTextFromUtf8(XString(std::string_view(utf8)));
}

} // namespace

XvcTextBox::XvcTextBox(XHWND parent) : m_parent(parent), m_vertAlign(kXTextTop) {}

XvcTextBox::XvcTextBox(const XvcTextBox& other) : XvcBoxObj()
{
    *this = other;
}

XvcTextBox& XvcTextBox::operator=(const XvcTextBox& other)
{
    if (this == &other) return *this;
    EndEditMode();
    XvcBoxObj::operator=(other);
    TakeOwn(other);
    m_parent = other.m_parent;
    std::copy(std::begin(other.m_editBound), std::end(other.m_editBound), m_editBound);
    return *this;
}

XvcTextBox::~XvcTextBox() = default;

void XvcTextBox::TakeOwn(const XvcTextBox& other)
{
    m_editing.reset();
    m_text = other.GetRichText();
    m_style = other.m_style;
    m_scale = other.m_scale;
    m_xSpace = other.m_xSpace;
    m_autoAlign = other.m_autoAlign;
    m_vertAlign = other.m_vertAlign;
    m_drawBorder = other.m_drawBorder;
}

// --- place

void XvcTextBox::CalcBound(double width, double height)
{
    const tagXVector3 at = GetPosition();
    const double right = at.x + std::max(width, 0.0);
    const double bottom = at.y - std::max(height, 0.0);
    if (!XfnIsUsable(at) || !XfnIsSet(right) || !XfnIsSet(bottom) || !XfnIsSet(width) ||
        !XfnIsSet(height)) {
        return;
    }
    SetBound(at.x, at.y, right, bottom);
    CalcRange();
}

void XvcTextBox::SetScale(double worldPerPixel)
{
    // one that is not normal has lost digits
    if (!(worldPerPixel > 0.0) || !XfnIsSet(worldPerPixel) || !std::isnormal(worldPerPixel)) return;
    Touch();
    m_scale = worldPerPixel;
}

double XvcTextBox::GetColumnWidth() const
{
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    if (!IsSet()) return 0.0;
    return std::min((right - left) / GetPixelLength() - 2.0 * m_xSpace, kMaxColumnPx);
}

void XvcTextBox::GetTextSize(double& width, double& height) const
{
    width = height = 0.0;
    const double column = GetColumnWidth();
    if (!(column >= kMinColumnPx)) return;
    const XRichTextFlow flow(GetRichText(), m_style, column,
                             std::numeric_limits<double>::infinity());
    width = (flow.width + 2.0 * m_xSpace) * GetPixelLength();
    height = (flow.height + 2.0 * kYSpace) * GetPixelLength();
}

// --- edit mode

int XvcTextBox::BeginEditMode(double worldPerPixel)
{
    if (m_editing) return 1;
    if (!m_parent) return 0;
    const bool isKnown = worldPerPixel > 0.0 && XfnIsSet(worldPerPixel);
    m_editing =
        std::make_unique<XTextBoxEditing>(*this, isKnown ? worldPerPixel : GetPixelLength());
    if (!m_editing->Begin()) {
        m_editing.reset();
        return 0;
    }
    Touch();
    return 1;
}

void XvcTextBox::EndEditMode()
{
    if (!m_editing) return;
    m_editing->GetEditor().Commit();
    m_text = m_editing->GetEditor().GetText();
    const std::unique_ptr<XTextBoxEditing> done = std::move(m_editing);
    CalcRange();
    done->GetEditor().Ended();
}

int XvcTextBox::GetEditMode() const
{
    return m_editing ? 1 : 0;
}

void XvcTextBox::SetEditBound(int left, int top, int right, int bottom)
{
    m_editBound[0] = std::min(left, right);
    m_editBound[1] = std::min(top, bottom);
    m_editBound[2] = std::max(left, right);
    m_editBound[3] = std::max(top, bottom);
    if (!m_editing) return;
    const auto [l, t, r, b] = m_editBound;
    m_editing->GetEditor().SetBound(l, t, r, b, GetPixelsPerPoint());
}

void XvcTextBox::GetEditBound(int& left, int& top, int& right, int& bottom) const
{
    left = m_editBound[0];
    top = m_editBound[1];
    right = m_editBound[2];
    bottom = m_editBound[3];
}

double XvcTextBox::GetPixelsPerPoint() const
{
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const double widthPx = static_cast<double>(m_editBound[2]) - m_editBound[0];
    double zoom = m_editing ? GetPixelLength() / m_editing->GetWorldPerPixel() : 1.0;
    if (IsSet() && right > left && widthPx >= 1.0)
        zoom = widthPx * GetPixelLength() / (right - left);
    return XRichTextFlow::kPixelsPerPoint * (zoom > 0.0 && XfnIsSet(zoom) ? zoom : 1.0);
}

tagXTextEditorSetup XvcTextBox::GetEditorSetup() const
{
    tagXTextEditorSetup setup;
    setup.parent = m_parent;
    setup.left = m_editBound[0];
    setup.top = m_editBound[1];
    setup.right = m_editBound[2];
    setup.bottom = m_editBound[3];
    setup.pixelsPerPoint = GetPixelsPerPoint();
    const double zoom = setup.pixelsPerPoint / XRichTextFlow::kPixelsPerPoint;
    setup.xSpacePx = m_xSpace * zoom;
    setup.ySpacePx = kYSpace * zoom;
    setup.verticalAlign = m_vertAlign;
    setup.backColour = GetFillStyle().IsNone() ? 0 : GetForeColor();
    setup.textColour = GetLineColor();
    setup.style = m_style;
    return setup;
}

void XvcTextBox::FollowEditor()
{
    if (!m_editing || !m_autoAlign) return;
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const double before = top - bottom;
    const double pixels = static_cast<double>(m_editBound[3]) - m_editBound[1];
    CalcRange();
    double newTop, newBottom;
    GetBound(left, newTop, right, newBottom);
    if (!(before > 0.0) || (newTop == top && newBottom == bottom)) return;
    const auto toPixels = [&](double length) {
        return static_cast<int>(std::lround(std::clamp(length / before * pixels, -1e6, 1e6)));
    };
    SetEditBound(m_editBound[0], m_editBound[1] - toPixels(newTop - top), m_editBound[2],
                 m_editBound[3] + toPixels(bottom - newBottom));
}

// --- text

XString XvcTextBox::GetRTF() const
{
    return XfnWriteRtf(GetRichText());
}

int XvcTextBox::SetRTF(const XString& rtf)
{
    XString error;
    return SetRTF(rtf, error);
}

int XvcTextBox::SetRTF(const XString& rtf, XString& error)
{
    XRichText read;
    const std::string_view bytes = rtf.View();
    if (!XfnReadRtf(bytes.data(), bytes.size(), read, error)) return 0;
    SetRichText(read);
    return 1;
}

int XvcTextBox::ReplaceRTF(const XString& from, const XString& to)
{
    XRichText text = GetRichText();
    const int count = text.Replace(ToUtf8(from), ToUtf8(to));
    if (count > 0) SetRichText(text);
    return count;
}

XString XvcTextBox::GetText() const
{
    return ToText(GetRichText().GetPlainText());
}

void XvcTextBox::SetText(const XString& text)
{
    const XRichText before = GetRichText();
    unsigned common = 0;
    SetRichText(
        XRichText(ToUtf8(text), before.GetFormat(common), before.GetParagraphs().front().align));
}

XRichText XvcTextBox::GetRichText() const
{
    return m_editing ? m_editing->GetEditor().GetText() : m_text;
}

void XvcTextBox::SetRichText(const XRichText& text)
{
    Touch();
    if (m_editing) {
        m_editing->GetEditor().SetText(text);
    } else {
        m_text = text;
    }
}

void XvcTextBox::SetTextStyle(const tagXTextStyle& style)
{
    Touch();
    m_style = style;
    m_style.font.faceName[sizeof m_style.font.faceName - 1] = '\0';
    XRichText text = GetRichText();
    if (!text.IsEmpty()) return;
    const tagXFontRecord& font = m_style.font;
    tagXCharFormat format;
    format.isBold = font.weight >= 600;
    format.isItalic = font.italic != 0;
    format.isUnderline = font.underline != 0;
    format.isStrikeOut = font.strikeOut != 0;
    unsigned mask = tagXCharFormat::kBold | tagXCharFormat::kItalic | tagXCharFormat::kUnderline |
                    tagXCharFormat::kStrikeOut;
    const double twips = std::fabs(static_cast<double>(font.height));
    if (twips > 0.0) {
        const double half = std::min(twips / kTwipsPerHalf, double{tagXCharFormat::kMaxHalfPoints});
        format.halfPoints = static_cast<int>(std::lround(half));
        mask |= tagXCharFormat::kSize;
    }
    text.SetFormat(format, mask);
    SetRichText(text);
}

// --- paragraphs and letters

void XvcTextBox::SetParagraph(XParagraphAlign align)
{
    Touch();
    if (m_editing) {
        m_editing->GetEditor().SetAlign(align);
    } else {
        m_text.SetAlign(align);
    }
}

int XvcTextBox::IsParagraph(XParagraphAlign align) const
{
    return m_editing ? m_editing->GetEditor().IsAlign(align) : m_text.IsAlign(align);
}

void XvcTextBox::SetSelectionCharFormat(const tagXCharFormat& format, unsigned mask)
{
    Touch();
    if (m_editing) {
        m_editing->GetEditor().SetFormat(XRichText::Hold(format), mask);
    } else {
        m_text.SetFormat(format, mask);
    }
}

tagXCharFormat XvcTextBox::GetSelectionCharFormat(unsigned& common) const
{
    return m_editing ? m_editing->GetEditor().GetFormat(common) : m_text.GetFormat(common);
}

void XvcTextBox::SetColor(tagXColor color)
{
    tagXCharFormat format;
    format.colour = color | kXOpaque;
    SetSelectionCharFormat(format, tagXCharFormat::kColour);
}

tagXColor XvcTextBox::GetColor() const
{
    unsigned common = 0;
    const tagXColor color = GetSelectionCharFormat(common).colour;
    return color ? color : GetLineColor();
}

void XvcTextBox::Toggle(unsigned part)
{
    Turn(part, !Is(part));
}

void XvcTextBox::Turn(unsigned part, int isOn)
{
    tagXCharFormat format;
    format.isBold = format.isItalic = format.isUnderline = isOn != 0;
    SetSelectionCharFormat(format, part);
}

int XvcTextBox::Is(unsigned part) const
{
    unsigned common = 0;
    const tagXCharFormat format = GetSelectionCharFormat(common);
    tagXCharFormat all;
    all.isBold = all.isItalic = all.isUnderline = true;
    return common & format.Compare(all) & part ? 1 : 0;
}

// --- looks

void XvcTextBox::SetAutoAlign(int flag)
{
    Touch();
    m_autoAlign = flag ? 1 : 0;
}

void XvcTextBox::SetVertAlign(int align)
{
    Touch();
    m_vertAlign = align;
}

void XvcTextBox::SetXSpace(double pixels)
{
    if (!(pixels >= 0.0) || !XfnIsSet(pixels)) return;
    Touch();
    m_xSpace = pixels;
}

void XvcTextBox::SetDrawBorder(int flag)
{
    Touch();
    m_drawBorder = flag ? 1 : 0;
}

void XvcTextBox::CalcRange()
{
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    double width = 0.0, height = 0.0;
    if (m_autoAlign && IsSet()) GetTextSize(width, height);
    const double more = height - (top - bottom);
    // what coordinates of this size cannot hold would shift the box at every call
    const double least = std::max(1e-9 * height, 4.0 * std::numeric_limits<double>::epsilon() *
                                                     std::max(std::fabs(top), std::fabs(bottom)));
    if (height > 0.0 && XfnIsSet(more) && std::fabs(more) > least) {
        if (m_vertAlign & kXTextMiddle) {
            SetBound(left, top + more / 2.0, right, bottom - more / 2.0);
        } else if (m_vertAlign & kXTextBottom) {
            SetBound(left, bottom + height, right, bottom);
        } else {
            SetBound(left, top, right, top - height);
        }
    }
    XvcBoxObj::CalcRange();
}

void XvcTextBox::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                    const tagXDrawAttrs* attrs)
{
    tagXVector3 corners[kCornerCount];
    if (!buffer || !GetCorners(warp, corners)) return;
    const XVectorPaint paint(*this, attrs);
    const XWarp2D* const map = ChooseWarp(warp);
    RecordFrame(*buffer, corners, map, paint);
    if (!m_editing) RecordText(*buffer, map, paint.line.colour);
}

void XvcTextBox::RecordFrame(XVertBuffer& buffer, const tagXVector3 (&corners)[kCornerCount],
                             const XWarp2D*, const XVectorPaint& paint) const
{
    buffer.AddPolygon(corners, kCornerCount, m_drawBorder ? paint.GetLine() : nullptr,
                      paint.GetFill());
}

void XvcTextBox::RecordText(XVertBuffer& buffer, const XWarp2D* warp, tagXColor colour) const
{
    const double column = GetColumnWidth();
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const double room = (top - bottom) / GetPixelLength();
    if (!(column >= kMinColumnPx) || !(room > 0.0)) return;
    const XRichTextFlow flow(m_text, m_style, column, room - kYSpace);
    const double free = std::max(room - 2.0 * kYSpace - flow.height, 0.0);
    const double share = m_vertAlign & kXTextMiddle ? 0.5 : m_vertAlign & kXTextBottom ? 1.0 : 0.0;
    const XTextFrame frame({left, top}, GetPixelLength(), 0.0, warp);
    for (const XRichTextFlow::tagPiece& piece : flow.pieces) {
        tagXVertText text;
        text.text = piece.text;
        text.style = piece.style;
        text.colour = piece.colour ? piece.colour : colour;
        text.position = {m_xSpace + piece.left, kYSpace + free * share + piece.top};
        text.height = piece.height;
        text.width = piece.width;
        frame.Record(buffer, text);
    }
}

void XvcTextBox::Normalize(double minX, double minY, double maxX, double maxY)
{
    const tagXUnitMap map(minX, minY, maxX, maxY);
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const bool isMapped =
        IsSet() && map.isValid && map.CanApply({left, top}) && map.CanApply({right, bottom});
    XvcBoxObj::Normalize(minX, minY, maxX, maxY);
    if (isMapped && map.height != 0.0) SetScale(GetPixelLength() / std::fabs(map.height));
}

void XvcTextBox::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << GetRTF() << m_scale << m_xSpace << m_autoAlign << m_vertAlign
            << m_drawBorder;
    XfnStoreTextStyle(archive, m_style);
}

void XvcTextBox::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    XString rtf, error;
    double scale = 0.0, xSpace = 0.0;
    int autoAlign = 0, vertAlign = 0, drawBorder = 0;
    archive >> rtf >> scale >> xSpace >> autoAlign >> vertAlign >> drawBorder;
    const tagXTextStyle style = XfnLoadTextStyle(archive);
    XRichText text;
    if (!XfnReadRtf(rtf, static_cast<std::size_t>(rtf.GetLength()), text, error)) {
        throw XFileException(XFileException::kInvalidFile);
    }
    m_editing.reset();
    m_text = std::move(text);
    m_scale = 0.0;
    SetScale(scale);
    m_xSpace = kDefaultXSpace;
    SetXSpace(xSpace);
    m_autoAlign = autoAlign ? 1 : 0;
    m_vertAlign = vertAlign;
    m_drawBorder = drawBorder ? 1 : 0;
    m_style = style;
}
