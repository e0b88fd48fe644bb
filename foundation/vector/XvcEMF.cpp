#include "foundation/vector/XvcEMF.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/vector/XSymbolSet.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>
#include <utility>

X_IMPLEMENT_CLASS(XvcEMF, XvcBoxObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;

std::shared_ptr<const XSymbolOutline> MakeOutline(const XString& text, XString& error)
{
    auto made = std::make_shared<XSymbolOutline>();
    if (!made->Set(text, error)) return nullptr;
    return made;
}

std::shared_ptr<const XSymbolOutline> GetPlaceholder()
{
    static const auto shared = [] {
        XString error;
        return MakeOutline(XfnGetPlaceholderOutline(), error);
    }();
    return shared;
}

int ToPixels(double length, double worldPerPixel)
{
    const double pixels = std::fabs(length) / worldPerPixel;
    if (!(pixels > 1.0)) return 1; // and for what is no number
    return static_cast<int>(std::lround(std::min(pixels, double(XvcEMF::kMaxPixels))));
}

int HoldPixels(int pixels)
{
    return std::clamp(pixels, 1, XvcEMF::kMaxPixels);
}

bool IsLength(double length)
{
    return length > 0.0 && XfnIsSet(length);
}

} // namespace

XvcEMF::XvcEMF() : m_outline(GetPlaceholder())
{
    SetBoxAbout({}, kFirstPixels, kFirstPixels);
}

int XvcEMF::GetWidth() const
{
    return ToPixels(GetRightBottom().x - GetLeftTop().x, m_worldPerPixel);
}

int XvcEMF::GetHeight() const
{
    return ToPixels(GetRightBottom().y - GetLeftTop().y, m_worldPerPixel);
}

void XvcEMF::SetSize(int width, int height)
{
    Touch();
    if (!IsSet()) return;
    SetBoxAbout(GetCenter(), HoldPixels(width) * m_worldPerPixel,
                HoldPixels(height) * m_worldPerPixel);
}

void XvcEMF::SetOriginalSize(int width, int height)
{
    Touch();
    m_originalWidth = HoldPixels(width);
    m_originalHeight = HoldPixels(height);
    SetSize(width, height);
}

void XvcEMF::SetWorldPerPixel(double length)
{
    Touch();
    if (!IsLength(length)) return;
    const int width = GetWidth();
    const int height = GetHeight();
    m_worldPerPixel = length;
    SetSize(width, height);
}

tagXVector3 XvcEMF::GetCenter() const
{
    if (!IsSet()) return {kXNotSet, kXNotSet, GetZ()};
    const tagXVector3& a = GetLeftTop();
    const tagXVector3& b = GetRightBottom();
    return {a.x / 2.0 + b.x / 2.0, a.y / 2.0 + b.y / 2.0, a.z};
}

void XvcEMF::SetCenter(double x, double y, double z)
{
    SetBoxAbout({x, y, z}, GetWidth() * m_worldPerPixel, GetHeight() * m_worldPerPixel);
}

void XvcEMF::SetBoxAbout(const tagXVector3& center, double width, double height)
{
    Touch();
    SetLeftTop({center.x - width / 2.0, center.y + height / 2.0, center.z});
    SetRightBottom({center.x + width / 2.0, center.y - height / 2.0, center.z});
}

int XvcEMF::SetOutline(const XString& text, XString& error)
{
    Touch();
    auto made = MakeOutline(text, error);
    if (!made) return 0;
    m_outline = std::move(made);
    return 1;
}

void XvcEMF::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                const tagXDrawAttrs* attrs)
{
    if (!buffer || !IsSet()) return;
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const tagXVector3 center = GetCenter();
    XWarp2D place;
    place.SetAffine(center.x, right - left, 0.0, center.y, 0.0, top - bottom);
    if (!place.IsValid()) return;
    m_outline->Record(buffer, place, ChooseWarp(warp), XVectorPaint(*this, attrs));
}

void XvcEMF::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_originalWidth << m_originalHeight << m_lock << m_worldPerPixel
            << m_outline->GetText();
}

void XvcEMF::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    int width = 0, height = 0, lock = 0;
    double worldPerPixel = 0.0;
    XString text, error;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    archive >> width >> height >> lock >> worldPerPixel >> text;
    auto made = MakeOutline(text, error);
    if (!made || !IsLength(worldPerPixel)) throw XFileException(XFileException::kInvalidFile);
    m_originalWidth = HoldPixels(width);
    m_originalHeight = HoldPixels(height);
    m_lock = lock ? 1 : 0;
    m_worldPerPixel = worldPerPixel;
    m_outline = std::move(made);
}
