#include "foundation/vector/XvcPartsObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/vector/XObjAttributes.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcVertexObj.h"

#include <algorithm>
#include <string>
#include <utility>

X_IMPLEMENT_CLASS(XvcPartsObj, XvcObj)

namespace {

using Parts = std::vector<std::unique_ptr<XvcObj>>;

constexpr std::uint8_t kArchiveVersion = 1;
constexpr std::size_t kMinPartBytes = 16; // far less than the attributes alone take

class DepthException final : public XFileException
{
public:
    DepthException() : XFileException(kInvalidFile) {}
    XString GetErrorMessage() const override
    {
        return XString("Objects lie in each other more than ") +
               std::to_string(XvcPartsObj::kMaxDepth).c_str() + " deep.";
    }
};

// Objects within objects within objects would otherwise end the stack.
class DepthGuard
{
public:
    DepthGuard()
    {
        if (s_depth >= XvcPartsObj::kMaxDepth) {
            throw DepthException();
        }
        ++s_depth;
    }
    ~DepthGuard() { --s_depth; }
    DepthGuard(const DepthGuard&) = delete;
    DepthGuard& operator=(const DepthGuard&) = delete;

private:
    static thread_local int s_depth;
};

thread_local int DepthGuard::s_depth = 0;

Parts CloneParts(const Parts& parts, XvcLayer* layer)
{
    Parts clones;
    clones.reserve(parts.size());
    for (const auto& part : parts) {
        if (auto clone = XfnCloneVectorObject(part.get())) {
            clone->SetParentLayer(layer);
            clones.push_back(std::move(clone));
        }
    }
    return clones;
}

} // namespace

XvcPartsObj::XvcPartsObj(const XvcPartsObj& other)
    : XvcObj(other), m_parts(CloneParts(other.m_parts, nullptr))
{}

XvcPartsObj& XvcPartsObj::operator=(const XvcPartsObj& other)
{
    if (this == &other) return *this;
    Parts clones = CloneParts(other.m_parts, GetParentLayer());
    XvcObj::operator=(other);
    m_parts = std::move(clones);
    return *this;
}

XvcPartsObj::~XvcPartsObj() = default;

XvcObj* XvcPartsObj::GetPartAt(int index) const
{
    return index >= 0 && index < GetPartCount() ? m_parts[static_cast<std::size_t>(index)].get()
                                                : nullptr;
}

int XvcPartsObj::AddPart(std::unique_ptr<XvcObj> part)
{
    Touch();
    if (!part) return -1;
    part->SetParentLayer(GetParentLayer());
    m_parts.push_back(std::move(part));
    return GetPartCount() - 1;
}

int XvcPartsObj::RemoveAt(int index)
{
    Touch();
    if (!GetPartAt(index)) return 0;
    m_parts.erase(m_parts.begin() + index);
    return 1;
}

void XvcPartsObj::GiveAttributes(XvcObj& part) const
{
    part.SetLineColor(GetLineColor());
    part.SetForeColor(GetForeColor());
    part.SetBackColor(GetBackColor());
    part.SetThick(GetThick());
    part.SetFillStyle(GetFillStyle());
    part.SetLineStyle(GetLineStyle());
}

bool XvcPartsObj::IsPartAllowed(const XvcObj&) const
{
    return true;
}

void XvcPartsObj::Serialize(XArchive& archive)
{
    const DepthGuard guard;
    if (archive.IsStoring()) {
        archive << kArchiveVersion;
        XvcObj::Serialize(archive);
        archive << static_cast<std::uint32_t>(m_parts.size());
        for (const auto& part : m_parts) {
            archive << part->GetRuntimeClass()->m_lpszClassName;
            part->Serialize(archive);
        }
        StoreOwn(archive);
        return;
    }
    const XvcObj attributes = XfnLoadAttributes(*this, kArchiveVersion, archive);
    const std::uint32_t count = archive.ReadCount(kMinPartBytes);
    Parts parts;
    for (std::uint32_t i = 0; i < count; ++i) {
        XString className;
        archive >> className;
        auto part = XfnNewVectorObject(className);
        if (!part || !IsPartAllowed(*part)) throw XFileException(XFileException::kInvalidFile);
        part->Serialize(archive);
        part->SetParentLayer(GetParentLayer());
        parts.push_back(std::move(part));
    }
    LoadOwn(archive);
    XvcObj::operator=(attributes);
    m_parts = std::move(parts);
}

void XvcPartsObj::StoreOwn(XArchive&) const {}

void XvcPartsObj::LoadOwn(XArchive&) {}

void XvcPartsObj::SetParentLayer(XvcLayer* layer)
{
    XvcObj::SetParentLayer(layer);
    for (const auto& part : m_parts)
        part->SetParentLayer(layer);
}

void XvcPartsObj::CalcRange()
{
    m_range.Clear();
    for (const auto& part : m_parts) {
        // as told to, whether the part knows of a change or not
        part->Touch();
        part->Refresh();
        m_range.Add(part->GetRange());
    }
}

tagXVectorRange XvcPartsObj::GetDrawnExtent() const
{
    tagXVectorRange extent = m_range;
    for (const auto& part : m_parts)
        extent.Add(part->GetDrawnExtent());
    return extent;
}

tagXVectorRange XvcPartsObj::GetHitExtent() const
{
    tagXVectorRange extent = m_range;
    for (const auto& part : m_parts)
        extent.Add(part->GetHitExtent());
    return extent;
}

std::uint32_t XvcPartsObj::Refresh()
{
    // a part that was touched by itself is newer than the whole, which gets its number behind them
    const std::uint32_t own = m_range.GetRevision();
    const bool isStale = std::any_of(m_parts.begin(), m_parts.end(), [&](const auto& part) {
        return static_cast<std::int32_t>(part->Refresh() - own) > 0;
    });
    if (isStale) Touch();
    return XvcObj::Refresh();
}

void XvcPartsObj::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                     const tagXDrawAttrs* attrs)
{
    for (const auto& part : m_parts) {
        if (!part->IsHidden()) part->CreateVertexBuffer(buffer, ChooseWarp(warp), attrs);
    }
}

int XvcPartsObj::CountVertices(const XvcObj& object)
{
    if (object.IsKindOf(XvcPoint::GetRuntimeClassStatic())) return 1;
    if (object.IsKindOf(XvcVertexObj::GetRuntimeClassStatic())) {
        return static_cast<const XvcVertexObj&>(object).GetSize();
    }
    int count = 0;
    if (object.IsKindOf(XvcPartsObj::GetRuntimeClassStatic())) {
        for (const auto& part : static_cast<const XvcPartsObj&>(object).m_parts) {
            count += CountVertices(*part);
        }
    }
    return count;
}

XvcObj* XvcPartsObj::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                             tagXHitFlag& hitFlag)
{
    // a vertex of any part goes before every edge, and that before every inside
    constexpr int kOrder[] = {2, 0, 1}; // of body, vertex, edge
    int best = 3;
    int firstVertex = 0;
    for (const auto& part : m_parts) {
        tagXHitFlag flag;
        if (!part->IsHidden() && part->HitTest(point, toleranceX, toleranceY, flag)) {
            const bool isCounted = CountVertices(*part) > 0 && flag.kind <= tagXHitFlag::kEdge;
            if (!isCounted) flag = {tagXHitFlag::kBody, 0};
            const int order = kOrder[flag.kind];
            if (order < best) {
                best = order;
                hitFlag = {flag.kind,
                           flag.kind == tagXHitFlag::kBody ? 0 : firstVertex + flag.index};
            }
        }
        firstVertex += CountVertices(*part);
    }
    return best < 3 ? this : nullptr;
}

void XvcPartsObj::AddCtrlPoints(XPtrArray& array)
{
    for (const auto& part : m_parts)
        part->AddCtrlPoints(array);
}

void XvcPartsObj::MoveObject(double dx, double dy, double dz)
{
    Touch();
    for (const auto& part : m_parts)
        part->MoveObject(dx, dy, dz);
}

tagXVector3* XvcPartsObj::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    Touch();
    if (hitIndex < 0) return nullptr;
    for (const auto& part : m_parts) {
        const int count = CountVertices(*part);
        if (hitIndex < count) return part->MoveVertex(hitIndex, dx, dy, dz);
        hitIndex -= count;
    }
    return nullptr;
}

void XvcPartsObj::RotateObject(double x, double y, double angle)
{
    Touch();
    for (const auto& part : m_parts)
        part->RotateObject(x, y, angle);
}

void XvcPartsObj::Normalize(double minX, double minY, double maxX, double maxY)
{
    Touch();
    for (const auto& part : m_parts)
        part->Normalize(minX, minY, maxX, maxY);
}
