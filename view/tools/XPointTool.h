#pragma once

#include "view/tools/XShapeTool.h"

/// The tool of mode 101: makes a point, a diagonal cross.
///
///   idle --press--> idle  a point here; finish
class XAPI XPointTool final : public XShapeTool
{
public:
    explicit XPointTool(XToolTarget& target)
        : XShapeTool(target, XViewReport::PointCreated, XObjectDialog::Point)
    {}

protected:
    void Press(const tagXToolEvent& event) override;
    XViewReason GetFinishReason() const override { return XViewReason::Point; }
};
