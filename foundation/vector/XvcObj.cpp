#include "foundation/vector/XvcObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XDrawAttrs.h"
#include "foundation/vector/XRecordPool.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

X_IMPLEMENT_CLASS(XvcObj, XObject)

namespace {

constexpr std::uint16_t kArchiveVersion = 1;
std::atomic<std::uint32_t> s_lastRevision{0};

// What most objects have alike is not written: a bit tells what follows.
enum Stored : std::uint16_t {
    kStoredName = 1,
    kStoredLink = 2,
    kStoredValue = 4,
    kStoredPattern = 8, // the fill pattern is not that of the style's number
    kStoredTexts = 16,
    kStoredRange = 32,
    kStoredAll = 63,
};

bool HasOwnPattern(const tagXFillStyle& style)
{
    return style.style < 0 || style.style >= tagXFillStyle::kPredefinedCount ||
           !(style == tagXFillStyle(style.style));
}

} // namespace

class XvcObj::StylePool
{
public:
    static XSharedRecord<tagStyles> Get(const tagStyles& styles)
    {
        static XRecordPool<tagStyles> pool;
        return pool.Find(styles);
    }
    /// Of objects without anything rare. Those of a file come in runs of the same look.
    static const XSharedRecord<tagShared>& ShareRun(const tagStyles& styles)
    {
        static thread_local XSharedRecord<tagShared> last;
        if (!last || !(*last->styles == styles)) last = Share(Get(styles), tagRare());
        return last;
    }
    static XSharedRecord<tagShared> Share(XSharedRecord<tagStyles> styles, const tagRare& rare)
    {
        static XRecordPool<tagShared> pool;
        tagShared shared{std::move(styles), {}};
        if (rare.IsEmpty()) return pool.Find(shared);
        shared.rare = XSharedRecord<tagRare>(rare);
        return XSharedRecord<tagShared>(std::move(shared));
    }
};

std::atomic<std::uint32_t> XvcObjRange::s_touchCount{0};
std::atomic<std::uint32_t> XvcObjRange::s_epoch{0};

void XvcObjRange::Forget()
{
    m_revision = 0;
    s_touchCount.fetch_add(1, std::memory_order_relaxed);
}

void XvcObjRange::Settle()
{
    while (!m_revision)
        m_revision = s_lastRevision.fetch_add(1, std::memory_order_relaxed) + 1;
}

void XvcObjRange::TouchAll()
{
    s_epoch.fetch_add(1, std::memory_order_relaxed);
}

bool XvcObj::tagRare::IsEmpty() const
{
    return std::bit_cast<std::uint64_t>(reservedValue) == 0 && link.IsEmpty() && !warp &&
           !HasTexts();
}

bool XvcObj::tagRare::HasTexts() const
{
    return std::any_of(reserved.begin(), reserved.end(),
                       [](const XString& text) { return !text.IsEmpty(); });
}

const XvcObj::tagRare& XvcObj::GetNoRare()
{
    static const tagRare none;
    return none;
}

template <class Change>
void XvcObj::ChangeRare(const Change& change)
{
    tagRare changed = GetRare();
    change(changed);
    m_shared = StylePool::Share(m_shared->styles, changed);
    Touch();
}

XvcObj::XvcObj()
{
    static const auto shared = StylePool::Share(StylePool::Get(tagStyles()), tagRare());
    m_shared = shared;
}

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
    m_record = other.m_record;
    m_thick = other.m_thick;
    m_shared = other.m_shared;
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
    if (index < 0 || index >= kReservedCount) return XString();
    return GetRare().reserved[static_cast<std::size_t>(index)];
}

void XvcObj::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        const tagXVectorRange empty;
        const tagXVectorRange& range = m_range;
        const tagRare& rare = GetRare();
        const tagXFillStyle& fill = GetFillStyle();
        const tagXLineStyle& line = GetLineStyle();
        const bool hasValue = std::bit_cast<std::uint64_t>(rare.reservedValue) != 0;
        const bool hasPattern = HasOwnPattern(fill);
        const bool hasTexts = rare.HasTexts();
        const bool hasRange = std::memcmp(&range, &empty, sizeof empty) != 0;
        const int stored = (m_name.IsEmpty() ? 0 : kStoredName) |
                           (rare.link.IsEmpty() ? 0 : kStoredLink) | (hasValue ? kStoredValue : 0) |
                           (hasPattern ? kStoredPattern : 0) | (hasTexts ? kStoredTexts : 0) |
                           (hasRange ? kStoredRange : 0);
        archive << kArchiveVersion << static_cast<std::uint16_t>(stored) << m_lineColor
                << m_foreColor << m_backColor << m_range.hideFlag << m_thick << fill.style
                << line.pattern << line.style << line.words[0] << line.words[1];
        if (stored & kStoredName) archive << m_name;
        if (stored & kStoredLink) archive << rare.link;
        if (hasValue) archive << rare.reservedValue;
        if (hasPattern) archive.Write(fill.pattern, tagXFillStyle::kPatternBytes);
        for (int i = 0; hasTexts && i < kReservedCount; ++i)
            archive << GetReserved(i);
        if (hasRange) archive.Write(&range, sizeof range);
        return;
    }
    std::uint16_t version = 0, stored = 0;
    archive >> version >> stored;
    XvcObj loaded;
    tagRare rare;
    tagStyles styles;
    tagXFillStyle& fill = styles.fill;
    tagXLineStyle& line = styles.line;
    archive >> loaded.m_lineColor >> loaded.m_foreColor >> loaded.m_backColor >>
        loaded.m_range.hideFlag >> loaded.m_thick >> fill.style >> line.pattern >> line.style >>
        line.words[0] >> line.words[1];
    const bool isPredefined = fill.style >= 0 && fill.style < tagXFillStyle::kPredefinedCount;
    if (version != kArchiveVersion || (stored & ~kStoredAll) != 0 ||
        (!isPredefined && !(stored & kStoredPattern))) {
        throw XFileException(XFileException::kInvalidFile);
    }
    loaded.m_range.hideFlag = loaded.m_range.hideFlag ? 1 : 0;
    if (stored & kStoredName) archive >> loaded.m_name;
    if (stored & kStoredLink) archive >> rare.link;
    if (stored & kStoredValue) archive >> rare.reservedValue;
    if (stored & kStoredPattern) {
        archive.ReadExactly(fill.pattern, tagXFillStyle::kPatternBytes);
    } else {
        fill.SetStyle(fill.style);
    }
    for (int i = 0; (stored & kStoredTexts) && i < kReservedCount; ++i)
        archive >> rare.reserved[static_cast<std::size_t>(i)];
    tagXVectorRange range;
    if (stored & kStoredRange) archive.ReadExactly(&range, sizeof range);
    loaded.m_range = range;
    rare.warp = GetWarpCeoff();
    loaded.m_shared = rare.IsEmpty() ? StylePool::ShareRun(styles)
                                     : StylePool::Share(StylePool::Get(styles), rare);
    XvcObj::operator=(loaded);
}

void XvcObj::SetWarpCoeff(XWarp2D* warp)
{
    if (warp != GetWarpCeoff()) ChangeRare([&](tagRare& rare) { rare.warp = warp; });
    Touch(); // the warp itself may be another one by now
}

void XvcObj::SetLineColor(tagXColor color)
{
    m_lineColor = color;
    Touch();
}

void XvcObj::SetForeColor(tagXColor color)
{
    m_foreColor = color;
    Touch();
}

void XvcObj::SetBackColor(tagXColor color)
{
    m_backColor = color;
    Touch();
}

void XvcObj::SetReserved(int index, const XString& text)
{
    if (index < 0 || index >= kReservedCount) return;
    if (!m_shared->rare && text.IsEmpty()) return;
    ChangeRare([&](tagRare& rare) { rare.reserved[static_cast<std::size_t>(index)] = text; });
}

void XvcObj::SetReserved(double value)
{
    ChangeRare([&](tagRare& rare) { rare.reservedValue = value; });
}

void XvcObj::SetThick(double value)
{
    m_thick = value;
    Touch();
}

void XvcObj::SetFillStyle(const tagXFillStyle& style)
{
    if (style == GetFillStyle()) return;
    m_shared = StylePool::Share(StylePool::Get({style, GetLineStyle()}), GetRare());
    Touch();
}

void XvcObj::SetLineStyle(const tagXLineStyle& style)
{
    if (style == GetLineStyle()) return;
    m_shared = StylePool::Share(StylePool::Get({GetFillStyle(), style}), GetRare());
    Touch();
}

void XvcObj::SetLink(const XString& text)
{
    if (!m_shared->rare && text.IsEmpty()) return;
    ChangeRare([&](tagRare& rare) { rare.link = text; });
}

void XvcObj::SetHideFlag(int flag)
{
    m_range.hideFlag = flag ? 1 : 0;
    Touch();
}

void XvcObj::SetRange(double minX, double minY, double minZ, double maxX, double maxY, double maxZ)
{
    m_range = tagXVectorRange{minX, minY, minZ, maxX, maxY, maxZ};
}

void XvcObj::SetParentLayer(XvcLayer* layer)
{
    m_parentLayer = layer;
}

std::uint32_t XvcObj::Refresh()
{
    if (!m_range.GetRevision()) {
        CalcRange();
        m_range.Settle();
    }
    return m_range.GetRevision();
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
    CalcRange(); // the one of before may be that of another place
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
