#pragma once

#include "foundation/vector/XSymbolOutline.h"
#include "foundation/vector/XvcObj.h"

#include <memory>

/// The definition of a symbol: a number, a name (that of the object), a group and an outline.
///
/// It lies in a symbol table, and instances (XvcSymbol) draw its outline in their own colours. Copies
/// share the outline. Drawn itself it stands about the origin with a side of 1. It is not moved,
/// turned or hit.
class XAPI XvcSymbolDef : public XvcObj
{
    X_DECLARE_CLASS(XvcSymbolDef)
public:
    XvcSymbolDef();
    XvcSymbolDef(const XvcSymbolDef& other) = default;
    XvcSymbolDef& operator=(const XvcSymbolDef& other); ///< seen by the symbols that show it

    int GetID() const { return m_id; }
    void SetID(int id)
    {
        m_id = id;
        Touch();
    }
    const XString& GetGroup() const { return m_group; }
    void SetGroup(const XString& group)
    {
        m_group = group;
        Touch();
    }
    const XSymbolOutline& GetOutline() const { return *m_outline; }
    /// @return 0 with a sentence in `error`; then the outline is as it was
    int SetOutline(const XString& text, XString& error);

    void Serialize(XArchive& archive) override;
    void CalcRange() override;
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;

private:
    int m_id = 0;
    XString m_group;
    std::shared_ptr<const XSymbolOutline> m_outline; // never null
};
