#pragma once

#include "view/tools/XBoxTool.h"

/// The tool of mode 105: draws a rectangle, see XBoxTool. It has the view's back colour only with a
/// fill pattern of its own.
class XAPI XRectangleTool final : public XBoxTool
{
public:
    explicit XRectangleTool(XToolTarget& target)
        : XBoxTool(target, XViewReport::RectangleCreated, XObjectDialog::Rect)
    {}

protected:
    bool IsBuilding() const override;
    void BeginObject() override;
    void SetCorners(const tagXVector3& a, const tagXVector3& b) override;
    bool IsPoint() const override;
};
