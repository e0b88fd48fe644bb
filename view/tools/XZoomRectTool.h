#pragma once

#include "view/tools/XViewTool.h"

/// The tool of mode 201: pulls a rectangle open and fits the view to it.
///
///   idle     --press-->   dragging  a green band from here
///   dragging --move-->    dragging  the band follows while the left button alone is down
///   dragging --release--> idle      fits, unless a side is empty; post mode; reported (41090)
///   dragging --right double click--> idle  post mode, nothing is fitted or reported
///   dragging --cancel-->  idle      nothing is fitted or reported
///
/// A release without a press, of a button that went down before the mode was set or whose band was
/// cancelled, fits nothing but ends and is reported like any other.
class XAPI XZoomRectTool final : public XViewTool
{
public:
    using XViewTool::XViewTool;
    void Cancel() override;

protected:
    void Press(const tagXToolEvent& event) override;
    void Move(const tagXToolEvent& event) override;
    void Release(const tagXToolEvent& event) override;
    void RightDoubleClick(const tagXToolEvent& event) override;
};
