#pragma once

#include "view/tools/XLineTool.h"

/// The tool of mode 115: draws a straight line with an arrow at its end. As XLineTool, but nothing
/// is ever asked, whatever the limits say.
class XAPI XArrowTool final : public XLineTool
{
public:
    explicit XArrowTool(XToolTarget& target) : XLineTool(target, XViewReport::LineCreated)
    {
        m_moveReason = XViewReason::Arrow;
    }

protected:
    void Release(const tagXToolEvent& event) override;
};
