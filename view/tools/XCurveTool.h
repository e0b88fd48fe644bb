#pragma once

#include "foundation/vector/XvcBspline.h"
#include "view/tools/XVertexTool.h"

/// The tool of mode 104: draws a curve through its poles, see XVertexTool. Ctrl does nothing.
class XAPI XCurveTool final : public XVertexToolOf<XvcBspline>
{
public:
    explicit XCurveTool(XToolTarget& target)
        : XVertexToolOf(target, XViewReport::CurveCreated, XObjectDialog::Bspline)
    {}

protected:
    void BeginObject() override { BeginShape(Fill::Without); }
    bool CanConstrain() const override { return false; }
};
