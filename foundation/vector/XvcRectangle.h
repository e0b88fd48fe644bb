#pragma once

#include "foundation/vector/XvcRectObj.h"

/// A rectangle: outlined in the line colour, filled by the fill style in the fore and back colour.
class XAPI XvcRectangle : public XvcRectObj
{
    X_DECLARE_CLASS(XvcRectangle)
public:
    XvcRectangle() = default;

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// A polygon of one ring of four vertices with right angles (to a millionth of its size).
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< POLYGON
};
