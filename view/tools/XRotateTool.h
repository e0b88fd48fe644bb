#pragma once

#include "view/tools/XViewTool.h"

/// The tool of mode 202: turns the view about its middle.
///
///   idle    --press-->   turning  from here
///   turning --move-->    turning  by the angle between the last two places as seen from the
///                                 middle, while the left button alone is down
///   any     --release--> idle     everything is drawn anew, post mode, reported (41091)
class XAPI XRotateTool final : public XViewTool
{
public:
    using XViewTool::XViewTool;

protected:
    void OnAny(const tagXToolEvent& event) override;
    void Press(const tagXToolEvent& event) override;
    void Move(const tagXToolEvent& event) override;
    void Release(const tagXToolEvent& event) override;

private:
    double DirectionOf(const QPoint& pixel) const;
};
