#pragma once

#include "foundation/vector/XvcVertexObj.h"

/// An area within one ring of vertices, which closes by itself: the first vertex is not repeated.
///
/// Outlined in the line colour and filled by the fill style in the fore and back colour; where the
/// ring crosses itself the even-odd rule holds. Vertices that are not usable are left out; with one
/// left nothing is drawn. The inside is hit whether it is filled or not. Areas with holes are
/// XvcMPolygon.
class XAPI XvcPolygon : public XvcVertexObj
{
    X_DECLARE_CLASS(XvcPolygon)
public:
    XvcPolygon() = default;

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
    /// A polygon of one ring; holes are refused. The repeated last vertex is dropped.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< POLYGON; with fewer than 3 usable vertices empty

protected:
    XHitShape GetHitShape() const override { return XHitShape::Ring; }
};
