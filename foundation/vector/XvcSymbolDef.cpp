#include "foundation/vector/XvcSymbolDef.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"

X_IMPLEMENT_CLASS(XvcSymbolDef, XvcObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;

std::shared_ptr<const XSymbolOutline> GetEmptyOutline()
{
    static const auto empty = std::make_shared<const XSymbolOutline>();
    return empty;
}

} // namespace

XvcSymbolDef::XvcSymbolDef() : m_outline(GetEmptyOutline()) {}

XvcSymbolDef& XvcSymbolDef::operator=(const XvcSymbolDef& other)
{
    XvcObj::operator=(other);
    m_id = other.m_id;
    m_group = other.m_group;
    if (m_outline != other.m_outline) TouchAll();
    m_outline = other.m_outline;
    return *this;
}

int XvcSymbolDef::SetOutline(const XString& text, XString& error)
{
    Touch();
    auto made = std::make_shared<XSymbolOutline>();
    if (!made->Set(text, error)) return 0;
    m_outline = std::move(made);
    TouchAll(); // the symbols that show it
    return 1;
}

void XvcSymbolDef::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kArchiveVersion;
        XvcObj::Serialize(archive);
        archive << m_id << m_group << m_outline->GetText();
        return;
    }
    std::uint8_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    XvcSymbolDef loaded;
    loaded.SetWarpCoeff(GetWarpCeoff());
    loaded.XvcObj::Serialize(archive);
    XString text, reason;
    archive >> loaded.m_id >> loaded.m_group >> text;
    if (!loaded.SetOutline(text, reason)) throw XFileException(XFileException::kInvalidFile);
    *this = loaded;
}

void XvcSymbolDef::CalcRange()
{
    m_range = m_outline->GetRange();
}

void XvcSymbolDef::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                      const tagXDrawAttrs* attrs)
{
    m_outline->Record(buffer, XWarp2D(), ChooseWarp(warp), XVectorPaint(*this, attrs));
}
