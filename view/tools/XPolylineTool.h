#pragma once

#include "foundation/vector/XvcPolyline.h"
#include "view/tools/XVertexTool.h"

/// The tool of mode 103: draws a polyline, see XVertexTool.
class XAPI XPolylineTool final : public XVertexToolOf<XvcPolyline>
{
public:
    explicit XPolylineTool(XToolTarget& target)
        : XVertexToolOf(target, XViewReport::PolylineCreated, XObjectDialog::Polyline)
    {}

protected:
    void BeginObject() override { BeginShape(Fill::Without); }
};
