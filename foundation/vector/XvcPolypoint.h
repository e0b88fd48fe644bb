#pragma once

#include "foundation/vector/XvcVertexObj.h"

/// A set of points, all with the same mark, in far less memory than as many XvcPoint.
///
/// Marks and sizes are those of XvcPoint: the type is its shape code, the thickness the size of a
/// mark. Range and hit test see the vertices, not the extent of the marks.
class XAPI XvcPolypoint : public XvcVertexObj
{
    X_DECLARE_CLASS(XvcPolypoint)
public:
    XvcPolypoint() = default;

    using XvcVertexObj::Add;
    using XvcVertexObj::GetVertexArray;
    using XvcVertexObj::InsertAt;
    using XvcVertexObj::RemoveAll;
    using XvcVertexObj::RemoveAt;
    using XvcVertexObj::SetAt;
    /// To be changed at once; who keeps it calls CalcRange after each change.
    XVertexArray& GetVertexArray() { return ChangeVertices(); }

    int GetType() const { return m_type; }
    void SetType(int shape)
    {
        m_type = shape;
        Touch();
    }

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// A point or a multipoint; empty points in it are left out.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< MULTIPOINT, of the usable vertices

protected:
    XHitShape GetHitShape() const override { return XHitShape::Points; }
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    int m_type = 5; // as that of XvcPoint
};
