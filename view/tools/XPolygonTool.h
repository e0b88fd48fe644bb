#pragma once

#include "foundation/vector/XvcPolygon.h"
#include "view/tools/XVertexTool.h"

/// The tool of mode 107: draws a polygon, see XVertexTool.
class XAPI XPolygonTool final : public XVertexToolOf<XvcPolygon>
{
public:
    explicit XPolygonTool(XToolTarget& target)
        : XVertexToolOf(target, XViewReport::PolygonCreated, XObjectDialog::Polygon)
    {}

protected:
    void BeginObject() override { BeginShape(Fill::With); }
    XViewReason GetMoveReason() const override { return XViewReason::Polygon; }
};
