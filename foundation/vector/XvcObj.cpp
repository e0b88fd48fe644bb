#include "foundation/vector/XvcObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XDrawAttrs.h"

#include <cstring>
#include <mutex>
#include <vector>

X_IMPLEMENT_CLASS(XvcObj, XObject)

namespace {

using FillStyle = std::shared_ptr<const tagXFillStyle>;

constexpr std::uint16_t kArchiveVersion = 1;

// One record for each style in use, however many objects have it. Patterns of one's own are few
// and come in runs, so a short list of those seen last finds nearly all of them.
class FillStylePool
{
public:
    FillStyle Get(const tagXFillStyle& style)
    {
        if (style.style >= 0 && style.style < tagXFillStyle::kPredefinedCount &&
            style == *m_predefined[style.style]) {
            return m_predefined[style.style];
        }
        const std::lock_guard lock(m_lock);
        for (const auto& custom : m_customs) {
            if (custom && *custom == style) return custom;
        }
        m_next = (m_next + 1) % kRemembered;
        m_customs[m_next] = std::make_shared<const tagXFillStyle>(style);
        return m_customs[m_next];
    }

    static FillStylePool& Instance()
    {
        static FillStylePool pool;
        return pool;
    }

private:
    FillStylePool()
    {
        for (int i = 0; i < tagXFillStyle::kPredefinedCount; ++i) {
            m_predefined[i] = std::make_shared<const tagXFillStyle>(i);
        }
    }

    static constexpr int kRemembered = 32;
    FillStyle m_predefined[tagXFillStyle::kPredefinedCount];
    std::mutex m_lock;
    FillStyle m_customs[kRemembered];
    int m_next = 0;
};

void StoreFillStyle(XArchive& archive, const tagXFillStyle& style)
{
    archive << style.style;
    archive.Write(style.pattern, tagXFillStyle::kPatternBytes);
}

FillStyle LoadFillStyle(XArchive& archive)
{
    tagXFillStyle style;
    archive >> style.style;
    archive.ReadExactly(style.pattern, tagXFillStyle::kPatternBytes);
    return FillStylePool::Instance().Get(style);
}

} // namespace

XvcObj::XvcObj() : m_fillStyle(FillStylePool::Instance().Get(tagXFillStyle())) {}

XvcObj::XvcObj(const XvcObj& other) : XObject(other)
{
    *this = other;
}

XvcObj& XvcObj::operator=(const XvcObj& other)
{
    m_range = other.m_range;
    m_name = other.m_name;
    m_lineColor = other.m_lineColor;
    m_foreColor = other.m_foreColor;
    m_backColor = other.m_backColor;
    m_hideFlag = other.m_hideFlag;
    m_reservedValue = other.m_reservedValue;
    m_thick = other.m_thick;
    m_fillStyle = other.m_fillStyle;
    m_lineStyle = other.m_lineStyle;
    m_link = other.m_link;
    m_reserved = other.m_reserved;
    m_warp = other.m_warp;
    return *this;
}

XvcObj::~XvcObj() = default;

void XvcObj::GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                      double& maxZ) const
{
    m_range.Get(minX, minY, minZ, maxX, maxY, maxZ);
}

XString XvcObj::GetReserved(int index) const
{
    if (index < 0 || index >= kReservedCount || !m_reserved) return XString();
    return (*m_reserved)[static_cast<std::size_t>(index)];
}

void XvcObj::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kArchiveVersion << m_name << m_link << m_lineColor << m_foreColor << m_backColor
                << m_hideFlag << m_reservedValue << m_thick;
        StoreFillStyle(archive, *m_fillStyle);
        archive << m_lineStyle.pattern << m_lineStyle.style << m_lineStyle.words[0]
                << m_lineStyle.words[1];
        for (int i = 0; i < kReservedCount; ++i)
            archive << GetReserved(i);
        archive << m_range.minX << m_range.minY << m_range.minZ << m_range.maxX << m_range.maxY
                << m_range.maxZ;
        return;
    }
    std::uint16_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    XvcObj loaded;
    archive >> loaded.m_name >> loaded.m_link >> loaded.m_lineColor >> loaded.m_foreColor >>
        loaded.m_backColor >> loaded.m_hideFlag >> loaded.m_reservedValue >> loaded.m_thick;
    loaded.m_fillStyle = LoadFillStyle(archive);
    archive >> loaded.m_lineStyle.pattern >> loaded.m_lineStyle.style >>
        loaded.m_lineStyle.words[0] >> loaded.m_lineStyle.words[1];
    for (int i = 0; i < kReservedCount; ++i) {
        XString text;
        archive >> text;
        loaded.XvcObj::SetReserved(i, text);
    }
    auto& range = loaded.m_range;
    archive >> range.minX >> range.minY >> range.minZ >> range.maxX >> range.maxY >> range.maxZ;
    loaded.m_warp = m_warp;
    XvcObj::operator=(loaded);
}

void XvcObj::SetWarpCoeff(XWarp2D* warp)
{
    m_warp = warp;
}

void XvcObj::SetLineColor(tagXColor color)
{
    m_lineColor = color;
}

void XvcObj::SetForeColor(tagXColor color)
{
    m_foreColor = color;
}

void XvcObj::SetBackColor(tagXColor color)
{
    m_backColor = color;
}

void XvcObj::SetReserved(int index, const XString& text)
{
    if (index < 0 || index >= kReservedCount) return;
    if (!m_reserved && text.IsEmpty()) return;
    auto changed =
        m_reserved ? std::make_shared<Reserved>(*m_reserved) : std::make_shared<Reserved>();
    (*changed)[static_cast<std::size_t>(index)] = text;
    m_reserved = std::move(changed);
}

void XvcObj::SetReserved(double value)
{
    m_reservedValue = value;
}

void XvcObj::SetThick(double value)
{
    m_thick = value;
}

void XvcObj::SetFillStyle(const tagXFillStyle& style)
{
    if (style == *m_fillStyle) return;
    m_fillStyle = FillStylePool::Instance().Get(style);
}

void XvcObj::SetLineStyle(const tagXLineStyle& style)
{
    m_lineStyle = style;
}

void XvcObj::SetLink(const XString& text)
{
    m_link = text;
}

void XvcObj::SetHideFlag(int flag)
{
    m_hideFlag = flag ? 1 : 0;
}

void XvcObj::SetRange(double minX, double minY, double minZ, double maxX, double maxY, double maxZ)
{
    m_range = {minX, minY, minZ, maxX, maxY, maxZ};
}

void XvcObj::SetParentLayer(XvcLayer* layer)
{
    m_parentLayer = layer;
}

void XvcObj::CalcRange()
{
    m_range.Clear();
}

void XvcObj::CreateVertexBuffer(XVertBuffer*, const XWarp2D*, const tagXDrawAttrs*) {}

void XvcObj::DrawToBackBuffer(XBackBuffer* buffer, int flag, const XWarp2D* warp,
                              const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    XVertBuffer recording;
    recording.SetFontSizeFlag(flag);
    recording.Start();
    CreateVertexBuffer(&recording, warp, attrs);
    recording.End();
    recording.Draw(buffer);
}

void XvcObj::DrawToSmartBuffer(void*) {}

XvcObj* XvcObj::HitTest(const tagXVector3&, double, double, tagXHitFlag&)
{
    return nullptr;
}

XvcObj* XvcObj::HitTest(const tagXVector3& point, double tolerance, tagXHitFlag& hitFlag)
{
    return HitTest(point, tolerance, tolerance, hitFlag);
}

void XvcObj::AddCtrlPoints(XPtrArray&) {}

void XvcObj::MoveObject(double, double, double) {}

tagXVector3* XvcObj::MoveVertex(int, double, double, double)
{
    return nullptr;
}

void XvcObj::RotateObject(double, double, double) {}

void XvcObj::RotateObject(double angle)
{
    if (m_range.IsEmpty()) return;
    RotateObject(m_range.minX / 2.0 + m_range.maxX / 2.0, m_range.minY / 2.0 + m_range.maxY / 2.0,
                 angle);
}

void XvcObj::Normalize(double, double, double, double) {}

int XvcObj::ImportFromWkb(const unsigned char*, std::size_t&, XString& error)
{
    error = "This kind of object has no well-known binary form.";
    return 0;
}

XString XvcObj::ExportToWkt() const
{
    return XString();
}
