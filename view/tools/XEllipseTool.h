#pragma once

#include "view/tools/XBoxTool.h"

/// The tool of mode 106: draws an ellipse within a box, see XBoxTool. One without a size keeps the
/// selection.
class XAPI XEllipseTool final : public XBoxTool
{
public:
    explicit XEllipseTool(XToolTarget& target)
        : XBoxTool(target, XViewReport::EllipseCreated, XObjectDialog::Ellipse)
    {}

protected:
    bool IsBuilding() const override;
    void BeginObject() override;
    void SetCorners(const tagXVector3& a, const tagXVector3& b) override;
    bool IsPoint() const override;
    Keep GetKeep() const override { return Keep::Selection; }
};
