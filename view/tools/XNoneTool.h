#pragma once

#include "view/tools/XViewTool.h"

/// The tool of mode -1: looks, and changes nothing.
///
///   idle --any event-->    idle  what is selected is no longer
///   idle --double click--> idle  the first object hit within 3 pixels is reported (41063), the
///                                view's own bases before the host's
class XAPI XNoneTool final : public XViewTool
{
public:
    using XViewTool::XViewTool;

protected:
    void OnAny(const tagXToolEvent& event) override;
    void DoubleClick(const tagXToolEvent& event) override;
};
