#pragma once

#include "view/tools/XShapeTool.h"

/// The tool of mode 102: draws a straight line.
///
///   idle     --press-->   building  the line starts and ends here
///   building --move-->    building  its end follows; Ctrl keeps it level or upright
///   building --release--> idle      its end is here, whatever Ctrl says; finish
///
/// A press while a line is building moves the anchor of Ctrl only.
class XAPI XLineTool : public XShapeTool
{
public:
    explicit XLineTool(XToolTarget& target)
        : XShapeTool(target, XViewReport::LineCreated, XObjectDialog::Line)
    {}

protected:
    void Press(const tagXToolEvent& event) override;
    void Move(const tagXToolEvent& event) override;
    void Release(const tagXToolEvent& event) override;

    using XShapeTool::XShapeTool;
    XViewReason m_moveReason = XViewReason::Invalidate;
};
