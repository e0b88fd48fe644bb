#pragma once

#include "foundation/vector/XvcVertexObj.h"

/// A line through a list of vertices, drawn in the line colour. It breaks at a vertex that is not
/// usable.
class XAPI XvcPolyline : public XvcVertexObj
{
    X_DECLARE_CLASS(XvcPolyline)
public:
    XvcPolyline() = default;

    using XvcVertexObj::Add;
    using XvcVertexObj::GetVertexArray;
    using XvcVertexObj::InsertAt;
    using XvcVertexObj::RemoveAll;
    using XvcVertexObj::RemoveAt;
    using XvcVertexObj::SetAt;
    /// To be changed at once; who keeps it calls CalcRange after each change.
    XVertexArray& GetVertexArray() { return ChangeVertices(); }

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< LINESTRING; with fewer than 2 usable vertices empty

protected:
    XHitShape GetHitShape() const override { return XHitShape::Line; }
};
