#include "foundation/vector/XvcText.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XTextLayout.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XHitGeometry.h"
#include "foundation/vector/XMarkFont.h"
#include "foundation/vector/XRecordPool.h"
#include "foundation/vector/XTextFrame.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XvcPoint.h"

#include <algorithm>
#include <cmath>

X_IMPLEMENT_CLASS(XvcText, XvcObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr double kBorderShare = 0.15; // of a line, between letters and border
constexpr int kLowerLeft = tagXHitFlag::kFirstCorner;
constexpr int kLowerRight = tagXHitFlag::kLastCorner;

// The share of the box that lies left of its position, or above it.
double GetLeftShare(int align)
{
    return align & kXTextCentre ? 0.5 : align & kXTextRight ? 1.0 : 0.0;
}

double GetTopShare(int align)
{
    return align & kXTextMiddle ? 0.5 : align & kXTextBottom ? 1.0 : 0.0;
}

XSharedRecord<tagXTextStyle> Share(const tagXTextStyle& style)
{
    static XRecordPool<tagXTextStyle> pool;
    return pool.Find(style);
}

} // namespace

XvcText::XvcText() : m_style(Share(tagXTextStyle())) {}

XvcText::XvcText(const XvcText& other) : XvcObj()
{
    *this = other;
}

XvcText& XvcText::operator=(const XvcText& other)
{
    if (this == &other) return *this;
    XvcObj::operator=(other);
    m_text = other.m_text;
    m_position = other.m_position;
    m_fontSize = other.m_fontSize;
    m_angle = other.m_angle;
    m_worldPerPixel = other.m_worldPerPixel;
    m_align = other.m_align;
    m_drawBorder = other.m_drawBorder;
    m_textColor = other.m_textColor;
    m_style = other.m_style;
    m_parent = other.m_parent;
    return *this;
}

void XvcText::SetText(const XString& text)
{
    Touch();
    m_text = text;
}

void XvcText::GetPosition(double& x, double& y, double& z) const
{
    x = m_position.x;
    y = m_position.y;
    z = m_position.z;
}

void XvcText::SetPosition(const tagXVector3& position)
{
    Touch();
    m_position = position;
}

void XvcText::SetFontSize(double height)
{
    Touch();
    if (XfnIsSet(height)) m_fontSize = height;
}

void XvcText::SetTextAlign(int align)
{
    Touch();
    m_align = align;
}

void XvcText::SetTextStyle(const tagXTextStyle& style)
{
    Touch();
    tagXTextStyle ended = style;
    ended.font.faceName[sizeof ended.font.faceName - 1] = '\0';
    m_style = Share(ended);
}

void XvcText::SetTextColor(tagXColor color)
{
    Touch();
    m_textColor = color;
}

void XvcText::SetDrawBorder(int flag)
{
    Touch();
    m_drawBorder = flag ? 1 : 0;
}

void XvcText::SetAngle(double angle)
{
    Touch();
    if (XfnIsSet(angle)) m_angle = std::remainder(angle, 360.0);
}

void XvcText::SetWorldPerPixel(double length)
{
    Touch();
    if (length >= 0.0 && XfnIsSet(length)) m_worldPerPixel = length;
}

int XvcText::IsSet() const
{
    return XfnIsUsable(m_position) ? 1 : 0;
}

double XvcText::GetPixelHeight() const
{
    if (m_fontSize < 0.0) return -m_fontSize;
    return XTextLayout("x", *m_style, 0.0).GetSize().height();
}

double XvcText::GetLineHeight() const
{
    if (m_fontSize > 0.0) return m_fontSize;
    return m_worldPerPixel > 0.0 ? GetPixelHeight() * m_worldPerPixel : 0.0;
}

void XvcText::GetBoxSize(double& width, double& height) const
{
    width = height = 0.0;
    if (m_text.IsEmpty()) return;
    const double line = GetLineHeight();
    XMarkFont font;
    font.style = *m_style;
    const double wide = font.GetWidth(m_text) * line;
    const double high = (1.0 + std::ranges::count(m_text.View(), '\n')) * line;
    const double border = m_drawBorder ? 2.0 * kBorderShare * line : 0.0;
    if (!XfnIsSet(wide + border) || !XfnIsSet(high + border)) return;
    width = wide + border;
    height = high + border;
}

int XvcText::GetCorners(tagXVector3 (&corners)[kCornerCount]) const
{
    if (!IsSet()) return 0;
    double width, height;
    GetBoxSize(width, height);
    const XTextFrame frame(m_position, 1.0, m_angle, nullptr);
    const double left = -GetLeftShare(m_align) * width;
    const double top = -GetTopShare(m_align) * height;
    corners[0] = frame.ToWorld(left, top + height);
    corners[1] = frame.ToWorld(left, top);
    corners[2] = frame.ToWorld(left + width, top);
    corners[3] = frame.ToWorld(left + width, top + height);
    return std::ranges::all_of(corners, XfnIsUsable) ? 1 : 0;
}

void XvcText::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kArchiveVersion;
        XvcObj::Serialize(archive);
        archive << m_text << m_position.x << m_position.y << m_position.z << m_fontSize << m_angle
                << m_worldPerPixel << m_align << m_drawBorder << m_textColor;
        XfnStoreTextStyle(archive, *m_style);
        return;
    }
    std::uint8_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    XvcText loaded;
    loaded.SetWarpCoeff(GetWarpCeoff());
    loaded.XvcObj::Serialize(archive);
    double fontSize = 0.0, angle = 0.0, worldPerPixel = 0.0;
    archive >> loaded.m_text >> loaded.m_position.x >> loaded.m_position.y >> loaded.m_position.z >>
        fontSize >> angle >> worldPerPixel >> loaded.m_align >> loaded.m_drawBorder >>
        loaded.m_textColor;
    loaded.SetTextStyle(XfnLoadTextStyle(archive));
    loaded.SetFontSize(fontSize);
    loaded.SetAngle(angle);
    loaded.SetWorldPerPixel(worldPerPixel);
    loaded.SetDrawBorder(loaded.m_drawBorder);
    loaded.m_parent = m_parent;
    *this = loaded;
}

void XvcText::CalcRange()
{
    m_range.Clear();
    tagXVector3 corners[kCornerCount];
    if (!GetCorners(corners)) return;
    const double z = XfnIsSet(m_position.z) ? m_position.z : 0.0;
    for (const tagXVector3& corner : corners)
        m_range.Add(corner.x, corner.y, z);
}

void XvcText::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                 const tagXDrawAttrs* attrs)
{
    if (!buffer || !IsSet() || m_text.IsEmpty()) return;
    const XVectorPaint paint(*this, attrs);
    tagXVertText text;
    text.text = m_text;
    text.style = *m_style;
    text.align = m_align;
    text.colour = m_textColor ? m_textColor : paint.line.colour;
    const XTextFrame frame(m_position, 1.0, m_angle, ChooseWarp(warp));
    if (!frame.isUsable) return;
    const int flag = buffer->GetFontSizeFlag();
    if (m_fontSize > 0.0 && !flag) {
        RecordInWorld(*buffer, text, frame, paint);
        return;
    }
    // the box in the world is not known: frame and fill are those of the text primitive
    text.position = frame.origin;
    text.height = m_fontSize > 0.0 ? m_fontSize : GetPixelHeight();
    text.angleDeg = frame.GetAngleDeg();
    if (m_drawBorder) {
        if (paint.GetFill()) text.backColour = paint.fill.foreColour;
        if (paint.GetLine()) text.borderColour = paint.line.colour;
    }
    buffer->SetFontSizeFlag(1);
    buffer->AddText(text);
    buffer->SetFontSizeFlag(flag);
}

void XvcText::RecordInWorld(XVertBuffer& buffer, tagXVertText& text, const XTextFrame& frame,
                            const XVectorPaint& paint) const
{
    double width, height;
    GetBoxSize(width, height);
    if (!(width > 0.0) || !(height > 0.0)) return;
    const double left = -GetLeftShare(m_align) * width;
    const double top = -GetTopShare(m_align) * height;
    double border = 0.0;
    if (m_drawBorder) {
        border = kBorderShare * m_fontSize;
        const tagXVector3 ring[] = {frame.ToWorld(left, top + height), frame.ToWorld(left, top),
                                    frame.ToWorld(left + width, top),
                                    frame.ToWorld(left + width, top + height)};
        buffer.AddPolygon(ring, kCornerCount, paint.GetLine(), paint.GetFill());
    }
    text.position.x = border * (1.0 - 2.0 * GetLeftShare(m_align));
    text.position.y = border * (1.0 - 2.0 * GetTopShare(m_align));
    text.height = m_fontSize;
    text.width = width - 2.0 * border;
    frame.Record(buffer, text);
}

XvcObj* XvcText::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                         tagXHitFlag& hitFlag)
{
    const tagXHitPointer pointer = XfnMakeHitPointer(point, toleranceX, toleranceY);
    tagXVector3 corners[kCornerCount];
    if (!pointer.isUsable || !GetCorners(corners)) return nullptr;
    double coords[2 * kCornerCount];
    bool isHit = false;
    for (int i = 0; i < kCornerCount; ++i) {
        const tagXVector3& next = corners[(i + 1) % kCornerCount];
        coords[2 * i] = corners[i].x;
        coords[2 * i + 1] = corners[i].y;
        isHit = isHit ||
                XfnHitDistanceSquared(pointer, corners[i].x, corners[i].y, next.x, next.y) <= 1.0;
    }
    if (!isHit && !XfnIsInRing(point.x, point.y, coords, 2, kCornerCount)) return nullptr;
    hitFlag = {tagXHitFlag::kBody, 0};
    return this;
}

void XvcText::AddCtrlPoints(XPtrArray& array)
{
    array.Add(&m_position);
}

void XvcText::MoveObject(double dx, double dy, double dz)
{
    Touch();
    const tagXShift shift{dx, dy, dz};
    if (shift.CanApply(m_position)) shift.Apply(m_position);
}

tagXVector3* XvcText::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    Touch();
    if (hitIndex == 0) {
        MoveObject(dx, dy, dz);
        return &m_position;
    }
    tagXVector3 corners[kCornerCount];
    if (hitIndex < kLowerLeft || hitIndex > kLowerRight || !GetCorners(corners)) return nullptr;
    double width, height;
    GetBoxSize(width, height);
    const tagXShift shift{dx, dy, dz};
    if (!(width > 0.0) || !(height > 0.0) || !shift.CanApply(m_position)) return &m_position;
    const int corner = hitIndex - kLowerLeft;
    const bool isRight = corner == 2 || corner == 3;
    const bool isTop = corner == 1 || corner == 2;
    const tagXVector3 fixed = corners[(corner + 2) % kCornerCount];
    // the step along the sides of the box, which may be turned
    const XTextFrame frame(m_position, 1.0, m_angle, nullptr);
    const double wider = (frame.across.x * dx + frame.across.y * dy) * (isRight ? 1.0 : -1.0);
    const double higher = (frame.down.x * dx + frame.down.y * dy) * (isTop ? -1.0 : 1.0);
    const double factor = higher != 0.0 ? 1.0 + higher / height : 1.0 + wider / width;
    const double size = m_fontSize != 0.0 ? m_fontSize * factor : -GetPixelHeight() * factor;
    if (!(factor > 0.0) || !XfnIsSet(size) || size == 0.0) return &m_position;
    m_fontSize = size;
    if (GetCorners(corners)) {
        const tagXVector3& moved = corners[(corner + 2) % kCornerCount];
        MoveObject(fixed.x - moved.x, fixed.y - moved.y, dz);
    }
    return &m_position;
}

void XvcText::RotateObject(double x, double y, double angle)
{
    Touch();
    const tagXTurn turn(x, y, angle);
    if (!turn.isValid || !turn.CanApply(m_position)) return;
    turn.Apply(m_position);
    SetAngle(m_angle + angle);
}

void XvcText::Normalize(double minX, double minY, double maxX, double maxY)
{
    Touch();
    const tagXUnitMap map(minX, minY, maxX, maxY);
    if (!IsSet() || !map.CanApply(m_position)) return;
    map.Apply(m_position);
    if (map.height != 0.0 && m_fontSize > 0.0) SetFontSize(m_fontSize / std::fabs(map.height));
}

int XvcText::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    XvcPoint point;
    if (!point.ImportFromWkb(bytes, size, error)) return 0;
    SetPosition(point.GetVertex());
    return 1;
}

XString XvcText::ExportToWkt() const
{
    return XvcPoint(m_position.x, m_position.y, m_position.z).ExportToWkt();
}
